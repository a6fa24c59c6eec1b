// text_file_search_test.cpp - CQXVtxtRW: finding lines, on both sides of the position.

#include "qxv/factories.h"
#include "qxv/text_file.h"
#include "streams/text_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using support::Text;
using support::TextOf;

class TextFileFind : public testing::TestWithParam<bool> {  // whether the file is UTF-16
 protected:
  TextFileFind() : m_file(QXV_ConstructTxtRW()) {}
  ~TextFileFind() override { QXV_DeleteTxtRW(m_file); }

  void OpenWith(const Text& text) {
    ASSERT_TRUE(support::WriteBytes(m_name, GetParam() ? support::MarkedUtf16(text) : std::string(text.begin(), text.end())));
    ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
  }

  std::string Read() {
    CQXString line;
    (void)m_file->ReadLine(line);
    return support::Printable(TextOf(line));
  }

  support::TempFolder m_folder;
  Text m_name = m_folder.File(QXT("lines.txt"));
  CQXVtxtRW* m_file;
};
using TextFileFindKept = TextFileFind;

TEST_P(TextFileFind, StopsAtTheStartOfTheNextLineThatHoldsTheText) {
  OpenWith(QXT("ax\r\nb\r\ncx\r\n"));
  EXPECT_EQ(m_file->FindLine(QXT("x")), 1);
  EXPECT_EQ(Read(), "ax");
  EXPECT_EQ(m_file->FindLine(QXT("x")), 2) << "b and cx";
  EXPECT_EQ(Read(), "cx");
}

TEST_P(TextFileFind, CaseCountsAndTheTextMayStandAnywhereInTheLine) {
  OpenWith(QXT("Needle\r\nneedle\r\nhay needl\r\nhay needle hay\r\n"));
  EXPECT_EQ(m_file->FindLine(QXT("eedle ")), 4);
  EXPECT_EQ(Read(), "hay needle hay");
  EXPECT_EQ(m_file->FindLine(QXT("NEEDLE")), -1);
  EXPECT_EQ(m_file->FindLine(QXT("needle")), 2) << "from the start again";
  EXPECT_EQ(m_file->FindLine(QXT("Needle")), 4) << "through needle, needl and hay to the first line";
}

TEST_P(TextFileFind, NoMatchLeavesThePosition) {
  OpenWith(QXT("a\r\nb\r\nc\r\n"));
  EXPECT_EQ(Read(), "a");
  EXPECT_EQ(m_file->FindLine(QXT("x")), -1);
  EXPECT_EQ(m_file->FindLine(QXT("")), -1);
  EXPECT_EQ(m_file->FindLine(nullptr), -1);
  EXPECT_EQ(m_file->FindLine(QXT("b\r\nc")), -1) << "a match lies in one line";
  EXPECT_EQ(Read(), "b");
}

TEST_P(TextFileFind, AnEmptyFileHasNoMatch) {
  OpenWith(QXT(""));
  EXPECT_EQ(m_file->FindLine(QXT("x")), -1);
}

TEST_P(TextFileFindKept, FoundLinesAreCountedThroughTheWrap) {
  OpenWith(QXT("a\r\nx\r\nb\r\nc\r\n"));
  EXPECT_EQ(Read(), "a");
  EXPECT_EQ(Read(), "x");
  EXPECT_EQ(m_file->FindLine(QXT("x")), 4) << "b and c, then a and x";
  EXPECT_EQ(Read(), "x");
  EXPECT_EQ(m_file->FindLine(QXT("x")), 4) << "the same way once more";
}

TEST_P(TextFileFindKept, TheSearchFromTheStartReadsTheLineAtThePositionOnceMore) {
  OpenWith(QXT("a\r\nb\r\n"));
  EXPECT_EQ(Read(), "a");
  EXPECT_EQ(m_file->FindLine(QXT("a")), 2) << "b, then a";
  EXPECT_EQ(m_file->FindLine(QXT("a")), 1) << "at the start it is the first one read";
}

TEST_P(TextFileFindKept, AMatchInALastLineWithoutAnEndCountsOneLess) {
  OpenWith(QXT("x"));
  EXPECT_EQ(m_file->FindLine(QXT("x")), 0);
  m_file->Close();
  OpenWith(QXT("a\r\nb\r\nx"));
  EXPECT_EQ(m_file->FindLine(QXT("x")), 2);
  EXPECT_EQ(Read(), "x");
  EXPECT_EQ(m_file->FindLine(QXT("b")), 2) << "a and b, from the start";
}

TEST_P(TextFileFind, FindAndReadGivesTheLineFound) {
  OpenWith(QXT("one\r\ntwo\r\nthree\r\n"));
  CQXString line(QXT("old"));
  EXPECT_EQ(m_file->FindAndReadLine(QXT(""), line), 0);
  EXPECT_EQ(TextOf(line), QXT("old"));
  EXPECT_EQ(m_file->FindAndReadLine(QXT("hre"), line), 5);
  EXPECT_EQ(TextOf(line), QXT("three"));
  EXPECT_EQ(m_file->FindAndReadLine(QXT("none"), line), 0) << "the line at the position: the end";
  EXPECT_EQ(m_file->FindAndReadLine(QXT("one"), line), 3);
  EXPECT_EQ(m_file->FindAndReadLine(QXT("none"), line), 3);
  EXPECT_EQ(TextOf(line), QXT("two")) << "the line at the position";
  EXPECT_EQ(m_file->FindAndReadLine(line, line), 3) << "the text may be the line";
}

TEST_P(TextFileFind, EveryLineOfALongFileIsFoundFromTheOneBeforeIt) {
  Text text;
  for (int i = 0; i < 20000; ++i) {
    const std::string number = std::to_string(100000 + i);
    text += QXT("line ") + Text(number.begin(), number.end()) + QXT("\r\n");
  }
  OpenWith(text);
  for (int i = 0; i < 20000; ++i) {
    const std::string number = std::to_string(100000 + i);
    CQXString line;
    ASSERT_EQ(m_file->FindAndReadLine(Text(number.begin(), number.end()).c_str(), line), 11) << i;
    ASSERT_EQ(TextOf(line), QXT("line ") + Text(number.begin(), number.end())) << i;
  }
  EXPECT_EQ(m_file->FindLine(QXT("line 119999")), 20000);
}

TEST_P(TextFileFind, ATextBeyondTheBytesOfAnAnsiLineIsNotFound) {
  OpenWith(Text(QXT("ab\0cd\r\nef\r\n"), 11));
  EXPECT_EQ(m_file->FindLine(QXT("cd")), GetParam() ? 1 : -1) << "an ANSI line ends at its first zero";
  EXPECT_EQ(m_file->FindLine(QXT("abcd")), GetParam() ? 1 : -1) << "zero units are left out";
  EXPECT_EQ(m_file->FindLine(QXT("ef")), 2);
}

const auto kName = [](const testing::TestParamInfo<bool>& info) { return info.param ? "Utf16" : "Ansi"; };
INSTANTIATE_TEST_SUITE_P(Encodings, TextFileFind, testing::Bool(), kName);
INSTANTIATE_TEST_SUITE_P(Encodings, TextFileFindKept, testing::Bool(), kName);

}  // namespace
