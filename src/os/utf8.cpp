// utf8.cpp - UTF-8 to UTF-16 and back, into buffers of the caller.

#include "os/utf8.h"

#include "os/counted_output.h"
#include "os/intrinsics.h"
#include "os/utf_step.h"

#include <algorithm>

namespace qxv::os {
namespace {

// Most texts are ASCII for the most part: that goes eight characters at a time, anything else one by one.
constexpr std::size_t kAsciiStep = 8;

// The characters taken: the whole steps of ASCII that stand here. Only counted without a place for them.
std::size_t WidenAscii(const char* bytes, std::size_t count, QXChar* out) noexcept {
  std::size_t at = 0;
  for (; at + kAsciiStep <= count; at += kAsciiStep) {
    const __m128i step = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes + at));
    if (_mm_movemask_epi8(step) != 0) {
      break;
    }
    if (out != nullptr) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at), _mm_unpacklo_epi8(step, _mm_setzero_si128()));
    }
  }
  return at;
}

std::size_t NarrowAscii(const QXChar* text, std::size_t count, char* out) noexcept {
  const __m128i beyond = _mm_set1_epi16(~0x7F);
  std::size_t at = 0;
  for (; at + kAsciiStep <= count; at += kAsciiStep) {
    const __m128i step = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + at));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(step, beyond), _mm_setzero_si128())) != 0xFFFF) {
      break;
    }
    if (out != nullptr) {
      _mm_storel_epi64(reinterpret_cast<__m128i*>(out + at), _mm_packus_epi16(step, step));
    }
  }
  return at;
}

}  // namespace

std::ptrdiff_t DecodeUtf8(const char* bytes, std::size_t count, QXChar* out, std::size_t capacity, bool* lost) noexcept {
  CountedOutput<QXChar> output(out, capacity);
  for (std::size_t at = 0; at < count;) {
    const std::size_t ascii = WidenAscii(bytes + at, std::min(count - at, output.Room()), output.Place());
    output.Skip(ascii);
    at += ascii;
    if (at == count) {
      break;
    }
    const UtfStep step = DecodeUtf8Step({bytes, count}, at, false /*takeSurrogates*/);
    at += step.length;
    *lost |= !step.valid;
    EncodeUtf16Step(step.value, [&output](QXChar unit) { output.Put(unit); });
  }
  return output.Result();
}

std::ptrdiff_t EncodeUtf8(const QXChar* text, std::size_t count, char* out, std::size_t capacity, bool* lost) noexcept {
  CountedOutput<char> output(out, capacity);
  for (std::size_t at = 0; at < count;) {
    const std::size_t ascii = NarrowAscii(text + at, std::min(count - at, output.Room()), output.Place());
    output.Skip(ascii);
    at += ascii;
    if (at == count) {
      break;
    }
    const UtfStep step = DecodeUtf16Step({text, count}, at);
    at += step.length;
    *lost |= !step.valid;
    EncodeUtf8Step(step.valid ? step.value : kReplacementCharacter, [&output](char byte) { output.Put(byte); });
  }
  return output.Result();
}

}  // namespace qxv::os
