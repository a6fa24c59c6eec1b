// sample_format.cpp - the value of one sample, and rows of them in three tiers.
//   bytes  value                       back
//   1      (b - 128) / 2^7             low 8 bits of x 2^8 - 128
//   2      signed / 2^15               low 16 bits of x 2^15
//   3      signed / 2^23               low 24 bits of x 2^23
//   4      the bits of a float         its bits

#include "audio/sample_format.h"

#include "audio/sample_vectors.h"
#include "foundation/numeric.h"
#include "os/cpu.h"
#include "os/intrinsics.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace {

using qxv::BeforeAligned;
using qxv::kFrom16;

constexpr float kFromByte = 0x1p-7f, kFrom24 = 0x1p-23f;
constexpr float kTo16 = 0x1p15f, kTo24 = 0x1p23f;

std::uint32_t Word(const unsigned char* bytes, int width) noexcept {
  std::uint32_t word = 0;
  for (int i = 0; i < width; ++i) {
    word |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
  }
  return word;
}

std::int32_t SignExtended(std::uint32_t word, int bits) noexcept {
  return static_cast<std::int32_t>(word << (32 - bits)) >> (32 - bits);
}

}  // namespace

float qxv::SampleFromBytes(int width, const unsigned char* bytes) noexcept {
  switch (width) {
    case 1:
      return static_cast<float>(bytes[0] - 128) * kFromByte;
    case 2:
      return static_cast<float>(SignExtended(Word(bytes, 2), 16)) * kFrom16;
    case 3:
      return static_cast<float>(SignExtended(Word(bytes, 3), 24)) * kFrom24;
    default:
      return std::bit_cast<float>(Word(bytes, 4));
  }
}

// KEPT: 8 bits are written by another rule than they are read by: 0.5 becomes 0x00.
//   Pinned by WavKept.EightBitsAreNotWrittenAsTheyAreRead.
void qxv::ByteSample(int width, float sample, unsigned char* bytes) noexcept {
  std::uint32_t word = 0;
  switch (width) {
    case 1:
      word = static_cast<std::uint32_t>(TruncateToInt32(static_cast<double>(sample) * 256.0 - 128.0));
      break;
    case 2:
      word = static_cast<std::uint32_t>(TruncateToInt32(sample * kTo16));
      break;
    case 3:
      word = static_cast<std::uint32_t>(TruncateToInt32(sample * kTo24));
      break;
    default:
      word = std::bit_cast<std::uint32_t>(sample);
  }
  for (int i = 0; i < width; ++i) {
    bytes[i] = static_cast<unsigned char>(word >> (8 * i));
  }
}

