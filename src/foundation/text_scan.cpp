// text_scan.cpp - length of and search in texts of 16-bit units.
//
// Length: aligned vectors are compared with zero; a vector, or an aligned group of four, never reaches into a page that holds
// none of the text.
// Search: for a vector of places the needle's first, middle and last unit are compared; only where all three agree the units
// between are. (First and last alone leave one place in a hundred of ordinary prose, and each costs a mispredicted branch.) A
// text in which many such places fail late would take length * needleLength steps: once the failures have cost more than a
// quarter of a step a unit, two-way search, linear in every case, takes the rest.

#include "foundation/text_scan.h"

#include "foundation/two_way_search.h"
#include "os/cpu.h"
#include "os/intrinsics.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#define QXV_UNDER_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QXV_UNDER_ADDRESS_SANITIZER 1
#endif
#endif

namespace qxv {
namespace {

// ---- length ----

// The aligned line of Bytes bytes that holds the text's start, and where in it the text starts.
template <std::size_t Bytes>
const char* LineOf(const QXChar* text) {
  return reinterpret_cast<const char*>(text) - reinterpret_cast<std::uintptr_t>(text) % Bytes;
}
template <std::size_t Bytes>
unsigned OffsetInLine(const QXChar* text) {
  return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(text) % Bytes);
}
template <std::size_t Bytes>
bool StartsGroup(const char* line) {  // of four lines
  return reinterpret_cast<std::uintptr_t>(line) % (4 * Bytes) == 0;
}

// `mask` has `bitsPerUnit` bits set for each zero unit, counted from `line`.
std::size_t UnitsTo(const QXChar* text, const char* line, std::uint64_t mask, unsigned bitsPerUnit) {
  const auto unitsInLine = static_cast<std::size_t>(std::countr_zero(mask)) / bitsPerUnit;
  return static_cast<std::size_t>(line - reinterpret_cast<const char*>(text)) / sizeof(QXChar) + unitsInLine;
}

QXV_ALWAYS_INLINE QXV_READS_WHOLE_LINES __m128i Zeros128(const char* line) {
  return _mm_cmpeq_epi16(_mm_load_si128(reinterpret_cast<const __m128i*>(line)), _mm_setzero_si128());
}

QXV_READS_WHOLE_LINES std::size_t LengthBaseline(const QXChar* text) noexcept {
  const char* line = LineOf<16>(text);
  const unsigned offset = OffsetInLine<16>(text);
  if (const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(Zeros128(line))) >> offset; mask != 0) {
    return static_cast<std::size_t>(std::countr_zero(mask)) / 2;
  }
  for (line += 16; !StartsGroup<16>(line); line += 16) {
    if (const auto mask = static_cast<unsigned>(_mm_movemask_epi8(Zeros128(line))); mask != 0) {
      return UnitsTo(text, line, mask, 2);
    }
  }
  for (;; line += 64) {
    const __m128i a = _mm_packs_epi16(Zeros128(line), Zeros128(line + 16));  // a byte a unit
    const __m128i b = _mm_packs_epi16(Zeros128(line + 32), Zeros128(line + 48));
    if (_mm_movemask_epi8(_mm_or_si128(a, b)) != 0) {
      const auto low = static_cast<unsigned>(_mm_movemask_epi8(a));
      const auto high = static_cast<unsigned>(_mm_movemask_epi8(b));
      return UnitsTo(text, line, low | std::uint64_t{high} << 16, 1);
    }
  }
}

QXV_INLINE_AVX2 QXV_READS_WHOLE_LINES __m256i Line256(const char* line) {
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(line));
}
QXV_INLINE_AVX2 unsigned ZeroMask256(__m256i units) {
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi16(units, _mm256_setzero_si256())));
}

QXV_TARGET_AVX2 QXV_READS_WHOLE_LINES std::size_t LengthAvx2(const QXChar* text) noexcept {
  const char* line = LineOf<32>(text);
  const unsigned offset = OffsetInLine<32>(text);
  if (const unsigned mask = ZeroMask256(Line256(line)) >> offset; mask != 0) {
    return static_cast<std::size_t>(std::countr_zero(mask)) / 2;
  }
  for (line += 32; !StartsGroup<32>(line); line += 32) {
    if (const unsigned mask = ZeroMask256(Line256(line)); mask != 0) {
      return UnitsTo(text, line, mask, 2);
    }
  }
  for (;; line += 128) {
    const __m256i a = Line256(line), b = Line256(line + 32), c = Line256(line + 64), d = Line256(line + 96);
    const __m256i ab = _mm256_min_epu16(a, b), cd = _mm256_min_epu16(c, d);
    if (ZeroMask256(_mm256_min_epu16(ab, cd)) != 0) {
      if (ZeroMask256(ab) != 0) {
        return UnitsTo(text, line, ZeroMask256(a) | std::uint64_t{ZeroMask256(b)} << 32, 2);
      }
      return UnitsTo(text, line + 64, ZeroMask256(c) | std::uint64_t{ZeroMask256(d)} << 32, 2);
    }
  }
}

