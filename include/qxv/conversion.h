// conversion.h - numbers from text and text from numbers, and texts split and joined at a separator.
// Nothing here depends on the locale. Every function may be called from any thread, on distinct texts at the same time.
#pragma once

#include "qxv/array.h"
#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

// Strict parsing. The whole text must be a number: blanks (the space character only) before and behind it are dropped, then an
// optional "-", digits and, for the two floating functions, at most one ".". No "+", no exponent, no separators, no blank inside.
// "-" alone is -0, "." alone and "5." and ".5" are numbers.
//
// 0 on success, -1 on failure. An empty or blank text leaves the value untouched; any other failure leaves what was read up to
// the offending character, without the sign: callers look at the result first.

/// In single precision. Digits are taken one by one: before the point v = v * 10 + d, behind it v = v + d / 10 / 10 ..., each
/// step rounded, so the last bit may differ from the nearest value. Digits beyond the range give infinity; one more digit other
/// than "0" before the point then fails.
QXV_API int QXVString2Float(const CQXString& text, float& value);

/// The same in double precision.
QXV_API int QXVString2Double(const CQXString& text, double& value);

/// Up to 2147483647 in magnitude, so -2147483648 fails too. A digit that would leave the range fails; the value is the one
/// before that digit.
QXV_API int QXVString2Int(const CQXString& text, int& value);

// Compact printing.

/// Six decimals, rounded with ties away from zero, without the zeros at their end and without a bare point: 1.5, 2, 100, -0,
/// 0.000001. Never an exponent. Infinities and what is not a number: "1.#INF", "-1.#INF", "1.#QNAN", "-1.#IND".
QXV_API void QXVFloat2String(float value, CQXString& text);
QXV_API void QXVDouble2String(double value, CQXString& text);
QXV_API void QXVInt2String(int value, CQXString& text);

// The C run-time's conversions. White space and a sign before the number, anything behind it; no number gives 0. Integers beyond
// the range give the nearest one.

QXV_API int QXVAtoI(CQXString text);
/// 32 bits on every system, whatever a long holds.
QXV_API long QXVAtoL(CQXString text);
QXV_API double QXVAtoF(CQXString text);
QXV_API QXInt64 QXVAtoLLong(CQXString text);

QXV_API CQXString QXVItoA(int value);
/// The same function; a long beyond 32 bits prints as the nearest 32-bit number.
QXV_API CQXString QXVLtoA(long value);
QXV_API CQXString QXVLLongtoA(QXInt64 value);

/// The digits of the value rounded to count decimals (0 to 350, beyond that the nearest of the two), without sign, point and
/// leading zeros: 12.5 with 2 decimals is "1250", 0.001 with 3 is "1", 0 with 3 is "000". Where the point stands is not told.
/// @param sign  non-zero when the value is negative, else 0
QXV_API CQXString QXVFtoA(double value, int count, int& sign);

// Split and join.

/// Replaces the parts by the texts between the separators, exactly matched from left to right; empty parts count, so a text
/// always gives one part more than it holds separators. A null or empty separator gives the whole text as the only part.
/// Separator and source may be elements of the parts.
/// @return 1; 0 for a null source, with the parts untouched
QXV_API int QXVStrtoStrArr(const QXChar* separator, const QXChar* source, CQXArray<CQXString, CQXString&>& parts);

/// The parts with a separator between each two (none when it is null). No parts give an empty text.
QXV_API CQXString QXVStrArrtoStr(const QXChar* separator, const CQXArray<CQXString, CQXString&>& parts);
