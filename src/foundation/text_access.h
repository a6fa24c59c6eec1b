// text_access.h - a CQXString whose characters are written in place, for who knows their number beforehand.
#pragma once

#include "qxv/string.h"
#include "qxv/types.h"

#include <string_view>

namespace qxv {

struct TextAccess {
  /// Sizes the text as an assignment of so many characters (at least 1) does and returns the place for them; all must be written,
  /// none of them zero. The terminator stands already.
  [[nodiscard]] static QXChar* Size(CQXString& text, std::size_t length);
};

/// Assigns characters that hold no zero and lie outside the text's own buffer.
void AssignText(CQXString& text, std::basic_string_view<QXChar> characters);

}  // namespace qxv
