// code_page_table_test.cpp - whole code pages, and random bytes in them, against literals.
// The hashes stand for what the converter of Windows (Wine 8.0, which carries Microsoft's tables) gives; the Windows build
// computes them from that converter, the Linux build from its own tables, and both must meet the literal.

#include "os/code_page_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <random>
#include <string>

namespace {

using code_page_text::Decode;
using code_page_text::Decoded;
using code_page_text::Encode;
using code_page_text::Encoded;
using support::Text;

struct Hash {  // FNV-1a, 64 bits
  std::uint64_t value = 0xCBF29CE484222325;
  void Add(unsigned byte) { value = (value ^ (byte & 0xFF)) * 0x100000001B3; }
  void Add(const Text& units) {
    for (const QXChar unit : units) {
      Add(unit & 0xFFu);
      Add(unit >> 8u);
    }
    Add(0xFE);
  }
  void Add(const std::string& bytes) {
    for (const char byte : bytes) {
      Add(static_cast<unsigned char>(byte));
    }
    Add(0xFD);
  }
};

struct PageHash {
  unsigned page;
  std::uint64_t singles;  // every byte alone: units, lost
  std::uint64_t pairs;    // every two bytes: units, lost
  std::uint64_t units;    // every unit alone: bytes, lost
};

const PageHash kPages[] = {
    {437, 0xBAF2D7D1C5A4094D, 0x4D8A91B1B4A62CC9, 0xD85FB6FC99EB50DD},
    {850, 0x95BCC474EC6E95AD, 0xA5C69FBD7D6CB225, 0xC5F9A4D06F20EB2F},
    {866, 0xC8E4F3E49C0FD4BD, 0x72E7DCD519C5688D, 0x210291AB7574DECD},
    {874, 0x721610A32C361435, 0xAED17E19795891B1, 0x034B5CC80A0B2CDF},
    {932, 0x11B65522BB1B9778, 0x4FF3CD386C7C7268, 0xE42B65837802A0D0},
    {936, 0x6AF02FE4BFA1CE43, 0x39D80737ACE0889A, 0x14FE0A0D43930EA8},
    {949, 0x7E1E701589FDC609, 0xB6B5669300541551, 0x2789CC2173336D13},
    {950, 0x14B1AA97D00682C6, 0xC5C7F51801A323A5, 0x493F7284EE7FE497},
    {1250, 0x9A8DCBB34CC8654C, 0x3901017225989B25, 0xA50FD7475D28C70D},
    {1251, 0x39D899A0B4369497, 0x4036CE3B8FAB7A75, 0x755B1CB455638313},
    {1252, 0x37E9A13BA57BFD94, 0x462121D081499D99, 0x6CB6A45EDA7DB971},
    {1253, 0xA0E590D425E42206, 0xAF0BD2F5860F6842, 0x7797EE44AD6A250F},
    {1254, 0x49104C9435E62D2A, 0x35EDE255071BB839, 0x00CB2BAF4C5DBB47},
    {1255, 0xF88EF3E4398D4754, 0xFA6E677F84ED4EE9, 0xD755C19097E79FD1},
    {1256, 0xB924B4E4E98A0B88, 0xBFB838DA38FE61DD, 0xF5E1137C437FB02B},
    {1257, 0xCBAD6241534C7BF0, 0x012BE88E702751AD, 0x588E68B2D73D2037},
    {1258, 0x75AF7746A2C077E6, 0x6E9465F80AE0B2AD, 0x4EFEF561E7F653D3},
};

PageHash HashOf(unsigned page) {
  PageHash result{page, 0, 0, 0};
  Hash singles;
  for (unsigned byte = 0; byte < 256; ++byte) {
    const Decoded decoded = Decode(page, std::string(1, static_cast<char>(byte)));
    singles.Add(decoded.text);
    singles.Add(decoded.lost ? 1u : 0u);
  }
  result.singles = singles.value;
  Hash pairs;
  for (unsigned code = 0; code < 65536; ++code) {
    const Decoded decoded = Decode(page, std::string{static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)});
    pairs.Add(decoded.text);
    pairs.Add(decoded.lost ? 1u : 0u);
  }
  result.pairs = pairs.value;
  Hash units;
  for (unsigned unit = 0; unit < 65536; ++unit) {
    const Encoded encoded = Encode(page, Text(1, static_cast<QXChar>(unit)));
    units.Add(encoded.bytes);
    units.Add(encoded.lost ? 1u : 0u);
  }
  result.units = units.value;
  return result;
}

void PrintTo(const PageHash& row, std::ostream* out) { *out << "page " << row.page; }

class CodePageTables : public testing::TestWithParam<PageHash> {};

TEST_P(CodePageTables, AreThoseOfWindows) {
  const PageHash expected = GetParam();
  const PageHash actual = HashOf(expected.page);
  EXPECT_EQ(actual.singles, expected.singles) << std::hex << actual.singles;
  EXPECT_EQ(actual.pairs, expected.pairs) << std::hex << actual.pairs;
  EXPECT_EQ(actual.units, expected.units) << std::hex << actual.units;
}

INSTANTIATE_TEST_SUITE_P(Page, CodePageTables, testing::ValuesIn(kPages),
                         [](const testing::TestParamInfo<PageHash>& row) { return std::to_string(row.param.page); });

TEST(CodePageTable, RandomBytesDecodeAlikeOnBothSystems) {
  // Literals: what the converter of Windows gives for the same bytes. (65001 is ours on both; code_page_judge_test.cpp compares
  // it.)
  struct Case {
    unsigned page;
    std::uint64_t hash;
  };
  for (const Case& row : {Case{936, 0xE5B684E19CED9ECA}, Case{950, 0xBC000768FED0C160}, Case{932, 0x655AD57423AE68CD},
                          Case{949, 0x73144667D9CCBE25}, Case{1252, 0xB83EB6CF2BF978DC}, Case{1255, 0x901746EBA6995621}}) {
    std::mt19937_64 random(20260112);
    Hash hash;
    for (int round = 0; round < 3000; ++round) {
      std::string bytes;
      for (std::size_t length = random() % 12; length > 0; --length) {
        static constexpr unsigned char kOften[] = {0x00, 0x41, 0x7F, 0x80, 0x81, 0xA1, 0xC3, 0xE4, 0xF0, 0xFE, 0xFF, 0xB8};
        bytes += static_cast<char>(random() % 2 == 0 ? random() % 256 : kOften[random() % sizeof kOften]);
      }
      bytes += "zzzz";  // Wine takes the bytes of a sequence that the end cuts along, right or wrong
      const Decoded decoded = Decode(row.page, bytes);
      hash.Add(decoded.text);
      hash.Add(decoded.lost ? 1u : 0u);
      hash.Add(Encode(row.page, decoded.text).bytes);
    }
    EXPECT_EQ(hash.value, row.hash) << row.page << " 0x" << std::hex << hash.value;
  }
}

}  // namespace
