// decimal_digits.cpp - the exact decimal digits of a double.
// std::to_chars rounds half to even. So it is asked for more digits than needed, and the cut half away from zero is made here;
// only when the surplus reads 5000... can the digits behind it decide, and then all digits are taken.

#include "os/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace qxv::os {

namespace {

constexpr int kSurplus = 20;  // digits behind the cut that decide nearly every case

}  // namespace

void DecimalDigits::Expand(double magnitude, int count) noexcept {
  char text[kMost + 16];
  const int precision = std::clamp(count, 1, kMost) - 1;
  const auto end = std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific, precision).ptr;
  const char* mantissaEnd = std::find(text, end, 'e');
  m_count = 0;
  for (const char* at = text; at != mantissaEnd; ++at) {
    if (*at != '.') {
      m_digits[m_count++] = *at;
    }
  }
  m_exponent = 0;
  const char* exponent = mantissaEnd + (mantissaEnd[1] == '+' ? 2 : 1);  // from_chars takes no plus sign
  (void)std::from_chars(exponent, end, m_exponent);
}

bool DecimalDigits::TailMayBeRounded(int keep) const noexcept {
  if (m_count >= kMost) {
    return false;
  }
  if (keep < 0) {
    return false;
  }
  return keep >= m_count ||
         (m_digits[keep] == '5' && std::all_of(m_digits + keep + 1, m_digits + m_count, [](char digit) { return digit == '0'; }));
}

void DecimalDigits::Round(int keep) noexcept {
  if (keep >= m_count) {
    return;
  }
  const bool up = keep >= 0 && m_digits[keep] >= '5';
  m_count = std::max(keep, 0);
  if (!up) {
    return;
  }
  int at = m_count - 1;
  while (at >= 0 && m_digits[at] == '9') {
    m_digits[at--] = '0';
  }
  if (at >= 0) {
    ++m_digits[at];
    return;
  }
  std::memmove(m_digits + 1, m_digits, static_cast<std::size_t>(m_count));  // 999 became 1000: one more digit before the point
  m_digits[0] = '1';
  ++m_count;
  ++m_exponent;
}

DecimalDigits DecimalDigits::WithDecimals(double value, int decimals) noexcept {
  const double magnitude = std::fabs(value);
  DecimalDigits result;
  if (magnitude == 0) {
    result.m_digits[0] = '0';
    result.m_count = 1;
    return result;
  }
  const int mostBeforePoint = std::max(0, std::ilogb(magnitude)) * 31 / 100 + 1;  // log10(2) = 0.30103
  result.Expand(magnitude, std::clamp(decimals, -400, kMost) + mostBeforePoint + kSurplus);
  const int keep = result.m_exponent + 1 + std::clamp(decimals, -2000, 2000);
  if (result.TailMayBeRounded(keep)) {
    result.Expand(magnitude, kMost);
  }
  result.Round(result.m_exponent + 1 + std::clamp(decimals, -2000, 2000));
  return result;
}

DecimalDigits DecimalDigits::WithSignificant(double value, int significant) noexcept {
  const double magnitude = std::fabs(value);
  DecimalDigits result;
  if (magnitude == 0) {
    result.m_digits[0] = '0';
    result.m_count = 1;
    return result;
  }
  const int keep = std::clamp(significant, 1, kMost);
  result.Expand(magnitude, keep + kSurplus);
  if (result.TailMayBeRounded(keep)) {
    result.Expand(magnitude, kMost);
  }
  result.Round(keep);
  return result;
}

int DecimalDigits::SignificantCount() const noexcept {
  int count = m_count;
  while (count > 0 && m_digits[count - 1] == '0') {
    --count;
  }
  return count;
}

}  // namespace qxv::os
