// tga_test.cpp - true-colour and grey TGA files.

#include "image/tga.h"

#include "image/codec_files.h"
#include "streams/file_pieces.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace image_test;
using qxv::CQXVTga;

struct Fields {
  std::uint64_t idLength = 0;
  std::uint64_t mapType = 0;
  std::uint64_t type = 2;
  std::uint64_t mapStart = 0;
  std::uint64_t mapLength = 0;
  std::uint64_t mapDepth = 0;
  std::uint64_t originX = 0;
  std::uint64_t originY = 0;
  std::uint64_t width = 2;
  std::uint64_t height = 1;
  std::uint64_t depth = 32;
  std::uint64_t descriptor = 0x20;
};

std::string File(const Fields& f, const std::string& behindHeader) {
  return Number(f.idLength, 1) + Number(f.mapType, 1) + Number(f.type, 1) + U16(f.mapStart) + U16(f.mapLength) +
         Number(f.mapDepth, 1) + U16(f.originX) + U16(f.originY) + U16(f.width) + U16(f.height) + Number(f.depth, 1) +
         Number(f.descriptor, 1) + behindHeader;
}

Fields Sides(std::uint64_t width, std::uint64_t height, unsigned type = 2, unsigned depth = 32, unsigned descriptor = 0x20) {
  Fields fields;
  fields.width = width;
  fields.height = height;
  fields.type = type;
  fields.depth = depth;
  fields.descriptor = descriptor;
  return fields;
}

std::string Times(std::size_t count, const std::string& text) {
  std::string all;
  for (; count > 0; --count) {
    all += text;
  }
  return all;
}

TEST(Tga, OneByOneIsWrittenAs22Bytes) {
  const std::string expected = Bytes({0,                                     // no image ID
                                      0,                                     // no colour map
                                      2,                                     // uncompressed true colour
                                      0,    0,    0,    0,   0, 0, 0, 0, 0,  // colour map, origin
                                      1,    0,                               // width
                                      1,    0,                               // height
                                      32,                                    // bits a pixel
                                      0,                                     // from the bottom, no alpha declared
                                      0x11, 0x22, 0x33, 0x44});              // B G R A
  EXPECT_EQ(Hex(Encode<CQXVTga>(1, 1, "\x11\x22\x33\x44")), Hex(expected));
}

TEST(Tga, RowsAreWrittenFromTheBottom) {
  EXPECT_EQ(Encode<CQXVTga>(2, 2, "abcdefghABCDEFGH").substr(12), U16(2) + U16(2) + Bytes({32, 0}) + "ABCDEFGHabcdefgh");
}

TEST(Tga, TheFileKeepsTheLow16BitsOfTheSidesAndAllRows) {
  const std::string pixels = MixedPixels(65537 * 4, 1);
  const std::string file = Encode<CQXVTga>(65537, 1, pixels);
  EXPECT_EQ(file.substr(12, 4), U16(1) + U16(1));
  EXPECT_TRUE(file.substr(18) == pixels);
  const std::string high = Encode<CQXVTga>(1, 65536, pixels);
  EXPECT_EQ(high.substr(12, 4), U16(1) + U16(0));
  EXPECT_EQ(high.size(), 18u + 65536 * 4);
}

TEST(Tga, PicturesWithoutPixelsAreWrittenAsAHeader) {
  EXPECT_EQ(Encode<CQXVTga>(0, INT_MAX, "").size(), 18u);
  EXPECT_EQ(Encode<CQXVTga>(INT_MAX, 0, "").size(), 18u);
}

TEST(Tga, IsAHundredByAHundredBeforeReading) {
  EXPECT_EQ(HeldBy(CQXVTga()), Sized(100, 100));
  EXPECT_EQ(CQXVTga().Layout(), 1u);
}

