// byte_widening.h - bytes as units, by vector instructions. Nothing outside the ranges is touched.
#pragma once

#include "qxv/types.h"

#include <cstddef>

namespace qxv {

/// Whether all bytes are below 0x80.
[[nodiscard]] bool IsAscii(const unsigned char* bytes, std::size_t count) noexcept;

/// Writes each byte as a unit.
void WidenBytes(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept;

// The same, a byte at a time: what the vector forms are tested against.
[[nodiscard]] bool IsAsciiReference(const unsigned char* bytes, std::size_t count) noexcept;
void WidenBytesReference(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept;

}  // namespace qxv
