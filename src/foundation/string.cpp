// string.cpp - CQXString: sizing, assignment, append, comparison, search. The buffer's picture stands in string_buffer.h.

#include "qxv/string.h"

#include "foundation/string_buffer.h"
#include "foundation/text_access.h"
#include "foundation/text_scan.h"
#include "os/c_runtime.h"
#include "os/wide_format.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <memory>
#include <new>

namespace {

using qxv::kStringBlock;
using qxv::ReadStringWords;
using qxv::StringSlot;
using qxv::StringWords;
using qxv::WriteStringWords;

constexpr QXChar kNoText[1] = {0};

QXChar* NewBuffer(std::size_t capacity) { return new QXChar[qxv::StringAllocationUnits(capacity)]; }

void Zero(QXChar* buffer, std::size_t first, std::size_t end) {
  if (end > first) {
    std::memset(buffer + first, 0, (end - first) * sizeof(QXChar));
  }
}

QXChar* NewEmptyBuffer() {
  QXChar* buffer = NewBuffer(kStringBlock);
  Zero(buffer, 0, kStringBlock + qxv::kStringWordUnits);
  WriteStringWords(buffer, kStringBlock, 0, kStringBlock);
  return buffer;
}

std::size_t VisibleLength(const QXChar* text) noexcept { return text == nullptr ? 0 : qxv::ScanLength(text); }

int ToInt(std::size_t length) noexcept { return static_cast<int>(std::min<std::size_t>(length, INT_MAX)); }

int Sign(std::size_t a, std::size_t b) noexcept { return a > b ? 1 : a < b ? -1 : 0; }

}  // namespace

// Sizing.

// Makes room for nNewLength characters and writes the words. The first nKeep characters survive; those up to nNewLength are the
// caller's to write; what follows is zero.
void CQXString::AllocBuffer(std::size_t nOldCapacity, std::size_t nKeep, std::size_t nNewLength) {
  if (nNewLength > qxv::kStringMaxLength) {
    throw std::bad_alloc();
  }
  const std::size_t keep = nKeep > nOldCapacity ? 0 : std::min(nKeep, nNewLength);
  const std::size_t slot = StringSlot(nNewLength);
  if (m_pText != nullptr && nNewLength <= nOldCapacity && nNewLength + qxv::kStringReuseRange > nOldCapacity) {
    Zero(m_pText, nNewLength, nOldCapacity + 1);
    WriteStringWords(m_pText, slot, nNewLength, nOldCapacity);
    return;
  }
  const bool sameAllocation =
      m_pText != nullptr && nOldCapacity != 0 && qxv::StringAllocationUnits(nOldCapacity) == qxv::StringAllocationUnits(slot);
  if (!sameAllocation) {
    QXChar* buffer = NewBuffer(slot);
    if (keep > 0) {
      std::memcpy(buffer, m_pText, keep * sizeof(QXChar));
    }
    delete[] m_pText;
    m_pText = buffer;
  }
  Zero(m_pText, nNewLength, slot + 1);
  WriteStringWords(m_pText, slot, nNewLength, slot);
}

// Whether a pointer given by a caller leads into the own buffer, which sizing would overwrite or free.
bool CQXString::PointsInside(const QXChar* pText, const StringWords& words) const noexcept {
  if (m_pText == nullptr) {
    return false;
  }
  const std::size_t units = std::max(words.slot, words.valid ? words.capacity : words.slot) + qxv::kStringWordUnits;
  return !std::less<>()(pText, m_pText) && std::less<>()(pText, m_pText + units);
}

void CQXString::SetText(const StringWords& words, const QXChar* pText, std::size_t nLength) {
  AllocBuffer(words.valid ? words.capacity : 0, 0, nLength);
  std::memcpy(m_pText, pText, nLength * sizeof(QXChar));
}

QXChar* qxv::TextAccess::Size(CQXString& text, std::size_t length) {
  const StringWords words = ReadStringWords(text.m_pText);
  text.AllocBuffer(words.valid ? words.capacity : 0, 0, length);
  return text.m_pText;
}

void qxv::AssignText(CQXString& text, std::basic_string_view<QXChar> characters) {
  if (characters.empty()) {
    text.Empty();
  } else {
    std::memcpy(TextAccess::Size(text, characters.size()), characters.data(), characters.size() * sizeof(QXChar));
  }
}