namespace {

// The samples from one index on, singly: tails of the kernels below, and widths that need none.
template <int kWidth>
void DecodeRest(const unsigned char* bytes, float* samples, std::size_t from, std::size_t count) noexcept {
  for (std::size_t i = from; i < count; ++i) {
    samples[i] = qxv::SampleFromBytes(kWidth, bytes + i * kWidth);
  }
}

template <int kWidth>
void EncodeRest(const float* samples, unsigned char* bytes, std::size_t from, std::size_t count) noexcept {
  for (std::size_t i = from; i < count; ++i) {
    qxv::ByteSample(kWidth, samples[i], bytes + i * kWidth);
  }
}

// Where results go: to the caches, or past them where there is more than they hold; then the address is a multiple of the vector.
enum class Store { Cached, PastCaches };

template <Store kStore>
QXV_INLINE_AVX2 void StoreAvx2(float* to, __m256 values) noexcept {
  if constexpr (kStore == Store::PastCaches) {
    _mm256_stream_ps(to, values);
  } else {
    _mm256_storeu_ps(to, values);
  }
}

template <Store kStore>
QXV_INLINE_AVX512 void StoreAvx512(float* to, __m512 values) noexcept {
  if constexpr (kStore == Store::PastCaches) {
    _mm512_stream_ps(to, values);
  } else {
    _mm512_storeu_ps(to, values);
  }
}

// Other threads see stores past the caches in order only from here on.
template <Store kStore>
QXV_ALWAYS_INLINE void EndOfStores() noexcept {
  if constexpr (kStore == Store::PastCaches) {
    _mm_sfence();
  }
}

// --- 8 bits: rare, and quick enough singly ---

void Decode8(const unsigned char* bytes, float* samples, std::size_t count) noexcept { DecodeRest<1>(bytes, samples, 0, count); }

void Encode8(const float* samples, unsigned char* bytes, std::size_t count) noexcept { EncodeRest<1>(samples, bytes, 0, count); }

// --- 16 bits ---

void Decode16Baseline(const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  const __m128 scale = _mm_set1_ps(kFrom16);
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 2 * i));
    const __m128i low = _mm_srai_epi32(_mm_unpacklo_epi16(words, words), 16);
    const __m128i high = _mm_srai_epi32(_mm_unpackhi_epi16(words, words), 16);
    _mm_storeu_ps(samples + i, _mm_mul_ps(_mm_cvtepi32_ps(low), scale));
    _mm_storeu_ps(samples + i + 4, _mm_mul_ps(_mm_cvtepi32_ps(high), scale));
  }
  DecodeRest<2>(bytes, samples, i, count);
}

template <Store kStore>
QXV_TARGET_AVX2 void Decode16Avx2(const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  const __m256 scale = _mm256_set1_ps(kFrom16);
  std::size_t i = BeforeAligned(samples, 32, count);
  DecodeRest<2>(bytes, samples, 0, i);
  for (; i + 16 <= count; i += 16) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 2 * i));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 2 * i + 16));
    StoreAvx2<kStore>(samples + i, _mm256_mul_ps(_mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(low)), scale));
    StoreAvx2<kStore>(samples + i + 8, _mm256_mul_ps(_mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(high)), scale));
  }
  EndOfStores<kStore>();
  DecodeRest<2>(bytes, samples, i, count);
}

template <Store kStore>
QXV_TARGET_AVX512 void Decode16Avx512(const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  const __m512 scale = _mm512_set1_ps(kFrom16);
  std::size_t i = BeforeAligned(samples, 64, count);
  DecodeRest<2>(bytes, samples, 0, i);
  for (; i + 16 <= count; i += 16) {
    const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + 2 * i));
    StoreAvx512<kStore>(samples + i, _mm512_mul_ps(_mm512_cvtepi32_ps(_mm512_cvtepi16_epi32(words)), scale));
  }
  EndOfStores<kStore>();
  DecodeRest<2>(bytes, samples, i, count);
}

// Packing saturates: the upper halves are made signs of the lower ones first, so that the low 16 bits come through.
void Encode16Baseline(const float* samples, unsigned char* bytes, std::size_t count) noexcept {
  const __m128 scale = _mm_set1_ps(kTo16);
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    const __m128i low = _mm_cvttps_epi32(_mm_mul_ps(_mm_loadu_ps(samples + i), scale));
    const __m128i high = _mm_cvttps_epi32(_mm_mul_ps(_mm_loadu_ps(samples + i + 4), scale));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + 2 * i),
                     _mm_packs_epi32(_mm_srai_epi32(_mm_slli_epi32(low, 16), 16), _mm_srai_epi32(_mm_slli_epi32(high, 16), 16)));
  }
  EncodeRest<2>(samples, bytes, i, count);
}

// Whole vectors from the first sample to the last: those at both ends overlap the aligned ones between them.
QXV_INLINE_AVX2 void Encode16OfAvx2(const float* samples, unsigned char* bytes) noexcept {
  const __m256 scale = _mm256_set1_ps(kTo16);
  const __m256i lowHalves = _mm256_set1_epi32(0xFFFF);
  const __m256i low = _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_loadu_ps(samples), scale));
  const __m256i high = _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_loadu_ps(samples + 8), scale));
  const __m256i packed = _mm256_packus_epi32(_mm256_and_si256(low, lowHalves), _mm256_and_si256(high, lowHalves));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), _mm256_permute4x64_epi64(packed, 0xD8 /*0 2 1 3*/));
}

