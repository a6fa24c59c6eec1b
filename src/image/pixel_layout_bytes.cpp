// pixel_layout_bytes.cpp - rows whose pixels change their order of bytes only.
// Working: A R G B a pixel. Others: B G R A, B G R or R G B a pixel.

#include "image/pixel_layout_bytes.h"

#include "image/pixel_layout_vectors.h"

namespace qxv {
namespace {

enum class Order { Bgr, Rgb };

// The byte of three that holds channel 1, 2 or 3 of the working layout.
constexpr std::size_t PlaceOf(Order order, std::size_t channel) noexcept {
  return order == Order::Rgb ? channel - 1 : 3 - channel;
}

void ReverseScalar(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, in += 4, out += 4) {
    out[0] = in[3];
    out[1] = in[2];
    out[2] = in[1];
    out[3] = in[0];
  }
}

template <Order kOrder>
void WidenScalar(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, in += 3, out += 4) {
    out[0] = 255;
    out[1] = in[PlaceOf(kOrder, 1)];
    out[2] = in[PlaceOf(kOrder, 2)];
    out[3] = in[PlaceOf(kOrder, 3)];
  }
}

template <Order kOrder>
void NarrowScalar(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, in += 4, out += 3) {
    out[PlaceOf(kOrder, 1)] = in[1];
    out[PlaceOf(kOrder, 2)] = in[2];
    out[PlaceOf(kOrder, 3)] = in[3];
  }
}

// Any two bytes of the lowest 16 bits and of the highest change places, then both halves do.
QXV_ALWAYS_INLINE __m128i ReversedSse2(__m128i four) noexcept {
  const __m128i swapped = _mm_or_si128(_mm_slli_epi16(four, 8), _mm_srli_epi16(four, 8));
  return _mm_shufflehi_epi16(_mm_shufflelo_epi16(swapped, 0xB1), 0xB1);
}

void ReverseSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 4 * i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * i), ReversedSse2(four));
  }
  ReverseScalar(in + 4 * i, pixels - i, out + 4 * i);
}

// Four pixels read 16 bytes of three a pixel, so two more pixels must be there.
template <Order kOrder>
void WidenSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m128i opaque = _mm_set1_epi32(0xFF);
  std::size_t i = 0;
  for (; i + 6 <= pixels; i += 4) {
    const __m128i four = LoadThreesSse2(in + 3 * i);
    const __m128i placed = kOrder == Order::Bgr ? ReversedSse2(four) : _mm_slli_epi32(four, 8);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * i), _mm_or_si128(placed, opaque));
  }
  WidenScalar<kOrder>(in + 3 * i, pixels - i, out + 4 * i);
}

template <Order kOrder>
void NarrowSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 4 * i));
    StoreThreesSse2(kOrder == Order::Bgr ? ReversedSse2(four) : _mm_srli_epi32(four, 8), out + 3 * i);
  }
  NarrowScalar<kOrder>(in + 4 * i, pixels - i, out + 3 * i);
}

template <std::size_t kBytes>
constexpr ByteOrder<kBytes> MakeReverse() noexcept {
  ByteOrder<kBytes> all{};
  for (std::size_t i = 0; i < kBytes; ++i) {
    all.from[i] = static_cast<unsigned char>(i / 4 * 4 + 3 - i % 4);
  }
  return all;
}

// The first byte of each four stays open: 0x80 gives zero, or a mask leaves it out.
template <std::size_t kBytes>
constexpr ByteOrder<kBytes> MakeWiden(Order order) noexcept {
  ByteOrder<kBytes> all{};
  for (std::size_t i = 0; i < kBytes; ++i) {
    all.from[i] = static_cast<unsigned char>(i % 4 == 0 ? 0x80 : i / 4 * 3 + PlaceOf(order, i % 4));
  }
  return all;
}

// The byte of a row in the working layout that goes to byte i of a row of three bytes a pixel.
constexpr std::size_t SourceOf(Order order, std::size_t i) noexcept { return i / 3 * 4 + 1 + PlaceOf(order, i % 3 + 1); }

constexpr ByteOrder<16> MakeNarrow(Order order) noexcept {
  ByteOrder<16> all{};
  for (std::size_t i = 0; i < 16; ++i) {
    all.from[i] = static_cast<unsigned char>(i < 12 ? SourceOf(order, i) : 0x80);
  }
  return all;
}

constexpr ByteOrder<16> kReverse16 = MakeReverse<16>();
template <Order kOrder>
constexpr ByteOrder<16> kWiden16 = MakeWiden<16>(kOrder);
template <Order kOrder>
constexpr ByteOrder<16> kNarrow16 = MakeNarrow(kOrder);

QXV_INLINE_AVX2 void Reverse8(const unsigned char* in, unsigned char* out) noexcept {
  const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_shuffle_epi8(eight, LoadOrderAvx2(kReverse16)));
}

QXV_TARGET_AVX2 void ReverseAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 8) {
    return ReverseScalar(in, pixels, out);
  }
  Reverse8(in, out);
  for (std::size_t i = PixelsToBlock<32, 4>(out); i + 8 <= pixels; i += 8) {
    Reverse8(in + 4 * i, out + 4 * i);
  }
  Reverse8(in + 4 * (pixels - 8), out + 4 * (pixels - 8));
}