// KEPT: the text goes behind the length word, not behind the visible text, so what follows an earlier zero stays invisible.
//   The layout is shared with applications that cut a text through its pointer. Pinned by
//   StringKept.AppendGoesBehindTheLengthWord.
QXChar* qxv::TextAccess::Grow(CQXString& text, const StringWords& words, std::size_t length) {
  std::size_t at = words.length;
  if (words.valid || text.m_pText == nullptr) {
    text.AllocBuffer(words.capacity, at, at + length);
  } else {  // the words are text: keep what is visible and size anew
    at = VisibleLength(text.m_pText);
    CQXString grown;
    grown.AllocBuffer(0, 0, at + length);
    std::memcpy(grown.m_pText, text.m_pText, at * sizeof(QXChar));
    std::swap(text.m_pText, grown.m_pText);
  }
  return text.m_pText + at;
}

QXChar* qxv::TextAccess::Grow(CQXString& text, std::size_t length) { return Grow(text, ReadStringWords(text.m_pText), length); }

void CQXString::AppendText(const StringWords& words, const QXChar* pText, std::size_t nLength) {
  std::memcpy(qxv::TextAccess::Grow(*this, words, nLength), pText, nLength * sizeof(QXChar));
}

// Construction and assignment.

CQXString::CQXString() : m_pText(NewEmptyBuffer()) {}

CQXString::CQXString(const QXChar* pText) : m_pText(nullptr) {
  SetText({}, pText == nullptr ? kNoText : pText, VisibleLength(pText));
}

CQXString::CQXString(const QXChar* pText, int nCount) : m_pText(nullptr) {
  const bool any = pText != nullptr && nCount > 0;
  SetText({}, any ? pText : kNoText, any ? qxv::os::TextLength(pText, static_cast<std::size_t>(nCount)) : 0);
}

// KEPT: the decision rests on the length word: text behind a length word of 0 is not copied, and text behind an earlier zero is.
//   Applications rely on a copy having the same bytes. Pinned by StringKept.CopyOfATextWithLengthWordZeroIsEmpty and
//   StringKept.CopyKeepsTheBytesBehindAnEarlierZero.
CQXString::CQXString(const CQXString& other) : m_pText(nullptr) {
  const StringWords words = ReadStringWords(other.m_pText);
  if (words.valid && words.length != 0) {
    m_pText = NewBuffer(words.slot);
    std::memcpy(m_pText, other.m_pText, (words.slot + 1) * sizeof(QXChar));
    WriteStringWords(m_pText, words.slot, words.length, words.slot);
  } else if (words.valid || other.m_pText == nullptr) {
    m_pText = NewEmptyBuffer();
  } else {
    SetText({}, other.m_pText, VisibleLength(other.m_pText));
  }
}