TEST(Tga, ABottomLeftFileStoresItsFirstRowLast) {
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 2, 2, 32, 0), "abcdefghABCDEFGH")), WithPixels(2, 2, "ABCDEFGHabcdefgh"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 2, 2, 32, 0x20), "abcdefghABCDEFGH")), WithPixels(2, 2, "abcdefghABCDEFGH"));
}

TEST(Tga, OnlyBit5OfTheDescriptorCounts) {
  for (unsigned descriptor = 0; descriptor < 256; ++descriptor) {
    const bool topDown = (descriptor & 0x20) != 0;
    EXPECT_EQ(Decode<CQXVTga>(File(Sides(1, 2, 2, 32, descriptor), "abcdABCD")),
              WithPixels(1, 2, topDown ? "abcdABCD" : "ABCDabcd"));
  }
}

TEST(Tga, TheOtherDepthsGetTheirAlpha) {
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 1, 2, 24), "abcdef")), WithPixels(2, 1,
                                                                            "abc\xFF"
                                                                            "def\xFF"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 1, 2, 8), "ab")), WithPixels(2, 1,
                                                                       "aaa\xFF"
                                                                       "bbb\xFF"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(1, 2, 2, 24, 0), "abcdef")), WithPixels(1, 2,
                                                                               "def\xFF"
                                                                               "abc\xFF"));
}

TEST(Tga, RunLengthPacketsOfEveryDepth) {
  const std::string run = "\x81", two = "\x01";  // two pixels each
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(4, 1, 10, 32), run + "abcd" + two + "efghijkl")), WithPixels(4, 1, "abcdabcdefghijkl"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(4, 1, 10, 24), two + "abcdef" + run + "ghi")), WithPixels(4, 1,
                                                                                                 "abc\xFF"
                                                                                                 "def\xFF"
                                                                                                 "ghi\xFF"
                                                                                                 "ghi\xFF"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(3, 1, 10, 16), run + Bytes({0x21, 0x84}) + std::string(1, '\0') + Bytes({0x1F, 0x00}))),
            WithPixels(3, 1, Bytes({8, 8, 8, 255, 8, 8, 8, 255, 248, 0, 0, 0})));
}

TEST(Tga, SixteenBitPixels) {
  struct {
    unsigned value;
    std::string pixel;
  } rows[] = {{0xFFFF, Bytes({248, 248, 248, 255})}, {0x7FFF, Bytes({248, 248, 248, 0})}, {0x0000, Bytes({0, 0, 0, 0})},
              {0x8000, Bytes({0, 0, 0, 255})},       {0x001F, Bytes({248, 0, 0, 0})},     {0x03E0, Bytes({0, 248, 0, 0})},
              {0x7C00, Bytes({0, 0, 248, 0})},       {0x0421, Bytes({8, 8, 8, 0})},       {0xC210, Bytes({128, 128, 128, 255})}};
  for (const auto& row : rows) {
    EXPECT_EQ(Decode<CQXVTga>(File(Sides(1, 1, 10, 16), std::string(1, '\0') + U16(row.value))), WithPixels(1, 1, row.pixel))
        << row.value;
    EXPECT_EQ(Decode<CQXVTga>(File(Sides(1, 1, 10, 16), "\x80" + U16(row.value))), WithPixels(1, 1, row.pixel)) << row.value;
  }
}

TEST(Tga, APacketRunsOnIntoTheNextRow) {
  const std::string run = Bytes({0x84}) + "abcd" + std::string(1, '\0') + "efgh";
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 3, 10), run)), WithPixels(2, 3, Times(5, "abcd") + "efgh"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 3, 10, 32, 0), run)), WithPixels(2, 3, "abcdefgh" + Times(4, "abcd")));
  const std::string raw = Bytes({0x05}) + "aaaabbbbccccddddeeeeffff";
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 3, 10), raw)), WithPixels(2, 3, "aaaabbbbccccddddeeeeffff"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 3, 10, 32, 0), raw)), WithPixels(2, 3, "eeeeffffccccddddaaaabbbb"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(1, 128, 10),
                                 "\xFF"
                                 "abcd")),
            WithPixels(1, 128, Times(128, "abcd")));
}

