// string_buffer.cpp - the two words behind a CQXString's characters.

#include "foundation/string_buffer.h"

#include <cstring>

namespace qxv {

StringWords ReadStringWords(const QXChar* buffer) noexcept {
  StringWords words;
  if (buffer == nullptr) {
    return words;
  }
  words.slot = kStringBlock;
  while (buffer[words.slot] != 0) {
    words.slot += kStringBlock;
  }
  const QXChar* behind = buffer + words.slot + 1;
  std::memcpy(&words.length, behind, sizeof words.length);  // the words stand at addresses that are not multiples of 4
  std::memcpy(&words.capacity, behind + 2, sizeof words.capacity);
  words.valid = words.capacity % kStringBlock == 0 && words.capacity >= words.slot && words.slot == StringSlot(words.length);
  return words;
}

void WriteStringWords(QXChar* buffer, std::size_t slot, std::size_t length, std::size_t capacity) noexcept {
  const auto lengthWord = static_cast<std::uint32_t>(length);
  const auto capacityWord = static_cast<std::uint32_t>(capacity);
  std::memcpy(buffer + slot + 1, &lengthWord, sizeof lengthWord);
  std::memcpy(buffer + slot + 3, &capacityWord, sizeof capacityWord);
}

}  // namespace qxv
