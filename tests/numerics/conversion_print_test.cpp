// conversion_print_test.cpp - compact printing: six decimals, ties away from zero, trimmed.

#include "qxv/conversion.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using support::Text;
using support::TextOf;

Text Wide(const std::string& narrow) { return Text(narrow.begin(), narrow.end()); }

Text Print(double value) {
  CQXString text;
  QXVDouble2String(value, text);
  return TextOf(text);
}

Text Print(float value) {
  CQXString text;
  QXVFloat2String(value, text);
  return TextOf(text);
}

Text Print(int value) {
  CQXString text;
  QXVInt2String(value, text);
  return TextOf(text);
}

std::string Trimmed(std::string text) {
  const auto point = text.find('.');
  while (text.size() > point && (text.back() == '0' || text.back() == '.')) {
    text.pop_back();
  }
  return text;
}

// Six decimals of a finite value, ties away from zero: rounded by hand from all its digits, which the C library prints exactly.
std::string SixDecimals(double value) {
  std::vector<char> buffer(1500);
  std::string digits(buffer.data(), static_cast<std::size_t>(std::snprintf(buffer.data(), buffer.size(), "%.1074f", value)));
  const auto point = digits.find('.');
  const bool up = digits[point + 7] >= '5';
  digits.resize(point + 7);
  for (std::size_t i = digits.size(); up && i-- > 0;) {
    if (digits[i] == '.') {
      continue;
    }
    if (digits[i] == '-') {
      return "-1" + digits.substr(1);
    }
    if (digits[i] != '9') {
      ++digits[i];
      return digits;
    }
    digits[i] = '0';
    if (i == 0) {
      return "1" + digits;
    }
  }
  return digits;
}

TEST(CompactPrint, ZerosAndTheBarePointAreTakenFromTheEnd) {
  EXPECT_EQ(Print(0.1), QXT("0.1"));
  EXPECT_EQ(Print(-3.0), QXT("-3"));
  EXPECT_EQ(Print(1.5), QXT("1.5"));
  EXPECT_EQ(Print(2.0), QXT("2"));
  EXPECT_EQ(Print(100.0), QXT("100"));
  EXPECT_EQ(Print(1.5f), QXT("1.5"));
  EXPECT_EQ(Print(100.0f), QXT("100"));
}

// The texts: Python's decimal, the value taken exactly, quantised to six decimals with ROUND_HALF_UP, then trimmed.
TEST(CompactPrint, Doubles) {
  struct Row {
    double value;
    const QXChar* text;
  };
  const Row rows[] = {
      {0.0, QXT("0")},
      {-0.0, QXT("-0")},
      {1e-7, QXT("0")},
      {-1e-9, QXT("-0")},
      {0x1.0c6f7a0b5ed8dp-21, QXT("0")},         // the double below 0.0000005
      {0x1.0c6f7a0b5ed8ep-21, QXT("0.000001")},  // and the one above
      {0x1p-7, QXT("0.007813")},                 // a tie: 0.0078125
      {-0x1p-7, QXT("-0.007813")},
      {0x1.8p-6, QXT("0.023438")},
      {0x1.00008p+10, QXT("1024.007813")},
      {0x1p-20, QXT("0.000001")},
      {0x1p-21, QXT("0")},
      {0x1.8p-21, QXT("0.000001")},
      {0x1.ffffef39085f5p-1, QXT("1")},  // above 0.9999995
      {0x1.ffffef39085f4p-1, QXT("0.999999")},
      {0x1.e847fffffef39p+19, QXT("999999.999999")},  // just below 999999.9999995
      {0x1.fffffffffffffp+51, QXT("4503599627370495.5")},
      {0x1.fffffffffffffp+50, QXT("2251799813685247.75")},
      {0x1.c6bf526340002p+49, QXT("1000000000000000.25")},
      {0x1p+53, QXT("9007199254740992")},
      {0x1.fffffffffffffp+62, QXT("9223372036854774784")},
      {1e18, QXT("1000000000000000000")},
      {123456789.123456789, QXT("123456789.123457")},
      {5e-324, QXT("0")},
      {-2.2250738585072014e-308, QXT("-0")},
      {1.0 / 3, QXT("0.333333")},
      {2.0 / 3, QXT("0.666667")},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Print(row.value), row.text) << row.value;
  }
}

TEST(CompactPrint, DoublesFromTwoToThe63On) {
  EXPECT_EQ(Print(0x1p+63), QXT("9223372036854775808"));
  EXPECT_EQ(Print(-0x1p+63), QXT("-9223372036854775808"));
  EXPECT_EQ(Print(1e22), QXT("10000000000000000000000"));
  EXPECT_EQ(Print(1e23), QXT("99999999999999991611392"));
  EXPECT_EQ(Print(std::numeric_limits<double>::max()),
            QXT("179769313486231570814527423731704356798070567525844996598917476803157260780028538760589558632766878171540458"
                "953514382464234321326889464182768467546703537516986049910576551282076245490090389328944075868508455133942304"
                "583236903222948165808559332123348274797826204144723168738177180919299881250404026184124858368"));
}

