// numeric.h - conversions and arithmetic whose out-of-range results are fixed, the same on every system.
#pragma once

#include <cstdint>
#include <limits>

namespace qxv {

/// Towards zero; a value outside the 32-bit range, an infinity or a NaN gives the smallest 32-bit integer.
constexpr std::int32_t TruncateToInt32(double value) noexcept {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                       : std::numeric_limits<std::int32_t>::min();
}

constexpr std::int32_t TruncateToInt32(float value) noexcept {
  return value >= -2147483648.0f && value < 2147483648.0f ? static_cast<std::int32_t>(value)
                                                          : std::numeric_limits<std::int32_t>::min();
}

/// Towards zero; a value outside the 64-bit range, an infinity or a NaN gives the smallest 64-bit integer.
constexpr std::int64_t TruncateToInt64(double value) noexcept {
  return value >= -0x1p63 && value < 0x1p63 ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int64_t>::min();
}

/// Signed arithmetic that wraps modulo 2^32.
constexpr std::int32_t WrapAdd(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t WrapSubtract(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
constexpr std::int32_t WrapMultiply(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
constexpr std::int32_t WrapNegate(std::int32_t a) noexcept {
  return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(a));
}

}  // namespace qxv
