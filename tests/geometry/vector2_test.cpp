// vector2_test.cpp - arithmetic of plane vectors.

#include "qxv/vector2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

namespace {

constexpr double kPi = 3.14159265358979323846;

TEST(Vector2, StartsAtZeroAndCopiesItsCoordinates) {
  const CQXVVector2 zero, v(3, -4);
  EXPECT_EQ(zero.x, 0);
  EXPECT_EQ(zero.y, 0);
  CQXVVector2 copy(v);
  EXPECT_EQ(copy.x, 3);
  EXPECT_EQ(copy.y, -4);
  copy = zero;
  EXPECT_EQ(copy.x, 0);
  EXPECT_EQ(copy.y, 0);
  EXPECT_FALSE(std::is_polymorphic_v<CQXVVector2>);
}

TEST(Vector2, EqualityIncludesTheTolerance) {
  EXPECT_EQ(CQXVVector2(0, 0) == CQXVVector2(0.0001, -0.0001), 1);
  EXPECT_EQ(CQXVVector2(0, 0) == CQXVVector2(0.00011, 0), 0);
  EXPECT_EQ(CQXVVector2(0, 0) == CQXVVector2(0, -0.00011), 0);
  EXPECT_EQ(CQXVVector2(0.0001, -0.0001).IsZero(), 1);
  EXPECT_EQ(CQXVVector2(0.00011, 0).IsZero(), 0);
  EXPECT_EQ(CQXVVector2(0, NAN).IsZero(), 0);
}

TEST(Vector2, SumsDifferencesAndScalingAreByCoordinate) {
  const CQXVVector2 a(1, 2), b(10, -20);
  EXPECT_EQ((a + b).x, 11);
  EXPECT_EQ((a + b).y, -18);
  EXPECT_EQ((a - b).x, -9);
  EXPECT_EQ((a - b).y, 22);
  EXPECT_EQ((b * 0.5).x, 5);
  EXPECT_EQ((b * 0.5).y, -10);
  EXPECT_EQ((b / 4.0).x, 2.5);
  EXPECT_EQ((b / 4.0).y, -5);
  CQXVVector2 v = a;
  EXPECT_EQ(&(v += b), &v);
  EXPECT_EQ(v.x, 11);
  EXPECT_EQ(&(v -= a), &v);
  EXPECT_EQ(v.y, -20);
  EXPECT_EQ(&(v *= 2.0), &v);
  EXPECT_EQ(v.x, 20);
  EXPECT_EQ(&(v /= 5.0), &v);
  EXPECT_EQ(v.y, -8);
}

TEST(Vector2, ADivisorOfZeroIsNotLookedFor) {
  const CQXVVector2 v = CQXVVector2(1, 0) / 0.0;
  EXPECT_TRUE(std::isinf(v.x));
  EXPECT_TRUE(std::isnan(v.y));
}

TEST(Vector2, TheProductIsThatOfComplexNumbers) {
  const CQXVVector2 product = CQXVVector2(1, 2) * CQXVVector2(3, 4);  // (1 + 2i)(3 + 4i) = -5 + 10i
  EXPECT_EQ(product.x, -5);
  EXPECT_EQ(product.y, 10);
  CQXVVector2 square(1, 2);
  square *= square;  // -3 + 4i: the old x makes the new y
  EXPECT_EQ(square.x, -3);
  EXPECT_EQ(square.y, 4);
}

TEST(Vector2, LengthsAndAngles) {
  EXPECT_EQ(CQXVVector2(3, -4).GetModel(), 5);
  EXPECT_EQ(CQXVVector2(3, -4).GetNorm1(), 7);
  EXPECT_DOUBLE_EQ(CQXVVector2(0, 2).GetAngle(), kPi / 2);
  EXPECT_DOUBLE_EQ(CQXVVector2(-2, 0).GetAngle(), kPi);
  EXPECT_DOUBLE_EQ(CQXVVector2(-2, -0.0).GetAngle(), -kPi) << "a negative zero, as atan2 has it";
  EXPECT_DOUBLE_EQ(CQXVVector2(-1, -1).GetAngle(), -3 * kPi / 4);
  EXPECT_TRUE(std::isinf(CQXVVector2(1e200, 1e200).GetModel())) << "the sum of squares, without scaling";
}

TEST(Vector2, RotateTurnsCounterClockwise) {
  CQXVVector2 v(1, 0);
  v.Rotate(kPi / 2);
  EXPECT_NEAR(v.x, 0, 1e-15);
  EXPECT_DOUBLE_EQ(v.y, 1);
  CQXVVector2 w(3, 4);
  w.Rotate(0.3);
  EXPECT_DOUBLE_EQ(w.GetModel(), 5) << "both coordinates are made of the old ones";
  EXPECT_DOUBLE_EQ(w.GetAngle(), std::atan2(4, 3) + 0.3);
}

TEST(Vector2, NormalizeMakesLengthOne) {
  CQXVVector2 v(3, -4);
  v.Normalize();
  EXPECT_DOUBLE_EQ(v.x, 0.6);
  EXPECT_DOUBLE_EQ(v.y, -0.8);
  CQXVVector2 zero;
  zero.Normalize();
  EXPECT_TRUE(std::isnan(zero.x));
  EXPECT_TRUE(std::isnan(zero.y));
}

}  // namespace
