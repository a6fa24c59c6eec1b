// spline_piece.cpp - a run of samples in one interval, in three tiers; SplinePiece::WholeAt is their reference.
// Abscissas follow one another by single additions, a chain that nothing can shorten: the cubics are computed in its shadow.

#include "numerics/spline_piece.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

namespace {

using qxv::SplinePiece;
using qxv::SplineRun;

std::size_t SampleRest(const SplinePiece& piece, SplineRun& run, double* out, std::size_t from, std::size_t count) noexcept {
  for (; from < count && run.s <= run.limit; ++from, run.s += run.step) {
    out[from] = piece.WholeAt(run.left, run.right, run.s);
  }
  return from;
}

// The conversion to 32 bits gives the smallest integer for what lies outside, as TruncateToInt32 does.

std::size_t SampleBaseline(const SplinePiece& piece, SplineRun& run, double* out, std::size_t count) noexcept {
  const __m128d leftM = _mm_set1_pd(piece.leftM), rightM = _mm_set1_pd(piece.rightM), sixH = _mm_set1_pd(piece.sixH);
  const __m128d leftFactor = _mm_set1_pd(piece.leftFactor), rightFactor = _mm_set1_pd(piece.rightFactor);
  const __m128d leftEnd = _mm_set1_pd(run.left), rightEnd = _mm_set1_pd(run.right);
  const double step = run.step, limit = run.limit;
  double s0 = run.s;
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    const double s1 = s0 + step;
    if (!(s1 <= limit)) {
      break;
    }
    const __m128d at = _mm_set_pd(s1, s0);
    s0 = s1 + step;
    const __m128d b = _mm_sub_pd(rightEnd, at), a = _mm_sub_pd(at, leftEnd);
    const __m128d b3 = _mm_mul_pd(_mm_mul_pd(b, b), b), a3 = _mm_mul_pd(_mm_mul_pd(a, a), a);
    __m128d sum = _mm_add_pd(_mm_div_pd(_mm_mul_pd(leftM, b3), sixH), _mm_div_pd(_mm_mul_pd(rightM, a3), sixH));
    sum = _mm_add_pd(_mm_add_pd(sum, _mm_mul_pd(leftFactor, b)), _mm_mul_pd(rightFactor, a));
    _mm_storeu_pd(out + i, _mm_cvtepi32_pd(_mm_cvttpd_epi32(sum)));
  }
  run.s = s0;
  return SampleRest(piece, run, out, i, count);
}

QXV_TARGET_AVX2 std::size_t SampleAvx2(const SplinePiece& piece, SplineRun& run, double* out, std::size_t count) noexcept {
  const __m256d leftM = _mm256_set1_pd(piece.leftM), rightM = _mm256_set1_pd(piece.rightM);
  const __m256d sixH = _mm256_set1_pd(piece.sixH);
  const __m256d leftFactor = _mm256_set1_pd(piece.leftFactor), rightFactor = _mm256_set1_pd(piece.rightFactor);
  const __m256d leftEnd = _mm256_set1_pd(run.left), rightEnd = _mm256_set1_pd(run.right);
  const double step = run.step, limit = run.limit;
  double s0 = run.s;
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const double s1 = s0 + step, s2 = s1 + step, s3 = s2 + step;
    if (!(s3 <= limit)) {
      break;
    }
    const __m256d at = _mm256_set_pd(s3, s2, s1, s0);
    s0 = s3 + step;
    const __m256d b = _mm256_sub_pd(rightEnd, at), a = _mm256_sub_pd(at, leftEnd);
    const __m256d b3 = _mm256_mul_pd(_mm256_mul_pd(b, b), b), a3 = _mm256_mul_pd(_mm256_mul_pd(a, a), a);
    __m256d sum = _mm256_add_pd(_mm256_div_pd(_mm256_mul_pd(leftM, b3), sixH), _mm256_div_pd(_mm256_mul_pd(rightM, a3), sixH));
    sum = _mm256_add_pd(_mm256_add_pd(sum, _mm256_mul_pd(leftFactor, b)), _mm256_mul_pd(rightFactor, a));
    _mm256_storeu_pd(out + i, _mm256_cvtepi32_pd(_mm256_cvttpd_epi32(sum)));
  }
  run.s = s0;
  return SampleRest(piece, run, out, i, count);
}

constexpr qxv::os::KernelTable<std::size_t (*)(const SplinePiece&, SplineRun&, double*, std::size_t) noexcept> kSample{
    {&SampleBaseline, &SampleAvx2, &SampleAvx2}};

}  // namespace

std::size_t qxv::SampleSplinePiece(const SplinePiece& piece, SplineRun& run, double* out, std::size_t count) noexcept {
  return kSample.Active()(piece, run, out, count);
}
