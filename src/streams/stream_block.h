// stream_block.h - what CQXVStreamBufIn writes with a count before it, read with bounds: for blocks that come from outside.
#pragma once

#include "streams/byte_reader.h"

#include "qxv/host.h"
#include "qxv/string.h"

#include <span>

namespace qxv {

/// A counted text; a count below 0 is an empty text without units.
/// @return false, with the text untouched and the reader failed, when the bytes left do not hold it
[[nodiscard]] bool ReadCountedText(ByteReader& in, CQXString& text);
[[nodiscard]] bool ReadCountedText(ByteReader& in, CString& text);

/// A counted byte block, in place; a count below 0 is an empty block.
/// @return false, with the span untouched and the reader failed, when the bytes left do not hold it
[[nodiscard]] bool ReadCountedBytes(ByteReader& in, std::span<const unsigned char>& bytes);

}  // namespace qxv