QXV_TARGET_AVX2 void Encode16Avx2(const float* samples, unsigned char* bytes, std::size_t count) noexcept {
  if (count < 16) {
    return EncodeRest<2>(samples, bytes, 0, count);
  }
  Encode16OfAvx2(samples, bytes);
  for (std::size_t i = BeforeAligned(samples, 32, count); i + 16 <= count; i += 16) {
    Encode16OfAvx2(samples + i, bytes + 2 * i);
  }
  Encode16OfAvx2(samples + count - 16, bytes + 2 * (count - 16));
}

// Bytes gathered for each half are quicker than words gathered out of both vectors at once.
QXV_INLINE_AVX512 void Encode16OfAvx512(const float* samples, unsigned char* bytes) noexcept {
  const __m512 scale = _mm512_set1_ps(kTo16);
  const __m512i lowBytes = _mm512_set_epi8(61, 60, 57, 56, 53, 52, 49, 48, 45, 44, 41, 40, 37, 36, 33, 32,  //
                                           29, 28, 25, 24, 21, 20, 17, 16, 13, 12, 9, 8, 5, 4, 1, 0,        //
                                           61, 60, 57, 56, 53, 52, 49, 48, 45, 44, 41, 40, 37, 36, 33, 32,  //
                                           29, 28, 25, 24, 21, 20, 17, 16, 13, 12, 9, 8, 5, 4, 1, 0);
  constexpr __mmask64 kUpperHalf = 0xFFFFFFFF00000000;
  const __m512i low = _mm512_cvttps_epi32(_mm512_mul_ps(_mm512_loadu_ps(samples), scale));
  const __m512i high = _mm512_cvttps_epi32(_mm512_mul_ps(_mm512_loadu_ps(samples + 16), scale));
  const __m512i words = _mm512_permutexvar_epi8(lowBytes, low);
  _mm512_storeu_si512(bytes, _mm512_mask_permutexvar_epi8(words, kUpperHalf, lowBytes, high));
}

QXV_TARGET_AVX512 void Encode16Avx512(const float* samples, unsigned char* bytes, std::size_t count) noexcept {
  if (count < 32) {
    return Encode16Avx2(samples, bytes, count);
  }
  Encode16OfAvx512(samples, bytes);
  for (std::size_t i = BeforeAligned(samples, 64, count); i + 32 <= count; i += 32) {
    Encode16OfAvx512(samples + i, bytes + 2 * i);
  }
  Encode16OfAvx512(samples + count - 32, bytes + 2 * (count - 32));
}

// --- 24 bits: each sample goes to the upper three bytes of 32 bits, and is shifted down with its sign ---

void Decode24Baseline(const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  const __m128 scale = _mm_set1_ps(kFrom24);
  const __m128i one = _mm_setr_epi32(-1, 0, 0, 0);
  std::size_t i = 0;
  for (; i + 6 <= count; i += 4) {  // reads 16 bytes for 12
    const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 3 * i));
    const __m128i a = _mm_and_si128(_mm_slli_si128(raw, 1), one);
    const __m128i b = _mm_and_si128(_mm_slli_si128(raw, 2), _mm_slli_si128(one, 4));
    const __m128i c = _mm_and_si128(_mm_slli_si128(raw, 3), _mm_slli_si128(one, 8));
    const __m128i d = _mm_and_si128(_mm_slli_si128(raw, 4), _mm_slli_si128(one, 12));
    const __m128i values = _mm_srai_epi32(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d)), 8);
    _mm_storeu_ps(samples + i, _mm_mul_ps(_mm_cvtepi32_ps(values), scale));
  }
  DecodeRest<3>(bytes, samples, i, count);
}

