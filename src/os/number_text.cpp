// number_text.cpp - numbers read from QXChar texts, and the digits of a double.

#include "os/c_runtime.h"

#include "os/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <limits>
#include <string>

namespace qxv::os {

namespace {

constexpr int kMostFixedDecimals = 350;
constexpr QXChar kEmpty[] = {0};

/// Every script's zero whose ten digits follow one another; measured with the Microsoft run-time's wide parsing.
constexpr QXChar kZeros[] = {0x0030, 0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66, 0x0C66,
                             0x0CE6, 0x0D66, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10};

constexpr bool IsSpace(QXChar unit) noexcept {
  return (unit >= 0x09 && unit <= 0x0D) || unit == 0x20 || unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) ||
         unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

constexpr int DigitValue(QXChar unit) noexcept {
  if (unit < 0x80) {
    return unit >= QXT('0') && unit <= QXT('9')   ? unit - QXT('0')
           : unit >= QXT('a') && unit <= QXT('z') ? unit - QXT('a') + 10
           : unit >= QXT('A') && unit <= QXT('Z') ? unit - QXT('A') + 10
                                                  : 36;
  }
  for (const QXChar zero : kZeros) {
    if (unit >= zero && unit < zero + 10) {
      return unit - zero;
    }
  }
  return 36;
}

/// Magnitude clamped to the unsigned range, so that only the sign and the type's own limits remain to the caller.
struct Magnitude {
  std::uint64_t value = 0;
  bool negative = false;
};

Magnitude ParseMagnitude(const QXChar* text, const QXChar** end, int radix) noexcept {
  Magnitude result;
  const QXChar* at = text;
  if (end != nullptr) {
    *end = text;
  }
  if (text == nullptr || radix < 0 || radix == 1 || radix > 36) {
    return result;
  }
  while (IsSpace(*at)) {
    ++at;
  }
  if (*at == QXT('-') || *at == QXT('+')) {
    result.negative = *at == QXT('-');
    ++at;
  }
  const bool leadingZero = DigitValue(*at) == 0;
  if ((radix == 0 || radix == 16) && leadingZero && (at[1] == QXT('x') || at[1] == QXT('X'))) {
    if (DigitValue(at[2]) >= 16) {
      return result;  // 0x without a digit is no number at all
    }
    at += 2;
    radix = 16;
  } else if (radix == 0) {
    radix = leadingZero ? 8 : 10;
  }
  const auto base = static_cast<unsigned>(radix);
  const QXChar* const firstDigit = at;
  for (; DigitValue(*at) < radix; ++at) {
    const auto digit = static_cast<unsigned>(DigitValue(*at));
    const bool overflows = result.value > (std::numeric_limits<std::uint64_t>::max() - digit) / base;
    result.value = overflows ? std::numeric_limits<std::uint64_t>::max() : result.value * base + digit;
  }
  if (at != firstDigit && end != nullptr) {
    *end = at;
  }
  return result;
}

template <typename Integer>
Integer Clamped(const Magnitude& magnitude) noexcept {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<Integer>::max());
  if (!magnitude.negative) {
    return static_cast<Integer>(std::min(magnitude.value, kMost));
  }
  return magnitude.value > kMost ? std::numeric_limits<Integer>::min()
                                 : static_cast<Integer>(-static_cast<Integer>(magnitude.value));
}

constexpr bool IsAsciiDigit(QXChar unit) noexcept { return unit >= QXT('0') && unit <= QXT('9'); }

/// The Microsoft run-time reads the Fortran letter too.
constexpr bool IsExponentLetter(QXChar unit) noexcept { return (unit | 0x20) == QXT('e') || (unit | 0x20) == QXT('d'); }

const QXChar* SkipDigits(const QXChar* at) noexcept {
  while (IsAsciiDigit(*at)) {
    ++at;
  }
  return at;
}

/// What from_chars leaves undone: whether a number out of range is too big or too small.
bool IsHuge(const QXChar* first, const QXChar* last) noexcept {
  std::int64_t place = 0;  // of the first digit that is not zero; counted up before the point, down behind it
  bool behindPoint = false;
  bool found = false;
  const QXChar* at = first;
  for (; at != last && !IsExponentLetter(*at); ++at) {
    if (*at == QXT('.')) {
      behindPoint = true;
    } else {
      found = found || *at != QXT('0');
      place += behindPoint ? (found ? 0 : -1) : (found ? 1 : 0);
    }
  }
  constexpr std::int64_t kMostExponent =
      100'000'000'000'000'000;  // more than any text has digits, and ten times it is no overflow
  std::int64_t exponent = 0;
  if (at != last) {
    ++at;
    const bool negative = *at == QXT('-');
    at += negative || *at == QXT('+') ? 1 : 0;
    for (; at != last; ++at) {
      exponent = std::min(exponent * 10 + (*at - QXT('0')), kMostExponent);
    }
    exponent = negative ? -exponent : exponent;
  }
  return place + exponent > 0;
}

double ConvertBytes(const QXChar* first, const QXChar* last, char* bytes) noexcept {
  char* const end =
      std::transform(first, last, bytes, [](QXChar unit) { return IsExponentLetter(unit) ? 'e' : static_cast<char>(unit); });
  double value = 0;
  if (std::from_chars(bytes, end, value).ec == std::errc::result_out_of_range) {
    return IsHuge(first, last) ? HUGE_VAL : 0.0;
  }
  return value;
}

double ConvertNumber(const QXChar* first, const QXChar* last) noexcept {
  constexpr std::size_t kUsual = 128;
  char usual[kUsual];
  const auto count = static_cast<std::size_t>(last - first);
  if (count <= kUsual) {
    return ConvertBytes(first, last, usual);
  }
  try {
    std::string bytes(count, '\0');
    return ConvertBytes(first, last, bytes.data());
  } catch (const std::exception&) {
    return 0;  // no memory for thousands of digits
  }
}

}  // namespace

