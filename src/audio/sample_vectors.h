// sample_vectors.h - what the kernels over samples share.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace qxv {

inline constexpr float kFrom16 = 0x1p-15f;

// Floats before the next address that is a multiple of a vector, at most count: loads and stores that cross lines cost twice.
inline std::size_t BeforeAligned(const float* samples, std::size_t vectorBytes, std::size_t count) noexcept {
  const std::size_t bytes = (0 - reinterpret_cast<std::uintptr_t>(samples)) & (vectorBytes - 1);
  return std::min(bytes / sizeof(float), count);
}

}  // namespace qxv
