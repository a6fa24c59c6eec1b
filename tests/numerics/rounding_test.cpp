// rounding_test.cpp - the floating families: figures, decimals and steps in each direction.

#include "qxv/rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr unsigned char kFloor = 0, kCeiling = 1, kTowardsZero = 2;

TEST(SigFigure, KeepsSoManyFiguresInTheDirectionOfTheMode) {
  EXPECT_EQ(QXVDoubleMakeSigFigure(1234.5, 2, kFloor), 1200.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(1234.5, 2, kCeiling), 1300.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(1234.5, 2, kTowardsZero), 1200.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(-1234.5, 2, kFloor), -1300.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(-1234.5, 2, kCeiling), -1200.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(-1234.5, 2, kTowardsZero), -1200.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(-1234.5, 2, 255), -1200.0);
  EXPECT_EQ(QXVFloatMakeSigFigure(1234.5f, 2, kFloor), 1200.0f);
  EXPECT_EQ(QXVFloatMakeSigFigure(1234.5f, 2, kCeiling), 1300.0f);
  EXPECT_EQ(QXVFloatMakeSigFigure(-1234.5f, 2, kFloor), -1300.0f);
}

TEST(SigFigure, ValuesBelowTheBandAreScaledUp) {
  EXPECT_EQ(QXVDoubleMakeSigFigure(0.012345, 3, kFloor), 123.0 / 10000);
  EXPECT_EQ(QXVDoubleMakeSigFigure(0.012345, 3, kCeiling), 124.0 / 10000);
  EXPECT_EQ(QXVFloatMakeSigFigure(0.012345f, 3, kCeiling), 124.0f / 10000.0f);
}

TEST(SigFigure, AValueInsideTheBandIsCutToItsWholePart) {
  EXPECT_EQ(QXVDoubleMakeSigFigure(123.75, 3, kFloor), 123.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(123.75, 3, kCeiling), 124.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(7.5, 1, kTowardsZero), 7.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(7.5, 0, kTowardsZero), 7.0) << "no digits count as one";
  EXPECT_EQ(QXVDoubleMakeSigFigure(7.5, INT_MIN, kTowardsZero), 7.0);
}

TEST(SigFigure, ZeroAndTooSmallValuesGiveZero) {
  EXPECT_EQ(QXVDoubleMakeSigFigure(0.0, 3, kCeiling), 0.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(9e-11, 1, kCeiling), 0.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(-1e-300, 5, kFloor), 0.0);
  EXPECT_EQ(QXVFloatMakeSigFigure(1e-30f, 2, kCeiling), 0.0f);
}

TEST(SigFigure, TheResultScaledBackMayExceedAn32BitInteger) {
  EXPECT_EQ(QXVDoubleMakeSigFigure(3.34e9, 2, kFloor), 3.3e9);
  EXPECT_EQ(QXVDoubleMakeSigFigure(9.87e9, 2, kCeiling), 9.9e9);
}

TEST(SigFigure, InfinitiesStayAndNaNEnds) {
  EXPECT_EQ(QXVDoubleMakeSigFigure(kInfinity, 3, kCeiling), kInfinity);
  EXPECT_EQ(QXVDoubleMakeSigFigure(-kInfinity, 3, kFloor), -kInfinity);
  EXPECT_EQ(QXVFloatMakeSigFigure(std::numeric_limits<float>::infinity(), 3, kFloor), std::numeric_limits<float>::infinity());
  EXPECT_EQ(QXVDoubleMakeSigFigure(kNoNumber, 3, kCeiling), -2147483648.0) << "no comparison holds: cut as it is";
}

