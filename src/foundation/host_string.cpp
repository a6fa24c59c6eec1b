// host_string.cpp - CString: its block, reading and comparing, and the splice that every change goes through.
// In memory: m_text -> [m_length units | 0 | ... | 0], m_capacity + 1 units; no block while nothing was stored.

#include "qxv/host.h"

#include "foundation/host_string_case.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace {

using View = std::basic_string_view<QXChar>;

constexpr QXChar kNoText[1] = {};

// Every length and every byte count fits an int.
constexpr std::size_t kMaxLength = 0x3FFFFFFF;

std::size_t LengthOf(const QXChar* text) noexcept { return text == nullptr ? 0 : std::char_traits<QXChar>::length(text); }

View ViewOf(const QXChar* text) noexcept { return {text == nullptr ? kNoText : text, LengthOf(text)}; }

std::size_t CountOf(int count) noexcept { return count > 0 ? static_cast<std::size_t>(count) : 0; }

void CopyUnits(QXChar* target, const QXChar* source, std::size_t count) noexcept {
  if (count != 0) {
    std::memcpy(target, source, count * sizeof(QXChar));
  }
}

QXChar* NewBlock(std::size_t capacity) {
  if (capacity > kMaxLength) {
    throw std::bad_alloc();
  }
  auto* block = new QXChar[capacity + 1];
  block[capacity] = 0;
  return block;
}

int IndexOf(std::size_t position) noexcept { return position == View::npos ? -1 : static_cast<int>(position); }

int SignOf(int value) noexcept { return (value > 0) - (value < 0); }

int CompareUnits(View left, View right) noexcept { return SignOf(left.compare(right)); }

}  // namespace

CString::CString() noexcept = default;

CString::CString(const CString& other) { Splice(0, 0, other.m_text, other.m_length); }

CString::CString(CString&& other) noexcept { Swap(other); }

CString::CString(const QXChar* text) { Splice(0, 0, text, LengthOf(text)); }

CString::CString(const QXChar* text, int count) { Splice(0, 0, text, text == nullptr ? 0 : CountOf(count)); }

CString::CString(QXChar character, int count) {
  if (count > 0) {
    Reserve(CountOf(count));
    m_length = CountOf(count);
    std::fill_n(m_text, m_length, character);
    m_text[m_length] = 0;
  }
}

CString::~CString() { delete[] m_text; }

CString& CString::operator=(const CString& other) {
  if (this != &other) {
    Splice(0, m_length, other.m_text, other.m_length);
  }
  return *this;
}

CString& CString::operator=(CString&& other) noexcept {
  if (this != &other) {
    Empty();
    Swap(other);
  }
  return *this;
}

CString& CString::operator=(const QXChar* text) {
  SetString(text);
  return *this;
}

CString& CString::operator=(QXChar character) {
  Splice(0, m_length, &character, 1);
  return *this;
}

void CString::SetString(const QXChar* text) { Splice(0, m_length, text, LengthOf(text)); }

void CString::SetString(const QXChar* text, int count) { Splice(0, m_length, text, text == nullptr ? 0 : CountOf(count)); }

int CString::GetLength() const noexcept { return static_cast<int>(m_length); }

bool CString::IsEmpty() const noexcept { return m_length == 0; }

void CString::Empty() noexcept {
  delete[] m_text;
  m_text = nullptr;
  m_length = m_capacity = 0;
}

const QXChar* CString::GetString() const noexcept { return m_text == nullptr ? kNoText : m_text; }

CString::operator const QXChar*() const noexcept { return GetString(); }

QXChar CString::GetAt(int index) const {
  if (index < 0 || static_cast<std::size_t>(index) > m_length) {
    AfxThrowInvalidArgException();
  }
  return GetString()[index];
}

QXChar CString::operator[](int index) const { return GetAt(index); }

void CString::SetAt(int index, QXChar character) {
  if (index < 0 || static_cast<std::size_t>(index) >= m_length) {
    AfxThrowInvalidArgException();
  }
  m_text[index] = character;
}

CString& CString::operator+=(const CString& other) {
  Splice(m_length, 0, other.m_text, other.m_length);
  return *this;
}

CString& CString::operator+=(const QXChar* text) {
  Append(text);
  return *this;
}

CString& CString::operator+=(QXChar character) {
  Splice(m_length, 0, &character, 1);
  return *this;
}

void CString::Append(const QXChar* text) { Splice(m_length, 0, text, LengthOf(text)); }

void CString::Append(const QXChar* text, int count) { Splice(m_length, 0, text, text == nullptr ? 0 : CountOf(count)); }

int CString::Compare(const QXChar* text) const noexcept { return CompareUnits(ViewOf(GetString()), ViewOf(text)); }

int CString::CompareNoCase(const QXChar* text) const noexcept {
  const QXChar* left = GetString();
  const QXChar* right = text == nullptr ? kNoText : text;
  while (*left != 0 && qxv::LowerLatin1(*left) == qxv::LowerLatin1(*right)) {
    ++left;
    ++right;
  }
  return SignOf(qxv::LowerLatin1(*left) - qxv::LowerLatin1(*right));
}

int CString::Find(QXChar character, int start) const noexcept {
  return start < 0 ? -1 : IndexOf(View(GetString(), m_length).find(character, static_cast<std::size_t>(start)));
}

int CString::Find(const QXChar* text, int start) const noexcept {
  return start < 0 || text == nullptr ? -1
                                      : IndexOf(View(GetString(), m_length).find(ViewOf(text), static_cast<std::size_t>(start)));
}

