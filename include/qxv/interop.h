// interop.h - comfort for C++ callers: views, hashing, printing, iteration, owning pointers. Inline only; it changes no layout
// and no header of the library includes it.
#pragma once

#include "qxv/array.h"
#include "qxv/factories.h"
#include "qxv/guid.h"
#include "qxv/string.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

namespace qxv {

using TextView = std::basic_string_view<QXChar>;

/// The visible text, valid until the string changes.
inline TextView ToView(const CQXString& text) { return TextView(static_cast<const QXChar*>(text)); }

/// A copy of the view up to its first zero. Throws std::bad_alloc for more than INT_MAX characters.
inline CQXString ToString(TextView view) {
  if (view.size() > static_cast<std::size_t>(INT_MAX)) {
    throw std::bad_alloc();
  }
  return view.empty() ? CQXString() : CQXString(view.data(), static_cast<int>(view.size()));
}

/// UTF-8 of a text; a surrogate without its partner becomes U+FFFD.
inline std::string ToUtf8(TextView text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = static_cast<char16_t>(text[i]);
    if (point >= 0xD800 && point < 0xE000) {
      const char16_t next = i + 1 < text.size() ? static_cast<char16_t>(text[i + 1]) : u'\0';
      if (point < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
        point = 0x10000 + ((point - 0xD800) << 10) + (next - 0xDC00u);
        ++i;
      } else {
        point = 0xFFFD;
      }
    }
    if (point < 0x80) {
      out += static_cast<char>(point);
      continue;
    }
    const int tail = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    out += static_cast<char>((0xF00u >> (tail + 1) & 0xFFu) | point >> (6 * tail));
    for (int shift = 6 * (tail - 1); shift >= 0; shift -= 6) {
      out += static_cast<char>(0x80u | (point >> shift & 0x3Fu));
    }
  }
  return out;
}

/// Gives an object of a factory back: std::unique_ptr<CQXVMD5Ctx, qxv::Release>.
struct Release {
  void operator()(CQXVObject* pObject) const noexcept { QXV_DeleteMD5(pObject); }
};

/// Owns an object of a factory.
template <class Interface>
using Owned = std::unique_ptr<Interface, Release>;

}  // namespace qxv

/// Prints the text as UTF-8.
inline std::ostream& operator<<(std::ostream& out, const CQXString& text) { return out << qxv::ToUtf8(qxv::ToView(text)); }

inline bool operator==(const QX_GUID& a, const QX_GUID& b) noexcept { return std::memcmp(&a, &b, sizeof a) == 0; }
inline bool operator!=(const QX_GUID& a, const QX_GUID& b) noexcept { return !(a == b); }

template <class T, class ARG_T>
T* begin(CQXArray<T, ARG_T>& array) noexcept {
  return array.GetData();
}
template <class T, class ARG_T>
T* end(CQXArray<T, ARG_T>& array) noexcept {
  return array.GetData() + array.GetSize();
}
template <class T, class ARG_T>
const T* begin(const CQXArray<T, ARG_T>& array) noexcept {
  return array.GetData();
}
template <class T, class ARG_T>
const T* end(const CQXArray<T, ARG_T>& array) noexcept {
  return array.GetData() + array.GetSize();
}

/// The same elements in the same order.
template <class T, class ARG_T>
bool operator==(const CQXArray<T, ARG_T>& a, const CQXArray<T, ARG_T>& b) {
  return std::equal(begin(a), end(a), begin(b), end(b));
}
template <class T, class ARG_T>
bool operator!=(const CQXArray<T, ARG_T>& a, const CQXArray<T, ARG_T>& b) {
  return !(a == b);
}

/// @cond specialisations of a name that is not ours
template <>
struct std::hash<CQXString> {
  std::size_t operator()(const CQXString& text) const noexcept { return std::hash<qxv::TextView>()(qxv::ToView(text)); }
};

template <>
struct std::hash<QX_GUID> {
  std::size_t operator()(const QX_GUID& id) const noexcept {
    return std::hash<std::string_view>()(std::string_view(reinterpret_cast<const char*>(&id), sizeof id));
  }
};
/// @endcond
