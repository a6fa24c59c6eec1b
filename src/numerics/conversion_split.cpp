// conversion_split.cpp - texts split and joined at a separator, in time linear in the characters.

#include "qxv/conversion.h"

#include "foundation/text_scan.h"

#include <cstddef>
#include <string>

namespace {

using Parts = CQXArray<CQXString, CQXString&>;
using Text = std::basic_string<QXChar>;  // grows by doubling, which CQXString does not

Text CopyOf(const QXChar* text) { return text == nullptr ? Text() : Text(text, qxv::ScanLength(text)); }

// Puts a zero in the place of each separator's first unit and returns how many there are.
QXInt64 CutAtSeparators(Text& text, const Text& separator) noexcept {
  QXInt64 count = 0;
  std::size_t at = 0;
  while (const QXChar* found = qxv::ScanFind(text.data() + at, text.size() - at, separator.data(), separator.size())) {
    const auto cut = static_cast<std::size_t>(found - text.data());
    text[cut] = 0;
    at = cut + separator.size();
    ++count;
  }
  return count;
}

}  // namespace

int QXVStrtoStrArr(const QXChar* separator, const QXChar* source, Parts& parts) {
  if (source == nullptr) {
    return 0;
  }
  // Copies: either may be an element of the parts, which are emptied now.
  Text text = CopyOf(source);
  const Text between = CopyOf(separator);
  parts.RemoveAll();
  const QXInt64 count = 1 + (between.empty() ? 0 : CutAtSeparators(text, between));
  parts.SetSize(count);
  std::size_t at = 0;
  for (QXInt64 i = 0; i < count; ++i) {
    const QXChar* part = text.c_str() + at;
    parts.GetData()[i] = part;
    at += qxv::ScanLength(part) + between.size();
  }
  return 1;
}

CQXString QXVStrArrtoStr(const QXChar* separator, const Parts& parts) {
  const Text between = CopyOf(separator);
  Text joined;
  for (QXInt64 i = 0; i < parts.GetSize(); ++i) {
    if (i > 0) {
      joined += between;
    }
    const QXChar* part = parts[i];
    joined.append(part, qxv::ScanLength(part));
  }
  return CQXString(joined.c_str());
}
