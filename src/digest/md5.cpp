// md5.cpp - MD5, one block of 64 bytes after another straight from the caller's memory.
// Each of the 64 steps waits for the one before it, so the time is the length of that chain: what a step takes from the input,
// its constant and the values that stood earlier is summed up beforehand, only the last value and what hangs on it comes late.
// That is 5 cycles a step in the first and last round, 4 in the others, 288 a block.

#include "digest/md5.h"

#include "os/cpu.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace qxv {
namespace {

constexpr std::size_t kCountSize = 8;  // bytes of the bit count behind the padding
constexpr std::uint32_t kInitialState[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

constexpr std::uint32_t kConstants[64] = {
    // the integer part of 2^32 * |sin(i + 1)|
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501, 0x698098D8, 0x8B44F7AF,
    0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821, 0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA,
    0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8, 0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8,
    0x676F02D9, 0x8D2A4C8A, 0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665, 0xF4292244, 0x432AFF97,
    0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1, 0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1,
    0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391,
};
constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

/// The word of the block that a step takes.
constexpr std::size_t WordOf(std::size_t step) {
  switch (step / 16) {
    case 0:
      return step;
    case 1:
      return (5 * step + 1) % 16;
    case 2:
      return (3 * step + 5) % 16;
    default:
      return 7 * step % 16;
  }
}

QXV_ALWAYS_INLINE std::uint32_t Load(const unsigned char* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 | static_cast<std::uint32_t>(p[2]) << 16 |
         static_cast<std::uint32_t>(p[3]) << 24;
}

void Store(std::uint32_t value, unsigned char* p) {
  for (int i = 0; i < 4; ++i) {
    p[i] = static_cast<unsigned char>(value >> (8 * i));
  }
}

template <std::size_t step>
QXV_ALWAYS_INLINE void Step(std::uint32_t (&values)[4], const unsigned char* words) {
  constexpr std::size_t kTurn = step % 4;
  std::uint32_t& a = values[(4 - kTurn) % 4];
  const std::uint32_t b = values[(5 - kTurn) % 4];  // the one value that the step before has just made
  const std::uint32_t c = values[(6 - kTurn) % 4];
  const std::uint32_t d = values[(7 - kTurn) % 4];
  const std::uint32_t early = a + Load(words + 4 * WordOf(step)) + kConstants[step];
  std::uint32_t sum;
  if constexpr (step < 16) {
    sum = os::KeepOrder(early) + (d ^ (b & (c ^ d)));
  } else if constexpr (step < 32) {  // the halves of the choice have no bit in common, so that both may be added
    sum = os::KeepOrder(early + (c & ~d)) + (b & d);
  } else if constexpr (step < 48) {
    sum = os::KeepOrder(early) + (os::KeepOrder(c ^ d) ^ b);
  } else {
    sum = os::KeepOrder(early) + (c ^ (b | ~d));
  }
  a = std::rotl(sum, kShifts[step / 16][kTurn]) + b;
}

template <std::size_t... steps>
QXV_ALWAYS_INLINE void AllSteps(std::uint32_t (&values)[4], const unsigned char* words, std::index_sequence<steps...> /*order*/) {
  (Step<steps>(values, words), ...);
}

// Four sums in a row without a loop, which the compiler would do in a vector register: the way there and back takes 16 cycles.
void Transform(std::uint32_t (&state)[4], const unsigned char* blocks, std::size_t count) {
  std::uint32_t values[4] = {state[0], state[1], state[2], state[3]};
  for (; count != 0; --count, blocks += kMd5BlockSize) {
    const std::uint32_t a = values[0], b = values[1], c = values[2], d = values[3];
    AllSteps(values, blocks, std::make_index_sequence<64>());
    values[0] = values[0] + a;
    values[1] = values[1] + b;
    values[2] = values[2] + c;
    values[3] = values[3] + d;
  }
  std::copy(std::begin(values), std::end(values), std::begin(state));
}

}  // namespace

void Md5::Start() noexcept {
  std::copy(std::begin(kInitialState), std::end(kInitialState), state);
  std::fill(std::begin(bitCount), std::end(bitCount), 0);
  std::fill(std::begin(block), std::end(block), static_cast<unsigned char>(0));
  SetPadding();
}

void Md5::SetPadding() noexcept {
  std::fill(std::begin(padding), std::end(padding), static_cast<unsigned char>(0));
  padding[0] = 0x80;
}

void Md5::Update(const unsigned char* data, std::size_t size) noexcept {
  if (size == 0) {
    return;
  }
  const std::size_t waiting = BytesWaiting();
  const std::uint64_t bits = (static_cast<std::uint64_t>(bitCount[1]) << 32 | bitCount[0]) + static_cast<std::uint64_t>(size) * 8;
  bitCount[0] = static_cast<std::uint32_t>(bits);
  bitCount[1] = static_cast<std::uint32_t>(bits >> 32);
  if (waiting != 0) {
    const std::size_t taken = std::min(size, kMd5BlockSize - waiting);
    std::memcpy(block + waiting, data, taken);
    if (waiting + taken < kMd5BlockSize) {
      return;
    }
    Transform(state, block, 1);
    data += taken;
    size -= taken;
  }
  Transform(state, data, size / kMd5BlockSize);
  std::memcpy(block, data + size / kMd5BlockSize * kMd5BlockSize, size % kMd5BlockSize);
}

void Md5::Finish(unsigned char (&digest)[kMd5DigestSize]) noexcept {
  constexpr std::size_t kRoom = kMd5BlockSize - kCountSize;
  const std::size_t waiting = BytesWaiting();
  std::memcpy(block + waiting, padding, kMd5BlockSize - waiting);
  if (waiting >= kRoom) {  // no place for the count behind the first byte of the padding
    Transform(state, block, 1);
    std::fill_n(block, kRoom, static_cast<unsigned char>(0));
  }
  Store(bitCount[0], block + kRoom);
  Store(bitCount[1], block + kRoom + 4);
  Transform(state, block, 1);
  for (int i = 0; i < 4; ++i) {
    Store(state[i], digest + 4 * i);
  }
}

}  // namespace qxv
