// byte_widening.cpp - bytes as units.
// Vectors from the start and, overlapping them, from the end, so that ordinary lines take no loop.

#include "streams/byte_widening.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace qxv {
namespace {

constexpr std::size_t kVector = 16;

QXV_ALWAYS_INLINE void Widen128(const unsigned char* bytes, QXChar* units) {
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(v, _mm_setzero_si128()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units + 8), _mm_unpackhi_epi8(v, _mm_setzero_si128()));
}

void WidenBaseline(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept {
  if (count < kVector) {
    WidenBytesReference(bytes, count, units);
    return;
  }
  for (std::size_t at = 0; at + kVector < count; at += kVector) {
    Widen128(bytes + at, units + at);
  }
  Widen128(bytes + count - kVector, units + count - kVector);
}

QXV_INLINE_AVX2 void Widen256(const unsigned char* bytes, QXChar* units) {
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(units), _mm256_cvtepu8_epi16(v));
}

template <std::size_t Vectors>
QXV_INLINE_AVX2 void WidenEnds(const unsigned char* bytes, std::size_t count, QXChar* units) {
  for (std::size_t at = 0; at < Vectors * kVector; at += kVector) {
    Widen256(bytes + at, units + at);
    Widen256(bytes + count - kVector - at, units + count - kVector - at);
  }
}

QXV_TARGET_AVX2 void WidenAvx2(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept {
  if (count < kVector) {
    WidenBytesReference(bytes, count, units);
  } else if (count <= 2 * kVector) {
    WidenEnds<1>(bytes, count, units);
  } else if (count <= 4 * kVector) {
    WidenEnds<2>(bytes, count, units);
  } else if (count <= 8 * kVector) {
    WidenEnds<4>(bytes, count, units);
  } else {
    for (std::size_t at = 0; at + kVector < count; at += kVector) {
      Widen256(bytes + at, units + at);
    }
    Widen256(bytes + count - kVector, units + count - kVector);
  }
}

constexpr os::KernelTable<void (*)(const unsigned char*, std::size_t, QXChar*) noexcept> kWiden{
    {&WidenBaseline, &WidenAvx2, &WidenAvx2}};

// ---- short lines: the first byte that is the end, or as a signed number below 1; what stands behind it is masked away ----

// From kShortLine - count on, the mask of that many bytes.
struct Masks {
  unsigned char bytes[2 * kShortLine] = {};
  constexpr Masks() noexcept {
    for (std::size_t i = 0; i < kShortLine; ++i) {
      bytes[i] = 0xFF;
    }
  }
};
alignas(64) constexpr Masks kMasks;

QXV_ALWAYS_INLINE std::size_t FirstOf(std::uint64_t first, std::uint64_t second) {
  const auto inSecond = static_cast<std::size_t>(std::countr_zero(second)) & (std::size_t{0} - (first == 0 ? 1 : 0));
  return static_cast<std::size_t>(std::countr_zero(first)) + inSecond;  // 64 for none: no branch
}

QXV_ALWAYS_INLINE std::uint64_t StopsBaseline(const unsigned char* bytes, __m128i end) {
  std::uint64_t stops = 0;
  for (unsigned i = 0; i < 64; i += kVector) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
    const __m128i found = _mm_or_si128(_mm_cmpeq_epi8(v, end), _mm_cmpgt_epi8(_mm_set1_epi8(1), v));
    stops |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << i;
  }
  return stops;
}

std::size_t WidenShortLineBaseline(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept {
  const __m128i value = _mm_set1_epi8(static_cast<char>(end));
  const std::size_t count = FirstOf(StopsBaseline(bytes, value), StopsBaseline(bytes + 64, value));
  if (count == kShortLine || bytes[count] != end) {
    return kNoShortLine;
  }
  const unsigned char* const mask = kMasks.bytes + kShortLine - count;
  const __m128i zero = _mm_setzero_si128();
  for (std::size_t at = 0; at < kShortLine; at += kVector) {
    const __m128i v = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at)),
                                    _mm_loadu_si128(reinterpret_cast<const __m128i*>(mask + at)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units + at), _mm_unpacklo_epi8(v, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units + at + 8), _mm_unpackhi_epi8(v, zero));
  }
  return count;
}

