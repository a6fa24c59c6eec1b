// image_shapes.h - shapes of pictures, and what a reader must hand out in each of them by the rules of pixel_oracle.h.
#pragma once

#include "image/image_files.h"
#include "image/pixel_oracle.h"

#include <gtest/gtest.h>

#include <string>

namespace image_test {

namespace oracle = pixel_oracle;

struct Size {
  int width, height;
};
inline constexpr Size kSizes[] = {{1, 1}, {3, 5}, {13, 7}, {1, 9}, {9, 1}};
inline constexpr int kMostPadding = 7;

inline std::string ShapeName(const oracle::Shape& shape) {
  return std::to_string(shape.layout) + ' ' + std::to_string(shape.width) + 'x' + std::to_string(shape.height) + '+' +
         std::to_string(shape.padding);
}

inline std::string PixelsOf(const oracle::Shape& shape) {
  const std::size_t row = static_cast<std::size_t>(shape.width) * oracle::BytesOf(shape.layout);
  const auto bytes = oracle::Mixed((row + static_cast<std::size_t>(shape.padding)) * static_cast<std::size_t>(shape.height),
                                   static_cast<unsigned>(shape.width + shape.padding) + shape.layout);
  return {bytes.begin(), bytes.end()};
}

inline std::string Converted(const oracle::Shape& from, const std::string& pixels, const oracle::Shape& to) {
  const auto bytes = oracle::Frame(from, {pixels.begin(), pixels.end()}, to);
  return {bytes.begin(), bytes.end()};
}

/// Filled up with zeros, or cut.
inline std::string OfLength(std::string bytes, std::size_t length) {
  bytes.resize(length, '\0');
  return bytes;
}

/// The layouts of the interface, then two without a converter.
inline constexpr unsigned int kOutputs[] = {1, 4, 8, 0x02000000, 0x40000000, 32, 99};

/// What a reader hands out of a file with these pixels, in every shape.
inline void ExpectEveryOutput(CQXVImageReader& reader, const oracle::Shape& from, const std::string& pixels) {
  for (const unsigned int layout : kOutputs) {
    for (const Size size : kSizes) {
      for (int padding = 0; padding <= kMostPadding; ++padding) {
        for (const Size wanted : {size, Size{from.width, from.height}}) {
          const oracle::Shape to{layout, wanted.width, wanted.height, padding};
          const bool isCopy = layout == from.layout && to.width == from.width && to.height == from.height && padding == 0;
          const std::size_t room = static_cast<std::size_t>(to.width * 4 + padding) * static_cast<std::size_t>(to.height);
          const std::string expected = isCopy ? pixels : Converted(from, pixels, to);
          const QXVPixelLayout output{layout, to.width, to.height, padding};
          ASSERT_EQ(ReadAs(reader, output), Buffer(OfLength(expected, room))) << ShapeName(from) << " to " << ShapeName(to);
        }
      }
    }
  }
}

}  // namespace image_test
