// crc_kernels.cpp - CRC-32/MPEG-2 by tables (16 bytes a step) and by carry-less multiplication.
//
// The message is a polynomial over GF(2), its first bit the highest power; the CRC is message * x^32 mod P, the preset added to
// the first 32 bits. In a vector register the bytes are swapped, so that bit i of a 128-bit lane is the coefficient of x^i.
// Folding: a lane H * x^64 + L that stands d bits before another one is worth H * (x^(d+64) mod P) + L * (x^d mod P) there,
// at most 95 bits, and is added to it. Many lanes fold side by side; the last one is reduced to 32 bits by Barrett's method.

#include "foundation/crc_kernels.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

#include <array>
#include <cstring>

namespace qxv {
namespace {

constexpr std::uint32_t kPolynomial = 0x04C11DB7;  // P without its x^32

// ---- tables ----

using Table = std::array<std::uint32_t, 256>;

constexpr std::uint32_t TimesX(std::uint32_t value) { return value << 1 ^ (value >> 31 != 0 ? kPolynomial : 0); }

// kTables[k][b] is the register after byte b and k zero bytes.
constexpr std::array<Table, 16> MakeTables() {
  std::array<Table, 16> tables{};
  for (std::uint32_t b = 0; b < 256; ++b) {
    std::uint32_t crc = b << 24;
    for (int bit = 0; bit < 8; ++bit) {
      crc = TimesX(crc);
    }
    tables[0][b] = crc;
  }
  for (std::size_t k = 1; k < 16; ++k) {
    for (std::size_t b = 0; b < 256; ++b) {
      const std::uint32_t before = tables[k - 1][b];
      tables[k][b] = before << 8 ^ tables[0][before >> 24];
    }
  }
  return tables;
}
constexpr std::array<Table, 16> kTables = MakeTables();

constexpr std::uint32_t SwapBytes(std::uint32_t v) { return v << 24 | (v & 0xFF00) << 8 | (v >> 8 & 0xFF00) | v >> 24; }

inline std::uint64_t Load64(const unsigned char* p) {  // the first byte lowest
  std::uint64_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

// Eight bytes, the first of them lowest, that are followed by `behind` further bytes of the same step.
inline std::uint32_t EightBytes(std::uint64_t v, std::size_t behind) {
  return kTables[behind + 7][v & 0xFF] ^ kTables[behind + 6][v >> 8 & 0xFF] ^ kTables[behind + 5][v >> 16 & 0xFF] ^
         kTables[behind + 4][v >> 24 & 0xFF] ^ kTables[behind + 3][v >> 32 & 0xFF] ^ kTables[behind + 2][v >> 40 & 0xFF] ^
         kTables[behind + 1][v >> 48 & 0xFF] ^ kTables[behind][v >> 56];
}

// ---- constants of the carry-less multiplication ----

constexpr std::uint32_t PowerOfX(unsigned n) {  // x^n mod P
  std::uint32_t value = 1;
  for (unsigned i = 0; i < n; ++i) {
    value = TimesX(value);
  }
  return value;
}

constexpr std::uint64_t DivideX64() {  // x^64 div P, 33 bits
  std::uint64_t quotient = 1;
  std::uint32_t remainder = kPolynomial;  // of x^32
  for (int i = 0; i < 32; ++i) {
    quotient = quotient << 1 | remainder >> 31;
    remainder = TimesX(remainder);
  }
  return quotient;
}

constexpr long long Constant(std::uint64_t value) { return static_cast<long long>(value); }

// The multipliers that carry a lane over `bits` bits: for its low half, for its high half.
struct FoldBy {
  long long low, high;
  constexpr explicit FoldBy(unsigned bits) : low(Constant(PowerOfX(bits))), high(Constant(PowerOfX(bits + 64))) {}
};
constexpr FoldBy kBy128(128), kBy256(256), kBy384(384), kBy512(512), kBy640(640), kBy768(768), kBy896(896), kBy1024(1024),
    kBy1536(1536), kBy2048(2048);
constexpr long long kX64 = Constant(PowerOfX(64));
constexpr long long kX96 = Constant(PowerOfX(96));
constexpr long long kQuotient = Constant(DivideX64());
constexpr long long kP = Constant(std::uint64_t{1} << 32 | kPolynomial);

// Byte indices for _mm_shuffle_epi8: 16 bytes from kShifts + 16 + s move a lane down by s bytes, from kShifts + 16 - s up.
constexpr unsigned char kShifts[48] = {128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128,  //
                                       0,   1,   2,   3,   4,   5,   6,   7,   8,   9,   10,  11,  12,  13,  14,  15,   //
                                       128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128};

// The processor's own prefetching stops at the end of a page, so what lies a page ahead is asked for early; in data that fits
// into the inner caches that would only cost time.
constexpr std::size_t kAhead = 4096;
constexpr std::size_t kLong = std::size_t{1} << 20;

// While at least so many bytes are left, those kAhead onward are asked for.
constexpr std::size_t PrefetchWhileLeft(std::size_t n) { return n >= kLong ? kAhead + 256 : SIZE_MAX; }

QXV_ALWAYS_INLINE void Prefetch(const unsigned char* p, std::size_t n) {
  for (std::size_t i = 0; i < n; i += 64) {
    _mm_prefetch(reinterpret_cast<const char*>(p + i), _MM_HINT_T0);
  }
}

// ---- 128-bit lanes ----

QXV_INLINE_AVX2 __m128i LoadIndices(const unsigned char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }

QXV_INLINE_AVX2 __m128i LoadSwapped(const unsigned char* p) {
  const __m128i swap = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), swap);
}

QXV_INLINE_AVX2 __m128i InFirst32Bits(std::uint32_t crc) { return _mm_set_epi32(static_cast<int>(crc), 0, 0, 0); }

QXV_INLINE_AVX2 __m128i Multipliers(FoldBy by) { return _mm_set_epi64x(by.high, by.low); }

QXV_INLINE_AVX2 __m128i Fold(__m128i lane, __m128i by, __m128i onto) {
  const __m128i low = _mm_clmulepi64_si128(lane, by, 0x00);
  const __m128i high = _mm_clmulepi64_si128(lane, by, 0x11);
  return _mm_xor_si128(_mm_xor_si128(low, high), onto);
}

// lane * x^32 mod P
QXV_INLINE_AVX2 std::uint32_t Reduce(__m128i lane) {
  const __m128i constants = _mm_set_epi64x(kX64, kX96);
  const __m128i low64 = _mm_set_epi64x(0, -1);
  // 128 bits * x^32 -> 96 bits: the high half times x^96, the low half moved up.
  const __m128i bits96 =
      _mm_xor_si128(_mm_clmulepi64_si128(lane, constants, 0x01), _mm_slli_si128(_mm_and_si128(lane, low64), 4));
  // 96 bits -> 64: the upper 32 times x^64.
  const __m128i bits64 = _mm_xor_si128(_mm_clmulepi64_si128(bits96, constants, 0x11), bits96);
  // 64 bits -> 32: subtract P times the quotient.
  const __m128i barrett = _mm_set_epi64x(kP, kQuotient);
  const __m128i upper = _mm_srli_epi64(bits64, 32);
  const __m128i quotient = _mm_srli_epi64(_mm_clmulepi64_si128(upper, barrett, 0x00), 32);
  const __m128i product = _mm_clmulepi64_si128(quotient, barrett, 0x10);
  return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_xor_si128(bits64, product)));
}

