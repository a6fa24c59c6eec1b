// pcx_runs_decode.cpp - the values of a PCX row from its runs. Where runs begin stands in the bits of a word for each 64 bytes,
// so that what comes next is known without a guess, and short stretches of values are moved as if they were long.

#include "image/pcx_marks.h"
#include "image/pcx_moves.h"
#include "image/pcx_runs.h"
#include "os/cpu.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kMostBlocks = 8;  // that are marked at once; one may stand for a whole row
static_assert(kPcxBlock + kLeastMoved <= kPcxSlack);

std::size_t FirstBit(std::uint64_t bits) noexcept { return static_cast<std::size_t>(std::countr_zero(bits)); }

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
  std::uint64_t runs[kMostBlocks];
  while (d.BytesLeft() >= kPcxBlock + 1 + kLeastMoved && d.ValuesLeft() > 0) {
    const unsigned char* block = d.at;
    const std::size_t blocks = std::min((d.BytesLeft() - 1 - kLeastMoved) / kPcxBlock, kMostBlocks);
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

}  // namespace

std::size_t DecodePcxRuns(std::span<const unsigned char> bytes, std::span<unsigned char> row, std::size_t& done) noexcept {
  Decoding d{bytes.data(), bytes.data() + bytes.size(), row.data() + done, row.data() + row.size()};
  DecodeBlocks(d);
  DecodeOneByOne(d);
  done = static_cast<std::size_t>(d.out - row.data());
  return static_cast<std::size_t>(d.at - bytes.data());
}

}  // namespace qxv
