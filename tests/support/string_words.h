// string_words.h - a CQXString's buffer as bytes, read without help of the library.
#pragma once

#include "qxv/string.h"
#include "support/guard_new.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace support {

/// The buffer that the string owns, writable, as an application reaches it through the pointer.
inline QXChar* BufferOf(const CQXString& string) { return const_cast<QXChar*>(static_cast<const QXChar*>(string)); }

inline std::uint32_t WordAt(const CQXString& string, std::size_t byteOffset) {
  std::uint32_t word = 0;
  std::memcpy(&word, reinterpret_cast<const unsigned char*>(BufferOf(string)) + byteOffset, sizeof word);
  return word;
}

/// The slot: the first of the units 128, 256, 384 ... that is zero.
inline std::size_t SlotOf(const CQXString& string) {
  std::size_t slot = 128;
  while (BufferOf(string)[slot] != 0) {
    slot += 128;
  }
  return slot;
}

inline std::uint32_t LengthWord(const CQXString& string) { return WordAt(string, 2 * SlotOf(string) + 2); }
inline std::uint32_t CapacityWord(const CQXString& string) { return WordAt(string, 2 * SlotOf(string) + 6); }
inline std::size_t BufferBytes(const CQXString& string) { return AllocationSize(BufferOf(string)); }

/// The buffer's bytes up to and including the capacity word behind the slot.
inline std::vector<unsigned char> BytesOf(const CQXString& string) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(BufferOf(string));
  return {bytes, bytes + 2 * SlotOf(string) + 10};
}

/// Whether two buffers hold the same in every byte up to the end of their capacities, words included.
inline bool SameBuffers(const CQXString& a, const CQXString& b) {
  const std::size_t slot = SlotOf(a);
  const std::size_t capacity = CapacityWord(a);
  if (slot != SlotOf(b) || LengthWord(a) != LengthWord(b) || capacity != CapacityWord(b)) {
    return false;
  }
  return std::memcmp(BufferOf(a), BufferOf(b), 2 * capacity + (slot == capacity ? 10 : 2)) == 0;
}

}  // namespace support
