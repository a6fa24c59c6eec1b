// vector2.h - points and vectors of the plane, and the relations of points and lines. A line is given by two points on it.
//
// One absolute tolerance holds for all comparisons, 0.0001, in three forms: equality and IsZero include it (|d| <= 0.0001),
// collinearity and line relations exclude it (|d| < 0.0001), and a line whose points differ by less (|dx| + |dy| < 0.0001) is
// degenerate. Every function may be called from any thread; outputs may be objects that also stand among the arguments.
#pragma once

#include "qxv/export.h"

class QXV_API CQXVVector2 {
 public:
  CQXVVector2() = default;
  CQXVVector2(double newX, double newY) : x(newX), y(newY) {}

  /// 1 when both coordinates agree within the tolerance, else 0.
  int operator==(const CQXVVector2& other) const;

  CQXVVector2 operator+(const CQXVVector2& other) const;
  CQXVVector2& operator+=(const CQXVVector2& other);
  CQXVVector2 operator-(const CQXVVector2& other) const;
  CQXVVector2& operator-=(const CQXVVector2& other);

  /// The product as complex numbers: multiplying by a vector of length 1 rotates by its angle.
  CQXVVector2 operator*(const CQXVVector2& other) const;
  CQXVVector2& operator*=(const CQXVVector2& other);

  CQXVVector2 operator*(double factor) const;
  CQXVVector2& operator*=(double factor);
  /// A divisor of 0 is not looked for: infinities or NaN.
  CQXVVector2 operator/(double divisor) const;
  CQXVVector2& operator/=(double divisor);

  /// Length, as the root of the sum of squares.
  double GetModel() const;
  /// |x| + |y|
  double GetNorm1() const;
  /// Radians from the x axis, counter-clockwise, from -pi to pi: atan2(y, x).
  double GetAngle() const;
  /// 1 when both coordinates are 0 within the tolerance, else 0.
  int IsZero() const;

  /// Counter-clockwise, in radians.
  void Rotate(double angle);
  /// To length 1. A zero vector is not looked for: NaN.
  void Normalize();

  double x = 0;
  double y = 0;
};

/// How two lines of the plane lie.
enum EQXV_2DPosition {
  EQXV_2DPOSITION_PARALLEL = 1,  ///< and not the same
  EQXV_2DPOSITION_INTERSECTING = 2,
  EQXV_2DPOSITION_COINCIDENT = 3,
};

/// Twice the signed area of the triangle, above 0 when a, b, c turn counter-clockwise: the determinant with the rows (x, y, 1),
/// summed as ax by + bx cy + cx ay - cx by - bx ay - cy ax.
QXV_API double QXVDeterminant3v(const CQXVVector2& a, const CQXVVector2& b, const CQXVVector2& c);

QXV_API double QXVInnerProduct(const CQXVVector2& a, const CQXVVector2& b);

/// 1 when the determinant is 0 within the tolerance, else 0.
QXV_API int QXVIs3PointInLine(const CQXVVector2& a, const CQXVVector2& b, const CQXVVector2& c);

/// The areas that q0 and q1 make with p0 p1 decide, so the longer p0 p1, the closer the angles that still count as parallel.
/// @return 0; -1 when a line is degenerate, with the position as it was
QXV_API int QXVGet2LineRelation(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& q0, const CQXVVector2& q1,
                                EQXV_2DPosition& position);

/// @return 0; -1 unless the lines intersect, with the point as it was
QXV_API int QXVGet2LineCrossPoint(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& q0, const CQXVVector2& q1,
                                  CQXVVector2& point);

/// Foot of the perpendicular from c on the line p0 p1.
/// @return 0, for a degenerate line too, which leaves the foot as it was
QXV_API int QXVGetPedal(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c, CQXVVector2& foot);

/// QXVGetPedal by another name.
QXV_API int QXVGetProjection(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c, CQXVVector2& foot);

/// Distance from c to the line p0 p1.
/// @return 0, for a degenerate line too, which leaves the distance as it was
QXV_API int QXVGetDistance(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c, double& distance);
