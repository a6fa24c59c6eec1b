// pixel_layout_yuv.cpp - rows between Y, U, V and the working layout A, R, G, B.
// All arithmetic is in single precision, and sums run from left to right. Fixed-point arithmetic gives other bytes for some
// colours, and so do fused multiplications.

#include "image/pixel_layout_yuv.h"

#include "image/pixel_layout_vectors.h"

#include <cstring>

namespace qxv {
namespace {

// KEPT: three luma factors that differ and tiny cross terms. Colours converted earlier must come out the same.
//   Pinned by PixelLayoutKept.ColoursFollowTheListedFactors.
constexpr float kRedY = 1.164352f, kRedU = 0.000016f, kRedV = 1.596014f;
constexpr float kGreenY = 1.164402f, kGreenU = 0.391741f, kGreenV = 0.812962f;  // U and V are subtracted
constexpr float kBlueY = 1.164345f, kBlueU = 2.017219f, kBlueV = 0.000018f;
constexpr float kYRed = 0.25679f, kYGreen = 0.504135f, kYBlue = 0.0979f;
constexpr float kURed = -0.148224f, kUGreen = 0.290985f, kUBlue = 0.439224f;  // green is subtracted
constexpr float kVRed = 0.439224f, kVGreen = 0.367783f, kVBlue = 0.071426f;   // green and blue are subtracted
constexpr int kYBase = 16, kColourBase = 128;

// Where Y, U and V stand among the bytes of a pixel.
struct Yuv3 {
  static constexpr std::size_t kBytes = 3, kY = 0, kU = 1, kV = 2;
};
struct Vuy3 {
  static constexpr std::size_t kBytes = 3, kY = 2, kU = 1, kV = 0;
};
struct WideYuv {
  static constexpr std::size_t kBytes = 4, kY = 1, kU = 2, kV = 3;
};

template <class Pixel>
void ToWorkingScalar(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, in += Pixel::kBytes, out += 4) {
    const auto y = static_cast<float>(in[Pixel::kY] - kYBase);
    const auto u = static_cast<float>(in[Pixel::kU] - kColourBase);
    const auto v = static_cast<float>(in[Pixel::kV] - kColourBase);
    out[0] = 255;
    out[1] = RoundToByte(kRedY * y + kRedU * u + kRedV * v);
    out[2] = RoundToByte(kGreenY * y - kGreenU * u - kGreenV * v);
    out[3] = RoundToByte(kBlueY * y + kBlueU * u + kBlueV * v);
  }
}

template <class Pixel>
void FromWorkingScalar(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, in += 4, out += Pixel::kBytes) {
    const float r = in[1], g = in[2], b = in[3];
    out[Pixel::kY] = RoundToByte(kYRed * r + kYGreen * g + kYBlue * b + kYBase);
    out[Pixel::kU] = RoundToByte(kURed * r - kUGreen * g + kUBlue * b + kColourBase);
    out[Pixel::kV] = RoundToByte(kVRed * r - kVGreen * g - kVBlue * b + kColourBase);
  }
}

// The same three sums a tier; SIGN2 and SIGN3 are add or sub.
#define QXV_SUM(P, SIGN2, SIGN3, c1, x1, c2, x2, c3, x3)                                               \
  P##_##SIGN3##_ps(P##_##SIGN2##_ps(P##_mul_ps(P##_set1_ps(c1), x1), P##_mul_ps(P##_set1_ps(c2), x2)), \
                   P##_mul_ps(P##_set1_ps(c3), x3))

QXV_ALWAYS_INLINE __m128i ColoursSse2(__m128i y32, __m128i u32, __m128i v32) noexcept {
  const __m128 y = _mm_cvtepi32_ps(_mm_sub_epi32(y32, _mm_set1_epi32(kYBase)));
  const __m128 u = _mm_cvtepi32_ps(_mm_sub_epi32(u32, _mm_set1_epi32(kColourBase)));
  const __m128 v = _mm_cvtepi32_ps(_mm_sub_epi32(v32, _mm_set1_epi32(kColourBase)));
  return InterleaveSse2(_mm_set1_epi32(255), RoundSse2(QXV_SUM(_mm, add, add, kRedY, y, kRedU, u, kRedV, v)),
                        RoundSse2(QXV_SUM(_mm, sub, sub, kGreenY, y, kGreenU, u, kGreenV, v)),
                        RoundSse2(QXV_SUM(_mm, add, add, kBlueY, y, kBlueU, u, kBlueV, v)));
}

