// gif_lzw_test.cpp - the string coder of GIF frames: single codes, and whole streams beside the rule taken literally.

#include "image/gif_lzw.h"

#include "image/gif_linear.h"
#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using qxv::CodeOutput;
using qxv::CTable;
using support::BytesOf;
using support::InSubBlocks;
using support::LinearGifCoder;

// What use(out) writes.
template <typename Use>
std::string Written(Use use) {
  const support::TempFolder folder;
  const auto name = folder.File(QXT("a.bin"));
  {
    qxv::FileWriter out;
    EXPECT_EQ(out.Open(name.c_str()), 0u);
    use(out);
  }
  return support::ReadBytes(name);
}

// One frame, given in parts of a number of bytes.
std::string Coded(const std::string& indices, std::size_t part = std::string::npos) {
  return Written([&](qxv::FileWriter& out) {
    const auto frame = std::make_unique<qxv::CFrame>(out);
    for (std::size_t at = 0; at < indices.size(); at += std::min(part, indices.size() - at)) {
      EXPECT_EQ(frame->Encode(BytesOf(indices).subspan(at, std::min(part, indices.size() - at))), 0u);
    }
    EXPECT_EQ(frame->Finish(), 0u);
  });
}

std::string Noise(std::size_t size, unsigned colours, unsigned seed) {
  std::mt19937 random(seed);
  std::string indices(size, '\0');
  std::generate(indices.begin(), indices.end(), [&] { return static_cast<char>(random() % colours); });
  return indices;
}

// Runs of random lengths.
std::string Runs(std::size_t size, unsigned colours, unsigned longest, unsigned seed) {
  std::mt19937 random(seed);
  std::string indices;
  while (indices.size() < size) {
    const char index = static_cast<char>(random() % colours);
    indices.append(1 + random() % longest, index);
  }
  indices.resize(size);
  return indices;
}

// size bytes in which no two neighbours stand side by side again, up to 65,536 pairs: every string ends after one byte.
std::string NoPairTwice(std::size_t size) {
  std::vector<unsigned> next(256, 0);  // by byte: the distance to its next follower
  std::string indices(1, '\0');
  while (indices.size() < size) {
    const auto last = static_cast<unsigned char>(indices.back());
    indices += static_cast<char>(last + next[last]++);
  }
  return indices;
}

TEST(CodeOutput, PacksFromTheLowestBitUp) {
  const std::string bytes = Written([](qxv::FileWriter& out) {
    CodeOutput codes(out);
    EXPECT_EQ(codes.Put(9, 0), 0u);
    EXPECT_EQ(codes.Put(9, 257), 0u);
    codes.Finish();
  });
  EXPECT_EQ(bytes, std::string("\x03\x00\x02\x02\x00", 5));
}

TEST(CodeOutput, RefusesWidthsOutside1To12) {
  const std::string bytes = Written([](qxv::FileWriter& out) {
    CodeOutput codes(out);
    for (const unsigned width : {0u, 13u, 32u, 0xFFFFFFFFu}) {
      EXPECT_EQ(codes.Put(width, 1), 0x89601A18u) << width;
    }
    EXPECT_EQ(codes.Put(1, 1), 0u);
    EXPECT_EQ(codes.Put(12, 0x801), 0u);
    codes.Finish();
  });
  EXPECT_EQ(bytes, std::string("\x02\x03\x10\x00", 4)) << "a bit 1, then bits 1 and 12 of twelve";
}

