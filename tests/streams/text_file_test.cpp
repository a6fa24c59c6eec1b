// text_file_test.cpp - CQXVtxtRW: opening, reading, counting.

#include "qxv/text_file.h"

#include "os/code_page.h"
#include "streams/text_bytes.h"
#include "streams/text_file_fixture.h"
#include "support/guard_new.h"
#include "support/string_words.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <string>
#include <vector>

namespace {

using support::MarkedUtf16;
using support::ReadBytes;
using support::Text;
using support::TextOf;
using support::Utf16;
using support::WriteBytes;

using TextFile = support::TextFileBase;
using TextFileKept = support::TextFileBase;
using TextFileMalformed = support::TextFileBase;

// ---- opening

TEST_F(TextFile, OpeningAMissingFileCreatesItEmptyAndAnsi) {
  EXPECT_EQ(m_file->Open(m_name.c_str()), 0);
  EXPECT_EQ(ReadBytes(m_name), "");
  EXPECT_EQ(m_file->GetLineCount(), 1);
  EXPECT_EQ(Read(), "/0");
  EXPECT_EQ(m_file->WriteLine(QXT("a")), 1);
  EXPECT_EQ(ReadBytes(m_name), "a\r\n");
}

TEST_F(TextFile, TheFirstTwoBytesDecideTheEncoding) {
  struct Row {
    const char* what;
    std::string bytes;
    const char* first;
  };
  const Row rows[] = {{"UTF-16", MarkedUtf16(QXT("ab")), "ab/2"},
                      {"the mark alone", "\xFF\xFE", "/0"},
                      {"big-endian is not known", std::string("\xFE\xFF\0a", 4), "\\u00FE\\u00FF/4"},
                      {"half a mark", "\xFF", "\\u00FF/1"},
                      {"a wrong second byte", "\xFF\xFF", "\\u00FF\\u00FF/2"},
                      {"UTF-8 is ANSI",
                       "\xEF\xBB\xBF"
                       "a",
                       "\\u00EF\\u00BB\\u00BFa/4"},
                      {"plain", "ab", "ab/2"}};
  for (const Row& row : rows) {
    EXPECT_EQ(OpenWith(row.bytes), 0) << row.what;
    EXPECT_EQ(Read(), row.first) << row.what;
    m_file->Close();
  }
}

TEST_F(TextFile, NothingWorksOnAFileThatCannotBeOpened) {
  const Text inNoFolder = m_folder.File(QXT("none\\a.txt"));
  std::filesystem::create_directory(support::NativePath(m_folder.File(QXT("folder"))));
  for (const Text& name : {inNoFolder, m_folder.File(QXT("folder")), Text()}) {
    EXPECT_EQ(m_file->Open(name.c_str()), -1) << support::Printable(name);
    EXPECT_EQ(Read(), "/0");
    CQXArray<CQXString, CQXString&> fields;
    EXPECT_EQ(m_file->ReadFields(fields, QXT(',')), 0);
    EXPECT_EQ(fields.GetSize(), 0);
    EXPECT_EQ(m_file->FindLine(QXT("a")), -1);
    CQXString line;
    EXPECT_EQ(m_file->FindAndReadLine(QXT("a"), line), 0);
    EXPECT_EQ(m_file->WriteLine(QXT("abc")), 0);
    EXPECT_EQ(m_file->WriteLine(QXT("a"), QXT("b")), 0);
    EXPECT_EQ(m_file->GetLineCount(), -1) << "the write did not count";
    m_file->Clear();
    m_file->Close();
  }
  EXPECT_FALSE(support::Exists(inNoFolder));
}

TEST_F(TextFile, AFailedOpenClosesWhatWasOpen) {
  ASSERT_EQ(OpenWith("a\r\nb\r\n"), 0);
  EXPECT_EQ(m_file->Open(m_folder.File(QXT("none\\a.txt")).c_str()), -1);
  EXPECT_EQ(Read(), "/0");
  std::error_code error;
  EXPECT_TRUE(std::filesystem::remove(support::NativePath(m_name), error)) << "nothing holds it";
}

TEST_F(TextFile, CloseMayComeTwiceAndTheFileMayBeOpenedAgain) {
  m_file->Close();
  ASSERT_EQ(OpenWith("a\r\n"), 0);
  m_file->Close();
  m_file->Close();
  EXPECT_EQ(m_file->GetLineCount(), -1);
  EXPECT_EQ(m_file->Open(m_name.c_str()), 0);
  EXPECT_EQ(Read(), "a/1");
}

TEST_F(TextFile, OpeningManyTimesLeavesNothingOpen) {
  for (int i = 0; i < 2000; ++i) {  // more than a process may have open
    ASSERT_EQ(m_file->Open(m_name.c_str()), 0) << i;
  }
}

TEST_F(TextFileKept, OpeningAgainKeepsLineIndexAndLineCount) {
  ASSERT_EQ(OpenWith("a\r\nb\r\n"), 0);
  EXPECT_EQ(m_file->GetLineCount(), 3);
  const Text other = m_folder.File(QXT("other.txt"));
  ASSERT_TRUE(WriteBytes(other, "x"));
  EXPECT_EQ(m_file->Open(other.c_str()), 0);
  EXPECT_EQ(m_file->GetLineCount(), 3);
}

// ---- reading

TEST_F(TextFile, UnicodeLinesReadUpToTheEndOfTheFile) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\r\nb"))), 0);
  EXPECT_EQ(Read(), "a/1");
  EXPECT_EQ(Read(), "b/1");
  EXPECT_EQ(Read(), "/0");
}

