// jpeg_inks_test.cpp - files of four inks, which cjpeg does not write, made by the bare JPEG library.

#include "jpeg_codec/jpeg_codec.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <vector>

// needs <cstddef> and <cstdio> before it
#include <jpeglib.h>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr unsigned kSide = 16;

// A flat picture. stored: CMYK or YCCK.
Bytes Compress(const Bytes& inks, J_COLOR_SPACE stored) {
  jpeg_compress_struct encoder;
  jpeg_error_mgr errors;
  encoder.err = ::jpeg_std_error(&errors);
  jpeg_create_compress(&encoder);
  unsigned char* file = nullptr;
  unsigned long size = 0;
  ::jpeg_mem_dest(&encoder, &file, &size);
  encoder.image_width = kSide;
  encoder.image_height = kSide;
  encoder.input_components = static_cast<int>(inks.size());
  encoder.in_color_space = inks.size() == 4 ? JCS_CMYK : JCS_UNKNOWN;
  ::jpeg_set_defaults(&encoder);
  ::jpeg_set_colorspace(&encoder, stored);
  ::jpeg_set_quality(&encoder, 100, TRUE);
  ::jpeg_start_compress(&encoder, TRUE);
  Bytes row;
  for (unsigned x = 0; x < kSide; ++x) {
    row.insert(row.end(), inks.begin(), inks.end());
  }
  for (unsigned y = 0; y < kSide; ++y) {
    JSAMPROW rows[] = {row.data()};
    EXPECT_EQ(::jpeg_write_scanlines(&encoder, rows, 1), 1u);
  }
  ::jpeg_finish_compress(&encoder);
  ::jpeg_destroy_compress(&encoder);
  const Bytes result(file, file + size);
  std::free(file);
  return result;
}

std::int32_t Decode(Bytes file, Bytes& pixels) {
  QXVJpegStream stream{};
  stream.length = static_cast<std::uint32_t>(file.size());
  stream.data = file.data();
  QXVJpegImage image{};
  EXPECT_EQ(::GetJpegInfo(&stream, &image), 0);
  EXPECT_EQ(image.width, 16);
  EXPECT_EQ(image.height, 16);
  pixels.assign(qxv::JpegDecodeRoom(16, 16), 0);
  image.pixels = pixels.data();
  return ::DecodeJpeg(&stream, &image);
}

struct Ink {
  const char* what;
  Bytes inks;  // cyan, magenta, yellow, black, 255 for none
  Bytes blueGreenRed;
};

TEST(JpegDecodeInks, GiveBlueGreenRed) {
  const Ink rows[] = {
      {"no ink", {255, 255, 255, 255}, {255, 255, 255}},     {"all black", {255, 255, 255, 0}, {0, 0, 0}},
      {"half black", {255, 255, 255, 128}, {128, 128, 128}}, {"full cyan", {0, 255, 255, 255}, {255, 255, 0}},
      {"mixed", {200, 100, 50, 255}, {50, 100, 200}},        {"mixed, half black", {200, 100, 50, 128}, {25, 50, 100}},
  };
  for (const J_COLOR_SPACE stored : {JCS_CMYK, JCS_YCCK}) {
    for (const Ink& row : rows) {
      Bytes pixels;
      ASSERT_EQ(Decode(Compress(row.inks, stored), pixels), 0) << row.what;
      for (std::size_t i = 0; i < std::size_t{kSide} * kSide * 3; ++i) {
        ASSERT_NEAR(pixels[i], row.blueGreenRed[i % 3], 2) << row.what << ", byte " << i;
      }
    }
  }
}

TEST(JpegDecodeInks, TwoOfAnUnknownKindAreRefused) {
  Bytes pixels;
  EXPECT_EQ(Decode(Compress({1, 2}, JCS_UNKNOWN), pixels), -1);
}

}  // namespace