TEST(Tga, PixelsBehindTheLastOneAreDropped) {
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 1, 10),
                                 "\xFF"
                                 "abcd")),
            WithPixels(2, 1, "abcdabcd"));
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 1, 10),
                                 "\x7F"
                                 "abcdefgh")),
            WithPixels(2, 1, "abcdefgh"))
      << "nor need they be there";
  EXPECT_EQ(Decode<CQXVTga>(File(Sides(2, 1, 10),
                                 "\x81"
                                 "abcd"
                                 "\x81")),
            WithPixels(2, 1, "abcdabcd"));
}

TEST(Tga, SidesOfZeroGiveAnEmptyBuffer) {
  for (const auto& [type, depth] : {std::pair{2u, 32u}, {2u, 24u}, {2u, 8u}, {10u, 32u}, {10u, 24u}, {10u, 16u}}) {
    EXPECT_EQ(Decode<CQXVTga>(File(Sides(0, 65535, type, depth), "")), WithPixels(0, 65535, ""));
    EXPECT_EQ(Decode<CQXVTga>(File(Sides(65535, 0, type, depth), "")), WithPixels(65535, 0, ""));
    EXPECT_EQ(Decode<CQXVTga>(File(Sides(0, 0, type, depth), "")), WithPixels(0, 0, ""));
  }
}

// Packets that end and begin at every place of a piece.
TEST(Tga, PacketsAcrossPieces) {
  for (const unsigned shift : {0u, 1u, 2u, 3u, 511u, 512u}) {
    std::string packets, expected;
    for (unsigned i = 0; i <= shift; ++i) {
      packets +=
          "\x80"
          "abcd";
      expected += "abcd";
    }
    for (std::size_t i = 0; packets.size() < 3 * qxv::kFilePiece; ++i) {
      const std::string pixels = MixedPixels(128 * 4, static_cast<unsigned>(i));
      packets += "\x7F" + pixels;
      expected += pixels;
    }
    const std::size_t width = expected.size() / 4;
    ASSERT_LE(width, 0x40000u);
    std::string file = File(Sides(width / 16, 16, 10), packets);
    const Held held = Decode<CQXVTga>(file);
    ASSERT_EQ(held.status, 0u);
    EXPECT_TRUE(held.pixels == expected.substr(0, width / 16 * 16 * 4)) << shift;
  }
}

TEST(Tga, EveryFieldAtItsLimits) {
  const Held good = WithPixels(2, 1, "abcdefgh");
  const Held bad = Refused<CQXVTga>();
  const FieldLimits<Fields> rows[] = {
      {"ID length", &Fields::idLength, 1, {good, good, good, good}},
      {"colour map type", &Fields::mapType, 1, {good, good, good, good}},
      {"type", &Fields::type, 1, {bad, bad, bad, bad}},
      {"colour map start", &Fields::mapStart, 2, {good, good, good, good}},
      {"colour map length", &Fields::mapLength, 2, {good, good, good, good}},
      {"colour map depth", &Fields::mapDepth, 1, {good, good, good, good}},
      {"x origin", &Fields::originX, 2, {good, good, good, good}},
      {"y origin", &Fields::originY, 2, {good, good, good, good}},
      {"width", &Fields::width, 2, {WithPixels(0, 1, ""), WithPixels(1, 1, "abcd"), bad, bad}},
      {"height", &Fields::height, 2, {WithPixels(2, 0, ""), good, bad, bad}},
      {"depth", &Fields::depth, 1, {bad, bad, bad, bad}},
      {"descriptor", &Fields::descriptor, 1, {good, good, good, good}},
  };
  ExpectFieldsAtTheirLimits<CQXVTga>(rows, Fields(), [](const Fields& fields) { return File(fields, "abcdefgh"); });
}

