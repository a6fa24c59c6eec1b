// sample_split.cpp - pairs of 16-bit samples taken apart, in three tiers.
// A pair is one number of 32 bits, the second sample its upper half.

#include "audio/sample_format.h"

#include "audio/sample_vectors.h"
#include "os/cpu.h"
#include "os/intrinsics.h"

namespace {

using qxv::BeforeAligned;
using qxv::kFrom16;

void Split16Rest(const unsigned char* bytes, float* first, float* second, std::size_t from, std::size_t count) noexcept {
  for (std::size_t i = from; i < count; ++i) {
    first[i] = qxv::SampleFromBytes(2, bytes + 4 * i);
    second[i] = qxv::SampleFromBytes(2, bytes + 4 * i + 2);
  }
}

void Split16Baseline(const unsigned char* bytes, float* first, float* second, std::size_t count) noexcept {
  const __m128 scale = _mm_set1_ps(kFrom16);
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i pairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 4 * i));
    const __m128i low = _mm_srai_epi32(_mm_slli_epi32(pairs, 16), 16), high = _mm_srai_epi32(pairs, 16);
    _mm_storeu_ps(first + i, _mm_mul_ps(_mm_cvtepi32_ps(low), scale));
    _mm_storeu_ps(second + i, _mm_mul_ps(_mm_cvtepi32_ps(high), scale));
  }
  Split16Rest(bytes, first, second, i, count);
}

QXV_INLINE_AVX2 __m256 FirstOf8(__m256i pairs) noexcept {
  return _mm256_mul_ps(_mm256_cvtepi32_ps(_mm256_srai_epi32(_mm256_slli_epi32(pairs, 16), 16)), _mm256_set1_ps(kFrom16));
}

QXV_INLINE_AVX2 __m256 SecondOf8(__m256i pairs) noexcept {
  return _mm256_mul_ps(_mm256_cvtepi32_ps(_mm256_srai_epi32(pairs, 16)), _mm256_set1_ps(kFrom16));
}

// A whole line of the cache to one place, then one to the other: half a line to each in turn takes nearly twice as long.
QXV_INLINE_AVX2 void Split16OfAvx2(const unsigned char* bytes, float* first, float* second) noexcept {
  const __m256i pairs = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  const __m256i more = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 32));
  _mm256_storeu_ps(first, FirstOf8(pairs));
  _mm256_storeu_ps(first + 8, FirstOf8(more));
  _mm256_storeu_ps(second, SecondOf8(pairs));
  _mm256_storeu_ps(second + 8, SecondOf8(more));
}

QXV_TARGET_AVX2 void Split16Avx2(const unsigned char* bytes, float* first, float* second, std::size_t count) noexcept {
  if (count < 16) {
    return Split16Baseline(bytes, first, second, count);
  }
  Split16OfAvx2(bytes, first, second);
  for (std::size_t i = BeforeAligned(first, 64, count); i + 16 <= count; i += 16) {
    Split16OfAvx2(bytes + 4 * i, first + i, second + i);
  }
  const std::size_t last = count - 16;
  Split16OfAvx2(bytes + 4 * last, first + last, second + last);
}

QXV_INLINE_AVX512 void Split16OfAvx512(const unsigned char* bytes, float* first, float* second) noexcept {
  const __m512 scale = _mm512_set1_ps(kFrom16);
  const __m512i pairs = _mm512_loadu_si512(bytes);
  const __m512i low = _mm512_srai_epi32(_mm512_slli_epi32(pairs, 16), 16), high = _mm512_srai_epi32(pairs, 16);
  _mm512_storeu_ps(first, _mm512_mul_ps(_mm512_cvtepi32_ps(low), scale));
  _mm512_storeu_ps(second, _mm512_mul_ps(_mm512_cvtepi32_ps(high), scale));
}

QXV_TARGET_AVX512 void Split16Avx512(const unsigned char* bytes, float* first, float* second, std::size_t count) noexcept {
  if (count < 16) {
    return Split16Baseline(bytes, first, second, count);
  }
  Split16OfAvx512(bytes, first, second);
  for (std::size_t i = BeforeAligned(first, 64, count); i + 16 <= count; i += 16) {
    Split16OfAvx512(bytes + 4 * i, first + i, second + i);
  }
  const std::size_t last = count - 16;
  Split16OfAvx512(bytes + 4 * last, first + last, second + last);
}

constexpr qxv::os::KernelTable<void (*)(const unsigned char*, float*, float*, std::size_t) noexcept> kSplit16{
    {&Split16Baseline, &Split16Avx2, &Split16Avx512}};

}  // namespace

void qxv::SplitPairs16(const unsigned char* bytes, float* first, float* second, std::size_t count) noexcept {
  kSplit16.Active()(bytes, first, second, count);
}
