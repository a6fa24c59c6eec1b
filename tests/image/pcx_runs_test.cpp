// pcx_runs_test.cpp - the runs of a PCX row beside a reference that takes one value at a time.

#include "image/pcx_runs.h"

#include "image/codec_files.h"
#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

namespace {

using namespace image_test;

std::string EncodedOneByOne(const std::string& row) {
  std::string runs;
  for (std::size_t c = 0; c < row.size();) {
    std::size_t length = 1;
    while (c + length < row.size() && length < 63 && row[c + length] == row[c]) {
      ++length;
    }
    if (length > 1 || static_cast<unsigned char>(row[c]) >= 0xC0) {
      runs += static_cast<char>(0xC0 + length);
    }
    runs += row[c];
    c += length;
  }
  return runs;
}

// Blocks of exactly this size, so that a byte outside of them ends the program.
struct Exact {
  explicit Exact(std::size_t count) : bytes(new unsigned char[count]), size(count) {}
  explicit Exact(const std::string& text) : Exact(text.size()) { std::copy(text.begin(), text.end(), bytes.get()); }
  std::span<unsigned char> Span() const { return {bytes.get(), size}; }
  std::unique_ptr<unsigned char[]> bytes;
  std::size_t size;
};

std::string Encoded(const std::string& row, std::size_t room) {
  const Exact values(row + std::string(qxv::kPcxSlack, row.empty() ? 'x' : row.back())), out(room);
  std::string runs;
  for (std::size_t done = 0; done < row.size();) {
    const std::size_t count = qxv::EncodePcxRuns(values.Span().first(row.size()), done, out.Span());
    EXPECT_GT(count, 0u);
    EXPECT_LE(count, room);
    runs.append(reinterpret_cast<const char*>(out.bytes.get()), count);
    if (count == 0) {
      break;
    }
  }
  return runs;
}

// In pieces of at least two bytes, as a file gives them.
std::string Decoded(const std::string& runs, std::size_t width, std::size_t piece) {
  const Exact row(width + qxv::kPcxSlack);
  std::size_t done = 0;
  for (std::size_t at = 0; done < width && at < runs.size();) {
    const Exact bytes(runs.substr(at, piece));
    const std::size_t used = qxv::DecodePcxRuns(bytes.Span(), row.Span().first(width), done);
    EXPECT_GT(used, 0u) << "at " << at << " of " << runs.size();
    if (used == 0) {
      break;
    }
    at += used;
  }
  return std::string(reinterpret_cast<const char*>(row.bytes.get()), done);
}

std::string RandomRow(std::mt19937& random, std::size_t width) {
  const auto kinds = random() % 4;
  std::string row;
  while (row.size() < width) {
    const bool run = kinds == 3 || (kinds != 0 && random() % 4 == 0);
    row.append(run ? 1 + random() % 200 : 1, static_cast<char>(kinds == 2 ? 0xB0 + random() % 32 : random()));
  }
  row.resize(width);
  return row;
}

TEST(PcxRuns, AreThoseOfTheReference) {
  support::ForEachCpuTier([] {
    std::mt19937 random(1);
    for (int turn = 0; turn < 2000; ++turn) {
      const std::string row = RandomRow(random, random() % (turn % 10 == 0 ? 9000 : 400));
      const std::string expected = EncodedOneByOne(row);
      ASSERT_EQ(Hex(Encoded(row, qxv::kLeastPcxRoom + random() % 3000)), Hex(expected)) << Hex(row);
      ASSERT_EQ(Hex(Decoded(expected, row.size(), 2 + random() % 3000)), Hex(row));
    }
  });
}

TEST(PcxRuns, EveryPairOfValues) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string row = Bytes({first, second, first, first, second, first, second, second, second, first, second, first});
      const std::string expected = EncodedOneByOne(row);
      ASSERT_EQ(Hex(Encoded(row, qxv::kLeastPcxRoom)), Hex(expected));
      ASSERT_EQ(Hex(Decoded(expected, row.size(), 100)), Hex(row));
    }
  }
}

TEST(PcxRuns, OfEveryLengthAtEveryPlace) {
  for (std::size_t before = 0; before < 70; ++before) {
    for (std::size_t length = 1; length < 200; ++length) {
      std::string row;
      for (std::size_t i = 0; i < before; ++i) {
        row += static_cast<char>(i);
      }
      row += std::string(length, 'r') + "end";
      const std::string expected = EncodedOneByOne(row);
      ASSERT_EQ(Hex(Encoded(row, qxv::kLeastPcxRoom)), Hex(expected));
      ASSERT_EQ(Hex(Decoded(expected, row.size(), 64)), Hex(row));
    }
  }
}

TEST(PcxRuns, StopWhereTheRowIsFull) {
  const Exact row(10 + qxv::kPcxSlack);
  std::size_t done = 7;
  const Exact bytes("abcdefghij");
  EXPECT_EQ(qxv::DecodePcxRuns(bytes.Span(), row.Span().first(10), done), 3u);
  EXPECT_EQ(done, 10u);
  const Exact beyond("a\xC3zzzzzzzz");
  done = 7;
  EXPECT_EQ(qxv::DecodePcxRuns(beyond.Span(), row.Span().first(10), done), 1u) << "the run is left";
  EXPECT_EQ(done, 8u);
  const Exact half("\xC1");
  EXPECT_EQ(qxv::DecodePcxRuns(half.Span(), row.Span().first(10), done), 0u);
}

TEST(PcxRuns, FewestBytes) {
  EXPECT_EQ(qxv::FewestPcxBytes(1), 1u);
  EXPECT_EQ(qxv::FewestPcxBytes(2), 2u);
  EXPECT_EQ(qxv::FewestPcxBytes(62), 2u);
  EXPECT_EQ(qxv::FewestPcxBytes(63), 2u);
  EXPECT_EQ(qxv::FewestPcxBytes(64), 3u);
  EXPECT_EQ(qxv::FewestPcxBytes(126), 4u);
  EXPECT_EQ(qxv::FewestPcxBytes(65536), 2082u);
}

}  // namespace
