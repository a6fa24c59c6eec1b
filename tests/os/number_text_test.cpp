// number_text_test.cpp - numbers read from texts and the digits of doubles; the expectations are the Microsoft run-time's, as
// recorded.

#include "os/c_runtime.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

namespace {

using namespace qxv::os;
using support::Text;

struct IntegerCase {
  const QXChar* text;
  int radix;
  std::int32_t narrow;
  std::int64_t wide;
  int end;
};

TEST(NumberText, IntegersAreReadWithRadixAndClamped) {
  const IntegerCase cases[] = {
      {QXT(""), 10, 0, 0, 0},
      {QXT(" "), 10, 0, 0, 0},
      {QXT("12"), 10, 12, 12, 2},
      {QXT("-12"), 10, -12, -12, 3},
      {QXT("+12"), 10, 12, 12, 3},
      {QXT(" \t\n\v\f\r 12x"), 10, 12, 12, 9},
      {QXT("2147483647"), 10, 2147483647, 2147483647, 10},
      {QXT("2147483648"), 10, 2147483647, 2147483648, 10},
      {QXT("-2147483648"), 10, INT32_MIN, -2147483648LL, 11},
      {QXT("-2147483649"), 10, INT32_MIN, -2147483649LL, 11},
      {QXT("9223372036854775807"), 10, 2147483647, INT64_MAX, 19},
      {QXT("9223372036854775808"), 10, 2147483647, INT64_MAX, 19},
      {QXT("-9223372036854775808"), 10, INT32_MIN, INT64_MIN, 20},
      {QXT("-9223372036854775809"), 10, INT32_MIN, INT64_MIN, 20},
      {QXT("18446744073709551616"), 10, 2147483647, INT64_MAX, 20},
      {QXT("-99999999999999999999999999"), 10, INT32_MIN, INT64_MIN, 27},
      {QXT("0x1F"), 0, 31, 31, 4},
      {QXT("0X1f"), 16, 31, 31, 4},
      {QXT("0x1F"), 10, 0, 0, 1},
      {QXT("-0x10"), 0, -16, -16, 5},
      {QXT("0x"), 0, 0, 0, 0},
      {QXT("0xg"), 16, 0, 0, 0},
      {QXT("0x"), 36, 33, 33, 2},
      {QXT("010"), 0, 8, 8, 3},
      {QXT("08"), 0, 0, 0, 1},
      {QXT("010"), 10, 10, 10, 3},
      {QXT("102"), 2, 2, 2, 2},
      {QXT("zZ"), 36, 1295, 1295, 2},
      {QXT("- 5"), 10, 0, 0, 0},
      {QXT("+-5"), 10, 0, 0, 0},
      {QXT("1.5"), 10, 1, 1, 1},
      {QXT("12"), 1, 0, 0, 0},
      {QXT("12"), 37, 0, 0, 0},
      {QXT("12"), -1, 0, 0, 0},
      {QXT("\u00A0\u3000\u200912"), 10, 12, 12, 5},
      {QXT("\u008512"), 10, 0, 0, 0},
      {QXT("\uFF11\uFF12"), 10, 12, 12, 2},          // full-width
      {QXT("\u0661\u06F2\u0967"), 10, 121, 121, 3},  // Arabic-Indic, Persian, Devanagari
      {QXT("\u0660x12"), 0, 18, 18, 4},
  };
  for (const IntegerCase& row : cases) {
    const std::string name = testing::PrintToString(Text(row.text)) + " radix " + std::to_string(row.radix);
    const QXChar* end = nullptr;
    EXPECT_EQ(ParseInt32(row.text, &end, row.radix), row.narrow) << name;
    EXPECT_EQ(end - row.text, row.end) << name;
    end = nullptr;
    EXPECT_EQ(ParseInt64(row.text, &end, row.radix), row.wide) << name;
    EXPECT_EQ(end - row.text, row.end) << name;
    if (row.radix == 10) {
      EXPECT_EQ(ToInt32(row.text), row.narrow) << name;
      EXPECT_EQ(ToInt64(row.text), row.wide) << name;
    }
  }
  EXPECT_EQ(ToInt32(nullptr), 0);
  EXPECT_EQ(ToInt64(nullptr), 0);
}

struct DoubleCase {
  const QXChar* text;
  double value;
  int end;
};

const DoubleCase kDoubles[] = {
    {QXT(""), 0, 0},
    {QXT("1e5"), 100000, 3},
    {QXT("1d5"), 100000, 3},
    {QXT("1D+5"), 100000, 4},
    {QXT("1e"), 1, 1},
    {QXT("1e+"), 1, 1},
    {QXT("1e+x"), 1, 1},
    {QXT("."), 0, 0},
    {QXT("-.e5"), 0, 0},
    {QXT("5."), 5, 2},
    {QXT(".5"), 0.5, 2},
    {QXT("-.5e-3"), -0.0005, 6},
    {QXT("+1"), 1, 2},
    {QXT("+-1"), 0, 0},
    {QXT("- 5"), 0, 0},
    {QXT(" \t\u30001.5 "), 1.5, 6},
    {QXT("1,5"), 1, 1},
    {QXT("0x10"), 0, 1},
    {QXT("0x1p3"), 0, 1},
    {QXT("inf"), 0, 0},
    {QXT("infinity"), 0, 0},
    {QXT("nan"), 0, 0},
    {QXT("1.#INF"), 1, 2},
    {QXT("\u0661"), 0, 0},
    {QXT("1e400"), HUGE_VAL, 5},
    {QXT("-1e400"), -HUGE_VAL, 6},
    {QXT("1e-400"), 0.0, 6},
    {QXT("-1e-400"), -0.0, 7},
    {QXT("-0"), -0.0, 2},
    {QXT("4.9406564584124654e-324"), 4.9406564584124654e-324, 23},
    {QXT("2.4703282292062327e-324"), 0.0, 23},                      // just below half the smallest
    {QXT("2.4703282292062328e-324"), 4.9406564584124654e-324, 23},  // just above
    {QXT("1.7976931348623158e308"), 1.7976931348623157e308, 22},
    {QXT("1.7976931348623159e308"), HUGE_VAL, 22},
    {QXT("9007199254740993"), 9007199254740992.0, 16},  // a tie goes to even
    {QXT("1e23"), 9.9999999999999992e22, 4},
    {QXT("123456789012345678901234567890"), 1.2345678901234568e29, 30},
    {QXT("7450580596923828125e-28"), 7.4505805969238285e-10, 23},
    {QXT("0.000000000000000000000000000000000000000000001e45"), 1, 50},
    {QXT("0e99999999999"), 0, 13},
    {QXT("1e99999999999"), HUGE_VAL, 13},
    {QXT("1e-99999999999"), 0, 14},
    {QXT("1e99999999999999999999999999"), HUGE_VAL, 28},
};

TEST(NumberText, DoublesAreCorrectlyRounded) {
  for (const DoubleCase& row : kDoubles) {
    const std::string name = testing::PrintToString(Text(row.text));
    const QXChar* end = nullptr;
    const double value = ParseDouble(row.text, &end);
    EXPECT_EQ(value, row.value) << name;
    EXPECT_EQ(std::signbit(value), std::signbit(row.value)) << name;
    EXPECT_EQ(end - row.text, row.end) << name;
    EXPECT_EQ(ParseDouble(row.text, nullptr), row.value) << name;
  }
  const QXChar* end = QXT("x");
  EXPECT_EQ(ParseDouble(nullptr, &end), 0);
  EXPECT_EQ(end, nullptr);
}

TEST(NumberText, LongDigitStringsCountToTheLastDigit) {
  // 2^53 + 1 is a tie; 2000 digits behind it decide.
  const Text tie = QXT("9007199254740993.") + support::Repeat(QXT('0'), 2000);
  EXPECT_EQ(ParseDouble(tie.c_str(), nullptr), 9007199254740992.0);
  EXPECT_EQ(ParseDouble((tie + QXT('1')).c_str(), nullptr), 9007199254740994.0);
  const Text huge = support::Repeat(QXT('9'), 5000);
  EXPECT_EQ(ParseDouble(huge.c_str(), nullptr), HUGE_VAL);
  EXPECT_EQ(ParseDouble((huge + QXT("e-5000")).c_str(), nullptr), 1.0);
  EXPECT_EQ(ParseDouble((QXT("0.") + support::Repeat(QXT('0'), 5000) + QXT("1e5001")).c_str(), nullptr), 1.0);
  EXPECT_EQ(ParseDouble((QXT("0.") + support::Repeat(QXT('0'), 5000) + QXT("1e4000")).c_str(), nullptr), 0.0);
  EXPECT_EQ(ParseDouble((QXT("1") + support::Repeat(QXT('0'), 5000) + QXT("e-4000")).c_str(), nullptr), HUGE_VAL);
}

TEST(NumberText, FollowsNoLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "German_Germany.1252", ""}) {
    (void)std::setlocale(LC_ALL, name);  // whether the machine has it or not, the number is the same
    EXPECT_EQ(ParseDouble(QXT("1.5"), nullptr), 1.5) << name;
    EXPECT_EQ(ParseDouble(QXT("1,5"), nullptr), 1.0) << name;
  }
  std::setlocale(LC_ALL, before.c_str());
}