QXV_INLINE_AVX2 __m256i ColoursAvx2(__m256i y32, __m256i u32, __m256i v32) noexcept {
  const __m256 y = _mm256_cvtepi32_ps(_mm256_sub_epi32(y32, _mm256_set1_epi32(kYBase)));
  const __m256 u = _mm256_cvtepi32_ps(_mm256_sub_epi32(u32, _mm256_set1_epi32(kColourBase)));
  const __m256 v = _mm256_cvtepi32_ps(_mm256_sub_epi32(v32, _mm256_set1_epi32(kColourBase)));
  return InterleaveAvx2(_mm256_set1_epi32(255), RoundAvx2(QXV_SUM(_mm256, add, add, kRedY, y, kRedU, u, kRedV, v)),
                        RoundAvx2(QXV_SUM(_mm256, sub, sub, kGreenY, y, kGreenU, u, kGreenV, v)),
                        RoundAvx2(QXV_SUM(_mm256, add, add, kBlueY, y, kBlueU, u, kBlueV, v)));
}

QXV_INLINE_AVX512 __m512i ColoursAvx512(__m512i y32, __m512i u32, __m512i v32) noexcept {
  const __m512 y = _mm512_cvtepi32_ps(_mm512_sub_epi32(y32, _mm512_set1_epi32(kYBase)));
  const __m512 u = _mm512_cvtepi32_ps(_mm512_sub_epi32(u32, _mm512_set1_epi32(kColourBase)));
  const __m512 v = _mm512_cvtepi32_ps(_mm512_sub_epi32(v32, _mm512_set1_epi32(kColourBase)));
  return InterleaveAvx512(_mm512_set1_epi32(255), RoundAvx512(QXV_SUM(_mm512, add, add, kRedY, y, kRedU, u, kRedV, v)),
                          RoundAvx512(QXV_SUM(_mm512, sub, sub, kGreenY, y, kGreenU, u, kGreenV, v)),
                          RoundAvx512(QXV_SUM(_mm512, add, add, kBlueY, y, kBlueU, u, kBlueV, v)));
}

// One byte of each pixel, widened to 32 bits.
template <std::size_t kRegister>
constexpr ByteOrder<kRegister> MakePick(std::size_t bytesPerPixel, std::size_t place) noexcept {
  ByteOrder<kRegister> all{};
  for (std::size_t i = 0; i < kRegister; ++i) {
    all.from[i] = static_cast<unsigned char>(i % 4 == 0 ? i / 4 * bytesPerPixel + place : 0x80);
  }
  return all;
}

template <std::size_t kRegister, std::size_t kBytes, std::size_t kPlace>
constexpr ByteOrder<kRegister> kPick = MakePick<kRegister>(kBytes, kPlace);

template <std::size_t kBytes, std::size_t kPlace>
QXV_ALWAYS_INLINE __m128i PickSse2(const unsigned char* in) noexcept {
  return _mm_setr_epi32(in[kPlace], in[kBytes + kPlace], in[2 * kBytes + kPlace], in[3 * kBytes + kPlace]);
}
template <std::size_t kBytes, std::size_t kPlace>
QXV_INLINE_AVX2 __m256i PickAvx2(__m256i pixels) noexcept {
  return _mm256_shuffle_epi8(pixels, LoadOrderAvx2(kPick<16, kBytes, kPlace>));
}
template <std::size_t kBytes, std::size_t kPlace>
QXV_INLINE_AVX512 __m512i PickAvx512(__m512i pixels) noexcept {
  return _mm512_maskz_permutexvar_epi8(0x1111111111111111, LoadOrderAvx512(kPick<64, kBytes, kPlace>), pixels);
}

// What a vector kernel touches behind its pixels, in pixels, where they have three bytes: 28 bytes instead of 24, 64 of 48.
template <class Pixel>
constexpr std::size_t kBehindAvx2 = Pixel::kBytes == 3 ? 2 : 0;
template <class Pixel>
constexpr std::size_t kBehindAvx512 = Pixel::kBytes == 3 ? 6 : 0;

