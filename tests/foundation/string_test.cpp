// string_test.cpp - CQXString: what each operation answers.

#include "qxv/string.h"

#include "support/string_words.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using support::Repeat;
using support::Text;
using support::TextOf;

TEST(String, DefaultIsAnEmptyBufferOf266BytesWithCapacityWord128AtByte262) {
  const CQXString s;
  EXPECT_EQ(support::BufferBytes(s), 266u);
  EXPECT_EQ(support::WordAt(s, 258), 0u);
  EXPECT_EQ(support::WordAt(s, 262), 128u);
  for (std::size_t unit = 0; unit <= 128; ++unit) {
    ASSERT_EQ(support::BufferOf(s)[unit], 0) << "unit " << unit;
  }
}

TEST(String, IsOnePointerWide) { EXPECT_EQ(sizeof(CQXString), sizeof(void*)); }

TEST(String, TextOf128CharactersHasCapacity128AndItsTerminatorInTheSlot) {
  CQXString s;
  s = Repeat('x', 128).c_str();
  EXPECT_EQ(support::BufferBytes(s), 266u);
  EXPECT_EQ(support::BufferOf(s)[128], 0);
  EXPECT_EQ(support::WordAt(s, 258), 128u);
  EXPECT_EQ(support::WordAt(s, 262), 128u);
  EXPECT_EQ(s.GetLength(), 128);
}

TEST(String, TextOf129CharactersHasA522ByteBuffer) {
  CQXString s;
  s = Repeat('x', 129).c_str();
  EXPECT_EQ(support::BufferBytes(s), 522u);
  EXPECT_EQ(support::WordAt(s, 514), 129u);
  EXPECT_EQ(support::WordAt(s, 518), 256u);
}

TEST(String, Assigning100CharactersToACapacityOf1024KeepsTheBuffer) {
  CQXString s(Repeat('x', 1024).c_str());
  ASSERT_EQ(support::CapacityWord(s), 1024u);
  const QXChar* before = s;
  s = Repeat('y', 100).c_str();
  EXPECT_EQ(static_cast<const QXChar*>(s), before);
  EXPECT_EQ(support::WordAt(s, 258), 100u);
  EXPECT_EQ(support::WordAt(s, 262), 1024u);
}

TEST(String, Assigning100CharactersToACapacityOf1152Reallocates) {
  CQXString s(Repeat('x', 1152).c_str());
  ASSERT_EQ(support::CapacityWord(s), 1152u);
  s = Repeat('y', 100).c_str();
  EXPECT_EQ(support::BufferBytes(s), 266u);
  EXPECT_EQ(support::WordAt(s, 258), 100u);
  EXPECT_EQ(support::WordAt(s, 262), 128u);
}

TEST(String, ConstructorsTakeNullAndEmptyTexts) {
  const Text empty;
  for (const QXChar* text : {static_cast<const QXChar*>(nullptr), empty.c_str()}) {
    const CQXString plain(text);
    const CQXString counted(text, 5);
    EXPECT_EQ(support::BytesOf(plain), support::BytesOf(CQXString()));
    EXPECT_EQ(support::BytesOf(counted), support::BytesOf(CQXString()));
  }
}

TEST(String, CountedConstructorTakesTheSmallerOfCountAndLength) {
  EXPECT_EQ(TextOf(CQXString(QXT("abcdef"), 3)), QXT("abc"));
  EXPECT_EQ(TextOf(CQXString(QXT("abc"), 10)), QXT("abc"));
  EXPECT_EQ(TextOf(CQXString(QXT("abc"), 0)), QXT(""));
  EXPECT_EQ(TextOf(CQXString(QXT("abc"), -1)), QXT(""));
  EXPECT_EQ(TextOf(CQXString(QXT("abc"), INT_MIN)), QXT(""));
  EXPECT_EQ(TextOf(CQXString(QXT("abc"), INT_MAX)), QXT("abc"));
}

TEST(String, CountedConstructorDoesNotReadBehindTheCount) {
  auto* unterminated = new QXChar[3]{'a', 'b', 'c'};  // an inaccessible page follows
  EXPECT_EQ(TextOf(CQXString(unterminated, 3)), QXT("abc"));
  EXPECT_EQ(support::LengthWord(CQXString(unterminated, 2)), 2u);
  delete[] unterminated;
}

TEST(String, CopyOwnsItsOwnBuffer) {
  const CQXString original(QXT("text"));
  CQXString copy(original);
  EXPECT_NE(static_cast<const QXChar*>(copy), static_cast<const QXChar*>(original));
  copy = QXT("other");
  EXPECT_EQ(TextOf(original), QXT("text"));
}

