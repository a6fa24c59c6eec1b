// utf16_bytes.h - texts as the bytes of a UTF-16 little-endian file.
#pragma once

#include "support/text.h"

#include <string>

namespace support {

inline std::string Utf16Le(const Text& text) {
  std::string bytes;
  for (const QXChar unit : text) {
    bytes += static_cast<char>(static_cast<unsigned>(unit) & 0xFF);
    bytes += static_cast<char>(static_cast<unsigned>(unit) >> 8 & 0xFF);
  }
  return bytes;
}

}  // namespace support
