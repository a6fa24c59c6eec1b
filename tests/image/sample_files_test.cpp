// sample_files_test.cpp - files that other programs wrote (tests/data/PROVENANCE.md), of 10 x 4 pixels that formulas give.

#include "image/bmp.h"
#include "image/codec_files.h"
#include "image/pcx.h"
#include "image/tga.h"
#include "image/yuv.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

using namespace image_test;

constexpr int kWidth = 10;
constexpr int kHeight = 4;

std::string Sample(const std::string& name) {
  std::ifstream file(std::string(QXV_TEST_DATA) + "/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

// Channels in the order of the formulas: red first.
template <class Value>
std::string Pixels(int channels, Value value) {
  std::string pixels;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    for (int channel = 0; channel < channels; ++channel) {
      pixels += static_cast<char>(static_cast<unsigned char>(value(i, channel)));
    }
  }
  return pixels;
}

int Colours(int i, int channel) {
  const int x = i % kWidth, y = i / kWidth;
  return x < 6 ? x * 25 + channel * 40 + y * 60 : 200;
}
int FewColours(int i, int channel) { return channel == 0 ? i % 7 * 30 : channel == 1 ? i % 5 * 50 : 9; }
int BlackAndWhite(int i, int /*channel*/) { return i * i % 3 != 0 ? 0 : 255; }

std::string BlueFirst(std::string pixels, std::size_t channels) {
  for (std::size_t i = 0; i < pixels.size(); i += channels) {
    std::swap(pixels[i], pixels[i + 2]);
  }
  return pixels;
}

Held OfPixels(const std::string& pixels) { return WithPixels(kWidth, kHeight, pixels); }

TEST(SampleFiles, Bmp) {
  EXPECT_EQ(Decode<qxv::CQXVBmp>(Sample("bmp/24-bit.bmp")), OfPixels(BlueFirst(Pixels(3, Colours), 3)));
  EXPECT_EQ(Decode<qxv::CQXVBmp>(Sample("bmp/8-bit.bmp")), OfPixels(BlueFirst(Pixels(3, FewColours), 3)));
  EXPECT_EQ(Decode<qxv::CQXVBmp>(Sample("bmp/4-bit.bmp")), OfPixels(Pixels(3, BlackAndWhite)));
  EXPECT_EQ(Decode<qxv::CQXVBmp>(Sample("bmp/1-bit.bmp")), OfPixels(Pixels(3, BlackAndWhite)));
}

TEST(SampleFiles, Tga) {
  std::string opaque;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    opaque += BlueFirst(Pixels(3, Colours), 3).substr(static_cast<std::size_t>(i) * 3, 3) + "\xFF";
  }
  EXPECT_EQ(Decode<qxv::CQXVTga>(Sample("tga/24-bit.tga")), OfPixels(opaque));
  EXPECT_EQ(Decode<qxv::CQXVTga>(Sample("tga/24-bit-run-length.tga")), OfPixels(opaque));
  EXPECT_EQ(Decode<qxv::CQXVTga>(Sample("tga/32-bit.tga")), OfPixels(BlueFirst(Pixels(4, Colours), 4)));
  EXPECT_EQ(Decode<qxv::CQXVTga>(Sample("tga/32-bit-run-length.tga")), OfPixels(BlueFirst(Pixels(4, Colours), 4)));
}

TEST(SampleFiles, Pcx) {
  EXPECT_EQ(Decode<qxv::CQXVPcx>(Sample("pcx/24-bit.pcx")), OfPixels(Pixels(3, Colours)));
  EXPECT_EQ(Decode<qxv::CQXVPcx>(Sample("pcx/8-bit-palette.pcx")), OfPixels(Pixels(3, FewColours)));
  const Held grey = Decode<qxv::CQXVPcx>(Sample("pcx/8-bit-grey.pcx"));
  EXPECT_EQ(grey.status, 0u);
  EXPECT_EQ(grey.pixels.size(), 120u);
}

TEST(SampleFiles, Yuv) { EXPECT_EQ(Decode<qxv::CQXVYUV>(Sample("yuv/10x4.yuv")), OfPixels(Pixels(3, Colours))); }

}  // namespace
