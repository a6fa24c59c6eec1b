// pcx_runs_encode.cpp - the runs of a PCX row from its values. Which values repeat stands in the bits of a word for each 64 of
// them, so that what comes next is known without a guess. Where most are runs of their own and the processor can gather bytes by
// such bits, a whole block becomes runs at once; else stretches of values that stand for themselves are moved as if they were
// long.

#include "image/pcx_marks.h"
#include "image/pcx_moves.h"
#include "image/pcx_runs.h"
#include "os/cpu.h"
#include "os/intrinsics.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace qxv {
namespace {

constexpr std::size_t kMostBlocks = 32;                           // that are marked at once
static_assert(2 * 2 * kPcxBlock + kLeastMoved <= kLeastPcxRoom);  // two blocks, or a long run would never begin one
static_assert(kPcxBlock + kLeastMoved <= kPcxSlack);

std::size_t FirstBit(std::uint64_t bits) noexcept { return static_cast<std::size_t>(std::countr_zero(bits)); }

std::size_t LastBit(std::uint64_t bits) noexcept { return 63 - static_cast<std::size_t>(std::countl_zero(bits)); }

constexpr std::uint64_t LowBits(std::size_t count) noexcept {  // below 64
  return (std::uint64_t{1} << count) - 1;
}

// --- Many runs of a block at once ---

constexpr std::uint64_t kEven = 0x5555'5555'5555'5555;

struct ByteOrder {
  alignas(64) unsigned char bytes[kPcxBlock];
};

constexpr ByteOrder InOrder(unsigned first) noexcept {
  ByteOrder order{};
  for (std::size_t i = 0; i < kPcxBlock; ++i) {
    order.bytes[i] = static_cast<unsigned char>(first + i);
  }
  return order;
}

// A byte of one register and a byte of another by turns, from a place on.
constexpr ByteOrder ByTurns(unsigned first) noexcept {
  ByteOrder order{};
  for (std::size_t i = 0; i < kPcxBlock; ++i) {
    order.bytes[i] = static_cast<unsigned char>(first + i / 2 + i % 2 * kPcxBlock);
  }
  return order;
}

constexpr ByteOrder kPlaces = InOrder(0);
constexpr ByteOrder kNextPlaces = InOrder(1);
constexpr ByteOrder kFirstHalf = ByTurns(0);
constexpr ByteOrder kSecondHalf = ByTurns(kPcxBlock / 2);

QXV_INLINE_AVX512 __m512i Load(const unsigned char* bytes) noexcept { return _mm512_loadu_si512(bytes); }

// All runs of a block but the last one, whose length only the next block may tell. Writes up to 2 x kPcxBlock bytes.
// @param begins  where runs begin: at least two bits
// @return behind the last byte that counts
using EncodeRuns = unsigned char* (*)(const unsigned char* block, std::uint64_t begins, unsigned char* out) noexcept;

QXV_TARGET_AVX512 unsigned char* EncodeRunsAvx512(const unsigned char* block, std::uint64_t begins, unsigned char* out) noexcept {
  const __m512i least = _mm512_set1_epi8(static_cast<char>(kPcxRun));
  const __m512i places = _mm512_maskz_compress_epi8(begins, Load(kPlaces.bytes));
  const __m512i lengths = _mm512_sub_epi8(_mm512_permutexvar_epi8(Load(kNextPlaces.bytes), places), places);
  const __m512i values = _mm512_maskz_compress_epi8(begins, Load(block));
  const std::uint64_t prefixed = _mm512_cmpge_epu8_mask(values, least) | _mm512_cmpgt_epu8_mask(lengths, _mm512_set1_epi8(1));
  const auto runs = static_cast<unsigned>(std::popcount(begins)) - 1;
  for (unsigned done = 0; done < runs; done += kPcxBlock / 2) {
    const __m512i order = Load(done == 0 ? kFirstHalf.bytes : kSecondHalf.bytes);
    const std::uint64_t used = _bzhi_u64(_pdep_u64(prefixed >> done, kEven) | ~kEven, 2 * (runs - done));
    const __m512i pairs = _mm512_permutex2var_epi8(_mm512_or_si512(lengths, least), order, values);
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(used, pairs));
    out += std::popcount(used);
  }
  return out;
}

constexpr os::KernelTable<EncodeRuns> kEncodeRuns{{nullptr, nullptr, &EncodeRunsAvx512}};

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

// --- Blocks ---

// Marks of a block of values: those of 0xC0 and more, and those that are equal to the next value.
struct Marks {
  std::uint64_t high;
  std::uint64_t equal;
};

// Three or more are encoded all at once.
bool AreMany(std::uint64_t runs) noexcept {
  runs &= runs - 1;
  return (runs & (runs - 1)) != 0;
}

// One block, or what there is of it, from the place reached in it on.
// @param equalInNext  of the next block; null when it is not known
// @return false before a run whose length that would tell
QXV_ALWAYS_INLINE bool EncodeBlock(Encoding& e, const unsigned char* block, Marks marks, const std::uint64_t* equalInNext,
                                   EncodeRuns encodeRuns) noexcept {
  constexpr std::uint64_t kLast = std::uint64_t{1} << (kPcxBlock - 1);
  if (encodeRuns != nullptr) {
    const auto done = static_cast<std::size_t>(e.at - block);
    const std::size_t values = std::min(static_cast<std::size_t>(e.end - block), kPcxBlock);
    const std::uint64_t first = std::uint64_t{1} << done;
    const std::uint64_t begins = (first | (~(marks.equal << 1) & (0 - first))) & (~std::uint64_t{0} >> (kPcxBlock - values));
    if (AreMany(begins & (marks.high | marks.equal))) {
      e.out = encodeRuns(block, begins, e.out);
      e.at = block + LastBit(begins);
    }
  }
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

// As many blocks as are marked at once and have room; a run that may be longer than is known begins the next ones.
// Inlined so that the places stay in registers: every byte written might else have changed them.
QXV_ALWAYS_INLINE void EncodeBlocks(Encoding& e) noexcept {
  std::uint64_t high[kMostBlocks];
  std::uint64_t equal[kMostBlocks];
  const std::size_t blocks =
      std::min({(e.ValuesLeft() + kPcxBlock - 1) / kPcxBlock, (e.Room() - kLeastMoved) / (2 * kPcxBlock), kMostBlocks});
  MarkPcxRuns(e.at, blocks, high);
  MarkPcxEqual(e.at, blocks, equal);
  if (blocks * kPcxBlock >= e.ValuesLeft()) {  // what stands behind the row does not count
    const std::size_t last = (e.ValuesLeft() - 1) % kPcxBlock;
    high[blocks - 1] &= LowBits(last) << 1 | 1;
    equal[blocks - 1] &= LowBits(last);
  }
  const EncodeRuns encodeRuns = kEncodeRuns.Active();
  const unsigned char* block = e.at;
  for (std::size_t i = 0; i < blocks; ++i, block += kPcxBlock) {
    if (!EncodeBlock(e, block, {high[i], equal[i]}, i + 1 < blocks ? &equal[i + 1] : nullptr, encodeRuns)) {
      return;
    }
  }
}

}  // namespace

std::size_t EncodePcxRuns(std::span<const unsigned char> row, std::size_t& done, std::span<unsigned char> room) noexcept {
  Encoding e{row.data() + done, row.data() + row.size(), room.data(), room.data() + room.size()};
  while (e.at != e.end && e.Room() >= kLeastPcxRoom) {
    EncodeBlocks(e);
  }
  done = static_cast<std::size_t>(e.at - row.data());
  return static_cast<std::size_t>(e.out - room.data());
}

}  // namespace qxv
