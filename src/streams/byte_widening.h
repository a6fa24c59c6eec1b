// byte_widening.h - bytes as units, by vector instructions. Nothing outside the ranges is touched.
#pragma once

#include "qxv/types.h"

#include <cstddef>

namespace qxv {

/// Whether all bytes are below 0x80.
[[nodiscard]] bool IsAscii(const unsigned char* bytes, std::size_t count) noexcept;

/// Writes each byte as a unit.
void WidenBytes(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept;

inline constexpr std::size_t kShortLine = 128;
inline constexpr std::size_t kNoShortLine = ~std::size_t{0};

/// Finds the first byte equal to end among kShortLine bytes and writes those before it as units, zeros behind them: kShortLine
/// units whatever the length, so that no branch depends on it.
/// @param end  an ASCII character
/// @return bytes before the end; kNoShortLine, with nothing written, when there is none or a zero or a byte that is not ASCII
///         comes before it
[[nodiscard]] std::size_t WidenShortLine(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept;

// The same, a byte at a time: what the vector forms are tested against.
[[nodiscard]] bool IsAsciiReference(const unsigned char* bytes, std::size_t count) noexcept;
void WidenBytesReference(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept;
[[nodiscard]] std::size_t WidenShortLineReference(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept;

}  // namespace qxv
