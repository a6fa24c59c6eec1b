// unicode_ansi_file_test.cpp - CQXVUnicodeAnsiFile: opening and reading lines.

#include "qxv/unicode_ansi_file.h"

#include "os/code_page.h"
#include "os/file.h"
#include "streams/text_bytes.h"
#include "streams/unicode_ansi_file_fixture.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <string>

namespace {

using namespace support;

using UnicodeAnsiFile = UnicodeAnsiFileBase;
using UnicodeAnsiFileKept = UnicodeAnsiFileBase;
using UnicodeAnsiFileMalformed = UnicodeAnsiFileBase;

TEST(UnicodeAnsiFileConstants, HaveTheirNumbers) {
  EXPECT_EQ(EQXV_ENCODING_UNICODE, 0);
  EXPECT_EQ(EQXV_ENCODING_ANSI, 1);
  EXPECT_EQ(EQXV_TEXTFILE_READ, 1u);
  EXPECT_EQ(EQXV_TEXTFILE_WRITE, 2u);
  EXPECT_EQ(EQXV_TEXTFILE_ADOPT, 16u);
  EXPECT_EQ(EQXV_TEXTFILE_TRUNCATE, 32u);
}

// ---- opening

TEST_F(UnicodeAnsiFile, OneOfReadingAndWritingMustBeAskedFor) {
  for (const unsigned flags : {0u, 3u, 16u, 35u}) {
    EXPECT_EQ(m_file->Open(m_name.c_str(), kAnsi, flags), 0xFFFFFFFFu) << flags;
  }
  EXPECT_FALSE(support::Exists(m_name));
}

TEST_F(UnicodeAnsiFile, ABadModeClosesWhatWasOpen) {
  ASSERT_EQ(OpenWith("a", kAnsi, kRead), 0u);
  EXPECT_EQ(m_file->Open(m_name.c_str(), kAnsi, 0), 0xFFFFFFFFu);
  EXPECT_EQ(ReadAll(), "");
}

TEST_F(UnicodeAnsiFile, OpeningAMissingFileForReadingCreatesItEmpty) {
  EXPECT_EQ(m_file->Open(m_name.c_str(), kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "");
  EXPECT_EQ(ReadBytes(m_name), "");
}

TEST_F(UnicodeAnsiFile, FailuresAreTheSystemsNumbersAndCreateThrowsOne) {
  std::filesystem::create_directory(support::NativePath(m_folder.File(QXT("folder"))));
  EXPECT_EQ(m_file->Open(m_folder.File(QXT("none\\a.txt")).c_str(), kAnsi, kRead), 3u);
  EXPECT_EQ(m_file->Open(m_folder.File(QXT("folder")).c_str(), kAnsi, kWrite), 5u);
  EXPECT_NE(m_file->Open(nullptr, kAnsi, kRead), 0u);
  EXPECT_NE(m_file->Open(QXT(""), kAnsi, kRead), 0u);
  try {
    m_file->Create(m_folder.File(QXT("none\\a.txt")).c_str(), kAnsi, kRead);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const int thrown) {
    EXPECT_EQ(thrown, 1);
  }
  m_file->Create(m_name.c_str(), kAnsi, kWrite);
  m_file->WriteLine(QXT("a"));
  m_file->Close();
  EXPECT_EQ(ReadBytes(m_name), "a\r\n");
}

TEST_F(UnicodeAnsiFile, WhatOthersHoldAloneIsASharingViolation) {
  qxv::os::File other;
  qxv::os::OpenOptions options;
  options.access = qxv::os::FileAccess::ReadWrite;
  options.disposition = qxv::os::FileDisposition::CreateAlways;
  options.share = qxv::os::kShareNone;
  ASSERT_EQ(other.Open(m_name.c_str(), options), 0u);
  EXPECT_EQ(m_file->Open(m_name.c_str(), kAnsi, kRead), 32u);
}

TEST_F(UnicodeAnsiFile, AFileOfOneByteIsAnsiWhenRead) {
  EXPECT_EQ(OpenWith("\xE9", kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[\\u00E9]");
  EXPECT_EQ(ReadBytes(m_name), std::string("\xFF\xFE\xE9\0", 4));
}

TEST_F(UnicodeAnsiFile, AnyOtherEncodingNumberIsAnsi) {
  EXPECT_EQ(OpenWith(MarkedUtf16(QXT("a")), 7, kRead), 0u);
  EXPECT_EQ(ReadBytes(m_name), "a");
  EXPECT_EQ(ReadAll(), "[a]");
}

TEST_F(UnicodeAnsiFile, OpeningManyTimesLeavesNothingOpen) {
  for (int i = 0; i < 2000; ++i) {  // more than a process may have open
    ASSERT_EQ(m_file->Open(m_name.c_str(), i % 2, i % 3 == 0 ? kRead : kWrite), 0u) << i;
    EXPECT_EQ(m_file->Open(m_folder.File(QXT("none\\a.txt")).c_str(), kAnsi, kRead), 3u);
  }
}

TEST_F(UnicodeAnsiFileKept, ResetForgetsAnOpenFileWithoutClosingIt) {
  ASSERT_EQ(OpenWith("a", kAnsi, kRead), 0u);
  EXPECT_EQ(m_file->Reset(), 0);
  EXPECT_EQ(ReadAll(), "");
  m_file->WriteLine(QXT("b"));
  m_file->Close();
  qxv::os::OpenOptions alone;
  alone.share = qxv::os::kShareNone;
  qxv::os::File other;
  EXPECT_EQ(other.Open(m_name.c_str(), alone), 32u) << "the lost handle still holds the file";
  EXPECT_EQ(ReadBytes(m_name), "a");
}

// ---- reading

TEST_F(UnicodeAnsiFile, AnsiLinesKeepTheirEnds) {
  ASSERT_EQ(OpenWith("a\r\nb", kAnsi, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a\r\n][b]");
  CQXString line(QXT("old"));
  EXPECT_EQ(m_file->ReadLine(line), 0);
  EXPECT_EQ(TextOf(line), QXT(""));
}

TEST_F(UnicodeAnsiFile, UnicodeLinesKeepTheirEnds) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\r\n\u4E2D\nb")), kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a\r\n][\\u4E2D\n][b]");
}

TEST_F(UnicodeAnsiFile, AnsiBytesAreConverted) {
  ASSERT_EQ(OpenWith("\x80\xE9\n\xFC", kAnsi, kRead), 0u);  // 1252
  EXPECT_EQ(ReadAll(), "[\\u20AC\\u00E9\n][\\u00FC]");
}

TEST_F(UnicodeAnsiFileKept, ATextThatEndsWithALineEndHasOneMoreLine) {
  ASSERT_EQ(OpenWith("a\r\n", kAnsi, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a\r\n][]");
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\n")), kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a\n][]");
}

TEST_F(UnicodeAnsiFileKept, AUnitWithTheLowByteOfALineFeedEndsTheLine) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\u010A"
                                     "b\u4E0A"
                                     "c")),
                     kUnicode, kRead),
            0u);
  EXPECT_EQ(ReadAll(), "[a\\u010A][b\\u4E0A][c]");
}

