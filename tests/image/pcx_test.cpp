// pcx_test.cpp - run-length PCX files.

#include "image/pcx.h"

#include "image/pcx_file.h"
#include "streams/file_pieces.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace image_test;
using namespace image_test::pcx;
using qxv::CQXVPcx;

// The planes of one row of grey pixels.
std::string Written(const std::string& row) {
  std::string pixels;
  for (const char value : row) {
    pixels += std::string(3, value);
  }
  const std::string file = Encode<CQXVPcx>(static_cast<std::int32_t>(row.size()), 1, pixels);
  const std::string planes = file.substr(128);
  const std::size_t length = planes.size() / 3;
  EXPECT_EQ(planes, planes.substr(0, length) + planes.substr(0, length) + planes.substr(0, length));
  return planes.substr(0, length);
}

TEST(Pcx, TheHeaderIsWritten) {
  const std::string expected = Bytes({10,             // manufacturer
                                      5,              // version
                                      1,              // run-length
                                      8,              // bits a pixel of a plane
                                      0, 0, 0, 0,     // left, top
                                      2, 0, 1, 0,     // right, bottom
                                      3, 0, 2, 0}) +  // resolutions: the sides
                               Zeros(48 + 1) +        // palette of 16 colours, reserved
                               Bytes({3,              // planes
                                      3, 0,           // bytes a line, not made even
                                      1, 0}) +        // palette information
                               Zeros(58);
  EXPECT_EQ(Hex(Encode<CQXVPcx>(3, 2, std::string(18, 'x')).substr(0, 128)), Hex(expected));
}

TEST(Pcx, PlanesAreWrittenRowByRow) {
  EXPECT_EQ(Encode<CQXVPcx>(2, 2, "abcdefghijkl").substr(128),
            "adbecf"
            "gjhkil");
}

TEST(Pcx, RowOf100EqualBytesIsRunsOf63And37) {
  EXPECT_EQ(Hex(Written(std::string(100, 'a'))), Hex(Bytes({0xFF, 'a', 0xE5, 'a'})));
}

TEST(Pcx, ASingleByte200IsC1C8) { EXPECT_EQ(Hex(Written("\xC8")), "C1 C8 "); }

TEST(Pcx, RunsAndSinglesAreWrittenAsTheyCome) {
  struct {
    std::string row;
    std::string runs;
  } rows[] = {
      {"a", "a"},
      {"aa",
       "\xC2"
       "a"},
      {"\xBF", "\xBF"},
      {"\xC0", "\xC1\xC0"},
      {"\xFF\xFF", "\xC2\xFF"},
      {"abbc",
       "a\xC2"
       "bc"},
      {"ab\xC0"
       "bb",
       "ab\xC1\xC0\xC2"
       "b"},
      {std::string(63, 'a'),
       "\xFF"
       "a"},
      {std::string(64, 'a'),
       "\xFF"
       "aa"},
      {std::string(64, '\xC0'), "\xFF\xC0\xC1\xC0"},
      {std::string(65, 'a'),
       "\xFF"
       "a\xC2"
       "a"},
      {std::string(126, 'a'),
       "\xFF"
       "a\xFF"
       "a"},
      {"b" + std::string(64, 'a') + "b",
       "b\xFF"
       "aab"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Hex(Written(row.row)), Hex(row.runs));
  }
}

TEST(Pcx, RunsCrossNeitherPlanesNorRows) {
  EXPECT_EQ(Hex(Encode<CQXVPcx>(2, 2, std::string(12, 'a')).substr(128)), Hex("\xC2"
                                                                              "a\xC2"
                                                                              "a\xC2"
                                                                              "a\xC2"
                                                                              "a\xC2"
                                                                              "a\xC2"
                                                                              "a"));
}