// The end of every vector form: the lane for all bytes before p, and the last n of at least 16 bytes in all.
QXV_INLINE_AVX2 std::uint32_t Finish(__m128i lane, const unsigned char* p, std::size_t n) {
  const __m128i by128 = Multipliers(kBy128);
  for (; n >= 16; p += 16, n -= 16) {
    lane = Fold(lane, by128, LoadSwapped(p));
  }
  if (n != 0) {
    // lane and tail are 16 + n bytes: cut them into the first n and the last 16. These are read as a whole from memory, of
    // which only the tail counts; the bytes before it stand in the lane already.
    const __m128i up = LoadIndices(kShifts + 16 - n);  // its top bits are set where the tail goes
    const __m128i last = _mm_blendv_epi8(_mm_shuffle_epi8(lane, up), LoadSwapped(p + n - 16), up);
    lane = Fold(_mm_shuffle_epi8(lane, LoadIndices(kShifts + 32 - n)), by128, last);
  }
  return Reduce(lane);
}

// ---- 512-bit registers: four lanes, the first 16 bytes in the lowest lane ----

QXV_INLINE_AVX512 __m512i LoadSwapped512(const unsigned char* p) {
  const __m512i swap = _mm512_broadcast_i32x4(_mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
  return _mm512_shuffle_epi8(_mm512_loadu_si512(p), swap);
}

QXV_INLINE_AVX512 __m512i Multipliers512(FoldBy by) { return _mm512_broadcast_i32x4(_mm_set_epi64x(by.high, by.low)); }

QXV_INLINE_AVX512 __m512i Fold512(__m512i lanes, __m512i by, __m512i onto) {
  const __m512i low = _mm512_clmulepi64_epi128(lanes, by, 0x00);
  const __m512i high = _mm512_clmulepi64_epi128(lanes, by, 0x11);
  return _mm512_ternarylogic_epi64(low, high, onto, 0x96);  // exclusive or of the three
}

QXV_INLINE_AVX512 __m128i FoldLanes(__m512i lanes) {  // the first three onto the last
  const __m512i by = _mm512_set_epi64(0, 0, kBy128.high, kBy128.low, kBy256.high, kBy256.low, kBy384.high, kBy384.low);
  const __m512i last = _mm512_maskz_mov_epi64(0xC0, lanes);
  const __m512i folded = Fold512(lanes, by, last);
  const __m256i half = _mm256_xor_si256(_mm512_castsi512_si256(folded), _mm512_extracti64x4_epi64(folded, 1));
  return _mm_xor_si128(_mm256_castsi256_si128(half), _mm256_extracti128_si256(half, 1));
}

}  // namespace