template <class Pixel>
void ToWorkingSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    const unsigned char* const from = in + kBytes * i;
    const __m128i y = PickSse2<kBytes, Pixel::kY>(from);
    const __m128i u = PickSse2<kBytes, Pixel::kU>(from);
    const __m128i v = PickSse2<kBytes, Pixel::kV>(from);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * i), ColoursSse2(y, u, v));
  }
  ToWorkingScalar<Pixel>(in + kBytes * i, pixels - i, out + 4 * i);
}

template <class Pixel>
QXV_TARGET_AVX2 void ToWorkingAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  std::size_t i = 0;
  for (; i + 8 + kBehindAvx2<Pixel> <= pixels; i += 8) {
    const unsigned char* const from = in + kBytes * i;
    const __m256i eight = LoadHalves(from, from + 4 * kBytes);
    const __m256i y = PickAvx2<kBytes, Pixel::kY>(eight);
    const __m256i u = PickAvx2<kBytes, Pixel::kU>(eight);
    const __m256i v = PickAvx2<kBytes, Pixel::kV>(eight);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * i), ColoursAvx2(y, u, v));
  }
  ToWorkingScalar<Pixel>(in + kBytes * i, pixels - i, out + 4 * i);
}

template <class Pixel>
QXV_TARGET_AVX512 void ToWorkingAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  std::size_t i = 0;
  for (; i + 16 + kBehindAvx512<Pixel> <= pixels; i += 16) {
    const __m512i sixteen = _mm512_loadu_si512(in + kBytes * i);
    const __m512i y = PickAvx512<kBytes, Pixel::kY>(sixteen);
    const __m512i u = PickAvx512<kBytes, Pixel::kU>(sixteen);
    const __m512i v = PickAvx512<kBytes, Pixel::kV>(sixteen);
    _mm512_storeu_si512(out + 4 * i, ColoursAvx512(y, u, v));
  }
  ToWorkingAvx2<Pixel>(in + kBytes * i, pixels - i, out + 4 * i);
}

#define QXV_SUM_AND_BASE(P, SIGN2, SIGN3, c1, c2, c3, base) \
  P##_add_ps(QXV_SUM(P, SIGN2, SIGN3, c1, r, c2, g, c3, b), P##_set1_ps(base))

template <class Pixel>
void FromWorkingSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m128i byte = _mm_set1_epi32(255);
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 4 * i));
    const __m128 r = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(four, 8), byte));
    const __m128 g = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(four, 16), byte));
    const __m128 b = _mm_cvtepi32_ps(_mm_srli_epi32(four, 24));
    const __m128i y = RoundSse2(QXV_SUM_AND_BASE(_mm, add, add, kYRed, kYGreen, kYBlue, kYBase));
    const __m128i u = RoundSse2(QXV_SUM_AND_BASE(_mm, sub, add, kURed, kUGreen, kUBlue, kColourBase));
    const __m128i v = RoundSse2(QXV_SUM_AND_BASE(_mm, sub, sub, kVRed, kVGreen, kVBlue, kColourBase));
    const bool yFirst = Pixel::kY == 0;
    alignas(16) unsigned char wide[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(wide), InterleaveSse2(yFirst ? y : v, u, yFirst ? v : y, v));
    for (std::size_t n = 0; n < 4; ++n) {
      std::memcpy(out + 3 * (i + n), wide + 4 * n, 3);
    }
  }
  FromWorkingScalar<Pixel>(in + 4 * i, pixels - i, out + 3 * i);
}

// From the four planes of 4 pixels in each 16 bytes to pixels of three bytes.
template <class Pixel, std::size_t kRegister>
constexpr ByteOrder<kRegister> MakePixels() noexcept {
  ByteOrder<kRegister> all{};
  for (std::size_t i = 0; i < kRegister; ++i) {
    const std::size_t pixel = i / 3, place = i % 3;
    const std::size_t plane = place == Pixel::kY ? 0 : place == Pixel::kU ? 1 : 2;
    all.from[i] = static_cast<unsigned char>(i < kRegister / 4 * 3 ? pixel / 4 * 16 + plane * 4 + pixel % 4 : 0x80);
  }
  return all;
}
template <class Pixel, std::size_t kRegister>
constexpr ByteOrder<kRegister> kPixels = MakePixels<Pixel, kRegister>();

