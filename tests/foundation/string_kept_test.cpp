// string_kept_test.cpp - CQXString: behaviour that applications depend on and that stays.

#include "qxv/string.h"

#include "support/string_words.h"
#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using support::Repeat;
using support::TextOf;

TEST(StringKept, AppendGoesBehindTheLengthWord) {
  CQXString s(QXT("abcdef"));
  support::BufferOf(s)[3] = 0;  // an application cuts the text through the pointer
  ASSERT_EQ(s.GetLength(), 3);
  ASSERT_EQ(support::LengthWord(s), 6u);
  s += QXT("gh");
  EXPECT_EQ(TextOf(s), QXT("abc")) << "the appended text stays invisible";
  EXPECT_EQ(support::LengthWord(s), 8u);
  EXPECT_EQ(support::Text(support::BufferOf(s), 9), support::Text({'a', 'b', 'c', 0, 'e', 'f', 'g', 'h', 0}));
}

TEST(StringKept, CopyOfATextWithLengthWordZeroIsEmpty) {
  CQXString s;
  support::BufferOf(s)[0] = 'x';  // written through the pointer: visible, but the length word stays 0
  ASSERT_EQ(s.GetLength(), 1);
  const CQXString copy(s);
  EXPECT_EQ(copy.GetLength(), 0);
  EXPECT_EQ(support::BytesOf(copy), support::BytesOf(CQXString()));
}

TEST(StringKept, CopyKeepsTheBytesBehindAnEarlierZero) {
  CQXString s(QXT("abcdef"));
  support::BufferOf(s)[3] = 0;
  const CQXString copy(s);
  EXPECT_EQ(support::BytesOf(copy), support::BytesOf(s));
  CQXString assigned;
  assigned = s;
  EXPECT_EQ(support::LengthWord(assigned), 3u) << "assignment keeps only the visible text";
}

TEST(StringKept, EmptyKeepsAnAllocationOf1024AndReleasesOneOf1152) {
  CQXString kept(Repeat('x', 1024).c_str());
  const QXChar* buffer = kept;
  kept.Empty();
  EXPECT_EQ(static_cast<const QXChar*>(kept), buffer);
  EXPECT_EQ(support::WordAt(kept, 258), 0u);
  EXPECT_EQ(support::WordAt(kept, 262), 1024u);

  CQXString released(Repeat('x', 1152).c_str());
  released.Empty();
  EXPECT_EQ(support::BufferBytes(released), 266u);
  EXPECT_EQ(support::BytesOf(released), support::BytesOf(CQXString()));
}

TEST(StringKept, CompareLooksAtTheLengthFirst) {
  EXPECT_EQ(CQXString(QXT("b")).Compare(QXT("aa")), -1);
  EXPECT_EQ(CQXString(QXT("aa")).Compare(QXT("b")), 1);
}

}  // namespace
