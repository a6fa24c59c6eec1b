// wide_float.cpp - the conversions of doubles: %e %f %g from exact decimal digits, %a from the bits, infinities and NaN.

#include "os/decimal_digits.h"
#include "os/format_sink.h"

#include <bit>
#include <cmath>
#include <cstring>

namespace qxv::os {

namespace {

constexpr std::uint64_t kMantissaMask = (std::uint64_t{1} << 52) - 1;

bool IsUpper(const FormatSpec& spec) noexcept { return spec.conversion < QXT('a'); }

/// The sign and 0x: at most four characters.
struct Prefix {
  char text[4] = {};
  std::size_t count = 0;
  void Add(char character) noexcept { text[count++] = character; }
};

Prefix PrefixOf(const FormatSpec& spec, bool negative, bool hex) noexcept {
  Prefix prefix;
  if (negative) {
    prefix.Add('-');
  } else if (spec.sign != 0) {
    prefix.Add(static_cast<char>(spec.sign));
  }
  if (hex) {
    prefix.Add('0');
    prefix.Add(IsUpper(spec) ? 'X' : 'x');
  }
  return prefix;
}

/// Prefix and padding before the digits; the padding behind them is the caller's.
void PutLeft(FormatSink& sink, const FormatSpec& spec, const Prefix& prefix, std::int64_t padding) noexcept {
  if (!spec.left && !spec.zero) {
    sink.Fill(QXT(' '), padding);
  }
  sink.Append(prefix.text, prefix.count);
  if (!spec.left && spec.zero) {
    sink.Fill(QXT('0'), padding);
  }
}

struct ExponentText {
  char text[8] = {};
  int count = 0;
};

ExponentText ExponentOf(char letter, int exponent, int leastDigits) noexcept {
  ExponentText result;
  result.text[result.count++] = letter;
  result.text[result.count++] = exponent < 0 ? '-' : '+';
  const int magnitude = std::abs(exponent);
  for (int power = 1000; power > 0; power /= 10) {
    const int place = power >= 1000 ? 4 : power >= 100 ? 3 : power >= 10 ? 2 : 1;
    if (magnitude >= power || place <= leastDigits) {
      result.text[result.count++] = static_cast<char>('0' + magnitude / power % 10);
    }
  }
  return result;
}

/// The digits of the places first, first - 1, ... last; those that no double has are filled in, not looked up.
void PutDigits(FormatSink& sink, const DecimalDigits& digits, std::int64_t first, std::int64_t last) noexcept {
  const std::int64_t lowest = std::max<std::int64_t>(last, std::int64_t{digits.Exponent()} - digits.Count() + 1);
  std::int64_t place = first;
  if (place > digits.Exponent()) {
    const std::int64_t stop = std::max<std::int64_t>(last - 1, digits.Exponent());
    sink.Fill(QXT('0'), place - stop);
    place = stop;
  }
  for (; place >= lowest; --place) {
    sink.Put(static_cast<QXChar>(digits.At(static_cast<int>(place))));
  }
  sink.Fill(QXT('0'), place - last + 1);
}

void PutFixed(FormatSink& sink, const FormatSpec& spec, const DecimalDigits& digits, bool negative,
              std::int64_t decimals) noexcept {
  const int first = digits.Count() == 0 ? 0 : std::max(0, digits.Exponent());
  const bool point = decimals > 0 || spec.alternate;
  const Prefix prefix = PrefixOf(spec, negative, false /*hex*/);
  const std::int64_t length = static_cast<std::int64_t>(prefix.count) + first + 1 + (point ? 1 : 0) + decimals;
  PutLeft(sink, spec, prefix, spec.width - length);
  PutDigits(sink, digits, first, 0);
  if (point) {
    sink.Put(QXT('.'));
  }
  PutDigits(sink, digits, -1, -decimals);
  if (spec.left) {
    sink.Fill(QXT(' '), spec.width - length);
  }
}

void PutScientific(FormatSink& sink, const FormatSpec& spec, const DecimalDigits& digits, bool negative,
                   std::int64_t decimals) noexcept {
  const bool point = decimals > 0 || spec.alternate;
  const Prefix prefix = PrefixOf(spec, negative, false /*hex*/);
  const ExponentText exponent = ExponentOf(IsUpper(spec) ? 'E' : 'e', digits.Exponent(), 3);
  const std::int64_t length = static_cast<std::int64_t>(prefix.count) + 1 + (point ? 1 : 0) + decimals + exponent.count;
  PutLeft(sink, spec, prefix, spec.width - length);
  const std::int64_t first = digits.Exponent();
  PutDigits(sink, digits, first, first);
  if (point) {
    sink.Put(QXT('.'));
  }
  PutDigits(sink, digits, first - 1, first - decimals);
  sink.Append(exponent.text, static_cast<std::size_t>(exponent.count));
  if (spec.left) {
    sink.Fill(QXT(' '), spec.width - length);
  }
}

void PutGeneral(FormatSink& sink, const FormatSpec& spec, double value, bool negative, int precision) noexcept {
  const int significant = precision == 0 ? 1 : precision;
  const DecimalDigits digits = DecimalDigits::WithSignificant(value, significant);
  const std::int64_t shown = spec.alternate ? significant : std::max(1, digits.SignificantCount());
  if (digits.Exponent() < -4 || digits.Exponent() >= significant) {
    PutScientific(sink, spec, digits, negative, shown - 1);
  } else {
    PutFixed(sink, spec, digits, negative, std::max<std::int64_t>(0, shown - 1 - digits.Exponent()));
  }
}

/// The leading digit is 1 (0 below the smallest normal number) and takes the carry of rounding: 1.5 with no decimals is 0x2p+0.
void PutHex(FormatSink& sink, const FormatSpec& spec, double value, bool negative) noexcept {
  constexpr int kMostDigits = 13;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biased = static_cast<int>(bits >> 52 & 0x7FF);
  std::uint64_t mantissa = (bits & kMantissaMask) | (biased != 0 ? kMantissaMask + 1 : 0);
  const int power = biased != 0 ? biased - 1023 : mantissa != 0 ? -1022 : 0;
  const int decimals = spec.precision < 0 ? kMostDigits : spec.precision;
  const int stored = std::min(decimals, kMostDigits);
  const int dropped = (kMostDigits - stored) * 4;
  if (dropped > 0) {
    mantissa = (mantissa + (std::uint64_t{1} << (dropped - 1))) >> dropped;
  }
  const bool point = decimals > 0 || spec.alternate;
  const Prefix prefix = PrefixOf(spec, negative, true /*hex*/);
  const ExponentText exponent = ExponentOf(IsUpper(spec) ? 'P' : 'p', power, 1);
  const std::int64_t length =
      static_cast<std::int64_t>(prefix.count) + 1 + (point ? 1 : 0) + std::int64_t{decimals} + exponent.count;
  PutLeft(sink, spec, prefix, spec.width - length);
  const char* const alphabet = IsUpper(spec) ? "0123456789ABCDEF" : "0123456789abcdef";
  for (int digit = stored; digit >= 0; --digit) {
    sink.Put(static_cast<QXChar>(alphabet[mantissa >> (digit * 4) & 15]));
    if (digit == stored && point) {
      sink.Put(QXT('.'));
    }
  }
  // Left-aligned the Microsoft run-time pads before the exponent, and digits that no double has are blanks behind it.
  const std::int64_t beyond = std::int64_t{decimals} - stored;
  sink.Fill(spec.left ? QXT(' ') : QXT('0'), spec.left ? spec.width - length : beyond);
  sink.Append(exponent.text, static_cast<std::size_t>(exponent.count));
  if (spec.left) {
    sink.Fill(QXT(' '), beyond);
  }
}

/// Infinities and NaN: the name stands where the digits stand and is cut like them, a cut name ends one letter higher.
void PutSpecial(FormatSink& sink, const FormatSpec& spec, double value, bool negative) noexcept {
  const QXChar kind = spec.conversion | 0x20;
  const char* const name = std::isinf(value) ? "#INF" : negative ? "#IND" : "#QNAN";
  const int nameLength = static_cast<int>(std::strlen(name));
  int precision = spec.precision < 0 ? (kind == QXT('a') ? 13 : 6) : spec.precision;
  if (kind == QXT('g')) {
    precision = std::max(-1, spec.precision - 1);  // -1 shows the whole name
  }
  char body[8] = {'1', '.'};
  int bodyLength = 1;
  if (precision != 0) {
    const int shown = precision < 0 ? nameLength : std::min(precision, nameLength);
    std::memcpy(body + 2, name, static_cast<std::size_t>(shown));
    bodyLength = 2 + shown;
    if (shown < nameLength) {
      ++body[bodyLength - 1];
    }
  }
  const Prefix prefix = PrefixOf(spec, negative, kind == QXT('a'));
  const ExponentText exponent = kind == QXT('e')   ? ExponentOf(IsUpper(spec) ? 'E' : 'e', 0, 3)
                                : kind == QXT('a') ? ExponentOf(IsUpper(spec) ? 'P' : 'p', 0, 1)
                                                   : ExponentText{};
  const std::int64_t before = static_cast<std::int64_t>(prefix.count) + bodyLength;
  const bool dropsZeros = kind == QXT('g') && (precision < 0 || !spec.alternate);
  const std::int64_t missing = dropsZeros ? 0 : std::int64_t{precision} - nameLength;  // below 0: letters cut off
  const std::int64_t padding = spec.width - std::max(before, before + exponent.count + missing);
  PutLeft(sink, spec, prefix, padding);
  sink.Append(body, static_cast<std::size_t>(bodyLength));
  sink.Fill(spec.left ? QXT(' ') : QXT('0'), spec.left ? padding : missing);
  sink.Append(exponent.text, static_cast<std::size_t>(exponent.count));
  if (spec.left) {
    sink.Fill(QXT(' '), missing);
  }
}

}  // namespace

void FormatDouble(FormatSink& sink, const FormatSpec& spec, double value) noexcept {
  const bool negative = std::signbit(value);
  if (!std::isfinite(value)) {
    PutSpecial(sink, spec, value, negative);
    return;
  }
  const int precision = spec.precision < 0 ? 6 : spec.precision;
  switch (spec.conversion | 0x20) {
    case 'f':
      PutFixed(sink, spec, DecimalDigits::WithDecimals(value, precision), negative, precision);
      break;
    case 'e': {
      const int significant = std::min(precision, DecimalDigits::kMost) + 1;
      PutScientific(sink, spec, DecimalDigits::WithSignificant(value, significant), negative, precision);
      break;
    }
    case 'g':
      PutGeneral(sink, spec, value, negative, precision);
      break;
    default:
      PutHex(sink, spec, value, negative);
      break;
  }
}

}  // namespace qxv::os