TEST(CodeOutput, BlocksOf255BytesAndAShorterOne) {
  for (const std::size_t size : {0u, 1u, 254u, 255u, 256u, 510u, 511u, 32639u, 32640u, 32641u, 100'000u}) {
    const std::string bytes = Noise(size, 256, 1);
    const std::string blocks = Written([&](qxv::FileWriter& out) {
      CodeOutput codes(out);
      for (const char byte : bytes) {
        EXPECT_EQ(codes.Put(8, static_cast<unsigned char>(byte)), 0u);
      }
      codes.Finish();
    });
    EXPECT_TRUE(blocks == InSubBlocks(bytes)) << size;
  }
}

unsigned CodeOf(const CTable& table, unsigned code, unsigned char byte) { return table.Find(code, byte).code; }

void Add(CTable& table, unsigned code, unsigned char byte) {
  const auto place = table.Find(code, byte);
  ASSERT_EQ(place.code, CTable::kNoCode);
  table.Add(code, byte, place.index);
}

TEST(GifTable, HoldsWhatWasAddedUntilItIsCleared) {
  CTable table;
  EXPECT_EQ(table.FirstFree(), 258u);
  EXPECT_EQ(CodeOf(table, 0, 0), CTable::kNoCode);
  for (unsigned code = 258; code < 4096; ++code) {
    Add(table, code - 258, static_cast<unsigned char>(code));
  }
  EXPECT_EQ(table.FirstFree(), 4096u);
  for (unsigned code = 258; code < 4096; ++code) {
    ASSERT_EQ(CodeOf(table, code - 258, static_cast<unsigned char>(code)), code);
    ASSERT_EQ(CodeOf(table, code - 258, static_cast<unsigned char>(code + 1)), CTable::kNoCode);
  }
  table.Clear();
  EXPECT_EQ(table.FirstFree(), 258u);
  EXPECT_EQ(CodeOf(table, 0, 2), CTable::kNoCode);
}

TEST(GifTable, KnowsTheLongestRuns) {
  CTable table;
  EXPECT_EQ(table.LongestRun(7).length, 1u);
  EXPECT_EQ(table.LongestRun(7).code, 7u);
  Add(table, 7, 7);    // 258: 7 7
  Add(table, 7, 8);    // 259: 7 8
  Add(table, 259, 7);  // 260: 7 8 7
  Add(table, 258, 7);  // 261: 7 7 7
  EXPECT_EQ(table.LongestRun(7).length, 3u);
  EXPECT_EQ(table.LongestRun(7).code, 261u);
  EXPECT_EQ(table.LongestRun(8).length, 1u);
  table.Clear();
  EXPECT_EQ(table.LongestRun(7).length, 1u);
}

struct Stream {
  std::string what;
  std::string indices;
};

std::vector<Stream> Streams() {
  std::vector<Stream> streams;
  for (const unsigned colours : {1u, 2u, 3u, 16u, 256u}) {
    for (const std::size_t size : {1u, 2u, 3u, 100u, 4000u, 20'000u}) {
      streams.push_back({"noise of " + std::to_string(colours) + ", " + std::to_string(size), Noise(size, colours, 7)});
    }
  }
  for (const unsigned longest : {3u, 20u, 300u, 5000u}) {
    streams.push_back({"runs up to " + std::to_string(longest), Runs(30'000, 4, longest, longest)});
  }
  std::string ramp(20'000, '\0');
  std::iota(ramp.begin(), ramp.end(), '\0');
  streams.push_back({"ramp", ramp});
  return streams;
}

TEST(GifLzw, CodesAreThoseOfTheLinearSearch) {
  std::size_t clears = 0;
  for (const Stream& stream : Streams()) {
    LinearGifCoder linear;
    const std::string expected = InSubBlocks(linear.Encode(stream.indices));
    clears += linear.Clears();
    EXPECT_TRUE(Coded(stream.indices) == expected) << stream.what;
    EXPECT_TRUE(Coded(stream.indices, 1000) == expected) << stream.what << ", in parts";
  }
  EXPECT_GT(clears, 5u) << "tables were filled";
}

TEST(GifLzw, PartsOfEverySizeGiveTheSameCodes) {
  const std::string indices = Runs(3000, 3, 200, 5);
  const std::string whole = InSubBlocks(LinearGifCoder().Encode(indices));
  for (const std::size_t part : {1u, 2u, 7u, 8u, 9u, 64u, 199u, 2999u}) {
    EXPECT_TRUE(Coded(indices, part) == whole) << part;
  }
}

TEST(GifLzw, FramesAreCodedEachForItself) {
  const std::string indices = Noise(6000, 256, 3);
  const std::string one = InSubBlocks(LinearGifCoder().Encode(indices));
  const std::string two = Written([&](qxv::FileWriter& out) {
    const auto frame = std::make_unique<qxv::CFrame>(out);
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(frame->Encode(BytesOf(indices)), 0u);
      EXPECT_EQ(frame->Finish(), 0u);
    }
  });
  EXPECT_TRUE(two == one + one);
}

// Every new pair sends one code and takes one place: the 255th is the one behind which the first free code is 512 and no bit of
// the last byte is left, so the end code begins a byte of its own, still in nine bits.
TEST(GifLzw, TheEndCodeHasTheOldWidthAtTheBoundary) {
  const std::string bytes = LinearGifCoder().Encode(NoPairTwice(255));
  ASSERT_EQ(bytes.size(), 288u) << "256 codes of 9 bits";
  EXPECT_EQ(static_cast<unsigned char>(bytes[286]) >> 7 | static_cast<unsigned char>(bytes[287]) << 1, 257);
  for (const std::size_t pairs : {254u, 255u, 256u, 766u, 767u, 768u, 1790u, 1791u, 1792u}) {
    const std::string indices = NoPairTwice(pairs);
    EXPECT_TRUE(Coded(indices) == InSubBlocks(LinearGifCoder().Encode(indices))) << pairs;
  }
}

TEST(GifLzw, NothingIsSentForAStringThatIsEmptyAfterAClearCode) {
  const std::string indices = NoPairTwice(3840);  // 3,839 pairs: the table is full at the 3,838th, the next one empties it
  const std::string coded = Coded(indices);
  EXPECT_TRUE(coded == InSubBlocks(LinearGifCoder().Encode(indices)));
  // 255 codes of 9 bits, 512 of 10, 1,024 of 11, 2,047 of 12, the pending byte and the clear code of 12, the end code of 9
  const std::size_t bits = 255 * 9 + 512 * 10 + 1024 * 11 + 2048 * 12 + 2 * 12 + 9;
  EXPECT_EQ(coded.size(), InSubBlocks(std::string((bits + 7) / 8, '\0')).size());
}

TEST(GifLzwKept, AFullTableSendsThePendingByteBeforeTheClearCode) {
  const std::string indices = NoPairTwice(3841);
  LinearGifCoder linear;
  const std::string bytes = linear.Encode(indices);
  EXPECT_EQ(linear.Clears(), 1u);
  // the last four codes: the pending byte and the clear code in 12 bits, the byte that follows and the end code in 9
  std::vector<bool> bits;
  for (const char byte : bytes) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      bits.push_back((static_cast<unsigned char>(byte) >> bit & 1) != 0);
    }
  }
  const auto code = [&](std::size_t at, unsigned width) {
    unsigned value = 0;
    for (unsigned bit = 0; bit < width; ++bit) {
      value |= (bits.at(at + bit) ? 1u : 0u) << bit;
    }
    return value;
  };
  const std::size_t clear = 255 * 9 + 512 * 10 + 1024 * 11 + 2048 * 12;
  EXPECT_EQ(code(clear, 12), static_cast<unsigned char>(indices[3839]));
  EXPECT_EQ(code(clear + 12, 12), 256u);
  EXPECT_EQ(code(clear + 24, 9), static_cast<unsigned char>(indices[3840]));
  EXPECT_EQ(code(clear + 33, 9), 257u);
  EXPECT_TRUE(Coded(indices) == InSubBlocks(bytes));
}

}  // namespace
