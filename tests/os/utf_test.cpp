// utf_test.cpp - UTF-16 and UTF-8, for texts and for file names.

#include "os/utf.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv::os;
using namespace std::string_literals;

TEST(Utf, WellFormedTextsGoBothWays) {
  const struct {
    Text text;
    std::string bytes;
  } rows[] = {
      {QXT(""), ""},
      {QXT("a"), "a"},
      {QXT("\u007F\u0080"), "\x7F\xC2\x80"},
      {QXT("\u07FF\u0800"), "\xDF\xBF\xE0\xA0\x80"},
      {QXT("\uD7FF\uE000\uFFFF"), "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"},
      {QXT("\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {Text{QXT('a'), QXChar(0), QXT('b')}, "a\0b"s},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Utf8FromText(row.text), row.bytes) << support::Printable(row.text);
    EXPECT_EQ(TextFromUtf8(row.bytes), row.text) << support::Printable(row.text);
  }
}

TEST(Utf, UnpairedSurrogatesOfATextAreReplaced) {
  EXPECT_EQ(Utf8FromText(Text{QXT('a'), QXChar(0xD800), QXT('b')}), "a\xEF\xBF\xBD"s + "b");
  EXPECT_EQ(Utf8FromText(Text{QXChar(0xDC00), QXChar(0xD83C), QXChar(0xDFAC)}), "\xEF\xBF\xBD\xF0\x9F\x8E\xAC");
  EXPECT_EQ(Utf8FromText(Text{QXChar(0xD83C)}), "\xEF\xBF\xBD");
}

// Counted as Windows does, and as the code page tests measure it there.
TEST(Utf, IllFormedBytesOfATextAreReplacedPieceByPiece) {
  const struct {
    const char* what;
    std::string bytes;
    Text text;
  } rows[] = {
      {"lone continuation", "\x80", QXT("\uFFFD")},
      {"overlong slash", "\xC0\xAF", QXT("\uFFFD\uFFFD")},
      {"overlong of three", "\xE0\x80\xAF", QXT("\uFFFD\uFFFD")},
      {"surrogate", "\xED\xA0\x80", QXT("\uFFFD\uFFFD")},
      {"above the last", "\xF4\x90\x80\x80", QXT("\uFFFD\uFFFD\uFFFD")},
      {"cut at the end", "\xF0\x9F\x8E", QXT("\uFFFD")},
      {"cut by a letter", "\xE2\x82Z", QXT("\uFFFDZ")},
      {"never a byte", "\xFE\xFF", QXT("\uFFFD\uFFFD")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TextFromUtf8(row.bytes), row.text) << row.what;
  }
}

TEST(Utf, AnyBytesOfAFileNameComeBack) {
  const std::string pieces[] = {"a",
                                "\x80",
                                "\xFF",
                                "\xC3\xA9",
                                "\xC3",
                                "\xED\xA0\x80",
                                "\xED\xB0\x80",
                                "\xED\xB2\x80",
                                "\xF0\x9F\x8E\xAC",
                                "\xF0\x9F",
                                "\xED\xBF\xBF",
                                "\xEF\xBF\xBD"};
  for (const std::string& a : pieces) {
    for (const std::string& b : pieces) {
      for (const std::string& c : pieces) {
        const std::string bytes = a + b + c;
        std::string back;
        const Text name = FileNameFromUtf8(bytes);
        EXPECT_TRUE(FileNameToUtf8(name, back)) << testing::PrintToString(bytes);
        EXPECT_EQ(back, bytes) << support::Printable(name);
      }
    }
  }
}

TEST(Utf, UnitsOfAFileNameComeBackOrAreRefused) {
  const QXChar units[] = {QXT('a'),       QXChar(0xE9),   QXChar(0xD800), QXChar(0xDBFF), QXChar(0xDC00),
                          QXChar(0xDC80), QXChar(0xDCA9), QXChar(0xDCC3), QXChar(0xDFFF)};
  int refused = 0;
  for (const QXChar a : units) {
    for (const QXChar b : units) {
      for (const QXChar c : units) {
        const Text name{a, b, c};
        std::string bytes;
        if (FileNameToUtf8(name, bytes)) {
          EXPECT_EQ(FileNameFromUtf8(bytes), name) << support::Printable(name);
        } else {
          ++refused;
        }
      }
    }
  }
  EXPECT_LT(refused, 9 * 9 * 9 / 4) << "refusal is for the few that would name another file";
  std::string bytes;
  EXPECT_FALSE(FileNameToUtf8(Text{QXChar(0xDCC3), QXChar(0xDCA9)}, bytes)) << "would open the file U+00E9";
  EXPECT_FALSE(FileNameToUtf8(Text{QXT('a'), QXChar(0)}, bytes));
}

TEST(Utf, UnpairedSurrogatesOfAFileNameAreKept) {
  std::string bytes;
  ASSERT_TRUE(FileNameToUtf8(Text{QXT('x'), QXChar(0xD800)}, bytes));
  EXPECT_EQ(bytes, "x\xED\xA0\x80");
  ASSERT_TRUE(FileNameToUtf8(Text{QXChar(0xDCFF)}, bytes));
  EXPECT_EQ(bytes, "\xFF");
  EXPECT_EQ(FileNameFromUtf8("caf\xE9"), (Text{QXT('c'), QXT('a'), QXT('f'), QXChar(0xDCE9)})) << "a Latin-1 name";
}

}  // namespace
