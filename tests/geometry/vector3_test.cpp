// vector3_test.cpp - arithmetic of space vectors.

#include "qxv/vector3.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <type_traits>

namespace {

constexpr double kPi = 3.14159265358979323846;

void ExpectEqual(const CQXVVector3& v, double x, double y, double z) {
  EXPECT_EQ(v.x, x);
  EXPECT_EQ(v.y, y);
  EXPECT_EQ(v.z, z);
}

TEST(Vector3, IsMadeOfDoublesOrInts) {
  ExpectEqual(CQXVVector3(), 0, 0, 0);
  ExpectEqual(CQXVVector3(1.5, -2.5, 3.5), 1.5, -2.5, 3.5);
  ExpectEqual(CQXVVector3(INT_MAX, INT_MIN, 0), 2147483647.0, -2147483648.0, 0);
  CQXVVector3 v(1, 2, 3);
  const CQXVVector3 copy(v);
  v.Set(4, 5, 6);
  ExpectEqual(v, 4, 5, 6);
  ExpectEqual(copy, 1, 2, 3);
  v = copy;
  ExpectEqual(v, 1, 2, 3);
  EXPECT_TRUE(std::has_virtual_destructor_v<CQXVVector3>);
}

TEST(Vector3, EqualityIncludesTheTolerance) {
  EXPECT_EQ(CQXVVector3(0, 0, 0) == CQXVVector3(0.0001, -0.0001, 0.0001), 1);
  EXPECT_EQ(CQXVVector3(0, 0, 0) == CQXVVector3(0.0, 0.0, 0.00011), 0);
  EXPECT_EQ(CQXVVector3(0, 0, 0) != CQXVVector3(0.0, -0.00011, 0.0), 1);
  EXPECT_EQ(CQXVVector3(0, 0, 0) != CQXVVector3(0.0001, 0.0, 0.0), 0);
  EXPECT_EQ(CQXVVector3(0.0001, -0.0001, 0.0).IsZero(), 1);
  EXPECT_EQ(CQXVVector3(0.0, 0.0, -0.00011).IsZero(), 0);
}

TEST(Vector3, ArithmeticIsByCoordinate) {
  const CQXVVector3 a(1, 2, 3), b(10, -20, 40);
  ExpectEqual(a + b, 11, -18, 43);
  ExpectEqual(a - b, -9, 22, -37);
  ExpectEqual(b * 0.5, 5, -10, 20);
  ExpectEqual(b / 4.0, 2.5, -5, 10);
  CQXVVector3 v = a;
  EXPECT_EQ(&(v += b), &v);
  ExpectEqual(v, 11, -18, 43);
  EXPECT_EQ(&(v -= a), &v);
  ExpectEqual(v, 10, -20, 40);
  EXPECT_EQ(&(v *= 2.0), &v);
  ExpectEqual(v, 20, -40, 80);
  EXPECT_EQ(&(v /= 5.0), &v);
  ExpectEqual(v, 4, -8, 16);
  const CQXVVector3& same = v;
  v -= same;
  ExpectEqual(v, 0, 0, 0);
}

TEST(Vector3, Products) {
  const CQXVVector3 a(1, 2, 3), b(4, 5, 6), c(7, 8, 10);
  ExpectEqual(a * b, -3, 6, -3);
  ExpectEqual(QXVOuterProduct(a, b), -3, 6, -3);
  EXPECT_EQ(QXVInnerProduct(a, b), 32);
  EXPECT_EQ(QXVMixedProduct(a, b, c), -3);
  EXPECT_EQ(QXVDeterminant3v(a, b, c), -3);
  ExpectEqual(CQXVVector3(1, 0, 0) * CQXVVector3(0, 1, 0), 0, 0, 1);
}

TEST(Vector3, LengthsAndAngles) {
  EXPECT_EQ(CQXVVector3(2, -3, 6).GetModel(), 7);
  EXPECT_EQ(CQXVVector3(2, -3, 6).GetNorm1(), 11);
  EXPECT_DOUBLE_EQ(CQXVVector3::GetAngle({1, 0, 0}, {0, 5, 0}), kPi / 2);
  EXPECT_EQ(CQXVVector3::GetAngle({1, 0, 0}, {3, 0, 0}), 0);
  EXPECT_DOUBLE_EQ(CQXVVector3::GetAngle({1, 0, 0}, {-3, 0, 0}), kPi);
  EXPECT_NEAR(CQXVVector3::GetAngle({1, 0, 0}, {1, 1, 0}), kPi / 4, 1e-15);
  EXPECT_EQ(CQXVVector3::GetAngle({0.1, 0.2, 0.3}, {0.1, 0.2, 0.3}), 0) << "rounding above 1 is clamped";
  EXPECT_TRUE(std::isnan(CQXVVector3::GetAngle({0, 0, 0}, {1, 0, 0})));
}

TEST(Vector3, NormalizeMakesLengthOne) {
  CQXVVector3 v(2, -3, 6);
  v.Normalize();
  EXPECT_DOUBLE_EQ(v.x, 2.0 / 7);
  EXPECT_DOUBLE_EQ(v.y, -3.0 / 7);
  EXPECT_DOUBLE_EQ(v.z, 6.0 / 7);
  CQXVVector3 zero;
  zero.Normalize();
  EXPECT_TRUE(std::isnan(zero.x));
}

}  // namespace
