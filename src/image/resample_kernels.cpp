// resample_kernels.cpp - the inner loop of resampling in single precision, as the rule is stated.

#include "image/resample_kernels.h"

#include "image/pixel_layout_vectors.h"

#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kPixel = 4;
constexpr std::size_t kPair = 2 * kPixel;

struct Rows {
  const unsigned char* first;
  const unsigned char* second;
  float firstWeight;
  float secondWeight;
};

// Columns' weights: pixels of first ones, then as many of second ones; `from` is where a kernel begins.
using BlendFunction = void (*)(const Rows& rows, const float* columnWeights, std::size_t pixels, unsigned char* out) noexcept;

template <bool kOneRow>
void BlendScalar(const Rows& rows, const float* columnWeights, std::size_t from, std::size_t pixels,
                 unsigned char* out) noexcept {
  for (std::size_t i = from; i < pixels; ++i) {
    const float left = columnWeights[i], right = columnWeights[pixels + i];
    const unsigned char* const a = rows.first + i * kPair;
    const unsigned char* const b = rows.second + i * kPair;
    for (std::size_t n = 0; n < kPixel; ++n) {
      float sum = rows.firstWeight * left * a[n] + rows.firstWeight * right * a[kPixel + n];
      if constexpr (!kOneRow) {
        sum = sum + rows.secondWeight * left * b[n] + rows.secondWeight * right * b[kPixel + n];
      }
      out[i * kPixel + n] = RoundToByte(sum);
    }
  }
}

// One pixel at a time: its four bytes are the four numbers of a register.
QXV_ALWAYS_INLINE void LoadPairSse2(const unsigned char* pair, __m128& left, __m128& right) noexcept {
  const __m128i zero = _mm_setzero_si128();
  const __m128i words = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pair)), zero);
  left = _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero));
  right = _mm_cvtepi32_ps(_mm_unpackhi_epi16(words, zero));
}

template <bool kOneRow>
void BlendSse2(const Rows& rows, const float* columnWeights, std::size_t pixels, unsigned char* out) noexcept {
  const __m128 firstWeight = _mm_set1_ps(rows.firstWeight), secondWeight = _mm_set1_ps(rows.secondWeight);
  for (std::size_t i = 0; i < pixels; ++i) {
    const __m128 leftWeight = _mm_set1_ps(columnWeights[i]), rightWeight = _mm_set1_ps(columnWeights[pixels + i]);
    __m128 left, right;
    LoadPairSse2(rows.first + i * kPair, left, right);
    __m128 sum = _mm_add_ps(_mm_mul_ps(_mm_mul_ps(firstWeight, leftWeight), left),
                            _mm_mul_ps(_mm_mul_ps(firstWeight, rightWeight), right));
    if constexpr (!kOneRow) {
      LoadPairSse2(rows.second + i * kPair, left, right);
      sum = _mm_add_ps(sum, _mm_mul_ps(_mm_mul_ps(secondWeight, leftWeight), left));
      sum = _mm_add_ps(sum, _mm_mul_ps(_mm_mul_ps(secondWeight, rightWeight), right));
    }
    const __m128i words = _mm_packs_epi32(RoundSse2(sum), _mm_setzero_si128());
    const int four = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    std::memcpy(out + i * kPixel, &four, kPixel);
  }
}

// Wider registers hold one channel of many pixels, so that a weight is multiplied once for all four channels.

template <int kChannel>
constexpr ByteOrder<16> MakeChannel() noexcept {
  ByteOrder<16> all{};
  for (std::size_t i = 0; i < 16; ++i) {
    all.from[i] = static_cast<unsigned char>(i % 4 == 0 ? i + kChannel : 0x80);
  }
  return all;
}
template <int kChannel>
constexpr ByteOrder<16> kChannelOrder = MakeChannel<kChannel>();

struct PixelsAvx2 {
  __m256i left, right;
};
struct WeightsAvx2 {
  __m256 left, right;
};

QXV_INLINE_AVX2 PixelsAvx2 LoadPairsAvx2(const unsigned char* pairs) noexcept {
  const __m256 low = _mm256_loadu_ps(reinterpret_cast<const float*>(pairs));
  const __m256 high = _mm256_loadu_ps(reinterpret_cast<const float*>(pairs + 32));
  const __m256i left = _mm256_castps_si256(_mm256_shuffle_ps(low, high, 0x88));
  const __m256i right = _mm256_castps_si256(_mm256_shuffle_ps(low, high, 0xDD));
  return {_mm256_permute4x64_epi64(left, 0xD8), _mm256_permute4x64_epi64(right, 0xD8)};
}

template <int kChannel>
QXV_INLINE_AVX2 __m256 ChannelAvx2(__m256i pixels) noexcept {
  return _mm256_cvtepi32_ps(_mm256_shuffle_epi8(pixels, LoadOrderAvx2(kChannelOrder<kChannel>)));
}

template <bool kOneRow, int kChannel>
QXV_INLINE_AVX2 __m256i BlendChannelAvx2(const PixelsAvx2& a, const PixelsAvx2& b, const WeightsAvx2& ofA,
                                         const WeightsAvx2& ofB) noexcept {
  __m256 sum = _mm256_add_ps(_mm256_mul_ps(ofA.left, ChannelAvx2<kChannel>(a.left)),
                             _mm256_mul_ps(ofA.right, ChannelAvx2<kChannel>(a.right)));
  if constexpr (!kOneRow) {
    sum = _mm256_add_ps(sum, _mm256_mul_ps(ofB.left, ChannelAvx2<kChannel>(b.left)));
    sum = _mm256_add_ps(sum, _mm256_mul_ps(ofB.right, ChannelAvx2<kChannel>(b.right)));
  }
  return RoundAvx2(sum);
}

