// utf_step.h - one character of UTF-8 or UTF-16 at a time: what the converters of whole texts are made of.
#pragma once

#include "qxv/types.h"

#include <cstdint>
#include <string_view>

namespace qxv::os {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

struct UtfStep {
  char32_t value;      // U+FFFD for an ill-formed piece of UTF-8; the surrogate itself when it stands alone in UTF-16
  std::size_t length;  // bytes or units taken, at least 1
  bool valid;
};

/// The sequence at a place in UTF-8, or the part of a broken one that becomes one U+FFFD: the longest well-formed start, and with
/// it a second byte that only an overlong form, a surrogate or a character above U+10FFFF would take, as Windows counts.
/// Three-byte surrogates are well-formed only when asked for.
constexpr UtfStep DecodeUtf8Step(std::string_view bytes, std::size_t at, bool takeSurrogates) noexcept {
  const unsigned lead = static_cast<unsigned char>(bytes[at]);
  if (lead < 0x80) {
    return {lead, 1, true};
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return {kReplacementCharacter, 1, false};
  }
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;  // narrower bounds of the second byte
  unsigned high = lead == 0xED && !takeSurrogates ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t value = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned byte = at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0;
    if (byte < 0x80 || byte > 0xBF) {
      return {kReplacementCharacter, i, false};
    }
    if (byte < low || byte > high) {
      return {kReplacementCharacter, 2, false};
    }
    value = value << 6 | (byte & 0x3F);
    low = 0x80;
    high = 0xBF;
  }
  return {value, length, true};
}

/// The character at a place in UTF-16; not valid for a surrogate without its partner.
constexpr UtfStep DecodeUtf16Step(std::basic_string_view<QXChar> text, std::size_t at) noexcept {
  const char32_t unit = static_cast<std::uint16_t>(text[at]);
  if (IsHighSurrogate(unit) && at + 1 < text.size() && IsLowSurrogate(static_cast<std::uint16_t>(text[at + 1]))) {
    return {0x10000 + ((unit - 0xD800) << 10) + (static_cast<std::uint16_t>(text[at + 1]) - 0xDC00u), 2, true};
  }
  return {unit, 1, !IsHighSurrogate(unit) && !IsLowSurrogate(unit)};
}

/// Hands the bytes of a character in UTF-8 to put, one after another; a surrogate gives the three bytes of its number.
template <typename Put>
constexpr void EncodeUtf8Step(char32_t value, Put put) {
  const int tail = value < 0x80 ? 0 : value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;  // bytes behind the first
  const char32_t mark = tail == 0 ? 0 : 0xF00u >> (tail + 1) & 0xFFu;
  put(static_cast<char>(static_cast<unsigned char>(mark | value >> (6 * tail))));
  for (int shift = 6 * (tail - 1); shift >= 0; shift -= 6) {
    put(static_cast<char>(static_cast<unsigned char>(0x80 | (value >> shift & 0x3F))));
  }
}

/// Hands the one or two units of a character in UTF-16 to put.
template <typename Put>
constexpr void EncodeUtf16Step(char32_t value, Put put) {
  if (value < 0x10000) {
    put(static_cast<QXChar>(value));
  } else {
    put(static_cast<QXChar>(0xD800 + ((value - 0x10000) >> 10)));
    put(static_cast<QXChar>(0xDC00 + ((value - 0x10000) & 0x3FF)));
  }
}

}  // namespace qxv::os
