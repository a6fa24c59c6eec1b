// jpeg_scans_test.cpp - progressive files of few bytes and many scans, each of which is a walk over the whole picture.

#include "jpeg_codec/jpeg_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace {

std::string Segment(unsigned char code, const std::string& body) {
  const std::size_t length = 2 + body.size();
  return std::string{'\xFF', static_cast<char>(code), static_cast<char>(length >> 8), static_cast<char>(length)} + body;
}

// Of one colour, grey, the coefficients from first to last; the bits of each that it brings.
std::string Scan(char first, char last, char bits) {
  return Segment(0xDA, std::string{'\1' /*colours*/, '\1', '\0' /*tables*/, first, last, bits});
}

// A table of the single code 00.
std::string CodeTable(char kind, char symbol) {
  return Segment(0xC4, std::string{kind, '\0', '\1'} + std::string(14, '\0') + symbol);
}

// A grey picture: means of 0 but for their last bit, refinedTimes scans that change nothing, and, in the last scan, the last bit
// of all means, which makes the picture lighter by 255 / 8.
std::string FileOfManyScans(int side, int refinedTimes) {
  const auto high = static_cast<char>(side >> 8), low = static_cast<char>(side);
  const auto blocks = static_cast<std::size_t>(side / 8 * (side / 8));
  std::string file = "\xFF\xD8" + Segment(0xDB, '\0' + std::string(64, '\xFF'));
  file += Segment(0xC2, std::string{8, high, low, high, low, '\1' /*colours*/, '\1', '\x11', '\0'});
  file += CodeTable('\x00', '\0') + CodeTable('\x10', '\xE0');  // means: no change; else: so many blocks without values
  file += Scan(0, 0, '\x01') + std::string(blocks / 4 + 1, '\0');
  std::string runs;
  for (std::size_t done = 0; done < blocks; done += 0x4000 + 0x3FFE) {
    runs += "\x3F\xFE";  // code 00, then 14 bits of what a run has beyond 0x4000 blocks
  }
  for (int i = 0; i < refinedTimes; ++i) {
    file += Scan(1, 63, '\x10') + runs;
  }
  file += Scan(0, 0, '\x10');
  for (std::size_t i = 0; i < blocks / 8; ++i) {
    file += std::string("\xFF\0", 2);
  }
  return file + "\xFF\xD9";
}

struct Decoded {
  std::int32_t result;
  std::vector<unsigned char> pixels;
};

Decoded Decode(std::string file) {
  QXVJpegStream stream{};
  stream.length = static_cast<std::uint32_t>(file.size());
  stream.data = reinterpret_cast<unsigned char*>(file.data());
  QXVJpegImage image{};
  EXPECT_EQ(::GetJpegInfo(&stream, &image), 0);
  Decoded decoded{0, std::vector<unsigned char>(qxv::JpegDecodeRoom(image.width, image.height))};
  image.pixels = decoded.pixels.data();
  decoded.result = ::DecodeJpeg(&stream, &image);
  decoded.pixels.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 3);
  return decoded;
}

bool IsFlat(const std::vector<unsigned char>& pixels, unsigned char value) {
  return std::count(pixels.begin(), pixels.end(), value) == static_cast<std::ptrdiff_t>(pixels.size());
}

TEST(JpegScans, OfASmallPictureAllCount) {
  const Decoded decoded = Decode(FileOfManyScans(64, 498));
  EXPECT_EQ(decoded.result, 0);
  EXPECT_EQ(decoded.pixels.size(), 64u * 64 * 3);
  EXPECT_TRUE(IsFlat(decoded.pixels, 128 + 32)) << int{decoded.pixels.front()};
}

TEST(JpegScans, OfALargePictureFewCount) {
  const Decoded decoded = Decode(FileOfManyScans(4096, 8));
  EXPECT_EQ(decoded.result, 0);
  EXPECT_TRUE(IsFlat(decoded.pixels, 128 + 32)) << int{decoded.pixels.front()};
}

TEST(JpegMalformed, MoreScansThanTheBytesOfALargePictureAreWorthEndItsData) {
  const std::string file = FileOfManyScans(4096, 498);
  EXPECT_LT(file.size(), 150'000u);
  const auto start = std::chrono::steady_clock::now();
  const Decoded decoded = Decode(file);
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(decoded.result, 0) << "as data cut short";
  EXPECT_EQ(decoded.pixels.size(), std::size_t{4096} * 4096 * 3);
  EXPECT_TRUE(IsFlat(decoded.pixels, 128)) << int{decoded.pixels.front()} << ": the last scan is not reached";
  EXPECT_LT(time, std::chrono::seconds(5)) << "a second, on a busy machine more; all scans take ten times as long";
}

}  // namespace
