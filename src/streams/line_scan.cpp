// line_scan.cpp - the ends of lines in texts of bytes and of 16-bit units.
//
// Finding: a vector of units is compared with both values; the first set bit of the mask is the place.
// Counting: 64 units give a mask of one bit each. Unless two carriage returns stand side by side, which a text hardly has, each
// bit is a line's end.

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
std::size_t FindFrom(const UnitOf<what>* units, std::size_t at, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  while (at < count && ValueOf<what>(units[at]) != ValueOf<what>(a) && ValueOf<what>(units[at]) != ValueOf<what>(b)) {
    ++at;
  }
  return at;
}

// ---- finding: a mask of one bit (bytes) or two bits (units) for each unit of a vector that is a or b ----

template <Compared what>
QXV_ALWAYS_INLINE unsigned Mask128(const UnitOf<what>* units, __m128i a, __m128i b) {
  __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
  if constexpr (what == Compared::Bytes) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(v, a), _mm_cmpeq_epi8(v, b))));
  } else {
    if constexpr (what == Compared::LowBytes) {
      v = _mm_and_si128(v, _mm_set1_epi16(0xFF));
    }
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi16(v, a), _mm_cmpeq_epi16(v, b))));
  }
}

template <Compared what>
std::size_t FindBaseline(const UnitOf<what>* units, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  constexpr std::size_t kUnits = 16 / sizeof(UnitOf<what>);
  const bool bytes = what == Compared::Bytes;
  const __m128i va = bytes ? _mm_set1_epi8(static_cast<char>(a)) : _mm_set1_epi16(static_cast<short>(a));
  const __m128i vb = bytes ? _mm_set1_epi8(static_cast<char>(b)) : _mm_set1_epi16(static_cast<short>(b));
  std::size_t at = 0;
  for (; count - at >= kUnits; at += kUnits) {
    if (const unsigned mask = Mask128<what>(units + at, va, vb); mask != 0) {
      return at + static_cast<std::size_t>(std::countr_zero(mask)) / sizeof(UnitOf<what>);
    }
  }
  return FindFrom<what>(units, at, count, a, b);
}

template <Compared what>
QXV_INLINE_AVX2 unsigned Mask256(const UnitOf<what>* units, __m256i a, __m256i b) {
  __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units));
  if constexpr (what == Compared::Bytes) {
    return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_or_si256(_mm256_cmpeq_epi8(v, a), _mm256_cmpeq_epi8(v, b))));
  } else {
    if constexpr (what == Compared::LowBytes) {
      v = _mm256_and_si256(v, _mm256_set1_epi16(0xFF));
    }
    return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_or_si256(_mm256_cmpeq_epi16(v, a), _mm256_cmpeq_epi16(v, b))));
  }
}

template <Compared what>
QXV_TARGET_AVX2 std::size_t FindAvx2(const UnitOf<what>* units, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  constexpr std::size_t kUnits = 32 / sizeof(UnitOf<what>);
  const bool bytes = what == Compared::Bytes;
  const __m256i va = bytes ? _mm256_set1_epi8(static_cast<char>(a)) : _mm256_set1_epi16(static_cast<short>(a));
  const __m256i vb = bytes ? _mm256_set1_epi8(static_cast<char>(b)) : _mm256_set1_epi16(static_cast<short>(b));
  std::size_t at = 0;
  for (; count - at >= kUnits; at += kUnits) {
    if (const unsigned mask = Mask256<what>(units + at, va, vb); mask != 0) {
      return at + static_cast<std::size_t>(std::countr_zero(mask)) / sizeof(UnitOf<what>);
    }
  }
  return FindFrom<what>(units, at, count, a, b);
}

// One bit a unit.
template <Compared what>
QXV_INLINE_AVX512 std::uint64_t Mask512(const UnitOf<what>* units, __m512i a, __m512i b) {
  __m512i v = _mm512_loadu_si512(units);
  if constexpr (what == Compared::Bytes) {
    return _cvtmask64_u64(_mm512_cmpeq_epi8_mask(v, a)) | _cvtmask64_u64(_mm512_cmpeq_epi8_mask(v, b));
  } else {
    if constexpr (what == Compared::LowBytes) {
      v = _mm512_and_si512(v, _mm512_set1_epi16(0xFF));
    }
    return _cvtmask32_u32(_mm512_cmpeq_epi16_mask(v, a)) | _cvtmask32_u32(_mm512_cmpeq_epi16_mask(v, b));
  }
}

template <Compared what>
QXV_TARGET_AVX512 std::size_t FindAvx512(const UnitOf<what>* units, std::size_t count, UnitOf<what> a, UnitOf<what> b) noexcept {
  constexpr std::size_t kUnits = 64 / sizeof(UnitOf<what>);
  const bool bytes = what == Compared::Bytes;
  const __m512i va = bytes ? _mm512_set1_epi8(static_cast<char>(a)) : _mm512_set1_epi16(static_cast<short>(a));
  const __m512i vb = bytes ? _mm512_set1_epi8(static_cast<char>(b)) : _mm512_set1_epi16(static_cast<short>(b));
  std::size_t at = 0;
  for (; count - at >= kUnits; at += kUnits) {
    if (const std::uint64_t mask = Mask512<what>(units + at, va, vb); mask != 0) {
      return at + static_cast<std::size_t>(std::countr_zero(mask));
    }
  }
  return FindFrom<what>(units, at, count, a, b);
}

