// text_file_write_test.cpp - CQXVtxtRW: fields, writing, emptying; the object.

#include "qxv/text_file.h"

#include "streams/text_bytes.h"
#include "streams/text_file_fixture.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using support::MarkedUtf16;
using support::ReadBytes;
using support::Text;
using support::TextOf;

using TextFile = support::TextFileBase;
using TextFileKept = support::TextFileBase;
using TextFileRoundTrip = support::TextFileBase;

// ---- fields

TEST_F(TextFile, FieldsAreAppendedToWhatTheArrayHolds) {
  ASSERT_EQ(OpenWith("a,,b\r\nlast"), 0);
  CQXArray<CQXString, CQXString&> fields;
  CQXString kept(QXT("kept"));
  fields.Add(kept);
  EXPECT_EQ(m_file->ReadFields(fields, QXT(',')), 4);
  ASSERT_EQ(fields.GetSize(), 4);
  EXPECT_EQ(TextOf(fields[0]), QXT("kept"));
  EXPECT_EQ(TextOf(fields[1]), QXT("a"));
  EXPECT_EQ(TextOf(fields[2]), QXT(""));
  EXPECT_EQ(TextOf(fields[3]), QXT("b"));
  EXPECT_EQ(m_file->ReadFields(fields, 0), 4) << "no separator: the line is the field";
  EXPECT_EQ(TextOf(fields[4]), QXT("last"));
  EXPECT_EQ(m_file->ReadFields(fields, QXT(',')), 0);
  EXPECT_EQ(fields.GetSize(), 5);
}

TEST_F(TextFile, ABlankLineIsReadButGivesNoFields) {
  ASSERT_EQ(OpenWith("\r\na\r\n"), 0);
  CQXArray<CQXString, CQXString&> fields;
  EXPECT_EQ(m_file->ReadFields(fields, QXT(',')), 0);
  EXPECT_EQ(fields.GetSize(), 0);
  EXPECT_EQ(m_file->ReadFields(fields, QXT(',')), 1);
  EXPECT_EQ(fields.GetSize(), 1);
}

TEST_F(TextFile, FieldsAreWrittenWithTheSeparatorBetweenThem) {
  ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
  CQXArray<CQXString, CQXString&> fields;
  EXPECT_EQ(m_file->WriteLine(fields, QXT(';')), 0);
  EXPECT_EQ(ReadBytes(m_name), "");
  for (const QXChar* text : {QXT("one"), QXT(""), QXT("three")}) {
    CQXString field(text);
    fields.Add(field);
  }
  EXPECT_EQ(m_file->WriteLine(fields, QXT(';')), 10);
  EXPECT_EQ(ReadBytes(m_name), "one;;three\r\n");
}

// ---- writing

TEST_F(TextFile, WritesGoToTheEndWhereverReadingIs) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\r\nb\r\n"))), 0);
  EXPECT_EQ(Read(), "a/1");
  EXPECT_EQ(m_file->WriteLine(QXT("\x4E2D"
                                  "c")),
            2);
  EXPECT_EQ(ReadBytes(m_name), MarkedUtf16(QXT("a\r\nb\r\n\x4E2D"
                                               "c\r\n")));
  EXPECT_EQ(Read(), "/0") << "the position is at the end now";
  EXPECT_EQ(m_file->FindLine(QXT("b")), 2) << "from the start again";
  EXPECT_EQ(Read(), "b/1");
}

TEST_F(TextFileKept, WritingWithAnUnknownCountMakesItZero) {
  ASSERT_EQ(OpenWith("a\r\nb\r\n"), 0);
  EXPECT_EQ(Read(), "a/1");
  EXPECT_EQ(m_file->WriteLine(QXT("c")), 1);
  EXPECT_EQ(m_file->GetLineCount(), 0);
  EXPECT_EQ(m_file->WriteLine(QXT("d")), 1);
  EXPECT_EQ(m_file->GetLineCount(), 1);
}

TEST_F(TextFile, TwoTextsAreWrittenAsOneLine) {
  ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
  EXPECT_EQ(m_file->WriteLine(QXT("ab"), QXT("cd")), 4);
  EXPECT_EQ(m_file->WriteLine(nullptr, QXT("e")), 1);
  EXPECT_EQ(m_file->WriteLine(QXT("f"), nullptr), 1);
  EXPECT_EQ(m_file->WriteLine(nullptr), 0);
  EXPECT_EQ(m_file->WriteLine(QXT("")), 0);
  EXPECT_EQ(ReadBytes(m_name), "abcd\r\ne\r\nf\r\n\r\n\r\n");
}

