// unicode_ansi_file_convert_test.cpp - CQXVUnicodeAnsiFile: a file rewritten in the other encoding.

#include "qxv/factories.h"
#include "streams/text_bytes.h"
#include "streams/unicode_ansi_file.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using support::MarkedUtf16;
using support::ReadBytes;
using support::Text;
using support::TextOf;
using support::WriteBytes;

constexpr int kUnicode = 0;
constexpr int kAnsi = 1;
constexpr unsigned kRead = 1;
constexpr unsigned kWrite = 2;
constexpr unsigned kAdopt = 16;

// An open file whose encodings differ: what Open leaves only while it converts.
class Converting final : public CQXVUnicodeAnsiFileImpl {
 public:
  void Request(int encoding) { m_requested = encoding; }
};

class ConvertBase : public testing::Test {
 protected:
  std::string After(const std::string& bytes, int encoding, unsigned flags) {
    EXPECT_TRUE(WriteBytes(m_name, bytes));
    EXPECT_EQ(m_file.Open(m_name.c_str(), encoding, flags), 0u);
    m_file.Close();
    return ReadBytes(m_name);
  }

  support::TempFolder m_folder;
  Text m_name = m_folder.File(QXT("lines.txt"));
  Text m_target = m_folder.File(QXT("target.txt"));
  Converting m_file;
};
using UnicodeAnsiFileConvert = ConvertBase;
using UnicodeAnsiFileConvertKept = ConvertBase;

TEST_F(UnicodeAnsiFileConvert, AFileIsRewrittenInTheRequestedEncoding) {
  const std::string ansi = "\x80 a\r\nb";  // 1252
  const std::string unicode = MarkedUtf16(QXT("\u20AC a\r\nb"));
  for (const unsigned flags : {kRead, kWrite}) {
    EXPECT_EQ(After(unicode, kAnsi, flags), ansi) << flags;
    EXPECT_EQ(After(ansi, kUnicode, flags), unicode) << flags;
    EXPECT_EQ(After(ansi, kAnsi, flags), ansi) << flags;
    EXPECT_EQ(After(unicode, kUnicode, flags), unicode) << flags;
    EXPECT_EQ(After(unicode, kAnsi, flags | kAdopt), unicode) << flags;
    EXPECT_EQ(After(ansi, kUnicode, flags | kAdopt), ansi) << flags;
    EXPECT_EQ(After("", kUnicode, flags), "") << flags;
    EXPECT_EQ(After("\xFF\xFE", kAnsi, flags), "") << flags;
  }
}

TEST_F(UnicodeAnsiFileConvert, TheConvertedFileIsReadAndAppendedTo) {
  ASSERT_TRUE(WriteBytes(m_name, MarkedUtf16(QXT("a\r\nb"))));
  ASSERT_EQ(m_file.Open(m_name.c_str(), kAnsi, kRead), 0u);
  CQXString line;
  EXPECT_EQ(m_file.ReadLine(line), 1);
  EXPECT_EQ(TextOf(line), QXT("a\r\n"));
  ASSERT_EQ(m_file.Open(m_name.c_str(), kUnicode, kWrite), 0u);
  m_file.WriteLine(QXT("c"));
  m_file.Close();
  EXPECT_EQ(ReadBytes(m_name), MarkedUtf16(QXT("a\r\nbc\r\n")));
}

TEST_F(UnicodeAnsiFileConvert, WhatThePageLacksIsAQuestionMarkAndHalfAUnitIsDropped) {
  EXPECT_EQ(After(MarkedUtf16(QXT("a\u4E2D"
                                  "b")) +
                      "c",
                  kAnsi, kRead),
            "a?b");
}

TEST_F(UnicodeAnsiFileConvertKept, ConvertingDropsWhatFollowsAZeroCharacter) {
  EXPECT_EQ(After(std::string("ab\0cd", 5), kUnicode, kRead), MarkedUtf16(QXT("ab")));
  EXPECT_EQ(After(MarkedUtf16(Text(QXT("ab\0cd"), 5)), kAnsi, kRead), "ab");
}

TEST_F(UnicodeAnsiFileConvertKept, ConvertingAnOpenFileToATargetCreatesNothing) {
  ASSERT_TRUE(WriteBytes(m_name, "ab"));
  ASSERT_EQ(m_file.Open(m_name.c_str(), kAnsi, kRead), 0u);
  EXPECT_EQ(m_file.Convert(m_target.c_str()), 0u);
  EXPECT_EQ(m_file.Convert(nullptr), 0u);
  EXPECT_FALSE(support::Exists(m_target));
}

TEST_F(UnicodeAnsiFileConvert, AClosedObjectHasNothingToConvert) {
  EXPECT_EQ(m_file.Convert(nullptr), 0xFFFFFFFFu);
  EXPECT_EQ(m_file.Convert(QXT("")), 0xFFFFFFFFu);
  EXPECT_EQ(m_file.Convert(m_target.c_str()), 0u) << "its encodings agree";
  m_file.Request(kAnsi);
  EXPECT_EQ(m_file.Convert(m_target.c_str()), 0xFFFFFFFEu) << "there is nothing to read";
  EXPECT_FALSE(support::Exists(m_target));
}

TEST_F(UnicodeAnsiFileConvert, AnotherTargetGetsTheConvertedTextAndTheFileKeepsItsOwn) {
  ASSERT_TRUE(WriteBytes(m_name, "ab\r\n"));
  ASSERT_TRUE(WriteBytes(m_target, "a longer text than the converted one"));
  ASSERT_EQ(m_file.Open(m_name.c_str(), kAnsi, kWrite), 0u);
  m_file.Request(kUnicode);
  EXPECT_EQ(m_file.Convert(m_target.c_str()), 0u);
  EXPECT_EQ(ReadBytes(m_target), MarkedUtf16(QXT("ab\r\n")));
  EXPECT_EQ(ReadBytes(m_name), "ab\r\n");
  EXPECT_EQ(m_file.Convert(m_folder.File(QXT("none\\a.txt")).c_str()), 3u);
  m_file.Request(kAnsi);
  m_file.WriteLine(QXT("c"));
  EXPECT_EQ(ReadBytes(m_name), "ab\r\nc\r\n") << "the position is where it was";
}

TEST_F(UnicodeAnsiFileConvert, TheOwnNameInOtherCaseIsTheFileItself) {
  ASSERT_TRUE(WriteBytes(m_name, "ab"));
  ASSERT_EQ(m_file.Open(m_name.c_str(), kAnsi, kWrite), 0u);
  m_file.Request(kUnicode);
  EXPECT_EQ(m_file.Convert(m_folder.File(QXT("LINES.TXT")).c_str()), 0u);
  EXPECT_EQ(ReadBytes(m_name), MarkedUtf16(QXT("ab")));
}

}  // namespace
