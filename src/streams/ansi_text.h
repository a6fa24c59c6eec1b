// ansi_text.h - lines between a code page and QXChar texts, through memory that is kept from one line to the next.
#pragma once

#include "qxv/string.h"
#include "qxv/types.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace qxv {

using TextView = std::basic_string_view<QXChar>;

/// Assigns the first line of these bytes, kShortLine of them, if that is an ordinary one: ASCII, not empty, and the text need not
/// change its size. The end belongs to it or not.
/// @return bytes before the end; kNoShortLine, with nothing changed, when it is another line
[[nodiscard]] std::size_t AssignShortLine(const unsigned char* bytes, unsigned char end, bool endIncluded,
                                          CQXString& text) noexcept;

class AnsiText {
 public:
  explicit AnsiText(unsigned codePage) noexcept : m_codePage(codePage) {}

  /// The bytes, none of them zero, as units until the next call; none when they cannot be converted.
  [[nodiscard]] TextView Decode(std::string_view bytes);

  /// The same into a text.
  /// @param ascii  the bytes are known to be below 0x80
  void Decode(std::string_view bytes, bool ascii, CQXString& text);

  /// Appends the units as bytes; nothing when they cannot be converted.
  void Encode(TextView text, std::string& bytes) const;

 private:
  unsigned m_codePage;
  std::basic_string<QXChar> m_units;
};

}  // namespace qxv
