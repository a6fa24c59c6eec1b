// decimal_digits.h - the exact decimal digits of a double, rounded half away from zero, without any locale.
#pragma once

namespace qxv::os {

/// A finite magnitude as d.ddd times ten to the exponent. Zero is one digit 0 with exponent 0.
class DecimalDigits {
 public:
  /// Digits that the longest double has; every digit behind them is zero.
  static constexpr int kMost = 767;

  /// The digits of |value|, rounded to the given number of decimals behind the point (negative: before it).
  static DecimalDigits WithDecimals(double value, int decimals) noexcept;

  /// The digits of |value|, rounded to this many significant digits (at least 1).
  static DecimalDigits WithSignificant(double value, int significant) noexcept;

  /// The digit with the weight ten to the power of place; 0 outside the stored ones.
  char At(int place) const noexcept {
    const int index = m_exponent - place;
    return index >= 0 && index < m_count ? m_digits[index] : '0';
  }

  /// Power of ten of the first digit.
  int Exponent() const noexcept { return m_exponent; }

  /// Digits stored, from the first one on. 0 when the value vanished in rounding; the exponent is then the unrounded one.
  int Count() const noexcept { return m_count; }

  /// Significant digits up to the last one that is not zero; 0 for zero.
  int SignificantCount() const noexcept;

 private:
  void Expand(double magnitude, int count) noexcept;
  bool TailMayBeRounded(int keep) const noexcept;
  void Round(int keep) noexcept;

  char m_digits[kMost + 1] = {};
  int m_count = 0;
  int m_exponent = 0;
};

}  // namespace qxv::os
