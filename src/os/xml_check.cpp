// xml_check.cpp - a look at a document's text before the system's parser gets it: where it begins and how deep it goes.
// It follows tags only as far as depth needs: what is not well-formed is left to the parser to refuse.

#include "os/xml_dom.h"

#include "os/xml_entities.h"

#include <algorithm>

namespace qxv::os {
namespace {

constexpr TextView kBlanks = QXT(" \t\r\n");
constexpr std::size_t kEnd = TextView::npos;

bool StartsAt(TextView text, std::size_t at, TextView word) noexcept { return text.substr(at).starts_with(word); }

// The place behind the next ending from here on; kEnd when there is none.
std::size_t Behind(TextView text, std::size_t at, TextView ending) noexcept {
  const std::size_t found = text.find(ending, at);
  return found == kEnd ? kEnd : found + ending.size();
}

// The > that ends a tag; quoted text is passed over.
std::size_t TagEnd(TextView text, std::size_t at) noexcept {
  for (; at < text.size(); ++at) {
    const QXChar unit = text[at];
    if (unit == QXT('>')) {
      return at;
    }
    if (unit == QXT('"') || unit == QXT('\'')) {
      at = text.find(unit, at + 1);
      if (at == kEnd) {
        return kEnd;
      }
    }
  }
  return kEnd;
}

// Behind a <!DOCTYPE ...>, whose declarations in [ ] may hold quotes, comments and instructions with any characters in them.
std::size_t BehindDoctype(TextView text, std::size_t at) noexcept {
  bool inside = false;
  while (at < text.size()) {
    const QXChar unit = text[at];
    if (unit == QXT('"') || unit == QXT('\'')) {
      at = Behind(text, at + 1, text.substr(at, 1));
    } else if (StartsAt(text, at, QXT("<!--"))) {
      at = Behind(text, at + 4, QXT("-->"));
    } else if (StartsAt(text, at, QXT("<?"))) {
      at = Behind(text, at + 2, QXT("?>"));
    } else if (unit == QXT('>') && !inside) {
      return at + 1;
    } else {
      inside = unit == QXT('[') || (inside && unit != QXT(']'));
      ++at;
    }
  }
  return kEnd;
}

// Behind a construct that begins with <! or <?.
std::size_t BehindMarkup(TextView text, std::size_t at) noexcept {
  if (StartsAt(text, at, QXT("<?"))) {
    return Behind(text, at + 2, QXT("?>"));
  }
  if (StartsAt(text, at, QXT("<!--"))) {
    return Behind(text, at + 4, QXT("-->"));
  }
  if (StartsAt(text, at, QXT("<![CDATA["))) {
    return Behind(text, at + 9, QXT("]]>"));
  }
  return BehindDoctype(text, at + 2);
}

}  // namespace

XmlText CheckXmlText(TextView text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first != kEnd && first > 0 && StartsAt(text, first, QXT("<?xml")) && kBlanks.find(text.substr(first + 5, 1)) != kEnd &&
      text.size() > first + 5) {
    return XmlText::Blank;
  }
  std::size_t depth = 0;
  std::size_t at = 0;
  while (at < text.size() && (at = text.find(QXT('<'), at)) < text.size() - 1) {
    const QXChar next = text[at + 1];
    if (next == QXT('!') || next == QXT('?')) {
      if (StartsAt(text, at, QXT("<!DOCTYPE")) &&
          !EntitiesStayWithin(text, std::min(kXmlMaxExpansion, kXmlMaxExpansionFactor * text.size()))) {
        return XmlText::TooLarge;
      }
      at = BehindMarkup(text, at);
      continue;
    }
    const std::size_t end = TagEnd(text, at + 1);
    if (end == kEnd) {
      break;
    }
    if (next == QXT('/')) {
      depth -= depth > 0 ? 1u : 0u;
    } else {
      if (depth == kXmlMaxDepth) {
        return XmlText::TooDeep;
      }
      depth += text[end - 1] != QXT('/') ? 1u : 0u;
    }
    at = end + 1;
  }
  return XmlText::Fit;
}

}  // namespace qxv::os
