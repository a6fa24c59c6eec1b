// text_scan.h - length of and search in texts of 16-bit units, by vector instructions.
#pragma once

#include "qxv/types.h"

#include <cstddef>

namespace qxv {

/// Units before the first zero unit.
/// @param text aligned to 2 bytes, not null, ended by a zero unit. Bytes outside the text may be read, but only in 256-byte
///   lines that hold a part of it: never in a page that holds none.
[[nodiscard]] std::size_t ScanLength(const QXChar* text) noexcept;

/// The first place in length units of text where needleLength units equal needle; units may be zero.
/// Time grows with length + needleLength whatever the texts are. Nothing outside the two ranges is read.
/// @return null when there is none; text itself for an empty needle
[[nodiscard]] const QXChar* ScanFind(const QXChar* text, std::size_t length, const QXChar* needle,
                                     std::size_t needleLength) noexcept;

// The same, a unit at a time: what the vector forms are tested against.
[[nodiscard]] std::size_t ScanLengthReference(const QXChar* text) noexcept;
[[nodiscard]] const QXChar* ScanFindReference(const QXChar* text, std::size_t length, const QXChar* needle,
                                              std::size_t needleLength) noexcept;

}  // namespace qxv
