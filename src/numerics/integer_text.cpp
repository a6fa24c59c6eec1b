// integer_text.cpp - decimal digits of integers, two at a time.

#include "numerics/integer_text.h"

#include <array>

namespace {

// "00" "01" ... "99"
constexpr auto kPairs = [] {
  std::array<QXChar, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<QXChar>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<QXChar>('0' + i % 10);
  }
  return pairs;
}();

}  // namespace

QXChar* qxv::WriteDigitsBefore(QXChar* end, std::uint64_t value) noexcept {
  for (; value >= 100; value /= 100) {
    const std::size_t pair = 2 * static_cast<std::size_t>(value % 100);
    *--end = kPairs[pair + 1];
    *--end = kPairs[pair];
  }
  if (value >= 10) {
    *--end = kPairs[2 * value + 1];
    *--end = kPairs[2 * value];
  } else {
    *--end = static_cast<QXChar>('0' + value);
  }
  return end;
}

QXChar* qxv::WriteIntegerBefore(QXChar* end, std::int64_t value) noexcept {
  const auto bits = static_cast<std::uint64_t>(value);
  QXChar* first = WriteDigitsBefore(end, value < 0 ? 0 - bits : bits);
  if (value < 0) {
    *--first = '-';
  }
  return first;
}
