// pcx_runs.cpp - the runs of a PCX row. Where runs begin stands in the bits of a word for each 64 bytes, so that what comes next
// is known without a guess, and short stretches of values are moved as if they were long.

#include "image/pcx_runs.h"

#include "image/pcx_marks.h"
#include "os/cpu.h"
#include "os/intrinsics.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kMostBlocks = 32;       // that are marked at once
constexpr std::size_t kMostBlocksInFile = 8;  // there a block may stand for a whole row
constexpr std::size_t kWide = sizeof(__m128i);
constexpr std::size_t kLeast = 2 * kWide;  // that is moved at once
static_assert(kPcxBlock + kLeast <= kPcxSlack);
static_assert(2 * 2 * kPcxBlock + kLeast <= kLeastPcxRoom);  // two blocks, or a long run would never begin one

std::size_t FirstBit(std::uint64_t bits) noexcept { return static_cast<std::size_t>(std::countr_zero(bits)); }

void Store(unsigned char* bytes, __m128i values) noexcept { _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), values); }

// Both write whole registers: up to kWide - 1 bytes more than count, and at least kLeast.
void CopyValues(unsigned char* out, const unsigned char* values, std::size_t count) noexcept {
  const auto* in = reinterpret_cast<const __m128i*>(values);
  Store(out, _mm_loadu_si128(in));
  Store(out + kWide, _mm_loadu_si128(in + 1));
  for (std::size_t i = kLeast; i < count; i += kWide) {
    Store(out + i, _mm_loadu_si128(in + i / kWide));
  }
}

void FillValues(unsigned char* out, unsigned char value, std::size_t count) noexcept {
  const __m128i values = _mm_set1_epi8(static_cast<char>(value));
  Store(out, values);
  Store(out + kWide, values);
  for (std::size_t i = kLeast; i < count; i += kWide) {
    Store(out + i, values);
  }
}

struct Decoding {
  const unsigned char* at;
  const unsigned char* end;
  unsigned char* out;
  unsigned char* full;

  std::size_t BytesLeft() const noexcept { return static_cast<std::size_t>(end - at); }
  std::size_t ValuesLeft() const noexcept { return static_cast<std::size_t>(full - out); }

  void Copy(std::size_t count) noexcept {
    CopyValues(out, at, count);
    at += count;
    out += count;
  }
};

// The functions on blocks are inlined so that the places stay in registers: every byte written might else have changed them.

// One block, whose runs are marked.
// @return false where something in it does not fit into the row, and stands before that
QXV_ALWAYS_INLINE bool DecodeBlock(Decoding& d, const unsigned char* block, std::uint64_t runs) noexcept {
  while (runs != 0) {
    const std::size_t run = FirstBit(runs);
    const auto values = static_cast<std::size_t>(block + run - d.at);
    const std::size_t length = block[run] - kPcxRun;
    if (values + length > d.ValuesLeft()) {
      return false;
    }
    d.Copy(values);
    FillValues(d.out, d.at[1], length);
    d.at += 2;
    d.out += length;
    runs &= ~(std::uint64_t{3} << run);  // the value of a run may look like another
  }
  const std::ptrdiff_t values = block + kPcxBlock - d.at;  // -1 behind a run that ends in the next block
  if (values > 0) {
    if (static_cast<std::size_t>(values) > d.ValuesLeft()) {
      return false;
    }
    d.Copy(static_cast<std::size_t>(values));
  }
  return true;
}

// Blocks that are followed by what a run and a copy may read behind them.
QXV_ALWAYS_INLINE void DecodeBlocks(Decoding& d) noexcept {
  std::uint64_t runs[kMostBlocksInFile];
  while (d.BytesLeft() >= kPcxBlock + 1 + kLeast && d.ValuesLeft() > 0) {
    const unsigned char* block = d.at;
    const std::size_t blocks = std::min((d.BytesLeft() - 1 - kLeast) / kPcxBlock, kMostBlocksInFile);
    MarkPcxRuns(block, blocks, runs);
    for (std::size_t i = 0; i < blocks; ++i, block += kPcxBlock) {
      const bool beginsInside = d.at != block;  // its first byte is the value of a run
      if (!DecodeBlock(d, block, beginsInside ? runs[i] & ~std::uint64_t{1} : runs[i])) {
        return;
      }
    }
  }
}

void DecodeOneByOne(Decoding& d) noexcept {
  while (d.out != d.full && d.at != d.end) {
    if (*d.at < kPcxRun) {
      *d.out++ = *d.at++;
      continue;
    }
    const std::size_t length = *d.at - kPcxRun;
    if (d.BytesLeft() < 2 || length > d.ValuesLeft()) {
      break;
    }
    std::memset(d.out, d.at[1], length);
    d.at += 2;
    d.out += length;
  }
}

