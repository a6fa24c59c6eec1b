// md5_text_test.cpp - digests of texts, and passwords beside stored digests.

#include "qxv/md5.h"

#include "digest/md5_context_fixture.h"
#include "os/code_page.h"
#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace {

using support::Repeat;
using support::Text;

Text Value(const QXChar* text) { return support::TextOf(QXV_MD5_GetUpdateFinalValue(text)); }

constexpr const QXChar* kDigestOfAbc = QXT("900150983cd24fb0d6963f7d28e17f72");
constexpr const QXChar* kDigestOfNothing = QXT("d41d8cd98f00b204e9800998ecf8427e");

TEST(Md5Text, KnownDigests) {
  EXPECT_EQ(Value(QXT("")), kDigestOfNothing);
  EXPECT_EQ(Value(nullptr), kDigestOfNothing);
  EXPECT_EQ(Value(QXT("abc")), kDigestOfAbc);
  EXPECT_EQ(Value(QXT("message digest")), QXT("f96b697d7cb7938d525a2f31aaf161d0"));
}

TEST(Md5Text, UpTo255CharactersAreTaken) {
  EXPECT_EQ(Value(Repeat(QXT('x'), 255).c_str()), QXT("cb3ead3ffb3d928128c57a88ddc023c9")) << "by md5sum";
  EXPECT_EQ(Value(Repeat(QXT('x'), 256).c_str()), QXT(""));
  EXPECT_EQ(Value(Repeat(QXT('x'), 100000).c_str()), QXT(""));
}

TEST(Md5Text, CharactersOutsideTheCodePageAreQuestionMarks) {
  if (qxv::os::AnsiCodePage() != 1252) {
    GTEST_SKIP() << "the system's ANSI page is not 1252";
  }
  EXPECT_EQ(Value(QXT("\u4E2D")), QXT("d1457b72c3fb323a2671125aef3eab5d")) << "of ?";
  EXPECT_EQ(Value(QXT("caf\u00E9")), QXT("961f50f6282239d09e48f812c1ca7276")) << "of 63 61 66 E9";
  EXPECT_EQ(Value(Repeat(QXChar(0x4E2D), 255).c_str()), QXT("65d9a03a67b7ec2e54caf89770c98a1b")) << "of 255 times ?";
}

TEST(Md5Text, NothingBehindTheTextIsRead) {
  for (std::size_t length = 0; length <= 256; ++length) {
    const std::unique_ptr<QXChar[]> text(new QXChar[length + 1]());  // ends at an inaccessible page
    std::fill_n(text.get(), length, QXT('y'));
    EXPECT_EQ(Value(text.get()).size(), length <= 255 ? 32u : 0u) << length;
  }
}

TEST(Md5Text, SaysThatItSavesNothing) {
  digest_test::Recorder sink;
  const qxv::os::ScopedDebugSink scoped(sink);
  (void)Value(QXT("abc"));
  ASSERT_EQ(sink.texts.size(), 1u);
  EXPECT_EQ(sink.texts[0], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will not support interruption.\n"));
}

TEST(Md5Text, APasswordMatchesItsDigestInAnyCase) {
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), kDigestOfAbc), 1);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), QXT("900150983CD24FB0D6963F7D28E17F72")), 1);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), QXT("900150983Cd24fb0d6963F7D28e17f72")), 1);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(nullptr, kDigestOfNothing), 1);
}

TEST(Md5Text, AnythingElseDoesNotMatch) {
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abd"), kDigestOfAbc), 0);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("ABC"), kDigestOfAbc), 0) << "the case of the text counts";
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), QXT("900150983cd24fb0d6963f7d28e17f7")), 0);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), QXT("900150983cd24fb0d6963f7d28e17f72 ")), 0);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), QXT("")), 0);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT("abc"), nullptr), 0);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(QXT(""), QXT("")), 0);
}

TEST(Md5TextKept, ATooLongTextMatchesAnEmptyDigestOnly) {
  const Text text = Repeat(QXT('x'), 256);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(text.c_str(), QXT("")), 1);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(text.c_str(), nullptr), 1);
  EXPECT_EQ(QXV_MD5_IsPasswordOK(text.c_str(), kDigestOfNothing), 0);
}

TEST(Md5Text, WithoutMemoryNothingIsLost) {
  for (std::size_t index = 0;; ++index) {
    const std::size_t live = support::LiveArrays();
    const support::FailAllocation refuse(index);
    try {
      const CQXString value = QXV_MD5_GetUpdateFinalValue(QXT("a text that is longer than what a string holds in itself"));
      EXPECT_EQ(value.GetLength(), 32) << index;
    } catch (const std::bad_alloc&) {
    }
    EXPECT_EQ(support::LiveArrays(), live) << index;
    if (!refuse.Refused()) {
      break;
    }
  }
}

}  // namespace
