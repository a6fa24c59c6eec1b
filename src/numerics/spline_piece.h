// spline_piece.h - one interval of a cubic spline, and its values at many places.
// The order of the operations is part of the rule: results are cut to integers, so a last bit may decide.
#pragma once

#include "foundation/numeric.h"

#include <cstddef>

namespace qxv {

/// The cubic between two knots: M are the second derivatives there, h is their spacing.
struct SplinePiece {
  double leftM;
  double rightM;
  double sixH;         // 6 h
  double leftFactor;   // left y / h - h leftM / 6
  double rightFactor;  // right y / h - h rightM / 6

  /// Of the distances to the right and to the left knot and their cubes, which wrap where the abscissas are integers.
  [[nodiscard]] double At(double toRight, double toRightCubed, double fromLeft, double fromLeftCubed) const noexcept {
    return leftM * toRightCubed / sixH + rightM * fromLeftCubed / sixH + leftFactor * toRight + rightFactor * fromLeft;
  }

  /// At abscissa s, cut to a whole number.
  [[nodiscard]] double WholeAt(double left, double right, double s) const noexcept {
    const double toRight = right - s;
    const double fromLeft = s - left;
    return TruncateToInt32(At(toRight, toRight * toRight * toRight, fromLeft, fromLeft * fromLeft * fromLeft));
  }
};

/// Samples that follow one another by step (above 0) in the interval from left to right, up to limit.
struct SplineRun {
  double left;
  double right;
  double limit;  // right, or infinity in the last interval
  double step;
  double s;  // the next abscissa
};

/// WholeAt of run.s and the following abscissas up to the limit, at most count; moves run.s on and returns their number.
std::size_t SampleSplinePiece(const SplinePiece& piece, SplineRun& run, double* out, std::size_t count) noexcept;

}  // namespace qxv
