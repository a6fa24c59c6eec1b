// half.h - what FreeImage's TIFF reader asks of OpenEXR's 16-bit floating type.
#pragma once

#include <cmath>
#include <limits>

class half {
 public:
  void setBits(unsigned short bits) { m_bits = bits; }

  operator float() const {
    const int exponent = m_bits >> 10 & 0x1F;
    const int fraction = m_bits & 0x3FF;
    float value;
    if (exponent == 0x1F) {
      value = fraction == 0 ? std::numeric_limits<float>::infinity() : std::numeric_limits<float>::quiet_NaN();
    } else if (exponent == 0) {
      value = std::ldexp(static_cast<float>(fraction), -24);
    } else {
      value = std::ldexp(static_cast<float>(fraction + 0x400), exponent - 25);
    }
    return (m_bits & 0x8000) != 0 ? -value : value;
  }

 private:
  unsigned short m_bits = 0;
};