TEST_F(UnicodeAnsiFileKept, AUnitWithALowByteOfZeroEndsTheLine) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\u0100"
                                     "b\u4E00")),
                     kUnicode, kRead),
            0u);
  EXPECT_EQ(ReadAll(), "[a\\u0100][b\\u4E00][]");
}

TEST_F(UnicodeAnsiFileMalformed, AZeroEndsALine) {
  ASSERT_EQ(OpenWith(std::string("a\0b\0\0c", 6), kAnsi, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a][b][][c]");
  ASSERT_EQ(OpenWith(MarkedUtf16(Text(QXT("a\0\0b"), 4)), kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a][][b]");
}

TEST_F(UnicodeAnsiFileMalformed, TheMarkAloneHasNoLines) {
  ASSERT_EQ(OpenWith("\xFF\xFE", kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "");
}

TEST_F(UnicodeAnsiFileMalformed, HalfAUnitAtTheEndIsReadWithAZeroByte) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a")) + "b", kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[ab]");
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a")) + "\n", kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[a\n]");
  ASSERT_EQ(OpenWith("\xFF\xFE"
                     "c",
                     kUnicode, kRead),
            0u);
  EXPECT_EQ(ReadAll(), "[c]");
  ASSERT_EQ(OpenWith(std::string("\xFF\xFE\0", 3), kUnicode, kRead), 0u);
  EXPECT_EQ(ReadAll(), "[]");
}

TEST_F(UnicodeAnsiFileMalformed, FilesOfWholePagesEndWithoutReadingBehindThem) {
  for (const std::size_t size : {4096u, 8192u, 65536u}) {
    ASSERT_EQ(OpenWith(std::string(size, 'x'), kAnsi, kRead), 0u);
    CQXString line;
    EXPECT_EQ(m_file->ReadLine(line), 1);
    EXPECT_EQ(line.GetLength(), static_cast<int>(size));
    EXPECT_EQ(m_file->ReadLine(line), 0);
    ASSERT_EQ(OpenWith(MarkedUtf16(Text(size / 2 - 2, QXT('x')) + QXT("\n")), kUnicode, kRead), 0u);
    EXPECT_EQ(m_file->ReadLine(line), 1);
    EXPECT_EQ(m_file->ReadLine(line), 1);
    EXPECT_EQ(line.GetLength(), 0);
    EXPECT_EQ(m_file->ReadLine(line), 0);
  }
}