QXV_INLINE_AVX512 void Reverse16(const unsigned char* in, unsigned char* out) noexcept {
  const __m512i order = _mm512_broadcast_i32x4(_mm_load_si128(reinterpret_cast<const __m128i*>(kReverse16.from.data())));
  _mm512_storeu_si512(out, _mm512_shuffle_epi8(_mm512_loadu_si512(in), order));
}

QXV_TARGET_AVX512 void ReverseAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 16) {
    return ReverseAvx2(in, pixels, out);
  }
  Reverse16(in, out);
  for (std::size_t i = PixelsToBlock<64, 4>(out); i + 16 <= pixels; i += 16) {
    Reverse16(in + 4 * i, out + 4 * i);
  }
  Reverse16(in + 4 * (pixels - 16), out + 4 * (pixels - 16));
}

// The second half of the 24 bytes stands 4 bytes into its 16.
template <Order kOrder>
QXV_INLINE_AVX2 void Widen8(const unsigned char* in, unsigned char* out) noexcept {
  const __m256i order =
      _mm256_add_epi8(LoadOrderAvx2(kWiden16<kOrder>), _mm256_setr_epi64x(0, 0, 0x0404040404040404, 0x0404040404040404));
  const __m256i eight = _mm256_shuffle_epi8(LoadHalves(in, in + 8), order);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_or_si256(eight, _mm256_set1_epi32(0xFF)));
}

template <Order kOrder>
QXV_TARGET_AVX2 void WidenAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 8) {
    return WidenScalar<kOrder>(in, pixels, out);
  }
  Widen8<kOrder>(in, out);
  for (std::size_t i = PixelsToBlock<32, 4>(out); i + 8 <= pixels; i += 8) {
    Widen8<kOrder>(in + 3 * i, out + 4 * i);
  }
  Widen8<kOrder>(in + 3 * (pixels - 8), out + 4 * (pixels - 8));
}

template <Order kOrder>
QXV_INLINE_AVX2 __m256i NarrowInHalves(const unsigned char* in) noexcept {
  return _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(in)), LoadOrderAvx2(kNarrow16<kOrder>));
}

// 24 bytes: the first 16, and the last 16.
template <Order kOrder>
QXV_INLINE_AVX2 void Narrow8(const unsigned char* in, unsigned char* out) noexcept {
  const __m256i eight = _mm256_permutevar8x32_epi32(NarrowInHalves<kOrder>(in), _mm256_setr_epi32(0, 1, 2, 4, 2, 4, 5, 6));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(eight));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm256_extracti128_si256(eight, 1));
}

// Four times 24 bytes as three times 32, each block turned so that its parts stand where they go.
template <Order kOrder>
QXV_INLINE_AVX2 void Narrow32(const unsigned char* in, unsigned char* out) noexcept {
  const __m256i first = _mm256_permutevar8x32_epi32(NarrowInHalves<kOrder>(in), _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
  const __m256i second = _mm256_permutevar8x32_epi32(NarrowInHalves<kOrder>(in + 32), _mm256_setr_epi32(2, 4, 5, 6, 7, 7, 0, 1));
  const __m256i third = _mm256_permutevar8x32_epi32(NarrowInHalves<kOrder>(in + 64), _mm256_setr_epi32(5, 6, 7, 7, 0, 1, 2, 4));
  const __m256i fourth = _mm256_permutevar8x32_epi32(NarrowInHalves<kOrder>(in + 96), _mm256_setr_epi32(7, 7, 0, 1, 2, 4, 5, 6));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_blend_epi32(first, second, 0xC0));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 32), _mm256_blend_epi32(second, third, 0xF0));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 64), _mm256_blend_epi32(third, fourth, 0xFC));
}

template <Order kOrder>
QXV_TARGET_AVX2 void NarrowAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  if (pixels < 8) {
    return NarrowScalar<kOrder>(in, pixels, out);
  }
  std::size_t i = 0;
  if (pixels >= 64) {
    Narrow32<kOrder>(in, out);
    i = PixelsToBlock<32, 3>(out);
  }
  for (; i + 32 <= pixels; i += 32) {
    Narrow32<kOrder>(in + 4 * i, out + 3 * i);
  }
  for (; i + 8 <= pixels; i += 8) {
    Narrow8<kOrder>(in + 4 * i, out + 3 * i);
  }
  Narrow8<kOrder>(in + 4 * (pixels - 8), out + 3 * (pixels - 8));
}

using Kernels = os::KernelTable<decltype(&ReverseScalar)>;
// Three bytes a pixel put most loads or stores of 64 bytes across two lines of the cache, which costs more than they save.
constexpr Kernels kReverse{{&ReverseSse2, &ReverseAvx2, &ReverseAvx512}};
template <Order kOrder>
constexpr Kernels kWiden{{&WidenSse2<kOrder>, &WidenAvx2<kOrder>, &WidenAvx2<kOrder>}};
template <Order kOrder>
constexpr Kernels kNarrow{{&NarrowSse2<kOrder>, &NarrowAvx2<kOrder>, &NarrowAvx2<kOrder>}};

}  // namespace

void ReversePixels(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kReverse.Active()(in, pixels, out);
}

void BgrToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kWiden<Order::Bgr>.Active()(in, pixels, out);
}

void RgbToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kWiden<Order::Rgb>.Active()(in, pixels, out);
}

void WorkingToBgr(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kNarrow<Order::Bgr>.Active()(in, pixels, out);
}

void WorkingToRgb(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  kNarrow<Order::Rgb>.Active()(in, pixels, out);
}

}  // namespace qxv
