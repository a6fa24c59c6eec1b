// gif_colours.cpp - the fixed palette of GIF files, and the entry that a pixel takes.

#include "image/gif_colours.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

#include <cstdint>
#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kBytesPerPixel = 3;

unsigned char IndexOf(unsigned blue, unsigned green, unsigned red) noexcept {
  return static_cast<unsigned char>((red & 0xE0) | (green & 0xE0) >> 3 | blue >> 6);
}

void MapBaseline(const unsigned char* pixels, std::size_t count, unsigned char* indices) noexcept {
  for (std::size_t i = 0; i < count; ++i, pixels += kBytesPerPixel) {
    indices[i] = IndexOf(pixels[0], pixels[1], pixels[2]);
  }
}

// Four pixels and the byte behind them into a lane, then a pixel a 32-bit number.
QXV_INLINE_AVX2 __m256i LoadEightPixels(const unsigned char* pixels) noexcept {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + 4 * kBytesPerPixel));
  const __m256i spread = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                                          0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  return _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1), spread);
}

QXV_TARGET_AVX2 void MapAvx2(const unsigned char* pixels, std::size_t count, unsigned char* indices) noexcept {
  constexpr std::size_t kStep = 8;
  constexpr std::size_t kReadBehind = 2;  // pixels that cover the four bytes of the second load that are not used
  std::size_t i = 0;
  for (; count - i >= kStep + kReadBehind; i += kStep) {
    const __m256i bgr = LoadEightPixels(pixels + i * kBytesPerPixel);
    const __m256i red = _mm256_and_si256(_mm256_srli_epi32(bgr, 16), _mm256_set1_epi32(0xE0));
    const __m256i green = _mm256_and_si256(_mm256_srli_epi32(bgr, 11), _mm256_set1_epi32(0x1C));
    const __m256i blue = _mm256_and_si256(_mm256_srli_epi32(bgr, 6), _mm256_set1_epi32(0x03));
    const __m256i index = _mm256_or_si256(_mm256_or_si256(red, green), blue);
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(index), _mm256_extracti128_si256(index, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(indices + i), _mm_packus_epi16(words, words));
  }
  MapBaseline(pixels + i * kBytesPerPixel, count - i, indices + i);
}

constexpr os::KernelTable<void (*)(const unsigned char*, std::size_t, unsigned char*) noexcept> kMap{
    {&MapBaseline, &MapAvx2, &MapAvx2}};

}  // namespace

std::array<unsigned char, std::size_t{256} * 3> GifPalette() noexcept {
  const auto widened = [](unsigned threeBits) {
    return static_cast<unsigned char>(threeBits << 5 | threeBits << 2 | threeBits >> 1);
  };
  std::array<unsigned char, std::size_t{256} * 3> palette;
  for (unsigned index = 0; index < 256; ++index) {
    unsigned char* entry = palette.data() + index * std::size_t{3};
    entry[0] = widened(index >> 5);
    entry[1] = widened(index >> 2 & 7);
    entry[2] = static_cast<unsigned char>((index & 3) * 85);
  }
  return palette;
}

void MapToGifPalette(const unsigned char* pixels, std::size_t count, unsigned char* indices) noexcept {
  kMap.Active()(pixels, count, indices);
}

}  // namespace qxv