std::uint32_t UpdateCrcBaseline(std::uint32_t crc, const unsigned char* p, std::size_t n) noexcept {
  for (; n >= 16; p += 16, n -= 16) {
    crc = EightBytes(Load64(p) ^ SwapBytes(crc), 8) ^ EightBytes(Load64(p + 8), 0);
  }
  if (n >= 8) {
    crc = EightBytes(Load64(p) ^ SwapBytes(crc), 0);
    p += 8;
    n -= 8;
  }
  for (; n != 0; ++p, --n) {
    crc = crc << 8 ^ kTables[0][crc >> 24 ^ *p];
  }
  return crc;
}

QXV_TARGET_AVX2 std::uint32_t UpdateCrcAvx2(std::uint32_t crc, const unsigned char* p, std::size_t n) noexcept {
  if (n < 16) {
    return UpdateCrcBaseline(crc, p, n);
  }
  __m128i lane = _mm_xor_si128(LoadSwapped(p), InFirst32Bits(crc));
  if (n < 128) {
    return Finish(lane, p + 16, n - 16);
  }
  __m128i a = lane, b = LoadSwapped(p + 16), c = LoadSwapped(p + 32), d = LoadSwapped(p + 48);
  __m128i e = LoadSwapped(p + 64), f = LoadSwapped(p + 80), g = LoadSwapped(p + 96), h = LoadSwapped(p + 112);
  const __m128i by1024 = Multipliers(kBy1024);
  const std::size_t prefetchWhile = PrefetchWhileLeft(n);
  for (p += 128, n -= 128; n >= 128; p += 128, n -= 128) {
    if (n >= prefetchWhile) {
      Prefetch(p + kAhead, 128);
    }
    a = Fold(a, by1024, LoadSwapped(p));
    b = Fold(b, by1024, LoadSwapped(p + 16));
    c = Fold(c, by1024, LoadSwapped(p + 32));
    d = Fold(d, by1024, LoadSwapped(p + 48));
    e = Fold(e, by1024, LoadSwapped(p + 64));
    f = Fold(f, by1024, LoadSwapped(p + 80));
    g = Fold(g, by1024, LoadSwapped(p + 96));
    h = Fold(h, by1024, LoadSwapped(p + 112));
  }
  lane = Fold(a, Multipliers(kBy896), h);
  lane = Fold(b, Multipliers(kBy768), lane);
  lane = Fold(c, Multipliers(kBy640), lane);
  lane = Fold(d, Multipliers(kBy512), lane);
  lane = Fold(e, Multipliers(kBy384), lane);
  lane = Fold(f, Multipliers(kBy256), lane);
  lane = Fold(g, Multipliers(kBy128), lane);
  return Finish(lane, p, n);
}

QXV_TARGET_AVX512 std::uint32_t UpdateCrcAvx512(std::uint32_t crc, const unsigned char* p, std::size_t n) noexcept {
  if (n < 64) {
    return UpdateCrcAvx2(crc, p, n);
  }
  __m512i a = _mm512_xor_si512(LoadSwapped512(p), _mm512_zextsi128_si512(InFirst32Bits(crc)));
  p += 64;
  n -= 64;
  if (n >= 192) {
    __m512i b = LoadSwapped512(p), c = LoadSwapped512(p + 64), d = LoadSwapped512(p + 128);
    const __m512i by2048 = Multipliers512(kBy2048);
    const std::size_t prefetchWhile = PrefetchWhileLeft(n);
    for (p += 192, n -= 192; n >= 256; p += 256, n -= 256) {
      if (n >= prefetchWhile) {
        Prefetch(p + kAhead, 256);
      }
      a = Fold512(a, by2048, LoadSwapped512(p));
      b = Fold512(b, by2048, LoadSwapped512(p + 64));
      c = Fold512(c, by2048, LoadSwapped512(p + 128));
      d = Fold512(d, by2048, LoadSwapped512(p + 192));
    }
    d = Fold512(a, Multipliers512(kBy1536), d);
    d = Fold512(b, Multipliers512(kBy1024), d);
    a = Fold512(c, Multipliers512(kBy512), d);
  }
  const __m512i by512 = Multipliers512(kBy512);
  for (; n >= 64; p += 64, n -= 64) {
    a = Fold512(a, by512, LoadSwapped512(p));
  }
  return Finish(FoldLanes(a), p, n);
}

}  // namespace qxv