// The same way from the float's value.
TEST(CompactPrint, Floats) {
  EXPECT_EQ(Print(0.1f), QXT("0.1"));
  EXPECT_EQ(Print(0.7f), QXT("0.7"));
  EXPECT_EQ(Print(1.0f / 3), QXT("0.333333"));
  EXPECT_EQ(Print(16777216.0f), QXT("16777216"));
  EXPECT_EQ(Print(1e-6f), QXT("0.000001"));
  EXPECT_EQ(Print(-0.0f), QXT("-0"));
  EXPECT_EQ(Print(std::numeric_limits<float>::min()), QXT("0"));
  EXPECT_EQ(Print(123456.789f), QXT("123456.789063"));  // 123456.7890625
  EXPECT_EQ(Print(std::numeric_limits<float>::max()), QXT("340282346638528859811704183484516925440"));
}

TEST(CompactPrint, EqualsTheExactDigitsRoundedByHand) {
  std::mt19937_64 random(7);
  for (int turn = 0; turn < 20000; ++turn) {
    const std::uint64_t bits = random();
    // All mantissas; exponents from far below the last decimal up to 2^63.
    const std::uint64_t exponent = 1023 - 40 + random() % 103;
    const double value = std::bit_cast<double>((bits & 0x800FFFFFFFFFFFFF) | exponent << 52);
    ASSERT_EQ(Print(value), Wide(Trimmed(SixDecimals(value)))) << std::hexfloat << value;
  }
}

TEST(CompactPrint, TiesAtTheSeventhDecimalGoAwayFromZero) {
  std::mt19937_64 random(8);
  for (int turn = 0; turn < 5000; ++turn) {
    // Odd multiples of 2^-7 have exactly seven decimals, the last of them 5.
    const double value = static_cast<double>(random() >> (11 + random() % 50) | 1) * 0x1p-7;
    const double below = std::nextafter(value, 0);
    ASSERT_EQ(Print(value), Wide(Trimmed(SixDecimals(value)))) << std::hexfloat << value;
    ASSERT_EQ(Print(-value), Wide(Trimmed(SixDecimals(-value)))) << std::hexfloat << value;
    ASSERT_EQ(Print(below), Wide(Trimmed(SixDecimals(below)))) << std::hexfloat << below;
  }
}

TEST(CompactPrint, NeighboursOfMillionthsAndTheirHalves) {
  for (int i = 0; i <= 2000; ++i) {
    const double half = i / 2e6;
    for (const double value : {half, std::nextafter(half, 0), std::nextafter(half, 1), 1 - half, 999 + half}) {
      ASSERT_EQ(Print(value), Wide(Trimmed(SixDecimals(value)))) << std::hexfloat << value;
    }
  }
}

// Format is a routine of its own; both must give the same digits for every value there is.
TEST(CompactPrint, EqualsTheTrimmedTextOfTheFormatter) {
  const auto formatted = [](double value) {
    CQXString text;
    text.Format(QXT("%f"), value);
    Text units = TextOf(text);
    const auto point = units.find(QXT('.'));
    while (units.size() > point && (units.back() == QXT('0') || units.back() == QXT('.'))) {
      units.pop_back();
    }
    return units;
  };
  std::mt19937_64 random(9);
  for (int turn = 0; turn < 20000; ++turn) {
    const std::uint64_t bits = random();
    // Every other value of a size that people print.
    const double value = std::bit_cast<double>(turn % 2 == 0 ? bits : (bits & 0x800FFFFFFFFFFFFF) | (1000 + bits % 64) << 52);
    ASSERT_EQ(Print(value), formatted(value)) << std::hex << std::bit_cast<std::uint64_t>(value);
    const double tie = static_cast<double>(bits >> 20 | 1) * 0x1p-7;
    ASSERT_EQ(Print(tie), formatted(tie)) << std::hexfloat << tie;
  }
}

TEST(CompactPrint, Ints) {
  EXPECT_EQ(Print(0), QXT("0"));
  EXPECT_EQ(Print(7), QXT("7"));
  EXPECT_EQ(Print(-10), QXT("-10"));
  EXPECT_EQ(Print(99), QXT("99"));
  EXPECT_EQ(Print(100), QXT("100"));
  EXPECT_EQ(Print(12345), QXT("12345"));
  EXPECT_EQ(Print(INT_MAX), QXT("2147483647"));
  EXPECT_EQ(Print(INT_MIN), QXT("-2147483648"));
}

TEST(CompactPrint, ReplacesTheTextThatStoodThere) {
  CQXString text(support::Repeat('x', 500).c_str());
  QXVDouble2String(0.25, text);
  EXPECT_EQ(TextOf(text), QXT("0.25"));
  QXVInt2String(-1, text);
  EXPECT_EQ(TextOf(text), QXT("-1"));
}

TEST(CompactPrintKept, TextsOfInfinitiesLoseTheirZeros) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Print(kInfinite), QXT("1.#INF"));
  EXPECT_EQ(Print(-kInfinite), QXT("-1.#INF"));
  EXPECT_EQ(Print(std::bit_cast<double>(std::uint64_t{0x7FF8000000000000})), QXT("1.#QNAN"));
  EXPECT_EQ(Print(std::bit_cast<double>(std::uint64_t{0xFFF8000000000000})), QXT("-1.#IND"));
  EXPECT_EQ(Print(std::numeric_limits<float>::infinity()), QXT("1.#INF"));
  EXPECT_EQ(Print(std::bit_cast<float>(0xFFC00000u)), QXT("-1.#IND"));
}

}  // namespace
