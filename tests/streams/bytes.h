// bytes.h - byte literals as texts that GoogleTest compares and prints.
#pragma once

#include <initializer_list>
#include <string>

namespace streams_test {

inline std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) {
    bytes += static_cast<char>(static_cast<unsigned char>(value));
  }
  return bytes;
}

}  // namespace streams_test
