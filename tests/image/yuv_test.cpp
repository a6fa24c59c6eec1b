// yuv_test.cpp - uncompressed pictures of Y, U and V.

#include "image/yuv.h"

#include "image/codec_files.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace image_test;
using qxv::CQXVYUV;

struct Fields {
  std::string signature = "YUV";
  std::uint64_t zero3 = 0;
  std::uint64_t length = 0;
  std::uint64_t offset = 31;
  std::uint64_t zero10 = 0;
  std::uint64_t width = 2;
  std::uint64_t height = 1;
  std::uint64_t zero19 = 0;
  std::uint64_t zero20 = 0;
  std::uint64_t zero28 = 0;
};

std::string File(const Fields& f, const std::string& pixels = "abcdef") {
  return f.signature + Number(f.zero3, 1) + U32(f.length) + U16(f.offset) + Number(f.zero10, 5) + U16(f.width) + U16(f.height) +
         Number(f.zero19, 1) + Number(f.zero20, 8) + Number(f.zero28, 3) + pixels;
}

Fields Sides(std::uint64_t width, std::uint64_t height) {
  Fields fields;
  fields.width = width;
  fields.height = height;
  return fields;
}

TEST(Yuv, TwoByOneIsWrittenAs37Bytes) {
  const std::string expected = "YUV" + Bytes({0,               //
                                              37, 0, 0, 0,     // file length
                                              31, 0,           // offset of the pixels
                                              0,  0, 0, 0, 0,  //
                                              2,  0,           // width
                                              1,  0,           // height
                                              0,               //
                                              0,  0, 0, 0, 0, 0, 0, 0, 0, 0, 0}) +
                               "abcdef";  // Y U V, Y U V
  EXPECT_EQ(Hex(Encode<CQXVYUV>(2, 1, "abcdef")), Hex(expected));
}

TEST(Yuv, RowsStandAsInMemory) {
  EXPECT_EQ(Encode<CQXVYUV>(1, 3, "abcdefghi").substr(31), "abcdefghi");
  EXPECT_EQ(Decode<CQXVYUV>(File(Sides(1, 3), "abcdefghi")), WithPixels(1, 3, "abcdefghi"));
}

TEST(Yuv, AnEmptyPictureIsReadFromItsHeader) {
  EXPECT_EQ(Decode<CQXVYUV>(File(Sides(0, 0), "")), WithPixels(0, 0, ""));
  EXPECT_EQ(Decode<CQXVYUV>(File(Sides(0, 65535), "")), WithPixels(0, 65535, ""));
  EXPECT_EQ(Decode<CQXVYUV>(File(Sides(65535, 0), "")), WithPixels(65535, 0, ""));
}

TEST(Yuv, BytesBehindThePixelsDoNotMatter) { EXPECT_EQ(Decode<CQXVYUV>(File({}, "abcdef.....")), WithPixels(2, 1, "abcdef")); }

TEST(Yuv, IsAHundredByAHundredBeforeReading) {
  EXPECT_EQ(HeldBy(CQXVYUV()), Sized(100, 100));
  EXPECT_EQ(CQXVYUV().Layout(), 8u);
}

TEST(Yuv, TheFileKeepsTheLow16BitsOfTheSidesAndAllRows) {
  const std::string pixels = MixedPixels(65538 * 3, 1);
  for (const bool wide : {true, false}) {
    const std::string file = wide ? Encode<CQXVYUV>(65538, 1, pixels) : Encode<CQXVYUV>(1, 65538, pixels);
    EXPECT_EQ(file.substr(4, 4), U32(65538 * 3 + 31));
    EXPECT_EQ(file.substr(15, 4), wide ? U16(2) + U16(1) : U16(1) + U16(2));
    EXPECT_TRUE(file.substr(31) == pixels);
  }
}

TEST(Yuv, EveryFieldAtItsLimits) {
  const Held good = WithPixels(2, 1, "abcdef");
  const Held bad = Refused<CQXVYUV>();
  const FieldLimits<Fields> rows[] = {
      {"byte 3", &Fields::zero3, 1, {good, good, good, good}},
      {"length", &Fields::length, 4, {good, good, good, good}},
      {"offset", &Fields::offset, 2, {good, good, good, good}},
      {"bytes 10 to 14", &Fields::zero10, 5, {good, good, good, good}},
      {"width", &Fields::width, 2, {WithPixels(0, 1, ""), WithPixels(1, 1, "abc"), bad, bad}},
      {"height", &Fields::height, 2, {WithPixels(2, 0, ""), good, bad, bad}},
      {"byte 19", &Fields::zero19, 1, {good, good, good, good}},
      {"bytes 20 to 27", &Fields::zero20, 8, {good, good, good, good}},
      {"bytes 28 to 30", &Fields::zero28, 3, {good, good, good, good}},
  };
  ExpectFieldsAtTheirLimits<CQXVYUV>(rows, Fields(), [](const Fields& fields) { return File(fields); });
}

TEST(YuvMalformed, OtherSignaturesAreRefused) {
  for (const char* signature : {"YUW", "yuv", "XUV", "VUY", "YU "}) {
    Fields fields;
    fields.signature = signature;
    EXPECT_EQ(Decode<CQXVYUV>(File(fields)), Refused<CQXVYUV>()) << signature;
    EXPECT_EQ(DecodeHeader<CQXVYUV>(File(fields)), Refused<CQXVYUV>()) << signature;
  }
}

TEST(YuvMalformed, ClaimsThatTheFileCannotHoldAllocateNothing) {
  RefusesWithoutAllocating<CQXVYUV>(File(Sides(65535, 65535), ""));
  RefusesWithoutAllocating<CQXVYUV>(File(Sides(2, 1), "abcde"));
}

TEST(YuvMalformed, EveryPrefix) { SweepPrefixes<CQXVYUV>(File(Sides(2, 2), "abcdefghijkl"), 31, 31 + 12); }

TEST(YuvKept, LengthAndOffsetFieldsAreIgnored) {
  Fields fields;
  fields.length = 5;
  fields.offset = 33;
  EXPECT_EQ(Decode<CQXVYUV>(File(fields, "abcdefgh")), WithPixels(2, 1, "abcdef"));
}

}  // namespace
