// slots.h - where a virtual function stands in the table of its class.
#pragma once

#include <cstddef>
#include <cstring>

namespace abi_test {

// The function's place in the table, counted in functions behind the two entries of the destructor; -1 for one that is not
// virtual. A member pointer of this compiler holds one more than the offset in the table.
template <class Function>
int SlotOf(Function function) {
  std::ptrdiff_t words[2] = {};
  static_assert(sizeof function == sizeof words);
  std::memcpy(words, &function, sizeof words);
  constexpr std::ptrdiff_t kEntry = sizeof(void*);
  return words[0] % kEntry == 1 ? static_cast<int>(words[0] / kEntry) - 1 : -1;
}

}  // namespace abi_test
