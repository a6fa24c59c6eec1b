// host_string_edit_test.cpp - CString: case, trimming, replacing, inserting, deleting.

#include "host_test.h"
#include "support/guard_new.h"

#include <climits>

namespace {

using host_test::Throws;
using host_test::Units;
using support::Text;

TEST(HostStringEdit, CaseChangesLatin1LettersOnly) {
  CString text(QXT("aZ9\x00E0\x00FE\x00F7\x00FF\x00DF\x0101"));
  EXPECT_EQ(text.MakeUpper(), QXT("AZ9\x00C0\x00DE\x00F7\x00FF\x00DF\x0101"));
  text = QXT("Az9\x00C0\x00DE\x00D7\x0100@[`{");
  EXPECT_EQ(text.MakeLower(), QXT("az9\x00E0\x00FE\x00D7\x0100@[`{"));
  EXPECT_EQ(CString().MakeUpper(), QXT(""));
  EXPECT_EQ(CString(QXT("abc")).MakeReverse(), QXT("cba"));
  EXPECT_EQ(CString().MakeReverse(), QXT(""));
}

TEST(HostStringEdit, TrimsWhiteSpace) {
  const struct {
    const QXChar *text, *left, *right, *both;
  } rows[] = {
      {QXT(""), QXT(""), QXT(""), QXT("")},
      {QXT("   "), QXT(""), QXT(""), QXT("")},
      {QXT("a"), QXT("a"), QXT("a"), QXT("a")},
      {QXT(" \t\r\n\v\f a b \n"), QXT("a b \n"), QXT(" \t\r\n\v\f a b"), QXT("a b")},
      {QXT("\x00A0\x3000x\x2003"), QXT("x\x2003"), QXT("\x00A0\x3000x"), QXT("x")},
      {QXT("\x200Bx"), QXT("\x200Bx"), QXT("\x200Bx"), QXT("\x200Bx")},  // the zero-width space is no white space
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(Text(row.text)));
    EXPECT_EQ(CString(row.text).TrimLeft(), row.left);
    EXPECT_EQ(CString(row.text).TrimRight(), row.right);
    EXPECT_EQ(CString(row.text).Trim(), row.both);
  }
}

TEST(HostStringEdit, TrimsACharacterOrASet) {
  const QXChar* text = QXT("xyaxyx");
  EXPECT_EQ(CString(text).TrimLeft(QXT('x')), QXT("yaxyx"));
  EXPECT_EQ(CString(text).TrimRight(QXT('x')), QXT("xyaxy"));
  EXPECT_EQ(CString(text).Trim(QXT('x')), QXT("yaxy"));
  EXPECT_EQ(CString(text).TrimLeft(QXT("xy")), QXT("axyx"));
  EXPECT_EQ(CString(text).TrimRight(QXT("xy")), QXT("xya"));
  EXPECT_EQ(CString(text).Trim(QXT("yx")), QXT("a"));
  EXPECT_EQ(CString(text).Trim(QXT("xya")), QXT(""));
  EXPECT_EQ(CString(text).Trim(QXT("")), QXT("xyaxyx"));
  EXPECT_EQ(CString(text).Trim(static_cast<const QXChar*>(nullptr)), QXT("xyaxyx"));
}

TEST(HostStringEdit, TrimsByASetInsideTheText) {
  CString text(QXT("xyaxy"));
  text.Trim(text.GetString() + 3);  // "xy"
  EXPECT_EQ(text, QXT("a"));
  text = QXT("xyaxy");
  text.TrimLeft(text.GetString());
  EXPECT_EQ(text, QXT(""));
}

TEST(HostStringEdit, ReplacesCharacters) {
  CString text(QXT("banana"));
  EXPECT_EQ(text.Replace(QXT('a'), QXT('o')), 3);
  EXPECT_EQ(text, QXT("bonono"));
  EXPECT_EQ(text.Replace(QXT('z'), QXT('o')), 0);
  EXPECT_EQ(text.Replace(QXT('o'), QXT('o')), 0);
  EXPECT_EQ(text, QXT("bonono"));
}

