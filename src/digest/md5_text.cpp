// md5_text.cpp - the digest of a text, and passwords compared with stored digests.

#include "digest/md5_text.h"

#include "digest/md5_context.h"
#include "foundation/text_access.h"
#include "os/code_page.h"
#include "os/utf.h"

#include <string>

namespace {

constexpr int kLongestText = 255;

}  // namespace

namespace qxv {

CQXString DigestText(const unsigned char (&digest)[kMd5DigestSize]) {
  constexpr QXChar kDigits[] = QXT("0123456789abcdef");
  QXChar text[2 * kMd5DigestSize];
  for (std::size_t i = 0; i < kMd5DigestSize; ++i) {
    text[2 * i] = kDigits[digest[i] >> 4];
    text[2 * i + 1] = kDigits[digest[i] & 15];
  }
  return {text, static_cast<int>(std::size(text))};
}

}  // namespace qxv

CQXString QXV_MD5_GetUpdateFinalValue(const QXChar* text) {
  const int length = CQXString::Length(text);
  if (length > kLongestText) {
    return {};
  }
  std::string bytes;
  const qxv::os::TextView view = length == 0 ? qxv::os::TextView() : qxv::os::TextView(text, static_cast<std::size_t>(length));
  if (!qxv::os::WideToMultiByte(qxv::os::kCodePageAnsi, view, bytes)) {
    return {};
  }
  CQXVMD5CtxImpl context;
  context.Initialize(0 /*interruption*/, {}, {});
  context.Update(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size()));
  return context.GetFinalString();
}

// KEPT: a text that is too long has an empty digest, so it passes where an empty one is stored; a null digest is an empty one.
//   Pinned by Md5TextKept.ATooLongTextMatchesAnEmptyDigestOnly.
int QXV_MD5_IsPasswordOK(const QXChar* text, const QXChar* digest) {
  const CQXString own = QXV_MD5_GetUpdateFinalValue(text);
  return own.CompareNoCase(digest) == 0 ? 1 : 0;
}
