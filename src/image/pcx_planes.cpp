// pcx_planes.cpp - three planes of a row and its pixels of three bytes, sixteen pixels at a time where the processor can shuffle.

#include "image/pcx_planes.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

#include <array>

namespace qxv {
namespace {

constexpr std::size_t kWide = sizeof(__m128i);
constexpr std::size_t kPlanes = 3;

void JoinBaseline(const unsigned char* first, const unsigned char* second, const unsigned char* third, std::size_t pixels,
                  unsigned char* out) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, out += kPlanes) {
    out[0] = first[i];
    out[1] = second[i];
    out[2] = third[i];
  }
}

void SplitBaseline(const unsigned char* in, std::size_t pixels, unsigned char* first, unsigned char* second,
                   unsigned char* third) noexcept {
  for (std::size_t i = 0; i < pixels; ++i, in += kPlanes) {
    first[i] = in[0];
    second[i] = in[1];
    third[i] = in[2];
  }
}

// Which byte of a register goes to each byte of another; 0x80 gives zero.
using Shuffle = std::array<unsigned char, kWide>;
using Shuffles = std::array<std::array<Shuffle, kPlanes>, kPlanes>;

// [block][plane]: what block of 16 bytes of the pixels takes from a plane.
constexpr Shuffles MakeJoin() noexcept {
  Shuffles all{};
  for (std::size_t i = 0; i < kPlanes * kWide; ++i) {
    for (std::size_t plane = 0; plane < kPlanes; ++plane) {
      all[i / kWide][plane][i % kWide] = static_cast<unsigned char>(i % kPlanes == plane ? i / kPlanes : 0x80);
    }
  }
  return all;
}

// [plane][block]: what a plane takes from a block of 16 bytes of the pixels.
constexpr Shuffles MakeSplit() noexcept {
  Shuffles all{};
  for (std::size_t plane = 0; plane < kPlanes; ++plane) {
    for (std::size_t i = 0; i < kWide; ++i) {
      const std::size_t source = kPlanes * i + plane;
      for (std::size_t block = 0; block < kPlanes; ++block) {
        all[plane][block][i] = static_cast<unsigned char>(source / kWide == block ? source % kWide : 0x80);
      }
    }
  }
  return all;
}

alignas(kWide) constexpr Shuffles kJoin = MakeJoin();
alignas(kWide) constexpr Shuffles kSplit = MakeSplit();

QXV_INLINE_AVX2 __m128i Load(const unsigned char* bytes) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

QXV_INLINE_AVX2 void StoreShuffled(__m128i first, __m128i second, __m128i third, const std::array<Shuffle, kPlanes>& shuffles,
                                   unsigned char* out) noexcept {
  const __m128i ofFirst = _mm_shuffle_epi8(first, Load(shuffles[0].data()));
  const __m128i ofSecond = _mm_shuffle_epi8(second, Load(shuffles[1].data()));
  const __m128i ofThird = _mm_shuffle_epi8(third, Load(shuffles[2].data()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_or_si128(_mm_or_si128(ofFirst, ofSecond), ofThird));
}

QXV_TARGET_AVX2 void JoinAvx2(const unsigned char* first, const unsigned char* second, const unsigned char* third,
                              std::size_t pixels, unsigned char* out) noexcept {
  std::size_t i = 0;
  for (; i + kWide <= pixels; i += kWide, out += kPlanes * kWide) {
    const __m128i ofFirst = Load(first + i), ofSecond = Load(second + i), ofThird = Load(third + i);
    StoreShuffled(ofFirst, ofSecond, ofThird, kJoin[0], out);
    StoreShuffled(ofFirst, ofSecond, ofThird, kJoin[1], out + kWide);
    StoreShuffled(ofFirst, ofSecond, ofThird, kJoin[2], out + 2 * kWide);
  }
  JoinBaseline(first + i, second + i, third + i, pixels - i, out);
}

QXV_TARGET_AVX2 void SplitAvx2(const unsigned char* in, std::size_t pixels, unsigned char* first, unsigned char* second,
                               unsigned char* third) noexcept {
  std::size_t i = 0;
  for (; i + kWide <= pixels; i += kWide, in += kPlanes * kWide) {
    const __m128i low = Load(in), middle = Load(in + kWide), high = Load(in + 2 * kWide);
    StoreShuffled(low, middle, high, kSplit[0], first + i);
    StoreShuffled(low, middle, high, kSplit[1], second + i);
    StoreShuffled(low, middle, high, kSplit[2], third + i);
  }
  SplitBaseline(in, pixels - i, first + i, second + i, third + i);
}

constexpr os::KernelTable<decltype(&JoinBaseline)> kJoinKernels{{&JoinBaseline, &JoinAvx2, &JoinAvx2}};
constexpr os::KernelTable<decltype(&SplitBaseline)> kSplitKernels{{&SplitBaseline, &SplitAvx2, &SplitAvx2}};

}  // namespace

void JoinPlanes(const unsigned char* first, const unsigned char* second, const unsigned char* third, std::size_t pixels,
                unsigned char* out) noexcept {
  kJoinKernels.Active()(first, second, third, pixels, out);
}

void SplitPlanes(const unsigned char* in, std::size_t pixels, unsigned char* first, unsigned char* second,
                 unsigned char* third) noexcept {
  kSplitKernels.Active()(in, pixels, first, second, third);
}

}  // namespace qxv
