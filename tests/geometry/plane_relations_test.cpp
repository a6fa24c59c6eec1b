// plane_relations_test.cpp - points and lines of the plane: literal scenes, and random ones built from their answers.

#include "qxv/vector2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr double kUntouched = -12345;

int Relation(const CQXVVector2& p0, const CQXVVector2& p1, const CQXVVector2& q0, const CQXVVector2& q1) {
  EXPECT_EQ(sizeof(EQXV_2DPosition), 4u);
  auto position = static_cast<EQXV_2DPosition>(0);
  return QXVGet2LineRelation(p0, p1, q0, q1, position) == 0 ? static_cast<int>(position) : -1;
}

void ExpectNear(const CQXVVector2& actual, double x, double y, double tolerance = 1e-12) {
  EXPECT_NEAR(actual.x, x, tolerance);
  EXPECT_NEAR(actual.y, y, tolerance);
}

TEST(PlaneRelation, TheDeterminantIsTwiceTheSignedArea) {
  EXPECT_EQ(QXVDeterminant3v(CQXVVector2(0, 0), CQXVVector2(4, 0), CQXVVector2(0, 3)), 12);
  EXPECT_EQ(QXVDeterminant3v(CQXVVector2(0, 0), CQXVVector2(0, 3), CQXVVector2(4, 0)), -12);
  EXPECT_EQ(QXVInnerProduct(CQXVVector2(1, 2), CQXVVector2(3, -4)), -5);
}

TEST(PlaneRelation, CollinearityExcludesTheTolerance) {
  EXPECT_EQ(QXVIs3PointInLine(CQXVVector2(0, 0), CQXVVector2(1, 0), CQXVVector2(2, 0.00005)), 1);
  EXPECT_EQ(QXVIs3PointInLine(CQXVVector2(0, 0), CQXVVector2(1, 0), CQXVVector2(2, 0.0001)), 0);
  EXPECT_EQ(QXVIs3PointInLine(CQXVVector2(0, 0), CQXVVector2(1, 0), CQXVVector2(2, -0.0001)), 0);
}

TEST(PlaneRelation, LinesAreParallelCoincidentOrIntersect) {
  EXPECT_EQ(Relation({0, 0}, {1, 0}, {0, 1}, {1, 1}), 1);
  EXPECT_EQ(Relation({0, 0}, {1, 0}, {2, 0}, {3, 0}), 3);
  EXPECT_EQ(Relation({0, 0}, {1, 1}, {0, 1}, {1, 0}), 2);
  EXPECT_EQ(Relation({0, 0}, {1, 0}, {1, 1}, {0, 1}), 1) << "whichever way the second one runs";
}

TEST(PlaneRelation, ADegenerateLineIsRejected) {
  EXPECT_EQ(Relation({1, 1}, {1.00004, 1.00004}, {0, 1}, {1, 0}), -1) << "0.00008 in all";
  EXPECT_EQ(Relation({0, 1}, {1, 0}, {1, 1}, {1.00004, 1.00004}), -1);
  EXPECT_EQ(Relation({1, 1}, {1.00006, 1.00006}, {0, 1}, {1, 0}), 3) << "0.00012 in all: a line, too short to make an area";
  auto position = EQXV_2DPOSITION_COINCIDENT;
  EXPECT_EQ(QXVGet2LineRelation({1, 1}, {1, 1}, {0, 1}, {1, 0}, position), -1);
  EXPECT_EQ(position, EQXV_2DPOSITION_COINCIDENT) << "as it was";
}

TEST(PlaneRelationKept, ALongFirstLineIsJudgedMoreStrictly) {
  // The second line climbs by 0.00005 over its length of 1: below the tolerance from a line of length 1, above it from one of 10.
  EXPECT_EQ(Relation({0, 0}, {1, 0}, {0, 1}, {1, 1.00005}), 1);
  EXPECT_EQ(Relation({0, 0}, {10, 0}, {0, 1}, {1, 1.00005}), 2);
}

TEST(PlaneCrossPoint, OfIntersectingLines) {
  CQXVVector2 point;
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {1, 1}, {0, 1}, {1, 0}, point), 0);
  ExpectNear(point, 0.5, 0.5);
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {10, 0}, {3, 1}, {3, 4}, point), 0) << "both points on one side";
  ExpectNear(point, 3, 0);
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {10, 0}, {3, 4}, {3, 1}, point), 0);
  ExpectNear(point, 3, 0);
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {10, 0}, {3, -6}, {3, 2}, point), 0);
  ExpectNear(point, 3, 0);
}

TEST(PlaneCrossPoint, APointOnTheOtherLineIsTakenAsItIs) {
  CQXVVector2 point;
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {1, 0}, {3, 0.00005}, {3, 9}, point), 0);
  EXPECT_EQ(point.y, 0.00005) << "q0 itself";
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {1, 0}, {3, 9}, {3, 0.00005}, point), 0);
  EXPECT_EQ(point.y, 0.00005) << "q1 itself";
  EXPECT_EQ(QXVGet2LineCrossPoint({3, 0.00005}, {3, 1}, {0, 0}, {1, 0}, point), 0);
  EXPECT_EQ(point.y, 0.00005) << "p0 itself";
  EXPECT_EQ(QXVGet2LineCrossPoint({3, 1}, {3, 0.00005}, {0, 0}, {1, 0}, point), 0);
  EXPECT_EQ(point.y, 0.00005) << "p1 itself";
}

