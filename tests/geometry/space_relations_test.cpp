// space_relations_test.cpp - how points, lines and planes of space lie, and where they meet.

#include "qxv/vector3.h"

#include "geometry/scene.h"

#include <gtest/gtest.h>

namespace {

using scene::ExpectNear;
using V = CQXVVector3;

int Lines(const V& p0, const V& p1, const V& q0, const V& q1) {
  auto position = static_cast<EQXV_3DPosition>(0);
  return QXVGet2LineRelation(p0, p1, q0, q1, position) == 0 ? static_cast<int>(position) : -1;
}

int Faces(const V& a0, const V& b0, const V& c0, const V& a1, const V& b1, const V& c1) {
  auto position = static_cast<EQXV_3DPosition>(0);
  return QXVGet2FaceRelation(a0, b0, c0, a1, b1, c1, position) == 0 ? static_cast<int>(position) : -1;
}

int LineFace(const V& p0, const V& p1, const V& a, const V& b, const V& c) {
  auto position = static_cast<EQXV_3DPosition>(0);
  return QXVGetLineFaceRelation(p0, p1, a, b, c, position) == 0 ? static_cast<int>(position) : -1;
}

TEST(SpaceRelation, PointsInALineOrAPlane) {
  EXPECT_EQ(QXVIs3PointInLine(V(0, 0, 0), V(1, 1, 1), V(5, 5, 5)), 1);
  EXPECT_EQ(QXVIs3PointInLine(V(0, 0, 0), V(1, 0, 0), V(2.0, 0.00005, 0.0)), 1);
  EXPECT_EQ(QXVIs3PointInLine(V(0, 0, 0), V(1, 0, 0), V(2.0, 0.0, 0.0001)), 0) << "the tolerance itself is outside";
  EXPECT_EQ(QXVIs4PointInFace(V(0, 0, 5), V(1, 0, 5), V(0, 1, 5), V(7, -3, 5)), 1);
  EXPECT_EQ(QXVIs4PointInFace(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(0.0, 0.0, 0.0001)), 0);
  EXPECT_EQ(QXVIs4PointInFace(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(0.0, 0.0, 0.00009)), 1);
}

TEST(SpaceRelation, TwoLines) {
  EXPECT_EQ(Lines({0, 0, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 1}), 3) << "the x axis and the y axis lifted by 1";
  EXPECT_EQ(Lines({0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {0, 1, 0}), 2);
  EXPECT_EQ(Lines({0, 0, 0}, {1, 0, 0}, {5, -1, 0}, {5, 3, 0}), 2);
  EXPECT_EQ(Lines({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {4, 1, 0}), 1);
  EXPECT_EQ(Lines({0, 0, 0}, {1, 0, 0}, {7, 0, 0}, {3, 0, 0}), 4);
  EXPECT_EQ(Lines({1, 1, 1}, {1.00003, 1.00003, 1.00003}, {7, 0, 0}, {3, 0, 0}), -1);
  EXPECT_EQ(Lines({7, 0, 0}, {3, 0, 0}, {1, 1, 1}, {1.00003, 1.00003, 1.00003}), -1);
  auto position = EQXV_3DPOSITION_SKEW;
  EXPECT_EQ(QXVGet2LineRelation(V(1, 1, 1), V(1, 1, 1), V(0, 0, 0), V(1, 0, 0), position), -1);
  EXPECT_EQ(position, EQXV_3DPOSITION_SKEW) << "as it was";
}

TEST(SpaceRelation, TwoFaces) {
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}), 1);
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 0}, {9, 5, 0}, {5, 8, 0}), 4);
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {1, 0, 0}, {0, 0, 1}), 2);
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 0, 1}), -1) << "three points in a line";
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {0, 0, 1}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}), -1);
}

TEST(SpaceRelationKept, PlanesThatTurnTheOtherWayIntersect) {
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 1, 1}, {1, 0, 1}), 2);
  EXPECT_EQ(Faces({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {0, 1, 0}, {1, 0, 0}), 2) << "even the same plane";
}

