// string.h - CQXString, the text type of the whole interface.
#pragma once

#include "qxv/export.h"
#include "qxv/types.h"

namespace qxv {
struct StringWords;  // what the library finds behind the text
struct TextAccess;   // fills long texts in place
}  // namespace qxv

/// A text of UTF-16 code units that owns its buffer; one pointer wide, so that it can be handed to anything that expects a
/// zero-terminated text.
///
/// The buffer holds C characters (C a multiple of 128, at least 128), a terminator slot that is always zero, the length word (the
/// length given at the last sizing) and the capacity word (C of the allocation), 2 C + 10 bytes; docs/string.md has the picture
/// and the rules. Two notions of length stand side by side: the visible length (characters before the first zero), which
/// GetLength counts, and the length word, behind which += appends.
///
/// Null pointers and empty texts are accepted everywhere. An argument may point into the text's own buffer. Lengths of 2^31
/// characters or more are not supported (std::bad_alloc). Allocation failure throws std::bad_alloc and leaves the text as it was.
/// One object is used by one thread at a time; distinct objects share nothing.
class QXV_API CQXString {
 public:
  CQXString();
  /// A null pointer gives an empty text.
  CQXString(const QXChar* pText);
  /// The first nCount characters, or all of them when there are fewer; nCount below 1 gives an empty text.
  CQXString(const QXChar* pText, int nCount);
  /// The bytes of the other buffer, unless the other's length word is 0: then an empty text, whatever stands in the buffer.
  CQXString(const CQXString& other);
  ~CQXString();

  CQXString& operator=(const CQXString& other);
  CQXString& operator=(const QXChar* pText);

  /// The text, zero-terminated, valid until the string changes; never null.
  operator const QXChar*() const noexcept;

  /// Makes the text empty; an allocation of up to 1024 characters is kept.
  void Empty();

  /// The visible length: characters before the first zero.
  int GetLength() const noexcept;

  /// Appends behind the length word. Nothing for a null or empty argument.
  CQXString& operator+=(const QXChar* pText);
  CQXString& operator+=(const CQXString& other);

  CQXString operator+(const QXChar* pText) const;
  CQXString operator+(const CQXString& other) const;

  /// printf-style with wide %s and %c, %S and %hs for narrow text in the ANSI code page, %I64d; numbers do not depend on the
  /// locale. The text ends at the first zero character formatted; a malformed request gives an empty text.
  void Format(const QXChar* pFormat, ...);
  void FormatV(const QXChar* pFormat, va_list args);

  /// By length first, not lexicographic: a longer text is greater (1), a shorter one smaller (-1); equal lengths compare by the
  /// values of the characters (below 0, 0, above 0).
  int Compare(const CQXString& other) const noexcept;

  /// By length first; equal lengths compare with A to Z folded to a to z. A null or empty argument: 1 if this text is not empty,
  /// else 0.
  int CompareNoCase(const QXChar* pText) const noexcept;

  /// Index of the first occurrence at or behind nStart, or -1; also -1 for an empty or null text to find and for a negative
  /// start.
  int Find(const QXChar* pText, int nStart = 0) const noexcept;

  /// Up to nCount characters from nStart; a negative start counts as 0, a count below 1 or a start behind the text gives an empty
  /// text.
  CQXString Mid(int nStart, int nCount) const;

  /// The last nCount characters; all of them when there are no more; none for a count below 1.
  CQXString Right(int nCount) const;

  /// Characters before the first zero; 0 for a null pointer.
  static int Length(const QXChar* pText) noexcept;

  /// Exactly the same text; a null pointer equals an empty text.
  friend bool operator==(const CQXString& a, const CQXString& b) noexcept { return a.EqualsText(b); }
  friend bool operator==(const CQXString& a, const QXChar* b) noexcept { return a.EqualsText(b); }
  friend bool operator==(const QXChar* a, const CQXString& b) noexcept { return b.EqualsText(a); }
  friend bool operator!=(const CQXString& a, const CQXString& b) noexcept { return !a.EqualsText(b); }
  friend bool operator!=(const CQXString& a, const QXChar* b) noexcept { return !a.EqualsText(b); }
  friend bool operator!=(const QXChar* a, const CQXString& b) noexcept { return !b.EqualsText(a); }

 private:
  friend struct qxv::TextAccess;

  bool EqualsText(const QXChar* pText) const noexcept;
  bool PointsInside(const QXChar* pText, const qxv::StringWords& words) const noexcept;
  void SetText(const qxv::StringWords& words, const QXChar* pText, std::size_t nLength);
  void AppendText(const qxv::StringWords& words, const QXChar* pText, std::size_t nLength);
  void AllocBuffer(std::size_t nOldCapacity, std::size_t nKeep, std::size_t nNewLength);

  QXChar* m_pText;
};
