// plane_relations.cpp - points and lines of the plane.

#include "qxv/vector2.h"

#include "geometry/line_meeting.h"
#include "geometry/tolerance.h"

namespace {

bool IsDegenerate(const CQXVVector2& p0, const CQXVVector2& p1) { return (p1 - p0).GetNorm1() < qxv::kTolerance; }

// Foot of the perpendicular from c on a line that is not degenerate.
CQXVVector2 Foot(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c) {
  CQXVVector2 direction = p1 - p0;
  direction.Normalize();
  return p0 + direction * QXVInnerProduct(c - p0, direction);
}

}  // namespace

double QXVDeterminant3v(const CQXVVector2& a, const CQXVVector2& b, const CQXVVector2& c) {
  return a.x * b.y + b.x * c.y + c.x * a.y - c.x * b.y - b.x * a.y - c.y * a.x;
}

double QXVInnerProduct(const CQXVVector2& a, const CQXVVector2& b) { return a.x * b.x + a.y * b.y; }

int QXVIs3PointInLine(const CQXVVector2& a, const CQXVVector2& b, const CQXVVector2& c) {
  return qxv::IsZeroStrict(QXVDeterminant3v(a, b, c)) ? 1 : 0;
}

// KEPT: the areas are not divided by the lines' lengths, so a long first line makes the tests stricter in angle.
//   Pinned by PlaneRelationKept.ALongFirstLineIsJudgedMoreStrictly.
int QXVGet2LineRelation(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& q0, const CQXVVector2& q1,
                        EQXV_2DPosition& position) {
  if (IsDegenerate(p0, p1) || IsDegenerate(q0, q1)) {
    return -1;
  }
  const double area0 = QXVDeterminant3v(p0, p1, q0), area1 = QXVDeterminant3v(p0, p1, q1);
  if (qxv::IsZeroStrict(area0) && qxv::IsZeroStrict(area1)) {
    position = EQXV_2DPOSITION_COINCIDENT;
  } else {
    position = qxv::IsZeroStrict(area0 - area1) ? EQXV_2DPOSITION_PARALLEL : EQXV_2DPOSITION_INTERSECTING;
  }
  return 0;
}

int QXVGet2LineCrossPoint(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& q0, const CQXVVector2& q1,
                          CQXVVector2& point) {
  EQXV_2DPosition position{};
  if (QXVGet2LineRelation(p0, p1, q0, q1, position) != 0 || position != EQXV_2DPOSITION_INTERSECTING) {
    return -1;
  }
  if (const CQXVVector2* shared = qxv::PointOnOtherLine(p0, p1, q0, q1); shared != nullptr) {
    point = *shared;
  } else {
    const double distance0 = (q0 - Foot(p0, p1, q0)).GetModel();
    const double distance1 = (q1 - Foot(p1, p0, q1)).GetModel();
    const bool onBothSides = QXVDeterminant3v(p0, p1, q1) * QXVDeterminant3v(p0, p1, q0) < 0;
    point =
        onBothSides ? q0 + (q1 - q0) * distance0 / (distance0 + distance1) : q1 + (q1 - q0) * distance1 / (distance0 - distance1);
  }
  return 0;
}

// KEPT: a degenerate line is not told by the result. Pinned by PlaneFootKept.ADegenerateLineSucceedsAndWritesNothing.
int QXVGetPedal(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c, CQXVVector2& foot) {
  if (!IsDegenerate(p0, p1)) {
    foot = Foot(p0, p1, c);
  }
  return 0;
}

int QXVGetProjection(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c, CQXVVector2& foot) {
  return QXVGetPedal(p0, p1, c, foot);
}

int QXVGetDistance(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& c, double& distance) {
  if (!IsDegenerate(p0, p1)) {
    distance = (c - Foot(p0, p1, c)).GetModel();
  }
  return 0;
}
