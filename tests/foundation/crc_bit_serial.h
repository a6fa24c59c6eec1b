// crc_bit_serial.h - CRC-32/MPEG-2 one bit at a time, as its definition goes: what the fast forms are judged by.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

inline std::uint32_t UpdateCrcBitSerial(std::uint32_t crc, const unsigned char* p, std::size_t n) {
  for (std::size_t bit = 0; bit < n * 8; ++bit) {
    const std::uint32_t input = static_cast<std::uint32_t>(p[bit / 8]) >> (7 - bit % 8) & 1;
    const std::uint32_t feedback = input ^ crc >> 31;
    crc <<= 1;
    if (feedback != 0) {
      crc ^= 0x04C11DB7;
    }
  }
  return crc;
}

}  // namespace support
