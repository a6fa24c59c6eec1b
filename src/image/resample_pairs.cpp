// resample_pairs.cpp - the pixels of a source row that each pixel of a result row lies between.

#include "image/resample_pairs.h"

#include "image/pixel_layout_vectors.h"

#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kPixel = 4;
constexpr std::size_t kPair = kPairBytes;

void PairsFrom(std::size_t i, const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept {
  const std::int32_t* const places = pairs.places.get();
  for (; i < pairs.pixels; ++i) {
    std::memcpy(out + i * kPair, row + static_cast<std::size_t>(places[2 * i]) * kPixel, kPixel);
    std::memcpy(out + i * kPair + kPixel, row + static_cast<std::size_t>(places[2 * i + 1]) * kPixel, kPixel);
  }
}

void PairsScalar(const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept {
  PairsFrom(0, pairs, row, out);
}

QXV_INLINE_AVX2 __m256i BlockAvx2(const PixelPairs& pairs, std::size_t block, const unsigned char* row) noexcept {
  const unsigned char* const from = row + static_cast<std::size_t>(pairs.blockPlaces[block]) * kPixel;
  const unsigned char* const order = pairs.inBlock.get() + block * 8;
  return _mm256_permutevar8x32_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from)),
                                     _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(order))));
}

QXV_TARGET_AVX2 void PairsAvx2(const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept {
  for (std::size_t block = 0; block < pairs.blocks; ++block) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + block * 4 * kPair), BlockAvx2(pairs, block, row));
  }
  PairsFrom(pairs.blocks * 4, pairs, row, out);
}

constexpr os::KernelTable<decltype(&PairsScalar)> kPairs{{&PairsScalar, &PairsAvx2, &PairsAvx2}};

// Sums, of pairs that stand in their place already.

void SumsInPlace(std::size_t i, const signed char* counts, std::size_t pixels, unsigned char* pairs) noexcept {
  for (; i < pixels; ++i) {
    unsigned char* const pair = pairs + i * kPair;
    std::int16_t sums[kPixel];
    for (std::size_t n = 0; n < kPixel; ++n) {
      sums[n] = static_cast<std::int16_t>(pair[n] * counts[2 * i] + pair[kPixel + n] * counts[2 * i + 1]);
    }
    std::memcpy(pair, sums, sizeof sums);
  }
}

// Four sums in the lower half, of one pair.
QXV_ALWAYS_INLINE __m128i SumOfPairSse2(__m128i pair, const signed char* counts) noexcept {
  const __m128i both = _mm_unpacklo_epi64(_mm_set1_epi16(counts[0]), _mm_set1_epi16(counts[1]));
  const __m128i products = _mm_mullo_epi16(pair, both);
  return _mm_add_epi16(products, _mm_srli_si128(products, 8));
}

void SumsFromSse2(std::size_t i, const PixelPairs& pairs, const signed char* counts, const unsigned char* row,
                  unsigned char* out) noexcept {
  PairsFrom(i, pairs, row, out);
  const __m128i zero = _mm_setzero_si128();
  for (; i + 2 <= pairs.pixels; i += 2) {
    __m128i* const place = reinterpret_cast<__m128i*>(out + i * kPair);
    const __m128i bytes = _mm_loadu_si128(place);
    const __m128i first = SumOfPairSse2(_mm_unpacklo_epi8(bytes, zero), counts + 2 * i);
    const __m128i second = SumOfPairSse2(_mm_unpackhi_epi8(bytes, zero), counts + 2 * i + 2);
    _mm_storeu_si128(place, _mm_unpacklo_epi64(first, second));
  }
  SumsInPlace(i, counts, pairs.pixels, out);
}

void SumsSse2(const PixelPairs& pairs, const signed char* counts, const unsigned char* row, unsigned char* out) noexcept {
  SumsFromSse2(0, pairs, counts, row, out);
}

// Bytes of both pixels of a pair side by side, and the pair's numbers beside each other four times.
QXV_TARGET_AVX2 void SumsAvx2(const PixelPairs& pairs, const signed char* counts, const unsigned char* row,
                              unsigned char* out) noexcept {
  const __m256i sideBySide = _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15));
  const __m256i fourTimes =
      _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 0, 1, 2, 3, 2, 3, 2, 3, 2, 3, 4, 5, 4, 5, 4, 5, 4, 5, 6, 7, 6, 7, 6, 7, 6, 7);
  for (std::size_t block = 0; block < pairs.blocks; ++block) {
    long long four;
    std::memcpy(&four, counts + block * 8, sizeof four);
    const __m256i factors = _mm256_shuffle_epi8(_mm256_set1_epi64x(four), fourTimes);
    const __m256i bytes = _mm256_shuffle_epi8(BlockAvx2(pairs, block, row), sideBySide);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + block * 4 * kPair), _mm256_maddubs_epi16(bytes, factors));
  }
  SumsFromSse2(pairs.blocks * 4, pairs, counts, row, out);
}

