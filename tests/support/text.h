// text.h - QXChar texts as values that GoogleTest compares and prints.
#pragma once

#include "qxv/types.h"

#include <string>

namespace support {

using Text = std::basic_string<QXChar>;

/// The text up to its first zero unit; a null pointer gives an empty text.
inline Text TextOf(const QXChar* text) { return text == nullptr ? Text() : Text(text); }

/// count units of one character.
inline Text Repeat(QXChar character, std::size_t count) { return Text(count, character); }

}  // namespace support
