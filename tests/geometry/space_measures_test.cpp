// space_measures_test.cpp - feet, projections, distances, angles and motions in space.

#include "qxv/vector3.h"

#include "geometry/scene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using scene::ExpectNear;
using V = CQXVVector3;

constexpr double kPi = 3.14159265358979323846;
constexpr double kUntouched = -12345;

TEST(SpaceFoot, OnALine) {
  V foot, same;
  double distance = 0;
  EXPECT_EQ(QXVGetPedal(V(0, 0, 0), V(9, 0, 0), V(3, 4, 12), foot), 0);
  ExpectNear(foot, {3, 0, 0});
  EXPECT_EQ(QXVGetProjection(V(0, 0, 0), V(9, 0, 0), V(3, 4, 12), same), 0);
  ExpectNear(same, foot, 0);
  EXPECT_EQ(QXVGetDistance(V(0, 0, 0), V(9, 0, 0), V(3, 3, 4), distance), 0);
  EXPECT_DOUBLE_EQ(distance, 5);
}

TEST(SpaceFoot, OfADegenerateLineIsRejected) {
  V foot(-9, -9, -9);
  double distance = kUntouched;
  EXPECT_EQ(QXVGetPedal(V(1, 1, 1), V(1, 1, 1), V(3, 4, 12), foot), -1);
  EXPECT_EQ(QXVGetProjection(V(1, 1, 1), V(1, 1, 1), V(3, 4, 12), foot), -1);
  EXPECT_EQ(QXVGetDistance(V(1, 1, 1), V(1, 1, 1), V(3, 3, 4), distance), -1);
  EXPECT_EQ(foot.x, -9);
  EXPECT_EQ(distance, kUntouched);
}

TEST(SpaceProjection, OnAPlane) {
  const V a(0, 0, 2), b(4, 0, 2), c(0, 4, 2);
  V image, image0, image1;
  EXPECT_EQ(QXVGetProjection(a, b, c, V(5, 6, 9), image), 0);
  ExpectNear(image, {5, 6, 2});
  EXPECT_EQ(QXVGetProjection(a, b, c, V(5, 6, 9), V(7, 8, -3), image0, image1), 0);
  ExpectNear(image0, {5, 6, 2});
  ExpectNear(image1, {7, 8, 2});
  image0.Set(-9, -9, -9);
  EXPECT_EQ(QXVGetProjection(a, b, b, V(5, 6, 9), image0), -1) << "no plane";
  EXPECT_EQ(QXVGetProjection(a, b, b, V(5, 6, 9), V(7, 8, -3), image0, image1), -1);
  EXPECT_EQ(QXVGetProjection(a, b, c, V(5, 6, 9), V(5, 6, 9), image0, image1), -1) << "no line";
  EXPECT_EQ(image0.x, -9);
}

TEST(SpaceNormal, IsTheProductOfTheSides) {
  V normal;
  EXPECT_EQ(QXVGetNormal(V(1, 1, 1), V(3, 1, 1), V(1, 4, 1), normal), 0);
  ExpectNear(normal, {0, 0, 6});
  normal.Set(-9, -9, -9);
  EXPECT_EQ(QXVGetNormal(V(0, 0, 0), V(1, 0, 0), V(2, 0, 0), normal), -1);
  EXPECT_EQ(QXVGetNormal(V(0, 0, 0), V(0.01, 0.0, 0.0), V(0.0, 0.01, 0.0), normal), -1) << "0.0001 counts as zero";
  EXPECT_EQ(normal.x, -9);
}

TEST(SpaceCommonNormal, FeetAreTheClosestPoints) {
  V foot0, foot1;
  EXPECT_EQ(QXVGetCommonNormal(V(0, 0, 0), V(1, 0, 0), V(4, 7, 5), V(4, 9, 5), foot0, foot1), 0);
  ExpectNear(foot0, {4, 0, 0});
  ExpectNear(foot1, {4, 0, 5});
  EXPECT_EQ(QXVGetCommonNormal(V(0, 0, 0), V(1, 0, 0), V(4, 7, 0), V(4, 9, 0), foot0, foot1), 0) << "intersecting lines meet";
  ExpectNear(foot0, {4, 0, 0});
  ExpectNear(foot1, {4, 0, 0});
  foot0.Set(-9, -9, -9);
  foot1 = foot0;
  EXPECT_EQ(QXVGetCommonNormal(V(0, 0, 0), V(1, 0, 0), V(4, 7, 0), V(5, 7, 0), foot0, foot1), -1) << "parallel";
  EXPECT_EQ(QXVGetCommonNormal(V(0, 0, 0), V(1, 0, 0), V(4, 0, 0), V(5, 0, 0), foot0, foot1), -1) << "coincident";
  EXPECT_EQ(QXVGetCommonNormal(V(0, 0, 0), V(0, 0, 0), V(4, 0, 0), V(5, 0, 0), foot0, foot1), -1);
  EXPECT_EQ(foot0.x, -9);
  EXPECT_EQ(foot1.x, -9);
}

