// vector3.h - points and vectors of space, and the relations of points, lines and planes. A line is given by two points on it, a
// plane ("face") by three, a segment by its ends. The tolerance and its forms are those of vector2.h.
//
// Functions with an int result return 0, or -1 for rejected input, and write their outputs only with 0. A line is rejected as
// degenerate when the absolute differences of its points add up to less than 0.0001; where a function says "zero line", when none
// of them exceeds 0.0001. A plane is rejected when no component of (b - a) x (c - a) exceeds 0.0001.
// Every function may be called from any thread; outputs may be objects that also stand among the arguments.
#pragma once

#include "qxv/export.h"

class QXV_API CQXVVector3 {
 public:
  CQXVVector3() : x(0), y(0), z(0) {}
  CQXVVector3(double newX, double newY, double newZ) : x(newX), y(newY), z(newZ) {}
  CQXVVector3(int newX, int newY, int newZ) : x(newX), y(newY), z(newZ) {}
  CQXVVector3(const CQXVVector3& other) = default;
  CQXVVector3& operator=(const CQXVVector3& other) = default;
  virtual ~CQXVVector3();

  void Set(double newX, double newY, double newZ);

  /// 1 when every coordinate agrees within the tolerance, else 0.
  int operator==(const CQXVVector3& other) const;
  int operator!=(const CQXVVector3& other) const;

  CQXVVector3 operator+(const CQXVVector3& other) const;
  CQXVVector3& operator+=(const CQXVVector3& other);
  CQXVVector3 operator-(const CQXVVector3& other) const;
  CQXVVector3& operator-=(const CQXVVector3& other);
  CQXVVector3 operator*(double factor) const;
  CQXVVector3& operator*=(double factor);
  /// A divisor of 0 is not looked for: infinities or NaN.
  CQXVVector3 operator/(double divisor) const;
  CQXVVector3& operator/=(double divisor);

  /// Cross product, this x other.
  CQXVVector3 operator*(const CQXVVector3& other) const;

  /// 1 when every coordinate is 0 within the tolerance, else 0.
  unsigned char IsZero() const;
  /// Length, as the root of the sum of squares.
  double GetModel() const;
  /// |x| + |y| + |z|
  double GetNorm1() const;
  /// Radians between two vectors, 0 to pi, by the law of cosines; NaN with a zero vector.
  static double GetAngle(const CQXVVector3& a, const CQXVVector3& b);
  /// To length 1. A zero vector is not looked for: NaN.
  void Normalize();

  double x;
  double y;
  double z;
};

/// How lines and planes of space lie to one another.
enum EQXV_3DPosition {
  EQXV_3DPOSITION_PARALLEL = 1,  ///< and not the same
  EQXV_3DPOSITION_INTERSECTING = 2,
  EQXV_3DPOSITION_SKEW = 3,        ///< two lines in no common plane
  EQXV_3DPOSITION_COINCIDENT = 4,  ///< the same, or the line lies in the plane
};

// Products.

QXV_API double QXVInnerProduct(const CQXVVector3& a, const CQXVVector3& b);
/// a x b
QXV_API CQXVVector3 QXVOuterProduct(const CQXVVector3& a, const CQXVVector3& b);
/// a . (b x c), the determinant with the rows a, b, c.
QXV_API double QXVMixedProduct(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c);
/// QXVMixedProduct by another name.
QXV_API double QXVDeterminant3v(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c);

// Relations.

/// 1 when every component of (c - a) x (c - b) is 0 within the tolerance, else 0.
QXV_API int QXVIs3PointInLine(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c);
/// 1 when the mixed product of c - d, b - d, a - d is 0 within the tolerance, else 0.
QXV_API int QXVIs4PointInFace(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& d);

