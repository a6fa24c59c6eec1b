// unicode_ansi_file_test.cpp - CQXVUnicodeAnsiFile: opening, reading and writing lines.

#include "qxv/unicode_ansi_file.h"

#include "os/code_page.h"
#include "os/file.h"
#include "qxv/factories.h"
#include "streams/text_bytes.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using support::MarkedUtf16;
using support::ReadBytes;
using support::Text;
using support::TextOf;
using support::Utf16;
using support::WriteBytes;

constexpr int kUnicode = 0;
constexpr int kAnsi = 1;
constexpr unsigned kRead = 1;
constexpr unsigned kWrite = 2;
constexpr unsigned kAdopt = 16;
constexpr unsigned kTruncate = 32;

class UnicodeAnsiFileBase : public testing::Test {
 protected:
  UnicodeAnsiFileBase() : m_file(QXV_ConstructUnicodeAnsiFile()) {}
  ~UnicodeAnsiFileBase() override { QXV_DeleteUnicodeAnsiFile(m_file); }

  unsigned OpenWith(const std::string& bytes, int encoding, unsigned flags) {
    EXPECT_TRUE(WriteBytes(m_name, bytes));
    return m_file->Open(m_name.c_str(), encoding, flags);
  }

  // The lines up to the end, each in brackets.
  std::string ReadAll() {
    std::string all;
    CQXString line;
    for (int i = 0; m_file->ReadLine(line) == 1; ++i) {
      if (i == 100) {
        return "endless";
      }
      all += "[" + support::Printable(TextOf(line)) + "]";
    }
    return all;
  }

  support::TempFolder m_folder;
  Text m_name = m_folder.File(QXT("lines.txt"));
  CQXVUnicodeAnsiFile* m_file;
};
using UnicodeAnsiFile = UnicodeAnsiFileBase;
using UnicodeAnsiFileKept = UnicodeAnsiFileBase;
using UnicodeAnsiFileMalformed = UnicodeAnsiFileBase;
using UnicodeAnsiFileRoundTrip = UnicodeAnsiFileBase;

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
