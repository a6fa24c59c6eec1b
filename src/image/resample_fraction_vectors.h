// resample_fraction_vectors.h - of sums of columns in 16 bits, blended by the counts of two rows and divided
// (resample_fractions.h): the bytes of some pixels, still 16 bits each and not yet saturated. With one row alone the second is
// not looked at.
#pragma once

#include "image/resample_fractions.h"
#include "os/cpu.h"
#include "os/intrinsics.h"

namespace qxv {

struct FactorsSse2 {
  __m128i first, second, half, factor, shift;
};
QXV_ALWAYS_INLINE FactorsSse2 SpreadSse2(const BlendedRows& rows, const Fractions& fractions) noexcept {
  return {_mm_set1_epi16(static_cast<short>(rows.firstCount)), _mm_set1_epi16(static_cast<short>(rows.secondCount)),
          _mm_set1_epi16(fractions.half), _mm_set1_epi16(fractions.factor), _mm_cvtsi32_si128(fractions.shift)};
}
template <bool kOneRow>
QXV_ALWAYS_INLINE __m128i QuotientsSse2(__m128i first, __m128i second, const FactorsSse2& by) noexcept {
  __m128i sum = _mm_add_epi16(_mm_mullo_epi16(first, by.first), by.half);
  if constexpr (!kOneRow) {
    sum = _mm_add_epi16(sum, _mm_mullo_epi16(second, by.second));
  }
  return _mm_sra_epi16(_mm_mulhi_epi16(sum, by.factor), by.shift);
}

struct FactorsAvx2 {
  __m256i first, second, half, factor;
  __m128i shift;
};
QXV_INLINE_AVX2 FactorsAvx2 SpreadAvx2(const BlendedRows& rows, const Fractions& fractions) noexcept {
  return {_mm256_set1_epi16(static_cast<short>(rows.firstCount)), _mm256_set1_epi16(static_cast<short>(rows.secondCount)),
          _mm256_set1_epi16(fractions.half), _mm256_set1_epi16(fractions.factor), _mm_cvtsi32_si128(fractions.shift)};
}
template <bool kOneRow>
QXV_INLINE_AVX2 __m256i QuotientsAvx2(__m256i first, __m256i second, const FactorsAvx2& by) noexcept {
  __m256i sum = _mm256_add_epi16(_mm256_mullo_epi16(first, by.first), by.half);
  if constexpr (!kOneRow) {
    sum = _mm256_add_epi16(sum, _mm256_mullo_epi16(second, by.second));
  }
  return _mm256_sra_epi16(_mm256_mulhi_epi16(sum, by.factor), by.shift);
}

struct FactorsAvx512 {
  __m512i first, second, half, factor;
  __m128i shift;
};
QXV_INLINE_AVX512 FactorsAvx512 SpreadAvx512(const BlendedRows& rows, const Fractions& fractions) noexcept {
  return {_mm512_set1_epi16(static_cast<short>(rows.firstCount)), _mm512_set1_epi16(static_cast<short>(rows.secondCount)),
          _mm512_set1_epi16(fractions.half), _mm512_set1_epi16(fractions.factor), _mm_cvtsi32_si128(fractions.shift)};
}
template <bool kOneRow>
QXV_INLINE_AVX512 __m512i QuotientsAvx512(__m512i first, __m512i second, const FactorsAvx512& by) noexcept {
  __m512i sum = _mm512_add_epi16(_mm512_mullo_epi16(first, by.first), by.half);
  if constexpr (!kOneRow) {
    sum = _mm512_add_epi16(sum, _mm512_mullo_epi16(second, by.second));
  }
  return _mm512_sra_epi16(_mm512_mulhi_epi16(sum, by.factor), by.shift);
}

// Saturated to bytes, pixels in order: four, eight and sixteen.
QXV_INLINE_AVX2 __m256i PackInOrderAvx2(__m256i low, __m256i high) noexcept {
  return _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), 0xD8);
}
QXV_INLINE_AVX512 __m512i PackInOrderAvx512(__m512i low, __m512i high) noexcept {
  return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), _mm512_packus_epi16(low, high));
}

}  // namespace qxv
