// line_scan.cpp - ends of lines in texts of bytes and of 16-bit units.
//
// 64 units give a mask of one bit each. Finding: the first set bit is the place. Counting: unless two carriage returns stand side
// by side, which a text hardly has, each bit is a line's end.

#include "streams/line_scan.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

#include <bit>
#include <cstdint>

namespace qxv {
namespace {

// ---- what is compared: whole bytes, whole units, or the low bytes of units ----

enum class Compared { Bytes, Units, LowBytes };

template <Compared what>
struct UnitType {
  using Type = QXChar;
};
template <>
struct UnitType<Compared::Bytes> {
  using Type = unsigned char;
};
template <Compared what>
using UnitOf = typename UnitType<what>::Type;

template <Compared what>
unsigned ValueOf(UnitOf<what> unit) noexcept {
  const auto value = static_cast<unsigned>(static_cast<std::uint16_t>(unit));
  return what == Compared::LowBytes ? value & 0xFF : value;
}

template <Compared what>
LineStop FindFrom(const UnitOf<what>* units, std::size_t at, std::size_t count, UnitOf<what> a, UnitOf<what> b,
                  std::uint64_t high) noexcept {
  for (; at < count; ++at) {
    const unsigned value = ValueOf<what>(units[at]);
    if (value == ValueOf<what>(a) || value == ValueOf<what>(b)) {
      break;
    }
    high |= value & 0x80;
  }
  return {at, high == 0};
}

// ---- a mask of one bit for each of 64 units that is a or b, and whether a byte among them is not ASCII ----

struct Mask64 {
  std::uint64_t found;
  std::uint64_t high;  // not zero if so; bytes only
};

constexpr std::size_t kMaskUnits = 64;

template <Compared what>
QXV_ALWAYS_INLINE __m128i Broadcast128(UnitOf<what> value) {
  return what == Compared::Bytes ? _mm_set1_epi8(static_cast<char>(value)) : _mm_set1_epi16(static_cast<short>(value));
}

// Of 8 units, as 16-bit lanes.
template <Compared what>
QXV_ALWAYS_INLINE __m128i Found128(const UnitOf<what>* units, __m128i a, __m128i b) {
  __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  if constexpr (what == Compared::LowBytes) {
    v = _mm_and_si128(v, _mm_set1_epi16(0xFF));
  }
  return _mm_or_si128(_mm_cmpeq_epi16(v, a), _mm_cmpeq_epi16(v, b));
}

template <Compared what>
QXV_ALWAYS_INLINE Mask64 MaskBaseline(const UnitOf<what>* units, __m128i a, __m128i b) {
  Mask64 mask{0, 0};
  if constexpr (what == Compared::Bytes) {
    __m128i all = _mm_setzero_si128();
    for (unsigned i = 0; i < 64; i += 16) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + i));
      const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(v, a), _mm_cmpeq_epi8(v, b));
      mask.found |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << i;
      all = _mm_or_si128(all, v);
    }
    mask.high = static_cast<unsigned>(_mm_movemask_epi8(all));
  } else {
    for (unsigned i = 0; i < 64; i += 16) {
      const __m128i found = _mm_packs_epi16(Found128<what>(units + i, a, b), Found128<what>(units + i + 8, a, b));
      mask.found |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << i;
    }
  }
  return mask;
}

template <Compared what>
QXV_INLINE_AVX2 __m256i Broadcast256(UnitOf<what> value) {
  return what == Compared::Bytes ? _mm256_set1_epi8(static_cast<char>(value)) : _mm256_set1_epi16(static_cast<short>(value));
}

template <Compared what>
QXV_INLINE_AVX2 __m256i Found256(const UnitOf<what>* units, __m256i a, __m256i b) {
  __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units));
  if constexpr (what == Compared::LowBytes) {
    v = _mm256_and_si256(v, _mm256_set1_epi16(0xFF));
  }
  return _mm256_or_si256(_mm256_cmpeq_epi16(v, a), _mm256_cmpeq_epi16(v, b));
}

template <Compared what>
QXV_INLINE_AVX2 std::uint64_t Mask32Avx2(const UnitOf<what>* units, __m256i a, __m256i b) {
  const __m256i packed = _mm256_packs_epi16(Found256<what>(units, a, b), Found256<what>(units + 16, a, b));
  // The quarters of the two vectors back in their order.
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_permute4x64_epi64(packed, 0xD8)));
}