struct Encoding {
  const unsigned char* at;
  const unsigned char* end;
  unsigned char* out;
  unsigned char* roomEnd;

  std::size_t ValuesLeft() const noexcept { return static_cast<std::size_t>(end - at); }
  std::size_t Room() const noexcept { return static_cast<std::size_t>(roomEnd - out); }

  void Copy(std::size_t count) noexcept {
    CopyValues(out, at, count);
    at += count;
    out += count;
  }
  void Run(std::size_t length) noexcept {
    out[0] = static_cast<unsigned char>(kPcxRun + length);
    out[1] = *at;
    out += 2;
    at += length;
  }
};

// Marks of a block of values: those of 0xC0 and more, and those that are equal to the next value.
struct Marks {
  std::uint64_t high;
  std::uint64_t equal;
};

// One block, or what there is of it, from the place reached in it on.
// @param equalInNext  of the next block; null when it is not known
// @return false before a run whose length that would tell
QXV_ALWAYS_INLINE bool EncodeBlock(Encoding& e, const unsigned char* block, Marks marks,
                                   const std::uint64_t* equalInNext) noexcept {
  constexpr std::uint64_t kLast = std::uint64_t{1} << (kPcxBlock - 1);
  std::uint64_t runs = (marks.high | marks.equal) & ~std::uint64_t{0} << (e.at - block);
  while (runs != 0) {
    const std::uint64_t first = runs & (0 - runs);
    const std::uint64_t ofRun = (marks.equal + first) ^ marks.equal;  // all its values: the sum carries to the last one
    const std::size_t run = FirstBit(first);
    e.Copy(static_cast<std::size_t>(block + run - e.at));
    if ((ofRun & kLast) == 0) {
      e.Run(FirstBit(ofRun + first) - run);
      runs &= ~ofRun;
      continue;
    }
    std::size_t length = kPcxBlock - run;
    if ((marks.equal & kLast) != 0) {
      if (equalInNext == nullptr) {
        return false;
      }
      length += FirstBit(~*equalInNext) + 1;
    }
    e.Run(std::min(length, kLongestPcxRun));
    if (e.at >= block + kPcxBlock) {
      return true;
    }
    runs &= kLast;  // 63 of 64 equal values are done
  }
  e.Copy(std::min(static_cast<std::size_t>(block + kPcxBlock - e.at), e.ValuesLeft()));
  return true;
}

constexpr std::uint64_t LowBits(std::size_t count) noexcept {  // below 64
  return (std::uint64_t{1} << count) - 1;
}

// As many blocks as are marked at once and have room; a run that may be longer than is known begins the next ones.
QXV_ALWAYS_INLINE void EncodeBlocks(Encoding& e) noexcept {
  std::uint64_t high[kMostBlocks];
  std::uint64_t equal[kMostBlocks];
  const std::size_t blocks =
      std::min({(e.ValuesLeft() + kPcxBlock - 1) / kPcxBlock, (e.Room() - kLeast) / (2 * kPcxBlock), kMostBlocks});
  MarkPcxRuns(e.at, blocks, high);
  MarkPcxEqual(e.at, blocks, equal);
  if (blocks * kPcxBlock >= e.ValuesLeft()) {  // what stands behind the row does not count
    const std::size_t last = (e.ValuesLeft() - 1) % kPcxBlock;
    high[blocks - 1] &= LowBits(last) << 1 | 1;
    equal[blocks - 1] &= LowBits(last);
  }
  const unsigned char* block = e.at;
  for (std::size_t i = 0; i < blocks; ++i, block += kPcxBlock) {
    if (!EncodeBlock(e, block, {high[i], equal[i]}, i + 1 < blocks ? &equal[i + 1] : nullptr)) {
      return;
    }
  }
}

}  // namespace

std::size_t DecodePcxRuns(std::span<const unsigned char> bytes, std::span<unsigned char> row, std::size_t& done) noexcept {
  Decoding d{bytes.data(), bytes.data() + bytes.size(), row.data() + done, row.data() + row.size()};
  DecodeBlocks(d);
  DecodeOneByOne(d);
  done = static_cast<std::size_t>(d.out - row.data());
  return static_cast<std::size_t>(d.at - bytes.data());
}

std::size_t EncodePcxRuns(std::span<const unsigned char> row, std::size_t& done, std::span<unsigned char> room) noexcept {
  Encoding e{row.data() + done, row.data() + row.size(), room.data(), room.data() + room.size()};
  while (e.at != e.end && e.Room() >= kLeastPcxRoom) {
    EncodeBlocks(e);
  }
  done = static_cast<std::size_t>(e.at - row.data());
  return static_cast<std::size_t>(e.out - room.data());
}

}  // namespace qxv
