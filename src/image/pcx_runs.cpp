// pcx_runs.cpp - the runs of a PCX row, eight values at a time: most stand for themselves or are equal to their neighbours.

#include "image/pcx_runs.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace qxv {
namespace {

constexpr unsigned kRun = 0xC0;  // both bits set: the low six are a count
constexpr std::size_t kWord = 8;
constexpr std::uint64_t kLows = 0x0101010101010101;
constexpr std::uint64_t kHighs = 0x8080808080808080;

// The byte at the lowest address is the lowest of the word, as on every system that we build for.
static_assert(std::endian::native == std::endian::little);

std::uint64_t Load(const unsigned char* bytes) noexcept {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// The highest bit of each byte from 0xC0 on.
std::uint64_t NeedRun(std::uint64_t word) noexcept { return word & word << 1 & kHighs; }

// The highest bit of the first zero byte; bits of later bytes may be wrong.
std::uint64_t FirstZero(std::uint64_t word) noexcept { return (word - kLows) & ~word & kHighs; }

std::size_t FirstByte(std::uint64_t marks) noexcept { return static_cast<std::size_t>(std::countr_zero(marks)) / 8; }

// Equal values from the start on, at most limit (1 or more).
std::size_t RunLength(const unsigned char* values, std::size_t limit) noexcept {
  const std::uint64_t first = kLows * values[0];
  std::size_t length = 1;
  for (; length + kWord <= limit; length += kWord) {
    if (const std::uint64_t difference = Load(values + length) ^ first; difference != 0) {
      return length + FirstByte(difference);
    }
  }
  while (length < limit && values[length] == values[0]) {
    ++length;
  }
  return length;
}

}  // namespace

std::size_t DecodePcxRuns(std::span<const unsigned char> bytes, std::span<unsigned char> row, std::size_t& done) noexcept {
  const unsigned char* at = bytes.data();
  const unsigned char* const end = at + bytes.size();
  unsigned char* out = row.data() + done;
  unsigned char* const full = row.data() + row.size();
  while (out != full && at != end) {
    if (static_cast<std::size_t>(end - at) >= kWord) {  // values up to the next run
      const std::uint64_t word = Load(at);
      const std::uint64_t runs = NeedRun(word);
      const std::size_t values = std::min<std::size_t>(runs == 0 ? kWord : FirstByte(runs), static_cast<std::size_t>(full - out));
      std::memcpy(out, &word, kWord);
      at += values;
      out += values;
      if (runs == 0 || out == full) {
        continue;
      }
    } else if (*at < kRun) {
      *out++ = *at++;
      continue;
    }
    const std::size_t length = *at - kRun;
    if (end - at < 2 || length > static_cast<std::size_t>(full - out)) {
      break;
    }
    std::memset(out, at[1], kPcxSlack);
    at += 2;
    out += length;
  }
  done = static_cast<std::size_t>(out - row.data());
  return static_cast<std::size_t>(at - bytes.data());
}

std::size_t EncodePcxRuns(std::span<const unsigned char> row, std::size_t& done, std::span<unsigned char> room) noexcept {
  const unsigned char* at = row.data() + done;
  const unsigned char* const end = row.data() + row.size();
  unsigned char* out = room.data();
  unsigned char* const roomEnd = out + room.size();
  while (at != end && static_cast<std::size_t>(roomEnd - out) >= kWord) {
    if (static_cast<std::size_t>(end - at) > kWord) {  // values up to the next one that is a run or needs one
      const std::uint64_t word = Load(at);
      const std::uint64_t runs = NeedRun(word) | FirstZero(word ^ Load(at + 1));
      const std::size_t values = runs == 0 ? kWord : FirstByte(runs);
      std::memcpy(out, &word, kWord);
      at += values;
      out += values;
      if (runs == 0 || static_cast<std::size_t>(roomEnd - out) < 2) {
        continue;
      }
    }
    const std::size_t length = RunLength(at, std::min<std::size_t>(static_cast<std::size_t>(end - at), kLongestPcxRun));
    if (length > 1 || *at >= kRun) {
      *out++ = static_cast<unsigned char>(kRun + length);
    }
    *out++ = *at;
    at += length;
  }
  done = static_cast<std::size_t>(at - row.data());
  return static_cast<std::size_t>(out - room.data());
}

}  // namespace qxv
