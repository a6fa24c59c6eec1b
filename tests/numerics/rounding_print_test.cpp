// rounding_print_test.cpp - numbers as text with a count of decimals.

#include "qxv/rounding.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

using support::Text;
using support::TextOf;

Text Print(double value, int decimals) {
  CQXString text;
  QXVDouble2String(value, decimals, text);
  return TextOf(text);
}

Text Print(float value, int decimals) {
  CQXString text;
  QXVFloat2String(value, decimals, text);
  return TextOf(text);
}

TEST(DecimalPrint, ZerosAtTheEndAreLeftOut) {
  const struct {
    double value;
    int decimals;
    const QXChar* text;
  } rows[] = {
      {1.5, 3, QXT("1.5")},
      {0.25, 1, QXT("0.3")},
      {1234, -2, QXT("1200")},
      {-0.004, 2, QXT("0")},
      {0.0, 2, QXT("0")},
      {100.0, 0, QXT("100")},
      {-2.5, 0, QXT("-3")},
      {-0.0, 3, QXT("0")},
      {0.5, 0, QXT("1")},
      {0.49, 0, QXT("0")},
      {1250, -2, QXT("1300")},
      {49, -2, QXT("0")},
      {-0.006, 2, QXT("-0.01")},
      {100.25, 2, QXT("100.25")},
      {100.0, 5, QXT("100")},
      {0.001, 3, QXT("0.001")},
      {3e9, 2, QXT("3000000000")},
      {1e12, 3, QXT("1000000000000")},
      {12345.678, 1, QXT("12345.7")},
      {5, -1, QXT("10")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Print(row.value, row.decimals), row.text) << row.value << " with " << row.decimals;
  }
  EXPECT_EQ(Print(1.5f, 3), QXT("1.5"));
  EXPECT_EQ(Print(0.25f, 1), QXT("0.3"));
  EXPECT_EQ(Print(-1234.0f, -2), QXT("-1200"));
}

TEST(DecimalPrint, TheFloatFamilyRoundsInSinglePrecision) {
  // 0.1f x 10^8 is 10000000 in single precision; in double precision 0.1f has the digits 0.10000000149.
  EXPECT_EQ(Print(0.1f, 8), QXT("0.1"));
  EXPECT_EQ(Print(static_cast<double>(0.1f), 9), QXT("0.100000001"));
}

TEST(DecimalPrint, ManyDecimalsPadWithZerosInFront) {
  EXPECT_EQ(Print(0.0, INT_MAX), QXT("0"));
  EXPECT_EQ(Print(0.0, INT_MIN), QXT("0"));
  EXPECT_EQ(Print(1e-40, 42), QXT("0.") + Text(39, '0') + QXT("1"));
  EXPECT_EQ(Print(1e-300, 301), QXT("0.") + Text(299, '0') + QXT("1"));
  EXPECT_EQ(Print(7e18, 0), QXT("7000000000000000000"));
  EXPECT_EQ(Print(4.0, -400), QXT("0"));
  EXPECT_EQ(Print(1e20, -3), QXT("1") + Text(20, '0')) << "zeros behind the counted digits";
}

TEST(DecimalPrint, WhatExceeds64BitsIsTheSmallestInteger) {
  // Out of what is promised, but defined: the digits of -2^63, and a second sign for a negative value.
  EXPECT_EQ(Print(1e30, 0), QXT("-9223372036854775808"));
  EXPECT_EQ(Print(-1e30, 0), QXT("--9223372036854775808"));
  EXPECT_EQ(Print(1e30, 2), QXT("-92233720368547758.08"));
  EXPECT_EQ(Print(std::numeric_limits<double>::infinity(), 0), QXT("-9223372036854775808"));
  EXPECT_EQ(Print(std::numeric_limits<double>::quiet_NaN(), 0), QXT("-9223372036854775808"));
  EXPECT_EQ(Print(1.0, 25), QXT("0.00000-9223372036854775808"));
  EXPECT_EQ(Print(1.0, 400), QXT("0.") + Text(380, '0') + QXT("-9223372036854775808"));
}

TEST(DecimalPrint, AgreesWithTheCLibraryWhereNoTieIsNear) {
  std::mt19937_64 random(13);
  std::uniform_real_distribution<double> values(-100000, 100000);
  for (int i = 0; i < 20000; ++i) {
    const double value = values(random);
    const int decimals = static_cast<int>(random() % 8);
    const double scaled = std::fabs(value) * std::pow(10.0, decimals);
    if (std::fabs(scaled - std::floor(scaled) - 0.5) < 1e-3) {
      continue;
    }
    char narrow[64];
    std::snprintf(narrow, sizeof narrow, "%.*f", decimals, value);
    std::string expected = narrow;
    if (expected.find('.') != std::string::npos) {
      expected.erase(expected.find_last_not_of('0') + 1);
      if (expected.back() == '.') {
        expected.pop_back();
      }
    }
    if (expected == "-0") {
      expected = "0";
    }
    ASSERT_EQ(Print(value, decimals), Text(expected.begin(), expected.end())) << narrow;
  }
}

}  // namespace
