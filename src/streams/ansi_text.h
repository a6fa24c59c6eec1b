// ansi_text.h - lines between a code page and QXChar texts, through memory that is kept from one line to the next.
#pragma once

#include "qxv/types.h"

#include <string>
#include <string_view>

namespace qxv {

using TextView = std::basic_string_view<QXChar>;

class AnsiText {
 public:
  explicit AnsiText(unsigned codePage) noexcept : m_codePage(codePage) {}

  /// The bytes as units with a zero unit behind them, until the next call; empty when they cannot be converted.
  [[nodiscard]] TextView Decode(std::string_view bytes);

  /// Appends the units as bytes; nothing when they cannot be converted.
  void Encode(TextView text, std::string& bytes) const;

 private:
  unsigned m_codePage;
  std::basic_string<QXChar> m_units;
};

}  // namespace qxv
