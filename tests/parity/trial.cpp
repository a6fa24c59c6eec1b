// trial.cpp - the values drawn, and how results enter the digest.

#include "parity/trial.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>

namespace parity {

int Trial::Whole() {
  constexpr int kEdges[] = {0, 1, -1, INT_MAX, INT_MIN, INT_MIN + 1, 255, 256, 32767, 65536};
  switch (Below(4)) {
    case 0:
      return kEdges[Below(10)];
    case 1:
      return Between(-100, 100);
    default:
      return static_cast<int>(static_cast<std::uint32_t>(Bits()));
  }
}

QXInt64 Trial::Long() { return Below(2) == 0 ? QXInt64{Whole()} : static_cast<QXInt64>(Bits()) >> Below(63); }

double Trial::Double() {
  constexpr double kSpecial[] = {0.0, -0.0, 0.5, 1.0, -1.0, 1e300, -1e300, 5e-324, 0.1, 1e15};
  switch (Below(5)) {
    case 0:
      return kSpecial[Below(10)];
    case 1:
      return Coarse();
    case 2:
      return Between(-99999999, 99999999) / 10000.0;
    case 3:
      return std::ldexp(static_cast<double>(static_cast<std::int64_t>(Bits()) >> 11), Between(-120, 40));
    default:
      return std::ldexp(static_cast<double>(static_cast<std::int64_t>(Bits()) >> 11), Between(-56, -40));
  }
}

Text Trial::Word(int longest) {
  static const Text kSome = QXT("abcXYZ 019.,-+\\/[]=<>&'\"\t\u00E9\u00C9\u4E2D\u0416");
  Text word;
  const int length = Below(longest + 1);
  for (int i = 0; i < length; ++i) {
    const int kind = Below(20);
    word += kind == 0  ? static_cast<QXChar>(Between(0x20, 0xD7FF))
            : kind < 8 ? kSome[static_cast<std::size_t>(Below(static_cast<int>(kSome.size())))]
                       : static_cast<QXChar>(Between('a', 'f'));
  }
  return word;
}

std::string Trial::Bytes(int longest) {
  std::string bytes(static_cast<std::size_t>(Below(longest + 1)), '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(Bits());
  }
  return bytes;
}

Trial& Trial::operator<<(double value) {
  if (m_precision == Precision::TenDigits) {
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.9e", value == 0 || std::fabs(value) < 1e-9 ? 0.0 : value);
    return std::isfinite(value) ? *this << std::string(digits) : *this << std::isnan(value);
  }
  return Number(std::isnan(value) ? 0x7FF8000000000000 : std::bit_cast<std::uint64_t>(value));
}

Trial& Trial::operator<<(const QXChar* text) {
  const std::size_t length = std::char_traits<QXChar>::length(text);
  Number(length);
  for (std::size_t i = 0; i < length; ++i) {
    Byte(static_cast<unsigned char>(text[i] & 0xFF));
    Byte(static_cast<unsigned char>(text[i] >> 8));
  }
  return *this;
}

Trial& Trial::Raw(const void* bytes, std::size_t count) {
  Number(count);
  for (std::size_t i = 0; i < count; ++i) {
    Byte(static_cast<const unsigned char*>(bytes)[i]);
  }
  return *this;
}

Trial& Trial::Number(std::uint64_t value) {
  for (int shift = 0; shift < 64; shift += 8) {
    Byte(static_cast<unsigned char>(value >> shift));
  }
  return *this;
}

}  // namespace parity