CQXString::~CQXString() {
  delete[] m_pText;
  m_pText = nullptr;
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the operator that it calls compares the buffers
CQXString& CQXString::operator=(const CQXString& other) { return *this = static_cast<const QXChar*>(other.m_pText); }

CQXString& CQXString::operator=(const QXChar* pText) {
  if (m_pText == pText && pText != nullptr) {
    return *this;
  }
  const std::size_t length = VisibleLength(pText);
  if (length == 0) {
    Empty();
    return *this;
  }
  const StringWords words = ReadStringWords(m_pText);
  if (PointsInside(pText, words)) {
    const CQXString copy(pText);
    SetText(words, copy.m_pText, length);
  } else {
    SetText(words, pText, length);
  }
  return *this;
}

CQXString::operator const QXChar*() const noexcept { return m_pText == nullptr ? kNoText : m_pText; }

// KEPT: an allocation of up to 1024 characters stays, a larger one is given back.
//   Pinned by StringKept.EmptyKeepsAnAllocationOf1024AndReleasesOneOf1152.
void CQXString::Empty() {
  if (m_pText == nullptr) {
    return;
  }
  const StringWords words = ReadStringWords(m_pText);
  if (words.valid && words.capacity <= 1024) {
    Zero(m_pText, 0, words.slot + qxv::kStringWordUnits);
    WriteStringWords(m_pText, kStringBlock, 0, words.capacity);
  } else {
    QXChar* fresh = NewEmptyBuffer();
    delete[] m_pText;
    m_pText = fresh;
  }
}

CQXString& CQXString::operator+=(const QXChar* pText) {
  const std::size_t length = VisibleLength(pText);
  if (length == 0) {
    return *this;
  }
  const StringWords words = ReadStringWords(m_pText);
  if (PointsInside(pText, words)) {
    const CQXString copy(pText);
    AppendText(words, copy.m_pText, length);
  } else {
    AppendText(words, pText, length);
  }
  return *this;
}

CQXString& CQXString::operator+=(const CQXString& other) { return *this += static_cast<const QXChar*>(other.m_pText); }

CQXString CQXString::operator+(const QXChar* pText) const {
  CQXString sum(*this);
  sum += pText;
  return sum;
}

CQXString CQXString::operator+(const CQXString& other) const { return *this + static_cast<const QXChar*>(other.m_pText); }

void CQXString::Format(const QXChar* pFormat, ...) {
  va_list args;
  va_start(args, pFormat);
  FormatV(pFormat, args);
  va_end(args);
}

void CQXString::FormatV(const QXChar* pFormat, va_list args) {
  const int count = qxv::os::FormatLength(pFormat, args);
  const StringWords words = ReadStringWords(m_pText);
  if (count <= 0) {
    AllocBuffer(words.valid ? words.capacity : 0, 0, 0);
    return;
  }
  // A buffer of its own: an argument may be this text.
  const auto formatted = std::make_unique_for_overwrite<QXChar[]>(static_cast<std::size_t>(count) + 1);
  (void)qxv::os::FormatText(formatted.get(), static_cast<std::size_t>(count) + 1, pFormat, args);
  SetText(words, formatted.get(), VisibleLength(formatted.get()));
}

// Questions.

int CQXString::GetLength() const noexcept { return Length(m_pText); }

int CQXString::Length(const QXChar* pText) noexcept { return ToInt(VisibleLength(pText)); }

bool CQXString::EqualsText(const QXChar* pText) const noexcept {
  const std::size_t length = VisibleLength(m_pText);
  return length == VisibleLength(pText) && (length == 0 || std::memcmp(m_pText, pText, length * sizeof(QXChar)) == 0);
}

// KEPT: the longer text is the greater one, whatever it holds. Sorted lists of applications depend on this order.
//   Pinned by StringKept.CompareLooksAtTheLengthFirst.
int CQXString::Compare(const CQXString& other) const noexcept {
  const std::size_t length = VisibleLength(m_pText);
  const int byLength = Sign(length, VisibleLength(other.m_pText));
  return byLength != 0 || length == 0 ? byLength : qxv::os::CompareText(m_pText, other.m_pText, length);
}

int CQXString::CompareNoCase(const QXChar* pText) const noexcept {
  const std::size_t length = VisibleLength(m_pText);
  const int byLength = Sign(length, VisibleLength(pText));
  return byLength != 0 || length == 0 ? byLength : qxv::os::CompareTextNoCase(m_pText, pText, length);
}

int CQXString::Find(const QXChar* pText, int nStart) const noexcept {
  const std::size_t length = VisibleLength(m_pText);
  const std::size_t wanted = VisibleLength(pText);
  if (length == 0 || wanted == 0 || nStart < 0 || wanted > length || static_cast<std::size_t>(nStart) > length - wanted) {
    return -1;
  }
  const QXChar* from = m_pText + nStart;
  const QXChar* found = qxv::ScanFind(from, length - static_cast<std::size_t>(nStart), pText, wanted);
  return found == nullptr ? -1 : static_cast<int>(found - m_pText);
}

CQXString CQXString::Mid(int nStart, int nCount) const {
  const std::size_t start = nStart < 0 ? 0 : static_cast<std::size_t>(nStart);
  return start < VisibleLength(m_pText) ? CQXString(m_pText + start, nCount) : CQXString();
}

CQXString CQXString::Right(int nCount) const {
  const int length = GetLength();
  if (nCount >= length) {
    return CQXString(static_cast<const QXChar*>(m_pText));
  }
  return nCount > 0 ? Mid(length - nCount, nCount) : CQXString();
}