TEST(TgaMalformed, OtherTypesAreRefusedInBothModes) {
  for (unsigned type = 0; type < 256; ++type) {
    if (type != 2 && type != 10) {
      const std::string file = File(Sides(1, 1, type), "abcdabcd");
      EXPECT_EQ(Decode<CQXVTga>(file), Refused<CQXVTga>()) << type;
      EXPECT_EQ(DecodeHeader<CQXVTga>(file), Refused<CQXVTga>()) << type;
    }
  }
}

TEST(TgaMalformed, OtherDepthsAreRefusedWithThePixelsOnly) {
  for (const unsigned type : {2u, 10u}) {
    for (unsigned depth = 0; depth < 256; ++depth) {
      const bool supported = depth == 32 || depth == 24 || depth == (type == 2 ? 8u : 16u);
      const std::string file = File(Sides(1, 1, type, depth), std::string(1, '\0') + "abcd");
      EXPECT_EQ(Decode<CQXVTga>(file).status, supported ? 0u : 0x89601A16u) << depth;
      EXPECT_EQ(DecodeHeader<CQXVTga>(file), Sized(1, 1)) << depth;
      const std::string empty = File(Sides(0, 0, type, depth), "");
      EXPECT_EQ(Decode<CQXVTga>(empty).status, supported ? 0u : 0x89601A16u) << depth;
    }
  }
}

TEST(TgaMalformed, ClaimsThatTheFileCannotHoldAllocateNothing) {
  for (const auto& [type, depth] : {std::pair{2u, 32u}, {2u, 24u}, {2u, 8u}, {10u, 32u}, {10u, 24u}, {10u, 16u}}) {
    RefusesWithoutAllocating<CQXVTga>(File(Sides(65535, 65535, type, depth), ""));
    RefusesWithoutAllocating<CQXVTga>(File(Sides(65535, 65535, type, depth), Zeros(1000)));
    RefusesWithoutAllocating<CQXVTga>(File(Sides(129, 1, type, depth),
                                           "\xFF"
                                           "abcd"));
  }
}

TEST(TgaMalformed, EveryPrefix) {
  SweepPrefixes<CQXVTga>(File(Sides(2, 2), "abcdefghijklmnop"), 18, 18 + 16);
  SweepPrefixes<CQXVTga>(File(Sides(2, 2, 2, 24, 0), "abcdefghijkl"), 18, 18 + 12);
  SweepPrefixes<CQXVTga>(File(Sides(2, 2, 2, 8), "abcd"), 18, 18 + 4);
  SweepPrefixes<CQXVTga>(File(Sides(3, 2, 10),
                              "\x81"
                              "abcd"
                              "\x02"
                              "abcdefghijkl"
                              "\x85"
                              "wxyz"),
                         18, 18 + 5 + 13 + 5);
  SweepPrefixes<CQXVTga>(File(Sides(3, 2, 10, 24),
                              "\x81"
                              "abc"
                              "\x07"
                              "abcdefghijkl....."),
                         18, 18 + 4 + 13);
  SweepPrefixes<CQXVTga>(File(Sides(3, 2, 10, 16, 0),
                              "\x83"
                              "ab"
                              "\x01"
                              "abcd"),
                         18, 18 + 3 + 5);
}

TEST(TgaKept, AnImageIdIsReadAsPixels) {
  Fields fields = Sides(2, 1);
  fields.idLength = 3;
  EXPECT_EQ(Decode<CQXVTga>(File(fields, "idXabcdefgh")), WithPixels(2, 1, "idXabcde"));
}

TEST(TgaKept, AColourMapIsReadAsPixels) {
  Fields fields = Sides(2, 1);
  fields.mapType = 1;
  fields.mapLength = 1;
  fields.mapDepth = 24;
  EXPECT_EQ(Decode<CQXVTga>(File(fields, "mapabcdefgh")), WithPixels(2, 1, "mapabcde"));
}

}  // namespace
