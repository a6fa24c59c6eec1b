// bmp_test.cpp - Windows bitmap files.

#include "image/bmp.h"

#include "image/codec_files.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace image_test;
using qxv::CQXVBmp;

struct Fields {
  std::uint64_t signature = 0x4D42;
  std::uint64_t fileSize = 0;
  std::uint64_t reserved = 0;
  std::uint64_t offset = 54;
  std::uint64_t headerSize = 40;
  std::uint64_t width = 1;
  std::uint64_t height = 1;
  std::uint64_t planes = 1;
  std::uint64_t bits = 24;
  std::uint64_t compression = 0;
  std::uint64_t imageSize = 0;
  std::uint64_t resolutionX = 0;
  std::uint64_t resolutionY = 0;
  std::uint64_t coloursUsed = 0;
  std::uint64_t coloursImportant = 0;
};

std::string File(const Fields& f, const std::string& behindHeader = "") {
  return U16(f.signature) + U32(f.fileSize) + U32(f.reserved) + U32(f.offset) + U32(f.headerSize) + U32(f.width) + U32(f.height) +
         U16(f.planes) + U16(f.bits) + U32(f.compression) + U32(f.imageSize) + U32(f.resolutionX) + U32(f.resolutionY) +
         U32(f.coloursUsed) + U32(f.coloursImportant) + behindHeader;
}

// Entry i is i, i + 1, i + 2 and an unused byte that must not be seen.
std::string Palette(unsigned entries) {
  std::string bytes;
  for (unsigned i = 0; i < entries; ++i) {
    bytes += Number(i, 1) + Number(i + 1, 1) + Number(i + 2, 1) + "\xEE";
  }
  return bytes;
}

std::string Colour(int index) { return Bytes({index, index + 1, index + 2}); }

Fields Sides(std::int64_t width, std::int64_t height, unsigned bits = 24) {
  Fields fields;
  fields.width = static_cast<std::uint64_t>(width);
  fields.height = static_cast<std::uint64_t>(height);
  fields.bits = bits;
  const unsigned entries = bits <= 8 ? 1u << bits : 0;
  fields.offset = 54 + entries * 4;
  return fields;
}

TEST(Bmp, OneByOneIsWrittenAs58Bytes) {
  const std::string expected = "BM" + Bytes({60, 0, 0, 0,     // file size, 2 too many
                                             0,  0, 0, 0,     // reserved
                                             54, 0, 0, 0,     // offset of the pixels
                                             40, 0, 0, 0,     // header size
                                             1,  0, 0, 0,     // width
                                             1,  0, 0, 0,     // height
                                             1,  0,           // planes
                                             24, 0,           // bits a pixel
                                             0,  0, 0, 0,     // compression
                                             6,  0, 0, 0}) +  // image size, 2 too many
                               Zeros(16) +                    // resolutions, colours used, important colours
                               Bytes({0x11, 0x22, 0x33, 0});  // B G R, padding
  EXPECT_EQ(Hex(Encode<CQXVBmp>(1, 1, "\x11\x22\x33")), Hex(expected));
}

TEST(Bmp, FourByOneHasNoPadding) {
  const std::string file = Encode<CQXVBmp>(4, 1, "abcdefghijkl");
  EXPECT_EQ(file.size(), 66u);
  EXPECT_EQ(file.substr(2, 4), U32(66));
  EXPECT_EQ(file.substr(34, 4), U32(12));
  EXPECT_EQ(file.substr(54), "abcdefghijkl");
}

TEST(Bmp, RowsAreWrittenFromTheBottomEachWithItsPadding) {
  const std::string file = Encode<CQXVBmp>(2, 3, "abcdefghijklmnopqr");
  EXPECT_EQ(file.substr(18, 8), U32(2) + U32(3));
  EXPECT_EQ(file.substr(54), "mnopqr" + Zeros(2) + "ghijkl" + Zeros(2) + "abcdef" + Zeros(2));
}

TEST(Bmp, PicturesWithoutPixelsAreWrittenAsAHeader) {
  EXPECT_EQ(Encode<CQXVBmp>(0, 0, "").size(), 54u);
  EXPECT_EQ(Encode<CQXVBmp>(0, INT_MAX, "").size(), 54u);
  EXPECT_EQ(Encode<CQXVBmp>(INT_MAX, 0, "").size(), 54u);
}

