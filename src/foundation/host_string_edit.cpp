// host_string_edit.cpp - CString: case, trimming, replacing, inserting and deleting.

#include "qxv/host.h"

#include "foundation/host_string_case.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using View = std::basic_string_view<QXChar>;

bool IsSpace(QXChar unit) noexcept {
  return (unit >= 9 && unit <= 13) || unit == ' ' || unit == 0x85 || unit == 0xA0 || unit == 0x1680 ||
         (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F ||
         unit == 0x3000;
}

View ViewOf(const QXChar* text) noexcept { return text == nullptr ? View() : View(text); }

template <class Predicate>
std::size_t CountAtFront(const QXChar* text, std::size_t length, Predicate goes) noexcept {
  return static_cast<std::size_t>(std::find_if_not(text, text + length, goes) - text);
}

template <class Predicate>
std::size_t LengthWithoutBack(const QXChar* text, std::size_t length, Predicate goes) noexcept {
  while (length > 0 && goes(text[length - 1])) {
    --length;
  }
  return length;
}

auto OneOf(QXChar character) noexcept {
  return [character](QXChar unit) { return unit == character; };
}

auto OneOf(View set) noexcept {
  return [set](QXChar unit) { return set.find(unit) != View::npos; };
}

}  // namespace

// Takes out units [at, at + removed): never allocates.
void CString::Cut(std::size_t at, std::size_t removed) noexcept {
  if (removed != 0) {
    std::memmove(m_text + at, m_text + at + removed, (m_length - at - removed + 1) * sizeof(QXChar));
    m_length -= removed;
  }
}

CString& CString::MakeUpper() noexcept {
  std::transform(m_text, m_text + m_length, m_text, qxv::UpperLatin1);
  return *this;
}

CString& CString::MakeLower() noexcept {
  std::transform(m_text, m_text + m_length, m_text, qxv::LowerLatin1);
  return *this;
}

CString& CString::MakeReverse() noexcept {
  std::reverse(m_text, m_text + m_length);
  return *this;
}

CString& CString::TrimLeft() noexcept {
  Cut(0, CountAtFront(m_text, m_length, IsSpace));
  return *this;
}

CString& CString::TrimLeft(QXChar character) noexcept {
  Cut(0, CountAtFront(m_text, m_length, OneOf(character)));
  return *this;
}

CString& CString::TrimLeft(const QXChar* set) noexcept {
  Cut(0, CountAtFront(m_text, m_length, OneOf(ViewOf(set))));
  return *this;
}

CString& CString::TrimRight() noexcept {
  const std::size_t length = LengthWithoutBack(m_text, m_length, IsSpace);
  Cut(length, m_length - length);
  return *this;
}

CString& CString::TrimRight(QXChar character) noexcept {
  const std::size_t length = LengthWithoutBack(m_text, m_length, OneOf(character));
  Cut(length, m_length - length);
  return *this;
}

CString& CString::TrimRight(const QXChar* set) noexcept {
  const std::size_t length = LengthWithoutBack(m_text, m_length, OneOf(ViewOf(set)));
  Cut(length, m_length - length);
  return *this;
}

CString& CString::Trim() noexcept { return TrimRight().TrimLeft(); }

CString& CString::Trim(QXChar character) noexcept { return TrimRight(character).TrimLeft(character); }

CString& CString::Trim(const QXChar* set) noexcept {
  // Both ends are found before anything moves: the set may lie in the text.
  const auto goes = OneOf(ViewOf(set));
  const std::size_t length = LengthWithoutBack(m_text, m_length, goes);
  const std::size_t front = CountAtFront(m_text, length, goes);
  Cut(length, m_length - length);
  Cut(0, front);
  return *this;
}

int CString::Replace(QXChar oldCharacter, QXChar newCharacter) noexcept {
  int count = 0;
  for (std::size_t i = 0; i < m_length && oldCharacter != newCharacter; ++i) {
    if (m_text[i] == oldCharacter) {
      m_text[i] = newCharacter;
      ++count;
    }
  }
  return count;
}

int CString::Replace(const QXChar* oldText, const QXChar* newText) {
  const View old = ViewOf(oldText);
  const View fresh = ViewOf(newText);
  const View text(GetString(), m_length);
  if (old.empty() || text.find(old) == View::npos) {
    return 0;
  }
  CString result;
  int count = 0;
  std::size_t done = 0;
  for (std::size_t hit = text.find(old); hit != View::npos; hit = text.find(old, done)) {
    result.Splice(result.m_length, 0, text.data() + done, hit - done);
    result.Splice(result.m_length, 0, fresh.data(), fresh.size());
    done = hit + old.size();
    ++count;
  }
  result.Splice(result.m_length, 0, text.data() + done, text.size() - done);
  Swap(result);
  return count;
}

int CString::Remove(QXChar character) noexcept {
  QXChar* const end = m_text + m_length;
  const auto count = static_cast<std::size_t>(end - std::remove(m_text, end, character));
  Cut(m_length - count, count);
  return static_cast<int>(count);
}

int CString::Insert(int index, QXChar character) {
  Splice(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), 0, &character, 1);
  return GetLength();
}

int CString::Insert(int index, const QXChar* text) {
  const View inserted = ViewOf(text);
  Splice(static_cast<std::size_t>(std::clamp(index, 0, GetLength())), 0, inserted.data(), inserted.size());
  return GetLength();
}

int CString::Delete(int index, int count) noexcept {
  const int start = std::clamp(index, 0, GetLength());
  Cut(static_cast<std::size_t>(start), static_cast<std::size_t>(std::clamp(count, 0, GetLength() - start)));
  return GetLength();
}

void CString::Truncate(int newLength) {
  if (newLength < 0 || newLength > GetLength()) {
    AfxThrowInvalidArgException();
  }
  const auto length = static_cast<std::size_t>(newLength);
  Cut(length, m_length - length);
}