TEST_F(TextFile, OnlyACarriageReturnEndsALineAndTakesTheNextUnitAlong) {
  const Text text = QXT("a\nb\r\n\rXc\r\r\nd\r");
  for (const bool unicode : {false, true}) {
    ASSERT_EQ(OpenWith(unicode ? MarkedUtf16(text) : std::string(text.begin(), text.end())), 0);
    EXPECT_EQ(Read(), "a\nb/3");
    EXPECT_EQ(Read(), "/0") << "the empty line, whose end takes X";
    EXPECT_EQ(Read(), "c/1") << "ended by two carriage returns";
    EXPECT_EQ(Read(), "\nd/2");
    EXPECT_EQ(Read(), "/0");
    EXPECT_EQ(m_file->GetLineCount(), 5);
    m_file->Close();
  }
}

TEST_F(TextFile, AnAnsiLineCountsItsBytesAndIsConverted) {
  ASSERT_EQ(OpenWith("\x80\xE9\r\n"), 0);  // 1252
  EXPECT_EQ(Read(), "\\u20AC\\u00E9/2");
}

// Lengths that stay within the first block, leave it and come back to it, in a text that an application scribbled in.
TEST_F(TextFile, AReadLineLeavesTheBufferThatItsAssignmentLeaves) {
  const std::size_t lengths[] = {5, 127, 128,  0,   1, 129,  60,  300, 128, 2, 1000, 127,
                                 0, 3,   1100, 128, 1, 1200, 126, 64,  2,   0, 0,    1};
  std::string bytes;
  for (const std::size_t length : lengths) {
    bytes.append(length, static_cast<char>('a' + length % 26)).append("\r\n");
  }
  bytes.append(1000, 'z');  // so that the lines are not the last ones
  ASSERT_EQ(OpenWith(bytes), 0);
  CQXString line;
  CQXString expected;
  for (const std::size_t length : lengths) {
    for (CQXString* text : {&line, &expected}) {
      if (support::SlotOf(*text) == 128 && support::CapacityWord(*text) > 256) {
        support::BufferOf(*text)[200] = QXT('!');  // behind the words
      }
    }
    ASSERT_EQ(m_file->ReadLine(line), static_cast<int>(length));
    expected = Text(length, static_cast<QXChar>('a' + length % 26)).c_str();
    ASSERT_TRUE(support::SameBuffers(line, expected) || length == 0) << length;
    EXPECT_EQ(TextOf(line), TextOf(expected));
    EXPECT_EQ(support::CapacityWord(line), support::CapacityWord(expected)) << length;
  }
}

