// byte_writer.h - ByteWriter: headers and records built byte by byte.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace qxv {

/// Appends little-endian numbers and runs of bytes to a vector that the caller keeps alive. Lack of memory throws std::bad_alloc.
class ByteWriter {
 public:
  explicit ByteWriter(std::vector<unsigned char>& bytes) noexcept : m_bytes(&bytes) {}

  void U8(std::uint8_t value) { m_bytes->push_back(value); }
  void U16(std::uint16_t value) { Number(value, 2); }
  void U32(std::uint32_t value) { Number(value, 4); }
  void U64(std::uint64_t value) { Number(value, 8); }
  void I16(std::int16_t value) { U16(static_cast<std::uint16_t>(value)); }
  void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }
  void I64(std::int64_t value) { U64(static_cast<std::uint64_t>(value)); }
  void F32(float value) { U32(std::bit_cast<std::uint32_t>(value)); }
  void F64(double value) { U64(std::bit_cast<std::uint64_t>(value)); }

  /// The bytes must not lie in the vector itself.
  void Bytes(std::span<const unsigned char> bytes) { m_bytes->insert(m_bytes->end(), bytes.begin(), bytes.end()); }
  void Zeros(std::size_t n) { m_bytes->insert(m_bytes->end(), n, 0); }

  /// Bytes in the vector, what stood there before included.
  std::size_t Size() const noexcept { return m_bytes->size(); }

  /// Replaces a number written earlier as a placeholder.
  /// @return false when not all four bytes have been written
  [[nodiscard]] bool SetU32(std::size_t position, std::uint32_t value) noexcept {
    if (position > m_bytes->size() || m_bytes->size() - position < 4) {
      return false;
    }
    for (unsigned i = 0; i < 4; ++i) {
      (*m_bytes)[position + i] = static_cast<unsigned char>(value >> (8 * i));
    }
    return true;
  }

 private:
  void Number(std::uint64_t value, unsigned bytes) {
    unsigned char image[8];
    for (unsigned i = 0; i < bytes; ++i) {
      image[i] = static_cast<unsigned char>(value >> (8 * i));
    }
    m_bytes->insert(m_bytes->end(), image, image + bytes);
  }

  std::vector<unsigned char>* m_bytes;
};

}  // namespace qxv
