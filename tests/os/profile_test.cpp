// profile_test.cpp - single values of initialisation files: one table of rules for the system's service and for our reader.

#include "os/profile.h"

#include "os/file.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/utf16_bytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <span>
#include <string>

namespace {

using support::Printable;
using support::Text;

struct Row {
  const char* what;
  std::string bytes;
  Text text;  // empty: no such value
  std::int32_t integer = 0;
  const QXChar* section = QXT("s");
  const QXChar* key = QXT("k");
};

/// A value of the key k in the section s.
std::string Value(const std::string& value) { return "[s]\r\nk=" + value + "\r\n"; }

std::string Marked(const Text& text) { return "\xFF\xFE" + support::Utf16Le(text); }

class Profile : public testing::Test {
 protected:
  void ExpectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
      ASSERT_TRUE(support::WriteBytes(m_name, row.bytes));
      QXChar text[1024];
      const std::size_t length = qxv::os::ReadProfileText(m_name.c_str(), row.section, row.key, text);
      EXPECT_EQ(Printable(text), Printable(row.text)) << row.what;
      EXPECT_EQ(length, row.text.size()) << row.what;
      EXPECT_EQ(qxv::os::ReadProfileInteger(m_name.c_str(), row.section, row.key), row.integer) << row.what;
    }
  }

  support::TempFolder m_folder;
  Text m_name = m_folder.File(QXT("values.ini"));
};

TEST_F(Profile, BlanksAroundAValueAreDropped) {
  ExpectRows({
      {"plain", Value("abc"), QXT("abc")},
      {"spaces", Value("  abc  "), QXT("abc")},
      {"tabs", Value("\tabc\t"), QXT("abc")},
      {"vertical tab and form feed", Value("\v a \f"), QXT("a")},
      {"the end-of-text character", Value("\x1A a \x1A"), QXT("a")},
      {"inside they stay",
       Value("a  b\tc\x1A"
             "d"),
       QXT("a  b\tc\x1A"
           "d")},
      {"nothing", Value(""), QXT("")},
      {"blanks only", Value(" \t "), QXT("")},
      {"other controls are no blanks",
       Value("\x1F"
             "a\x1F"),
       QXT("\x1F"
           "a\x1F")},
      {"a no-break space is none",
       Value("\xA0"
             "a\xA0"),
       QXT("\u00A0a\u00A0")},
      {"a wide space is none", Marked(QXT("[s]\nk=\u3000a\u2028\n")), QXT("\u3000a\u2028")},
  });
}

TEST_F(Profile, OnePairOfEqualQuotesIsDropped) {
  ExpectRows({
      {"quotation marks", Value("\"abc\""), QXT("abc")},
      {"apostrophes", Value("'abc'"), QXT("abc")},
      {"blanks inside stay", Value("  \" abc \"  "), QXT(" abc ")},
      {"a blank alone", Value("\" \""), QXT(" ")},
      {"opening only", Value("\"abc"), QXT("\"abc")},
      {"closing only", Value("abc\""), QXT("abc\"")},
      {"unequal", Value("\"abc'"), QXT("\"abc'")},
      {"one pair only", Value("\"\"abc\"\""), QXT("\"abc\"")},
      {"one inside the other", Value("'\"abc\"'"), QXT("\"abc\"")},
      {"three", Value("\"\"\""), QXT("\"")},
      {"a pair with nothing in it", Value("\"\""), QXT("")},
      {"apostrophes with nothing in them", Value("''"), QXT("")},
      {"one alone", Value("\""), QXT("\"")},
      {"text behind the pair", Value("\"a\" b"), QXT("\"a\" b")},
      {"inside a word", Value("it's"), QXT("it's")},
      {"apostrophe between apostrophes", Value("'a'b'"), QXT("a'b")},
  });
}

TEST_F(Profile, NothingInAValueIsSpecial) {
  ExpectRows({
      {"semicolon", Value("a;b"), QXT("a;b")},
      {"semicolon behind a blank", Value("a ;b"), QXT("a ;b")},
      {"semicolon in front", Value(";b"), QXT(";b")},
      {"number sign", Value("#b"), QXT("#b")},
      {"brackets", Value("[b]"), QXT("[b]")},
      {"equals signs", Value("a=b=c"), QXT("a=b=c")},
      {"an equals sign in front", Value("= b"), QXT("= b")},
      {"backslash", Value("\\n"), QXT("\\n")},
      {"percent signs", Value("%PATH%"), QXT("%PATH%")},
      {"a bracketed value begins no section", "[s]\nj=[t]\nk=1\n", QXT("1"), 1},
  });
}

