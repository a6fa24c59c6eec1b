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

void ReverseSse2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 4 * i));
    const __m128i swapped = _mm_or_si128(_mm_slli_epi16(four, 8), _mm_srli_epi16(four, 8));
    const __m128i reversed = _mm_shufflehi_epi16(_mm_shufflelo_epi16(swapped, 0xB1), 0xB1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * i), reversed);
  }
  ReverseScalar(in + 4 * i, pixels - i, out + 4 * i);
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

// Block 0, 1 or 2 of 64 bytes of narrow pixels, taken from two neighbours of four blocks, of which the first is block 0, 1 or 2.
constexpr ByteOrder<64> MakeNarrowBlock(Order order, std::size_t block) noexcept {
  ByteOrder<64> all{};
  for (std::size_t i = 0; i < 64; ++i) {
    all.from[i] = static_cast<unsigned char>(SourceOf(order, block * 64 + i) - block * 64);
  }
  return all;
}

constexpr ByteOrder<16> kReverse16 = MakeReverse<16>();
template <Order kOrder>
constexpr ByteOrder<16> kWiden16 = MakeWiden<16>(kOrder);
template <Order kOrder>
constexpr ByteOrder<64> kWiden64 = MakeWiden<64>(kOrder);
template <Order kOrder>
constexpr ByteOrder<16> kNarrow16 = MakeNarrow(kOrder);
template <Order kOrder, std::size_t kBlock>
constexpr ByteOrder<64> kNarrow64 = MakeNarrowBlock(kOrder, kBlock);

QXV_TARGET_AVX2 void ReverseAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m256i order = LoadOrderAvx2(kReverse16);
  std::size_t i = 0;
  for (; i + 8 <= pixels; i += 8) {
    const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + 4 * i));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * i), _mm256_shuffle_epi8(eight, order));
  }
  ReverseScalar(in + 4 * i, pixels - i, out + 4 * i);
}

QXV_TARGET_AVX512 void ReverseAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m512i order = _mm512_broadcast_i32x4(_mm_load_si128(reinterpret_cast<const __m128i*>(kReverse16.from.data())));
  std::size_t i = 0;
  for (; i + 16 <= pixels; i += 16) {
    _mm512_storeu_si512(out + 4 * i, _mm512_shuffle_epi8(_mm512_loadu_si512(in + 4 * i), order));
  }
  ReverseScalar(in + 4 * i, pixels - i, out + 4 * i);
}

// Eight pixels read or write 28 bytes of three a pixel, so two more pixels must be there.
template <Order kOrder>
QXV_TARGET_AVX2 void WidenAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m256i order = LoadOrderAvx2(kWiden16<kOrder>);
  const __m256i opaque = _mm256_set1_epi32(0xFF);
  std::size_t i = 0;
  for (; i + 10 <= pixels; i += 8) {
    const __m256i eight = _mm256_shuffle_epi8(LoadHalves(in + 3 * i, in + 3 * i + 12), order);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 4 * i), _mm256_or_si256(eight, opaque));
  }
  WidenScalar<kOrder>(in + 3 * i, pixels - i, out + 4 * i);
}

template <Order kOrder>
QXV_TARGET_AVX2 void NarrowAvx2(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m256i order = LoadOrderAvx2(kNarrow16<kOrder>);
  std::size_t i = 0;
  for (; i + 10 <= pixels; i += 8) {
    const __m256i eight = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + 4 * i)), order);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 3 * i), _mm256_castsi256_si128(eight));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 3 * i + 12), _mm256_extracti128_si256(eight, 1));
  }
  NarrowScalar<kOrder>(in + 4 * i, pixels - i, out + 3 * i);
}

// Sixteen pixels read 64 bytes of three a pixel, so six more pixels must be there.
template <Order kOrder>
QXV_TARGET_AVX512 void WidenAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m512i order = LoadOrderAvx512(kWiden64<kOrder>);
  const __m512i opaque = _mm512_set1_epi32(0xFF);
  constexpr __mmask64 kColours = 0xEEEEEEEEEEEEEEEE;
  std::size_t i = 0;
  for (; i + 22 <= pixels; i += 16) {
    const __m512i sixteen = _mm512_loadu_si512(in + 3 * i);
    _mm512_storeu_si512(out + 4 * i, _mm512_mask_permutexvar_epi8(opaque, kColours, order, sixteen));
  }
  WidenScalar<kOrder>(in + 3 * i, pixels - i, out + 4 * i);
}

template <Order kOrder>
QXV_TARGET_AVX512 void NarrowAvx512(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  const __m512i low = LoadOrderAvx512(kNarrow64<kOrder, 0>);
  const __m512i middle = LoadOrderAvx512(kNarrow64<kOrder, 1>);
  const __m512i high = LoadOrderAvx512(kNarrow64<kOrder, 2>);
  std::size_t i = 0;
  for (; i + 64 <= pixels; i += 64) {
    const unsigned char* const from = in + 4 * i;
    const __m512i first = _mm512_loadu_si512(from), second = _mm512_loadu_si512(from + 64);
    const __m512i third = _mm512_loadu_si512(from + 128), fourth = _mm512_loadu_si512(from + 192);
    unsigned char* const to = out + 3 * i;
    _mm512_storeu_si512(to, _mm512_permutex2var_epi8(first, low, second));
    _mm512_storeu_si512(to + 64, _mm512_permutex2var_epi8(second, middle, third));
    _mm512_storeu_si512(to + 128, _mm512_permutex2var_epi8(third, high, fourth));
  }
  NarrowAvx2<kOrder>(in + 4 * i, pixels - i, out + 3 * i);
}

using Kernels = os::KernelTable<decltype(&ReverseScalar)>;
constexpr Kernels kReverse{{&ReverseSse2, &ReverseAvx2, &ReverseAvx512}};
template <Order kOrder>
constexpr Kernels kWiden{{&WidenScalar<kOrder>, &WidenAvx2<kOrder>, &WidenAvx512<kOrder>}};
template <Order kOrder>
constexpr Kernels kNarrow{{&NarrowScalar<kOrder>, &NarrowAvx2<kOrder>, &NarrowAvx512<kOrder>}};

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
