// profile_text.h - the rules of initialisation files, on texts in memory (Linux only; Windows has its service).
//
// A line ends at a carriage return or line feed. Blanks are those of the C library and 1A; they are dropped at both ends of
// lines, names and values. A line in [brackets] begins a section: its name runs to the last closing bracket, and what follows
// does not count. All other lines are keys, with a value behind the first equals sign. Texts end at their first zero.
#pragma once

#include "os/utf.h"

#include <cstdint>
#include <optional>
#include <span>

namespace qxv::os {

/// The text of a file: UTF-16 of both byte orders and UTF-8 by their marks, else the ANSI page. A last byte alone counts as a
/// unit of UTF-16 whose other half is zero. Empty where the system's iconv lacks the ANSI page.
Text DecodeProfile(std::span<const unsigned char> bytes);

/// The value of the first key of this name in the first section of that name, A to Z in any case, without one pair of equal
/// quotation marks around it. Lines in front of all sections have the empty section name. Empty for a key without a value; no
/// value at all without the key.
std::optional<TextView> FindProfileValue(TextView text, TextView section, TextView key) noexcept;

/// The integer at the start of the first 29 units, modulo 2^32; 0 without one. Behind controls and blanks a sign, then decimal
/// digits or 0x, 0o, 0b and digits.
std::int32_t ProfileInteger(TextView value) noexcept;

}  // namespace qxv::os
