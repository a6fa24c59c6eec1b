// wide_format.h - printf-style formatting of QXChar texts with the meaning of the Microsoft run-time, the same on every system.
// %s and %c take wide text in these formats, %S %C %hs %hc narrow text, which is converted from the ANSI code page; %ls %lc %ws
// %wc are wide always. A null text prints (null). %d %i %u %o %x %X take an int; h makes it 16 bits, l and I32 leave 32, ll I64 I
// j z t make it 64. %p prints 16 upper-case digits. %e %E %f %g %G %a %A take a double, exponents have at least three digits,
// ties round away from zero, infinities read 1.#INF. The decimal point is a point in every locale. F, L, N are read over. An
// unknown character behind % is printed as it is. %n is never performed: the request is malformed. So is a width or precision
// beyond INT_MAX. On Linux %ld takes a C long (64 bits there) and prints its low 32 bits, as Windows prints its 32-bit long; an
// int passed for %ld, or a long for %d, prints the same 32 bits.
#pragma once

#include "qxv/types.h"

namespace qxv::os {

/// Units that the formatted text needs, without terminator; -1 for a null or malformed request or more than INT_MAX units.
/// The arguments are copied, so the caller may use them again.
int FormatLength(const QXChar* format, va_list args) noexcept;

/// Writes at most capacity units with the terminator. Returns the units written without terminator, or -1 when the text was cut
/// or is malformed (what fitted is kept and terminated). The arguments are copied, so the caller may use them again.
int FormatText(QXChar* out, std::size_t capacity, const QXChar* format, va_list args) noexcept;

/// FormatText with the arguments themselves.
int FormatTextWith(QXChar* out, std::size_t capacity, const QXChar* format, ...) noexcept;

}  // namespace qxv::os
