// text_bytes.h - texts as the bytes of files, written out by the test, not by the library.
#pragma once

#include "support/text.h"

#include <string>

namespace support {

/// UTF-16 little-endian bytes without a mark.
inline std::string Utf16(const Text& text) {
  std::string bytes;
  for (const QXChar unit : text) {
    const auto number = static_cast<unsigned>(static_cast<std::uint16_t>(unit));
    bytes += static_cast<char>(number & 0xFF);
    bytes += static_cast<char>(number >> 8);
  }
  return bytes;
}

/// The same behind FF FE.
inline std::string MarkedUtf16(const Text& text) { return "\xFF\xFE" + Utf16(text); }

}  // namespace support
