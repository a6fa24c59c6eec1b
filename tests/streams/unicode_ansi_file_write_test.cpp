// unicode_ansi_file_write_test.cpp - CQXVUnicodeAnsiFile: writing lines; the object.

#include "qxv/unicode_ansi_file.h"

#include "streams/text_bytes.h"
#include "streams/unicode_ansi_file_fixture.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace support;

using UnicodeAnsiFile = UnicodeAnsiFileBase;
using UnicodeAnsiFileKept = UnicodeAnsiFileBase;
using UnicodeAnsiFileRoundTrip = UnicodeAnsiFileBase;

// ---- writing

TEST_F(UnicodeAnsiFile, AUnicodeLineIsAppendedWithItsEnd) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("x")), kUnicode, kWrite), 0u);
  m_file->WriteLine(QXT("abc"));
  m_file->Close();
  EXPECT_EQ(ReadBytes(m_name), std::string("\xFF\xFE"
                                           "x\0"
                                           "a\0b\0c\0\r\0\n\0",
                                           14));
}

TEST_F(UnicodeAnsiFile, LineFeedsAtTheEndAreOneAndOthersGetTheirReturn) {
  ASSERT_EQ(m_file->Open(m_name.c_str(), kAnsi, kWrite), 0u);
  for (const QXChar* text : {QXT("a\n\n\n"), QXT("b\nc"), QXT("\n"), QXT(""), static_cast<const QXChar*>(nullptr), QXT("\nd")}) {
    m_file->WriteLine(text);
  }
  m_file->Close();
  EXPECT_EQ(ReadBytes(m_name), "a\r\nb\r\nc\r\n\r\n\r\n\r\n\r\nd\r\n");
}

TEST_F(UnicodeAnsiFileKept, ATextThatEndsInCrLfIsWrittenWithTwoCarriageReturns) {
  ASSERT_EQ(m_file->Open(m_name.c_str(), kAnsi, kWrite), 0u);
  m_file->WriteLine(QXT("a\r\n"));
  EXPECT_EQ(ReadBytes(m_name), "a\r\r\n");
}

TEST_F(UnicodeAnsiFile, AnsiTextIsConvertedWhole) {
  ASSERT_EQ(m_file->Open(m_name.c_str(), kAnsi, kWrite), 0u);
  m_file->WriteLine((Text(9000, QXT('\u20AC')) + QXT("\u4E2D")).c_str());
  EXPECT_EQ(ReadBytes(m_name), std::string(9000, '\x80') + "?\r\n");
}

TEST_F(UnicodeAnsiFile, NothingIsWrittenToAFileOpenForReadingOrClosed) {
  m_file->WriteLine(QXT("x"));
  ASSERT_EQ(OpenWith("ab\r\n", kAnsi, kWrite), 0u);
  ASSERT_EQ(m_file->Open(m_name.c_str(), kAnsi, kRead), 0u);
  m_file->WriteLine(QXT("x"));
  m_file->Close();
  m_file->WriteLine(QXT("x"));
  EXPECT_EQ(ReadBytes(m_name), "ab\r\n");
  ASSERT_EQ(OpenWith("", kAnsi, kWrite), 0u);
  ASSERT_EQ(m_file->Open(m_name.c_str(), kAnsi, kRead), 0u);
  m_file->WriteLine(QXT("x"));
  EXPECT_EQ(ReadBytes(m_name), "") << "an empty file open for reading";
}

TEST_F(UnicodeAnsiFile, NothingIsReadFromAFileOpenForWriting) {
  ASSERT_EQ(OpenWith("ab\r\n", kAnsi, kWrite), 0u);
  CQXString line(QXT("old"));
  EXPECT_EQ(m_file->ReadLine(line), 0);
  EXPECT_EQ(TextOf(line), QXT("old"));
}

TEST_F(UnicodeAnsiFile, TruncatingEmptiesTheFileAndWritesTheMark) {
  ASSERT_EQ(OpenWith("old text", kUnicode, kWrite | kTruncate), 0u);
  EXPECT_EQ(ReadBytes(m_name), "\xFF\xFE");
  m_file->WriteLine(QXT("a"));
  EXPECT_EQ(ReadBytes(m_name), MarkedUtf16(QXT("a\r\n")));
  ASSERT_EQ(m_file->Open(m_name.c_str(), kAnsi, kWrite | kTruncate), 0u);
  m_file->WriteLine(QXT("b"));
  EXPECT_EQ(ReadBytes(m_name), "b\r\n");
}

TEST_F(UnicodeAnsiFile, TruncatingIsIgnoredWhenReading) {
  ASSERT_EQ(OpenWith("a\r\nb", kAnsi, kRead | kTruncate), 0u);
  EXPECT_EQ(ReadAll(), "[a\r\n][b]");
}

TEST_F(UnicodeAnsiFileKept, ANewUnicodeFileHasNoMarkUnlessItIsTruncated) {
  ASSERT_EQ(m_file->Open(m_name.c_str(), kUnicode, kWrite), 0u);
  m_file->WriteLine(QXT("a"));
  m_file->Close();
  EXPECT_EQ(ReadBytes(m_name), Utf16(QXT("a\r\n")));
  ASSERT_EQ(OpenWith("x", kUnicode, kWrite), 0u);
  m_file->WriteLine(QXT("a"));
  EXPECT_EQ(ReadBytes(m_name), "x" + Utf16(QXT("a\r\n")));
}

TEST_F(UnicodeAnsiFileRoundTrip, WrittenLinesReadBack) {
  for (const int encoding : {kUnicode, kAnsi}) {
    ASSERT_EQ(m_file->Open(m_name.c_str(), encoding, kWrite | kTruncate), 0u);
    for (std::size_t i = 0; i < 300; ++i) {
      m_file->WriteLine(Text(i, QXT('\u00E9')).c_str());
    }
    ASSERT_EQ(m_file->Open(m_name.c_str(), kUnicode, kRead | kAdopt), 0u);
    CQXString line;
    for (std::size_t i = 0; i < 300; ++i) {
      ASSERT_EQ(m_file->ReadLine(line), 1);
      ASSERT_EQ(TextOf(line), Text(i, QXT('\u00E9')) + QXT("\r\n"));
    }
    EXPECT_EQ(ReadAll(), "[]");
  }
}

TEST(UnicodeAnsiFileObject, FollowsTheFactoryPattern) {
  CQXVUnicodeAnsiFile* file = QXV_ConstructUnicodeAnsiFile();
  ASSERT_NE(file, nullptr);
  CQXString line;
  EXPECT_EQ(file->ReadLine(line), 0);
  file->Close();
  QXV_DeleteTxtRW(file);  // any of the names
  const support::FailAllocation fail(0);
  EXPECT_EQ(QXV_ConstructUnicodeAnsiFile(), nullptr);
}

}  // namespace
