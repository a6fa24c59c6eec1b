// line_scan_test.cpp - the vector forms against a unit at a time: all tiers, alignments and tails, at a page's end.

#include "streams/line_scan.h"

#include "streams/byte_widening.h"
#include "support/cpu_tier.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

template <class Unit>
struct Block {  // the last unit stands before an inaccessible page
  std::unique_ptr<unsigned char[]> bytes;
  Unit* units;
  std::size_t count;

  explicit Block(std::size_t n)
      : bytes(new unsigned char[n * sizeof(Unit) + sizeof(Unit)]), units(reinterpret_cast<Unit*>(bytes.get()) + 1), count(n) {
    std::fill(units, units + n, Unit('x'));
  }
};

constexpr std::size_t kMost = 200;

TEST(LineScan, FindsEachPlaceAtEveryLengthAndAlignment) {
  support::ForEachCpuTier([] {
    for (std::size_t count = 0; count <= kMost; ++count) {
      Block<unsigned char> bytes(count);
      Block<QXChar> units(count);
      ASSERT_EQ(qxv::FindByte(bytes.units, count, 13, 0), count);
      ASSERT_EQ(qxv::FindUnit(units.units, count, 13, 0), count);
      ASSERT_EQ(qxv::FindLowByte(units.units, count, 10, 0), count);
      for (std::size_t at = count; at-- > 0;) {  // the earlier one wins over those already there
        const bool second = at % 3 == 0;
        bytes.units[at] = second ? 0 : 13;
        units.units[at] = second ? 0 : 13;
        ASSERT_EQ(qxv::FindByte(bytes.units, count, 13, 0), at) << count;
        ASSERT_EQ(qxv::FindUnit(units.units, count, 13, 0), at) << count;
        ASSERT_EQ(qxv::FindByte(bytes.units + at, count - at, 13, 0), 0u) << count;
        ASSERT_EQ(qxv::FindUnit(units.units + at, count - at, 13, 0), 0u) << count;
        units.units[at] = second ? QXChar(0x4E00) : QXChar(0xFF0A);
        ASSERT_EQ(qxv::FindLowByte(units.units, count, 10, 0), at) << count;
        units.units[at] = second ? QXChar(0) : QXChar(13);
      }
    }
  });
}

TEST(LineScan, OnlyTheWholeUnitCountsUnlessLowBytesAreAskedFor) {
  support::ForEachCpuTier([] {
    std::vector<QXChar> units(100, QXChar(0x0D00));
    units[70] = QXChar(0x010D);
    EXPECT_EQ(qxv::FindUnit(units.data(), units.size(), 13, 0x000A), 100u);
    EXPECT_EQ(qxv::FindLowByte(units.data(), units.size(), 13, 10), 70u);
    EXPECT_EQ(qxv::FindLowByte(units.data(), units.size(), 0, 10), 0u);
  });
}

TEST(LineScan, EveryByteValueIsFoundAndNoOther) {
  support::ForEachCpuTier([] {
    std::array<unsigned char, 256> all;
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i] = static_cast<unsigned char>(i);
    }
    for (unsigned value = 0; value < 256; ++value) {
      const auto byte = static_cast<unsigned char>(value);
      ASSERT_EQ(qxv::FindByte(all.data(), all.size(), byte, byte), value);
    }
  });
}

TEST(LineScan, BytesAreWidenedAndAsciiIsKnownAtEveryLength) {
  support::ForEachCpuTier([] {
    for (std::size_t count = 0; count <= kMost; ++count) {
      Block<unsigned char> bytes(count);
      Block<QXChar> units(count);
      for (std::size_t i = 0; i < count; ++i) {
        bytes.units[i] = static_cast<unsigned char>(i % 0x80);
      }
      ASSERT_TRUE(qxv::IsAscii(bytes.units, count)) << count;
      for (std::size_t at = 0; at < count; ++at) {
        bytes.units[at] |= 0x80;
        ASSERT_FALSE(qxv::IsAscii(bytes.units, count)) << at << " of " << count;
        bytes.units[at] = static_cast<unsigned char>(bytes.units[at] & 0x7F);
      }
      for (std::size_t i = 0; i < count; ++i) {
        bytes.units[i] = static_cast<unsigned char>(i * 7);
      }
      qxv::WidenBytes(bytes.units, count, units.units);
      for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(units.units[i], static_cast<QXChar>((i * 7) & 0xFF)) << i << " of " << count;
      }
    }
  });
}

