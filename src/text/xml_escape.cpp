// xml_escape.cpp - escapes, and the texts that hold one or go on behind the first step.

#include "text/xml_escape.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace qxv {
namespace {

using TextView = std::basic_string_view<QXChar>;

// The escape of a character, empty for one that stands for itself.
TextView EscapeOf(QXChar character) noexcept {
  switch (character) {
    case QXT('&'):
      return QXT("&amp;");
    case QXT('<'):
      return QXT("&lt;");
    case QXT('>'):
      return QXT("&gt;");
    case QXT('\''):
      return QXT("&apos;");
    case QXT('"'):
      return QXT("&quot;");
    default:
      return {};
  }
}

QXChar* PutCharacter(QXChar character, QXChar* out) noexcept {
  const TextView escape = EscapeOf(character);
  if (escape.empty()) {
    *out = character;
    return out + 1;
  }
  std::memcpy(out, escape.data(), escape.size() * sizeof(QXChar));
  return out + escape.size();
}

}  // namespace

QXChar* EscapeBlockReference(const QXChar*& text, QXChar* out) noexcept {
  const QXChar* const end = text + kXmlEscapeBlock;
  while (text != end && *text != 0) {
    out = PutCharacter(*text++, out);
  }
  return out;
}

QXChar* EscapeBlockFrom(const QXChar*& text, const QXChar* end, QXChar* out) noexcept {
  while (text + kXmlStep <= end) {
    const std::uint32_t stops = CopyXmlStep(text, out);
    const std::size_t plain = stops == 0 ? kXmlStep : static_cast<std::size_t>(std::countr_zero(stops));
    text += plain;
    out += plain;
    if (stops != 0) {
      if (*text == 0) {
        return out;
      }
      out = PutCharacter(*text++, out);
    }
  }
  while (text != end && *text != 0) {
    out = PutCharacter(*text++, out);
  }
  return out;
}

}  // namespace qxv