TEST(SpaceDistance, OfTwoLines) {
  double distance = kUntouched;
  EXPECT_EQ(QXVGetDistance(V(0, 0, 0), V(1, 0, 0), V(4, 7, 5), V(4, 9, 5), distance), 0);
  EXPECT_DOUBLE_EQ(distance, 5) << "skew";
  EXPECT_EQ(QXVGetDistance(V(0, 0, 0), V(1, 0, 0), V(4, 3, 4), V(7, 3, 4), distance), 0);
  EXPECT_DOUBLE_EQ(distance, 5) << "parallel";
  EXPECT_EQ(QXVGetDistance(V(0, 0, 0), V(1, 0, 0), V(4, 7, 0), V(4, 9, 0), distance), 0);
  EXPECT_EQ(distance, 0) << "intersecting";
  EXPECT_EQ(QXVGetDistance(V(0, 0, 0), V(1, 0, 0), V(4, 0, 0), V(9, 0, 0), distance), 0);
  EXPECT_EQ(distance, 0) << "coincident";
  distance = kUntouched;
  EXPECT_EQ(QXVGetDistance(V(0, 0, 0), V(0, 0, 0), V(4, 0, 0), V(9, 0, 0), distance), -1);
  EXPECT_EQ(distance, kUntouched);
}

TEST(SpaceAngle, OfTwoLinesRunsFromZeroToPi) {
  double angle = kUntouched;
  EXPECT_EQ(QXVGet2LineAngle(V(0, 0, 0), V(1, 0, 0), V(5, 5, 5), V(5, 6, 5), angle), 0);
  EXPECT_DOUBLE_EQ(angle, kPi / 2);
  EXPECT_EQ(QXVGet2LineAngle(V(0, 0, 0), V(1, 0, 0), V(5, 5, 5), V(4, 6, 5), angle), 0);
  EXPECT_NEAR(angle, 3 * kPi / 4, 1e-15) << "directions count";
  angle = kUntouched;
  EXPECT_EQ(QXVGet2LineAngle(V(0, 0, 0), V(0, 0, 0), V(5, 5, 5), V(4, 6, 5), angle), -1);
  EXPECT_EQ(angle, kUntouched);
}

TEST(SpaceAngle, OfLineAndFace) {
  const V a(0, 0, 2), b(4, 0, 2), c(0, 4, 2);
  double angle = kUntouched;
  EXPECT_EQ(QXVGetLineFaceAngle(V(0, 0, 0), V(1, 0, 1), a, b, c, angle), 0);
  EXPECT_NEAR(angle, kPi / 4, 1e-15);
  EXPECT_EQ(QXVGetLineFaceAngle(V(0, 0, 0), V(3, 1, 0), a, b, c, angle), 0);
  EXPECT_NEAR(angle, 0, 1e-7) << "parallel";
  angle = kUntouched;
  EXPECT_EQ(QXVGetLineFaceAngle(V(0, 0, 0), V(0, 0, 0), a, b, c, angle), -1);
  EXPECT_EQ(QXVGetLineFaceAngle(V(0, 0, 0), V(1, 0, 1), a, b, b, angle), -1);
  EXPECT_EQ(angle, kUntouched);
}

TEST(SpaceAngleKept, APerpendicularLineHasAConstant) {
  double angle = 0;
  EXPECT_EQ(QXVGetLineFaceAngle(V(3, 4, 0), V(3, 4, 9), V(0, 0, 2), V(4, 0, 2), V(0, 4, 2), angle), 0);
  EXPECT_EQ(angle, 1.5707963);
}

TEST(SpaceAngle, OfTwoFaces) {
  double angle = kUntouched;
  EXPECT_EQ(QXVGet2FaceAngle(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(0, 0, 0), V(1, 0, 0), V(0, 0, 1), angle), 0);
  EXPECT_DOUBLE_EQ(angle, kPi / 2);
  EXPECT_EQ(QXVGet2FaceAngle(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(0, 0, 5), V(0, 1, 5), V(1, 0, 5), angle), 0);
  EXPECT_DOUBLE_EQ(angle, kPi) << "opposite normals";
  angle = kUntouched;
  EXPECT_EQ(QXVGet2FaceAngle(V(0, 0, 0), V(1, 0, 0), V(2, 0, 0), V(0, 0, 5), V(0, 1, 5), V(1, 0, 5), angle), -1);
  EXPECT_EQ(QXVGet2FaceAngle(V(0, 0, 5), V(0, 1, 5), V(1, 0, 5), V(0, 0, 0), V(1, 0, 0), V(2, 0, 0), angle), -1);
  EXPECT_EQ(angle, kUntouched);
}

