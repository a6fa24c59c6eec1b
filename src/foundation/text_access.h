// text_access.h - a CQXString whose characters are written in place, for who knows their number beforehand.
#pragma once

#include "foundation/string_buffer.h"
#include "qxv/string.h"
#include "qxv/types.h"

#include <cstring>
#include <string_view>

namespace qxv {

struct StringWords;

struct TextAccess {
  /// What the text's conversion to a pointer gives, but null for a text without a buffer.
  [[nodiscard]] static const QXChar* Buffer(const CQXString& text) noexcept { return text.m_pText; }

  /// Sizes the text as an assignment of so many characters (at least 1) does and returns the place for them; all must be written,
  /// none of them zero. The terminator stands already.
  [[nodiscard]] static QXChar* Size(CQXString& text, std::size_t length);

  /// For lines one after another in the same text. The kStringBlock units of a text that any assignment of 1 to kStringBlock
  /// characters would leave where it is, or null. Who writes all of them, zeros behind the characters, ends with SetFirstBlock;
  /// who writes none has changed nothing.
  [[nodiscard]] static QXChar* FirstBlock(CQXString& text) noexcept {
    QXChar* const block = text.m_pText;
    if (block == nullptr || block[kStringBlock] != 0) {
      return nullptr;
    }
    const StringWords words = StringWordsBehind(block, kStringBlock);
    return words.valid && words.capacity <= kStringReuseRange ? block : nullptr;
  }

  /// What an assignment of so many characters does behind the first block.
  static void SetFirstBlock(CQXString& text, std::size_t length) noexcept {
    QXChar* const block = text.m_pText;
    const std::size_t capacity = StringWordsBehind(block, kStringBlock).capacity;
    if (capacity != kStringBlock) {
      std::memset(block + kStringBlock + 1, 0, (capacity - kStringBlock) * sizeof(QXChar));
    }
    WriteStringWords(block, kStringBlock, length, capacity);
  }
  /// Sizes the text as appending so many characters (at least 1) does and returns the place for them, behind the length word.
  [[nodiscard]] static QXChar* Grow(CQXString& text, std::size_t length);
  [[nodiscard]] static QXChar* Grow(CQXString& text, const StringWords& words, std::size_t length);  // words as they were read
};

/// Assigns characters that hold no zero and lie outside the text's own buffer.
void AssignText(CQXString& text, std::basic_string_view<QXChar> characters);

}  // namespace qxv