struct DigitCase {
  double value;
  int count;
  const char* digits;
  int point;
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(FixedDigits, GivesDigitsAndThePlaceOfThePoint) {
  const DigitCase cases[] = {
      {0.0, 0, "", 0},
      {0.0, 3, "000", 0},
      {0.001, 3, "1", -2},
      {0.001, 5, "100", -2},
      {0.001, 20, "100000000000000002", -2},
      {0.001, 2, "", -2},
      {1e-4, 2, "", -3},
      {0.5, 0, "1", 1},
      {0.5, 3, "500", 0},
      {1.5, 0, "2", 1},
      {2.5, 0, "3", 1},
      {0.25, 1, "3", 0},
      {0.05, 1, "1", 0},
      {0.005, 2, "1", -1},
      {123.456, 0, "123", 3},
      {123.456, 1, "1235", 3},
      {123.456, 5, "12345600", 3},
      {999.9999, 3, "1000000", 4},
      {999.9999, 5, "99999990", 3},
      {9.5, 0, "10", 2},
      {1e20, 2, "10000000000000000000000", 21},
      {0.15, 1, "1", 0},  // the double lies below the tie
      {5e-324, 20, "", -323},
      {1e100, 0, "10000000000000000159028911097599180468360808563945281389781327557747838772170381060813469985856815104", 101},
      {123.456, -5, "123", 3},  // counts are clamped to 0 to 350
      {kInfinity, 0, "1", 1},
      {kInfinity, 2, "1#J", 1},
      {kInfinity, 5, "1#INF0", 1},
      {kNaN, 5, "1#QNAN", 1},
  };
  for (const DigitCase& row : cases) {
    for (const bool negative : {false, true}) {
      if (negative && std::isnan(row.value)) {
        continue;  // another name: #IND
      }
      const FixedDigitText text = FixedDigits(negative ? -row.value : row.value, row.count);
      EXPECT_STREQ(text.digits, row.digits) << row.value << " " << row.count;
      EXPECT_EQ(text.point, row.point) << row.value << " " << row.count;
      EXPECT_EQ(text.negative, negative) << row.value << " " << row.count;
    }
  }
}

TEST(FixedDigits, HasRoomForTheLongest) {
  const FixedDigitText most = FixedDigits(1.7976931348623157e308, 1000000);
  EXPECT_EQ(std::string(most.digits).size(), 309u + 350u);
  EXPECT_EQ(std::string(most.digits).substr(0, 20), "17976931348623157081");
  EXPECT_EQ(std::string(most.digits).substr(305), "8368" + std::string(350, '0'));
  EXPECT_EQ(most.point, 309);
  EXPECT_EQ(std::string(FixedDigits(1.0 / 3, 350).digits).substr(0, 60),
            "333333333333333314829616256247390992939472198486328125000000");
}

}  // namespace