TEST_F(UnicodeAnsiFileMalformed, EveryPrefixReadsToItsEnd) {
  const std::string unicode = MarkedUtf16(Text(QXT("ab\r\n\0\u010A\u4E2D\n"), 8));
  const std::string ansi("a\r\n\0\xE9\n\nz", 8);
  for (std::size_t size = 0; size <= unicode.size(); ++size) {
    ASSERT_EQ(OpenWith(unicode.substr(0, size), kUnicode, kRead | kAdopt), 0u);
    EXPECT_NE(ReadAll(), "endless") << size;
    EXPECT_EQ(ReadBytes(m_name), unicode.substr(0, size)) << "adopting changes nothing";
  }
  for (std::size_t size = 0; size <= ansi.size(); ++size) {
    ASSERT_EQ(OpenWith(ansi.substr(0, size), kAnsi, kRead | kAdopt), 0u);
    EXPECT_NE(ReadAll(), "endless") << size;
  }
}

TEST_F(UnicodeAnsiFile, AFileCutByOthersWhileItIsReadStillGivesItsLines) {
  const std::string bytes = std::string(100'000, 'x') + "\n" + std::string(100'000, 'y');
  ASSERT_EQ(OpenWith(bytes, kAnsi, kRead), 0u);
  ASSERT_TRUE(WriteBytes(m_name, ""));
  CQXString line;
  EXPECT_EQ(m_file->ReadLine(line), 1);
  EXPECT_EQ(line.GetLength(), 100'001);
  EXPECT_EQ(m_file->ReadLine(line), 1);
  EXPECT_EQ(line.GetLength(), 100'000);
  EXPECT_EQ(m_file->ReadLine(line), 0);
}

TEST_F(UnicodeAnsiFile, ALineOfTenMillionCharactersReads) {
  constexpr std::size_t kLength = 10'000'000;
  const Text text = Text(kLength, QXT('x')) + QXT("\nend");
  CQXString line;
  for (const int encoding : {kUnicode, kAnsi}) {
    ASSERT_EQ(OpenWith(encoding == kUnicode ? MarkedUtf16(text) : std::string(text.begin(), text.end()), encoding, kRead), 0u);
    EXPECT_EQ(m_file->ReadLine(line), 1);
    EXPECT_EQ(line.GetLength(), static_cast<int>(kLength) + 1);
    EXPECT_EQ(ReadAll(), "[end]");
  }
}

TEST_F(UnicodeAnsiFile, AReadThatFindsNoMemoryLeavesThePosition) {
  ASSERT_EQ(OpenWith(MarkedUtf16(Text(5000, QXT('a')) + QXT("\nb")), kUnicode, kRead), 0u);
  CQXString line;
  {
    const support::FailAllocation fail(0);
    EXPECT_THROW((void)m_file->ReadLine(line), std::bad_alloc);
  }
  EXPECT_EQ(m_file->ReadLine(line), 1);
  EXPECT_EQ(line.GetLength(), 5001);
  EXPECT_EQ(ReadAll(), "[b]");
}

TEST_F(UnicodeAnsiFile, AnOpenThatFindsNoMemoryHoldsNothing) {
  ASSERT_TRUE(qxv::os::CodePageExists(qxv::os::kCodePageThreadAnsi)) << "its tables are made once, with memory at hand";
  ASSERT_TRUE(WriteBytes(m_name, "a\r\nb"));
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    ASSERT_LT(index, 50u);
    unsigned result = 0;
    {
      const support::FailAllocation fail(index);
      try {
        result = m_file->Open(m_name.c_str(), kUnicode, kRead);
      } catch (const std::bad_alloc&) {
        result = 1;
      }
      refused = fail.Refused();
    }
    EXPECT_EQ(result != 0, refused) << index;
    if (refused) {
      qxv::os::OpenOptions alone;
      alone.share = qxv::os::kShareNone;
      qxv::os::File other;
      EXPECT_EQ(other.Open(m_name.c_str(), alone), 0u) << index;
    }
  }
  EXPECT_EQ(ReadAll(), "[a\r\n][b]");
}

}  // namespace