TEST(SpaceMotion, RotationFollowsTheRightHand) {
  V image;
  EXPECT_EQ(QXVRotate(V(0, 0, 0), V(0, 0, 1), V(1, 0, 0), kPi / 2, image), 0);
  ExpectNear(image, {0, 1, 0});
  EXPECT_EQ(QXVRotate(V(0, 0, 0), V(0, 0, -7), V(1, 0, 0), kPi / 2, image), 0);
  ExpectNear(image, {0, -1, 0});
  EXPECT_EQ(QXVRotate(V(0, 0, 0), V(5, 5, 5), V(1, 0, 0), 2 * kPi / 3, image), 0) << "a third of a turn about the diagonal";
  ExpectNear(image, {0, 1, 0});
  EXPECT_EQ(QXVRotate(V(1, 1, 0), V(1, 1, 4), V(2, 1, 9), kPi, image), 0) << "an axis beside the origin";
  ExpectNear(image, {0, 1, 9});
  image.Set(-9, -9, -9);
  EXPECT_EQ(QXVRotate(V(0, 0, 0), V(0.0001, 0.0, 0.0), V(1, 0, 0), 1, image), -1);
  EXPECT_EQ(image.x, -9);
}

TEST(SpaceMotion, ReflectionMirrorsInThePlane) {
  V image;
  EXPECT_EQ(QXVGetSymmetryPoint(V(0, 0, 2), V(4, 0, 2), V(0, 4, 2), V(5, 6, 9), image), 0);
  ExpectNear(image, {5, 6, -5});
  image.Set(-9, -9, -9);
  EXPECT_EQ(QXVGetSymmetryPoint(V(0, 0, 2), V(4, 0, 2), V(8, 0, 2), V(5, 6, 9), image), -1);
  EXPECT_EQ(image.x, -9);
}

TEST(SpaceMotion, OutputsMayBeArguments) {
  V a(0, 0, 0), b(0, 0, 1), p(1, 0, 0);
  QXVRotate(a, b, p, kPi / 2, p);
  ExpectNear(p, {0, 1, 0});
  V p0(0, 0, 0), p1(1, 0, 0), q0(4, 7, 5), q1(4, 9, 5);
  EXPECT_EQ(QXVGetCommonNormal(p0, p1, q0, q1, q0, p0), 0);
  ExpectNear(q0, {4, 0, 0});
  ExpectNear(p0, {4, 0, 5});
}

TEST(SpaceProperty, MeasuresComeBackFromScenesBuiltOfThem) {
  scene::Random random(23);
  for (int i = 0; i < 5000; ++i) {
    const V origin = random.Point(), u = random.Direction(), n = random.DirectionAcross(u);
    const V w(u.y * n.z - u.z * n.y, u.z * n.x - u.x * n.z, u.x * n.y - u.y * n.x);
    const double gap = random.Between(0.5, 30), lean = random.Between(0.4, 2.7);
    // Two lines whose feet are origin and origin + n gap.
    const V second = u * std::cos(lean) + w * std::sin(lean);
    const V p0 = origin + u * random.Between(-20, 20), p1 = p0 + u * random.Between(1, 9);
    const V q0 = origin + n * gap + second * random.Between(-20, 20), q1 = q0 + second * random.Between(1, 9);
    V foot0, foot1;
    double distance = 0, angle = 0;
    ASSERT_EQ(QXVGetCommonNormal(p0, p1, q0, q1, foot0, foot1), 0);
    ExpectNear(foot0, origin, 1e-8);
    ExpectNear(foot1, origin + n * gap, 1e-8);
    ASSERT_EQ(QXVGetDistance(p0, p1, q0, q1, distance), 0);
    ASSERT_NEAR(distance, gap, 1e-8);
    ASSERT_EQ(QXVGet2LineAngle(p0, p1, q0, q1, angle), 0);
    ASSERT_NEAR(angle, lean, 1e-7);
    // The plane of u and w, a point above it.
    const V a = origin, b = origin + u * 3.0, c = origin + w * 2.0, above = origin + u * 5.0 + n * gap;
    V image;
    ASSERT_EQ(QXVGetProjection(a, b, c, above, image), 0);
    ExpectNear(image, origin + u * 5.0, 1e-9);
    ASSERT_EQ(QXVGetSymmetryPoint(a, b, c, above, image), 0);
    ExpectNear(image, origin + u * 5.0 - n * gap, 1e-9);
    ASSERT_EQ(QXVGetLineFaceAngle(a, a + u * std::cos(lean) + n * std::sin(lean), a, b, c, angle), 0);
    ASSERT_NEAR(angle, lean > kPi / 2 ? kPi - lean : lean, 1e-7);
    // Turning back and forth, and a turn keeps the distance from the axis.
    V turned, back;
    ASSERT_EQ(QXVRotate(p0, p1, q0, lean, turned), 0);
    ASSERT_EQ(QXVRotate(p0, p1, turned, -lean, back), 0);
    ExpectNear(back, q0, 1e-10);
    double before = 0, after = 0;
    ASSERT_EQ(QXVGetDistance(p0, p1, q0, before), 0);
    ASSERT_EQ(QXVGetDistance(p0, p1, turned, after), 0);
    ASSERT_NEAR(after, before, 1e-9);
  }
}

}  // namespace
