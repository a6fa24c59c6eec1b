// host_string_test.cpp - CString: making, reading, joining, comparing, searching, the direct buffer, memory.

#include "host_test.h"
#include "support/guard_new.h"

#include <climits>
#include <new>
#include <utility>

namespace {

using host_test::Throws;
using host_test::Units;
using support::Repeat;
using support::Text;

TEST(HostString, StartsEmpty) {
  const CString text;
  EXPECT_EQ(text.GetLength(), 0);
  EXPECT_TRUE(text.IsEmpty());
  ASSERT_NE(text.GetString(), nullptr);
  EXPECT_EQ(text.GetString()[0], 0);
}

TEST(HostString, TakesATextOrItsBeginning) {
  EXPECT_EQ(Units(CString(QXT("abc"))), QXT("abc"));
  EXPECT_EQ(Units(CString(QXT("abcdef"), 2)), QXT("ab"));
  EXPECT_EQ(Units(CString(QXT('x'), 4)), QXT("xxxx"));
}

TEST(HostString, KeepsZerosThatWereCounted) {
  const CString text(QXT("a\0b"), 3);
  EXPECT_EQ(text.GetLength(), 3);
  EXPECT_EQ(Units(text), Text(QXT("a\0b"), 3));
  const CString copy(text);
  EXPECT_EQ(Units(copy), Text(QXT("a\0b"), 3));
  EXPECT_EQ(text.Find(QXT('b')), 2);
}

TEST(HostString, NullPointersAndNegativeCountsAreEmpty) {
  const QXChar* none = nullptr;
  EXPECT_TRUE(CString(none).IsEmpty());
  EXPECT_TRUE(CString(none, 5).IsEmpty());
  EXPECT_TRUE(CString(QXT("abc"), -1).IsEmpty());
  EXPECT_TRUE(CString(QXT("abc"), INT_MIN).IsEmpty());
  EXPECT_TRUE(CString(QXT('x'), -3).IsEmpty());
  CString text(QXT("abc"));
  text += none;
  text.Append(QXT("def"), -1);
  text.Append(none, 3);
  EXPECT_EQ(text, QXT("abc"));
  text = none;
  EXPECT_EQ(text, QXT(""));
  EXPECT_EQ(text, none);
}

TEST(HostString, CopiesAreIndependent) {
  CString first(QXT("abc"));
  CString second(first);
  CString third;
  third = first;
  first.SetAt(0, QXT('X'));
  EXPECT_EQ(first, QXT("Xbc"));
  EXPECT_EQ(second, QXT("abc"));
  EXPECT_EQ(third, QXT("abc"));
}

TEST(HostString, MovingTakesTheTextAway) {
  CString first(QXT("abc"));
  CString second(std::move(first));
  EXPECT_EQ(second, QXT("abc"));
  CString third(QXT("old"));
  third = std::move(second);
  EXPECT_EQ(third, QXT("abc"));
  CString& same = third;
  third = std::move(same);
  EXPECT_EQ(third, QXT("abc"));
}

TEST(HostString, AssignsToItselfAndFromItsOwnMiddle) {
  CString text(QXT("abcdef"));
  const CString& same = text;
  text = same;
  EXPECT_EQ(text, QXT("abcdef"));
  text = text.GetString() + 2;
  EXPECT_EQ(text, QXT("cdef"));
  text.SetString(text.GetString() + 1, 2);
  EXPECT_EQ(text, QXT("de"));
  text = text.GetString() + 2;  // its closing zero
  EXPECT_EQ(text, QXT(""));
}

TEST(HostString, AppendsItself) {
  CString text(QXT("ab"));
  text += text;
  EXPECT_EQ(text, QXT("abab"));
  text += text.GetString() + 3;
  EXPECT_EQ(text, QXT("ababb"));
  text.Preallocate(64);  // room enough: nothing moves
  text += text;
  EXPECT_EQ(text, QXT("ababbababb"));
}

TEST(HostString, EmptyFreesTheBlock) {
  const std::size_t before = support::LiveArrays();
  CString text(QXT("abc"));
  EXPECT_EQ(support::LiveArrays(), before + 1);
  text.Empty();
  EXPECT_EQ(support::LiveArrays(), before);
  EXPECT_EQ(text, QXT(""));
}

TEST(HostString, ReadsEveryIndexUpToTheClosingZero) {
  CString text(QXT("abc"));
  EXPECT_EQ(text.GetAt(0), QXT('a'));
  EXPECT_EQ(text[2], QXT('c'));
  EXPECT_EQ(text[3], 0);
  EXPECT_EQ(CString().GetAt(0), 0);
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)text.GetAt(4); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)text[-1]; }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)text[INT_MIN]; }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.SetAt(3, QXT('x')); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.SetAt(-1, QXT('x')); }));
  EXPECT_EQ(text, QXT("abc"));
}

