// code_page.h - conversion between bytes of a code page and QXChar texts, the same units and bytes on both systems.
// Supported everywhere: 437, 850, 866, 874, 932, 936, 949, 950, 1250 to 1258 and 65001 (UTF-8), and the two names below for the
// ANSI page. Windows converts other pages of its own too. To bytes: a character that the page lacks becomes "?", one for each
// unit of a surrogate pair; there is no best fit (U+0100 is not A in 1252), so that the bytes, read back, give the same text or a
// visible "?". Unassigned bytes that Windows pairs with a control character or a private unit go there and back. In UTF-8 an
// unpaired surrogate becomes U+FFFD. To units: a byte or pair of bytes that the page lacks becomes the page's default character
// ("?", in 932 U+30FB); a lead byte takes the byte behind it along, unless that is zero. In UTF-8 each longest part of a broken
// sequence becomes one U+FFFD. All functions may be called from any thread at once.
#pragma once

#include "qxv/types.h"

#include <string>
#include <string_view>

namespace qxv::os {

inline constexpr unsigned kCodePageAnsi = 0;        // the system's ANSI page
inline constexpr unsigned kCodePageThreadAnsi = 3;  // the calling thread's ANSI page
inline constexpr unsigned kCodePageUtf8 = 65001;

/// Number of the system's ANSI page. Linux: QXV_ACP, or the page that Windows pairs with the language of LC_ALL, LC_CTYPE or
/// LANG, the first of them that is set; read once, at the first call. setlocale has no influence.
unsigned AnsiCodePage() noexcept;

/// Number of the calling thread's ANSI page. Linux: AnsiCodePage().
unsigned ThreadAnsiCodePage() noexcept;

/// The ANSI page that Windows pairs with a locale name such as zh_CN.UTF-8; 1252 for C, POSIX, null and names not known.
unsigned CodePageOfLocale(const char* name) noexcept;

/// Also false while there is no memory or no descriptor for what a page needs; then the next call tries again.
[[nodiscard]] bool CodePageExists(unsigned page) noexcept;

/// Converts exactly count bytes, zeros among them. The units written, none of them added as a terminator; with capacity 0 the
/// units needed. -1 when the page does not exist, the text does not fit, or it is longer than INT_MAX; out is then undefined.
/// @param lost   if not null, receives whether anything was replaced by a default character
std::ptrdiff_t MultiByteToWide(unsigned page, const char* bytes, std::size_t count, QXChar* out, std::size_t capacity,
                               bool* lost = nullptr) noexcept;

/// Converts exactly count units, with the same rules.
std::ptrdiff_t WideToMultiByte(unsigned page, const QXChar* text, std::size_t count, char* out, std::size_t capacity,
                               bool* lost = nullptr) noexcept;

/// The same into a string, which is left as it was when the result is false. Throws std::bad_alloc for want of memory, also for
/// what the page needs.
[[nodiscard]] bool MultiByteToWide(unsigned page, std::string_view bytes, std::basic_string<QXChar>& out, bool* lost = nullptr);
[[nodiscard]] bool WideToMultiByte(unsigned page, std::basic_string_view<QXChar> text, std::string& out, bool* lost = nullptr);

}  // namespace qxv::os