QXV_INLINE_AVX512 QXV_READS_WHOLE_LINES __m512i Line512(const char* line) { return _mm512_load_si512(line); }
QXV_INLINE_AVX512 std::uint64_t ZeroMask512(__m512i units) { return _cvtmask32_u32(_mm512_testn_epi16_mask(units, units)); }

QXV_TARGET_AVX512 QXV_READS_WHOLE_LINES std::size_t LengthAvx512(const QXChar* text) noexcept {
  const char* line = LineOf<64>(text);
  const unsigned offset = OffsetInLine<64>(text) / 2;
  if (const std::uint64_t mask = ZeroMask512(Line512(line)) >> offset; mask != 0) {
    return static_cast<std::size_t>(std::countr_zero(mask));
  }
  for (line += 64; !StartsGroup<64>(line); line += 64) {
    if (const std::uint64_t mask = ZeroMask512(Line512(line)); mask != 0) {
      return UnitsTo(text, line, mask, 1);
    }
  }
  for (;; line += 256) {
    const __m512i a = Line512(line), b = Line512(line + 64), c = Line512(line + 128), d = Line512(line + 192);
    const __m512i ab = _mm512_min_epu16(a, b), cd = _mm512_min_epu16(c, d);
    if (ZeroMask512(_mm512_min_epu16(ab, cd)) != 0) {
      if (ZeroMask512(ab) != 0) {
        return UnitsTo(text, line, ZeroMask512(a) | ZeroMask512(b) << 32, 1);
      }
      return UnitsTo(text, line + 128, ZeroMask512(c) | ZeroMask512(d) << 32, 1);
    }
  }
}

constexpr os::KernelTable<std::size_t (*)(const QXChar*) noexcept> kLength{{&LengthBaseline, &LengthAvx2, &LengthAvx512}};

// ---- search ----

constexpr std::size_t kFreeSteps = 256;  // of failed comparisons, 8 units or less each, before the share of a quarter counts

struct Search {
  const QXChar* text;
  std::size_t length;
  const QXChar* needle;
  std::size_t needleLength;
  std::size_t places;  // where the needle may begin: length - needleLength + 1, at least 1
  std::size_t failedSteps = 0;
  const QXChar* result = nullptr;
};

struct Probes {  // what is compared at every place; a copy of its own, which calls cannot change, stays in registers
  std::size_t middleAt, lastAt;
  QXChar first, middle, last;

  explicit Probes(const Search& search)
      : middleAt(search.needleLength / 2),
        lastAt(search.needleLength - 1),
        first(search.needle[0]),
        middle(search.needle[middleAt]),
        last(search.needle[lastAt]) {}
};

// Whether all units equal; the steps taken are added to `steps`.
bool Equal(const QXChar* a, const QXChar* b, std::size_t count, std::size_t& steps) {
  std::size_t i = 0;
  for (; count - i >= 8; i += 8) {
    ++steps;
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i));
    const __m128i y = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(x, y)) != 0xFFFF) {
      return false;
    }
  }
  ++steps;
  return std::equal(a + i, a + count, b + i);
}

// Looks at the places whose bits are set, `bitsPerUnit` each, counted from `at`: the probes agree there.
// Whether the search is decided: search.result holds the answer then.
bool Decide(Search& search, std::size_t at, std::uint64_t mask, unsigned bitsPerUnit) {
  const std::uint64_t unitBits = (std::uint64_t{1} << bitsPerUnit) - 1;
  while (mask != 0) {
    const auto bit = static_cast<unsigned>(std::countr_zero(mask));
    const std::size_t place = at + bit / bitsPerUnit;
    const std::size_t between = search.needleLength > 2 ? search.needleLength - 2 : 0;
    std::size_t steps = 0;
    if (between == 0 || Equal(search.text + place + 1, search.needle + 1, between, steps)) {
      search.result = search.text + place;
      return true;
    }
    search.failedSteps += steps;
    if (search.failedSteps > kFreeSteps + place / 4) {
      search.result = TwoWayFind(search.text + place + 1, search.length - (place + 1), search.needle, search.needleLength);
      return true;
    }
    mask &= ~(unitBits << bit);
  }
  return false;
}

// Every form: full vectors of places, then the last full vector once more for the places that are left of it.

QXV_ALWAYS_INLINE __m128i Equal128(const QXChar* units, QXChar unit) {
  return _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units)), _mm_set1_epi16(static_cast<short>(unit)));
}

QXV_ALWAYS_INLINE unsigned Candidates128(const Search& search, const Probes& probes, std::size_t at) {
  const QXChar* p = search.text + at;
  const __m128i ends = _mm_and_si128(Equal128(p, probes.first), Equal128(p + probes.lastAt, probes.last));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(ends, Equal128(p + probes.middleAt, probes.middle))));
}

