// digests.cpp - CRC, MD5 and its context file, the factories' release functions.

#include "parity/trial.h"

#include "qxv/crc.h"
#include "qxv/factories.h"
#include "qxv/md5.h"

#include <cstdio>

namespace parity {

namespace {

const unsigned char* BytesOf(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

void Sums(Trial& t) {
  t.Next();
  const std::string bytes = t.Bytes(t.Below(20) == 0 ? 5000 : 80);
  t << QXVCalculateCRC(BytesOf(bytes), BytesOf(bytes) + bytes.size());
  CQXVMD5Ctx* digest = QXV_ConstructMD5();
  const int cut = t.Below(static_cast<int>(bytes.size()) + 1);
  digest->Update(BytesOf(bytes), static_cast<unsigned>(cut));
  digest->Update(BytesOf(bytes) + cut, static_cast<unsigned>(bytes.size()) - static_cast<unsigned>(cut));
  unsigned char sum[16];
  digest->Final(sum);
  t.Raw(sum, sizeof sum);
  t << digest->GetFinalString();
  QXV_DeleteMD5(digest);
}

void Texts(Trial& t) {
  t.Next();
  const Text text = t.Word(t.Below(20) == 0 ? 300 : 30);
  const CQXString sum = QXV_MD5_GetUpdateFinalValue(text.c_str());
  t << sum << QXV_MD5_IsPasswordOK(text.c_str(), sum) << QXV_MD5_IsPasswordOK(t.Word(10).c_str(), sum);
}

void Saved(Trial& t) {
  t.Next();
  const std::string bytes = t.Bytes(300);
  CQXVMD5Ctx* first = QXV_ConstructMD5();
  first->Initialize(1, CQXString(t.Folder().c_str()), QXT("parity"));
  first->Update(BytesOf(bytes), static_cast<unsigned>(bytes.size()));
  t << first->SaveContext(t.Bits());
  QXV_DeleteBufferFileRW(first);  // the four names are one routine
  CQXVMD5Ctx* second = QXV_ConstructMD5();
  second->Initialize(1, CQXString(t.Folder().c_str()), QXT("parity"));
  t << static_cast<QXInt64>(second->GetContextValue()) << second->GetFinalString();
  QXV_DeleteTxtRW(second);
}

}  // namespace

void RunDigests(Trial& t) {
  for (int i = 0; i < 5000; ++i) {
    Sums(t);
    Texts(t);
  }
  for (int i = 0; i < 50; ++i) {
    Saved(t);
  }
  QXV_DeleteUnicodeAnsiFile(nullptr);
}

}  // namespace parity
