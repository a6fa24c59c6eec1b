// pixel_layout_yuv.cpp - rows between Y, U, V and the working layout A, R, G, B.
// All arithmetic is in single precision, and sums run from left to right. Fixed-point arithmetic gives other bytes for some
// colours, and so do fused multiplications, but for those below: every colour was tried, and the tests try every one again.

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

// Rounded by truncation: the half is in the sums, inside of their first fused multiplication, which moves no byte either.
QXV_INLINE_AVX512 __m512i ColoursAvx512(__m512 y, __m512 u, __m512 v) noexcept {
  const __m512 half = _mm512_set1_ps(0.5f);
  const __m512 redY = _mm512_fmadd_ps(_mm512_set1_ps(kRedY), y, half);
  const __m512 redYU = _mm512_fmadd_ps(_mm512_set1_ps(kRedU), u, redY);
  const __m512 red = _mm512_add_ps(redYU, _mm512_mul_ps(_mm512_set1_ps(kRedV), v));
  const __m512 greenY = _mm512_fmadd_ps(_mm512_set1_ps(kGreenY), y, half);
  const __m512 greenYU = _mm512_sub_ps(greenY, _mm512_mul_ps(_mm512_set1_ps(kGreenU), u));
  const __m512 green = _mm512_sub_ps(greenYU, _mm512_mul_ps(_mm512_set1_ps(kGreenV), v));
  const __m512 blueU = _mm512_fmadd_ps(_mm512_set1_ps(kBlueU), u, half);
  const __m512 blueYU = _mm512_add_ps(_mm512_mul_ps(_mm512_set1_ps(kBlueY), y), blueU);
  const __m512 blue = _mm512_fmadd_ps(_mm512_set1_ps(kBlueV), v, blueYU);
  return InterleaveAvx512(_mm512_set1_epi32(255), _mm512_cvttps_epi32(red), _mm512_cvttps_epi32(green),
                          _mm512_cvttps_epi32(blue));
}

// One byte of each pixel at the lowest place of 32 bits.
constexpr std::size_t kLeaveZero = 0x80;

template <std::size_t kBytes, std::size_t kPlace>
constexpr ByteOrder<64> MakePick64() noexcept {
  ByteOrder<64> all{};
  for (std::size_t i = 0; i < 64; ++i) {
    all.from[i] = static_cast<unsigned char>(i % 4 == 0 ? i / 4 * kBytes + kPlace : 0);
  }
  return all;
}

// In halves of 16 bytes; the second half of 24 bytes stands 4 bytes into its 16.
template <std::size_t kBytes, std::size_t kPlace>
constexpr ByteOrder<32> MakePick32() noexcept {
  ByteOrder<32> all{};
  for (std::size_t i = 0; i < 32; ++i) {
    const std::size_t inHalf = i % 16 / 4 * kBytes + kPlace + (i >= 16 && kBytes == 3 ? 4 : 0);
    all.from[i] = static_cast<unsigned char>(i % 4 == 0 ? inHalf : kLeaveZero);
  }
  return all;
}

template <std::size_t kBytes, std::size_t kPlace>
constexpr ByteOrder<64> kPick64 = MakePick64<kBytes, kPlace>();
template <std::size_t kBytes, std::size_t kPlace>
constexpr ByteOrder<32> kPick32 = MakePick32<kBytes, kPlace>();

template <std::size_t kPlace>
QXV_ALWAYS_INLINE __m128i PickSse2(__m128i pixels) noexcept {
  return _mm_and_si128(_mm_srli_epi32(pixels, 8 * kPlace), _mm_set1_epi32(255));
}
template <std::size_t kBytes, std::size_t kPlace>
QXV_INLINE_AVX2 __m256i PickAvx2(__m256i pixels) noexcept {
  return _mm256_shuffle_epi8(pixels, _mm256_load_si256(reinterpret_cast<const __m256i*>(kPick32<kBytes, kPlace>.from.data())));
}
// As a number without its base. The byte becomes the lowest one of 2^23 in single precision, so a subtraction is all it takes.
template <std::size_t kBytes, std::size_t kPlace>
QXV_INLINE_AVX512 __m512 NumberAvx512(__m512i pixels, int base) noexcept {
  const __m512 most = _mm512_set1_ps(0x800000);
  const __m512i number = _mm512_mask_permutexvar_epi8(_mm512_castps_si512(most), 0x1111111111111111,
                                                      LoadOrderAvx512(kPick64<kBytes, kPlace>), pixels);
  return _mm512_sub_ps(_mm512_castsi512_ps(number), _mm512_set1_ps(static_cast<float>(0x800000 + base)));
}

// What a vector kernel reads behind its pixels, in pixels, where they have three bytes: 16 bytes instead of 12, 64 of 48.
template <class Pixel>
constexpr std::size_t kBehindSse2 = Pixel::kBytes == 3 ? 2 : 0;
template <class Pixel>
constexpr std::size_t kBehindAvx512 = Pixel::kBytes == 3 ? 6 : 0;