template <Compared what>
QXV_INLINE_AVX2 Mask64 MaskAvx2(const UnitOf<what>* units, __m256i a, __m256i b) {
  if constexpr (what == Compared::Bytes) {
    const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units));
    const __m256i w = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units + 32));
    const __m256i first = _mm256_or_si256(_mm256_cmpeq_epi8(v, a), _mm256_cmpeq_epi8(v, b));
    const __m256i second = _mm256_or_si256(_mm256_cmpeq_epi8(w, a), _mm256_cmpeq_epi8(w, b));
    const std::uint64_t low = static_cast<unsigned>(_mm256_movemask_epi8(first));
    const std::uint64_t high = static_cast<unsigned>(_mm256_movemask_epi8(second));
    return {low | high << 32, static_cast<unsigned>(_mm256_movemask_epi8(_mm256_or_si256(v, w)))};
  } else {
    return {Mask32Avx2<what>(units, a, b) | Mask32Avx2<what>(units + 32, a, b) << 32, 0};
  }
}

template <Compared what>
QXV_INLINE_AVX512 __m512i Broadcast512(UnitOf<what> value) {
  return what == Compared::Bytes ? _mm512_set1_epi8(static_cast<char>(value)) : _mm512_set1_epi16(static_cast<short>(value));
}

template <Compared what>
QXV_INLINE_AVX512 std::uint64_t Mask32Avx512(const UnitOf<what>* units, __m512i a, __m512i b) {
  __m512i v = _mm512_loadu_si512(units);
  if constexpr (what == Compared::LowBytes) {
    v = _mm512_and_si512(v, _mm512_set1_epi16(0xFF));
  }
  return _cvtmask32_u32(_mm512_cmpeq_epi16_mask(v, a)) | _cvtmask32_u32(_mm512_cmpeq_epi16_mask(v, b));
}

template <Compared what>
QXV_INLINE_AVX512 Mask64 MaskAvx512(const UnitOf<what>* units, __m512i a, __m512i b) {
  if constexpr (what == Compared::Bytes) {
    const __m512i v = _mm512_loadu_si512(units);
    const std::uint64_t found = _cvtmask64_u64(_mm512_cmpeq_epi8_mask(v, a)) | _cvtmask64_u64(_mm512_cmpeq_epi8_mask(v, b));
    return {found, _cvtmask64_u64(_mm512_movepi8_mask(v))};
  } else {
    return {Mask32Avx512<what>(units, a, b) | Mask32Avx512<what>(units + 32, a, b) << 32, 0};
  }
}

// ---- finding: two masks a turn, so that lines of any ordinary length take one turn and no branch is guessed wrong ----

// Index of the first bit of both masks, one behind the other. One of them has a bit.
QXV_ALWAYS_INLINE std::size_t FirstOf(std::uint64_t first, std::uint64_t second) {
  const auto inSecond = static_cast<std::size_t>(std::countr_zero(second)) & (std::size_t{0} - (first == 0 ? 1 : 0));
  return static_cast<std::size_t>(std::countr_zero(first)) + inSecond;  // 64 for none: no branch
}

template <Compared what>
LineStop FindBaseline(const UnitOf<what>* units, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  const __m128i va = Broadcast128<what>(a);
  const __m128i vb = Broadcast128<what>(b);
  std::uint64_t high = 0;
  std::size_t at = 0;
  for (; count - at >= 2 * kMaskUnits; at += 2 * kMaskUnits) {
    const Mask64 first = MaskBaseline<what>(units + at, va, vb);
    high |= first.high;
    if (first.found != 0) {
      return {at + static_cast<std::size_t>(std::countr_zero(first.found)), high == 0};
    }
    const Mask64 second = MaskBaseline<what>(units + at + kMaskUnits, va, vb);
    high |= second.high;
    if (second.found != 0) {
      return {at + kMaskUnits + static_cast<std::size_t>(std::countr_zero(second.found)), high == 0};
    }
  }
  return FindFrom<what>(units, at, count, a, b, high);
}

