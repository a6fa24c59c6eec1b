// xml_escape.h - a text copied with the characters escaped that mean something in XML.
//
// Characters go in steps of 16: a step is stored as it is, then what it holds up to the first character that stops it counts.
// Most names and values are done by one or two steps, so these are inlined.
#pragma once

#include "os/cpu.h"
#include "os/intrinsics.h"
#include "qxv/types.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace qxv {

inline constexpr std::size_t kXmlEscapeBlock = 128;  // characters of a CQXString that can be read when its text reaches them
inline constexpr std::size_t kXmlStep = 16;

/// What EscapeBlock may write: a block in which each character becomes the longest escape.
inline constexpr std::size_t kXmlEscapeRoom = kXmlEscapeBlock * 6;

/// Stores 16 units and returns a bit for each that is zero or one of & < > ' ".
QXV_ALWAYS_INLINE std::uint32_t CopyXmlStep(const QXChar* text, QXChar* out) noexcept {
  // ' is & with bit 0 set, > is < with bit 1 set.
  const auto stops = [](__m128i units) {
    return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(_mm_or_si128(units, _mm_set1_epi16(1)), _mm_set1_epi16('\'')),
                                     _mm_cmpeq_epi16(units, _mm_set1_epi16('"'))),
                        _mm_or_si128(_mm_cmpeq_epi16(_mm_or_si128(units, _mm_set1_epi16(2)), _mm_set1_epi16('>')),
                                     _mm_cmpeq_epi16(units, _mm_setzero_si128())));
  };
  const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + 8));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), a);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), b);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(stops(a), stops(b))));
}

/// The rest of a block, up to its end or the text's.
[[nodiscard]] QXChar* EscapeBlockFrom(const QXChar*& text, const QXChar* end, QXChar* out) noexcept;

/// Copies one block of a text, or what the text has left; & < > ' " become &amp; &lt; &gt; &apos; &quot;.
/// @param text at a block of a CQXString's buffer that the text reaches: the whole block is readable. Moved on by what was read;
///   it then points at the text's terminator or at the next block.
/// @param out room for kXmlEscapeRoom units; units behind the result may be overwritten
/// @return the place behind what was written
[[nodiscard]] QXV_ALWAYS_INLINE QXChar* EscapeBlock(const QXChar*& text, QXChar* out) noexcept {
  const QXChar* const end = text + kXmlEscapeBlock;
  for (std::size_t step = 0; step < 2; ++step) {
    const std::uint32_t stops = CopyXmlStep(text, out);
    if (stops != 0) {
      const auto plain = static_cast<std::size_t>(std::countr_zero(stops));
      text += plain;
      out += plain;
      return *text == 0 ? out : EscapeBlockFrom(text, end, out);
    }
    text += kXmlStep;
    out += kXmlStep;
  }
  return EscapeBlockFrom(text, end, out);
}

/// The same, a character at a time: what the vector form is tested against.
[[nodiscard]] QXChar* EscapeBlockReference(const QXChar*& text, QXChar* out) noexcept;

}  // namespace qxv
