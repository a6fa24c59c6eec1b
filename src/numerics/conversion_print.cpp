// conversion_print.cpp - compact printing: six decimals without the zeros at their end.
// A double below 2^63 is split into its whole part and millionths, exactly; the formatter is asked for the rare rest.

#include "qxv/conversion.h"

#include "numerics/integer_text.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace {

constexpr int kDecimals = 6;
constexpr std::uint64_t kMillion = 1'000'000;

// fraction * 10^6 to the nearest integer, a tie to the next one up; fraction is below 1 and not negative.
std::uint64_t Millionths(double fraction) noexcept {
  const auto bits = std::bit_cast<std::uint64_t>(fraction);
  const int shift = 1023 + 52 - static_cast<int>(bits >> 52);  // fraction = mantissa / 2^shift, shift at least 53
  if (shift > 73) {
    return 0;  // mantissa * 10^6 is below 2^73, half of 2^74; the subnormals end here too
  }
  const std::uint64_t mantissa = (bits & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52);
  // The 73-bit product without its low 32 bits: they lie below the bit that rounding looks at.
  const std::uint64_t product = (mantissa >> 32) * kMillion + (((mantissa & 0xFFFFFFFF) * kMillion) >> 32);
  const int rest = shift - 32;
  return (product + (std::uint64_t{1} << (rest - 1))) >> rest;
}

// The formatter's text with the zeros, and then the point, taken from its end, never further than the point.
// KEPT: the rule looks at characters, not at numbers, so "1.#INF00" becomes "1.#INF".
//   Pinned by CompactPrintKept.TextsOfInfinitiesLoseTheirZeros.
void PrintByFormatter(double value, CQXString& text) {
  text.Format(QXT("%f"), value);
  const int point = text.Find(QXT("."));
  if (point < 0) {
    return;
  }
  const QXChar* units = text;
  int length = text.GetLength();
  while (length > point && (units[length - 1] == '0' || units[length - 1] == '.')) {
    --length;
  }
  text = text.Mid(0, length);
}

void Print(double value, CQXString& text) {
  const double magnitude = std::fabs(value);
  if (!(magnitude < 0x1p63)) {
    PrintByFormatter(value, text);
    return;
  }
  auto whole = static_cast<std::uint64_t>(magnitude);
  std::uint64_t millionths = Millionths(magnitude - static_cast<double>(whole));
  if (millionths == kMillion) {
    ++whole;
    millionths = 0;
  }
  QXChar units[qxv::kIntegerUnits + 1 + kDecimals + 1];
  QXChar* const point = units + qxv::kIntegerUnits;
  QXChar* end = point;
  if (millionths != 0) {
    *point = '.';
    qxv::WriteSixDigits(point + 1, static_cast<std::uint32_t>(millionths));
    end = point + 1 + kDecimals;
    while (end[-1] == '0') {
      --end;
    }
  }
  *end = 0;
  QXChar* first = qxv::WriteDigitsBefore(point, whole);
  if (std::signbit(value)) {
    *--first = '-';  // also of a negative zero and of what rounds to zero
  }
  text = first;
}

}  // namespace

void QXVFloat2String(float value, CQXString& text) { Print(static_cast<double>(value), text); }

void QXVDouble2String(double value, CQXString& text) { Print(value, text); }

void QXVInt2String(int value, CQXString& text) {
  QXChar units[qxv::kIntegerUnits + 1];
  units[qxv::kIntegerUnits] = 0;
  text = qxv::WriteIntegerBefore(units + qxv::kIntegerUnits, value);
}