TEST(Pcx, TheFileKeepsTheLow16BitsOfTheSidesAndAllRows) {
  const std::string file = Encode<CQXVPcx>(65538, 1, std::string(65538 * 3, 'a'));
  EXPECT_EQ(file.substr(8, 8), U16(1) + U16(0) + U16(2) + U16(1));
  EXPECT_EQ(file.size(), 128u + 3 * (65538 / 63 * 2 + 2)) << "65538 is 1040 runs of 63 and one of 18";
  const std::string high = Encode<CQXVPcx>(1, 65537, std::string(65537 * 3, 'a'));
  EXPECT_EQ(high.substr(8, 8), U16(0) + U16(0) + U16(1) + U16(1));
  EXPECT_EQ(high.size(), 128u + 65537 * 3);
  EXPECT_EQ(Encode<CQXVPcx>(0, INT_MAX, "").substr(8),
            U16(0xFFFF) + U16(0xFFFE) + U16(0) + U16(0xFFFF) + Zeros(49) + Bytes({3, 0, 0, 1, 0}) + Zeros(58));
}

TEST(Pcx, ReadsThreePlanes) {
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 2),
                                 "adbecf"
                                 "gjhkil")),
            WithPixels(2, 2, "abcdefghijkl"));
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(3, 1),
                                 "\xC3"
                                 "a\xC1\xFF"
                                 "\xC2"
                                 "b"
                                 "xyz")),
            WithPixels(3, 1,
                       "a\xFF"
                       "x"
                       "aby"
                       "abz"));
}

TEST(Pcx, ReadsIndicesThroughThePaletteAtTheEnd) {
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(3, 2, Kind::Indices), Bytes({0, 0xC2, 0xFE, 1, 2, 3}) + "unused" + Palette())),
            WithPixels(3, 2, Colour(0) + Colour(254) + Colour(254) + Colour(1) + Colour(2) + Colour(3)));
}

TEST(Pcx, ReadsGrey) {
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(3, 1, Kind::Grey), Bytes({7, 0xC2, 0xFE}))),
            WithPixels(3, 1, Grey(7) + Grey(254) + Grey(254)));
}

TEST(Pcx, ReadsBitsHighestFirstZeroIsBlack) {
  const std::string black = Grey(0), white = Grey(255);
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(10, 1, Kind::Bits), Bytes({0xA1, 0x7F}))),
            WithPixels(10, 1, white + black + white + black + black + black + black + white + black + white));
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(1, 2, Kind::Bits), Bytes({0xC1, 0x80, 0x7F}))), WithPixels(1, 2, white + black));
}

TEST(Pcx, BitsNeedNeitherPlanesNorPaletteInformation) {
  for (const unsigned value : {0u, 1u, 2u, 4u, 128u, 255u}) {
    Fields fields = Sides(8, 1, Kind::Bits);
    fields.planes = value;
    fields.paletteInformation = value;
    EXPECT_EQ(Decode<CQXVPcx>(File(fields, Bytes({0}))), WithPixels(8, 1, std::string(24, '\0'))) << value;
  }
}

TEST(Pcx, SidesAreCountedFromLeftAndTop) {
  Fields fields;
  fields.left = 10, fields.right = 11, fields.top = 65535, fields.bottom = 65535;
  EXPECT_EQ(Decode<CQXVPcx>(File(fields, "adbecf")), WithPixels(2, 1, "abcdef"));
  fields.left = 0, fields.right = 65535, fields.top = 0, fields.bottom = 65535;
  EXPECT_EQ(DecodeHeader<CQXVPcx>(File(fields, "")), Sized(65536, 65536));
}

TEST(Pcx, ARunOfNoneStoresNothing) {
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1),
                                 "\xC0"
                                 "xa\xC0"
                                 "yd\xC0"
                                 "x"
                                 "becf")),
            WithPixels(2, 1, "abcdef"));
}

TEST(Pcx, BytesBehindTheLastRowDoNotMatter) {
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1), "adbecf\xFF")), WithPixels(2, 1, "abcdef"));
}

TEST(Pcx, TheLayoutIsRgb) {
  EXPECT_EQ(CQXVPcx().Layout(), 0x40000000u);
  EXPECT_EQ(HeldBy(CQXVPcx()), Sized(0, 0));
}