template <class Pixel>
QXV_TARGET_AVX2 void FromWorkingAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m256i order = LoadOrderAvx2(kPixels<Pixel, 16>);
  std::size_t i = 0;
  for (; i + 8 + kBehindAvx2<Pixel> <= pixels; i += 8) {
    const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + 4 * i));
    const __m256 r = _mm256_cvtepi32_ps(PickAvx2<4, 1>(eight));
    const __m256 g = _mm256_cvtepi32_ps(PickAvx2<4, 2>(eight));
    const __m256 b = _mm256_cvtepi32_ps(PickAvx2<4, 3>(eight));
    const __m256i y = RoundAvx2(QXV_SUM_AND_BASE(_mm256, add, add, kYRed, kYGreen, kYBlue, kYBase));
    const __m256i u = RoundAvx2(QXV_SUM_AND_BASE(_mm256, sub, add, kURed, kUGreen, kUBlue, kColourBase));
    const __m256i v = RoundAvx2(QXV_SUM_AND_BASE(_mm256, sub, sub, kVRed, kVGreen, kVBlue, kColourBase));
    const __m256i packed = _mm256_shuffle_epi8(PackAvx2(y, u, v, v), order);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 3 * i), _mm256_castsi256_si128(packed));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 3 * i + 12), _mm256_extracti128_si256(packed, 1));
  }
  FromWorkingScalar<Pixel>(in + 4 * i, pixels - i, out + 3 * i);
}

template <class Pixel>
QXV_TARGET_AVX512 void FromWorkingAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m512i order = LoadOrderAvx512(kPixels<Pixel, 64>);
  const __m512i byte = _mm512_set1_epi32(255);
  std::size_t i = 0;
  for (; i + 16 <= pixels; i += 16) {
    const __m512i sixteen = _mm512_loadu_si512(in + 4 * i);
    const __m512 r = _mm512_cvtepi32_ps(_mm512_and_si512(_mm512_srli_epi32(sixteen, 8), byte));
    const __m512 g = _mm512_cvtepi32_ps(_mm512_and_si512(_mm512_srli_epi32(sixteen, 16), byte));
    const __m512 b = _mm512_cvtepi32_ps(_mm512_srli_epi32(sixteen, 24));
    const __m512i y = RoundAvx512(QXV_SUM_AND_BASE(_mm512, add, add, kYRed, kYGreen, kYBlue, kYBase));
    const __m512i u = RoundAvx512(QXV_SUM_AND_BASE(_mm512, sub, add, kURed, kUGreen, kUBlue, kColourBase));
    const __m512i v = RoundAvx512(QXV_SUM_AND_BASE(_mm512, sub, sub, kVRed, kVGreen, kVBlue, kColourBase));
    const __m512i packed = _mm512_permutexvar_epi8(order, PackAvx512(y, u, v, v));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 3 * i), _mm512_castsi512_si256(packed));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 3 * i + 32), _mm512_extracti32x4_epi32(packed, 2));
  }
  FromWorkingAvx2<Pixel>(in + 4 * i, pixels - i, out + 3 * i);
}

#undef QXV_SUM_AND_BASE
#undef QXV_SUM

using Kernels = os::KernelTable<void (*)(const unsigned char*, std::size_t, unsigned char*) noexcept>;
template <class Pixel>
constexpr Kernels kToWorking{{&ToWorkingSse2<Pixel>, &ToWorkingAvx2<Pixel>, &ToWorkingAvx512<Pixel>}};
template <class Pixel>
constexpr Kernels kFromWorking{{&FromWorkingSse2<Pixel>, &FromWorkingAvx2<Pixel>, &FromWorkingAvx512<Pixel>}};

}  // namespace

void YuvToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kToWorking<Yuv3>.Active()(in, pixels, out);
}

void VuyToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kToWorking<Vuy3>.Active()(in, pixels, out);
}

void WideYuvToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kToWorking<WideYuv>.Active()(in, pixels, out);
}

void WorkingToYuv(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kFromWorking<Yuv3>.Active()(in, pixels, out);
}

void WorkingToVuy(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kFromWorking<Vuy3>.Active()(in, pixels, out);
}

}  // namespace qxv
