// pcx_malformed_test.cpp - PCX files that are not what they say.

#include "image/pcx.h"
#include "image/pcx_file.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace image_test;
using namespace image_test::pcx;
using qxv::CQXVPcx;

TEST(PcxMalformed, SidesBelowOneAreRefusedInBothModes) {
  Fields narrow, flat;
  narrow.left = 3, narrow.right = 2;
  flat.top = 65535, flat.bottom = 0;
  for (const Fields& fields : {narrow, flat}) {
    EXPECT_EQ(DecodeHeader<CQXVPcx>(File(fields, "adbecf")), Refused<CQXVPcx>());
    EXPECT_EQ(Decode<CQXVPcx>(File(fields, "adbecf")), Refused<CQXVPcx>());
  }
}

TEST(PcxMalformed, ARunBeyondTheRowIsRefused) {
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1),
                                 "\xC3"
                                 "abecf....")),
            Refused<CQXVPcx>());
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1),
                                 "a\xC2"
                                 "abecf....")),
            Refused<CQXVPcx>());
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1, Kind::Grey),
                                 "\xFF"
                                 "abecf....")),
            Refused<CQXVPcx>());
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(16, 1, Kind::Bits),
                                 "\xC3"
                                 "abecf....")),
            Refused<CQXVPcx>());
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1, Kind::Indices),
                                 "\xC3"
                                 "abecf...." +
                                     Palette())),
            Refused<CQXVPcx>());
}

TEST(PcxMalformed, RunsOfNoneEndWithTheFile) {
  std::string runs;
  for (int i = 0; i < 300'000; ++i) {
    runs +=
        "\xC0"
        "a";
  }
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1), runs)), Refused<CQXVPcx>());
}

TEST(PcxMalformed, APaletteWithoutItsMarkerIsRefused) {
  const std::string pixels = Bytes({1, 2});
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1, Kind::Indices), pixels + Palette(12))), WithPixels(2, 1, Colour(1) + Colour(2)));
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1, Kind::Indices), pixels + Palette(11))), Refused<CQXVPcx>());
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1, Kind::Indices), pixels + Palette() + ".")), Refused<CQXVPcx>());
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(2, 1, Kind::Indices), pixels)), Refused<CQXVPcx>()) << "a file of less than 769 bytes";
  EXPECT_EQ(DecodeHeader<CQXVPcx>(File(Sides(2, 1, Kind::Indices), pixels)), Sized(2, 1)) << "the palette belongs to the pixels";
}

TEST(PcxMalformed, ClaimsThatTheFileCannotHoldAllocateNothing) {
  RefusesWithoutAllocating<CQXVPcx>(File(Sides(65536, 65536), ""));
  RefusesWithoutAllocating<CQXVPcx>(File(Sides(65536, 65536, Kind::Indices), Palette()));
  RefusesWithoutAllocating<CQXVPcx>(File(Sides(65536, 65536, Kind::Grey), Zeros(1000)));
  RefusesWithoutAllocating<CQXVPcx>(File(Sides(65536, 65536, Kind::Bits), Zeros(1000)));
  RefusesWithoutAllocating<CQXVPcx>(File(Sides(65, 2), std::string(23, '\xFF')));  // 2 rows of 3 times 2 + 2
}

TEST(PcxMalformed, TheFewestBytesSuffice) {
  const std::string row =
      "\xFF"
      "a\xC2"
      "b";  // 65 values
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(65, 1, Kind::Grey), row)).status, 0u);
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(64, 1, Kind::Grey),
                                 "\xFF"
                                 "ab"))
                .status,
            0u);
  EXPECT_EQ(Decode<CQXVPcx>(File(Sides(63, 1, Kind::Grey),
                                 "\xFF"
                                 "a"))
                .status,
            0u);
}

TEST(PcxMalformed, EveryPrefix) {
  SweepPrefixes<CQXVPcx>(File(Sides(2, 2),
                              "adbecf"
                              "\xC2"
                              "ghkil"),
                         128, 128 + 12);
  SweepPrefixes<CQXVPcx>(File(Sides(40, 1, Kind::Grey),
                              "\xC5"
                              "a\xC1\xFF"
                              "bcde\xDD"
                              "fx"),
                         128, 128 + 11);
  SweepPrefixes<CQXVPcx>(File(Sides(17, 2, Kind::Bits),
                              "abc\xC3"
                              "d"),
                         128, 128 + 5);
  const std::string indices = File(Sides(2, 1, Kind::Indices), "\x01\x02" + Palette(12));
  SweepPrefixes<CQXVPcx>(indices, 128, indices.size());
}

}  // namespace