TEST(String, CopyTakesTheSlotAsItsCapacity) {
  CQXString original(Repeat('x', 1000).c_str());
  original = QXT("short");  // keeps the allocation of 1024
  ASSERT_EQ(support::CapacityWord(original), 1024u);
  const CQXString copy(original);
  EXPECT_EQ(support::BufferBytes(copy), 266u);
  EXPECT_EQ(support::CapacityWord(copy), 128u);
  EXPECT_EQ(TextOf(copy), QXT("short"));
}

TEST(String, AssignmentFromNullOrEmptyTextEmpties) {
  CQXString s(QXT("text"));
  s = static_cast<const QXChar*>(nullptr);
  EXPECT_EQ(TextOf(s), QXT(""));
  s = QXT("text");
  s = QXT("");
  EXPECT_EQ(TextOf(s), QXT(""));
  s = QXT("text");
  s = CQXString();
  EXPECT_EQ(TextOf(s), QXT(""));
  EXPECT_EQ(support::LengthWord(s), 0u);
}

TEST(String, AssignmentToItselfChangesNothing) {
  CQXString s(QXT("text"));
  const CQXString& same = s;
  const QXChar* buffer = s;
  s = same;
  s = buffer;
  EXPECT_EQ(static_cast<const QXChar*>(s), buffer);
  EXPECT_EQ(TextOf(s), QXT("text"));
}

TEST(String, AppendAndConcatenation) {
  CQXString s(QXT("ab"));
  s += QXT("cd");
  s += CQXString(QXT("ef"));
  s += QXT("");
  s += static_cast<const QXChar*>(nullptr);
  s += CQXString();
  EXPECT_EQ(TextOf(s), QXT("abcdef"));
  EXPECT_EQ(support::LengthWord(s), 6u);
  const CQXString sum = s + QXT("gh") + CQXString(QXT("ij"));
  EXPECT_EQ(TextOf(sum), QXT("abcdefghij"));
  EXPECT_EQ(TextOf(s), QXT("abcdef"));
}

TEST(String, AppendAcrossManyBlocksKeepsEveryCharacter) {
  CQXString s;
  Text expected;
  for (int i = 0; i < 40000; ++i) {
    const QXChar unit[2] = {static_cast<QXChar>('a' + i % 26), 0};
    s += unit;
    expected += unit;
  }
  EXPECT_EQ(TextOf(s), expected);
  EXPECT_EQ(support::LengthWord(s), 40000u);
  EXPECT_EQ(support::CapacityWord(s), 40064u);  // 313 blocks of 128
}

TEST(String, GrowingByOneCharacterMovesALongTextSeldom) {
  CQXString s(Repeat('x', 100000).c_str());
  const std::size_t before = support::AllocationsOfThisThread();
  for (int i = 0; i < 20000; ++i) {  // 157 blocks of 128
    s += QXT("y");
  }
  EXPECT_LE(support::AllocationsOfThisThread() - before, 2u);
  EXPECT_EQ(s.GetLength(), 120000);
}

TEST(String, FormatsNumbersAndTexts) {
  CQXString s;
  s.Format(QXT("%d %s|%5.1f|%08x|%I64d"), -7, QXT("text"), 2.25, 0xBEEF, QXInt64{1} << 40);
  EXPECT_EQ(TextOf(s), QXT("-7 text|  2.3|0000beef|1099511627776"));
  EXPECT_EQ(support::LengthWord(s), 36u);
}

TEST(String, FormatToNothingLeavesAZeroedBuffer) {
  CQXString s(QXT("text"));
  s.Format(QXT(""));
  EXPECT_EQ(support::BytesOf(s), support::BytesOf(CQXString()));
  s = QXT("text");
  s.Format(nullptr);
  EXPECT_EQ(support::BytesOf(s), support::BytesOf(CQXString()));
}

TEST(String, FormatEndsAtTheFirstZeroCharacter) {
  CQXString s;
  s.Format(QXT("%s%c%s"), Repeat('x', 128).c_str(), 0, QXT("behind"));
  EXPECT_EQ(s.GetLength(), 128);
  EXPECT_EQ(support::LengthWord(s), 128u);
  EXPECT_EQ(support::CapacityWord(s), 128u);
}

TEST(String, CompareOfEqualLengthsIsByCharacterValue) {
  EXPECT_GT(CQXString(QXT("ab")).Compare(QXT("aa")), 0);
  EXPECT_LT(CQXString(QXT("aa")).Compare(QXT("ab")), 0);
  EXPECT_EQ(CQXString(QXT("aa")).Compare(QXT("aa")), 0);
  EXPECT_EQ(CQXString().Compare(CQXString()), 0);
  EXPECT_GT(CQXString(QXT("\xFFFF")).Compare(QXT("\x0001")), 0) << "characters are unsigned";
}

