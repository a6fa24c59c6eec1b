// space_relations.cpp - how points, lines and planes of space lie to one another, and where they meet.

#include "geometry/line_meeting.h"
#include "geometry/triple.h"
#include "qxv/vector3.h"

namespace {

using qxv::Cross;
using qxv::Dot;
using qxv::Foot;
using qxv::IsDegenerate;
using qxv::IsZeroInclusive;
using qxv::IsZeroStrict;
using qxv::Length;
using qxv::Mixed;
using qxv::Normal;
using qxv::Normalized;
using qxv::Triple;

// Intersecting lines, none of whose points lies on the other: between q0 and q1 by their distances from the first line.
Triple CrossByDistances(const Triple& p0, const Triple& p1, const Triple& q0, const Triple& q1) {
  const Triple offset0 = q0 - Foot(p0, p1, q0);
  const Triple offset1 = q1 - Foot(p1, p0, q1);
  const double distance0 = Length(offset0), distance1 = Length(offset1);
  const bool onBothSides = Dot(offset0, offset1) < 0;
  return onBothSides ? q0 + (q1 - q0) * distance0 / (distance0 + distance1)
                     : q1 + (q1 - q0) * distance1 / (distance0 - distance1);
}

}  // namespace

int QXVIs3PointInLine(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c) {
  return IsZeroStrict(Cross(Triple(c) - a, Triple(c) - b)) ? 1 : 0;
}

int QXVIs4PointInFace(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c, const CQXVVector3& d) {
  return IsZeroStrict(Mixed(Triple(c) - d, Triple(b) - d, Triple(a) - d)) ? 1 : 0;
}

int QXVGet2LineRelation(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                        EQXV_3DPosition& position) {
  if (IsDegenerate(p0, p1) || IsDegenerate(q0, q1)) {
    return -1;
  }
  if (!IsZeroStrict(Mixed(Triple(p0) - q1, Triple(p1) - q1, Triple(q0) - q1))) {
    position = EQXV_3DPOSITION_SKEW;
  } else if (qxv::Norm1(Cross(Triple(p1) - p0, Triple(q1) - q0)) > qxv::kTolerance) {
    position = EQXV_3DPOSITION_INTERSECTING;
  } else {
    position = QXVIs3PointInLine(p0, p1, q0) != 0 ? EQXV_3DPOSITION_COINCIDENT : EQXV_3DPOSITION_PARALLEL;
  }
  return 0;
}

// KEPT: opposite normals count as intersecting. Pinned by SpaceRelationKept.PlanesThatTurnTheOtherWayIntersect.
int QXVGet2FaceRelation(const CQXVVector3& a0, const CQXVVector3& b0, const CQXVVector3& c0, const CQXVVector3& a1,
                        const CQXVVector3& b1, const CQXVVector3& c1, EQXV_3DPosition& position) {
  const Triple normal0 = Normal(a0, b0, c0), normal1 = Normal(a1, b1, c1);
  if (IsZeroInclusive(normal0) || IsZeroInclusive(normal1)) {
    return -1;
  }
  if (!IsZeroInclusive(Normalized(normal1) - Normalized(normal0))) {
    position = EQXV_3DPOSITION_INTERSECTING;
  } else {
    const bool samePlane = IsZeroStrict(Mixed(Triple(a0) - a1, Triple(b0) - a1, Triple(c0) - a1));
    position = samePlane ? EQXV_3DPOSITION_COINCIDENT : EQXV_3DPOSITION_PARALLEL;
  }
  return 0;
}

int QXVGetLineFaceRelation(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& a, const CQXVVector3& b,
                           const CQXVVector3& c, EQXV_3DPosition& position) {
  const Triple direction = Triple(p0) - p1, normal = Normal(a, b, c);
  if (IsZeroInclusive(direction) || IsZeroInclusive(normal)) {
    return -1;
  }
  if (!IsZeroStrict(Dot(direction, normal))) {
    position = EQXV_3DPOSITION_INTERSECTING;
  } else {
    const bool inPlane = IsZeroStrict(Mixed(Triple(b) - a, Triple(c) - a, Triple(p0) - a));
    position = inPlane ? EQXV_3DPOSITION_COINCIDENT : EQXV_3DPOSITION_PARALLEL;
  }
  return 0;
}

int QXVGet2LineCrossPoint(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& q0, const CQXVVector3& q1,
                          CQXVVector3& point) {
  EQXV_3DPosition position{};
  if (QXVGet2LineRelation(p0, p1, q0, q1, position) != 0 || position != EQXV_3DPOSITION_INTERSECTING) {
    return -1;
  }
  if (const CQXVVector3* shared = qxv::PointOnOtherLine(p0, p1, q0, q1); shared != nullptr) {
    point = *shared;
  } else {
    qxv::Assign(point, CrossByDistances(p0, p1, q0, q1));
  }
  return 0;
}

int QXVGetLineFaceCrossPoint(const CQXVVector3& p0, const CQXVVector3& p1, const CQXVVector3& a, const CQXVVector3& b,
                             const CQXVVector3& c, CQXVVector3& point) {
  const Triple direction = Triple(p1) - p0, normal = Normal(a, b, c);
  const double climb = Dot(normal, direction);
  if (IsZeroInclusive(direction) || IsZeroInclusive(normal) || IsZeroStrict(climb)) {
    return -1;
  }
  qxv::Assign(point, p0 + direction * (Dot(normal, Triple(a) - p0) / climb));
  return 0;
}

int QXVGetLineSegmentFaceCrossPoint(const CQXVVector3& s0, const CQXVVector3& s1, const CQXVVector3& a, const CQXVVector3& b,
                                    const CQXVVector3& c, CQXVVector3& point) {
  const Triple direction = Triple(s1) - s0, normal = Normal(a, b, c);
  if (IsZeroInclusive(direction) || IsZeroInclusive(normal)) {
    return -1;
  }
  const double height0 = Dot(normal, Triple(s0) - a), height1 = Dot(normal, Triple(s1) - a);
  if (IsZeroStrict(height0)) {
    point = s0;
  } else if (IsZeroStrict(height1)) {
    point = s1;
  } else if (IsZeroStrict(height0 - height1) || height0 * height1 > 0) {
    return -1;
  } else {
    qxv::Assign(point, s0 + direction * height0 / (height0 - height1));
  }
  return 0;
}

int QXVGet2FaceCrossLine(const CQXVVector3& a0, const CQXVVector3& b0, const CQXVVector3& c0, const CQXVVector3& a1,
                         const CQXVVector3& b1, const CQXVVector3& c1, CQXVVector3& point0, CQXVVector3& point1) {
  const Triple normal0 = Normal(a0, b0, c0), normal1 = Normal(a1, b1, c1);
  if (IsZeroInclusive(normal0) || IsZeroInclusive(normal1)) {
    return -1;
  }
  const Triple unit0 = Normalized(normal0), unit1 = Normalized(normal1);
  if (IsZeroInclusive(unit1 - unit0) || IsZeroInclusive(unit1 + unit0)) {
    return -1;
  }
  const Triple direction = Normalized(Cross(unit0, unit1));
  const Triple towardsLine = Cross(direction, unit0);  // in the first plane
  const Triple nearest = a0 + towardsLine * (Dot(unit1, Triple(a1) - a0) / Dot(unit1, towardsLine));
  qxv::Assign(point0, nearest);
  qxv::Assign(point1, nearest + direction);
  return 0;
}
