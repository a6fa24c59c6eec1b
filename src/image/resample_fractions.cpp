// resample_fractions.cpp - when blending in whole numbers gives the same bytes, and how it goes.

#include "image/resample_fractions.h"

#include "image/resample.h"
#include "image/resample_fraction_vectors.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace qxv {
namespace {

constexpr std::size_t kPixel = 4;
constexpr std::size_t kPair = 2 * kPixel;

constexpr int kExactParts = 4;  // quarters and halves are counted in quarters
constexpr int kMostParts = 25;  // of both sides together: the sums stay in 16 bits

// Of weights from -1 to 2 that make 1: at most four positive products of 5 in all.
constexpr int MostSum(int product) noexcept { return 5 * 255 * product + product / 2; }
static_assert(MostSum(kMostParts) <= 0x7FFF);

bool IsExact(const SideWeights& side) noexcept { return side.error == 0 && kExactParts % side.parts == 0; }

// The sum in single precision and the exact one cannot round to different bytes.
bool RoundsAlike(const SideWeights& columns, const SideWeights& rows) noexcept {
  const double fromWeights = 255 * (columns.error * rows.reach + rows.error * (columns.reach + columns.error));
  const double fromRounding = 255 * columns.reach * rows.reach * 16 / 0x1000000;  // ten roundings of 24 bits, each at most half
  return fromWeights + fromRounding < 0.5 / (columns.parts * rows.parts);
}

// (sum + half) / product for all sums in reach; what is negative stays so, or becomes 0.
Fractions Divided(int columnParts, int rowParts) noexcept {
  const int product = columnParts * rowParts;
  Fractions result{columnParts, rowParts, static_cast<std::int16_t>(product / 2), 0, 0};
  for (int shift = 0; shift < 8; ++shift) {
    const int power = 0x10000 << shift;
    const int factor = (power + product - 1) / product;
    if (factor <= 0x7FFF && static_cast<std::int64_t>(factor * product - power) * MostSum(product) < power) {
      result.factor = static_cast<std::int16_t>(factor);
      result.shift = shift;
    }
  }
  return result.factor != 0 ? result : Fractions{};
}

void RowsFrom(std::size_t i, const BlendedRows& rows, const Fractions& fractions, std::size_t pixels,
              unsigned char* out) noexcept {
  for (; i < pixels; ++i) {
    std::int16_t a[kPixel], b[kPixel];
    std::memcpy(a, rows.first + i * kPair, sizeof a);
    std::memcpy(b, rows.second + i * kPair, sizeof b);
    for (std::size_t n = 0; n < kPixel; ++n) {
      out[i * kPixel + n] = QuotientByte(a[n] * rows.firstCount + b[n] * rows.secondCount, fractions);
    }
  }
}

template <bool kOneRow>
QXV_ALWAYS_INLINE __m128i TwoPixelsSse2(const BlendedRows& rows, const FactorsSse2& by, std::size_t i) noexcept {
  const __m128i* const second = reinterpret_cast<const __m128i*>(rows.second + i * kPair);
  return QuotientsSse2<kOneRow>(_mm_loadu_si128(reinterpret_cast<const __m128i*>(rows.first + i * kPair)),
                                kOneRow ? _mm_setzero_si128() : _mm_loadu_si128(second), by);
}

template <bool kOneRow>
void RowsSse2(const BlendedRows& rows, const Fractions& fractions, std::size_t pixels, unsigned char* out) noexcept {
  const FactorsSse2 by = SpreadSse2(rows, fractions);
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i * kPixel),
                     _mm_packus_epi16(TwoPixelsSse2<kOneRow>(rows, by, i), TwoPixelsSse2<kOneRow>(rows, by, i + 2)));
  }
  RowsFrom(i, rows, fractions, pixels, out);
}

template <bool kOneRow>
QXV_INLINE_AVX2 __m256i FourPixelsAvx2(const BlendedRows& rows, const FactorsAvx2& by, std::size_t i) noexcept {
  const __m256i* const second = reinterpret_cast<const __m256i*>(rows.second + i * kPair);
  return QuotientsAvx2<kOneRow>(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(rows.first + i * kPair)),
                                kOneRow ? _mm256_setzero_si256() : _mm256_loadu_si256(second), by);
}