TEST(String, CompareNoCaseFoldsAToZOnly) {
  EXPECT_EQ(CQXString().CompareNoCase(nullptr), 0);
  EXPECT_EQ(CQXString().CompareNoCase(QXT("")), 0);
  EXPECT_EQ(CQXString(QXT("x")).CompareNoCase(QXT("")), 1);
  EXPECT_EQ(CQXString(QXT("x")).CompareNoCase(nullptr), 1);
  EXPECT_EQ(CQXString().CompareNoCase(QXT("x")), -1);
  EXPECT_EQ(CQXString(QXT("aBcXyZ")).CompareNoCase(QXT("AbCxYz")), 0);
  EXPECT_EQ(CQXString(QXT("b")).CompareNoCase(QXT("AA")), -1);
  EXPECT_LT(CQXString(QXT("\u00C9")).CompareNoCase(QXT("\u00E9")), 0);
  EXPECT_GT(CQXString(QXT("[")).CompareNoCase(QXT("Z")), -33) << "the sign follows the folded characters";
}

TEST(String, FindMatchesUpToTheLastPossibleIndex) {
  const CQXString s(QXT("abcabc"));
  EXPECT_EQ(s.Find(QXT("abc")), 0);
  EXPECT_EQ(s.Find(QXT("abc"), 1), 3);
  EXPECT_EQ(s.Find(QXT("abc"), 3), 3) << "length - substring length still matches";
  EXPECT_EQ(s.Find(QXT("abc"), 4), -1) << "one beyond does not";
  EXPECT_EQ(s.Find(QXT("c"), 5), 5);
  EXPECT_EQ(s.Find(QXT("cb")), -1);
}

TEST(String, FindRefusesWhatCannotMatch) {
  const CQXString s(QXT("abc"));
  EXPECT_EQ(CQXString().Find(QXT("a")), -1);
  EXPECT_EQ(s.Find(nullptr), -1);
  EXPECT_EQ(s.Find(QXT("")), -1);
  EXPECT_EQ(s.Find(QXT("a"), -1), -1);
  EXPECT_EQ(s.Find(QXT("abcd")), -1);
  EXPECT_EQ(s.Find(QXT("a"), INT_MAX), -1);
}

TEST(String, MidClampsItsStartAndCount) {
  const CQXString s(QXT("abcdef"));
  EXPECT_EQ(TextOf(s.Mid(-5, 3)), QXT("abc"));
  EXPECT_EQ(TextOf(s.Mid(4, 10)), QXT("ef"));
  EXPECT_EQ(TextOf(s.Mid(6, 1)), QXT(""));
  EXPECT_EQ(TextOf(s.Mid(2, 2)), QXT("cd"));
  EXPECT_EQ(TextOf(s.Mid(2, 0)), QXT(""));
  EXPECT_EQ(TextOf(s.Mid(2, -1)), QXT(""));
  EXPECT_EQ(TextOf(s.Mid(INT_MIN, INT_MAX)), QXT("abcdef"));
  EXPECT_EQ(TextOf(s.Mid(INT_MAX, INT_MAX)), QXT(""));
}

TEST(String, RightTakesTheLastCharacters) {
  EXPECT_EQ(TextOf(CQXString(QXT("abc")).Right(0)), QXT(""));
  EXPECT_EQ(TextOf(CQXString(QXT("abc")).Right(10)), QXT("abc"));
  EXPECT_EQ(TextOf(CQXString(QXT("abc")).Right(2)), QXT("bc"));
  EXPECT_EQ(TextOf(CQXString(QXT("abc")).Right(3)), QXT("abc"));
  EXPECT_EQ(TextOf(CQXString(QXT("abc")).Right(-1)), QXT(""));
  EXPECT_EQ(TextOf(CQXString(QXT("abc")).Right(INT_MIN)), QXT(""));
  EXPECT_EQ(TextOf(CQXString().Right(INT_MAX)), QXT(""));
}

TEST(String, LengthOfAPlainText) {
  EXPECT_EQ(CQXString::Length(nullptr), 0);
  EXPECT_EQ(CQXString::Length(QXT("")), 0);
  EXPECT_EQ(CQXString::Length(QXT("abc")), 3);
}

TEST(String, EqualityIsExact) {
  const CQXString s(QXT("abc"));
  EXPECT_TRUE(s == CQXString(QXT("abc")));
  EXPECT_TRUE(s == QXT("abc"));
  EXPECT_TRUE(QXT("abc") == s);
  EXPECT_TRUE(s != QXT("abC"));
  EXPECT_TRUE(QXT("ab") != s);
  EXPECT_TRUE(s != CQXString(QXT("abcd")));
  EXPECT_TRUE(CQXString() == static_cast<const QXChar*>(nullptr));
}

}  // namespace
