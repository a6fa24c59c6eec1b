// byte_widening.cpp - bytes as units.
// Vectors from the start and, overlapping them, from the end, so that ordinary lines take no loop.

#include "streams/byte_widening.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

namespace qxv {
namespace {

constexpr std::size_t kVector = 16;

QXV_ALWAYS_INLINE void Widen128(const unsigned char* bytes, QXChar* units) {
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(v, _mm_setzero_si128()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units + 8), _mm_unpackhi_epi8(v, _mm_setzero_si128()));
}

void WidenBaseline(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept {
  if (count < kVector) {
    WidenBytesReference(bytes, count, units);
    return;
  }
  for (std::size_t at = 0; at + kVector < count; at += kVector) {
    Widen128(bytes + at, units + at);
  }
  Widen128(bytes + count - kVector, units + count - kVector);
}

QXV_INLINE_AVX2 void Widen256(const unsigned char* bytes, QXChar* units) {
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(units), _mm256_cvtepu8_epi16(v));
}

template <std::size_t Vectors>
QXV_INLINE_AVX2 void WidenEnds(const unsigned char* bytes, std::size_t count, QXChar* units) {
  for (std::size_t at = 0; at < Vectors * kVector; at += kVector) {
    Widen256(bytes + at, units + at);
    Widen256(bytes + count - kVector - at, units + count - kVector - at);
  }
}

QXV_TARGET_AVX2 void WidenAvx2(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept {
  if (count < kVector) {
    WidenBytesReference(bytes, count, units);
  } else if (count <= 2 * kVector) {
    WidenEnds<1>(bytes, count, units);
  } else if (count <= 4 * kVector) {
    WidenEnds<2>(bytes, count, units);
  } else if (count <= 8 * kVector) {
    WidenEnds<4>(bytes, count, units);
  } else {
    for (std::size_t at = 0; at + kVector < count; at += kVector) {
      Widen256(bytes + at, units + at);
    }
    Widen256(bytes + count - kVector, units + count - kVector);
  }
}

constexpr os::KernelTable<void (*)(const unsigned char*, std::size_t, QXChar*) noexcept> kWiden{
    {&WidenBaseline, &WidenAvx2, &WidenAvx2}};

}  // namespace

bool IsAscii(const unsigned char* bytes, std::size_t count) noexcept {
  if (count < kVector) {
    return IsAsciiReference(bytes, count);
  }
  __m128i all = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + count - kVector));
  for (std::size_t at = 0; at + kVector < count; at += kVector) {
    all = _mm_or_si128(all, _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at)));
  }
  return _mm_movemask_epi8(all) == 0;
}

bool IsAsciiReference(const unsigned char* bytes, std::size_t count) noexcept {
  unsigned all = 0;
  for (std::size_t i = 0; i < count; ++i) {
    all |= bytes[i];
  }
  return all < 0x80;
}

void WidenBytes(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept { kWiden.Active()(bytes, count, units); }

void WidenBytesReference(const unsigned char* bytes, std::size_t count, QXChar* units) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    units[i] = static_cast<QXChar>(bytes[i]);
  }
}

}  // namespace qxv
