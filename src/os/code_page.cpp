// code_page.cpp - what needs no system: the fast way for ASCII, UTF-8, conversion into strings, pages of locales.

#include "os/code_page.h"

#include "os/code_page_system.h"
#include "os/utf8.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>
#include <new>

namespace qxv::os {

namespace {

unsigned Resolved(unsigned page) noexcept {
  return page == kCodePageAnsi ? AnsiCodePage() : page == kCodePageThreadAnsi ? ThreadAnsiCodePage() : page;
}

/// Pages whose bytes below 0x80 are ASCII wherever a character begins.
constexpr bool BeginsWithAscii(unsigned page) noexcept {
  return page == 437 || page == 850 || page == 866 || page == 874 || page == 932 || page == 936 || page == 949 || page == 950 ||
         (page >= 1250 && page <= 1258) || page == kCodePageUtf8;
}

template <typename Unit>
std::size_t AsciiPrefix(const Unit* units, std::size_t count) noexcept {
  std::size_t i = 0;
  while (i < count && static_cast<std::make_unsigned_t<Unit>>(units[i]) < 0x80) {
    ++i;
  }
  return i;
}

/// Copies the leading ASCII and leaves the rest to convert(rest, count, out, capacity).
template <typename From, typename To, typename Convert>
std::ptrdiff_t ConvertBehindAscii(unsigned page, const From* from, std::size_t count, To* out, std::size_t capacity,
                                  Convert convert) noexcept {
  if (count > INT_MAX || (count != 0 && from == nullptr) || (capacity != 0 && out == nullptr)) {
    return -1;
  }
  const std::size_t prefix = BeginsWithAscii(page) ? AsciiPrefix(from, count) : 0;
  if (capacity != 0) {
    if (prefix > capacity) {
      return -1;
    }
    std::transform(from, from + prefix, out, [](From unit) { return static_cast<To>(unit); });
  }
  if (prefix == count) {
    return static_cast<std::ptrdiff_t>(prefix);
  }
  if (capacity != 0 && prefix == capacity) {
    return -1;  // room 0 would mean a question for the length
  }
  const std::ptrdiff_t rest =
      convert(from + prefix, count - prefix, capacity == 0 ? nullptr : out + prefix, capacity == 0 ? 0 : capacity - prefix);
  return rest < 0 || rest > INT_MAX - static_cast<std::ptrdiff_t>(prefix) ? -1 : rest + static_cast<std::ptrdiff_t>(prefix);
}

struct LocalePage {
  const char* language;
  unsigned page;
};

constexpr LocalePage kLocalePages[] = {
    {"ar", 1256}, {"az", 1254}, {"be", 1251}, {"bg", 1251}, {"bs", 1250},   {"cs", 1250},   {"el", 1253},   {"et", 1257},
    {"fa", 1256}, {"he", 1255}, {"hr", 1250}, {"hu", 1250}, {"iw", 1255},   {"ja", 932},    {"kk", 1251},   {"ko", 949},
    {"ky", 1251}, {"lt", 1257}, {"lv", 1257}, {"mk", 1251}, {"mn", 1251},   {"pl", 1250},   {"ro", 1250},   {"ru", 1251},
    {"sk", 1250}, {"sl", 1250}, {"sq", 1250}, {"sr", 1251}, {"th", 874},    {"tr", 1254},   {"tt", 1251},   {"uk", 1251},
    {"ur", 1256}, {"uz", 1254}, {"vi", 1258}, {"zh", 936},  {"zh_HK", 950}, {"zh_MO", 950}, {"zh_TW", 950},
};

unsigned PageOf(std::string_view name, unsigned otherwise) noexcept {
  const auto* const found = std::find_if(std::begin(kLocalePages), std::end(kLocalePages),
                                         [name](const LocalePage& candidate) { return name == candidate.language; });
  return found == std::end(kLocalePages) ? otherwise : found->page;
}

}  // namespace

unsigned AnsiCodePage() noexcept { return system::AnsiCodePage(); }
unsigned ThreadAnsiCodePage() noexcept { return system::ThreadAnsiCodePage(); }

unsigned CodePageOfLocale(const char* name) noexcept {
  if (name == nullptr) {
    return 1252;
  }
  const std::string_view whole(name);
  if (whole.substr(0, 2) == "sr" && whole.find("@latin") != std::string_view::npos) {
    return 1250;
  }
  const std::string_view withCountry = whole.substr(0, whole.find_first_of(".@"));
  return PageOf(withCountry, PageOf(withCountry.substr(0, withCountry.find('_')), 1252));
}

bool CodePageExists(unsigned page) noexcept {
  const unsigned resolved = Resolved(page);
  return resolved == kCodePageUtf8 || system::CodePageExists(resolved);
}

std::ptrdiff_t MultiByteToWide(unsigned page, const char* bytes, std::size_t count, QXChar* out, std::size_t capacity,
                               bool* lost) noexcept {
  bool ignored = false;
  bool& lossy = lost != nullptr ? *lost : ignored;
  lossy = false;
  page = Resolved(page);
  if (!CodePageExists(page)) {
    return -1;
  }
  return ConvertBehindAscii(page, bytes, count, out, capacity,
                            [page, &lossy](const char* rest, std::size_t restCount, QXChar* to, std::size_t room) {
                              return page == kCodePageUtf8 ? DecodeUtf8(rest, restCount, to, room, &lossy)
                                                           : system::Decode(page, rest, restCount, to, room, &lossy);
                            });
}

std::ptrdiff_t WideToMultiByte(unsigned page, const QXChar* text, std::size_t count, char* out, std::size_t capacity,
                               bool* lost) noexcept {
  bool ignored = false;
  bool& lossy = lost != nullptr ? *lost : ignored;
  lossy = false;
  page = Resolved(page);
  if (!CodePageExists(page)) {
    return -1;
  }
  return ConvertBehindAscii(page, text, count, out, capacity,
                            [page, &lossy](const QXChar* rest, std::size_t restCount, char* to, std::size_t room) {
                              return page == kCodePageUtf8 ? EncodeUtf8(rest, restCount, to, room, &lossy)
                                                           : system::Encode(page, rest, restCount, to, room, &lossy);
                            });
}

namespace {

// Tells want of memory from the other reasons why a page cannot be used.
void DemandMemoryFor(unsigned page) {
  if (!CodePageExists(page) && system::CodePageWantsMemory(Resolved(page))) {
    throw std::bad_alloc();
  }
}

}  // namespace

bool MultiByteToWide(unsigned page, std::string_view bytes, std::basic_string<QXChar>& out, bool* lost) {
  DemandMemoryFor(page);
  const std::ptrdiff_t needed = MultiByteToWide(page, bytes.data(), bytes.size(), nullptr, 0, lost);
  if (needed < 0) {
    return false;
  }
  std::basic_string<QXChar> units(static_cast<std::size_t>(needed), QXChar());
  if (needed != 0 && MultiByteToWide(page, bytes.data(), bytes.size(), units.data(), units.size(), lost) != needed) {
    return false;
  }
  out.swap(units);
  return true;
}

bool WideToMultiByte(unsigned page, std::basic_string_view<QXChar> text, std::string& out, bool* lost) {
  DemandMemoryFor(page);
  const std::ptrdiff_t needed = WideToMultiByte(page, text.data(), text.size(), nullptr, 0, lost);
  if (needed < 0) {
    return false;
  }
  std::string bytes(static_cast<std::size_t>(needed), '\0');
  if (needed != 0 && WideToMultiByte(page, text.data(), text.size(), bytes.data(), bytes.size(), lost) != needed) {
    return false;
  }
  out.swap(bytes);
  return true;
}

}  // namespace qxv::os
