// rounding.h - numbers cut to significant figures, to decimal positions and to steps, in a chosen direction, and their text.
// Every function may be called from any thread. None reports an error; docs/rounding.md tells what becomes of values out of
// range.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

// The direction ("mode"): 0 towards minus infinity, 1 towards plus infinity, any other value towards zero.
//
// Powers of ten and the cut values of the floating families are 32-bit integers: up to 9 digits, and results of up to 2147483647
// units of the last kept digit. Beyond that results are meaningless, but defined and the same on both systems. A ceiling goes one
// unit up only when more than a millionth of that unit was cut off, so that noise of the representation does not push a value up;
// the step members compare exactly.

// Significant figures. 1234.5 to 2 digits: 1200, with mode 1 1300. 0, and what is too small to reach the digits' band within ten
// multiplications by ten, gives 0. Infinities stay.

QXV_API double QXVDoubleMakeSigFigure(double value, int digits, unsigned char mode);
QXV_API float QXVFloatMakeSigFigure(float value, int digits, unsigned char mode);
/// A value of up to that many digits stays; the ceiling of any other adds exactly 1 to the value cut off: 1234 to 2 digits with
/// mode 1 is 1201.
QXV_API QXInt64 QXVLonglongMakeSigFigure(QXInt64 value, int digits, unsigned char mode);

// Decimal exponent of the leading digit: 1234 gives 3, 7 gives 0, 0.05 gives -2. 0, what is below 1e-10, infinities and NaN: 0.

QXV_API int QXVDoubleGetPowerCount(double value);
QXV_API int QXVFloatGetPowerCount(float value);
/// Never negative: 0 below ten.
QXV_API int QXVLonglongGetPowerCount(QXInt64 value);

// Decimal places. 12.345 to 2 places: 12.34, to -1 place: 10.

QXV_API double QXVDoubleMakeShed(double value, int decimals, unsigned char mode);
QXV_API float QXVFloatMakeShed(float value, int decimals, unsigned char mode);
/// Clears the lowest removed digits: 1234 without 2 digits is 1200, with mode 1 1300. Below 1 the value stays.
QXV_API QXInt64 QXVLonglongMakeShed(QXInt64 value, int removed, unsigned char mode);

// The same to the nearest, halves away from zero.

QXV_API double QXVDoubleMakeShed(double value, int decimals);
QXV_API float QXVFloatMakeShed(float value, int decimals);
QXV_API QXInt64 QXVLonglongMakeShed(QXInt64 value, int removed);

// Multiples of a step, which is first rounded to so many significant figures (by the integer member: cut). A step that does not
// come to them within ten scalings by ten (0 and negative ones, for example) leaves the value as it is.

QXV_API double QXVDoubleMakeShed(double value, double step, int digits, unsigned char mode);
QXV_API float QXVFloatMakeShed(float value, float step, int digits, unsigned char mode);
/// A step of 0 leaves the value as it is; a step of up to that many digits is used as it is, a negative one too.
QXV_API QXInt64 QXVLonglongMakeShed(QXInt64 value, QXInt64 step, int digits, unsigned char mode);

// Text.

/// The value rounded to so many decimals (halves away from zero), without zeros at the end: 1.5 with 3 is "1.5", 1234 with -2 is
/// "1200", -0.004 with 2 is "0". Up to 2^63 units of the last decimal.
/// @param decimals  negative: tens, hundreds ...; beyond 400 either way as 400
QXV_API void QXVDouble2String(double value, int decimals, CQXString& text);
QXV_API void QXVFloat2String(float value, int decimals, CQXString& text);
