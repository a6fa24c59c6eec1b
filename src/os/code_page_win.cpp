// code_page_win.cpp - the system's own converter, told not to guess.

#include "os/code_page.h"

#include "os/code_page_system.h"

#include "os/win_api.h"

namespace qxv::os::system {

unsigned AnsiCodePage() noexcept { return ::GetACP(); }

unsigned ThreadAnsiCodePage() noexcept {
  DWORD page = 0;
  constexpr int kRoom = sizeof page / sizeof(wchar_t);
  const int read = ::GetLocaleInfoW(::GetThreadLocale(), LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                                    reinterpret_cast<wchar_t*>(&page), kRoom);
  return read == kRoom && page != 0 ? page : ::GetACP();  // 0: a language that has no ANSI page
}

bool CodePageExists(unsigned page) noexcept { return ::IsValidCodePage(page) != 0; }

bool CodePageWantsMemory(unsigned) noexcept { return false; }

std::ptrdiff_t Decode(unsigned page, const char* bytes, std::size_t count, QXChar* out, std::size_t capacity,
                      bool* lost) noexcept {
  const int length = static_cast<int>(count);
  const int room = static_cast<int>(capacity < INT_MAX ? capacity : INT_MAX);
  int written = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes, length, out, room);
  if (written == 0 && ::GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
    *lost |= ::GetLastError() == ERROR_NO_UNICODE_TRANSLATION;
    written = ::MultiByteToWideChar(page, 0 /*flags*/, bytes, length, out, room);
  }
  return written == 0 ? -1 : written;
}

std::ptrdiff_t Encode(unsigned page, const QXChar* text, std::size_t count, char* out, std::size_t capacity,
                      bool* lost) noexcept {
  const int length = static_cast<int>(count);
  const int room = static_cast<int>(capacity < INT_MAX ? capacity : INT_MAX);
  BOOL replaced = FALSE;
  int written = ::WideCharToMultiByte(page, WC_NO_BEST_FIT_CHARS, text, length, out, room, "?", &replaced);
  if (written == 0 && ::GetLastError() != ERROR_INSUFFICIENT_BUFFER) {  // a page that takes neither the flag nor a default
    written = ::WideCharToMultiByte(page, 0 /*flags*/, text, length, out, room, nullptr, nullptr);
  }
  *lost |= replaced != FALSE;
  return written == 0 ? -1 : written;
}

}  // namespace qxv::os::system
