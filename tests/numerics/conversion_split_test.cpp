// conversion_split_test.cpp - texts split and joined at a separator.

#include "qxv/conversion.h"

#include "support/guard_new.h"
#include "support/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

namespace {

using support::Repeat;
using support::Text;
using support::TextOf;
using testing::ElementsAre;

using Parts = CQXArray<CQXString, CQXString&>;

std::vector<Text> TextsOf(const Parts& parts) {
  std::vector<Text> texts;
  for (QXInt64 i = 0; i < parts.GetSize(); ++i) {
    texts.push_back(TextOf(parts[i]));
  }
  return texts;
}

Parts PartsOf(std::initializer_list<const QXChar*> texts) {
  Parts parts;
  for (const QXChar* text : texts) {
    CQXString part(text);
    parts.Add(part);
  }
  return parts;
}

std::vector<Text> Split(const QXChar* separator, const QXChar* source) {
  Parts parts = PartsOf({QXT("old")});
  EXPECT_EQ(QXVStrtoStrArr(separator, source, parts), 1);
  return TextsOf(parts);
}

const Text kNone;

TEST(Split, EmptySourceIsOneEmptyPart) { EXPECT_THAT(Split(QXT(","), QXT("")), ElementsAre(kNone)); }

TEST(Split, EmptyOrNullSeparatorGivesTheWholeSource) {
  EXPECT_THAT(Split(QXT(""), QXT("abc")), ElementsAre(QXT("abc")));
  EXPECT_THAT(Split(nullptr, QXT("abc")), ElementsAre(QXT("abc")));
  EXPECT_THAT(Split(nullptr, QXT("")), ElementsAre(kNone));
}

TEST(Split, EveryEmptyPartIsKept) {
  EXPECT_THAT(Split(QXT(","), QXT("a,,b,")), ElementsAre(QXT("a"), kNone, QXT("b"), kNone));
  EXPECT_THAT(Split(QXT(","), QXT(",")), ElementsAre(kNone, kNone));
  EXPECT_THAT(Split(QXT(","), QXT(",,")), ElementsAre(kNone, kNone, kNone));
}

TEST(Split, LongerSeparatorsMatchFromLeftToRightWithoutOverlap) {
  EXPECT_THAT(Split(QXT("=="), QXT("a===b")), ElementsAre(QXT("a"), QXT("=b")));
  EXPECT_THAT(Split(QXT("aa"), QXT("aaaaa")), ElementsAre(kNone, kNone, QXT("a")));
  EXPECT_THAT(Split(QXT("\r\n"), QXT("one\r\ntwo\nthree\r\n")), ElementsAre(QXT("one"), QXT("two\nthree"), kNone));
  EXPECT_THAT(Split(QXT("abc"), QXT("abc")), ElementsAre(kNone, kNone));
  EXPECT_THAT(Split(QXT("abcd"), QXT("abc")), ElementsAre(QXT("abc")));
}

TEST(Split, SeparatorMatchesExactlyAndCaseCounts) {
  EXPECT_THAT(Split(QXT("x"), QXT("aXbxc")), ElementsAre(QXT("aXb"), QXT("c")));
  EXPECT_THAT(Split(QXT("\u00E9"), QXT("a\u00C9b\u00E9c")), ElementsAre(QXT("a\u00C9b"), QXT("c")));
}

TEST(Split, NullSourceLeavesThePartsUntouched) {
  Parts parts = PartsOf({QXT("kept"), QXT("too")});
  EXPECT_EQ(QXVStrtoStrArr(QXT(","), nullptr, parts), 0);
  EXPECT_THAT(TextsOf(parts), ElementsAre(QXT("kept"), QXT("too")));
}

TEST(Split, SourceAndSeparatorMayBeElementsOfTheParts) {
  Parts parts = PartsOf({QXT("-"), QXT("1-2-3")});
  EXPECT_EQ(QXVStrtoStrArr(parts[0], parts[1], parts), 1);
  EXPECT_THAT(TextsOf(parts), ElementsAre(QXT("1"), QXT("2"), QXT("3")));
  EXPECT_EQ(QXVStrtoStrArr(nullptr, parts[2], parts), 1);
  EXPECT_THAT(TextsOf(parts), ElementsAre(QXT("3")));
}

TEST(Split, PartsLongerThanOneBlockKeepTheirText) {
  const Text first = Repeat('a', 127);
  const Text second = Repeat('b', 128);
  const Text third = Repeat('c', 5000);
  EXPECT_THAT(Split(QXT(";"), (first + QXT(";") + second + QXT(";") + third).c_str()), ElementsAre(first, second, third));
}

TEST(Split, ReadsNothingBehindTheTerminators) {
  // Array blocks end at an inaccessible page.
  const auto block = [](const Text& text) {
    auto units = std::make_unique<QXChar[]>(text.size() + 1);
    std::copy(text.begin(), text.end(), units.get());
    return units;
  };
  for (std::size_t length = 0; length < 70; ++length) {
    Parts parts;
    EXPECT_EQ(QXVStrtoStrArr(block(QXT("ab")).get(), block(Repeat('a', length)).get(), parts), 1);
    EXPECT_THAT(TextsOf(parts), ElementsAre(Repeat('a', length)));
    EXPECT_EQ(QXVStrArrtoStr(block(QXT("ab")).get(), parts).GetLength(), static_cast<int>(length));
  }
}

TEST(Split, AllocatesOncePerPart) {
  Text source;
  for (int i = 0; i < 2000; ++i) {
    source += QXT("field,");
  }
  Parts parts;
  const std::size_t before = support::AllocationsOfThisThread();
  EXPECT_EQ(QXVStrtoStrArr(QXT(","), source.c_str(), parts), 1);
  EXPECT_LE(support::AllocationsOfThisThread() - before, 2001u + 5u);
  EXPECT_EQ(parts.GetSize(), 2001);
}

TEST(Split, FailedAllocationLeavesValidParts) {
  const Text source = QXT("one,") + Repeat('2', 300) + QXT(",three");
  const std::size_t live = support::LiveArrays();
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    ASSERT_LT(index, 100u);
    Parts parts = PartsOf({QXT("old")});
    {
      const support::FailAllocation fail(index);
      try {
        (void)QXVStrtoStrArr(QXT(","), source.c_str(), parts);
      } catch (const std::bad_alloc&) {
      }
      refused = fail.Refused();
    }
    EXPECT_EQ(QXVStrtoStrArr(QXT(","), source.c_str(), parts), 1) << "after refusing allocation " << index;
    EXPECT_THAT(TextsOf(parts), ElementsAre(QXT("one"), Repeat('2', 300), QXT("three")));
  }
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST(Join, NoSeparatorBehindTheLastElement) {
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(", "), PartsOf({QXT("a"), QXT(""), QXT("b")}))), QXT("a, , b"));
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(","), PartsOf({QXT("a")}))), QXT("a"));
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(","), PartsOf({QXT("")}))), kNone);
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(","), PartsOf({QXT(""), QXT("")}))), QXT(","));
}