TEST_F(TextFile, LineEndsInATextAreWrittenAndCountAsOneLine) {
  ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
  EXPECT_EQ(m_file->GetLineCount(), 1);
  EXPECT_EQ(m_file->WriteLine(QXT("a\r\nb")), 4);
  EXPECT_EQ(m_file->GetLineCount(), 2);
  EXPECT_EQ(ReadBytes(m_name), "a\r\nb\r\n");
}

TEST_F(TextFile, AnsiTextLongerThan4096CharactersIsWrittenWhole) {
  ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
  EXPECT_EQ(m_file->WriteLine(Text(9000, QXT('\u20AC')).c_str()), 9000);
  EXPECT_EQ(ReadBytes(m_name), std::string(9000, '\x80') + "\r\n");
}

TEST_F(TextFile, ACharacterThatThePageLacksIsWrittenAsAQuestionMark) {
  ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
  EXPECT_EQ(m_file->WriteLine(QXT("a\u4E2D"
                                  "b")),
            3);
  EXPECT_EQ(ReadBytes(m_name), "a?b\r\n");
}

TEST_F(TextFileRoundTrip, WrittenLinesReadBack) {
  for (const bool unicode : {false, true}) {
    ASSERT_EQ(OpenWith(unicode ? "\xFF\xFE" : ""), 0);
    for (int i = 0; i < 500; ++i) {
      ASSERT_EQ(m_file->WriteLine(Text(static_cast<std::size_t>(i), QXT('\u00E9')).c_str()), i);
    }
    m_file->Close();
    ASSERT_EQ(m_file->Open(m_name.c_str()), 0);
    CQXString line;
    for (int i = 0; i < 500; ++i) {
      ASSERT_EQ(m_file->ReadLine(line), i);
      ASSERT_EQ(TextOf(line), Text(static_cast<std::size_t>(i), QXT('\u00E9')));
    }
    EXPECT_EQ(m_file->GetLineCount(), 501);
    m_file->Close();
  }
}

// ---- emptying

TEST_F(TextFile, ClearLeavesTheMarkOfAUnicodeFileOnly) {
  ASSERT_EQ(OpenWith(MarkedUtf16(QXT("a\r\nb"))), 0);
  m_file->Clear();
  EXPECT_EQ(ReadBytes(m_name), "\xFF\xFE");
  EXPECT_EQ(m_file->GetLineCount(), 1);
  EXPECT_EQ(m_file->WriteLine(QXT("c")), 1);
  EXPECT_EQ(m_file->GetLineCount(), 2);
  EXPECT_EQ(ReadBytes(m_name), MarkedUtf16(QXT("c\r\n")));
}

TEST_F(TextFile, ClearEmptiesAnAnsiFile) {
  ASSERT_EQ(OpenWith("a\r\nb"), 0);
  m_file->Clear();
  EXPECT_EQ(ReadBytes(m_name), "");
  EXPECT_EQ(Read(), "/0");
  EXPECT_EQ(m_file->WriteLine(QXT("\u00E9")), 1);
  EXPECT_EQ(ReadBytes(m_name), "\xE9\r\n");
}

TEST_F(TextFile, ClearThatCannotOpenTheFileAgainLeavesTheObjectClosed) {
  const Text folder = m_folder.File(QXT("sub"));
  std::filesystem::create_directory(support::NativePath(folder));
  ASSERT_EQ(m_file->Open((folder + QXT("\\a.txt")).c_str()), 0);
  std::error_code error;
  std::filesystem::rename(support::NativePath(folder), support::NativePath(m_folder.File(QXT("moved"))), error);
  if (error) {
    GTEST_SKIP() << "this system does not move a folder in which a file is open";
  }
  m_file->Clear();
  EXPECT_EQ(m_file->WriteLine(QXT("x")), 0);
  EXPECT_EQ(m_file->GetLineCount(), -1);
  m_file->Clear();
}

TEST_F(TextFile, AssigningAnotherLeavesBothAsTheyAre) {
  ASSERT_EQ(OpenWith("a\r\n"), 0);
  CQXVtxtRW* closed = QXV_ConstructTxtRW();
  *closed = *m_file;
  EXPECT_EQ(closed->GetLineCount(), -1) << "still without a file";
  *m_file = *closed;
  EXPECT_EQ(m_file->GetLineCount(), 2) << "still with its own: one line end";
  QXV_DeleteTxtRW(closed);
}

TEST(TextFileObject, CopiesAndReleaseFollowTheFactoryPattern) {
  CQXVtxtRW* file = QXV_ConstructTxtRW();
  ASSERT_NE(file, nullptr);
  CQXVObject* object = file;
  EXPECT_EQ(dynamic_cast<CQXVtxtRW*>(object), file);
  QXV_DeleteMD5(file);  // any of the names
  const support::FailAllocation fail(0);
  EXPECT_EQ(QXV_ConstructTxtRW(), nullptr);
}

}  // namespace