QXV_API int QXVGet2LineRelation(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                                EQXV_3DPosition& position);
/// Planes are parallel or coincident only when their points turn in the same direction: opposite normals count as intersecting.
QXV_API int QXVGet2FaceRelation(const CQXVVector3& a0, const CQXVVector3& b0, const CQXVVector3& c0, const CQXVVector3& a1,
                                const CQXVVector3& b1, const CQXVVector3& c1, EQXV_3DPosition& position);
/// A zero line is rejected.
QXV_API int QXVGetLineFaceRelation(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& a, const CQXVVector3& b,
                                   const CQXVVector3& c, EQXV_3DPosition& position);

// Intersections; -1 also where there is no single one.

QXV_API int QXVGet2LineCrossPoint(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                                  CQXVVector3& point);
/// A zero line is rejected.
QXV_API int QXVGetLineFaceCrossPoint(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& a, const CQXVVector3& b,
                                     const CQXVVector3& c, CQXVVector3& point);
/// An end that lies in the plane is the point, s0 before s1. A zero segment is rejected.
QXV_API int QXVGetLineSegmentFaceCrossPoint(const CQXVVector3& s0, const CQXVVector3& s1, const CQXVVector3& a,
                                            const CQXVVector3& b, const CQXVVector3& c, CQXVVector3& point);
/// @param point0  the point of the common line nearest to a0
/// @param point1  one unit further along the line, in the direction of the first normal x the second
/// @return -1 for parallel planes, whichever way their points turn
QXV_API int QXVGet2FaceCrossLine(const CQXVVector3& a0, const CQXVVector3& b0, const CQXVVector3& c0, const CQXVVector3& a1,
                                 const CQXVVector3& b1, const CQXVVector3& c1, CQXVVector3& point0, CQXVVector3& point1);

// Feet, projections, normals, distances.

/// Foot of the perpendicular from c on the line p0 p1.
QXV_API int QXVGetPedal(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& c, CQXVVector3& foot);
/// QXVGetPedal by another name.
QXV_API int QXVGetProjection(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& c, CQXVVector3& foot);
/// Orthogonal projection of p on the plane a b c.
QXV_API int QXVGetProjection(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& p,
                             CQXVVector3& image);
/// Orthogonal projections of the two points of a line.
QXV_API int QXVGetProjection(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& p0,
                             const CQXVVector3& p1, CQXVVector3& image0, CQXVVector3& image1);
/// (b - a) x (c - a), of whatever length.
QXV_API int QXVGetNormal(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, CQXVVector3& normal);
/// Feet of the common perpendicular, foot0 on p0 p1, foot1 on q0 q1; -1 for parallel lines.
QXV_API int QXVGetCommonNormal(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                               CQXVVector3& foot0, CQXVVector3& foot1);
/// Distance from c to the line p0 p1.
QXV_API int QXVGetDistance(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& c, double& distance);
/// Distance of two lines: 0 for intersecting ones, that of q0 from p0 p1 for parallel ones.
QXV_API int QXVGetDistance(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                           double& distance);

// Angles, in radians.

/// Between the directions p1 - p0 and q1 - q0, 0 to pi.
QXV_API int QXVGet2LineAngle(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                             double& angle);
/// Between the line and its projection on the plane; 1.5707963 for a perpendicular line.
QXV_API int QXVGetLineFaceAngle(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& a, const CQXVVector3& b,
                                const CQXVVector3& c, double& angle);
/// Between the normals, 0 to pi.
QXV_API int QXVGet2FaceAngle(const CQXVVector3& a0, const CQXVVector3& b0, const CQXVVector3& c0, const CQXVVector3& a1,
                             const CQXVVector3& b1, const CQXVVector3& c1, double& angle);

// Motions.

/// p turned about the axis from a to b by the right-hand rule. A zero axis is rejected.
QXV_API int QXVRotate(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& p, double angle, CQXVVector3& image);
/// p mirrored in the plane a b c.
QXV_API int QXVGetSymmetryPoint(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& p,
                                CQXVVector3& image);
