// pcx_moves.h - stretches of values moved by whole registers, short ones as if they were long.
// Both functions write up to 15 bytes more than count, and at least kLeastMoved.
#pragma once

#include "os/intrinsics.h"

#include <cstddef>

namespace qxv {

inline constexpr std::size_t kLeastMoved = 2 * sizeof(__m128i);

namespace detail {

inline void Store(unsigned char* bytes, __m128i values) noexcept { _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), values); }

}  // namespace detail

/// Reads as many bytes as it writes.
inline void CopyValues(unsigned char* out, const unsigned char* values, std::size_t count) noexcept {
  const auto* in = reinterpret_cast<const __m128i*>(values);
  detail::Store(out, _mm_loadu_si128(in));
  detail::Store(out + sizeof *in, _mm_loadu_si128(in + 1));
  for (std::size_t i = kLeastMoved; i < count; i += sizeof *in) {
    detail::Store(out + i, _mm_loadu_si128(in + i / sizeof *in));
  }
}

inline void FillValues(unsigned char* out, unsigned char value, std::size_t count) noexcept {
  const __m128i values = _mm_set1_epi8(static_cast<char>(value));
  detail::Store(out, values);
  detail::Store(out + sizeof values, values);
  for (std::size_t i = kLeastMoved; i < count; i += sizeof values) {
    detail::Store(out + i, values);
  }
}

}  // namespace qxv
