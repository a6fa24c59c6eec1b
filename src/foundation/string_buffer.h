// string_buffer.h - the buffer behind a CQXString: characters, terminator slot, length word, capacity word.
//
//   unit   0 ... C-1    C           C+1, C+2       C+3, C+4
//         [characters ][terminator][length word  ][capacity word]      C a multiple of 128, at least 128; 2 C + 10 bytes
//
// Where the words stand is not stored. They stand behind the slot: the first unit among 128, 256, 384 ... that is zero. After a
// sizing that kept a larger allocation the slot lies below C, and everything below the slot is text.
#pragma once

#include "qxv/types.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qxv {

inline constexpr std::size_t kStringBlock = 128;        // characters by which capacities step
inline constexpr std::size_t kStringReuseRange = 1024;  // a buffer this much larger than needed is given back
inline constexpr std::size_t kStringWordUnits = 5;      // terminator slot and the two words, in units
inline constexpr std::size_t kStringMaxLength = 0x7FFFFF80;

/// What stands behind the characters of a buffer.
struct StringWords {
  std::size_t slot = 0;
  std::uint32_t length = 0;
  std::uint32_t capacity = 0;
  /// False without a buffer, and for words that no sizing can have written: an application cut the text at a multiple of 128, so
  /// the scan stopped inside the text. They must not be used then.
  bool valid = false;
};

/// The slot of a text of this length: the length rounded up to whole blocks, at least one.
constexpr std::size_t StringSlot(std::size_t length) noexcept {
  return length == 0 ? kStringBlock : (length + kStringBlock - 1) / kStringBlock * kStringBlock;
}

/// The words that stand behind this slot.
inline StringWords StringWordsBehind(const QXChar* buffer, std::size_t slot) noexcept {
  StringWords words;
  words.slot = slot;
  std::memcpy(&words.length, buffer + slot + 1, sizeof words.length);  // at addresses that are not multiples of 4
  std::memcpy(&words.capacity, buffer + slot + 3, sizeof words.capacity);
  words.valid = words.capacity % kStringBlock == 0 && words.capacity >= slot && slot == StringSlot(words.length);
  return words;
}

inline void WriteStringWords(QXChar* buffer, std::size_t slot, std::size_t length, std::size_t capacity) noexcept {
  const auto lengthWord = static_cast<std::uint32_t>(length);
  const auto capacityWord = static_cast<std::uint32_t>(capacity);
  std::memcpy(buffer + slot + 1, &lengthWord, sizeof lengthWord);
  std::memcpy(buffer + slot + 3, &capacityWord, sizeof capacityWord);
}

/// The words found by the slot scan; not valid for a null buffer.
inline StringWords ReadStringWords(const QXChar* buffer) noexcept {
  if (buffer == nullptr) {
    return {};
  }
  std::size_t slot = kStringBlock;
  while (buffer[slot] != 0) {
    slot += kStringBlock;
  }
  return StringWordsBehind(buffer, slot);
}

/// Units to allocate for a capacity: exactly what the buffer holds up to 16384 characters. Above, capacities share size classes a
/// quarter of a power of two apart, so that a text growing by one block after another moves only when it leaves its class.
constexpr std::size_t StringAllocationUnits(std::size_t capacity) noexcept {
  std::size_t step = kStringBlock;
  if (capacity > 16384) {
    while (step * 8 <= capacity) {
      step *= 2;
    }
  }
  return (capacity + step - 1) / step * step + kStringWordUnits;
}

}  // namespace qxv