TEST(HostStringEdit, ReplacesTexts) {
  const struct {
    const QXChar *text, *oldText, *newText, *result;
    int count;
  } rows[] = {
      {QXT("banana"), QXT("an"), QXT("o"), QXT("booa"), 2},
      {QXT("banana"), QXT("ana"), QXT("-"), QXT("b-na"), 1},  // occurrences do not overlap
      {QXT("aaaa"), QXT("aa"), QXT("aaa"), QXT("aaaaaa"), 2},
      {QXT("abc"), QXT("abc"), QXT(""), QXT(""), 1},
      {QXT("abc"), QXT("abcd"), QXT("x"), QXT("abc"), 0},
      {QXT("abc"), QXT(""), QXT("x"), QXT("abc"), 0},
      {QXT(""), QXT("a"), QXT("x"), QXT(""), 0},
      {QXT("abc"), nullptr, QXT("x"), QXT("abc"), 0},
      {QXT("abcb"), QXT("b"), nullptr, QXT("ac"), 2},
  };
  for (const auto& row : rows) {
    CString text(row.text);
    EXPECT_EQ(text.Replace(row.oldText, row.newText), row.count) << testing::PrintToString(Text(row.text));
    EXPECT_EQ(text, row.result);
  }
}

TEST(HostStringEdit, ReplacesByPiecesOfItself) {
  CString text(QXT("abab"));
  EXPECT_EQ(text.Replace(text.GetString() + 3, text.GetString()), 2);  // "b" by "abab"
  EXPECT_EQ(text, QXT("aababaabab"));
}

TEST(HostStringEdit, RemovesACharacter) {
  CString text(QXT("banana"));
  EXPECT_EQ(text.Remove(QXT('a')), 3);
  EXPECT_EQ(text, QXT("bnn"));
  EXPECT_EQ(text.Remove(QXT('a')), 0);
  CString empty;
  EXPECT_EQ(empty.Remove(QXT('a')), 0);
}

TEST(HostStringEdit, InsertsAtTheNearestPlace) {
  CString text(QXT("ad"));
  EXPECT_EQ(text.Insert(1, QXT("bc")), 4);
  EXPECT_EQ(text, QXT("abcd"));
  EXPECT_EQ(text.Insert(-5, QXT('<')), 5);
  EXPECT_EQ(text.Insert(INT_MAX, QXT('>')), 6);
  EXPECT_EQ(text, QXT("<abcd>"));
  EXPECT_EQ(text.Insert(1, static_cast<const QXChar*>(nullptr)), 6);
  text.Insert(1, text);
  EXPECT_EQ(text, QXT("<<abcd>abcd>"));
  CString empty;
  EXPECT_EQ(empty.Insert(3, QXT("")), 0);
}

TEST(HostStringEdit, DeletesWhatIsThere) {
  CString text(QXT("abcdef"));
  EXPECT_EQ(text.Delete(1), 5);
  EXPECT_EQ(text, QXT("acdef"));
  EXPECT_EQ(text.Delete(1, 2), 3);
  EXPECT_EQ(text, QXT("aef"));
  EXPECT_EQ(text.Delete(2, INT_MAX), 2);
  EXPECT_EQ(text.Delete(5, 1), 2);
  EXPECT_EQ(text.Delete(0, -1), 2);
  EXPECT_EQ(text.Delete(-7, 1), 1);
  EXPECT_EQ(text, QXT("e"));
}

TEST(HostStringEdit, TruncatesInsideTheTextOnly) {
  CString text(QXT("abcdef"));
  text.Truncate(6);
  EXPECT_EQ(text, QXT("abcdef"));
  text.Truncate(2);
  EXPECT_EQ(Units(text), QXT("ab"));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.Truncate(3); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.Truncate(-1); }));
  EXPECT_EQ(text, QXT("ab"));
}

TEST(HostStringEdit, TrimmingDoesNotAllocate) {
  CString text(QXT("  abc  "));
  const std::size_t before = support::AllocationsOfThisThread();
  text.Trim().MakeUpper().Delete(0);
  EXPECT_EQ(support::AllocationsOfThisThread(), before);
  EXPECT_EQ(text, QXT("BC"));
}

}  // namespace
