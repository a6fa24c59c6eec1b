// space.cpp - vectors and relations in space.

#include "parity/geometry.h"

#include "qxv/vector3.h"

namespace parity {

namespace {

using V = CQXVVector3;

Trial& operator<<(Trial& t, const V& v) { return t << v.x << v.y << v.z; }

V Point(Trial& t) {
  return t.Below(10) == 0 ? V{t.Double(), t.Double(), t.Double()} : V{t.Between(-20, 20), t.Between(-20, 20), t.Between(-20, 20)};
}

void Arithmetic(Trial& t) {
  t.Next();
  const V a = Point(t);
  const V b = t.Below(6) == 0 ? a : Point(t);
  const double factor = t.Coarse();
  V c = a;
  t << (a == b) << (a != b) << a + b << a - b << a * b << a * factor << a / factor << a.GetModel() << a.GetNorm1() << a.IsZero();
  t << (c += b) << (c -= a) << (c *= factor) << (c /= 3.0);
  t << QXVInnerProduct(a, b) << QXVOuterProduct(a, b) << QXVMixedProduct(a, b, c) << QXVDeterminant3v(a, b, c);
  const double parts[] = {t.Coarse(), t.Coarse(), t.Coarse()};
  c.Set(parts[0], parts[1], parts[2]);
  c.Normalize();
  t << c;
}

struct Points {
  explicit Points(Trial& t) {
    for (V& point : p) {
      point = Point(t);
    }
    switch (t.Below(5)) {
      case 0:
        p[2] = p[0] + (p[1] - p[0]) * 2.0;
        break;
      case 1:
        p[3] = p[2] + (p[1] - p[0]);
        break;
      case 2:
        p[5] = p[3] + p[4] * 0.0 + (p[1] - p[0]);
        break;
      default:
        break;
    }
  }
  V p[6];
};

void Relations(Trial& t) {
  t.Next();
  const Points drawn(t);
  const V* p = drawn.p;
  EQXV_3DPosition position{};
  V point;
  V other;
  double distance = 0;
  t << QXVIs3PointInLine(p[0], p[1], p[2]) << QXVIs4PointInFace(p[0], p[1], p[2], p[3]);
  t << QXVGet2LineRelation(p[0], p[1], p[2], p[3], position) << position;
  t << QXVGet2FaceRelation(p[0], p[1], p[2], p[3], p[4], p[5], position) << position;
  t << QXVGetLineFaceRelation(p[0], p[1], p[2], p[3], p[4], position) << position;
  t << QXVGet2LineCrossPoint(p[0], p[1], p[2], p[3], point) << point;
  t << QXVGetLineFaceCrossPoint(p[0], p[1], p[2], p[3], p[4], point) << point;
  t << QXVGetLineSegmentFaceCrossPoint(p[0], p[1], p[2], p[3], p[4], point) << point;
  t << QXVGet2FaceCrossLine(p[0], p[1], p[2], p[3], p[4], p[5], point, other) << point << other;
  t << QXVGetPedal(p[0], p[1], p[2], point) << point << QXVGetProjection(p[0], p[1], p[2], point) << point;
  t << QXVGetProjection(p[0], p[1], p[2], p[3], point) << point;
  t << QXVGetProjection(p[0], p[1], p[2], p[3], p[4], point, other) << point << other;
  t << QXVGetNormal(p[0], p[1], p[2], point) << point;
  t << QXVGetCommonNormal(p[0], p[1], p[2], p[3], point, other) << point << other;
  t << QXVGetDistance(p[0], p[1], p[2], distance) << distance << QXVGetDistance(p[0], p[1], p[2], p[3], distance) << distance;
  t << QXVGetSymmetryPoint(p[0], p[1], p[2], p[3], point) << point;
}

void Angles(Trial& t) {
  t.Next();
  const Points drawn(t);
  const V* p = drawn.p;
  double angle = 0;
  V point;
  t << V::GetAngle(p[0], p[1]) << QXVGet2LineAngle(p[0], p[1], p[2], p[3], angle) << angle;
  t << QXVGetLineFaceAngle(p[0], p[1], p[2], p[3], p[4], angle) << angle;
  t << QXVGet2FaceAngle(p[0], p[1], p[2], p[3], p[4], p[5], angle) << angle;
  const V turned{t.Coarse(), t.Coarse(), t.Coarse()};
  t << QXVRotate(V(1, 2, 3), V(4, -5, 6), turned, t.Coarse() / 100, point) << point;
}

}  // namespace

void RunSpace(Trial& t) { RunGeometry(t, &Arithmetic, &Relations, &Angles); }

}  // namespace parity
