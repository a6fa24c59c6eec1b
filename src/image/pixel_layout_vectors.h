// pixel_layout_vectors.h - how a computed channel becomes a byte, one at a time and in vectors of four channels.
#pragma once

#include "os/cpu.h"
#include "os/intrinsics.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qxv {

/// Clamped to -0.499 ... 255.499, increased by a half, truncated.
inline unsigned char RoundToByte(float value) noexcept {
  return static_cast<unsigned char>(std::clamp(value, -0.499f, 255.499f) + 0.5f);
}

// The vector forms leave the clamping to saturation: what lies outside comes to 0 or 255 all the same.

QXV_ALWAYS_INLINE __m128i RoundSse2(__m128 value) noexcept { return _mm_cvttps_epi32(_mm_add_ps(value, _mm_set1_ps(0.5f))); }
QXV_INLINE_AVX2 __m256i RoundAvx2(__m256 value) noexcept {
  return _mm256_cvttps_epi32(_mm256_add_ps(value, _mm256_set1_ps(0.5f)));
}
QXV_INLINE_AVX512 __m512i RoundAvx512(__m512 value) noexcept {
  return _mm512_cvttps_epi32(_mm512_add_ps(value, _mm512_set1_ps(0.5f)));
}

// Four channels of 4 pixels in each 16 bytes: first all of channel 0, then of 1, 2 and 3.
QXV_INLINE_AVX2 __m256i PackAvx2(__m256i first, __m256i second, __m256i third, __m256i fourth) noexcept {
  return _mm256_packus_epi16(_mm256_packs_epi32(first, second), _mm256_packs_epi32(third, fourth));
}
QXV_INLINE_AVX512 __m512i PackAvx512(__m512i first, __m512i second, __m512i third, __m512i fourth) noexcept {
  return _mm512_packus_epi16(_mm512_packs_epi32(first, second), _mm512_packs_epi32(third, fourth));
}

// The same four channels pixel by pixel.
QXV_ALWAYS_INLINE __m128i InterleaveSse2(__m128i first, __m128i second, __m128i third, __m128i fourth) noexcept {
  const __m128i planes = _mm_packus_epi16(_mm_packs_epi32(first, second), _mm_packs_epi32(third, fourth));
  const __m128i pairs = _mm_unpacklo_epi8(planes, _mm_srli_si128(planes, 8));
  return _mm_unpacklo_epi8(pairs, _mm_srli_si128(pairs, 8));
}
QXV_INLINE_AVX2 __m128i TransposeOrder() noexcept { return _mm_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15); }
QXV_INLINE_AVX2 __m256i InterleaveAvx2(__m256i first, __m256i second, __m256i third, __m256i fourth) noexcept {
  return _mm256_shuffle_epi8(PackAvx2(first, second, third, fourth), _mm256_broadcastsi128_si256(TransposeOrder()));
}
QXV_INLINE_AVX512 __m512i InterleaveAvx512(__m512i first, __m512i second, __m512i third, __m512i fourth) noexcept {
  return _mm512_shuffle_epi8(PackAvx512(first, second, third, fourth),
                             _mm512_broadcast_i32x4(_mm_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15)));
}

// Two blocks of 16 bytes, as the halves of one register.
QXV_INLINE_AVX2 __m256i LoadHalves(const unsigned char* low, const unsigned char* high) noexcept {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low))),
                                 _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
}

// Four pixels of three bytes, each in the lower bytes of 32 bits; the uppermost byte is any. Reads 16 bytes.
QXV_ALWAYS_INLINE __m128i LoadThreesSse2(const unsigned char* in) noexcept {
  const __m128i all = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  return _mm_unpacklo_epi64(_mm_unpacklo_epi32(all, _mm_srli_si128(all, 3)),
                            _mm_unpacklo_epi32(_mm_srli_si128(all, 6), _mm_srli_si128(all, 9)));
}

// The way back. Writes 12 bytes.
QXV_ALWAYS_INLINE void StoreThreesSse2(__m128i pixels, unsigned char* out) noexcept {
  const __m128i even = _mm_and_si128(pixels, _mm_setr_epi32(0xFFFFFF, 0, 0xFFFFFF, 0));
  const __m128i odd = _mm_and_si128(pixels, _mm_setr_epi32(0, 0xFFFFFF, 0, 0xFFFFFF));
  const __m128i pairs = _mm_or_si128(even, _mm_srli_epi64(odd, 8));
  const __m128i upper = _mm_and_si128(pairs, _mm_setr_epi32(0, 0, -1, -1));
  const __m128i twelve = _mm_or_si128(_mm_move_epi64(pairs), _mm_srli_si128(upper, 2));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), twelve);
  const int last = _mm_cvtsi128_si32(_mm_srli_si128(twelve, 8));
  std::memcpy(out + 8, &last, sizeof last);
}

// Rows are written in whole aligned blocks: the first and the last block overlap their neighbours, which then are written twice.

/// From 1 to blockPixels: as many pixels from here on, of some bytes each, a multiple of kBlock begins. With four bytes a pixel
/// it may be out of reach; any number does then.
template <std::size_t kBlock, std::size_t kBytesPerPixel>
std::size_t PixelsToBlock(const unsigned char* out) noexcept {
  static_assert(kBytesPerPixel == 3 || kBytesPerPixel == 4);
  const std::size_t behind = reinterpret_cast<std::uintptr_t>(out) % kBlock;
  if constexpr (kBytesPerPixel == 4) {
    return kBlock / 4 - behind / 4;
  } else {
    constexpr std::size_t kThird = 43;  // 3 x 43 is 1 more than a multiple of 32 and of 64
    static_assert(3 * kThird % kBlock == 1);
    return kBlock - behind * kThird % kBlock;
  }
}

/// Which byte of a register goes to each byte of another.
template <std::size_t kBytes>
struct alignas(kBytes) ByteOrder {
  std::array<unsigned char, kBytes> from;
};

QXV_INLINE_AVX2 __m256i LoadOrderAvx2(const ByteOrder<16>& order) noexcept {
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(order.from.data())));
}
QXV_INLINE_AVX512 __m512i LoadOrderAvx512(const ByteOrder<64>& order) noexcept { return _mm512_load_si512(order.from.data()); }

}  // namespace qxv