TEST(SpaceRelation, LineAndFace) {
  EXPECT_EQ(LineFace({0, 0, 1}, {1, 0, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 1);
  EXPECT_EQ(LineFace({3, 3, 0}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 4);
  EXPECT_EQ(LineFace({3, 3, 1}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 2);
  EXPECT_EQ(LineFace({0, 3, 1}, {0.0001, 3.0, 1.0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), -1) << "a zero line";
  EXPECT_EQ(LineFace({3, 3, 1}, {1, 0, 0}, {0, 0, 0}, {1, 1, 1}, {2, 2, 2}), -1) << "a zero plane";
  // Both components of 0.00009 are zero here, although they add up to more than the tolerance of a degenerate line.
  EXPECT_EQ(LineFace({0, 0, 0}, {0.00009, 0.00009, 0.0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), -1);
  EXPECT_EQ(Lines({0, 0, 0}, {0.00009, 0.00009, 0.0}, {0, 0, 1}, {0, 1, 1}), 4)
      << "a line, though too short for its products to exceed the tolerance";
}

TEST(SpaceCrossPoint, OfTwoLines) {
  V point;
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 7), V(2, 2, 7), V(0, 2, 7), V(2, 0, 7), point), 0);
  ExpectNear(point, {1, 1, 7});
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(10, 0, 0), V(3, 1, 0), V(3, 4, 0), point), 0) << "both points on one side";
  ExpectNear(point, {3, 0, 0});
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(10, 0, 0), V(3, 4, 0), V(3, 1, 0), point), 0);
  ExpectNear(point, {3, 0, 0});
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(1, 0, 0), V(3.0, 0.00005, 0.0), V(3, 9, 0), point), 0);
  EXPECT_EQ(point.y, 0.00005) << "q0 lies on the first line";
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(1, 0, 0), V(3, 9, 0), V(3.0, 0.00005, 0.0), point), 0);
  EXPECT_EQ(point.y, 0.00005) << "q1";
  EXPECT_EQ(QXVGet2LineCrossPoint(V(3.0, 0.00005, 0.0), V(3, 1, 0), V(0, 0, 0), V(1, 0, 0), point), 0);
  EXPECT_EQ(point.y, 0.00005) << "p0";
  EXPECT_EQ(QXVGet2LineCrossPoint(V(3, 1, 0), V(3.0, 0.00005, 0.0), V(0, 0, 0), V(1, 0, 0), point), 0);
  EXPECT_EQ(point.y, 0.00005) << "p1";
}

TEST(SpaceCrossPoint, OfLinesThatDoNotMeetIsRejected) {
  V point(-9, -9, -9);
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(1, 0, 0), V(0, 0, 1), V(0, 1, 1), point), -1);
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(1, 1, 0), point), -1);
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(1, 0, 0), V(5, 0, 0), V(7, 0, 0), point), -1);
  EXPECT_EQ(QXVGet2LineCrossPoint(V(0, 0, 0), V(0, 0, 0), V(5, 0, 0), V(7, 0, 0), point), -1);
  EXPECT_EQ(point.x, -9) << "as it was";
}

TEST(SpaceCrossPoint, OfLineAndFace) {
  V point;
  EXPECT_EQ(QXVGetLineFaceCrossPoint(V(2, 3, 9), V(2, 3, 8), V(0, 0, 1), V(5, 0, 1), V(0, 5, 1), point), 0);
  ExpectNear(point, {2, 3, 1});
  point.Set(-9, -9, -9);
  EXPECT_EQ(QXVGetLineFaceCrossPoint(V(2, 3, 9), V(5, 3, 9), V(0, 0, 1), V(5, 0, 1), V(0, 5, 1), point), -1) << "parallel";
  EXPECT_EQ(QXVGetLineFaceCrossPoint(V(2, 3, 1), V(5, 3, 1), V(0, 0, 1), V(5, 0, 1), V(0, 5, 1), point), -1) << "inside";
  EXPECT_EQ(QXVGetLineFaceCrossPoint(V(2, 3, 1), V(2, 3, 1), V(0, 0, 1), V(5, 0, 1), V(0, 5, 1), point), -1);
  EXPECT_EQ(QXVGetLineFaceCrossPoint(V(2, 3, 1), V(2, 3, 5), V(0, 0, 1), V(0, 0, 1), V(0, 5, 1), point), -1);
  EXPECT_EQ(point.x, -9);
}