TEST_F(Profile, LinesEndAtEitherLineEnd) {
  ExpectRows({
      {"CR LF", "[s]\r\nk=1\r\n", QXT("1"), 1},
      {"LF", "[s]\nk=1\n", QXT("1"), 1},
      {"CR", "[s]\rk=1\r", QXT("1"), 1},
      {"LF CR", "[s]\n\rk=1\n\r", QXT("1"), 1},
      {"CR in a value", "[s]\nj=2\rk=1\n", QXT("1"), 1},
      {"no final line end", "[s]\nk=1", QXT("1"), 1},
      {"empty lines", "\n\n[s]\n\n \n\t\nk=1\n", QXT("1"), 1},
      {"a form feed ends no line", "[s]\fk=1\n", QXT("")},
      {"a vertical tab is a blank", "[s]\n\vk=1\n", QXT("1"), 1},
      {"other separators end none", Marked(QXT("[s]\nk=a\u2028b\u0085c\n")), QXT("a\u2028b\u0085c")},
  });
}

TEST_F(Profile, KeysAreFoundByTheirTrimmedName) {
  ExpectRows({
      {"blanks around it", "[s]\n  k  =  1\n", QXT("1"), 1},
      {"tabs around it", "[s]\n\tk\t=\t1\n", QXT("1"), 1},
      {"case", "[s]\nKeY=1\n", QXT("1"), 1, QXT("S"), QXT("kEy")},
      {"blanks in the question", "[s]\nk=1\n", QXT("1"), 1, QXT("s"), QXT(" k\t")},
      {"blanks inside", "[s]\na b=1\n", QXT("1"), 1, QXT("s"), QXT("a b")},
      {"blanks inside count", "[s]\na b=1\n", QXT(""), 0, QXT("s"), QXT("ab")},
      {"a longer one is another", "[s]\nkk=2\nk=1\n", QXT("1"), 1},
      {"a shorter one is another", "[s]\nk=2\nkk=1\n", QXT("1"), 1, QXT("s"), QXT("kk")},
      {"quotes belong to it", "[s]\n\"k\"=1\nk=2\n", QXT("1"), 1, QXT("s"), QXT("\"k\"")},
      {"it ends at the first equals sign", "[s]\na=b=1\n", QXT(""), 0, QXT("s"), QXT("a=b")},
      {"missing", "[s]\nj=1\n", QXT("")},
      {"in another section", "[s]\nj=1\n[t]\nk=2\n", QXT("")},
      {"other letters", "[s]\n\xE9=1\n", QXT("1"), 1, QXT("s"), QXT("\u00E9")},
      {"an opening bracket in front", "[s]\n[k=1\n", QXT("1"), 1, QXT("s"), QXT("[k")},
      {"a blank name asks for the key without one", "[s]\n\n=3\n", QXT("3"), 3, QXT("s"), QXT(" ")},
  });
}

TEST_F(Profile, TheFirstKeyOfANameCounts) {
  ExpectRows({
      {"two of them", "[s]\nk=1\nk=2\n", QXT("1"), 1},
      {"in another case", "[s]\nK=1\nk=2\n", QXT("1"), 1},
      {"the first one is empty", "[s]\nk=\nk=2\n", QXT("")},
      {"the first one has no equals sign", "[s]\nk\nk=2\n", QXT("")},
  });
}

TEST_F(Profile, OnlyTheFirstSectionOfANameIsSearched) {
  ExpectRows({
      {"the key is in the second", "[s]\na=1\n[s]\nk=2\n", QXT("")},
      {"the first is empty", "[s]\n[t]\na=1\n[s]\nk=2\n", QXT("")},
      {"in another case", "[S]\na=1\n[s]\nk=2\n", QXT("")},
      {"both have the key", "[s]\nk=1\n[t]\n[s]\nk=2\n", QXT("1"), 1},
      {"no section at all", "k=1\n", QXT("")},
      {"in front of the section", "k=1\n[s]\nk=2\n", QXT("2"), 2},
      {"a blank name asks for the lines in front of all", "k=1\n[s]\nk=2\n", QXT("1"), 1, QXT(" ")},
      {"not for a section without a name", "[]\nk=2\n", QXT(""), 0, QXT(" ")},
      {"the third of three", "[a]\nk=1\n[b]\nk=2\n[s]\nk=3\n", QXT("3"), 3},
  });
}

