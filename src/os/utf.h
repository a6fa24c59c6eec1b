// utf.h - UTF-16 and UTF-8, for texts (what is ill-formed becomes U+FFFD) and for file names (nothing is ever replaced).
#pragma once

#include "qxv/types.h"

#include <string>
#include <string_view>

namespace qxv::os {

using Text = std::basic_string<QXChar>;
using TextView = std::basic_string_view<QXChar>;

/// UTF-8 of a text; an unpaired surrogate becomes U+FFFD.
std::string Utf8FromText(TextView text);

/// UTF-16 of UTF-8 bytes; each ill-formed piece, as utf_step.h cuts them, becomes U+FFFD.
Text TextFromUtf8(std::string_view bytes);

/// The bytes of a file name, so that FileNameFromUtf8 gives the same units back:
///   - U+DC80 to U+DCFF alone stand for the bytes 0x80 to 0xFF, which is how names that are not UTF-8 are handed out;
///   - any other unpaired surrogate becomes the three bytes that its number has in UTF-8's scheme.
/// False when the name would come back as another one (such escapes that happen to spell valid UTF-8) or holds a zero unit:
/// such a name could only open a different file.
[[nodiscard]] bool FileNameToUtf8(TextView name, std::string& bytes);

/// The units of a file name; any bytes at all come back unchanged through FileNameToUtf8.
Text FileNameFromUtf8(std::string_view bytes);

}  // namespace qxv::os
