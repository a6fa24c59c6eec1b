// multiply.h - the whole product of two 64-bit numbers, which the language has no type for.
#pragma once

#include <cstdint>

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

namespace qxv::os {

/// The upper half of the 128-bit product xor the lower half: mixes all bits of both, for hashes.
inline std::uint64_t MultiplyFolded(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(_MSC_VER) && !defined(__clang__)
  std::uint64_t upper = 0;
  const std::uint64_t lower = ::_umul128(a, b, &upper);
  return upper ^ lower;
#else
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(a) * b;
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
#endif
}

}  // namespace qxv::os
