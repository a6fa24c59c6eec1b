// text_scan_test.cpp - ScanLength, ScanFind and TwoWayFind in each tier of kernels.

#include "foundation/text_scan.h"

#include "foundation/two_way_search.h"
#include "support/cpu_tier.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <random>
#include <vector>

namespace {

using support::Repeat;
using support::Text;

// The place as an index; -1 for none.
std::ptrdiff_t Place(const Text& text, const QXChar* found) { return found == nullptr ? -1 : found - text.data(); }
std::ptrdiff_t Find(const Text& text, const Text& needle) {
  return Place(text, qxv::ScanFind(text.data(), text.size(), needle.data(), needle.size()));
}

struct Block {  // units that end at an inaccessible page
  explicit Block(const Text& text) : units(new QXChar[text.size()]) { std::copy(text.begin(), text.end(), units.get()); }
  std::unique_ptr<QXChar[]> units;
};

TEST(TextScan, LengthOfEveryTextAtEveryAlignment) {
  alignas(256) static QXChar room[128 + 1200];
  support::ForEachCpuTier([&] {
    for (std::size_t start = 0; start < 128; ++start) {
      for (std::size_t length = 0; length < 600; ++length) {
        std::fill(std::begin(room), std::end(room), QXChar{0});  // zeros before the text must not count
        std::fill_n(room + start, length, length % 2 == 0 ? QXChar{0x0100} : QXChar{0x8000});
        ASSERT_EQ(qxv::ScanLength(room + start), length) << "start " << start;
      }
    }
  });
}

TEST(TextScan, LengthTakesTheFirstOfSeveralZeros) {
  const QXChar text[] = {'a', 0xFFFF, 'c', 0, 'd', 0, 0};
  EXPECT_EQ(qxv::ScanLengthReference(text), 3u);
  support::ForEachCpuTier([&] { EXPECT_EQ(qxv::ScanLength(text), 3u); });
}

TEST(TextScan, LengthOfALongTextWithoutZeroBytesPairs) {  // a zero byte in the middle of two units is not a zero unit
  Text text;
  for (int i = 0; i < 20'000; ++i) {
    text.push_back(i % 2 == 0 ? QXChar{0x0041} : QXChar{0x4100});
  }
  support::ForEachCpuTier([&] { EXPECT_EQ(qxv::ScanLength(text.c_str()), 20'000u); });
}

TEST(TextScan, LengthReadsNothingInThePageBehindTheText) {
  support::ForEachCpuTier([&] {
    for (std::size_t length = 0; length < 600; ++length) {
      Text text = Repeat(QXChar{'x'}, length);
      text.push_back(0);
      const Block block(text);
      ASSERT_EQ(qxv::ScanLength(block.units.get()), length);
    }
  });
}

TEST(TextScan, FindTable) {
  struct Row {
    const char* name;
    Text text, needle;
    std::ptrdiff_t place;
  };
  const Row rows[] = {
      {"empty needle", QXT("abc"), QXT(""), 0},
      {"empty needle in empty text", QXT(""), QXT(""), 0},
      {"needle in empty text", QXT(""), QXT("a"), -1},
      {"longer needle", QXT("abc"), QXT("abcd"), -1},
      {"whole text", QXT("abc"), QXT("abc"), 0},
      {"one unit", QXT("abcabc"), QXT("c"), 2},
      {"two units", QXT("aabab"), QXT("ab"), 1},
      {"at the end", QXT("the quick brown fox jumps over the lazy dog"), QXT("dog"), 40},
      {"first of two", QXT("the quick brown fox jumps over the lazy dog, the dog"), QXT("dog"), 40},
      {"first and last unit alike elsewhere", QXT("d-g dxg dyg dog"), QXT("dog"), 12},
      {"high byte differs", Text{0x0161, 0x0061}, Text{0x0061}, 1},
      {"zero units are units", Text{'a', 0, 0, 'b'}, Text{0, 'b'}, 2},
      {"overlapping own start", QXT("aaaaaaaaaaaaaaaaaaaab"), QXT("aaab"), 17},
  };
  support::ForEachCpuTier([&] {
    for (const Row& row : rows) {
      EXPECT_EQ(Find(row.text, row.needle), row.place) << row.name;
    }
  });
}

TEST(TextScan, FindAtEveryPlaceOfEveryLengthEqualsTheReference) {
  support::ForEachCpuTier([&] {
    for (const std::size_t needleLength : {1u, 2u, 3u, 9u, 10u, 11u, 18u, 40u}) {
      Text needle = Repeat(QXChar{'n'}, needleLength);
      needle.front() = 'a';
      needle.back() = 'z';
      for (std::size_t length = needleLength; length < needleLength + 140; ++length) {
        const Text empty = Repeat(QXChar{'n'}, length);
        ASSERT_EQ(Find(empty, needle), -1);
        for (std::size_t place = 0; place + needleLength <= length; ++place) {
          Text text = empty;
          std::copy(needle.begin(), needle.end(), text.begin() + static_cast<std::ptrdiff_t>(place));
          ASSERT_EQ(Find(text, needle), static_cast<std::ptrdiff_t>(place)) << length << " units, needle " << needleLength;
        }
      }
    }
  });
}

TEST(TextScan, FindInRandomTextsOfFewLettersEqualsTheReference) {
  support::ForEachCpuTier([] {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
      Text text(random() % 300, 0), needle(1 + random() % 12, 0);
      const auto letters = 1 + random() % 3;
      for (QXChar& unit : text) {
        unit = static_cast<QXChar>('a' + random() % letters);
      }
      for (QXChar& unit : needle) {
        unit = static_cast<QXChar>('a' + random() % letters);
      }
      const auto place = Place(text, qxv::ScanFindReference(text.data(), text.size(), needle.data(), needle.size()));
      ASSERT_EQ(Place(text, qxv::TwoWayFind(text.data(), text.size(), needle.data(), needle.size())), place) << round;
      ASSERT_EQ(Find(text, needle), place) << round;
    }
  });
}

TEST(TextScan, FindReadsNothingOutsideItsRanges) {
  support::ForEachCpuTier([&] {
    for (const std::size_t needleLength : {1u, 2u, 5u, 12u, 30u}) {
      Text needle = Repeat(QXChar{'n'}, needleLength);
      needle.back() = 'z';
      const Block needleBlock(needle);
      for (std::size_t length = needleLength; length < 200; ++length) {
        const Block block(Repeat(QXChar{'n'}, length));
        ASSERT_EQ(qxv::ScanFind(block.units.get(), length, needleBlock.units.get(), needleLength), nullptr) << length;
        std::copy(needle.begin(), needle.end(), block.units.get() + length - needleLength);
        ASSERT_EQ(qxv::ScanFind(block.units.get(), length, needleBlock.units.get(), needleLength),
                  block.units.get() + length - needleLength)
            << length;
      }
    }
  });
}

TEST(TextScan, FindStaysLinearWhenEveryPlaceFailsLate) {
  // Tried place by place, 8 units a step, each of the four takes some 20 s; linear: milliseconds.
  constexpr std::size_t kHalf = 600'000;
  const Text text = Repeat(QXChar{'a'}, 3 * kHalf);
  Text inside = Repeat(QXChar{'a'}, kHalf);
  inside[kHalf / 3] = 'b';
  Text found = text;
  found[2 * kHalf + kHalf / 3] = 'b';
  support::ForEachCpuTier([&] {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Find(text, inside), -1);
    EXPECT_EQ(Find(found, inside), static_cast<std::ptrdiff_t>(2 * kHalf));
    EXPECT_EQ(Find(text, Repeat(QXChar{'a'}, kHalf) + QXT("b")), -1);
    EXPECT_EQ(Find(text, QXT("b") + Repeat(QXChar{'a'}, kHalf)), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  });
}

TEST(TextScan, FindGoesOnBehindTheFailuresThatUsedTheBudget) {
  // 3,000 places fail after 60 equal units; then the search, by now two-way, finds the needle of each shape.
  for (const Text& needle :
       {Repeat(QXChar{'a'}, 60) + QXT("b") + Repeat(QXChar{'a'}, 5),
        Repeat(QXChar{'a'}, 30) + QXT("bb") + Repeat(QXChar{'a'}, 40), QXT("abababababababababac") + Text(QXT("a"))}) {
    Text text = Repeat(QXChar{'a'}, 3000);
    for (int i = 0; i < 1500; ++i) {
      text += QXT("ab");
    }
    const auto place = static_cast<std::ptrdiff_t>(text.size());
    text += QXT("!") + needle + QXT("tail");
    support::ForEachCpuTier([&] { EXPECT_EQ(Find(text, needle), place + 1) << needle.size(); });
  }
}

TEST(TextScan, FindMissesNoPlaceWhereTheBudgetEnds) {
  const Text needle = Repeat(QXChar{'a'}, 60) + QXT("b") + Repeat(QXChar{'a'}, 5);
  support::ForEachCpuTier([&] {
    for (std::size_t place = 0; place < 400; ++place) {
      Text text = Repeat(QXChar{'a'}, 600);
      text[place + 60] = 'b';
      ASSERT_EQ(Find(text, needle), static_cast<std::ptrdiff_t>(place));
    }
  });
}

}  // namespace
