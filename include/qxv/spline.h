// spline.h - natural cubic splines through given knots. Every sample is a whole number: the curves are in pixels or samples.
// Every function may be called from any thread. Results beyond 32 bits, and what is not a number, give -2147483648.
#pragma once

#include "qxv/export.h"

/// The spline through n knots at the abscissas xs, towards zero. Before the first and behind the last knot the end cubics go on.
/// @param x     n knots, strictly ascending and at most 1290 apart: cubes of differences are 32-bit integers, which wrap beyond
/// @param ys    receives count samples; zeros for n below 1, y[0] for one knot
QXV_API void QXVCubicSpline(const int* x, const int* y, int n, const int* xs, int* ys, int count);

/// The spline through n knots at x[0], x[0] + step, ..., each abscissa by adding step to the one before.
/// A knot less than 0.0001 from the next one is dropped. Two or three knots are continued in a line to four; a single one gives
/// its y, which is then not cut to a whole number. Abscissas must ascend.
/// @param ys    receives count samples; zeros for n below 1
QXV_API void QXVCubicSpline(const double* x, const double* y, int n, double step, int count, double* ys);

/// A smooth curve through n points of the plane: x and y as splines over the length of the chords between them. The samples are
/// spread evenly from the first point to the last, about step apart.
/// @param step  above 0; a step that would give no or more than 2^31 - 1 samples gives none
/// @param xs    receives count doubles, made by new[] and the caller's to delete[]
/// @param ys    likewise
/// @throws std::bad_alloc  more than 2^28 samples, or no memory; the outputs are then as they were
QXV_API void QXVCubicSpline2(const double* x, const double* y, int n, double step, double*& xs, double*& ys, int& count);