TEST_F(TextFile, ALineWithoutRoomForItsEndInTheReadAheadIsWhole) {
  for (std::size_t length = 120; length <= 135; ++length) {
    for (const std::string end : {"", "\r", "\r\n", "\r\nq"}) {
      ASSERT_EQ(OpenWith(std::string(length, 'a') + end), 0);
      EXPECT_EQ(Read(), std::string(length, 'a') + "/" + std::to_string(length)) << end.size();
      EXPECT_EQ(Read(), end.size() == 3 ? "q/1" : "/0") << length;
      m_file->Close();
    }
  }
}

TEST_F(TextFileMalformed, ZeroUnitsAreLeftOutOfAUnicodeLineButCounted) {
  ASSERT_EQ(OpenWith(MarkedUtf16(Text(QXT("a\0b\0\0c\r\n\0\r\nz"), 12))), 0);
  EXPECT_EQ(Read(), "abc/6");
  EXPECT_EQ(Read(), "/1");
  EXPECT_EQ(Read(), "z/1");
}

TEST_F(TextFileMalformed, AZeroByteCutsAnAnsiLineButIsCounted) {
  ASSERT_EQ(OpenWith(std::string("ab\0cd\r\n\0\r\nz", 11)), 0);
  EXPECT_EQ(Read(), "ab/5");
  EXPECT_EQ(Read(), "/1");
  EXPECT_EQ(Read(), "z/1");
}

TEST_F(TextFileMalformed, HalfAUnitAtTheEndIsIgnored) {
  for (const Text& text : {Text(QXT("a")), Text(QXT("a\r")), Text(QXT("a\r\n"))}) {
    ASSERT_EQ(OpenWith(MarkedUtf16(text) + "\r"), 0);
    EXPECT_EQ(Read(), "a/1");
    EXPECT_EQ(Read(), "/0");
    EXPECT_EQ(m_file->FindLine(QXT("x")), -1);
    EXPECT_EQ(m_file->GetLineCount(), text.size() == 1 ? 1 : 2);
    m_file->Close();
  }
}

TEST_F(TextFileMalformed, EveryPrefixOfATextReadsToItsEnd) {
  const std::string whole = MarkedUtf16(Text(QXT("ab\r\n\0c\r\n\x4E2D\r\r\n"), 12));
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    ASSERT_EQ(OpenWith(whole.substr(0, size)), 0);
    CQXString line;
    std::size_t units = 0;
    for (int i = 0; i < 6; ++i) {
      units += static_cast<std::size_t>(m_file->ReadLine(line));
    }
    EXPECT_LE(units, size) << size;
    EXPECT_EQ(m_file->ReadLine(line), 0) << size;
    m_file->Close();
  }
}

TEST_F(TextFile, LinesOfAllLengthsAroundTheReadAheadAreWhole) {
  constexpr std::size_t kReadAhead = 256 * 1024;
  for (const bool unicode : {false, true}) {
    const std::size_t units = unicode ? kReadAhead / 2 : kReadAhead;
    Text text;
    std::vector<std::size_t> lengths;
    for (std::size_t i = 0; i < 12; ++i) {
      lengths.push_back(units - 6 + i);
      lengths.push_back(i);
      lengths.push_back(3 * units - 6 + i);
    }
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      text += Text(lengths[i], QXChar('a' + i % 26)) + QXT("\r\n");
    }
    ASSERT_EQ(OpenWith(unicode ? MarkedUtf16(text) : std::string(text.begin(), text.end())), 0);
    CQXString line;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      ASSERT_EQ(m_file->ReadLine(line), static_cast<int>(lengths[i])) << i;
      ASSERT_TRUE(TextOf(line) == Text(lengths[i], QXChar('a' + i % 26))) << i;
    }
    EXPECT_EQ(m_file->ReadLine(line), 0);
    EXPECT_EQ(m_file->GetLineCount(), static_cast<int>(lengths.size()) + 1);
    m_file->Close();
  }
}