template <Compared what>
constexpr os::KernelTable<std::size_t (*)(const UnitOf<what>*, std::size_t, UnitOf<what>, UnitOf<what>) noexcept> kFind{
    {&FindBaseline<what>, &FindAvx2<what>, &FindAvx512<what>}};

// ---- counting: a mask of one bit for each of 64 units that is a carriage return ----

constexpr unsigned char kCarriageReturn = 13;
constexpr std::size_t kCountUnits = 64;

struct Tally {
  std::size_t count;
  bool skipNext;
};

void AddMask(Tally& tally, std::uint64_t mask) noexcept {
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

QXV_ALWAYS_INLINE std::uint64_t Ends16Bytes(const unsigned char* bytes) {
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_set1_epi8(kCarriageReturn))));
}
QXV_ALWAYS_INLINE std::uint64_t Ends128(const unsigned char* bytes) {
  return Ends16Bytes(bytes) | Ends16Bytes(bytes + 16) << 16 | Ends16Bytes(bytes + 32) << 32 | Ends16Bytes(bytes + 48) << 48;
}
QXV_ALWAYS_INLINE std::uint64_t Ends16Units(const QXChar* units) {
  const __m128i value = _mm_set1_epi16(kCarriageReturn);
  const __m128i a = _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units)), value);
  const __m128i b = _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units + 8)), value);
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(a, b)));
}
QXV_ALWAYS_INLINE std::uint64_t Ends128(const QXChar* units) {
  return Ends16Units(units) | Ends16Units(units + 16) << 16 | Ends16Units(units + 32) << 32 | Ends16Units(units + 48) << 48;
}

template <class Unit>
Tally CountBaseline(const Unit* units, std::size_t count, Tally tally) noexcept {
  for (; count >= kCountUnits; units += kCountUnits, count -= kCountUnits) {
    AddMask(tally, Ends128(units));
  }
  AddUnits(tally, units, count);
  return tally;
}

QXV_INLINE_AVX2 std::uint64_t Ends32Bytes(const unsigned char* bytes) {
  const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(v, _mm256_set1_epi8(kCarriageReturn))));
}
QXV_INLINE_AVX2 std::uint64_t Ends256(const unsigned char* bytes) { return Ends32Bytes(bytes) | Ends32Bytes(bytes + 32) << 32; }
QXV_INLINE_AVX2 std::uint64_t Ends32Units(const QXChar* units) {
  const __m256i value = _mm256_set1_epi16(kCarriageReturn);
  const __m256i a = _mm256_cmpeq_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(units)), value);
  const __m256i b = _mm256_cmpeq_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(units + 16)), value);
  const __m256i packed = _mm256_permute4x64_epi64(_mm256_packs_epi16(a, b), 0xD8);  // halves of a and b back in their order
  return static_cast<unsigned>(_mm256_movemask_epi8(packed));
}
QXV_INLINE_AVX2 std::uint64_t Ends256(const QXChar* units) { return Ends32Units(units) | Ends32Units(units + 32) << 32; }

template <class Unit>
QXV_TARGET_AVX2 Tally CountAvx2(const Unit* units, std::size_t count, Tally tally) noexcept {
  for (; count >= kCountUnits; units += kCountUnits, count -= kCountUnits) {
    AddMask(tally, Ends256(units));
  }
  AddUnits(tally, units, count);
  return tally;
}

QXV_INLINE_AVX512 std::uint64_t Ends512(const unsigned char* bytes) {
  return _cvtmask64_u64(_mm512_cmpeq_epi8_mask(_mm512_loadu_si512(bytes), _mm512_set1_epi8(kCarriageReturn)));
}
QXV_INLINE_AVX512 std::uint64_t Ends512(const QXChar* units) {
  const __m512i value = _mm512_set1_epi16(kCarriageReturn);
  const std::uint64_t low = _cvtmask32_u32(_mm512_cmpeq_epi16_mask(_mm512_loadu_si512(units), value));
  const std::uint64_t high = _cvtmask32_u32(_mm512_cmpeq_epi16_mask(_mm512_loadu_si512(units + 32), value));
  return low | high << 32;
}

template <class Unit>
QXV_TARGET_AVX512 Tally CountAvx512(const Unit* units, std::size_t count, Tally tally) noexcept {
  for (; count >= kCountUnits; units += kCountUnits, count -= kCountUnits) {
    AddMask(tally, Ends512(units));
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

std::size_t FindByte(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return kFind<Compared::Bytes>.Active()(bytes, count, a, b);
}

std::size_t FindUnit(const QXChar* units, std::size_t count, QXChar a, QXChar b) noexcept {
  return kFind<Compared::Units>.Active()(units, count, a, b);
}

std::size_t FindLowByte(const QXChar* units, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return kFind<Compared::LowBytes>.Active()(units, count, a, b);
}

std::size_t FindByteReference(const unsigned char* bytes, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return FindFrom<Compared::Bytes>(bytes, 0, count, a, b);
}

std::size_t FindUnitReference(const QXChar* units, std::size_t count, QXChar a, QXChar b) noexcept {
  return FindFrom<Compared::Units>(units, 0, count, a, b);
}

std::size_t FindLowByteReference(const QXChar* units, std::size_t count, unsigned char a, unsigned char b) noexcept {
  return FindFrom<Compared::LowBytes>(units, 0, count, a, b);
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