TEST(PowerCount, IsTheDecimalExponentOfTheLeadingDigit) {
  const struct {
    double value;
    int count;
  } rows[] = {{0.05, -2}, {7, 0},     {1234, 3},  {0, 0},       {-1234, 3},     {1, 0},          {9.999, 0},    {10, 1},
              {0.5, -1},  {1e-9, -9}, {9e-11, 0}, {1e300, 300}, {kInfinity, 0}, {-kInfinity, 0}, {kNoNumber, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(QXVDoubleGetPowerCount(row.value), row.count) << row.value;
  }
  EXPECT_EQ(QXVFloatGetPowerCount(0.05f), -2);
  EXPECT_EQ(QXVFloatGetPowerCount(-1234.0f), 3);
  EXPECT_EQ(QXVFloatGetPowerCount(0.0f), 0);
}

TEST(Shed, DecimalsAreCutInTheDirectionOfTheMode) {
  EXPECT_EQ(QXVDoubleMakeShed(12.345, 2, kFloor), 1234.0 / 100);
  EXPECT_EQ(QXVDoubleMakeShed(12.345, 2, kCeiling), 1235.0 / 100);
  EXPECT_EQ(QXVDoubleMakeShed(-12.345, 2, kFloor), -1235.0 / 100);
  EXPECT_EQ(QXVDoubleMakeShed(-12.345, 2, kTowardsZero), -1234.0 / 100);
  EXPECT_EQ(QXVDoubleMakeShed(12.345, -1, kFloor), 10.0);
  EXPECT_EQ(QXVDoubleMakeShed(12.345, -1, kCeiling), 20.0);
  EXPECT_EQ(QXVDoubleMakeShed(-12.345, -1, kCeiling), -10.0);
  EXPECT_EQ(QXVDoubleMakeShed(12.345, 0, kFloor), 12.0);
  EXPECT_EQ(QXVFloatMakeShed(12.345f, 2, kCeiling), 1235.0f / 100.0f);
  EXPECT_EQ(QXVFloatMakeShed(12.345f, -1, kFloor), 10.0f);
}

TEST(Shed, ACeilingGoesUpOnlyBeyondTheTolerance) {
  EXPECT_EQ(QXVDoubleMakeShed(2.0000001, 0, kCeiling), 2.0);
  EXPECT_EQ(QXVDoubleMakeShed(2.01, 0, kCeiling), 3.0);
  EXPECT_EQ(QXVDoubleMakeShed(0.1 + 0.2, 1, kCeiling), 3.0 / 10) << "0.30000000000000004 is 0.3";
}

TEST(Shed, NearestTakesHalvesAwayFromZero) {
  EXPECT_EQ(QXVDoubleMakeShed(2.5, 0), 3.0);
  EXPECT_EQ(QXVDoubleMakeShed(-2.5, 0), -3.0);
  EXPECT_EQ(QXVDoubleMakeShed(2.4999, 0), 2.0);
  EXPECT_EQ(QXVDoubleMakeShed(1.25, 1), 13.0 / 10);
  EXPECT_EQ(QXVDoubleMakeShed(-1.25, 1), -13.0 / 10);
  EXPECT_EQ(QXVDoubleMakeShed(1250.0, -2), 1300.0);
  EXPECT_EQ(QXVFloatMakeShed(2.5f, 0), 3.0f);
  EXPECT_EQ(QXVFloatMakeShed(-1.25f, 1), -13.0f / 10.0f);
}

TEST(Shed, OutOfRangeIsTheSmallest32BitIntegerOfUnits) {
  EXPECT_EQ(QXVDoubleMakeShed(3e9, 0, kFloor), -2147483648.0);
  EXPECT_EQ(QXVDoubleMakeShed(-3e9, 0), 2147483648.0);
  EXPECT_EQ(QXVDoubleMakeShed(2147483647.5, 0, kCeiling), -2147483648.0) << "one unit up wraps";
  EXPECT_EQ(QXVDoubleMakeShed(kNoNumber, 0, kFloor), -2147483648.0);
}

TEST(Shed, AnyCountOfDecimalsEnds) {
  for (const int decimals : {INT_MIN, INT_MIN + 1, -1000000, -401, -33, -32, 32, 33, 401, 1000000, INT_MAX}) {
    SCOPED_TRACE(decimals);
    // From 10^32 on the scale is 0 in 32 bits: 0 times something, or something through 0.
    const double value = QXVDoubleMakeShed(1.5, decimals, kFloor);
    const double nearest = QXVDoubleMakeShed(1.5, decimals);
    if (decimals < 0) {
      EXPECT_EQ(value, 0.0);
      EXPECT_EQ(nearest, 0.0);
    } else {
      EXPECT_EQ(value, -kInfinity);
      EXPECT_EQ(nearest, -kInfinity);
    }
    EXPECT_TRUE(std::isnan(QXVDoubleMakeShed(0.0, decimals, kFloor)) || decimals < 0);
  }
}

TEST(ShedToStep, CutsToAMultipleOfTheRoundedStep) {
  EXPECT_EQ(QXVDoubleMakeShed(17.0, 5.0, 1, kFloor), 15.0);
  EXPECT_EQ(QXVDoubleMakeShed(17.0, 5.0, 1, kCeiling), 20.0);
  EXPECT_EQ(QXVDoubleMakeShed(-17.0, 5.0, 1, kFloor), -20.0);
  EXPECT_EQ(QXVDoubleMakeShed(-17.0, 5.0, 1, kTowardsZero), -15.0);
  EXPECT_EQ(QXVDoubleMakeShed(15.0, 5.0, 1, kCeiling), 15.0) << "a multiple stays";
  EXPECT_EQ(QXVDoubleMakeShed(0.87, 0.25, 2, kFloor), 75.0 / 100);
  EXPECT_EQ(QXVDoubleMakeShed(0.87, 0.25, 2, kCeiling), 100.0 / 100);
  EXPECT_EQ(QXVDoubleMakeShed(0.87, 0.25, 1, kFloor), 6.0 / 10) << "the step to one figure is 0.3";
  EXPECT_EQ(QXVDoubleMakeShed(1234.0, 148.0, 2, kFloor), 1200.0) << "the step to two figures is 150, and 1234 are 8 of them";
  EXPECT_EQ(QXVDoubleMakeShed(1234.0, 148.0, 2, kCeiling), 1350.0);
  EXPECT_EQ(QXVFloatMakeShed(17.0f, 5.0f, 1, kCeiling), 20.0f);
  EXPECT_EQ(QXVFloatMakeShed(0.75f, 0.5f, 1, kFloor), 5.0f / 10.0f);
  EXPECT_EQ(QXVFloatMakeShed(1234.0f, 148.0f, 2, kCeiling), 1350.0f);
}

TEST(ShedToStep, AStepThatNeverComesToItsDigitsLeavesTheValue) {
  for (const double step : {0.0, -0.0, -5.0, 1e-11, 1e200, kInfinity, -kInfinity}) {
    EXPECT_EQ(QXVDoubleMakeShed(17.25, step, 1, kCeiling), 17.25) << step;
    EXPECT_EQ(QXVDoubleMakeShed(-17.25, step, 1, kFloor), -17.25) << step;
  }
  EXPECT_EQ(QXVFloatMakeShed(17.25f, 0.0f, 1, kCeiling), 17.25f);
  EXPECT_EQ(QXVFloatMakeShed(17.25f, -1.0f, 1, kCeiling), 17.25f);
}

TEST(ShedToStep, PowersThatWrapNeverTrap) {
  // 13 digits: the band begins below 0, a small step lies in it and rounds to no units at all.
  EXPECT_EQ(QXVDoubleMakeShed(17.25, 0.3, 13, kFloor), 17.25);
  const double values[] = {0.0, 1.0, -17.25, 1e9, -3e9, 1e300, kInfinity, -kInfinity, kNoNumber};
  const double steps[] = {0.3, -0.3, -1.0, 1.0, 2.5e9, -2.5e9, kInfinity, kNoNumber};
  for (int digits = -50; digits <= 70; ++digits) {
    for (const double value : values) {
      for (const double step : steps) {
        for (const unsigned char mode : {kFloor, kCeiling, kTowardsZero}) {
          // Nothing but coming back is promised, and the same from the float family.
          (void)QXVDoubleMakeShed(value, step, digits, mode);
          (void)QXVFloatMakeShed(static_cast<float>(value), static_cast<float>(step), digits, mode);
          (void)QXVDoubleMakeSigFigure(value, digits, mode);
          (void)QXVFloatMakeSigFigure(static_cast<float>(value), digits, mode);
        }
      }
    }
  }
}

TEST(RoundingKept, ACeilingOverlooksAMillionth) {
  EXPECT_EQ(QXVDoubleMakeShed(5 + 0x1p-20, 0, kCeiling), 5.0) << "0.00000095 above";
  EXPECT_EQ(QXVDoubleMakeShed(5 + 0x1p-19, 0, kCeiling), 6.0) << "0.0000019 above";
  EXPECT_EQ(QXVDoubleMakeSigFigure(5 + 0x1p-20, 1, kCeiling), 5.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(5 + 0x1p-19, 1, kCeiling), 6.0);
  EXPECT_EQ(QXVFloatMakeShed(5 + 0x1p-20f, 0, kCeiling), 5.0f);
  EXPECT_EQ(QXVFloatMakeShed(5 + 0x1p-19f, 0, kCeiling), 6.0f);
}

TEST(RoundingKept, AStepsCeilingComparesExactly) {
  EXPECT_EQ(QXVDoubleMakeShed(5 + 0x1p-40, 5.0, 1, kCeiling), 10.0);
  EXPECT_EQ(QXVFloatMakeShed(5 + 0x1p-21f, 5.0f, 1, kCeiling), 10.0f);
}

TEST(RoundingKept, PowersBeyondNineDigitsWrap) {
  // 10 digits: the band ends at 10^10 modulo 2^32 = 1410065408.
  EXPECT_EQ(QXVDoubleMakeSigFigure(1234567890.0, 10, kFloor), 1234567890.0);
  EXPECT_EQ(QXVDoubleMakeSigFigure(1500000001.0, 10, kFloor), 1500000000.0);
  // Ten multiplications: the scale is 10^10 modulo 2^32.
  EXPECT_EQ(QXVDoubleMakeSigFigure(2e-10, 1, kFloor), 2.0 / 1410065408);
  // Eleven divisions: 10^11 modulo 2^32 = 1215752192. The division by ten itself has no limit.
  EXPECT_EQ(QXVDoubleMakeSigFigure(1e12, 2, kFloor), 10.0 * 1215752192);
  EXPECT_EQ(QXVDoubleMakeSigFigure(1e11, 2, kFloor), 10.0 * 1410065408);
}

TEST(RoundingProperty, FloorAndCeilingBracketTheValue) {
  std::mt19937_64 random(11);
  std::uniform_real_distribution<double> mantissa(1, 10);
  for (int i = 0; i < 20000; ++i) {
    const double value =
        (random() % 2 == 0 ? mantissa(random) : -mantissa(random)) * std::pow(10.0, static_cast<int>(random() % 7) - 3);
    const int digits = 1 + static_cast<int>(random() % 6);
    const double below = QXVDoubleMakeSigFigure(value, digits, kFloor);
    const double above = QXVDoubleMakeSigFigure(value, digits, kCeiling);
    const double unit = std::pow(10.0, std::floor(std::log10(std::fabs(value))) - digits + 1);
    ASSERT_LE(below, value + 1e-6 * unit) << value;
    ASSERT_GE(above, value - 2e-6 * unit) << value;
    ASSERT_LE(above - below, 1.0001 * unit) << value;
    ASSERT_EQ(QXVDoubleMakeSigFigure(-value, digits, kFloor), -above) << value;
    const double nearest = QXVDoubleMakeShed(value, 3);
    ASSERT_LE(std::fabs(nearest - value), 0.0005000001) << value;
  }
}

}  // namespace
