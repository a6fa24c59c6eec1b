// rounding_print.cpp - a number as text with a count of decimals: its units of the last decimal as a 64-bit integer, a point put
// between their digits, and the zeros at both ends taken off.

#include "qxv/rounding.h"

#include "foundation/numeric.h"
#include "foundation/text_access.h"
#include "numerics/integer_text.h"
#include "numerics/power_of_ten.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

constexpr int kMostDecimals = 400;  // beyond, a number other than 0 has left the integers' range

// Sign, and the digits with a point, before the end of the integer; behind it zeros and a point.
constexpr std::size_t kRoomBefore = 1 + 1 + kMostDecimals + 1 + qxv::kIntegerUnits;
constexpr std::size_t kRoomBehind = kMostDecimals + 1;

template <typename Real>
void Print(Real value, int decimals, CQXString& text) {
  decimals = std::clamp(decimals, -kMostDecimals, kMostDecimals);
  const Real scaled = qxv::ScaledByTens(std::fabs(value), decimals);
  const std::int64_t count = qxv::TruncateToInt64(static_cast<double>(scaled + Real(0.5)));

  QXChar units[kRoomBefore + kRoomBehind];
  QXChar* end = units + kRoomBefore;
  QXChar* first = qxv::WriteIntegerBefore(end, count);
  if (decimals > 0) {
    QXChar* const fraction = end - decimals;
    while (first >= fraction) {
      *--first = '0';  // at least one digit before the point
    }
    std::copy(first, fraction, first - 1);
    --first;
    fraction[-1] = '.';
  } else {
    end = std::fill_n(end, -decimals, QXChar('0'));
    *end++ = '.';
  }
  while (end[-1] == '0') {
    --end;  // to the point at the latest, as the next loop
  }
  while (*first == '0') {
    ++first;
  }
  if (*first == '.') {
    *--first = '0';
  }
  if (end[-1] == '.') {
    --end;
  }
  if (count != 0 && value < 0) {
    *--first = '-';
  }
  qxv::AssignText(text, {first, static_cast<std::size_t>(end - first)});
}

}  // namespace

void QXVDouble2String(double value, int decimals, CQXString& text) { Print(value, decimals, text); }

void QXVFloat2String(float value, int decimals, CQXString& text) { Print(value, decimals, text); }
