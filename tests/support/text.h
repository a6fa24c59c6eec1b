// text.h - QXChar texts as values that GoogleTest compares and prints.
#pragma once

#include "qxv/types.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace support {

using Text = std::basic_string<QXChar>;

/// The text up to its first zero unit; a null pointer gives an empty text.
inline Text TextOf(const QXChar* text) { return text == nullptr ? Text() : Text(text); }

/// count units of one character.
inline Text Repeat(QXChar character, std::size_t count) { return Text(count, character); }

/// For messages: ASCII, with \uXXXX for every other unit.
inline std::string Printable(const Text& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto unit = static_cast<unsigned>(static_cast<std::uint16_t>(text[i]));
    if (unit < 0x80) {
      bytes += static_cast<char>(unit);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", unit);
      bytes += escape;
    }
  }
  return bytes;
}

}  // namespace support