const QXChar* FindBaseline(Search& search) noexcept {
  if (search.places < 8) {
    return ScanFindReference(search.text, search.length, search.needle, search.needleLength);
  }
  const Probes probes(search);
  std::size_t at = 0;
  for (; at + 8 <= search.places; at += 8) {
    const unsigned mask = Candidates128(search, probes, at);
    if (mask != 0 && Decide(search, at, mask, 2)) {
      return search.result;
    }
  }
  if (at < search.places) {
    const std::size_t done = at - (search.places - 8);
    const unsigned mask = Candidates128(search, probes, search.places - 8) >> 2 * done;
    if (mask != 0) {
      (void)Decide(search, at, mask, 2);
    }
  }
  return search.result;
}

QXV_INLINE_AVX2 __m256i Equal256(const QXChar* units, QXChar unit) {
  return _mm256_cmpeq_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(units)),
                            _mm256_set1_epi16(static_cast<short>(unit)));
}

QXV_INLINE_AVX2 unsigned Candidates256(const Search& search, const Probes& probes, std::size_t at) {
  const QXChar* p = search.text + at;
  const __m256i ends = _mm256_and_si256(Equal256(p, probes.first), Equal256(p + probes.lastAt, probes.last));
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_and_si256(ends, Equal256(p + probes.middleAt, probes.middle))));
}

QXV_TARGET_AVX2 const QXChar* FindAvx2(Search& search) noexcept {
  if (search.places < 16) {
    return FindBaseline(search);
  }
  const Probes probes(search);
  std::size_t at = 0;
  for (; at + 16 <= search.places; at += 16) {
    const unsigned mask = Candidates256(search, probes, at);
    if (mask != 0 && Decide(search, at, mask, 2)) {
      return search.result;
    }
  }
  if (at < search.places) {
    const std::size_t done = at - (search.places - 16);
    const unsigned mask = Candidates256(search, probes, search.places - 16) >> 2 * done;
    if (mask != 0) {
      (void)Decide(search, at, mask, 2);
    }
  }
  return search.result;
}

QXV_INLINE_AVX512 __mmask32 Equal512(__mmask32 among, const QXChar* units, QXChar unit) {
  return _mm512_mask_cmpeq_epi16_mask(among, _mm512_loadu_si512(units), _mm512_set1_epi16(static_cast<short>(unit)));
}

QXV_INLINE_AVX512 std::uint64_t Candidates512(const Search& search, const Probes& probes, std::size_t at) {
  const QXChar* p = search.text + at;
  const __mmask32 ends = Equal512(Equal512(0xFFFFFFFF, p, probes.first), p + probes.lastAt, probes.last);
  return _cvtmask32_u32(Equal512(ends, p + probes.middleAt, probes.middle));
}

QXV_TARGET_AVX512 const QXChar* FindAvx512(Search& search) noexcept {
  if (search.places < 32) {
    return FindAvx2(search);
  }
  const Probes probes(search);
  std::size_t at = 0;
  for (; at + 64 <= search.places; at += 64) {
    const std::uint64_t mask = Candidates512(search, probes, at) | Candidates512(search, probes, at + 32) << 32;
    if (mask != 0 && Decide(search, at, mask, 1)) {
      return search.result;
    }
  }
  if (at + 32 <= search.places) {
    const std::uint64_t mask = Candidates512(search, probes, at);
    if (mask != 0 && Decide(search, at, mask, 1)) {
      return search.result;
    }
    at += 32;
  }
  if (at < search.places) {
    const std::size_t done = at - (search.places - 32);
    const std::uint64_t mask = Candidates512(search, probes, search.places - 32) >> done;
    if (mask != 0) {
      (void)Decide(search, at, mask, 1);
    }
  }
  return search.result;
}

constexpr os::KernelTable<const QXChar* (*)(Search&) noexcept> kFind{{&FindBaseline, &FindAvx2, &FindAvx512}};

}  // namespace

std::size_t ScanLengthReference(const QXChar* text) noexcept {
  std::size_t length = 0;
  while (text[length] != 0) {
    ++length;
  }
  return length;
}

const QXChar* ScanFindReference(const QXChar* text, std::size_t length, const QXChar* needle, std::size_t needleLength) noexcept {
  for (std::size_t at = 0; needleLength <= length && at <= length - needleLength; ++at) {
    if (std::equal(needle, needle + needleLength, text + at)) {
      return text + at;
    }
  }
  return nullptr;
}

std::size_t ScanLength(const QXChar* text) noexcept {
  const std::size_t length = kLength.Active()(text);
#if defined(QXV_UNDER_ADDRESS_SANITIZER)
  if (ScanLengthReference(text) != length) {  // watched: reports a text without its end, which whole lines would hide
    std::abort();
  }
#endif
  return length;
}

const QXChar* ScanFind(const QXChar* text, std::size_t length, const QXChar* needle, std::size_t needleLength) noexcept {
  if (needleLength == 0) {
    return text;
  }
  if (needleLength > length) {
    return nullptr;
  }
  Search search{text, length, needle, needleLength, length - needleLength + 1};
  return kFind.Active()(search);
}

}  // namespace qxv
