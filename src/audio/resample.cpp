// resample.cpp - one channel at another rate, by straight lines between its samples.
// The position of each sample is computed anew, i * source rate / target rate, so no error adds up over a long block.

#include "foundation/numeric.h"
#include "os/cpu.h"
#include "os/intrinsics.h"
#include "qxv/audio.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

struct Source {
  const float* samples;
  std::int64_t count;
  double sourceRate;
  double targetRate;

  double At(std::int64_t k) const noexcept { return k >= 0 && k < count ? static_cast<double>(samples[k]) : 0.0; }
};

float ValueAt(const Source& source, std::int64_t i) noexcept {
  const double position = static_cast<double>(i) * source.sourceRate / source.targetRate;
  const std::int64_t k = qxv::TruncateToInt64(position);
  const double s0 = source.At(k), s1 = k < source.count ? source.At(k + 1) : 0.0;
  const auto whole = static_cast<double>(k);
  return static_cast<float>((position - whole) * s1 + (whole + 1 - position) * s0);
}

// The kernels write samples as long as both neighbours of a whole vector lie inside the source, and return their number. The
// products i * source rate stay below 2^31, since count does times that rate: added up from vector to vector they are exact.

std::int64_t InsideBaseline(const Source& source, float* target, std::int64_t count) noexcept {
  const __m128d targetRate = _mm_set1_pd(source.targetRate), step = _mm_set1_pd(2 * source.sourceRate), one = _mm_set1_pd(1);
  __m128d product = _mm_mul_pd(_mm_setr_pd(0, 1), _mm_set1_pd(source.sourceRate));
  std::int64_t i = 0;
  for (; i + 2 <= count; i += 2, product = _mm_add_pd(product, step)) {
    const __m128d position = _mm_div_pd(product, targetRate);
    const __m128i k = _mm_cvttpd_epi32(position);
    const std::int64_t both = _mm_cvtsi128_si64(k);
    const std::int64_t k0 = static_cast<std::int32_t>(both), k1 = both >> 32;
    if (k1 + 1 >= source.count) {
      break;
    }
    // Both neighbours of a sample in one load each, then the first ones and the second ones together.
    const __m128 a = _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(source.samples + k0)));
    const __m128 b = _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(source.samples + k1)));
    const __m128 pairs = _mm_unpacklo_ps(a, b);  // a0 b0 a1 b1
    const __m128d s0 = _mm_cvtps_pd(pairs), s1 = _mm_cvtps_pd(_mm_movehl_ps(pairs, pairs));
    const __m128d whole = _mm_cvtepi32_pd(k);
    const __m128d sum =
        _mm_add_pd(_mm_mul_pd(_mm_sub_pd(position, whole), s1), _mm_mul_pd(_mm_sub_pd(_mm_add_pd(whole, one), position), s0));
    const double bits = _mm_cvtsd_f64(_mm_castps_pd(_mm_cvtpd_ps(sum)));
    std::memcpy(target + i, &bits, sizeof bits);
  }
  return i;
}

// The weight k + 1 - position is 1 - (position - k), bit for bit: for k above 0 nothing is rounded, for 0 it is the same term.
// Below two source samples a step, all neighbours of a vector's samples lie in one vector of the source: positions are told by
// their distance from the first.
constexpr double kClosestSteps = 2;

