// byte_reader.h - ByteReader: bounded reading of bytes that come from outside.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace qxv {

/// Little-endian numbers and runs of bytes from a span that the caller keeps alive. The first failure sticks: what does not fit
/// into the bytes left, and everything after it, gives zeros or an empty span and does not move. So a header is read in one
/// breath and tested once by Failed.
class ByteReader {
 public:
  explicit ByteReader(std::span<const unsigned char> bytes) noexcept : m_bytes(bytes) {}

  std::uint8_t U8() noexcept { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() noexcept { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U32() noexcept { return static_cast<std::uint32_t>(Number(4)); }
  std::uint64_t U64() noexcept { return Number(8); }
  std::int16_t I16() noexcept { return static_cast<std::int16_t>(U16()); }
  std::int32_t I32() noexcept { return static_cast<std::int32_t>(U32()); }
  std::int64_t I64() noexcept { return static_cast<std::int64_t>(U64()); }
  float F32() noexcept { return std::bit_cast<float>(U32()); }
  double F64() noexcept { return std::bit_cast<double>(U64()); }

  /// The next n bytes, in place.
  std::span<const unsigned char> Bytes(std::size_t n) noexcept {
    const auto* bytes = Take(n);
    return bytes == nullptr ? std::span<const unsigned char>() : std::span<const unsigned char>(bytes, n);
  }

  void Skip(std::size_t n) noexcept { (void)Take(n); }

  /// Goes to a place counted from the start, forwards or backwards; the end of the bytes is one.
  void GoTo(std::size_t position) noexcept {
    if (m_failed || position > m_bytes.size()) {
      m_failed = true;
    } else {
      m_at = position;
    }
  }

  std::size_t Position() const noexcept { return m_at; }

  /// Bytes left; 0 after a failure.
  std::size_t Left() const noexcept { return m_failed ? 0 : m_bytes.size() - m_at; }

  bool Failed() const noexcept { return m_failed; }

  /// For what the bytes say and cannot be: everything after it fails.
  void Fail() noexcept { m_failed = true; }

 private:
  const unsigned char* Take(std::size_t n) noexcept {  // the only bounds check: n > size - at, never at + n > size
    if (m_failed || n > m_bytes.size() - m_at) {
      m_failed = true;
      return nullptr;
    }
    const auto* bytes = m_bytes.data() + m_at;
    m_at += n;
    return bytes;
  }

  std::uint64_t Number(unsigned bytes) noexcept {
    const auto* place = Take(bytes);
    std::uint64_t value = 0;
    if (place != nullptr) {
      for (unsigned i = 0; i < bytes; ++i) {
        value |= static_cast<std::uint64_t>(place[i]) << (8 * i);
      }
    }
    return value;
  }

  std::span<const unsigned char> m_bytes;
  std::size_t m_at = 0;
  bool m_failed = false;
};

}  // namespace qxv
