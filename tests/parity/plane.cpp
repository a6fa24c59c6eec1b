// plane.cpp - vectors and relations in the plane.

#include "parity/geometry.h"

#include "qxv/vector2.h"

namespace parity {

namespace {

Trial& operator<<(Trial& t, const CQXVVector2& v) { return t << v.x << v.y; }

CQXVVector2 Point(Trial& t) {
  return t.Below(10) == 0 ? CQXVVector2{t.Double(), t.Double()} : CQXVVector2{t.Coarse(), t.Coarse()};
}

void Arithmetic(Trial& t) {
  t.Next();
  const CQXVVector2 a = Point(t);
  const CQXVVector2 b = t.Below(6) == 0 ? a : Point(t);
  const double factor = t.Coarse();
  CQXVVector2 c = a;
  t << (a == b) << a + b << a - b << a * b << a * factor << a / factor << a.GetModel() << a.GetNorm1() << a.IsZero();
  t << (c += b) << (c -= a) << (c *= factor) << (c /= 3.0) << (c *= b);
  t << QXVInnerProduct(a, b) << QXVDeterminant3v(a, b, c);
  c = a;
  c.Normalize();
  t << c;
}

void Relations(Trial& t) {
  t.Next();
  const CQXVVector2 p = Point(t);
  const CQXVVector2 q = Point(t);
  const CQXVVector2 r = t.Below(4) == 0 ? p + (q - p) * 2.0 : Point(t);
  const CQXVVector2 s = t.Below(4) == 0 ? r + (q - p) : Point(t);
  EQXV_2DPosition position{};
  CQXVVector2 point;
  double distance = 0;
  t << QXVIs3PointInLine(p, q, r) << QXVGet2LineRelation(p, q, r, s, position) << position;
  t << QXVGet2LineCrossPoint(p, q, r, s, point) << point << QXVGetPedal(p, q, r, point) << point;
  t << QXVGetProjection(p, q, r, point) << point << QXVGetDistance(p, q, r, distance) << distance;
}

void Angles(Trial& t) {
  t.Next();
  CQXVVector2 a{t.Coarse(), t.Coarse()};
  t << a.GetAngle();
  a.Rotate(t.Coarse() / 100);
  t << a;
}

}  // namespace

void RunPlane(Trial& t) { RunGeometry(t, &Arithmetic, &Relations, &Angles); }

}  // namespace parity
