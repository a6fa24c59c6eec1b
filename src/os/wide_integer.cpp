// wide_integer.cpp - the integer conversions of the formatter.

#include "os/format_sink.h"

namespace qxv::os {

void FormatInteger(FormatSink& sink, const FormatSpec& spec, std::int64_t value, int bits) noexcept {
  const bool isSigned = spec.conversion == QXT('d') || spec.conversion == QXT('i');
  const bool negative = isSigned && value < 0;
  auto magnitude = static_cast<std::uint64_t>(value);
  if (negative) {
    magnitude = 0 - magnitude;
  } else if (bits < 64) {
    magnitude &= (std::uint64_t{1} << bits) - 1;
  }
  const bool isHex = (spec.conversion | 0x20) == QXT('x');
  const unsigned base = isHex ? 16 : spec.conversion == QXT('o') ? 8 : 10;
  const char* const alphabet = spec.conversion == QXT('X') ? "0123456789ABCDEF" : "0123456789abcdef";

  char digits[24];
  char* first = digits + sizeof digits;
  for (auto rest = magnitude; rest != 0; rest /= base) {
    *--first = alphabet[rest % base];
  }
  if (magnitude == 0 && spec.precision != 0) {
    *--first = '0';
  }
  if (base == 8 && spec.alternate && magnitude != 0 && digits + sizeof digits - first >= spec.precision) {
    *--first = '0';
  }
  const auto count = static_cast<std::size_t>(digits + sizeof digits - first);

  char prefix[3];
  std::size_t prefixCount = 0;
  if (negative) {
    prefix[prefixCount++] = '-';
  } else if (isSigned && spec.sign != 0) {
    prefix[prefixCount++] = static_cast<char>(spec.sign);
  }
  if (isHex && spec.alternate && magnitude != 0) {
    prefix[prefixCount++] = '0';
    prefix[prefixCount++] = static_cast<char>(spec.conversion);
  }

  const std::int64_t zeros = std::int64_t{spec.precision} - static_cast<std::int64_t>(count);
  const std::int64_t padding = spec.width - static_cast<std::int64_t>(prefixCount + count) - std::max<std::int64_t>(0, zeros);
  const bool padWithZeros = spec.zero && !spec.left;
  if (!spec.left && !padWithZeros) {
    sink.Fill(QXT(' '), padding);
  }
  sink.Append(prefix, prefixCount);
  if (padWithZeros) {
    sink.Fill(QXT('0'), padding);
  }
  sink.Fill(QXT('0'), zeros);
  sink.Append(first, count);
  if (spec.left) {
    sink.Fill(QXT(' '), padding);
  }
}

}  // namespace qxv::os