QXV_TARGET_AVX2 std::int64_t InsideAvx2(const Source& source, float* target, std::int64_t count) noexcept {
  if (source.sourceRate >= kClosestSteps * source.targetRate) {
    return InsideBaseline(source, target, count);
  }
  const __m256d targetRate = _mm256_set1_pd(source.targetRate), step = _mm256_set1_pd(4 * source.sourceRate);
  const __m256d one = _mm256_set1_pd(1);
  __m256d product = _mm256_mul_pd(_mm256_setr_pd(0, 1, 2, 3), _mm256_set1_pd(source.sourceRate));
  std::int64_t i = 0;
  for (; i + 4 <= count; i += 4, product = _mm256_add_pd(product, step)) {
    const __m256d position = _mm256_div_pd(product, targetRate);
    const __m128i k = _mm256_cvttpd_epi32(position);
    const std::int64_t first = _mm_cvtsi128_si32(k);
    if (first + 9 > source.count) {
      break;
    }
    const __m256i distance = _mm256_castsi128_si256(_mm_sub_epi32(k, _mm_broadcastd_epi32(k)));  // the lower half counts
    const __m256 left = _mm256_permutevar8x32_ps(_mm256_loadu_ps(source.samples + first), distance);
    const __m256 right = _mm256_permutevar8x32_ps(_mm256_loadu_ps(source.samples + first + 1), distance);
    const __m256d s0 = _mm256_cvtps_pd(_mm256_castps256_ps128(left)), s1 = _mm256_cvtps_pd(_mm256_castps256_ps128(right));
    const __m256d beyond = _mm256_sub_pd(position, _mm256_round_pd(position, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
    const __m256d sum = _mm256_add_pd(_mm256_mul_pd(beyond, s1), _mm256_mul_pd(_mm256_sub_pd(one, beyond), s0));
    _mm_storeu_ps(target + i, _mm256_cvtpd_ps(sum));
  }
  return i;
}

QXV_TARGET_AVX512 std::int64_t InsideAvx512(const Source& source, float* target, std::int64_t count) noexcept {
  if (source.sourceRate >= kClosestSteps * source.targetRate) {
    return InsideBaseline(source, target, count);
  }
  const __m512d targetRate = _mm512_set1_pd(source.targetRate), step = _mm512_set1_pd(8 * source.sourceRate);
  const __m512d one = _mm512_set1_pd(1);
  const __m512i neighbours = _mm512_setr_epi32(0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1);
  __m512d product = _mm512_mul_pd(_mm512_setr_pd(0, 1, 2, 3, 4, 5, 6, 7), _mm512_set1_pd(source.sourceRate));
  std::int64_t i = 0;
  for (; i + 8 <= count; i += 8, product = _mm512_add_pd(product, step)) {
    const __m512d position = _mm512_div_pd(product, targetRate);
    const __m256i k = _mm512_cvttpd_epi32(position);
    const std::int64_t first = _mm_cvtsi128_si32(_mm256_castsi256_si128(k));
    if (first + 16 > source.count) {
      break;
    }
    const __m256i distance = _mm256_sub_epi32(k, _mm256_broadcastd_epi32(_mm256_castsi256_si128(k)));
    const __m512i both = _mm512_add_epi32(_mm512_broadcast_i64x4(distance), neighbours);
    const __m512 samples = _mm512_permutexvar_ps(both, _mm512_loadu_ps(source.samples + first));
    const __m512d s0 = _mm512_cvtps_pd(_mm512_castps512_ps256(samples));
    const __m512d s1 = _mm512_cvtps_pd(_mm512_extractf32x8_ps(samples, 1));
    const __m512d beyond = _mm512_sub_pd(position, _mm512_roundscale_pd(position, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
    const __m512d sum = _mm512_add_pd(_mm512_mul_pd(beyond, s1), _mm512_mul_pd(_mm512_sub_pd(one, beyond), s0));
    _mm256_storeu_ps(target + i, _mm512_cvtpd_ps(sum));
  }
  return i;
}

constexpr qxv::os::KernelTable<std::int64_t (*)(const Source&, float*, std::int64_t) noexcept> kInside{
    {&InsideBaseline, &InsideAvx2, &InsideAvx512}};

}  // namespace

// KEPT: the product of count and rate wraps at 32 bits. Pinned by ReSampleKept.TheProductOfCountAndRateWraps.
int QXVReSample(const float* pSrc, int nSrcRate, int nSrcCount, float* pDst, int nDstRate, int& nDstCount) {
  if (nSrcRate == nDstRate) {
    nDstCount = nSrcCount;
    if (nSrcCount > 0 && (pSrc == nullptr || pDst == nullptr)) {
      nDstCount = 0;
      return -1;
    }
    if (nSrcCount > 0) {
      std::memmove(pDst, pSrc, static_cast<std::size_t>(nSrcCount) * sizeof(float));
    }
    return 0;
  }
  nDstCount = 0;
  if (nSrcCount == 0) {
    return 0;
  }
  if (nSrcRate == 0 || (nSrcCount > 0 && (pSrc == nullptr || pDst == nullptr))) {
    return -1;
  }
  std::int64_t count = std::int64_t{qxv::WrapMultiply(nSrcCount, nDstRate)} / nSrcRate;
  if (nSrcCount < 0) {
    count = std::min<std::int64_t>(count, 0);  // whatever the product wraps to: nothing is written out of nothing
  }
  nDstCount = static_cast<int>(count);  // 2^31 comes out as -2^31: no samples
  const Source source{pSrc, nSrcCount, static_cast<double>(nSrcRate), static_cast<double>(nDstRate)};
  std::int64_t i = nSrcRate > 0 && nDstRate > 0 ? kInside.Active()(source, pDst, count) : 0;
  for (; i < nDstCount; ++i) {
    pDst[i] = ValueAt(source, i);
  }
  return 0;
}