template <bool kOneRow>
QXV_TARGET_AVX2 void BlendAvx2(const Rows& rows, const float* columnWeights, std::size_t pixels, unsigned char* out) noexcept {
  const __m256 firstWeight = _mm256_set1_ps(rows.firstWeight), secondWeight = _mm256_set1_ps(rows.secondWeight);
  std::size_t i = 0;
  for (; i + 8 <= pixels; i += 8) {
    const __m256 left = _mm256_loadu_ps(columnWeights + i), right = _mm256_loadu_ps(columnWeights + pixels + i);
    const WeightsAvx2 ofA = {_mm256_mul_ps(firstWeight, left), _mm256_mul_ps(firstWeight, right)};
    const WeightsAvx2 ofB = {_mm256_mul_ps(secondWeight, left), _mm256_mul_ps(secondWeight, right)};
    const PixelsAvx2 a = LoadPairsAvx2(rows.first + i * kPair);
    const PixelsAvx2 b = LoadPairsAvx2(rows.second + i * kPair);
    const __m256i eight =
        InterleaveAvx2(BlendChannelAvx2<kOneRow, 0>(a, b, ofA, ofB), BlendChannelAvx2<kOneRow, 1>(a, b, ofA, ofB),
                       BlendChannelAvx2<kOneRow, 2>(a, b, ofA, ofB), BlendChannelAvx2<kOneRow, 3>(a, b, ofA, ofB));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i * kPixel), eight);
  }
  BlendScalar<kOneRow>(rows, columnWeights, i, pixels, out);
}

struct PixelsAvx512 {
  __m512i left, right;
};
struct WeightsAvx512 {
  __m512 left, right;
};

QXV_INLINE_AVX512 PixelsAvx512 LoadPairsAvx512(const unsigned char* pairs) noexcept {
  const __m512i even = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
  const __m512i odd = _mm512_setr_epi32(1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31);
  const __m512i low = _mm512_loadu_si512(pairs), high = _mm512_loadu_si512(pairs + 64);
  return {_mm512_permutex2var_epi32(low, even, high), _mm512_permutex2var_epi32(low, odd, high)};
}

template <int kChannel>
QXV_INLINE_AVX512 __m512 ChannelAvx512(__m512i pixels) noexcept {
  const __m128i order = _mm_load_si128(reinterpret_cast<const __m128i*>(kChannelOrder<kChannel>.from.data()));
  return _mm512_cvtepi32_ps(_mm512_shuffle_epi8(pixels, _mm512_broadcast_i32x4(order)));
}

template <bool kOneRow, int kChannel>
QXV_INLINE_AVX512 __m512i BlendChannelAvx512(const PixelsAvx512& a, const PixelsAvx512& b, const WeightsAvx512& ofA,
                                             const WeightsAvx512& ofB) noexcept {
  __m512 sum = _mm512_add_ps(_mm512_mul_ps(ofA.left, ChannelAvx512<kChannel>(a.left)),
                             _mm512_mul_ps(ofA.right, ChannelAvx512<kChannel>(a.right)));
  if constexpr (!kOneRow) {
    sum = _mm512_add_ps(sum, _mm512_mul_ps(ofB.left, ChannelAvx512<kChannel>(b.left)));
    sum = _mm512_add_ps(sum, _mm512_mul_ps(ofB.right, ChannelAvx512<kChannel>(b.right)));
  }
  return RoundAvx512(sum);
}

template <bool kOneRow>
QXV_TARGET_AVX512 void BlendAvx512(const Rows& rows, const float* columnWeights, std::size_t pixels,
                                   unsigned char* out) noexcept {
  const __m512 firstWeight = _mm512_set1_ps(rows.firstWeight), secondWeight = _mm512_set1_ps(rows.secondWeight);
  std::size_t i = 0;
  for (; i + 16 <= pixels; i += 16) {
    const __m512 left = _mm512_loadu_ps(columnWeights + i), right = _mm512_loadu_ps(columnWeights + pixels + i);
    const WeightsAvx512 ofA = {_mm512_mul_ps(firstWeight, left), _mm512_mul_ps(firstWeight, right)};
    const WeightsAvx512 ofB = {_mm512_mul_ps(secondWeight, left), _mm512_mul_ps(secondWeight, right)};
    const PixelsAvx512 a = LoadPairsAvx512(rows.first + i * kPair);
    const PixelsAvx512 b = LoadPairsAvx512(rows.second + i * kPair);
    const __m512i sixteen =
        InterleaveAvx512(BlendChannelAvx512<kOneRow, 0>(a, b, ofA, ofB), BlendChannelAvx512<kOneRow, 1>(a, b, ofA, ofB),
                         BlendChannelAvx512<kOneRow, 2>(a, b, ofA, ofB), BlendChannelAvx512<kOneRow, 3>(a, b, ofA, ofB));
    _mm512_storeu_si512(out + i * kPixel, sixteen);
  }
  BlendScalar<kOneRow>(rows, columnWeights, i, pixels, out);
}

template <bool kOneRow>
constexpr os::KernelTable<BlendFunction> kBlend{{&BlendSse2<kOneRow>, &BlendAvx2<kOneRow>, &BlendAvx512<kOneRow>}};

}  // namespace

void BlendPairs(const unsigned char* first, const unsigned char* second, const float* columnWeights, float firstWeight,
                float secondWeight, std::size_t pixels, unsigned char* out) noexcept {
  const auto blend = first == second && firstWeight == 1 && secondWeight == 0 ? kBlend<true>.Active() : kBlend<false>.Active();
  blend({first, second, firstWeight, secondWeight}, columnWeights, pixels, out);
}

}  // namespace qxv