TEST_F(TextFile, ALineOfTenMillionCharactersReadsAndIsFound) {
  constexpr std::size_t kLength = 10'000'000;
  for (const bool unicode : {false, true}) {
    const Text text = Text(kLength, QXChar('x')) + QXT("y\r\nend");
    ASSERT_EQ(OpenWith(unicode ? MarkedUtf16(text) : std::string(text.begin(), text.end())), 0);
    EXPECT_EQ(m_file->FindLine(QXT("xy")), 1);
    CQXString line;
    EXPECT_EQ(m_file->ReadLine(line), static_cast<int>(kLength + 1));
    EXPECT_TRUE(TextOf(line) == Text(kLength, QXChar('x')) + QXT("y"));
    EXPECT_EQ(Read(), "end/3");
    EXPECT_EQ(m_file->WriteLine(line), static_cast<int>(kLength + 1));
    EXPECT_EQ(ReadBytes(m_name).size(), (unicode ? 2 : 0) + (unicode ? 2 : 1) * (2 * kLength + 9));
    m_file->Close();
  }
}

TEST_F(TextFile, WhatOthersAppendIsReadOnceItIsThere) {
  ASSERT_EQ(OpenWith("a\r\n"), 0);
  EXPECT_EQ(Read(), "a/1");
  EXPECT_EQ(Read(), "/0");
  CQXVtxtRW* other = QXV_ConstructTxtRW();
  ASSERT_EQ(other->Open(m_name.c_str()), 0);
  EXPECT_EQ(other->WriteLine(QXT("more")), 4);
  EXPECT_EQ(Read(), "more/4") << "a line is in the file when WriteLine returns";
  QXV_DeleteTxtRW(other);
}

TEST_F(TextFile, AReadThatFindsNoMemoryLeavesThePosition) {
  ASSERT_TRUE(qxv::os::CodePageExists(qxv::os::kCodePageAnsi)) << "its tables are made once, with memory at hand";
  for (const bool unicode : {false, true}) {
    const Text text = Text(400'000, QXT('a')) + QXT("\r\n") + Text(5000, QXT('b')) + QXT("\r\n");
    ASSERT_EQ(OpenWith(unicode ? MarkedUtf16(text) : std::string(text.begin(), text.end())), 0);
    std::size_t refusals = 0;
    for (bool refused = true; refused;) {
      CQXString line(QXT("old"));
      {
        const support::FailAllocation fail(refusals);
        try {
          EXPECT_EQ(m_file->ReadLine(line), 400'000);
          EXPECT_EQ(CQXString::Length(line), 400'000);
        } catch (const std::bad_alloc&) {
          EXPECT_EQ(TextOf(line), QXT("old"));
        }
        refused = fail.Refused();
      }
      refusals += refused ? 1 : 0;
      ASSERT_LT(refusals, 50u);
      m_file->Close();
      ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
    }
    EXPECT_GE(refusals, 3u) << "read-ahead, its growth and the line";
    // The object itself goes on behind a refusal.
    CQXString line;
    {
      const support::FailAllocation fail(1);
      EXPECT_THROW((void)m_file->ReadLine(line), std::bad_alloc);
    }
    EXPECT_EQ(m_file->ReadLine(line), 400'000);
    EXPECT_EQ(m_file->ReadLine(line), 5000);
    m_file->Close();
  }
}

// ---- counting

TEST_F(TextFile, CountingLeavesThePosition) {
  ASSERT_EQ(OpenWith("a\r\nb\r\nc"), 0);
  EXPECT_EQ(Read(), "a/1");
  EXPECT_EQ(m_file->GetLineCount(), 3);
  EXPECT_EQ(Read(), "b/1");
  EXPECT_EQ(Read(), "c/1");
}

TEST_F(TextFile, ACountOnceTakenIsKept) {
  ASSERT_EQ(OpenWith("a\r\nb\r\n"), 0);
  EXPECT_EQ(m_file->GetLineCount(), 3);
  ASSERT_TRUE(WriteBytes(m_name, "a"));
  EXPECT_EQ(m_file->GetLineCount(), 3);
  EXPECT_EQ(m_file->WriteLine(QXT("b")), 1);
  EXPECT_EQ(m_file->GetLineCount(), 4);
}

}  // namespace