TEST(Pcx, RunsAcrossPieces) {
  for (const unsigned shift : {0u, 1u, 2u}) {
    std::string row, runs;
    for (unsigned i = 0; i < 60'000; ++i) {
      row += static_cast<char>(0xC0 + i % 64);
      runs += "\xC1";
      runs += row.back();
    }
    const std::string before = std::string("ab").substr(0, shift);
    runs.insert(0, before);
    row.insert(0, before);
    std::string planes, pixels;
    for (int y = 0; y < 4; ++y) {
      planes += runs + runs + runs;
      for (const char value : row) {
        pixels += std::string(3, value);
      }
    }
    ASSERT_GT(planes.size(), 5 * qxv::kFilePiece);
    const auto width = static_cast<unsigned>(row.size());
    EXPECT_TRUE(Decode<CQXVPcx>(File(Sides(width, 4), planes)) == WithPixels(static_cast<int>(width), 4, pixels)) << shift;
    EXPECT_TRUE(Encode<CQXVPcx>(static_cast<int>(width), 4, pixels).substr(128) == planes) << shift;
  }
}

TEST(Pcx, EveryFieldAtItsLimits) {
  const Held good = WithPixels(2, 1, "abcdef");
  const Held bad = Refused<CQXVPcx>();
  const Held none = Sized(2, 1);
  const Held black = WithPixels(2, 1, Grey(0) + Grey(255));  // 'a' is 0110 0001
  const FieldLimits<Fields> rows[] = {
      {"manufacturer", &Fields::manufacturer, 1, {bad, bad, bad, bad}},
      {"version", &Fields::version, 1, {good, good, good, good}},
      {"encoding", &Fields::encoding, 1, {bad, good, bad, bad}},
      {"bits", &Fields::bits, 1, {none, black, none, none}},
      {"left", &Fields::left, 2, {good, WithPixels(1, 1, "adb"), bad, bad}},
      {"top", &Fields::top, 2, {good, bad, bad, bad}},
      {"right", &Fields::right, 2, {WithPixels(1, 1, "adb"), good, bad, bad}},
      {"bottom", &Fields::bottom, 2, {good, bad, bad, bad}},
      {"horizontal resolution", &Fields::resolutionX, 2, {good, good, good, good}},
      {"vertical resolution", &Fields::resolutionY, 2, {good, good, good, good}},
      {"reserved", &Fields::reserved, 1, {good, good, good, good}},
      {"planes", &Fields::planes, 1, {none, bad /*no palette*/, none, none}},
      {"bytes a line", &Fields::bytesPerLine, 2, {good, good, good, good}},
      {"palette information", &Fields::paletteInformation, 2, {none, good, none, none}},
  };
  ExpectFieldsAtTheirLimits<CQXVPcx>(rows, Fields(), [](const Fields& fields) { return File(fields, "adbecf"); });
  Fields fields;
  fields.filler = '\xFF';
  EXPECT_EQ(Decode<CQXVPcx>(File(fields, "adbecf")), good);
}

TEST(PcxKept, PadByteShiftsTheRow) {
  Fields fields = Sides(1, 2);
  fields.bytesPerLine = 2;
  // Rows of planes of one byte and a pad, as others write them: the pad counts as the next plane.
  EXPECT_EQ(Decode<CQXVPcx>(File(fields, "r-g-b-R-G-B-")), WithPixels(1, 2, "r-g-b-"));
}

TEST(PcxKept, ResolutionFieldsHoldTheSides) {
  EXPECT_EQ(Encode<CQXVPcx>(300, 2, std::string(1800, 'a')).substr(12, 4), Bytes({0x2C, 1, 2, 0}));
}

TEST(PcxKept, OtherKindsAreReadWithoutPixels) {
  struct {
    unsigned bits, planes, paletteInformation;
  } rows[] = {{8, 3, 0}, {8, 3, 2}, {8, 1, 0}, {8, 1, 3}, {8, 4, 1},  {8, 2, 1},  {8, 0, 1},
              {2, 1, 1}, {4, 1, 1}, {2, 4, 1}, {0, 3, 1}, {24, 1, 1}, {8, 3, 257}};
  for (const auto& row : rows) {
    Fields fields;
    fields.bits = row.bits;
    fields.planes = row.planes;
    fields.paletteInformation = row.paletteInformation;
    EXPECT_EQ(Decode<CQXVPcx>(File(fields, "")), Sized(2, 1)) << row.bits << ' ' << row.planes << ' ' << row.paletteInformation;
  }
}

}  // namespace