// Every place of the end, every place of a byte that makes the line another kind, and neither.
TEST(LineScan, ShortLinesAreWidenedWithZerosBehindThem) {
  constexpr std::size_t kRoom = qxv::kShortLine;
  support::ForEachCpuTier([] {
    const auto expectLikeReference = [](const unsigned char* bytes, const std::string& what) {
      Block<QXChar> units(kRoom);
      std::vector<QXChar> expected(kRoom, QXChar('x'));
      const std::size_t count = qxv::WidenShortLineReference(bytes, 13, expected.data());
      ASSERT_EQ(qxv::WidenShortLine(bytes, 13, units.units), count) << what;
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), units.units)) << what;
    };
    Block<unsigned char> bytes(kRoom);
    expectLikeReference(bytes.units, "no end");
    for (std::size_t end = 0; end < kRoom; ++end) {
      for (std::size_t i = 0; i < kRoom; ++i) {
        bytes.units[i] = static_cast<unsigned char>(14 + i % 0x72);
      }
      bytes.units[end] = 13;
      expectLikeReference(bytes.units, "end at " + std::to_string(end));
      for (std::size_t at = 0; at < kRoom; ++at) {
        for (const unsigned char other : std::initializer_list<unsigned char>{0x00, 0x80, 0xFF, 13}) {
          const unsigned char before = bytes.units[at];
          bytes.units[at] = other;
          expectLikeReference(bytes.units,
                              "end at " + std::to_string(end) + ", " + std::to_string(other) + " at " + std::to_string(at));
          bytes.units[at] = before;
        }
      }
    }
  });
}

TEST(LineScan, AShortLineIsWhatStandsBeforeItsEnd) {
  std::string bytes = "ab\r\n";
  bytes.resize(qxv::kShortLine, 'y');
  const auto* line = reinterpret_cast<const unsigned char*>(bytes.data());
  support::ForEachCpuTier([line] {
    std::array<QXChar, qxv::kShortLine> units;
    units.fill(QXChar('x'));
    EXPECT_EQ(qxv::WidenShortLine(line, 'b', units.data()), 1u);
    EXPECT_EQ(units[0], QXChar('a'));
    EXPECT_EQ(units[1], QXChar(0));
    EXPECT_EQ(qxv::WidenShortLine(line, '\r', units.data()), 2u);
    EXPECT_EQ(units[1], QXChar('b'));
    EXPECT_EQ(units[127], QXChar(0));
    EXPECT_EQ(qxv::WidenShortLine(line, 'z', units.data()), qxv::kNoShortLine);
    EXPECT_EQ(units[1], QXChar('b'));
  });
}

struct Ends {
  const char* text;
  std::size_t count;
};
constexpr Ends kEnds[] = {{"", 0},       {"\r", 1},       {"\n", 0},     {"\r\n", 1},     {"a\rb\rc", 2},   {"\r\r", 1},
                          {"\r\r\r", 2}, {"\r\r\r\r", 2}, {"\r\n\r", 2}, {"\n\r\n\r", 2}, {"a\r\r\rb\r", 3}};

TEST(LineScan, TheUnitBehindACountedReturnIsNotLookedAt) {
  support::ForEachCpuTier([] {
    for (const Ends& row : kEnds) {
      const std::string bytes(row.text);
      const support::Text units(bytes.begin(), bytes.end());
      for (std::size_t before = 0; before < 130; ++before) {  // across the ends of vectors and of pieces
        const std::string padded = std::string(before, 'x') + bytes;
        const support::Text wide = support::Text(before, QXChar('x')) + units;
        for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, std::size_t{64}, padded.size() + 1}) {
          qxv::LineEndCounter narrow, broad;
          for (std::size_t at = 0; at < padded.size(); at += piece) {
            const std::size_t n = std::min(piece, padded.size() - at);
            narrow.Add(reinterpret_cast<const unsigned char*>(padded.data()) + at, n);
            broad.Add(wide.data() + at, n);
          }
          ASSERT_EQ(narrow.Count(), row.count) << testing::PrintToString(row.text) << " behind " << before << " by " << piece;
          ASSERT_EQ(broad.Count(), row.count) << testing::PrintToString(row.text) << " behind " << before << " by " << piece;
        }
      }
    }
  });
}

TEST(LineScan, CountsAreTheReferencesForAnyMixture) {
  std::mt19937 random(7);
  for (const unsigned of : {2u, 3u, 10u, 80u}) {
    std::vector<unsigned char> bytes(5000);
    for (auto& byte : bytes) {
      byte = random() % of == 0 ? 13 : random() % 5 == 0 ? 10 : 'x';
    }
    const std::vector<QXChar> units(bytes.begin(), bytes.end());
    const std::size_t expected = qxv::CountLineEndsReference(bytes.data(), bytes.size());
    EXPECT_EQ(qxv::CountLineEndsReference(units.data(), units.size()), expected);
    support::ForEachCpuTier([&] {
      qxv::LineEndCounter narrow, broad;
      narrow.Add(bytes.data(), bytes.size());
      broad.Add(units.data(), units.size());
      EXPECT_EQ(narrow.Count(), expected);
      EXPECT_EQ(broad.Count(), expected);
    });
  }
}

}  // namespace
