// text.h - between the library's UTF-16 and the program's UTF-8, and what a text takes on a terminal.
#pragma once

#include "qxv/interop.h"
#include "qxv/string.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// UTF-16 of a UTF-8 text. A byte that is no UTF-8 becomes the unit U+DC00 + byte, which the library takes for that byte in the
/// name of a file.
CQXString Wide(std::string_view utf8);

/// UTF-8 of a text, for people: what cannot be written becomes U+FFFD.
std::string Narrow(const CQXString& text);

/// Whether the bytes are UTF-8.
bool IsUtf8(std::string_view bytes);

/// Columns that the text takes on a terminal: wide characters take two, combining ones none.
std::size_t ColumnsOf(std::string_view utf8);

/// With blanks behind it, or in front, up to so many columns.
std::string PadRight(std::string_view utf8, std::size_t columns);
std::string PadLeft(std::string_view utf8, std::size_t columns);

/// The first columns of a text; a longer one ends in "...".
std::string Shorten(std::string_view utf8, std::size_t columns);

/// 1536 as 1.5 KiB.
std::string SizeText(double bytes);

/// The text without blanks at both ends.
std::string Trimmed(std::string_view utf8);

}  // namespace tool
