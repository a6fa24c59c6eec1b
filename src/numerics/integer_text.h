// integer_text.h - decimal digits of integers, as QXChar.
#pragma once

#include "qxv/types.h"

#include <cstdint>

namespace qxv {

/// Room for any 64-bit integer with its sign.
constexpr int kIntegerUnits = 20;

/// Writes six digits, zeros in front included, of a value below a million.
void WriteSixDigits(QXChar* at, std::uint32_t value) noexcept;

/// Writes the digits (at least one) in front of end and returns the first of them.
QXChar* WriteDigitsBefore(QXChar* end, std::uint64_t value) noexcept;

/// The same with a "-" for a negative value.
QXChar* WriteIntegerBefore(QXChar* end, std::int64_t value) noexcept;

}  // namespace qxv
