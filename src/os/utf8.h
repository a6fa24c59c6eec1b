// utf8.h - UTF-8 to UTF-16 and back, as Unicode chapter 3.9 says: each longest part of a broken sequence becomes one U+FFFD.
#pragma once

#include "qxv/types.h"

namespace qxv::os {

/// The units written, or needed when capacity is 0; -1 when they do not fit. Sets lost when anything was replaced.
std::ptrdiff_t DecodeUtf8(const char* bytes, std::size_t count, QXChar* out, std::size_t capacity, bool* lost) noexcept;

/// The bytes written, or needed when capacity is 0; -1 when they do not fit. Sets lost when a surrogate stood alone.
std::ptrdiff_t EncodeUtf8(const QXChar* text, std::size_t count, char* out, std::size_t capacity, bool* lost) noexcept;

}  // namespace qxv::os