TEST(Bmp, Reads24BitsFromTheBottom) {
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(1, 2), "abc?def?")), WithPixels(1, 2, "defabc"));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(2, 2), "abcdef??ghijkl??")), WithPixels(2, 2, "ghijklabcdef"));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(3, 1), "abcdefghi???")), WithPixels(3, 1, "abcdefghi"));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(4, 1), "abcdefghijkl")), WithPixels(4, 1, "abcdefghijkl"));
}

TEST(Bmp, Reads32BitsAsTheyAre) {
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(1, 2, 32), "abcdefgh")), WithPixels(1, 2, "efghabcd"));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(3, 1, 32), "abcdefghijkl")), WithPixels(3, 1, "abcdefghijkl"));
}

TEST(Bmp, Reads8BitsThroughThePalette) {
  const std::string rows = Bytes({0, 1, 0xEE, 0xEE, 254, 7, 0xEE, 0xEE});
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(2, 2, 8), Palette(256) + rows)),
            WithPixels(2, 2, Colour(254) + Colour(7) + Colour(0) + Colour(1)));
}

TEST(Bmp, Reads4BitsHighHalfFirst) {
  const std::string rows = Bytes({0x12, 0x3F, 0xEE, 0xEE, 0xA0, 0x5F, 0xEE, 0xEE});  // the last half of each row is no pixel
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(3, 2, 4), Palette(16) + rows)),
            WithPixels(3, 2, Colour(10) + Colour(0) + Colour(5) + Colour(1) + Colour(2) + Colour(3)));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(8, 1, 4), Palette(16) + Bytes({0x01, 0x23, 0x45, 0x67}))),
            WithPixels(8, 1, Colour(0) + Colour(1) + Colour(2) + Colour(3) + Colour(4) + Colour(5) + Colour(6) + Colour(7)));
}

TEST(Bmp, Reads1BitHighestBitFirst) {
  const std::string off = Colour(0), on = Colour(1);
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(10, 1, 1), Palette(2) + Bytes({0xA1, 0x7F, 0xEE, 0xEE}))),
            WithPixels(10, 1, on + off + on + off + off + off + off + on + off + on));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(1, 2, 1), Palette(2) + Bytes({0x80, 0, 0, 0, 0x7F, 0, 0, 0}))),
            WithPixels(1, 2, off + on));
}

TEST(Bmp, LayoutFollowsTheBitsAPixel) {
  const CodecFile file;
  CQXVBmp codec;
  EXPECT_EQ(codec.Layout(), 4u);
  struct {
    unsigned bits;
    std::uint32_t layout;
  } rows[] = {{1, 4}, {4, 4}, {8, 4}, {16, 1}, {24, 4}, {32, 1}, {0, 1}, {255, 1}};
  for (const auto& row : rows) {
    file.Set(File(Sides(1, 1, row.bits), Zeros(2000)));
    for (const auto extent : {ReadExtent::Header, ReadExtent::Pixels}) {
      ASSERT_EQ(codec.Read(file.Name(), extent), 0u) << row.bits;
      EXPECT_EQ(codec.Layout(), row.layout) << row.bits;
    }
  }
}

TEST(Bmp, OnlyTheLowByteOfTheBitsCounts) {
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(1, 1, 0xFF18), "abc")), WithPixels(1, 1, "abc"));
  EXPECT_EQ(Decode<CQXVBmp>(File(Sides(1, 1, 0x0120), "abcd")), WithPixels(1, 1, "abcd"));
}