template <Compared what>
QXV_TARGET_AVX2 LineStop FindAvx2(const UnitOf<what>* units, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  const __m256i va = Broadcast256<what>(a);
  const __m256i vb = Broadcast256<what>(b);
  std::uint64_t high = 0;
  std::size_t at = 0;
  for (; count - at >= 2 * kMaskUnits; at += 2 * kMaskUnits) {
    const Mask64 first = MaskAvx2<what>(units + at, va, vb);
    const Mask64 second = MaskAvx2<what>(units + at + kMaskUnits, va, vb);
    high |= first.high | second.high;
    if ((first.found | second.found) != 0) {
      return {at + FirstOf(first.found, second.found), high == 0};
    }
  }
  return FindFrom<what>(units, at, count, a, b, high);
}

template <Compared what>
QXV_TARGET_AVX512 LineStop FindAvx512(const UnitOf<what>* units, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  const __m512i va = Broadcast512<what>(a);
  const __m512i vb = Broadcast512<what>(b);
  std::uint64_t high = 0;
  std::size_t at = 0;
  for (; count - at >= 2 * kMaskUnits; at += 2 * kMaskUnits) {
    const Mask64 first = MaskAvx512<what>(units + at, va, vb);
    const Mask64 second = MaskAvx512<what>(units + at + kMaskUnits, va, vb);
    high |= first.high | second.high;
    if ((first.found | second.found) != 0) {
      return {at + FirstOf(first.found, second.found), high == 0};
    }
  }
  return FindFrom<what>(units, at, count, a, b, high);
}

template <Compared what>
constexpr os::KernelTable<LineStop (*)(const UnitOf<what>*, std::size_t, UnitOf<what>, UnitOf<what>) noexcept> kFind{
    {&FindBaseline<what>, &FindAvx2<what>, &FindAvx512<what>}};

// ---- counting ----

struct Tally {
  std::size_t count;
  bool skipNext;  // the last unit was a counted carriage return: the next one belongs to it
};

// Of 64 units, mask has the carriage returns. Where none directly follows another, all of them count; else one by one.
QXV_ALWAYS_INLINE void AddMask(Tally& tally, std::uint64_t mask) noexcept {
  const std::uint64_t skipped = tally.skipNext ? 1 : 0;
  if (((mask << 1 | skipped) & mask) == 0) {
    tally.count += static_cast<std::size_t>(std::popcount(mask));
    tally.skipNext = mask >> 63 != 0;
    return;
  }
  mask &= ~skipped;
  tally.skipNext = false;
  while (mask != 0) {
    const int bit = std::countr_zero(mask);
    ++tally.count;
    tally.skipNext = bit == 63;
    mask &= bit >= 62 ? 0 : ~std::uint64_t{0} << (bit + 2);
  }
}

template <class Unit>
void AddUnits(Tally& tally, const Unit* units, std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    const bool ends = !tally.skipNext && units[i] == kCarriageReturn;
    tally.count += ends ? 1 : 0;
    tally.skipNext = ends;
  }
}

// Up to an aligned place: a load across two cache lines costs two.
template <class Unit>
void AddUnaligned(Tally& tally, const Unit*& units, std::size_t& count) noexcept {
  const std::size_t ahead = (64 - reinterpret_cast<std::uintptr_t>(units) % 64) % 64 / sizeof(Unit);
  const std::size_t some = ahead < count ? ahead : count;
  AddUnits(tally, units, some);
  units += some;
  count -= some;
}

template <class Unit>
constexpr Compared kWhole = sizeof(Unit) == 1 ? Compared::Bytes : Compared::Units;

// Two masks a turn: one branch for both, and enough loads under way to keep memory busy. The processor reads ahead by itself;
// told to by prefetches it counts a quarter slower.
QXV_ALWAYS_INLINE void AddMasks(Tally& tally, std::uint64_t first, std::uint64_t second) noexcept {
  const std::uint64_t skipped = tally.skipNext ? 1 : 0;
  if ((((first << 1 | skipped) & first) | ((second << 1 | first >> 63) & second)) == 0) {
    tally.count += static_cast<std::size_t>(std::popcount(first)) + static_cast<std::size_t>(std::popcount(second));
    tally.skipNext = second >> 63 != 0;
    return;
  }
  AddMask(tally, first);
  AddMask(tally, second);
}

