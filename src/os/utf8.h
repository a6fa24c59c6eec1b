// utf8.h - UTF-8 to UTF-16 and back. Broken input becomes as many U+FFFD as Windows makes of it: one for a lead byte with the
// valid continuation bytes behind it (and with the second byte whose value makes it overlong, a surrogate or too large), one for
// any other byte.
#pragma once

#include "qxv/types.h"

namespace qxv::os {

/// The units written, or needed when capacity is 0; -1 when they do not fit. Sets lost when anything was replaced.
std::ptrdiff_t DecodeUtf8(const char* bytes, std::size_t count, QXChar* out, std::size_t capacity, bool* lost) noexcept;

/// The bytes written, or needed when capacity is 0; -1 when they do not fit. Sets lost when a surrogate stood alone.
std::ptrdiff_t EncodeUtf8(const QXChar* text, std::size_t count, char* out, std::size_t capacity, bool* lost) noexcept;

}  // namespace qxv::os