TEST_F(Profile, SectionsAreFoundByWhatStandsInTheBrackets) {
  ExpectRows({
      {"case", "[Sec]\nk=1\n", QXT("1"), 1, QXT("sEC")},
      {"blanks around the brackets", "  [s]  \nk=1\n", QXT("1"), 1},
      {"blanks inside the brackets", "[ s ]\nk=1\n", QXT("1"), 1},
      {"blanks in the question", "[s]\nk=1\n", QXT("1"), 1, QXT(" s ")},
      {"text behind the brackets", "[s] junk\nk=1\n", QXT("1"), 1},
      {"a comment behind the brackets", "[s];c\nk=1\n", QXT("1"), 1},
      {"an equals sign behind the brackets", "[s]x=y\nk=1\n", QXT("1"), 1},
      {"is no key", "[s]x=y\nk=1\n", QXT(""), 0, QXT("s"), QXT("x")},
      {"the last closing bracket counts", "[a]b]\nk=1\n", QXT("1"), 1, QXT("a]b")},
      {"not the first one", "[a]b]\nk=1\n", QXT(""), 0, QXT("a")},
      {"two on one line", "[s][t]\nk=1\n", QXT("1"), 1, QXT("s][t")},
      {"an opening bracket inside", "[a[b]\nk=1\n", QXT("1"), 1, QXT("a[b")},
      {"doubled brackets", "[[s]]\nk=1\n", QXT("1"), 1, QXT("[s]")},
      {"no closing bracket", "[s\nk=1\n", QXT("")},
      {"no closing bracket ends no section", "[s]\n[t\nk=1\n", QXT("1"), 1},
      {"not in front of the line", "[s]\na [t]\nk=1\n", QXT("1"), 1},
      {"a longer name is another", "[ss]\nk=2\n[s]\nk=1\n", QXT("1"), 1},
      {"missing", "[t]\nk=1\n", QXT("")},
  });
}

TEST_F(Profile, ALineWithASemicolonIsAKeyThatNobodyAsksFor) {
  ExpectRows({
      {"a comment", "[s]\n; comment\nk=1\n", QXT("1"), 1},
      {"a comment with an equals sign", "[s]\n;k=0\n; k=2\nk=1\n", QXT("1"), 1},
      {"a comment instead of a section", ";[s]\nk=1\n", QXT("")},
      {"a value switched off", "[s]\n;k=1\n", QXT("")},
      {"asked for", "[s]\n ;k=1\n", QXT("1"), 1, QXT("s"), QXT(";k")},
      {"a number sign", "[s]\n#k=1\nk=2\n", QXT("2"), 2},
      {"anything else", "@@@\n???\n[s]\n***\nk=1\n", QXT("1"), 1},
  });
}

TEST_F(Profile, IntegersAreReadFromTheStartOfTheValue) {
  ExpectRows({
      {"decimal", Value("12"), QXT("12"), 12},
      {"text behind it", Value("12abc"), QXT("12abc"), 12},
      {"no number", Value("abc"), QXT("abc"), 0},
      {"negative", Value("-5"), QXT("-5"), -5},
      {"a plus sign", Value("+3"), QXT("+3"), 3},
      {"a blank behind the sign", Value("- 3"), QXT("- 3"), 0},
      {"two signs", Value("--5"), QXT("--5"), 0},
      {"a sign alone", Value("-"), QXT("-"), 0},
      {"in quotes", Value("\"12\""), QXT("12"), 12},
      {"blanks in quotes", Value("\"\t 12\""), QXT("\t 12"), 12},
      {"controls in front", Value("\x01 5"), QXT("\x01 5"), 5},
      {"a zero in front is no octal", Value("010"), QXT("010"), 10},
      {"octal", Value("0o17"), QXT("0o17"), 15},
      {"no octal digit", Value("0o8"), QXT("0o8"), 0},
      {"hexadecimal", Value("0x10"), QXT("0x10"), 16},
      {"hexadecimal letters", Value("0xAbCdEf"), QXT("0xAbCdEf"), 11259375},
      {"negative hexadecimal", Value("-0x10"), QXT("-0x10"), -16},
      {"a capital X is none", Value("0X1f"), QXT("0X1f"), 0},
      {"nothing behind 0x", Value("0x"), QXT("0x"), 0},
      {"a sign behind 0x", Value("0x+5"), QXT("0x+5"), 0},
      {"two zeros in front of x", Value("00x10"), QXT("00x10"), 0},
      {"binary", Value("0b11"), QXT("0b11"), 3},
      {"negative binary", Value("-0b11"), QXT("-0b11"), -3},
      {"no binary digit", Value("0b2"), QXT("0b2"), 0},
      {"a point ends it", Value("1.5"), QXT("1.5"), 1},
      {"an exponent ends it", Value("1e3"), QXT("1e3"), 1},
      {"a comma ends it", Value("1,000"), QXT("1,000"), 1},
      {"digits of other scripts", Marked(QXT("[s]\nk=\uFF11\uFF12\n")), QXT("\uFF11\uFF12"), 0},
  });
}

