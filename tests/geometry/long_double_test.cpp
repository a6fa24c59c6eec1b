// long_double_test.cpp - geometry beside other formulas in long double: areas and volumes in place of feet, the arc tangent in
// place of the law of cosines, Cramer's rule in place of interpolation, the rotation formula of vectors in place of its matrix.

#include "qxv/vector2.h"
#include "qxv/vector3.h"

#include "geometry/scene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using V = CQXVVector3;
using Long = long double;

struct L {
  Long x, y, z;
  L(Long newX, Long newY, Long newZ) : x(newX), y(newY), z(newZ) {}
  L(const V& v) : x(v.x), y(v.y), z(v.z) {}          // NOLINT(google-explicit-constructor): the same coordinates
  L(const CQXVVector2& v) : x(v.x), y(v.y), z(0) {}  // NOLINT(google-explicit-constructor): in the plane z = 0
};

L operator+(const L& a, const L& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
L operator-(const L& a, const L& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
L operator*(const L& a, Long factor) { return {a.x * factor, a.y * factor, a.z * factor}; }
Long Dot(const L& a, const L& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
L Cross(const L& a, const L& b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
Long Length(const L& a) { return std::sqrt(Dot(a, a)); }
Long Angle(const L& a, const L& b) { return std::atan2(Length(Cross(a, b)), Dot(a, b)); }

void ExpectNear(const L& actual, const L& expected, double tolerance) {
  EXPECT_NEAR(static_cast<double>(actual.x - expected.x), 0, tolerance);
  EXPECT_NEAR(static_cast<double>(actual.y - expected.y), 0, tolerance);
  EXPECT_NEAR(static_cast<double>(actual.z - expected.z), 0, tolerance);
}

// Where a + u s and b + v t of one plane meet.
L Meeting(const L& a, const L& u, const L& b, const L& v) {
  const L across = Cross(u, v);
  return a + u * (Dot(Cross(b - a, v), across) / Dot(across, across));
}

TEST(GeometryLongDouble, ThePlane) {
  scene::Random random(24);
  for (int i = 0; i < 5000; ++i) {
    const auto point = [&] { return CQXVVector2(random.Between(-50, 50), random.Between(-50, 50)); };
    const CQXVVector2 p0 = point(), p1 = point(), q0 = point(), q1 = point();
    const L u = L(p1) - p0, v = L(q1) - q0;
    const Long area = Cross(u, L(q0) - p0).z;
    if (Length(u) < 1 || Length(v) < 1 || std::fabs(std::sin(Angle(u, v))) < 0.05L) {
      continue;  // the error grows with the reciprocal of the angle
    }
    EXPECT_NEAR(QXVDeterminant3v(p0, p1, q0), static_cast<double>(area), 1e-10);
    CQXVVector2 foot, meeting;
    double distance = 0;
    ASSERT_EQ(QXVGetPedal(p0, p1, q0, foot), 0);
    ExpectNear(foot, L(p0) + u * (Dot(L(q0) - p0, u) / Dot(u, u)), 1e-11);
    ASSERT_EQ(QXVGetDistance(p0, p1, q0, distance), 0);
    EXPECT_NEAR(distance, static_cast<double>(std::fabs(area) / Length(u)), 1e-11);
    ASSERT_EQ(QXVGet2LineCrossPoint(p0, p1, q0, q1, meeting), 0);
    ExpectNear(meeting, Meeting(p0, u, q0, v), 1e-9);
  }
}

TEST(GeometryLongDouble, LinesOfSpace) {
  scene::Random random(25);
  for (int i = 0; i < 5000; ++i) {
    const V p0 = random.Point(), p1 = random.Point(), q0 = random.Point(), q1 = random.Point();
    const L u = L(p1) - p0, v = L(q1) - q0, across = Cross(u, v);
    if (Length(u) < 1 || Length(v) < 1 || Length(across) < 0.05L * Length(u) * Length(v)) {
      continue;
    }
    V foot0, foot1;
    double distance = 0, angle = 0;
    ASSERT_EQ(QXVGetPedal(p0, p1, q0, foot0), 0);
    ExpectNear(foot0, L(p0) + u * (Dot(L(q0) - p0, u) / Dot(u, u)), 1e-11);
    ASSERT_EQ(QXVGetDistance(p0, p1, q0, distance), 0);
    EXPECT_NEAR(distance, static_cast<double>(Length(Cross(u, L(q0) - p0)) / Length(u)), 1e-11);
    ASSERT_EQ(QXVGetDistance(p0, p1, q0, q1, distance), 0);
    EXPECT_NEAR(distance, static_cast<double>(std::fabs(Dot(L(q0) - p0, across)) / Length(across)), 1e-9);
    ASSERT_EQ(QXVGet2LineAngle(p0, p1, q0, q1, angle), 0);
    EXPECT_NEAR(angle, static_cast<double>(Angle(u, v)), 1e-11);
    // The feet: each line meets the plane of the other one and of the common perpendicular.
    ASSERT_EQ(QXVGetCommonNormal(p0, p1, q0, q1, foot0, foot1), 0);
    const L overP = Cross(v, across), overQ = Cross(u, across);
    ExpectNear(foot0, L(p0) + u * (Dot(L(q0) - p0, overP) / Dot(u, overP)), 1e-9);
    ExpectNear(foot1, L(q0) + v * (Dot(L(p0) - q0, overQ) / Dot(v, overQ)), 1e-9);
    // A second line through a point of the first.
    const V on = p0 + (p1 - p0) * random.Between(-3, 3);
    ASSERT_EQ(QXVGet2LineCrossPoint(p0, p1, q0, on, foot0), 0);
    ExpectNear(foot0, Meeting(p0, u, q0, L(on) - q0), 1e-6);
  }
}

TEST(GeometryLongDouble, PlanesAndMotions) {
  scene::Random random(26);
  for (int i = 0; i < 5000; ++i) {
    const V a = random.Point(), b = random.Point(), c = random.Point(), p0 = random.Point(), p1 = random.Point();
    const V d = random.Point(), e = random.Point(), f = random.Point();
    const L n = Cross(L(b) - a, L(c) - a), m = Cross(L(e) - d, L(f) - d), u = L(p1) - p0;
    if (Length(n) < 50 || Length(m) < 50 || Length(u) < 1 || std::fabs(Dot(n, u)) < 0.05L * Length(n) * Length(u) ||
        Length(Cross(n, m)) < 0.05L * Length(n) * Length(m) || Length(Cross(n, u)) < 0.05L * Length(n) * Length(u)) {
      continue;
    }
    V image, image0, image1;
    double angle = 0;
    ASSERT_EQ(QXVGetLineFaceCrossPoint(p0, p1, a, b, c, image), 0);
    ExpectNear(image, L(p0) + u * (Dot(n, L(a) - p0) / Dot(n, u)), 1e-9);
    const L onPlane0 = L(p0) - n * (Dot(n, L(p0) - a) / Dot(n, n)), onPlane1 = L(p1) - n * (Dot(n, L(p1) - a) / Dot(n, n));
    ASSERT_EQ(QXVGetProjection(a, b, c, p0, p1, image0, image1), 0);
    ExpectNear(image0, onPlane0, 1e-11);
    ExpectNear(image1, onPlane1, 1e-11);
    ASSERT_EQ(QXVGetSymmetryPoint(a, b, c, p0, image), 0);
    ExpectNear(image, onPlane0 * 2 - p0, 1e-11);
    ASSERT_EQ(QXVGetLineFaceAngle(p0, p1, a, b, c, angle), 0);
    EXPECT_NEAR(angle, static_cast<double>(Angle(u, onPlane1 - onPlane0)), 1e-11);
    ASSERT_EQ(QXVGet2FaceAngle(a, b, c, d, e, f, angle), 0);
    EXPECT_NEAR(angle, static_cast<double>(Angle(n, m)), 1e-11);
    // The common line: both points in both planes, one unit apart, the first one at a right angle from a.
    ASSERT_EQ(QXVGet2FaceCrossLine(a, b, c, d, e, f, image0, image1), 0);
    const L along = Cross(n, m);
    for (const V& point : {image0, image1}) {
      EXPECT_NEAR(static_cast<double>(Dot(n, L(point) - a) / Length(n)), 0, 1e-9);
      EXPECT_NEAR(static_cast<double>(Dot(m, L(point) - d) / Length(m)), 0, 1e-9);
    }
    ExpectNear(L(image1) - image0, along * (1 / Length(along)), 1e-12);
    EXPECT_NEAR(static_cast<double>(Dot(L(image0) - a, along) / Length(along)), 0, 1e-10);
    // v turned about k: v cos + (k x v) sin + k (k . v) (1 - cos).
    const double turn = random.Between(-7, 7);
    const L k = u * (1 / Length(u)), v = L(a) - p0;
    const Long cosine = std::cos(Long{turn}), sine = std::sin(Long{turn});
    ASSERT_EQ(QXVRotate(p0, p1, a, turn, image), 0);
    ExpectNear(image, L(p0) + v * cosine + Cross(k, v) * sine + k * (Dot(k, v) * (1 - cosine)), 1e-11);
  }
}

}  // namespace