template <Store kStore>
QXV_TARGET_AVX2 void Decode24Avx2(const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  const __m256 scale = _mm256_set1_ps(kFrom24);
  const __m256i spread = _mm256_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11,  //
                                          -1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11);
  std::size_t i = BeforeAligned(samples, 32, count);
  DecodeRest<3>(bytes, samples, 0, i);
  for (; i + 10 <= count; i += 8) {  // reads 28 bytes for 24
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 3 * i));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 3 * i + 12));
    const __m256i raw = _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
    const __m256i values = _mm256_srai_epi32(_mm256_shuffle_epi8(raw, spread), 8);
    StoreAvx2<kStore>(samples + i, _mm256_mul_ps(_mm256_cvtepi32_ps(values), scale));
  }
  EndOfStores<kStore>();
  DecodeRest<3>(bytes, samples, i, count);
}

void Encode24(const float* samples, unsigned char* bytes, std::size_t count) noexcept { EncodeRest<3>(samples, bytes, 0, count); }

QXV_TARGET_AVX2 void Encode24Avx2(const float* samples, unsigned char* bytes, std::size_t count) noexcept {
  const __m256 scale = _mm256_set1_ps(kTo24);
  const __m256i gather = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                          0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  std::size_t i = 0;
  for (; i + 10 <= count; i += 8) {  // writes 28 bytes for 24
    const __m256i values = _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_loadu_ps(samples + i), scale));
    const __m256i packed = _mm256_shuffle_epi8(values, gather);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + 3 * i), _mm256_castsi256_si128(packed));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + 3 * i + 12), _mm256_extracti128_si256(packed, 1));
  }
  EncodeRest<3>(samples, bytes, i, count);
}

using qxv::os::KernelTable;
using Decode = void (*)(const unsigned char*, float*, std::size_t) noexcept;
using Encode = void (*)(const float*, unsigned char*, std::size_t) noexcept;

template <Store kStore>
constexpr KernelTable<Decode> kDecode16{{&Decode16Baseline, &Decode16Avx2<kStore>, &Decode16Avx512<kStore>}};
template <Store kStore>
constexpr KernelTable<Decode> kDecode24{{&Decode24Baseline, &Decode24Avx2<kStore>, &Decode24Avx2<kStore>}};
constexpr KernelTable<Encode> kEncode16{{&Encode16Baseline, &Encode16Avx2, &Encode16Avx512}};
constexpr KernelTable<Encode> kEncode24{{&Encode24, &Encode24Avx2, &Encode24Avx2}};

template <Store kStore>
void DecodeTo(int width, const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  switch (width) {
    case 1:
      return Decode8(bytes, samples, count);
    case 2:
      return kDecode16<kStore>.Active()(bytes, samples, count);
    case 3:
      return kDecode24<kStore>.Active()(bytes, samples, count);
    default:
      std::memcpy(samples, bytes, count * sizeof(float));  // not by value: a signalling NaN would turn quiet
  }
}

}  // namespace

void qxv::SamplesFromBytes(int width, const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  DecodeTo<Store::Cached>(width, bytes, samples, count);
}

void qxv::SamplesFromBytesPastCaches(int width, const unsigned char* bytes, float* samples, std::size_t count) noexcept {
  const bool whole = reinterpret_cast<std::uintptr_t>(samples) % sizeof(float) == 0;  // a packed place has no aligned vectors
  (whole ? &DecodeTo<Store::PastCaches> : &DecodeTo<Store::Cached>)(width, bytes, samples, count);
}

void qxv::BytesFromSamples(int width, const float* samples, unsigned char* bytes, std::size_t count) noexcept {
  switch (width) {
    case 1:
      return Encode8(samples, bytes, count);
    case 2:
      return kEncode16.Active()(samples, bytes, count);
    case 3:
      return kEncode24.Active()(samples, bytes, count);
    default:
      std::memcpy(bytes, samples, count * sizeof(float));
  }
}
