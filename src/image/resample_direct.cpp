// resample_direct.cpp - blending in whole numbers from the source to the result, sums stay in registers.

#include "image/resample_direct.h"

#include "image/resample_fraction_vectors.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace qxv {
namespace {

constexpr std::size_t kPixel = 4;
constexpr std::size_t kBlock = 8;         // pixels of the result
constexpr std::int32_t kBlockTakes = 16;  // of the source
constexpr std::int32_t kHalfTakes = 8;
constexpr std::size_t kMostWays = 32;

// The 16 places of a block's pairs; false where they lie too far apart.
bool FindBlock(const std::int32_t* places, std::int32_t sourcePixels, DirectBlocks::Place& place,
               DirectBlocks::Way& way) noexcept {
  place.block = std::min(places[0], sourcePixels - kBlockTakes);
  place.halves[0] = std::min(places[0], sourcePixels - kHalfTakes);
  place.halves[1] = std::min(places[8], sourcePixels - kHalfTakes);
  if (places[15] - place.block >= kBlockTakes || places[7] - place.halves[0] >= kHalfTakes ||
      places[15] - place.halves[1] >= kHalfTakes) {
    return false;
  }
  for (std::size_t n = 0; n < 16; ++n) {
    way.inHalves[n] = places[n] - place.halves[n / 8];
    for (std::size_t channel = 0; channel < kPixel; ++channel) {
      const auto byte = static_cast<std::size_t>(places[n] - place.block) * kPixel + channel;
      way.bytes[n / 2 * 8 + 2 * channel + n % 2] = static_cast<unsigned char>(byte);
    }
  }
  return true;
}

void BlendFrom(std::size_t i, const WeighedPairs& weighed, const BlendedRows& rows, const Fractions& fractions,
               unsigned char* out) noexcept {
  for (; i < weighed.pairs.pixels; ++i) {
    const std::int32_t* const places = weighed.pairs.places.get() + 2 * i;
    const signed char* const counts = weighed.counts + 2 * i;
    const std::size_t left = static_cast<std::size_t>(places[0]) * kPixel, right = static_cast<std::size_t>(places[1]) * kPixel;
    for (std::size_t n = 0; n < kPixel; ++n) {
      const int first = rows.first[left + n] * counts[0] + rows.first[right + n] * counts[1];
      const int second = rows.second[left + n] * counts[0] + rows.second[right + n] * counts[1];
      out[i * kPixel + n] = QuotientByte(first * rows.firstCount + second * rows.secondCount, fractions);
    }
  }
}

QXV_ALWAYS_INLINE __m128i TwoPixelsSse2(const unsigned char* row, std::int32_t first, std::int32_t second) noexcept {
  int pixels[2];
  std::memcpy(&pixels[0], row + static_cast<std::size_t>(first) * kPixel, kPixel);
  std::memcpy(&pixels[1], row + static_cast<std::size_t>(second) * kPixel, kPixel);
  const __m128i both = _mm_unpacklo_epi32(_mm_cvtsi32_si128(pixels[0]), _mm_cvtsi32_si128(pixels[1]));
  return _mm_unpacklo_epi8(both, _mm_setzero_si128());
}
QXV_ALWAYS_INLINE __m128i TwoSumsSse2(const unsigned char* row, const std::int32_t* places, const signed char* counts) noexcept {
  const __m128i left = _mm_unpacklo_epi64(_mm_set1_epi16(counts[0]), _mm_set1_epi16(counts[2]));
  const __m128i right = _mm_unpacklo_epi64(_mm_set1_epi16(counts[1]), _mm_set1_epi16(counts[3]));
  return _mm_add_epi16(_mm_mullo_epi16(TwoPixelsSse2(row, places[0], places[2]), left),
                       _mm_mullo_epi16(TwoPixelsSse2(row, places[1], places[3]), right));
}

template <bool kOneRow>
void BlendSse2(const WeighedPairs& weighed, const DirectBlocks&, const BlendedRows& rows, const Fractions& fractions,
               unsigned char* out) noexcept {
  const FactorsSse2 by = SpreadSse2(rows, fractions);
  const std::int32_t* places = weighed.pairs.places.get();
  const signed char* counts = weighed.counts;
  std::size_t i = 0;
  for (; i + 2 <= weighed.pairs.pixels; i += 2, places += 4, counts += 4) {
    const __m128i first = TwoSumsSse2(rows.first, places, counts);
    const __m128i second = kOneRow ? first : TwoSumsSse2(rows.second, places, counts);
    const __m128i two = QuotientsSse2<kOneRow>(first, second, by);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + i * kPixel), _mm_packus_epi16(two, two));
  }
  BlendFrom(i, weighed, rows, fractions, out);
}

// Four pixels of the result, from 8 of the source.
struct HalfWayAvx2 {
  __m256i pixels, counts;
};
QXV_INLINE_AVX2 __m256i SumsAvx2(const unsigned char* row, std::int32_t place, const HalfWayAvx2& way) noexcept {
  const __m256i sideBySide = _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15));
  const unsigned char* const from = row + static_cast<std::size_t>(place) * kPixel;
  const __m256i pairs = _mm256_permutevar8x32_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from)), way.pixels);
  return _mm256_maddubs_epi16(_mm256_shuffle_epi8(pairs, sideBySide), way.counts);
}
template <bool kOneRow>
QXV_INLINE_AVX2 __m256i FourPixelsAvx2(const BlendedRows& rows, const FactorsAvx2& by, std::int32_t place,
                                       const HalfWayAvx2& way) noexcept {
  const __m256i first = SumsAvx2(rows.first, place, way);
  return QuotientsAvx2<kOneRow>(first, kOneRow ? first : SumsAvx2(rows.second, place, way), by);
}
QXV_INLINE_AVX2 HalfWayAvx2 LoadHalfWay(const DirectBlocks::Way& way, std::size_t half) noexcept {
  return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(way.inHalves + 8 * half)),
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(way.counts + 32 * half))};
}