TEST_F(Profile, IntegersCountModuloTwoToThe32) {
  ExpectRows({
      {"2^31 - 1", Value("2147483647"), QXT("2147483647"), 2147483647},
      {"2^31", Value("2147483648"), QXT("2147483648"), INT32_MIN},
      {"-2^31", Value("-2147483648"), QXT("-2147483648"), INT32_MIN},
      {"2^32 - 1", Value("4294967295"), QXT("4294967295"), -1},
      {"2^32", Value("4294967296"), QXT("4294967296"), 0},
      {"-(2^32 - 1)", Value("-4294967295"), QXT("-4294967295"), 1},
      {"eleven digits", Value("99999999999"), QXT("99999999999"), 1215752191},
      {"the mark of failure", Value("-202182160"), QXT("-202182160"), -202182160},
      {"the same without a sign", Value("4092785136"), QXT("4092785136"), -202182160},
      {"the same in hexadecimal", Value("0xF3F2F1F0"), QXT("0xF3F2F1F0"), -202182160},
      {"nine hexadecimal digits", Value("0x1FFFFFFFF"), QXT("0x1FFFFFFFF"), -1},
      {"29 characters", Value(std::string(26, '0') + "123"), Text(26, '0') + QXT("123"), 123},
      {"the 30th does not count", Value(std::string(26, '0') + "1234"), Text(26, '0') + QXT("1234"), 123},
  });
}

TEST_F(Profile, TheFirstBytesChooseTheEncoding) {
  using namespace std::string_literals;
  ExpectRows({
      {"ANSI", Value("caf\xE9 \x80"), QXT("caf\u00E9 \u20AC")},
      {"UTF-8 without a mark is ANSI", Value("\xC3\xA9"), QXT("\u00C3\u00A9")},
      {"UTF-8", "\xEF\xBB\xBF[s]\nk=\xE4\xB8\xAD\n", QXT("\u4E2D")},
      {"UTF-8 cut in a sequence", "\xEF\xBB\xBF[s]\nk=\xE4\xB8\n", QXT("\uFFFD")},
      {"UTF-16", Marked(QXT("[s]\r\nk=\u4E2D\r\n")), QXT("\u4E2D")},
      {"UTF-16 names", Marked(QXT("[\u4E2D]\r\n\u56FD=1")), QXT("1"), 1, QXT("\u4E2D"), QXT("\u56FD")},
      {"UTF-16 pair", Marked(QXT("[s]\nk=\U0001F3B5\n")), QXT("\U0001F3B5")},
      {"UTF-16 half a pair", Marked(QXT("[s]\nk=a") + Text(1, QXChar(0xD800)) + QXT("z\n")),
       QXT("a") + Text(1, QXChar(0xD800)) + QXT("z")},
      {"UTF-16 big-endian", "\xFE\xFF\0[\0s\0]\0\n\0k\0=\x4E\x2D"s, QXT("\u4E2D")},
      {"UTF-16 without a mark", support::Utf16Le(QXT("[s]\r\nk=1\r\n")), QXT("")},
      {"a second mark is text", "\xFF\xFE" + Marked(QXT("[s]\nk=1\n")), QXT("")},
      {"a mark alone", "\xFF\xFE", QXT("")},
      {"one byte", "[", QXT("")},
      {"nothing", "", QXT("")},
  });
}

TEST_F(Profile, TextsEndAtAZero) {
  using namespace std::string_literals;
  ExpectRows({
      {"in a value", "[s]\nk=a\0b\n"s, QXT("a")},
      {"blanks are dropped first", "[s]\nk= a \0b \n"s, QXT("a ")},
      {"quotes are dropped behind", "[s]\nk='a'\0b\n"s, QXT("a")},
      {"in a key", "[s]\nk\0j=1\n"s, QXT("1"), 1},
      {"in front of a key", "[s]\n\0k=1\n"s, QXT("")},
      {"in a section", "[s\0t]\nk=1\n"s, QXT("1"), 1},
      {"on a line of its own", "[s]\n\0\nk=1\n"s, QXT("1"), 1},
      {"in UTF-16", Marked(Text(QXT("[s]\nk=a\0b\n"), 10)), QXT("a")},
  });
}

