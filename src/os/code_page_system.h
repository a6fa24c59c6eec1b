// code_page_system.h - what code_page.cpp needs of the system. Pages are resolved, ASCII in front and UTF-8 are done before.
#pragma once

#include "qxv/types.h"

namespace qxv::os::system {

unsigned AnsiCodePage() noexcept;
unsigned ThreadAnsiCodePage() noexcept;
[[nodiscard]] bool CodePageExists(unsigned page) noexcept;
/// Of a page that does not exist: whether it would with more memory or descriptors.
[[nodiscard]] bool CodePageWantsMemory(unsigned page) noexcept;

/// As MultiByteToWide and WideToMultiByte: count is at least 1 and at most INT_MAX. lost is never null and only ever set.
std::ptrdiff_t Decode(unsigned page, const char* bytes, std::size_t count, QXChar* out, std::size_t capacity,
                      bool* lost) noexcept;
std::ptrdiff_t Encode(unsigned page, const QXChar* text, std::size_t count, char* out, std::size_t capacity, bool* lost) noexcept;

}  // namespace qxv::os::system
