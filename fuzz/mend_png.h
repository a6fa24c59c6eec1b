// mend_png.h - PNG files that were changed at random get the checksums of what they now hold, so that changes get behind them.
#pragma once

#include "image/picture_files.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace fuzz {

inline bool IsPng(const std::uint8_t* data, std::size_t size) {
  return size >= 8 && std::memcmp(data, "\x89PNG\r\n\x1A\n", 8) == 0;
}

/// Up to the first chunk that reaches behind the end. Files of other kinds stay as they are.
inline void MendPng(std::uint8_t* data, std::size_t size) {
  if (!IsPng(data, size)) {
    return;
  }
  const auto big32 = [](const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
  };
  for (std::size_t at = 8; size - at >= 12;) {
    const std::size_t length = big32(data + at);
    if (length > size - at - 12) {
      return;
    }
    const std::string covered(reinterpret_cast<const char*>(data + at + 4), 4 + length);
    std::memcpy(data + at + 8 + length, picture_files::Big(picture_files::PngChecksum(covered), 4).data(), 4);
    at += 12 + length;
  }
}

}  // namespace fuzz