TEST(SpaceCrossPoint, OfSegmentAndFace) {
  const V a(0, 0, 0), b(1, 0, 0), c(0, 1, 0);
  V point;
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(0, 0, -1), V(0, 0, 1), a, b, c, point), 0);
  ExpectNear(point, {0, 0, 0});
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(4, 0, -1), V(0, 8, 3), a, b, c, point), 0);
  ExpectNear(point, {3, 2, 0});
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(4.0, 0.0, 0.00005), V(0, 8, 3), a, b, c, point), 0);
  EXPECT_EQ(point.z, 0.00005) << "an end in the plane is the point itself";
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(0, 8, 3), V(4.0, 0.0, 0.00005), a, b, c, point), 0);
  EXPECT_EQ(point.z, 0.00005);
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(1, 2, 0), V(3, 4, 0), a, b, c, point), 0) << "inside the plane: its first end";
  ExpectNear(point, {1, 2, 0});
  point.Set(-9, -9, -9);
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(0, 0, 1), V(0, 0, 2), a, b, c, point), -1);
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(0, 0, 1), V(5, 0, 1), a, b, c, point), -1);
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(0, 0, 1), V(0, 0, 1), a, b, c, point), -1);
  EXPECT_EQ(QXVGetLineSegmentFaceCrossPoint(V(0, 0, -1), V(0, 0, 1), a, b, b, point), -1);
  EXPECT_EQ(point.x, -9);
}

TEST(SpaceCrossLine, OfTwoFaces) {
  V point0, point1;
  // z = 0 and x = 3: the line x = 3, z = 0; nearest to (1, 5, 0) is (3, 5, 0). Normals +z and +x: their product is +y.
  EXPECT_EQ(QXVGet2FaceCrossLine(V(1, 5, 0), V(2, 5, 0), V(1, 6, 0), V(3, 0, 0), V(3, 1, 0), V(3, 0, 1), point0, point1), 0);
  ExpectNear(point0, {3, 5, 0});
  ExpectNear(point1, {3, 6, 0});
  point0.Set(-9, -9, -9);
  point1.Set(-9, -9, -9);
  EXPECT_EQ(QXVGet2FaceCrossLine(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(0, 0, 1), V(1, 0, 1), V(0, 1, 1), point0, point1), -1);
  EXPECT_EQ(QXVGet2FaceCrossLine(V(0, 0, 0), V(1, 0, 0), V(0, 1, 0), V(0, 0, 1), V(0, 1, 1), V(1, 0, 1), point0, point1), -1)
      << "parallel, whichever way they turn";
  EXPECT_EQ(QXVGet2FaceCrossLine(V(0, 0, 0), V(1, 0, 0), V(2, 0, 0), V(0, 0, 1), V(0, 1, 1), V(1, 0, 1), point0, point1), -1);
  EXPECT_EQ(point0.x, -9);
  EXPECT_EQ(point1.x, -9);
}

TEST(SpaceProperty, ScenesBuiltFromTheirMeetingPointGiveItBack) {
  scene::Random random(22);
  for (int i = 0; i < 5000; ++i) {
    const V meet = random.Point(), d0 = random.Direction();
    const V normal = random.DirectionAcross(d0);
    V d1 = d0;
    ASSERT_EQ(QXVRotate({0, 0, 0}, normal, d0, random.Between(0.3, 2.8), d1), 0);
    const V p0 = meet + d0 * random.Between(-30, 30), p1 = p0 + d0 * random.Between(1, 20);
    const V q0 = meet + d1 * random.Between(-30, 30), q1 = q0 + d1 * random.Between(1, 20);
    V point;
    ASSERT_EQ(Lines(p0, p1, q0, q1), 2);
    ASSERT_EQ(QXVGet2LineCrossPoint(p0, p1, q0, q1, point), 0);
    ExpectNear(point, meet, 1e-3);
    // The plane of q and another direction out of p's line meets p in the same point.
    const V a = meet + d1 * 7.0, b = meet + normal * 5.0, c = meet - d1 * 3.0 + normal * 2.0;
    ASSERT_EQ(LineFace(p0, p1, a, b, c), 2);
    ASSERT_EQ(QXVGetLineFaceCrossPoint(p0, p1, a, b, c, point), 0);
    ExpectNear(point, meet, 1e-8);
    ASSERT_EQ(QXVGetLineSegmentFaceCrossPoint(meet - d0 * 3.0, meet + d0 * 4.0, a, b, c, point), 0);
    ExpectNear(point, meet, 1e-8);
  }
}

}  // namespace
