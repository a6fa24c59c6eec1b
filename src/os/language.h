// language.h - the language identifiers that Windows gives to locales (Linux only).
#pragma once

#include <cstdint>

namespace qxv::os {

/// The locale that the environment names: LC_ALL, LC_CTYPE or LANG, the first of them that is set; null for none.
const char* EnvironmentLocale() noexcept;

/// The language identifier of a locale name such as zh_CN.UTF-8; US English (0x0409) for C, POSIX, null and names not known.
std::uint16_t LanguageOfLocale(const char* name) noexcept;

}  // namespace qxv::os