template <bool kOneRow>
QXV_TARGET_AVX2 void RowsAvx2(const BlendedRows& rows, const Fractions& fractions, std::size_t pixels,
                              unsigned char* out) noexcept {
  const FactorsAvx2 by = SpreadAvx2(rows, fractions);
  std::size_t i = 0;
  for (; i + 8 <= pixels; i += 8) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i * kPixel),
                        PackInOrderAvx2(FourPixelsAvx2<kOneRow>(rows, by, i), FourPixelsAvx2<kOneRow>(rows, by, i + 4)));
  }
  RowsFrom(i, rows, fractions, pixels, out);
}

template <bool kOneRow>
QXV_INLINE_AVX512 __m512i EightPixelsAvx512(const BlendedRows& rows, const FactorsAvx512& by, std::size_t i) noexcept {
  return QuotientsAvx512<kOneRow>(_mm512_loadu_si512(rows.first + i * kPair),
                                  kOneRow ? _mm512_setzero_si512() : _mm512_loadu_si512(rows.second + i * kPair), by);
}

template <bool kOneRow>
QXV_TARGET_AVX512 void RowsAvx512(const BlendedRows& rows, const Fractions& fractions, std::size_t pixels,
                                  unsigned char* out) noexcept {
  const FactorsAvx512 by = SpreadAvx512(rows, fractions);
  std::size_t i = 0;
  for (; i + 16 <= pixels; i += 16) {
    const __m512i low = EightPixelsAvx512<kOneRow>(rows, by, i), high = EightPixelsAvx512<kOneRow>(rows, by, i + 8);
    _mm512_storeu_si512(out + i * kPixel, PackInOrderAvx512(low, high));
  }
  RowsFrom(i, rows, fractions, pixels, out);
}

template <bool kOneRow>
constexpr os::KernelTable<decltype(&RowsSse2<false>)> kRows{{&RowsSse2<kOneRow>, &RowsAvx2<kOneRow>, &RowsAvx512<kOneRow>}};

// Every place is a whole number or has a half or a quarter, and single precision holds it and what it comes from.
bool HasExactPlaces(std::int32_t sourceSide, std::int32_t side, std::int32_t parts) noexcept {
  constexpr std::int64_t kAllWholeNumbers = 0x1000000;
  return kExactParts % parts == 0 && std::int64_t{side} * sourceSide <= kAllWholeNumbers;
}

}  // namespace

SideWeights WeightsOf(std::int32_t sourceSide, std::int32_t side) noexcept {
  const std::int32_t parts = side / std::gcd(side, sourceSide);
  if (parts > kMostParts) {
    return {};
  }
  const bool areExact = HasExactPlaces(sourceSide, side, parts);
  SideWeights result{parts, 0, 1, areExact && parts == 1 ? sourceSide / side : 0};
  const std::int32_t mayStepBack = side / sourceSide + 2;  // the last ones; before them exact places have exact weights
  for (std::int32_t i = areExact ? std::max(side - mayStepBack, 0) : 0; i < side; ++i) {
    const Tap tap = TapAt(i, sourceSide, side);
    const int first = CountOfParts(tap.firstWeight, parts), second = CountOfParts(tap.secondWeight, parts);
    if (first + second != parts || std::abs(first - second) > 3 * parts) {
      return {};
    }
    const double off = double{tap.firstWeight} - static_cast<double>(first) / parts;
    const double sumOff = double{tap.firstWeight} + double{tap.secondWeight} - 1;
    result.error = std::max(result.error, std::abs(off) + std::abs(sumOff));
    result.reach = std::max(result.reach, static_cast<double>(std::abs(first) + std::abs(second)) / parts);
  }
  return result;
}

Fractions FractionsFor(const SideWeights& columns, const SideWeights& rows) noexcept {
  if (columns.parts == 0 || rows.parts == 0) {
    return {};
  }
  if (IsExact(columns) && IsExact(rows)) {
    return Divided(kExactParts, kExactParts);
  }
  const int product = columns.parts * rows.parts;
  return product % 2 != 0 && product <= kMostParts && RoundsAlike(columns, rows) ? Divided(columns.parts, rows.parts)
                                                                                 : Fractions{};
}

int CountOfParts(float weight, int parts) noexcept {
  const float count = weight * static_cast<float>(parts);
  return static_cast<int>(count < 0 ? count - 0.5f : count + 0.5f);
}

void BlendRows(const BlendedRows& rows, const Fractions& fractions, std::size_t pixels, unsigned char* out) noexcept {
  if (rows.first == rows.second) {
    const BlendedRows alone{rows.first, rows.first, rows.firstCount + rows.secondCount, 0};
    kRows<true>.Active()(alone, fractions, pixels, out);
  } else {
    kRows<false>.Active()(rows, fractions, pixels, out);
  }
}

}  // namespace qxv