std::int32_t ParseInt32(const QXChar* text, const QXChar** end, int radix) noexcept {
  return Clamped<std::int32_t>(ParseMagnitude(text, end, radix));
}

std::int64_t ParseInt64(const QXChar* text, const QXChar** end, int radix) noexcept {
  return Clamped<std::int64_t>(ParseMagnitude(text, end, radix));
}

std::int32_t ToInt32(const QXChar* text) noexcept { return ParseInt32(text, nullptr /*end*/, 10); }
std::int64_t ToInt64(const QXChar* text) noexcept { return ParseInt64(text, nullptr /*end*/, 10); }

double ParseDouble(const QXChar* text, const QXChar** end) noexcept {
  if (end != nullptr) {
    *end = text;
  }
  const QXChar* first = text == nullptr ? kEmpty : text;
  while (IsSpace(*first)) {
    ++first;
  }
  const bool negative = *first == QXT('-');
  if (negative || *first == QXT('+')) {
    ++first;
  }
  const QXChar* last = SkipDigits(first);
  bool hasDigits = last != first;
  if (*last == QXT('.')) {
    const QXChar* const fractionEnd = SkipDigits(last + 1);
    hasDigits = hasDigits || fractionEnd != last + 1;
    last = fractionEnd;
  }
  if (!hasDigits) {
    return 0;
  }
  if (IsExponentLetter(*last)) {
    const QXChar* const exponent = last + (last[1] == QXT('+') || last[1] == QXT('-') ? 2 : 1);
    const QXChar* const exponentEnd = SkipDigits(exponent);
    last = exponentEnd != exponent ? exponentEnd : last;
  }
  if (end != nullptr) {
    *end = last;
  }
  const double magnitude = ConvertNumber(first, last);
  return negative ? -magnitude : magnitude;
}

FixedDigitText FixedDigits(double value, int count) noexcept {
  FixedDigitText result{};
  const int decimals = std::clamp(count, 0, kMostFixedDecimals);
  result.negative = std::signbit(value);
  char* out = result.digits;
  if (!std::isfinite(value)) {
    // The Microsoft run-time's names, cut like digits; a cut name ends one letter higher.
    const char* const name = std::isinf(value) ? "#INF" : result.negative ? "#IND" : "#QNAN";
    const int length = static_cast<int>(std::char_traits<char>::length(name));
    const int shown = std::min(decimals, length);
    *out++ = '1';
    out = std::copy_n(name, shown, out);
    if (shown > 0 && shown < length) {
      ++out[-1];
    }
    std::fill_n(out, decimals - shown, '0');
    result.point = 1;
    return result;
  }
  if (value == 0) {
    std::fill_n(out, decimals, '0');
    return result;
  }
  const DecimalDigits digits = DecimalDigits::WithDecimals(value, decimals);
  result.point = digits.Exponent() + 1;
  if (digits.Count() == 0) {
    return result;
  }
  for (int place = digits.Exponent(); place >= -decimals; --place) {
    *out++ = digits.At(place);
  }
  return result;
}

}  // namespace qxv::os
