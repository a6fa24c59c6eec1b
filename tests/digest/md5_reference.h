// md5_reference.h - MD5 as RFC 1321 writes it down, one step after another, with the constants computed from the sine. The judge
// of the library's own.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace digest_test {

using State = std::array<std::uint32_t, 4>;
inline constexpr State kFreshState = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

inline void TransformReference(State& state, std::string_view block) {
  constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
  auto [a, b, c, d] = state;
  for (unsigned i = 0; i < 64; ++i) {
    std::uint32_t mixed;
    unsigned word;
    if (i < 16) {
      mixed = (b & c) | (~b & d);
      word = i;
    } else if (i < 32) {
      mixed = (b & d) | (c & ~d);
      word = (5 * i + 1) % 16;
    } else if (i < 48) {
      mixed = b ^ c ^ d;
      word = (3 * i + 5) % 16;
    } else {
      mixed = c ^ (b | ~d);
      word = (7 * i) % 16;
    }
    std::uint32_t x = 0;
    for (unsigned k = 0; k < 4; ++k) {
      x |= std::uint32_t{static_cast<unsigned char>(block[4 * word + k])} << (8 * k);
    }
    const auto constant = static_cast<std::uint32_t>(std::floor(std::fabs(std::sin(i + 1.0)) * 4294967296.0));
    const std::uint32_t next = b + std::rotl(a + mixed + x + constant, kShifts[i / 16][i % 4]);
    a = d;
    d = c;
    c = b;
    b = next;
  }
  state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

/// The digest, in hexadecimal, of a message whose last bytes are given, when the blocks in front of them have led to this state.
/// @param bits  of the whole message
inline std::string FinishReference(State state, std::string_view rest, std::uint64_t bits) {
  std::string tail(rest);
  tail += '\x80';
  while (tail.size() % 64 != 56) {
    tail += '\0';
  }
  for (int k = 0; k < 8; ++k) {
    tail += static_cast<char>(bits >> (8 * k));
  }
  for (std::size_t at = 0; at < tail.size(); at += 64) {
    TransformReference(state, std::string_view(tail).substr(at, 64));
  }
  std::string text;
  for (const std::uint32_t value : state) {
    for (int k = 0; k < 4; ++k) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02x", (value >> (8 * k)) & 0xFF);
      text += digits;
    }
  }
  return text;
}

inline std::string DigestReference(std::string_view message) {
  return FinishReference(kFreshState, message, std::uint64_t{message.size()} * 8);
}

}  // namespace digest_test