template <class Unit>
Tally CountBaseline(const Unit* units, std::size_t count, Tally tally) noexcept {
  const __m128i value = Broadcast128<kWhole<Unit>>(kCarriageReturn);
  AddUnaligned(tally, units, count);
  for (; count >= 2 * kMaskUnits; units += 2 * kMaskUnits, count -= 2 * kMaskUnits) {
    const std::uint64_t first = MaskBaseline<kWhole<Unit>>(units, value, value).found;
    AddMasks(tally, first, MaskBaseline<kWhole<Unit>>(units + kMaskUnits, value, value).found);
  }
  AddUnits(tally, units, count);
  return tally;
}

template <class Unit>
QXV_TARGET_AVX2 Tally CountAvx2(const Unit* units, std::size_t count, Tally tally) noexcept {
  const __m256i value = Broadcast256<kWhole<Unit>>(kCarriageReturn);
  AddUnaligned(tally, units, count);
  for (; count >= 2 * kMaskUnits; units += 2 * kMaskUnits, count -= 2 * kMaskUnits) {
    const std::uint64_t first = MaskAvx2<kWhole<Unit>>(units, value, value).found;
    AddMasks(tally, first, MaskAvx2<kWhole<Unit>>(units + kMaskUnits, value, value).found);
  }
  AddUnits(tally, units, count);
  return tally;
}

template <class Unit>
QXV_TARGET_AVX512 Tally CountAvx512(const Unit* units, std::size_t count, Tally tally) noexcept {
  const __m512i value = Broadcast512<kWhole<Unit>>(kCarriageReturn);
  AddUnaligned(tally, units, count);
  for (; count >= 2 * kMaskUnits; units += 2 * kMaskUnits, count -= 2 * kMaskUnits) {
    const std::uint64_t first = MaskAvx512<kWhole<Unit>>(units, value, value).found;
    AddMasks(tally, first, MaskAvx512<kWhole<Unit>>(units + kMaskUnits, value, value).found);
  }
  AddUnits(tally, units, count);
  return tally;
}

template <class Unit>
constexpr os::KernelTable<Tally (*)(const Unit*, std::size_t, Tally) noexcept> kCount{
    {&CountBaseline<Unit>, &CountAvx2<Unit>, &CountAvx512<Unit>}};

template <class Unit>
std::size_t CountReference(const Unit* units, std::size_t count) noexcept {
  std::size_t ends = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (units[i] == kCarriageReturn) {
      ++ends;
      ++i;
    }
  }
  return ends;
}

}  // namespace

LineStop FindLineStop(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return kFind<Compared::Bytes>.Active()(bytes, count, a, b);
}

std::size_t FindByte(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return FindLineStop(bytes, count, a, b).at;
}

std::size_t FindUnit(const QXChar* units, std::size_t count, QXChar a, QXChar b) noexcept {
  return kFind<Compared::Units>.Active()(units, count, a, b).at;
}

std::size_t FindLowByte(const QXChar* units, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return kFind<Compared::LowBytes>.Active()(units, count, a, b).at;
}

std::size_t FindByteReference(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return FindFrom<Compared::Bytes>(bytes, 0, count, a, b, 0).at;
}

std::size_t FindUnitReference(const QXChar* units, std::size_t count, QXChar a, QXChar b) noexcept {
  return FindFrom<Compared::Units>(units, 0, count, a, b, 0).at;
}

std::size_t FindLowByteReference(const QXChar* units, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return FindFrom<Compared::LowBytes>(units, 0, count, a, b, 0).at;
}

void LineEndCounter::Add(const unsigned char* bytes, std::size_t count) noexcept {
  const Tally tally = kCount<unsigned char>.Active()(bytes, count, {m_count, m_skipNext});
  m_count = tally.count;
  m_skipNext = tally.skipNext;
}

void LineEndCounter::Add(const QXChar* units, std::size_t count) noexcept {
  const Tally tally = kCount<QXChar>.Active()(units, count, {m_count, m_skipNext});
  m_count = tally.count;
  m_skipNext = tally.skipNext;
}

std::size_t CountLineEndsReference(const unsigned char* bytes, std::size_t count) noexcept {
  return CountReference(bytes, count);
}
std::size_t CountLineEndsReference(const QXChar* units, std::size_t count) noexcept { return CountReference(units, count); }

}  // namespace qxv