template <class Pixel>
void ToWorkingSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  std::size_t i = 0;
  for (; i + 4 + kBehindSse2<Pixel> <= pixels; i += 4) {
    const unsigned char* const from = in + kBytes * i;
    const __m128i four = kBytes == 3 ? LoadThreesSse2(from) : _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i colours = ColoursSse2(PickSse2<Pixel::kY>(four), PickSse2<Pixel::kU>(four), PickSse2<Pixel::kV>(four));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * i), colours);
  }
  ToWorkingScalar<Pixel>(in + kBytes * i, pixels - i, out + 4 * i);
}

template <class Pixel>
QXV_INLINE_AVX2 void ToWorking8(const unsigned char* in, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  const __m256i eight = LoadHalves(in, in + 8 * kBytes - 16);
  const __m256i y = PickAvx2<kBytes, Pixel::kY>(eight);
  const __m256i u = PickAvx2<kBytes, Pixel::kU>(eight);
  const __m256i v = PickAvx2<kBytes, Pixel::kV>(eight);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), ColoursAvx2(y, u, v));
}

template <class Pixel>
QXV_TARGET_AVX2 void ToWorkingAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  if (pixels < 8) {
    return ToWorkingScalar<Pixel>(in, pixels, out);
  }
  ToWorking8<Pixel>(in, out);
  for (std::size_t i = PixelsToBlock<32, 4>(out); i + 8 <= pixels; i += 8) {
    ToWorking8<Pixel>(in + kBytes * i, out + 4 * i);
  }
  ToWorking8<Pixel>(in + kBytes * (pixels - 8), out + 4 * (pixels - 8));
}

template <class Pixel>
QXV_INLINE_AVX512 void ToWorking16(__m512i sixteen, unsigned char* out) noexcept {
  const __m512 y = NumberAvx512<Pixel::kBytes, Pixel::kY>(sixteen, kYBase);
  const __m512 u = NumberAvx512<Pixel::kBytes, Pixel::kU>(sixteen, kColourBase);
  const __m512 v = NumberAvx512<Pixel::kBytes, Pixel::kV>(sixteen, kColourBase);
  _mm512_storeu_si512(out, ColoursAvx512(y, u, v));
}

template <class Pixel>
QXV_INLINE_AVX512 __m512i OnlySixteen(const unsigned char* in) noexcept {
  return _mm512_maskz_loadu_epi8(Pixel::kBytes == 3 ? 0x0000FFFFFFFFFFFF : 0xFFFFFFFFFFFFFFFF, in);
}

template <class Pixel>
QXV_TARGET_AVX512 void ToWorkingAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kBytes = Pixel::kBytes;
  if (pixels < 16) {
    return ToWorkingAvx2<Pixel>(in, pixels, out);
  }
  ToWorking16<Pixel>(OnlySixteen<Pixel>(in), out);
  std::size_t i = PixelsToBlock<64, 4>(out);
  for (; i + 16 + kBehindAvx512<Pixel> <= pixels; i += 16) {
    ToWorking16<Pixel>(_mm512_loadu_si512(in + kBytes * i), out + 4 * i);
  }
  if (i + 16 <= pixels) {
    ToWorking16<Pixel>(OnlySixteen<Pixel>(in + kBytes * i), out + 4 * i);
  }
  ToWorking16<Pixel>(OnlySixteen<Pixel>(in + kBytes * (pixels - 16)), out + 4 * (pixels - 16));
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
    StoreThreesSse2(InterleaveSse2(yFirst ? y : v, u, yFirst ? v : y, v), out + 3 * i);
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

// 24 bytes: the first 16, and the last 16.
template <class Pixel>
QXV_INLINE_AVX2 void FromWorking8(const unsigned char* in, unsigned char* out) noexcept {
  const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
  const __m256 r = _mm256_cvtepi32_ps(PickAvx2<4, 1>(eight));
  const __m256 g = _mm256_cvtepi32_ps(PickAvx2<4, 2>(eight));
  const __m256 b = _mm256_cvtepi32_ps(PickAvx2<4, 3>(eight));
  const __m256i y = RoundAvx2(QXV_SUM_AND_BASE(_mm256, add, add, kYRed, kYGreen, kYBlue, kYBase));
  const __m256i u = RoundAvx2(QXV_SUM_AND_BASE(_mm256, sub, add, kURed, kUGreen, kUBlue, kColourBase));
  const __m256i v = RoundAvx2(QXV_SUM_AND_BASE(_mm256, sub, sub, kVRed, kVGreen, kVBlue, kColourBase));
  const __m256i inHalves = _mm256_shuffle_epi8(PackAvx2(y, u, v, v), LoadOrderAvx2(kPixels<Pixel, 16>));
  const __m256i packed = _mm256_permutevar8x32_epi32(inHalves, _mm256_setr_epi32(0, 1, 2, 4, 2, 4, 5, 6));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(packed));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm256_extracti128_si256(packed, 1));
}

template <class Pixel>
QXV_TARGET_AVX2 void FromWorkingAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 8) {
    return FromWorkingScalar<Pixel>(in, pixels, out);
  }
  for (std::size_t i = 0; i + 8 <= pixels; i += 8) {
    FromWorking8<Pixel>(in + 4 * i, out + 3 * i);
  }
  FromWorking8<Pixel>(in + 4 * (pixels - 8), out + 3 * (pixels - 8));
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