TEST(HostString, JoinsInEveryMixture) {
  const CString ab(QXT("ab"));
  EXPECT_EQ(ab + CString(QXT("cd")), QXT("abcd"));
  EXPECT_EQ(ab + QXT("cd"), QXT("abcd"));
  EXPECT_EQ(QXT("cd") + ab, QXT("cdab"));
  EXPECT_EQ(ab + QXT('c'), QXT("abc"));
  EXPECT_EQ(QXT('c') + ab, QXT("cab"));
  EXPECT_EQ(CString() + CString(), QXT(""));
  EXPECT_EQ(Units(CString(QXT("\0"), 1) + CString(QXT("\0x"), 2)), Text(QXT("\0\0x"), 3));
  CString text;
  text = QXT('q');
  text += QXT('r');
  EXPECT_EQ(text, QXT("qr"));
}

TEST(HostString, ComparesByUnits) {
  const struct {
    const QXChar* left;
    const QXChar* right;
    int order;
    int orderWithoutCase;
  } rows[] = {
      {QXT(""), QXT(""), 0, 0},
      {QXT("a"), QXT(""), 1, 1},
      {QXT(""), QXT("a"), -1, -1},
      {QXT("abc"), QXT("abd"), -1, -1},
      {QXT("abc"), QXT("ab"), 1, 1},
      {QXT("ab"), QXT("abc"), -1, -1},
      {QXT("ABC"), QXT("abc"), -1, 0},
      {QXT("a"), QXT("B"), 1, -1},
      {QXT("\x00C9t\x00E9"), QXT("\x00E9T\x00C9"), -1, 0},  // E with acute
      {QXT("\x00D7"), QXT("\x00F7"), -1, -1},               // the signs for times and divided by are no letters
      {QXT("\x0100"), QXT("\x0101"), -1, -1},               // a letter above 255 has no other case here
      {QXT("\xFFFF"), QXT("a"), 1, 1},                      // units are unsigned
      {QXT("_"), QXT("A"), 1, -1},                          // compared as lower case
  };
  for (const auto& row : rows) {
    const CString left(row.left);
    EXPECT_EQ(left.Compare(row.right), row.order) << testing::PrintToString(Text(row.left));
    EXPECT_EQ(left.CompareNoCase(row.right), row.orderWithoutCase) << testing::PrintToString(Text(row.left));
    EXPECT_EQ(left == row.right, row.order == 0);
    EXPECT_EQ(left < row.right, row.order < 0);
    EXPECT_EQ(left > CString(row.right), row.order > 0);
    EXPECT_EQ(row.left <= CString(row.right), row.order <= 0);
    EXPECT_EQ(row.left >= CString(row.right), row.order >= 0);
    EXPECT_EQ(left != CString(row.right), row.order != 0);
  }
}

TEST(HostString, EqualityOfTwoTextsLooksBehindZeros) {
  const CString one(QXT("a\0b"), 3);
  const CString other(QXT("a\0c"), 3);
  EXPECT_FALSE(one == other);
  EXPECT_TRUE(one < other);
  EXPECT_EQ(one.Compare(other), 0);  // a pointer ends at its first zero, and so does the text beside it
}

TEST(HostString, FindsForwardsAndBackwards) {
  const CString text(QXT("one two one"));
  EXPECT_EQ(text.Find(QXT('o')), 0);
  EXPECT_EQ(text.Find(QXT('o'), 1), 6);
  EXPECT_EQ(text.Find(QXT("one"), 1), 8);
  EXPECT_EQ(text.Find(QXT("one"), 9), -1);
  EXPECT_EQ(text.Find(QXT("")), 0);
  EXPECT_EQ(text.Find(QXT(""), 11), 11);
  EXPECT_EQ(text.Find(QXT("o"), 12), -1);
  EXPECT_EQ(text.Find(QXT("o"), INT_MAX), -1);
  EXPECT_EQ(text.Find(QXT("o"), -1), -1);
  EXPECT_EQ(text.Find(QXT('o'), -1), -1);
  EXPECT_EQ(text.Find(static_cast<const QXChar*>(nullptr)), -1);
  EXPECT_EQ(text.Find(QXT("one two one more")), -1);
  EXPECT_EQ(text.ReverseFind(QXT('o')), 8);
  EXPECT_EQ(text.ReverseFind(QXT('z')), -1);
  EXPECT_EQ(text.FindOneOf(QXT("tw")), 4);
  EXPECT_EQ(text.FindOneOf(QXT("")), -1);
  EXPECT_EQ(CString().Find(QXT('a')), -1);
  EXPECT_EQ(CString().ReverseFind(QXT('a')), -1);
}

