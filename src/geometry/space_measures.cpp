// space_measures.cpp - feet, projections, distances, angles and motions in space.

#include "geometry/triple.h"
#include "qxv/vector3.h"

#include <cmath>

namespace {

using qxv::Assign;
using qxv::Cross;
using qxv::Dot;
using qxv::Foot;
using qxv::IsDegenerate;
using qxv::IsZeroInclusive;
using qxv::Length;
using qxv::Normal;
using qxv::Normalized;
using qxv::Projection;
using qxv::Triple;

constexpr double kRightAngle = 1.5707963;  // as it is written into project files, not the nearest double of pi / 2

struct Feet {
  Triple onFirst;
  Triple onSecond;
};

// The closest points of two lines that are not parallel.
Feet ClosestPoints(const Triple& p0, const Triple& p1, const Triple& q0, const Triple& q1) {
  const Triple first = p1 - p0, second = q1 - q0, between = q0 - p0;
  const Triple normal = Cross(first, second);
  const double area = Dot(normal, normal);
  return {p0 + first * (Dot(Cross(between, second), normal) / area), q0 + second * (Dot(Cross(between, first), normal) / area)};
}

}  // namespace

int QXVGetPedal(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& c, CQXVVector3& foot) {
  if (IsDegenerate(p0, p1)) {
    return -1;
  }
  Assign(foot, Foot(p0, p1, c));
  return 0;
}

int QXVGetProjection(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& c, CQXVVector3& foot) {
  return QXVGetPedal(p0, p1, c, foot);
}

int QXVGetProjection(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& p, CQXVVector3& image) {
  const Triple normal = Normal(a, b, c);
  if (IsZeroInclusive(normal)) {
    return -1;
  }
  Assign(image, Projection(a, Normalized(normal), p));
  return 0;
}

int QXVGetProjection(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& p0,
                     const CQXVVector3& p1, CQXVVector3& image0, CQXVVector3& image1) {
  const Triple normal = Normal(a, b, c);
  if (IsZeroInclusive(normal) || IsDegenerate(p0, p1)) {
    return -1;
  }
  const Triple unit = Normalized(normal);
  const Triple projected0 = Projection(a, unit, p0), projected1 = Projection(a, unit, p1);
  Assign(image0, projected0);
  Assign(image1, projected1);
  return 0;
}

int QXVGetNormal(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, CQXVVector3& normal) {
  const Triple product = Normal(a, b, c);
  if (IsZeroInclusive(product)) {
    return -1;
  }
  Assign(normal, product);
  return 0;
}

int QXVGetCommonNormal(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                       CQXVVector3& foot0, CQXVVector3& foot1) {
  EQXV_3DPosition position{};
  if (QXVGet2LineRelation(p0, p1, q0, q1, position) != 0 || position == EQXV_3DPOSITION_PARALLEL ||
      position == EQXV_3DPOSITION_COINCIDENT) {
    return -1;
  }
  const Feet feet = ClosestPoints(p0, p1, q0, q1);
  Assign(foot0, feet.onFirst);
  Assign(foot1, feet.onSecond);
  return 0;
}

int QXVGetDistance(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& c, double& distance) {
  if (IsDegenerate(p0, p1)) {
    return -1;
  }
  distance = Length(c - Foot(p0, p1, c));
  return 0;
}

int QXVGetDistance(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1, double& distance) {
  EQXV_3DPosition position{};
  if (QXVGet2LineRelation(p0, p1, q0, q1, position) != 0) {
    return -1;
  }
  if (position == EQXV_3DPOSITION_INTERSECTING) {
    distance = 0;
  } else if (position == EQXV_3DPOSITION_SKEW) {
    const Feet feet = ClosestPoints(p0, p1, q0, q1);
    distance = Length(feet.onSecond - feet.onFirst);
  } else {
    distance = Length(q0 - Foot(p0, p1, q0));
  }
  return 0;
}

int QXVGet2LineAngle(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1, double& angle) {
  if (IsDegenerate(p0, p1) || IsDegenerate(q0, q1)) {
    return -1;
  }
  angle = CQXVVector3::GetAngle(p1 - p0, q1 - q0);
  return 0;
}

// KEPT: a perpendicular line has this constant, not the nearest number to pi / 2.
//   Pinned by SpaceAngleKept.APerpendicularLineHasAConstant.
int QXVGetLineFaceAngle(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& a, const CQXVVector3& b,
                        const CQXVVector3& c, double& angle) {
  const Triple normal = Normal(a, b, c);
  if (IsDegenerate(p0, p1) || IsZeroInclusive(normal)) {
    return -1;
  }
  const Triple unit = Normalized(normal);
  CQXVVector3 projected;
  Assign(projected, Projection(a, unit, p1) - Projection(a, unit, p0));
  angle = projected.IsZero() != 0 ? kRightAngle : CQXVVector3::GetAngle(projected, p1 - p0);
  return 0;
}

int QXVGet2FaceAngle(const CQXVVector3& a0, const CQXVVector3& b0, const CQXVVector3& c0, const CQXVVector3& a1,
                     const CQXVVector3& b1, const CQXVVector3& c1, double& angle) {
  CQXVVector3 normal0, normal1;
  if (QXVGetNormal(a0, b0, c0, normal0) != 0 || QXVGetNormal(a1, b1, c1, normal1) != 0) {
    return -1;
  }
  angle = CQXVVector3::GetAngle(normal0, normal1);
  return 0;
}

int QXVRotate(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& p, double angle, CQXVVector3& image) {
  const Triple axis = Triple(b) - a;
  if (IsZeroInclusive(axis)) {
    return -1;
  }
  const Triple u = Normalized(axis), v = Triple(p) - a;
  const double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
  const double xy = t * u.x * u.y, xz = t * u.x * u.z, yz = t * u.y * u.z;
  const Triple turned((t * u.x * u.x + c) * v.x + (xy - s * u.z) * v.y + (xz + s * u.y) * v.z,
                      (xy + s * u.z) * v.x + (t * u.y * u.y + c) * v.y + (yz - s * u.x) * v.z,
                      (xz - s * u.y) * v.x + (yz + s * u.x) * v.y + (t * u.z * u.z + c) * v.z);
  Assign(image, a + turned);
  return 0;
}

int QXVGetSymmetryPoint(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& p,
                        CQXVVector3& image) {
  const Triple normal = Normal(a, b, c);
  if (IsZeroInclusive(normal)) {
    return -1;
  }
  const Triple unit = Normalized(normal);
  Assign(image, p - unit * (2 * Dot(unit, Triple(p) - a)));
  return 0;
}
