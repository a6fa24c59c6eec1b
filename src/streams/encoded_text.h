// encoded_text.h - a whole text in memory, its encoding chosen by its first bytes.
//
//   FF FE UTF-16 little-endian    FE FF UTF-16 big-endian    EF BB BF UTF-8    anything else: a code page
#pragma once

#include "os/error.h"
#include "qxv/types.h"

#include <cstdint>
#include <span>
#include <string>

namespace qxv {

/// The units behind the mark, zeros among them. What is ill-formed in UTF-8, an unpaired surrogate and half a unit at the end of
/// UTF-16 become U+FFFD; bytes that the code page lacks become its default character.
/// @param codePage  os::kCodePageAnsi or the number of a page, for texts without a mark
/// @return 0; 87 for a code page that does not exist; 223 for more than INT_MAX bytes. The text is untouched on failure.
[[nodiscard]] os::ErrorCode DecodeText(std::span<const unsigned char> bytes, unsigned codePage, std::basic_string<QXChar>& text);

/// The same for a file. 223 also for one of more than maxBytes, of which nothing is read then; else why it could not be read. A
/// folder is 5.
[[nodiscard]] os::ErrorCode ReadEncodedText(const QXChar* name, std::uint64_t maxBytes, unsigned codePage,
                                            std::basic_string<QXChar>& text);

}  // namespace qxv
