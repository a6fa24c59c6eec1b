// power_of_ten.h - scaling by tens, one factor at a time, so that every rounding step is the same everywhere.
#pragma once

#include <algorithm>
#include <limits>
#include <type_traits>

namespace qxv {

/// After so many factors of ten every double is 0 or an infinity, and every integer power 0.
inline constexpr int kEnoughScalings = 400;

/// |value|; the largest integer for the smallest one.
constexpr int Magnitude(int value) noexcept {
  return value >= 0 ? value : value == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -value;
}

/// 10^exponent modulo the integer's range; 1 for an exponent below 1.
template <typename Integer>
constexpr Integer WrappedPowerOfTen(int exponent) noexcept {
  std::make_unsigned_t<Integer> power = 1;
  for (int i = 0; i < std::min(exponent, kEnoughScalings); ++i) {
    power *= 10;
  }
  return static_cast<Integer>(power);
}

/// value times 10^exponent, by so many multiplications, or divisions for a negative exponent.
template <typename Real>
constexpr Real ScaledByTens(Real value, int exponent) noexcept {
  const int count = std::min(Magnitude(exponent), kEnoughScalings);
  for (int i = 0; i < count; ++i) {
    if (exponent > 0) {
      value *= 10;
    } else {
      value /= 10;
    }
  }
  return value;
}

}  // namespace qxv