TEST(HostString, TakesPartsInsideTheTextOnly) {
  const CString text(QXT("abcdef"));
  const struct {
    int first, count;
    const QXChar* part;
  } rows[] = {{0, 6, QXT("abcdef")},
              {2, 3, QXT("cde")},
              {2, 0, QXT("")},
              {2, -1, QXT("")},
              {-3, 2, QXT("ab")},
              {6, 1, QXT("")},
              {7, 1, QXT("")},
              {4, INT_MAX, QXT("ef")},
              {INT_MAX, INT_MAX, QXT("")},
              {INT_MIN, INT_MIN, QXT("")},
              {INT_MIN, INT_MAX, QXT("abcdef")}};
  for (const auto& row : rows) {
    EXPECT_EQ(text.Mid(row.first, row.count), row.part) << row.first << ", " << row.count;
  }
  EXPECT_EQ(text.Mid(4), QXT("ef"));
  EXPECT_EQ(text.Left(2), QXT("ab"));
  EXPECT_EQ(text.Left(-2), QXT(""));
  EXPECT_EQ(text.Left(99), QXT("abcdef"));
  EXPECT_EQ(text.Right(2), QXT("ef"));
  EXPECT_EQ(text.Right(-2), QXT(""));
  EXPECT_EQ(text.Right(INT_MIN), QXT(""));
  EXPECT_EQ(text.Right(INT_MAX), QXT("abcdef"));
}

TEST(HostString, BufferIsWrittenDirectly) {
  CString text(QXT("abc"));
  QXChar* buffer = text.GetBuffer(8);
  EXPECT_EQ(text.GetLength(), 3);
  for (int i = 3; i <= 8; ++i) {
    EXPECT_EQ(buffer[i], 0) << i;
    buffer[i] = QXT('x');  // the closing place too
  }
  text.ReleaseBuffer();
  EXPECT_EQ(text, QXT("abcxxxxx"));
  text.GetBuffer()[2] = 0;
  text.ReleaseBuffer();
  EXPECT_EQ(text, QXT("ab"));
  text.GetBuffer(4);
  text.ReleaseBuffer(4);
  EXPECT_EQ(Units(text), Text(QXT("ab\0\0"), 4));
}

TEST(HostString, BufferOfAnEmptyText) {
  CString text;
  ASSERT_NE(text.GetBuffer(), nullptr);
  EXPECT_EQ(text.GetBuffer()[0], 0);
  text.ReleaseBuffer();
  EXPECT_EQ(text, QXT(""));
  text.GetBuffer(INT_MIN);
  text.ReleaseBuffer(0);
  EXPECT_EQ(text, QXT(""));
  CString untouched;
  untouched.ReleaseBuffer();
  EXPECT_EQ(untouched, QXT(""));
}

TEST(HostString, ReleaseRefusesALengthWithoutRoom) {
  CString text;
  text.GetBuffer(4);
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.ReleaseBuffer(5); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.ReleaseBuffer(-2); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { text.ReleaseBufferSetLength(-1); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { CString().ReleaseBuffer(1); }));
}

TEST(HostString, SetLengthCutsOrAddsZeros) {
  CString text(QXT("abcdef"));
  text.GetBufferSetLength(2);
  EXPECT_EQ(Units(text), QXT("ab"));
  text.GetBufferSetLength(4);
  EXPECT_EQ(Units(text), Text(QXT("ab\0\0"), 4));
}

TEST(HostString, FreeExtraFitsTheBlock) {
  CString text(QXT("abc"));
  text.Preallocate(100);
  text.FreeExtra();
  EXPECT_EQ(support::AllocationSize(text.GetString()), 8u);  // three units and the zero
  EXPECT_EQ(text, QXT("abc"));
}

TEST(HostString, HugeLengthsFailWithoutTouchingTheText) {
  CString text(QXT("abc"));
  EXPECT_THROW(text.GetBuffer(0x40000000), std::bad_alloc);
  EXPECT_THROW(text.GetBuffer(INT_MAX), std::bad_alloc);
  EXPECT_THROW(text.Preallocate(INT_MAX), std::bad_alloc);
  EXPECT_THROW(CString(QXT('x'), INT_MAX), std::bad_alloc);
  EXPECT_THROW(text.Append(QXT("abc"), 0x3FFFFFFF), std::bad_alloc);  // refused before anything is read
  EXPECT_EQ(text, QXT("abc"));
}

TEST(HostString, FailedAllocationLeavesTheTextAsItWas) {
  const CString longer(Repeat(QXT('y'), 100).c_str());
  CString text(QXT("abc"));
  const auto refused = [&](auto change) {
    support::FailAllocation next(0);
    EXPECT_THROW(change(), std::bad_alloc);
    EXPECT_TRUE(next.Refused());
    EXPECT_EQ(text, QXT("abc"));
  };
  refused([&] { text = longer; });
  refused([&] { text += longer; });
  refused([&] { text += text; });
  refused([&] { text += QXT('x'); });
  refused([&] { text.Insert(1, longer); });
  refused([&] { text.Replace(QXT("b"), longer); });
  refused([&] { text.GetBuffer(100); });
  refused([&] { CString copy(longer); });
  refused([&] { (void)(text + longer); });
}

TEST(HostString, GrowsGeometrically) {
  CString text;
  const std::size_t before = support::AllocationsOfThisThread();
  for (int i = 0; i < 10000; ++i) {
    text += QXT('a');
  }
  EXPECT_LT(support::AllocationsOfThisThread() - before, 40u);
  EXPECT_EQ(Units(text), Repeat(QXT('a'), 10000));
}

}  // namespace