QXV_INLINE_AVX2 std::uint64_t StopsAvx2(const unsigned char* bytes, __m256i end) {
  const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  const __m256i w = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 32));
  const __m256i one = _mm256_set1_epi8(1);
  const __m256i first = _mm256_or_si256(_mm256_cmpeq_epi8(v, end), _mm256_cmpgt_epi8(one, v));
  const __m256i second = _mm256_or_si256(_mm256_cmpeq_epi8(w, end), _mm256_cmpgt_epi8(one, w));
  const std::uint64_t low = static_cast<unsigned>(_mm256_movemask_epi8(first));
  const std::uint64_t high = static_cast<unsigned>(_mm256_movemask_epi8(second));
  return low | high << 32;
}

QXV_TARGET_AVX2 std::size_t WidenShortLineAvx2(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept {
  const __m256i value = _mm256_set1_epi8(static_cast<char>(end));
  const std::size_t count = FirstOf(StopsAvx2(bytes, value), StopsAvx2(bytes + 64, value));
  if (count == kShortLine || bytes[count] != end) {
    return kNoShortLine;
  }
  const unsigned char* const mask = kMasks.bytes + kShortLine - count;
  for (std::size_t at = 0; at < kShortLine; at += kVector) {
    const __m128i v = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at)),
                                    _mm_loadu_si128(reinterpret_cast<const __m128i*>(mask + at)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(units + at), _mm256_cvtepu8_epi16(v));
  }
  return count;
}

QXV_INLINE_AVX512 std::uint64_t StopsAvx512(__m512i v, __m512i end) {
  return _cvtmask64_u64(_mm512_cmpeq_epi8_mask(v, end)) | _cvtmask64_u64(_mm512_cmple_epi8_mask(v, _mm512_setzero_si512()));
}

QXV_TARGET_AVX512 std::size_t WidenShortLineAvx512(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept {
  const __m512i value = _mm512_set1_epi8(static_cast<char>(end));
  const __m512i first = _mm512_loadu_si512(bytes);
  const __m512i second = _mm512_loadu_si512(bytes + 64);
  const std::size_t count = FirstOf(StopsAvx512(first, value), StopsAvx512(second, value));
  if (count == kShortLine || bytes[count] != end) {
    return kNoShortLine;
  }
  const unsigned char* const mask = kMasks.bytes + kShortLine - count;
  for (std::size_t at = 0; at < kShortLine; at += 32) {
    const __m256i v = _mm256_and_si256(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + at)),
                                       _mm256_loadu_si256(reinterpret_cast<const __m256i*>(mask + at)));
    _mm512_storeu_si512(units + at, _mm512_cvtepu8_epi16(v));
  }
  return count;
}

constexpr os::KernelTable<std::size_t (*)(const unsigned char*, unsigned char, QXChar*) noexcept> kWidenShortLine{
    {&WidenShortLineBaseline, &WidenShortLineAvx2, &WidenShortLineAvx512}};

}  // namespace

bool IsAscii(const unsigned char* bytes, std::size_t count) noexcept {
  if (count < kVector) {
    return IsAsciiReference(bytes, count);
  }
  __m128i all = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + count - kVector));
  for (std::size_t at = 0; at + kVector < count; at += kVector) {
    all = _mm_or_si128(all, _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at)));
  }
  return _mm_movemask_epi8(all) == 0;
}

bool IsAsciiReference(const unsigned char* bytes, std::size_t count) noexcept {
  unsigned all = 0;
  for (std::size_t i = 0; i < count; ++i) {
    all |= bytes[i];
  }
  return all < 0x80;
}

void WidenBytes(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept { kWiden.Active()(bytes, count, units); }

void WidenBytesReference(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    units[i] = static_cast<QXChar>(bytes[i]);
  }
}

std::size_t WidenShortLine(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept {
  return kWidenShortLine.Active()(bytes, end, units);
}

std::size_t WidenShortLineReference(const unsigned char* bytes, unsigned char end, QXChar* units) noexcept {
  std::size_t count = 0;
  while (count < kShortLine && bytes[count] != end) {
    if (bytes[count] == 0 || bytes[count] >= 0x80) {
      return kNoShortLine;
    }
    ++count;
  }
  if (count == kShortLine) {
    return kNoShortLine;
  }
  WidenBytesReference(bytes, count, units);
  std::fill(units + count, units + kShortLine, QXChar(0));
  return count;
}

}  // namespace qxv