int CString::FindOneOf(const QXChar* set) const noexcept {
  return IndexOf(View(GetString(), m_length).find_first_of(ViewOf(set)));
}

int CString::ReverseFind(QXChar character) const noexcept { return IndexOf(View(GetString(), m_length).rfind(character)); }

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
  const std::size_t start = std::min(CountOf(first), m_length);
  CString part;
  part.Splice(0, 0, GetString() + start, std::min(CountOf(count), m_length - start));
  return part;
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Right(int count) const {
  const std::size_t length = std::min(CountOf(count), m_length);
  return Mid(static_cast<int>(m_length - length), static_cast<int>(length));
}

QXChar* CString::GetBuffer(int minLength) {
  const std::size_t room = std::max(CountOf(minLength), m_length);
  if (m_text == nullptr || room > m_capacity) {
    Reserve(room);
  }
  std::fill(m_text + m_length, m_text + m_capacity + 1, QXChar{0});
  return m_text;
}

QXChar* CString::GetBufferSetLength(int newLength) {
  QXChar* buffer = GetBuffer(newLength);
  m_length = CountOf(newLength);
  buffer[m_length] = 0;
  return buffer;
}

void CString::ReleaseBuffer(int newLength) {
  if (newLength < -1 || (newLength > 0 && static_cast<std::size_t>(newLength) > m_capacity)) {
    AfxThrowInvalidArgException();
  }
  if (m_text == nullptr) {
    return;
  }
  m_text[m_capacity] = 0;  // the place of the closing zero may have been written
  m_length = newLength == -1 ? LengthOf(m_text) : static_cast<std::size_t>(newLength);
  m_text[m_length] = 0;
}

void CString::ReleaseBufferSetLength(int newLength) {
  if (newLength < 0) {
    AfxThrowInvalidArgException();
  }
  ReleaseBuffer(newLength);
}

void CString::Preallocate(int length) {
  if (CountOf(length) > m_capacity) {
    Reserve(CountOf(length));
  }
}

void CString::FreeExtra() {
  if (m_length == 0) {
    Empty();
  } else if (m_length != m_capacity) {
    Reserve(m_length);
  }
}

// A block of exactly this capacity, at least the length, with the same text.
void CString::Reserve(std::size_t capacity) {
  QXChar* block = NewBlock(capacity);
  CopyUnits(block, m_text, m_length);
  block[m_length] = 0;
  delete[] std::exchange(m_text, block);
  m_capacity = capacity;
}

bool CString::Holds(const QXChar* text) const noexcept {
  const std::less<> before;
  return m_text != nullptr && text != nullptr && !before(text, m_text) && !before(m_text + m_capacity, text);
}

// Replaces units [at, at + removed) by count others, which may lie in this text.
void CString::Splice(std::size_t at, std::size_t removed, const QXChar* text, std::size_t count) {
  const std::size_t kept = m_length - removed;
  if (count > kMaxLength - kept) {
    throw std::bad_alloc();
  }
  const std::size_t newLength = kept + count;
  const std::size_t tail = m_length - at - removed;
  if (newLength <= m_capacity && !Holds(text)) {
    if (m_text != nullptr) {
      std::memmove(m_text + at + count, m_text + at + removed, tail * sizeof(QXChar));
      CopyUnits(m_text + at, text, count);
      m_text[newLength] = 0;
      m_length = newLength;
    }
    return;
  }
  if (newLength == 0) {
    Empty();
    return;
  }
  const bool grows = m_length != 0 && newLength > m_length;  // then more will follow
  const std::size_t capacity = grows ? std::min(kMaxLength, std::max(newLength, m_length + m_length / 2)) : newLength;
  QXChar* block = NewBlock(capacity);
  CopyUnits(block, m_text, at);
  CopyUnits(block + at, text, count);
  if (tail != 0) {
    CopyUnits(block + at + count, m_text + at + removed, tail);
  }
  block[newLength] = 0;
  delete[] std::exchange(m_text, block);
  m_length = newLength;
  m_capacity = capacity;
}

void CString::Swap(CString& other) noexcept {
  std::swap(m_text, other.m_text);
  std::swap(m_length, other.m_length);
  std::swap(m_capacity, other.m_capacity);
}

CString operator+(const CString& left, const CString& right) {
  CString sum;
  sum.Preallocate(left.GetLength() + right.GetLength());
  sum += left;
  sum += right;
  return sum;
}

CString operator+(const CString& left, const QXChar* right) {
  CString sum(left);
  sum += right;
  return sum;
}

CString operator+(const QXChar* left, const CString& right) {
  CString sum(left);
  sum += right;
  return sum;
}

CString operator+(const CString& left, QXChar right) {
  CString sum(left);
  sum += right;
  return sum;
}

CString operator+(QXChar left, const CString& right) {
  CString sum(left);
  sum += right;
  return sum;
}

bool operator==(const CString& left, const CString& right) noexcept {
  return View(left.GetString(), static_cast<std::size_t>(left.GetLength())) ==
         View(right.GetString(), static_cast<std::size_t>(right.GetLength()));
}

bool operator<(const CString& left, const CString& right) noexcept {
  return CompareUnits(View(left.GetString(), static_cast<std::size_t>(left.GetLength())),
                      View(right.GetString(), static_cast<std::size_t>(right.GetLength()))) < 0;
}
