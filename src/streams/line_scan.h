// line_scan.h - ends of lines in texts of bytes and of 16-bit units, by vector instructions. Nothing outside the ranges is read.
#pragma once

#include "qxv/types.h"

#include <cstddef>

namespace qxv {

inline constexpr unsigned char kCarriageReturn = 13;

struct LineStop {
  std::size_t at;  // an index; the count when nothing was found
  bool ascii;      // all bytes before it are certainly below 0x80
};

/// The first byte that is a or b, and whether all before it are known to be below 0x80: bytes behind it may spoil that.
[[nodiscard]] LineStop FindLineStop(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept;

/// The index alone.
[[nodiscard]] std::size_t FindByte(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept;

/// Index of the first unit that is a or b; count when there is none.
[[nodiscard]] std::size_t FindUnit(const QXChar* units, std::size_t count, QXChar a, QXChar b) noexcept;

/// Index of the first unit whose low byte is a or b; count when there is none.
[[nodiscard]] std::size_t FindLowByte(const QXChar* units, std::size_t count, unsigned char a, unsigned char b) noexcept;

/// Counts the carriage returns of a text that comes in pieces. What follows a counted one is not looked at.
class LineEndCounter {
 public:
  void Add(const unsigned char* bytes, std::size_t count) noexcept;
  void Add(const QXChar* units, std::size_t count) noexcept;

  [[nodiscard]] std::size_t Count() const noexcept { return m_count; }

 private:
  std::size_t m_count = 0;
  bool m_skipNext = false;  // the last unit seen was a counted carriage return
};

// The same, a unit at a time: what the vector forms are tested against.
[[nodiscard]] std::size_t FindByteReference(const unsigned char* bytes, std::size_t count, unsigned char a,
                                            unsigned char b) noexcept;
[[nodiscard]] std::size_t FindUnitReference(const QXChar* units, std::size_t count, QXChar a, QXChar b) noexcept;
[[nodiscard]] std::size_t FindLowByteReference(const QXChar* units, std::size_t count, unsigned char a, unsigned char b) noexcept;
[[nodiscard]] std::size_t CountLineEndsReference(const unsigned char* bytes, std::size_t count) noexcept;
[[nodiscard]] std::size_t CountLineEndsReference(const QXChar* units, std::size_t count) noexcept;

}  // namespace qxv
