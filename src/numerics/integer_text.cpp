// integer_text.cpp - decimal digits of integers, two at a time.

#include "numerics/integer_text.h"

#include <array>
#include <cstring>

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

// value below 100
void WritePair(QXChar* at, std::uint64_t value) noexcept { std::memcpy(at, &kPairs[2 * value], 2 * sizeof(QXChar)); }

}  // namespace

void qxv::WriteSixDigits(QXChar* at, std::uint32_t value) noexcept {
  WritePair(at, value / 10000);  // three divisions that do not wait for one another
  WritePair(at + 2, value / 100 % 100);
  WritePair(at + 4, value % 100);
}

QXChar* qxv::WriteDigitsBefore(QXChar* end, std::uint64_t value) noexcept {
  for (; value >= 100; value /= 100) {
    end -= 2;
    WritePair(end, value % 100);
  }
  if (value >= 10) {
    end -= 2;
    WritePair(end, value);
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
