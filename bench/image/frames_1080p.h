// frames_1080p.h - pictures of 1920 x 1080 as the codecs meet them: B, G, R, rows top-down, no padding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace bench {

inline constexpr std::int32_t kWidth = 1920;
inline constexpr std::int32_t kHeight = 1080;

using Pixels = std::vector<unsigned char>;

/// One colour.
inline const Pixels& FlatPicture() {
  static const Pixels pixels(std::size_t{kWidth} * kHeight * 3, 0xC8);
  return pixels;
}

/// Slow shades with a little noise, like a photograph of the sky.
inline const Pixels& TexturedPicture() {
  static const Pixels pixels = [] {
    Pixels result;
    std::minstd_rand random(1);
    for (std::int32_t y = 0; y < kHeight; ++y) {
      for (std::int32_t x = 0; x < kWidth; ++x) {
        const auto noise = static_cast<std::int32_t>(random() % 24);
        for (const std::int32_t shade : {x / 10, y / 6, (x + y) / 16}) {
          result.push_back(static_cast<unsigned char>(shade + noise));
        }
      }
    }
    return result;
  }();
  return pixels;
}

}  // namespace bench