TEST_F(Profile, WhatIsLongerThanTheRoomIsCut) {
  const std::string half(511, 'x');
  const Text wide(511, 'x');
  ExpectRows({
      {"1022", Value(half + half), wide + wide},
      {"1023", Value(half + half + "y"), wide + wide + QXT("y")},
      {"1024", Value(half + half + "yz"), wide + wide + QXT("y")},
      {"a blank as the last one", Value(half + half + " z"), wide + wide + QXT(" ")},
      {"quotes", Value("\"" + half + half + half + "\""), wide + wide + QXT("x")},
      {"blanks in front", Value(std::string(100'000, ' ') + "y"), QXT("y")},
      {"a long line before", "[s]\nj=" + std::string(100'000, 'x') + "\nk=1\n", QXT("1"), 1},
  });
  ASSERT_TRUE(support::WriteBytes(m_name, Value("abcdef")));
  QXChar text[] = QXT("####");
  EXPECT_EQ(qxv::os::ReadProfileText(m_name.c_str(), QXT("s"), QXT("k"), std::span(text).first(3)), 2u);
  EXPECT_EQ(Text(text, 4), Text(QXT("ab\0#"), 4));
}

TEST_F(Profile, LongNamesAreFound) {
  const std::string name(3000, 'n');
  const Text wide(3000, 'n');
  ExpectRows({
      {"section", "[" + name + "]\nk=1\n", QXT("1"), 1, wide.c_str()},
      {"key", "[s]\n" + name + "=1\n", QXT("1"), 1, QXT("s"), wide.c_str()},
      {"one unit less", "[s]\n" + name + "=1\n", QXT(""), 0, QXT("s"), wide.c_str() + 1},
  });
}

TEST_F(Profile, AChangedFileIsReadAnew) {
  for (const char digit : {'1', '2', '3'}) {
    ASSERT_TRUE(support::WriteBytes(m_name, Value(std::string(1, digit))));
    EXPECT_EQ(qxv::os::ReadProfileInteger(m_name.c_str(), QXT("s"), QXT("k")), digit - '0');
  }
}

TEST_F(Profile, AFileThatCannotBeReadHasNoValues) {
  std::filesystem::create_directory(support::NativePath(m_folder.File(QXT("folder"))));
  const Text longName(5000, 'n');
  for (const Text& name : {m_folder.File(QXT("none.ini")), m_folder.File(QXT("none\\a.ini")), m_folder.File(QXT("folder")),
                           Text(QXT("?:\\a.ini")), longName, m_folder.Path() + longName}) {
    QXChar text[] = QXT("old");
    EXPECT_EQ(qxv::os::ReadProfileText(name.c_str(), QXT("s"), QXT("k"), text), 0u) << Printable(name.substr(0, 80));
    EXPECT_EQ(Text(text), QXT("")) << Printable(name.substr(0, 80));
    EXPECT_EQ(qxv::os::ReadProfileInteger(name.c_str(), QXT("s"), QXT("k")), 0) << Printable(name.substr(0, 80));
  }
}

TEST_F(Profile, AFileThatOthersMayNotReadHasNoValues) {
  ASSERT_TRUE(support::WriteBytes(m_name, Value("1")));
  qxv::os::OpenOptions alone;
  alone.share = qxv::os::kShareNone;
  qxv::os::File file;
  ASSERT_EQ(file.Open(m_name.c_str(), alone), 0u);
  EXPECT_EQ(qxv::os::ReadProfileInteger(m_name.c_str(), QXT("s"), QXT("k")), 0);
  file.Close();
  EXPECT_EQ(qxv::os::ReadProfileInteger(m_name.c_str(), QXT("s"), QXT("k")), 1);
}

TEST_F(Profile, EveryPrefixIsRead) {
  for (const std::string& whole :
       {std::string("[a] \r\n; c\r\nk = 5\r\n[s]x\r\n k = \"12 \" \r\n"), Marked(QXT("[s]\nk='12 '\n"))}) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      ASSERT_TRUE(support::WriteBytes(m_name, whole.substr(0, size)));
      const std::int32_t integer = qxv::os::ReadProfileInteger(m_name.c_str(), QXT("s"), QXT("k"));
      EXPECT_TRUE(integer == 0 || integer == 1 || integer == 12) << size;
    }
    EXPECT_EQ(qxv::os::ReadProfileInteger(m_name.c_str(), QXT("s"), QXT("k")), 12);
  }
}

}  // namespace