TEST(Join, EmptyArrayGivesAnEmptyTextAndStaysEmpty) {
  const Parts parts;
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(","), parts)), kNone);
  EXPECT_EQ(parts.GetSize(), 0);
}

TEST(Join, NullOrEmptySeparatorPutsNothingBetween) {
  EXPECT_EQ(TextOf(QXVStrArrtoStr(nullptr, PartsOf({QXT("a"), QXT("b")}))), QXT("ab"));
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(""), PartsOf({QXT("a"), QXT("b")}))), QXT("ab"));
}

TEST(Join, TakesTheVisibleTextOfElementsThatWereCutThroughTheirPointer) {
  Parts parts = PartsOf({QXT("abcdef"), QXT("x")});
  const_cast<QXChar*>(static_cast<const QXChar*>(parts[0]))[2] = 0;
  EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT("-"), parts)), QXT("ab-x"));
}

TEST(Join, SeparatorMayBeAnElement) {
  const Parts parts = PartsOf({QXT("+"), QXT("a")});
  EXPECT_EQ(TextOf(QXVStrArrtoStr(parts[0], parts)), QXT("++a"));
}

TEST(Join, AllocationsGrowWithTheLogarithmOfTheText) {
  Parts parts;
  CQXString part(QXT("0123456789"));
  for (int i = 0; i < 3000; ++i) {
    parts.Add(part);
  }
  const std::size_t before = support::AllocationsOfThisThread();
  const CQXString joined = QXVStrArrtoStr(QXT(","), parts);
  EXPECT_LE(support::AllocationsOfThisThread() - before, 20u);
  EXPECT_EQ(joined.GetLength(), 3000 * 11 - 1);
}

TEST(SplitAndJoin, GiveTheTextBack) {
  for (const QXChar* text : {QXT(""), QXT(","), QXT("a,,b,"), QXT("no separator"), QXT(",,,"), QXT("x,y,z")}) {
    Parts parts;
    EXPECT_EQ(QXVStrtoStrArr(QXT(","), text, parts), 1);
    EXPECT_EQ(TextOf(QXVStrArrtoStr(QXT(","), parts)), Text(text));
  }
}

}  // namespace
