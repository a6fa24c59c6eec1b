// host_string.h - CString, the host framework's text. Included through host.h.
#pragma once

#include "qxv/export.h"
#include "qxv/types.h"

#include <cstddef>

/// A UTF-16 text that owns its units; copies are independent. Zeros inside are kept where the text was given by count.
/// A null pointer counts as an empty text and a negative count as 0. Indexes and counts are in units.
/// More than 0x3FFFFFFF units, or no memory: std::bad_alloc, and the text stays as it was.
/// Arguments may point into the text itself.
class QXV_API CString {
 public:
  CString() noexcept;
  CString(const CString& other);
  CString(CString&& other) noexcept;
  CString(const QXChar* text);  // NOLINT(google-explicit-constructor): callers pass literals
  CString(const QXChar* text, int count);
  explicit CString(QXChar character, int count = 1);
  /// From the system's ANSI code page.
  explicit CString(const char* text);
  ~CString();

  CString& operator=(const CString& other);
  CString& operator=(CString&& other) noexcept;
  CString& operator=(const QXChar* text);
  CString& operator=(QXChar character);
  void SetString(const QXChar* text);
  void SetString(const QXChar* text, int count);

  int GetLength() const noexcept;
  bool IsEmpty() const noexcept;
  /// Empties the text and frees its memory.
  void Empty() noexcept;
  const QXChar* GetString() const noexcept;
  operator const QXChar*() const noexcept;  // NOLINT(google-explicit-constructor): the framework's conversion

  /// Index 0 to the length, which gives the closing zero. Throws CInvalidArgException* outside.
  QXChar GetAt(int index) const;
  QXChar operator[](int index) const;
  /// Index 0 to the length - 1. Throws CInvalidArgException* outside.
  void SetAt(int index, QXChar character);

  CString& operator+=(const CString& other);
  CString& operator+=(const QXChar* text);
  CString& operator+=(QXChar character);
  void Append(const QXChar* text);
  void Append(const QXChar* text, int count);

  /// -1, 0 or 1 by the first differing unit, up to the first zero of each.
  int Compare(const QXChar* text) const noexcept;
  /// The same after Latin-1 letters are lower-cased.
  int CompareNoCase(const QXChar* text) const noexcept;

  /// Index of the first hit at or behind start, or -1; -1 also for a start outside the text.
  int Find(QXChar character, int start = 0) const noexcept;
  int Find(const QXChar* text, int start = 0) const noexcept;
  int FindOneOf(const QXChar* set) const noexcept;
  int ReverseFind(QXChar character) const noexcept;

  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Left(int count) const;
  CString Right(int count) const;

  /// Case of the Latin-1 letters; every other unit stays.
  CString& MakeUpper() noexcept;
  CString& MakeLower() noexcept;
  CString& MakeReverse() noexcept;

  /// Without arguments: white space. Otherwise the character, or every character of the set.
  CString& TrimLeft() noexcept;
  CString& TrimLeft(QXChar character) noexcept;
  CString& TrimLeft(const QXChar* set) noexcept;
  CString& TrimRight() noexcept;
  CString& TrimRight(QXChar character) noexcept;
  CString& TrimRight(const QXChar* set) noexcept;
  CString& Trim() noexcept;
  CString& Trim(QXChar character) noexcept;
  CString& Trim(const QXChar* set) noexcept;

  /// Every occurrence, from the left, not overlapping. @return how many
  int Replace(QXChar oldCharacter, QXChar newCharacter) noexcept;
  int Replace(const QXChar* oldText, const QXChar* newText);
  /// @return how many units went
  int Remove(QXChar character) noexcept;
  /// An index outside is moved to the nearer end. @return the new length
  int Insert(int index, QXChar character);
  int Insert(int index, const QXChar* text);
  int Delete(int index, int count = 1) noexcept;
  void Truncate(int newLength);

  /// printf-like in the Microsoft meaning: "%s" takes a QXChar text. A format that is null or malformed gives no text.
  void Format(const QXChar* format, ...);
  void FormatV(const QXChar* format, va_list arguments);
  void AppendFormat(const QXChar* format, ...);
  void AppendFormatV(const QXChar* format, va_list arguments);

  /// Room for at least minLength units and a zero, to be written directly; ReleaseBuffer ends the writing. What lies behind the
  /// text is zero.
  QXChar* GetBuffer(int minLength = 0);
  /// GetBuffer, with the length set.
  QXChar* GetBufferSetLength(int newLength);
  /// @param newLength -1 takes the text up to its first zero; throws CInvalidArgException* outside the room asked for
  void ReleaseBuffer(int newLength = -1);
  void ReleaseBufferSetLength(int newLength);
  void Preallocate(int length);
  void FreeExtra();

 private:
  static CString Formatted(const QXChar* format, va_list arguments);
  void Reserve(std::size_t capacity);
  void Splice(std::size_t at, std::size_t removed, const QXChar* text, std::size_t count);
  void Cut(std::size_t at, std::size_t removed) noexcept;
  bool Holds(const QXChar* text) const noexcept;
  void Swap(CString& other) noexcept;

  QXChar* m_text = nullptr;    // m_capacity + 1 units, or null
  std::size_t m_length = 0;    // units in use; m_text[m_length] and m_text[m_capacity] are 0
  std::size_t m_capacity = 0;  // units beside the closing zero
};

QXV_API CString operator+(const CString& left, const CString& right);
QXV_API CString operator+(const CString& left, const QXChar* right);
QXV_API CString operator+(const QXChar* left, const CString& right);
QXV_API CString operator+(const CString& left, QXChar right);
QXV_API CString operator+(QXChar left, const CString& right);

/// Two texts are compared over their whole lengths, a text with a pointer as Compare does.
QXV_API bool operator==(const CString& left, const CString& right) noexcept;
QXV_API bool operator<(const CString& left, const CString& right) noexcept;
inline bool operator!=(const CString& left, const CString& right) noexcept { return !(left == right); }
inline bool operator>(const CString& left, const CString& right) noexcept { return right < left; }
inline bool operator<=(const CString& left, const CString& right) noexcept { return !(right < left); }
inline bool operator>=(const CString& left, const CString& right) noexcept { return !(left < right); }

inline bool operator==(const CString& left, const QXChar* right) noexcept { return left.Compare(right) == 0; }
inline bool operator!=(const CString& left, const QXChar* right) noexcept { return left.Compare(right) != 0; }
inline bool operator<(const CString& left, const QXChar* right) noexcept { return left.Compare(right) < 0; }
inline bool operator>(const CString& left, const QXChar* right) noexcept { return left.Compare(right) > 0; }
inline bool operator<=(const CString& left, const QXChar* right) noexcept { return left.Compare(right) <= 0; }
inline bool operator>=(const CString& left, const QXChar* right) noexcept { return left.Compare(right) >= 0; }

inline bool operator==(const QXChar* left, const CString& right) noexcept { return right.Compare(left) == 0; }
inline bool operator!=(const QXChar* left, const CString& right) noexcept { return right.Compare(left) != 0; }
inline bool operator<(const QXChar* left, const CString& right) noexcept { return right.Compare(left) > 0; }
inline bool operator>(const QXChar* left, const CString& right) noexcept { return right.Compare(left) < 0; }
inline bool operator<=(const QXChar* left, const CString& right) noexcept { return right.Compare(left) >= 0; }
inline bool operator>=(const QXChar* left, const CString& right) noexcept { return right.Compare(left) <= 0; }