constexpr os::KernelTable<decltype(&SumsSse2)> kSums{{&SumsSse2, &SumsAvx2, &SumsAvx2}};

// Pixels 0, 2, 4, ...; the source ends with the last one of them, or one behind it. So a block, which reads as far as there,
// never holds the last pixel of the result.

void EveryOtherFrom(std::size_t i, const unsigned char* row, std::size_t pixels, unsigned char* out) noexcept {
  for (; i < pixels; ++i) {
    std::memcpy(out + i * kPixel, row + 2 * i * kPixel, kPixel);
  }
}

void EveryOtherSse2(const unsigned char* row, std::size_t pixels, unsigned char* out) noexcept {
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    const __m128 low = _mm_loadu_ps(reinterpret_cast<const float*>(row + 2 * i * kPixel));
    const __m128 high = _mm_loadu_ps(reinterpret_cast<const float*>(row + 2 * i * kPixel + 16));
    _mm_storeu_ps(reinterpret_cast<float*>(out + i * kPixel), _mm_shuffle_ps(low, high, 0x88));
  }
  EveryOtherFrom(i, row, pixels, out);
}

QXV_INLINE_AVX2 void EveryOther8(const unsigned char* row, std::size_t i, unsigned char* out) noexcept {
  const __m256 low = _mm256_loadu_ps(reinterpret_cast<const float*>(row + 2 * i * kPixel));
  const __m256 high = _mm256_loadu_ps(reinterpret_cast<const float*>(row + 2 * i * kPixel + 32));
  const __m256i even = _mm256_castps_si256(_mm256_shuffle_ps(low, high, 0x88));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i * kPixel), _mm256_permute4x64_epi64(even, 0xD8));
}

QXV_TARGET_AVX2 void EveryOtherAvx2(const unsigned char* row, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 8) {
    return EveryOtherFrom(0, row, pixels, out);
  }
  EveryOther8(row, 0, out);
  for (std::size_t i = PixelsToBlock<32, 4>(out); i + 8 <= pixels; i += 8) {
    EveryOther8(row, i, out);
  }
  EveryOther8(row, pixels - 8, out);
}

QXV_INLINE_AVX512 void EveryOther16(const unsigned char* row, std::size_t i, unsigned char* out) noexcept {
  const __m512i even = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
  const __m512i low = _mm512_loadu_si512(row + 2 * i * kPixel), high = _mm512_loadu_si512(row + 2 * i * kPixel + 64);
  _mm512_storeu_si512(out + i * kPixel, _mm512_permutex2var_epi32(low, even, high));
}

QXV_TARGET_AVX512 void EveryOtherAvx512(const unsigned char* row, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 16) {
    return EveryOtherAvx2(row, pixels, out);
  }
  EveryOther16(row, 0, out);
  for (std::size_t i = PixelsToBlock<64, 4>(out); i + 16 <= pixels; i += 16) {
    EveryOther16(row, i, out);
  }
  EveryOther16(row, pixels - 16, out);
}

constexpr os::KernelTable<decltype(&EveryOtherSse2)> kEveryOther{{&EveryOtherSse2, &EveryOtherAvx2, &EveryOtherAvx512}};

}  // namespace

void FindBlocks(PixelPairs& pairs) {
  const std::size_t most = pairs.pixels / 4;
  pairs.blockPlaces.reset(new std::int32_t[most]);
  pairs.inBlock.reset(new unsigned char[most * 8]);
  for (pairs.blocks = 0; pairs.blocks < most; ++pairs.blocks) {
    const std::int32_t* const places = pairs.places.get() + pairs.blocks * 8;
    if (places[7] - places[0] >= 8 || static_cast<std::size_t>(places[0]) + 8 > pairs.sourcePixels) {
      break;
    }
    pairs.blockPlaces[pairs.blocks] = places[0];
    for (std::size_t n = 0; n < 8; ++n) {
      pairs.inBlock[pairs.blocks * 8 + n] = static_cast<unsigned char>(places[n] - places[0]);
    }
  }
}

void GatherPairs(const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept {
  kPairs.Active()(pairs, row, out);
}

void GatherSums(const PixelPairs& pairs, const signed char* counts, const unsigned char* row, unsigned char* out) noexcept {
  kSums.Active()(pairs, counts, row, out);
}

void GatherFirsts(const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept {
  if (pairs.step == 2) {
    kEveryOther.Active()(row, pairs.pixels, out);
    return;
  }
  for (std::size_t i = 0; i < pairs.pixels; ++i) {
    const std::size_t place = pairs.step != 0 ? i * pairs.step : static_cast<std::size_t>(pairs.places[2 * i]);
    std::memcpy(out + i * kPixel, row + place * kPixel, kPixel);
  }
}

}  // namespace qxv
