// c_runtime.h - the wide-character services of the C run-time, for QXChar, alike on both systems and in every locale.
#pragma once

#include "qxv/types.h"

namespace qxv::os {

/// Units before the first zero; 0 for a null pointer.
std::size_t TextLength(const QXChar* text) noexcept;

/// The same, looking at no more than limit units.
std::size_t TextLength(const QXChar* text, std::size_t limit) noexcept;

/// Difference of the first unequal units, unsigned, among the first count; 0 when they agree or both end. A null text counts as
/// empty.
int CompareText(const QXChar* left, const QXChar* right, std::size_t count) noexcept;

/// The same after folding A to Z to lower case; other letters are not folded.
int CompareTextNoCase(const QXChar* left, const QXChar* right, std::size_t count) noexcept;

/// Integer at the start of the text, behind white space and one sign: 0x and 0 choose the radix when it is 0. Digits are those of
/// every script that the Microsoft run-time reads (full-width and Arabic-Indic ones, for example). Values beyond the type's range
/// are clamped.
/// @param end   if not null, receives the first unit not read; the text itself when there is no number or the radix is not 0 or 2
/// to 36
std::int32_t ParseInt32(const QXChar* text, const QXChar** end, int radix) noexcept;
std::int64_t ParseInt64(const QXChar* text, const QXChar** end, int radix) noexcept;

/// Decimal integer at the start of the text, clamped; 0 without one or for a null text.
std::int32_t ToInt32(const QXChar* text) noexcept;
std::int64_t ToInt64(const QXChar* text) noexcept;

/// Decimal floating number at the start of the text, behind white space and one sign, correctly rounded; the decimal point is a
/// point. Beyond the range: an infinity, or a zero, with the sign. Hexadecimal numbers, inf and nan are not numbers here.
/// @param end   if not null, receives the first unit not read; the text itself when there is no number
double ParseDouble(const QXChar* text, const QXChar** end) noexcept;

/// Digits of a number, without point and sign. The value is 0.digits times ten to the point.
struct FixedDigitText {
  char digits[664];  // up to 309 before the point, 350 behind it, and a zero
  int point;
  bool negative;
};

/// The digits of value rounded (ties away from zero) to count decimals, 0 to 350 (others are clamped). Zeros before the first
/// digit are left out: 0.001 with 3 is "1" with point -2. A value that rounds to nothing is "" ; zero itself is count zeros with
/// point 0.
FixedDigitText FixedDigits(double value, int count) noexcept;

/// A place for a part of a path: room counts the terminator. {nullptr, 0} when the part is not wanted.
struct PathPart {
  QXChar* text;
  std::size_t room;
};

inline constexpr std::size_t kDriveRoom = 3;       // letter, colon, terminator
inline constexpr std::size_t kPathPartRoom = 256;  // folder, name and extension

/// Splits a path into drive (a character and its colon), folder (with its trailing \ or /), name and extension (from the last
/// point on). 0; 22 for a null path or a part of which only one of text and room is given; 34 when a part does not fit: all parts
/// are then empty.
[[nodiscard]] int SplitPath(const QXChar* path, PathPart drive, PathPart folder, PathPart name, PathPart extension) noexcept;

/// "Thu Jan  1 00:00:00 1970": the C library's standard form, without line feed. A day or month out of range reads "???".
/// The units written, or -1 when the text was cut.
int ClockText(const SYSTEMTIME& time, QXChar* out, std::size_t capacity) noexcept;

}  // namespace qxv::os