TEST(PlaneCrossPoint, IsRejectedWithoutASingleOne) {
  CQXVVector2 point(kUntouched, kUntouched);
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {1, 0}, {0, 1}, {1, 1}, point), -1) << "parallel";
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {1, 0}, {2, 0}, {3, 0}, point), -1) << "coincident";
  EXPECT_EQ(QXVGet2LineCrossPoint({0, 0}, {0, 0}, {2, 0}, {3, 1}, point), -1) << "degenerate";
  EXPECT_EQ(point.x, kUntouched);
  EXPECT_EQ(point.y, kUntouched);
}

TEST(PlaneFoot, PerpendicularFootAndDistance) {
  CQXVVector2 foot, same;
  double distance = 0;
  EXPECT_EQ(QXVGetPedal({0, 0}, {10, 0}, {3, 4}, foot), 0);
  ExpectNear(foot, 3, 0);
  EXPECT_EQ(QXVGetProjection({0, 0}, {10, 0}, {3, 4}, same), 0);
  EXPECT_EQ(same.x, foot.x);
  EXPECT_EQ(same.y, foot.y);
  EXPECT_EQ(QXVGetDistance({0, 0}, {10, 0}, {3, 4}, distance), 0);
  EXPECT_DOUBLE_EQ(distance, 4);
  EXPECT_EQ(QXVGetPedal({0, 0}, {1, 1}, {0, -6}, foot), 0) << "outside the two points";
  ExpectNear(foot, -3, -3);
}

TEST(PlaneFootKept, ADegenerateLineSucceedsAndWritesNothing) {
  CQXVVector2 foot(kUntouched, kUntouched);
  double distance = kUntouched;
  EXPECT_EQ(QXVGetPedal({1, 1}, {1.00004, 1.00004}, {3, 4}, foot), 0);
  EXPECT_EQ(QXVGetProjection({1, 1}, {1.00004, 1.00004}, {3, 4}, foot), 0);
  EXPECT_EQ(QXVGetDistance({1, 1}, {1.00004, 1.00004}, {3, 4}, distance), 0);
  EXPECT_EQ(foot.x, kUntouched);
  EXPECT_EQ(foot.y, kUntouched);
  EXPECT_EQ(distance, kUntouched);
}

TEST(PlaneFoot, OutputsMayBeArguments) {
  CQXVVector2 p0(0, 0), p1(10, 0), c(3, 4);
  QXVGetPedal(p0, p1, c, c);
  ExpectNear(c, 3, 0);
  CQXVVector2 q0(0, 1), q1(1, 0), r(1, 1);
  EXPECT_EQ(QXVGet2LineCrossPoint(p0, r, q0, q1, q0), 0);
  ExpectNear(q0, 0.5, 0.5);
}

TEST(PlaneProperty, ScenesBuiltFromTheirCrossPointGiveItBack) {
  std::mt19937_64 random(21);
  std::uniform_real_distribution<double> coordinate(-50, 50), length(1, 20), side(-1, 1);
  for (int i = 0; i < 5000; ++i) {
    const double angle0 = coordinate(random), angle1 = angle0 + 0.2 + std::fabs(side(random)) * 2.7;
    const CQXVVector2 cross(coordinate(random), coordinate(random));
    const CQXVVector2 d0(std::cos(angle0), std::sin(angle0)), d1(std::cos(angle1), std::sin(angle1));
    const CQXVVector2 p0 = cross + d0 * (side(random) * 30), p1 = p0 + d0 * length(random);
    const CQXVVector2 q0 = cross + d1 * (side(random) * 30), q1 = q0 + d1 * length(random);
    CQXVVector2 point, swapped;
    ASSERT_EQ(Relation(p0, p1, q0, q1), 2);
    ASSERT_EQ(QXVGet2LineCrossPoint(p0, p1, q0, q1, point), 0);
    ASSERT_EQ(QXVGet2LineCrossPoint(q0, q1, p0, p1, swapped), 0);
    ASSERT_NEAR(point.x, cross.x, 1e-3);
    ASSERT_NEAR(point.y, cross.y, 1e-3);
    ASSERT_NEAR(swapped.x, cross.x, 1e-3);
    ASSERT_NEAR(swapped.y, cross.y, 1e-3);
    // A point beside the first line: d0 to the foot, and the perpendicular from there.
    const double along = side(random) * 30, away = side(random) * 30;
    const CQXVVector2 foot = p0 + d0 * along, beside = foot + CQXVVector2(-d0.y, d0.x) * away;
    double distance = 0;
    ASSERT_EQ(QXVGetPedal(p0, p1, beside, point), 0);
    ASSERT_EQ(QXVGetDistance(p0, p1, beside, distance), 0);
    ASSERT_NEAR(point.x, foot.x, 1e-9);
    ASSERT_NEAR(point.y, foot.y, 1e-9);
    ASSERT_NEAR(distance, std::fabs(away), 1e-9);
  }
}

}  // namespace