template <bool kOneRow>
QXV_TARGET_AVX2 void BlendAvx2(const WeighedPairs& weighed, const DirectBlocks& blocks, const BlendedRows& rows,
                               const Fractions& fractions, unsigned char* out) noexcept {
  const FactorsAvx2 by = SpreadAvx2(rows, fractions);
  for (std::size_t block = 0; block < blocks.blocks; ++block) {
    const DirectBlocks::Place& place = blocks.places[block];
    const DirectBlocks::Way& way = blocks.table[blocks.ways[block]];
    const __m256i low = FourPixelsAvx2<kOneRow>(rows, by, place.halves[0], LoadHalfWay(way, 0));
    const __m256i high = FourPixelsAvx2<kOneRow>(rows, by, place.halves[1], LoadHalfWay(way, 1));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + block * kBlock * kPixel), PackInOrderAvx2(low, high));
  }
  BlendFrom(blocks.blocks * kBlock, weighed, rows, fractions, out);
}

QXV_INLINE_AVX512 __m512i SumsAvx512(const unsigned char* row, std::int32_t place, __m512i bytes, __m512i counts) noexcept {
  const __m512i from = _mm512_loadu_si512(row + static_cast<std::size_t>(place) * kPixel);
  return _mm512_maddubs_epi16(_mm512_permutexvar_epi8(bytes, from), counts);
}
template <bool kOneRow>
QXV_INLINE_AVX512 __m512i EightPixelsAvx512(const DirectBlocks& blocks, const BlendedRows& rows, const FactorsAvx512& by,
                                            std::size_t block) noexcept {
  const std::int32_t place = blocks.places[block].block;
  const DirectBlocks::Way& way = blocks.table[blocks.ways[block]];
  const __m512i bytes = _mm512_loadu_si512(way.bytes), counts = _mm512_loadu_si512(way.counts);
  const __m512i first = SumsAvx512(rows.first, place, bytes, counts);
  return QuotientsAvx512<kOneRow>(first, kOneRow ? first : SumsAvx512(rows.second, place, bytes, counts), by);
}

template <bool kOneRow>
QXV_TARGET_AVX512 void BlendAvx512(const WeighedPairs& weighed, const DirectBlocks& blocks, const BlendedRows& rows,
                                   const Fractions& fractions, unsigned char* out) noexcept {
  const FactorsAvx512 by = SpreadAvx512(rows, fractions);
  std::size_t block = 0;
  for (; block + 2 <= blocks.blocks; block += 2) {
    const __m512i low = EightPixelsAvx512<kOneRow>(blocks, rows, by, block);
    const __m512i high = EightPixelsAvx512<kOneRow>(blocks, rows, by, block + 1);
    _mm512_storeu_si512(out + block * kBlock * kPixel, PackInOrderAvx512(low, high));
  }
  if (block < blocks.blocks) {
    const __m512i last = EightPixelsAvx512<kOneRow>(blocks, rows, by, block);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + block * kBlock * kPixel),
                        _mm512_castsi512_si256(PackInOrderAvx512(last, last)));
  }
  BlendFrom(blocks.blocks * kBlock, weighed, rows, fractions, out);
}

template <bool kOneRow>
constexpr os::KernelTable<decltype(&BlendSse2<false>)> kBlend{{&BlendSse2<kOneRow>, &BlendAvx2<kOneRow>, &BlendAvx512<kOneRow>}};

}  // namespace

DirectBlocks FindDirectBlocks(const WeighedPairs& weighed, int period) {
  const PixelPairs& pairs = weighed.pairs;
  const std::size_t most = pairs.sourcePixels < static_cast<std::size_t>(kBlockTakes) ? 0 : pairs.pixels / kBlock;
  const std::size_t blocksBack = static_cast<std::size_t>(std::lcm(period, static_cast<int>(kBlock))) / kBlock;
  DirectBlocks result;
  result.places.reset(new DirectBlocks::Place[most]);
  result.ways.reset(new unsigned char[most]);
  result.table.reset(new DirectBlocks::Way[kMostWays]);
  std::size_t ways = 0;
  for (; result.blocks < most; ++result.blocks) {
    const std::size_t block = result.blocks;
    DirectBlocks::Way way;
    if (!FindBlock(pairs.places.get() + block * 16, static_cast<std::int32_t>(pairs.sourcePixels), result.places[block], way)) {
      break;
    }
    for (std::size_t n = 0; n < sizeof way.counts; ++n) {
      way.counts[n] = weighed.counts[block * 16 + n / 8 * 2 + n % 2];
    }
    if (block >= blocksBack) {
      result.ways[block] = result.ways[block - blocksBack];
      if (std::memcmp(&result.table[result.ways[block]], &way, sizeof way) == 0) {
        continue;
      }
    }
    if (ways == kMostWays) {
      break;
    }
    result.table[ways] = way;
    result.ways[block] = static_cast<unsigned char>(ways++);
  }
  return result;
}

void BlendDirect(const WeighedPairs& weighed, const DirectBlocks& blocks, const BlendedRows& rows, const Fractions& fractions,
                 unsigned char* out) noexcept {
  if (rows.first == rows.second) {
    const BlendedRows alone{rows.first, rows.first, rows.firstCount + rows.secondCount, 0};
    kBlend<true>.Active()(weighed, blocks, alone, fractions, out);
  } else {
    kBlend<false>.Active()(weighed, blocks, rows, fractions, out);
  }
}

}  // namespace qxv
