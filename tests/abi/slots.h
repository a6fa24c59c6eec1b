// slots.h - where a virtual function stands in the table of its class.
#pragma once

#include <cstddef>
#include <cstring>

namespace abi_test {

// The function's place among all entries of the table, of which the destructor has the first two; -1 for a function that is not
// virtual. A member pointer of this compiler holds one more than the offset in the table.
template <class Function>
int EntryOf(Function function) {
  std::ptrdiff_t words[2] = {};
  static_assert(sizeof function == sizeof words);
  std::memcpy(words, &function, sizeof words);
  constexpr std::ptrdiff_t kEntry = sizeof(void*);
  return words[0] % kEntry == 1 ? static_cast<int>(words[0] / kEntry) : -1;
}

// Its place with the destructor counted as one.
template <class Function>
int SlotOf(Function function) {
  const int entry = EntryOf(function);
  return entry < 0 ? entry : entry - 1;
}

}  // namespace abi_test
