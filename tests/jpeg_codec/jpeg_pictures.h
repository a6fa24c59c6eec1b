// jpeg_pictures.h - the picture that the files in tests/data/jpg show, and the files.
#pragma once

#include "support/file_bytes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace support {

/// B, G, R; rows top-down.
inline std::string JpegPicture(int width, int height) {
  std::string pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (const int value : {x * y / 4 + 40, x * x / 8 + y * 5, x * 7 + y * 3}) {
        pixels += static_cast<char>(static_cast<unsigned char>(value));
      }
    }
  }
  return pixels;
}

/// The rows in reverse order.
inline std::string TurnedOver(const std::string& pixels, std::size_t rowBytes) {
  std::string turned;
  for (std::size_t end = pixels.size(); end > 0; end -= rowBytes) {
    turned += pixels.substr(end - rowBytes, rowBytes);
  }
  return turned;
}

inline std::string JpegFile(const std::string& name) {
  std::ifstream file(QXV_TEST_DATA "/jpg/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The mean difference of two pictures' bytes; 255 when their sizes differ.
inline double MeanDifference(const std::string& a, const std::string& b) {
  if (a.size() != b.size() || a.empty()) {
    return 255;
  }
  double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    sum += std::abs(static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]));
  }
  return sum / static_cast<double>(a.size());
}

}  // namespace support
