// rounding_integer_test.cpp - the 64-bit integer family.

#include "qxv/rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <random>

namespace {

constexpr QXInt64 kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr QXInt64 kLargest = std::numeric_limits<std::int64_t>::max();
constexpr unsigned char kFloor = 0, kCeiling = 1, kTowardsZero = 2;

TEST(IntegerSigFigure, CutsToFigures) {
  EXPECT_EQ(QXVLonglongMakeSigFigure(1234, 2, kFloor), 1200);
  EXPECT_EQ(QXVLonglongMakeSigFigure(-1234, 2, kTowardsZero), -1200);
  EXPECT_EQ(QXVLonglongMakeSigFigure(99, 2, kCeiling), 99) << "no more than two digits";
  EXPECT_EQ(QXVLonglongMakeSigFigure(1200, 2, kCeiling), 1200);
  EXPECT_EQ(QXVLonglongMakeSigFigure(0, 2, kCeiling), 0);
  EXPECT_EQ(QXVLonglongMakeSigFigure(kLargest, 1, kFloor), 9000000000000000000);
  EXPECT_EQ(QXVLonglongMakeSigFigure(kLargest, 18, kFloor), 9223372036854775800);
  EXPECT_EQ(QXVLonglongMakeSigFigure(kLargest, 19, kCeiling), kLargest) << "no number has more digits";
  EXPECT_EQ(QXVLonglongMakeSigFigure(1234, INT_MAX, kFloor), 1234);
  EXPECT_EQ(QXVLonglongMakeSigFigure(1234, INT_MIN, kFloor), 1000) << "as one digit";
  EXPECT_EQ(QXVLonglongMakeSigFigure(kSmallest, 2, kFloor), kSmallest) << "it has no magnitude";
}

TEST(RoundingKept, TheIntegerCeilingOfFiguresAddsOne) {
  EXPECT_EQ(QXVLonglongMakeSigFigure(1234, 2, kCeiling), 1201);
  EXPECT_EQ(QXVLonglongMakeSigFigure(-1234, 2, kFloor), -1201);
}

TEST(IntegerPowerCount, CountsDivisionsByTen) {
  EXPECT_EQ(QXVLonglongGetPowerCount(0), 0);
  EXPECT_EQ(QXVLonglongGetPowerCount(9), 0);
  EXPECT_EQ(QXVLonglongGetPowerCount(-10), 1);
  EXPECT_EQ(QXVLonglongGetPowerCount(1234), 3);
  EXPECT_EQ(QXVLonglongGetPowerCount(kLargest), 18);
  EXPECT_EQ(QXVLonglongGetPowerCount(kSmallest), 18);
}

TEST(IntegerShed, ClearsTheLowestDigits) {
  EXPECT_EQ(QXVLonglongMakeShed(1234, 2, kCeiling), 1300);
  EXPECT_EQ(QXVLonglongMakeShed(1234, 2, kFloor), 1200);
  EXPECT_EQ(QXVLonglongMakeShed(-1234, 2, kFloor), -1300);
  EXPECT_EQ(QXVLonglongMakeShed(-1234, 2, kTowardsZero), -1200);
  EXPECT_EQ(QXVLonglongMakeShed(1200, 2, kCeiling), 1200);
  EXPECT_EQ(QXVLonglongMakeShed(1234, 0, kCeiling), 1234);
  EXPECT_EQ(QXVLonglongMakeShed(1234, -3, kCeiling), 1234);
  EXPECT_EQ(QXVLonglongMakeShed(1234, 64, kCeiling), 1234) << "10^64 is 0 modulo 2^64";
  EXPECT_EQ(QXVLonglongMakeShed(1234, INT_MAX, kFloor), 1234);
  EXPECT_EQ(QXVLonglongMakeShed(kSmallest, 2, kFloor), kSmallest);
}

TEST(IntegerShed, NearestTakesHalvesAwayFromZero) {
  EXPECT_EQ(QXVLonglongMakeShed(1250, 2), 1300);
  EXPECT_EQ(QXVLonglongMakeShed(1249, 2), 1200);
  EXPECT_EQ(QXVLonglongMakeShed(-1250, 2), -1300);
  EXPECT_EQ(QXVLonglongMakeShed(-1249, 2), -1200);
  EXPECT_EQ(QXVLonglongMakeShed(5, 1), 10);
  EXPECT_EQ(QXVLonglongMakeShed(1250, 0), 1250);
  EXPECT_EQ(QXVLonglongMakeShed(1250, 64), 1250);
  EXPECT_EQ(QXVLonglongMakeShed(kSmallest, 1), kSmallest);
}

TEST(IntegerShedToStep, CutsToAMultipleOfTheStepsFigures) {
  EXPECT_EQ(QXVLonglongMakeShed(17, 5, 1, kFloor), 15);
  EXPECT_EQ(QXVLonglongMakeShed(17, 5, 1, kCeiling), 20);
  EXPECT_EQ(QXVLonglongMakeShed(-17, 5, 1, kFloor), -20);
  EXPECT_EQ(QXVLonglongMakeShed(15, 5, 1, kCeiling), 15);
  EXPECT_EQ(QXVLonglongMakeShed(1000, 37, 1, kFloor), 990) << "the step cut to one figure is 30";
  EXPECT_EQ(QXVLonglongMakeShed(1000, 37, 1, kCeiling), 1020);
  EXPECT_EQ(QXVLonglongMakeShed(1000, 37, 2, kFloor), 999);
  EXPECT_EQ(QXVLonglongMakeShed(17, 0, 1, kCeiling), 17);
  EXPECT_EQ(QXVLonglongMakeShed(17, -5, 1, kFloor), 15) << "a negative step lies below the band: used as it is";
  EXPECT_EQ(QXVLonglongMakeShed(17, -5, 1, kCeiling), 10) << "and one step on leads down";
  EXPECT_EQ(QXVLonglongMakeShed(17, -1, 1, kCeiling), 17);
  EXPECT_EQ(QXVLonglongMakeShed(17, kSmallest, 1, kFloor), 0);
  EXPECT_EQ(QXVLonglongMakeShed(kSmallest, -1, 1, kFloor), kSmallest);
  EXPECT_EQ(QXVLonglongMakeShed(17, 5, 64, kFloor), 15);
}

TEST(IntegerShed, FloorAndCeilingBracketTheValue) {
  std::mt19937_64 random(12);
  for (int i = 0; i < 20000; ++i) {
    const auto value = static_cast<QXInt64>(random()) >> (random() % 60 + 2);
    const int removed = static_cast<int>(random() % 9);
    QXInt64 unit = 1;
    for (int k = 0; k < removed; ++k) {
      unit *= 10;
    }
    const QXInt64 below = QXVLonglongMakeShed(value, removed, kFloor);
    const QXInt64 above = QXVLonglongMakeShed(value, removed, kCeiling);
    ASSERT_LE(below, value);
    ASSERT_GE(above, value);
    ASSERT_EQ(above - below, below == value ? 0 : unit) << value << " without " << removed;
    ASSERT_EQ(below % unit, 0);
    ASSERT_EQ(QXVLonglongMakeShed(value, unit, 1, kFloor), below) << "the same as a step";
    const QXInt64 nearest = QXVLonglongMakeShed(value, removed);
    ASSERT_TRUE(nearest == below || nearest == above);
    ASSERT_LE(2 * (nearest > value ? nearest - value : value - nearest), unit);
  }
}

}  // namespace