TEST(Bmp, PixelsBeginAtTheirOffset) {
  Fields fields = Sides(1, 1);
  fields.offset = 56;
  EXPECT_EQ(Decode<CQXVBmp>(File(fields, "..abc?")), WithPixels(1, 1, "abc"));
  fields.offset = 0;
  EXPECT_EQ(Decode<CQXVBmp>(File(fields)), WithPixels(1, 1, std::string("BM\0", 3))) << "the header itself";
  fields.offset = 300'000;  // behind what has been read ahead
  EXPECT_EQ(Decode<CQXVBmp>(File(fields, std::string(299'946, '.') + "abc")), WithPixels(1, 1, "abc"));
}

TEST(Bmp, SidesOfZeroGiveAnEmptyBuffer) {
  for (const unsigned bits : {1u, 4u, 8u, 24u, 32u}) {
    for (const auto& [width, height] : {std::pair{0, 0}, {0, INT_MAX}, {INT_MAX, 0}, {0, 1}, {1, 0}}) {
      EXPECT_EQ(Decode<CQXVBmp>(File(Sides(width, height, bits), Palette(bits <= 8 ? 1u << bits : 0))),
                WithPixels(width, height, ""))
          << bits;
    }
  }
}

TEST(Bmp, RowsLongerThanAPieceAreRead) {
  constexpr int kWidth = 600'001;
  std::string rows(150'004, '\x02'), indices(600'004, '\x03');
  rows[0] = '\x40', rows[150'000] = '\x40';
  std::string expected(kWidth * 3, '\0');
  for (std::size_t i = 0; i < expected.size(); ++i) {
    expected[i] = static_cast<char>(i % 3 + 3);
  }
  EXPECT_TRUE(Decode<CQXVBmp>(File(Sides(kWidth, 1, 8), Palette(256) + indices)) == WithPixels(kWidth, 1, expected));
  const Held bits = Decode<CQXVBmp>(File(Sides(1'200'001, 1, 1), Palette(2) + rows));
  ASSERT_EQ(bits.pixels.size(), 3'600'003u);
  for (std::size_t i = 0; i < 1'200'001; ++i) {
    const bool on = i == 1 || i == 1'200'001 || (i % 8 == 6 && i / 8 != 0 && i / 8 != 150'000);
    ASSERT_EQ(bits.pixels[3 * i], on ? 1 : 0) << i;
  }
}

// Each field at 0, 1, its maximum and its sign bit alone, in a file of 1 x 1 with three bytes of pixels.
TEST(Bmp, EveryFieldAtItsLimits) {
  const Held good = WithPixels(1, 1, "abc");
  const Held bad = Refused<CQXVBmp>();
  const FieldLimits<Fields> rows[] = {
      {"signature", &Fields::signature, 2, {bad, bad, bad, bad}},
      {"file size", &Fields::fileSize, 4, {good, good, good, good}},
      {"reserved", &Fields::reserved, 4, {good, good, good, good}},
      {"offset",
       &Fields::offset,
       4,
       {WithPixels(1, 1, std::string("BM\0", 3)), WithPixels(1, 1, std::string("M\0\0", 3)), bad, bad}},
      {"header size", &Fields::headerSize, 4, {good, good, good, good}},
      {"width", &Fields::width, 4, {WithPixels(0, 1, ""), good, bad, bad}},
      {"height", &Fields::height, 4, {WithPixels(1, 0, ""), good, bad, bad}},
      {"planes", &Fields::planes, 2, {good, good, good, good}},
      {"bits", &Fields::bits, 2, {Sized(1, 1), bad /*no palette*/, Sized(1, 1), Sized(1, 1)}},
      {"compression", &Fields::compression, 4, {good, good, good, good}},
      {"image size", &Fields::imageSize, 4, {good, good, good, good}},
      {"horizontal resolution", &Fields::resolutionX, 4, {good, good, good, good}},
      {"vertical resolution", &Fields::resolutionY, 4, {good, good, good, good}},
      {"colours used", &Fields::coloursUsed, 4, {good, good, good, good}},
      {"important colours", &Fields::coloursImportant, 4, {good, good, good, good}},
  };
  ExpectFieldsAtTheirLimits<CQXVBmp>(rows, Sides(1, 1), [](const Fields& fields) { return File(fields, "abc"); });
}

TEST(BmpMalformed, NegativeSidesAreRefusedInBothModes) {
  for (const auto& [width, height] : {std::pair{-1, 1}, {1, -1}, {INT_MIN, 1}, {1, INT_MIN}, {-1, -1}, {-1, 0}, {0, -1}}) {
    for (const unsigned bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
      const std::string file = File(Sides(width, height, bits), Zeros(2000));
      EXPECT_EQ(Decode<CQXVBmp>(file), Refused<CQXVBmp>()) << width << ' ' << height;
      EXPECT_EQ(DecodeHeader<CQXVBmp>(file), Refused<CQXVBmp>()) << width << ' ' << height;
    }
  }
}

TEST(BmpMalformed, ClaimsThatTheFileCannotHoldAllocateNothing) {
  for (const auto& [width, height] :
       {std::pair{65536, 65536}, {0x55555556, 1}, {INT_MAX, INT_MAX}, {INT_MAX, 1}, {1, INT_MAX}, {2, 600}}) {
    for (const unsigned bits : {1u, 4u, 8u, 24u, 32u}) {
      SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << bits << " bits");
      RefusesWithoutAllocating<CQXVBmp>(File(Sides(width, height, bits), Zeros(2000)));
    }
  }
}

TEST(BmpMalformed, OffsetsThatCannotBeReached) {
  Fields fields = Sides(1, 1);
  for (const std::uint32_t offset : {0x80000000u, 0xFFFFFFFFu}) {
    fields.offset = offset;
    EXPECT_EQ(DecodeHeader<CQXVBmp>(File(fields, "abc")), Refused<CQXVBmp>()) << offset;
    EXPECT_EQ(Decode<CQXVBmp>(File(fields, "abc")), Refused<CQXVBmp>()) << offset;
  }
  for (const std::uint32_t offset : {55u, 57u, 58u, 0x7FFFFFFFu}) {
    fields.offset = offset;
    EXPECT_EQ(DecodeHeader<CQXVBmp>(File(fields, "abc")), Sized(1, 1)) << offset;
    EXPECT_EQ(Decode<CQXVBmp>(File(fields, "abc")), Refused<CQXVBmp>()) << offset;
  }
  fields.width = 0;
  EXPECT_EQ(Decode<CQXVBmp>(File(fields, "abc")), WithPixels(0, 1, "")) << "no pixels are looked for";
}

TEST(BmpMalformed, EveryPrefix) {
  const std::string rows24 = "abcdef..ghijkl..";
  SweepPrefixes<CQXVBmp>(File(Sides(2, 2), rows24), 54, 54 + 14);  // the last row's padding may be missing
  SweepPrefixes<CQXVBmp>(File(Sides(2, 2, 32), "abcdefghijklmnop"), 54, 54 + 16);
  SweepPrefixes<CQXVBmp>(File(Sides(3, 2, 8), Palette(256) + "abc.def."), 54 + 1024, 54 + 1024 + 7);
  SweepPrefixes<CQXVBmp>(File(Sides(3, 2, 4), Palette(16) + "ab..cd.."), 54 + 64, 54 + 64 + 6);
  SweepPrefixes<CQXVBmp>(File(Sides(9, 2, 1), Palette(2) + "ab..cd.."), 54 + 8, 54 + 8 + 6);
}

TEST(BmpKept, SizeFieldsCountThePaddingAsPixels) {
  const std::string file = Encode<CQXVBmp>(3, 2, std::string(18, 'x'));  // rows of 9 bytes and 3 of padding
  EXPECT_EQ(file.size(), 54u + 2 * 12);
  EXPECT_EQ(file.substr(2, 4), U32((3 + 3) * 2 * 3 + 54));
  EXPECT_EQ(file.substr(34, 4), U32((3 + 3) * 2 * 3));
}

TEST(BmpKept, ColoursUsedIsIgnored) {
  Fields fields = Sides(2, 1, 8);
  fields.coloursUsed = 16;
  fields.offset = 54 + 16 * 4;
  // 16 entries, then the row, then enough bytes to be taken for the other 240 entries: entry 16 is the row itself.
  const std::string file = File(fields, Palette(16) + Bytes({15, 16, 0xAA, 0xBB}) + std::string(960 - 4, '.'));
  EXPECT_EQ(Decode<CQXVBmp>(file), WithPixels(2, 1, Colour(15) + Bytes({15, 16, 0xAA})));
}

TEST(BmpKept, AFileShorterThanTheWholePaletteIsRefused) {
  Fields fields = Sides(2, 1, 8);
  fields.coloursUsed = 16;
  fields.offset = 54 + 16 * 4;
  const std::string file = File(fields, Palette(16) + Bytes({1, 2, 0, 0}));
  EXPECT_EQ(DecodeHeader<CQXVBmp>(file), Refused<CQXVBmp>());
  EXPECT_EQ(Decode<CQXVBmp>(file), Refused<CQXVBmp>());
}

TEST(BmpKept, OtherBitCountsAreReadWithoutPixels) {
  for (const unsigned bits : {0u, 2u, 3u, 5u, 16u, 23u, 25u, 31u, 64u, 128u, 255u, 0x100u}) {
    EXPECT_EQ(Decode<CQXVBmp>(File(Sides(2, 1, bits), "abcdefgh")), Sized(2, 1)) << bits;
    EXPECT_EQ(Decode<CQXVBmp>(File(Sides(INT_MAX, INT_MAX, bits))), Sized(INT_MAX, INT_MAX)) << bits;
  }
}

}  // namespace
