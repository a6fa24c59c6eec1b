// conversion_parse_test.cpp - strict parsing: what is a number, to which bits it reads, what a failure leaves behind.

#include "qxv/conversion.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace {

using support::Text;

constexpr double kUntouched = 77.25;

std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }
std::uint32_t Bits(float value) { return std::bit_cast<std::uint32_t>(value); }

Text Wide(const std::string& narrow) { return Text(narrow.begin(), narrow.end()); }

struct Parsed {
  int result;
  double value;
};

Parsed AsDouble(const std::string& text) {
  double value = kUntouched;
  const int result = QXVString2Double(Wide(text).c_str(), value);
  return {result, value};
}

Parsed AsFloat(const std::string& text) {
  auto value = static_cast<float>(kUntouched);
  const int result = QXVString2Float(Wide(text).c_str(), value);
  return {result, static_cast<double>(value)};
}

struct ParsedInt {
  int result;
  int value;
};

ParsedInt AsInt(const std::string& text) {
  int value = 77;
  const int result = QXVString2Int(Wide(text).c_str(), value);
  return {result, value};
}

TEST(StrictParse, BlanksOnBothSidesAreDropped) {
  EXPECT_EQ(AsDouble("  12.5   ").result, 0);
  EXPECT_EQ(AsDouble("  12.5   ").value, 12.5);
  EXPECT_EQ(AsFloat(" 12.5 ").result, 0);
  EXPECT_EQ(AsFloat(" 12.5 ").value, 12.5);
  EXPECT_EQ(AsInt("  12 ").result, 0);
  EXPECT_EQ(AsInt("  12 ").value, 12);
}

TEST(StrictParse, ExponentsPlusSignsInnerBlanksAndSecondPointsFail) {
  for (const char* text : {"12.5e3", "+3", "1 000", "1.2.3"}) {
    EXPECT_EQ(AsDouble(text).result, -1) << text;
    EXPECT_EQ(AsFloat(text).result, -1) << text;
    EXPECT_EQ(AsInt(text).result, -1) << text;
  }
}

TEST(StrictParse, PointMayStandFirstOrLast) {
  EXPECT_EQ(AsDouble(".5").result, 0);
  EXPECT_EQ(AsDouble(".5").value, 0.5);
  EXPECT_EQ(AsDouble("5.").result, 0);
  EXPECT_EQ(AsDouble("5.").value, 5.0);
  EXPECT_EQ(AsFloat("-.5").value, -0.5);
  EXPECT_EQ(AsFloat("-5.").value, -5.0);
}

TEST(StrictParse, PointAloneIsZero) {
  EXPECT_EQ(AsDouble(".").result, 0);
  EXPECT_EQ(Bits(AsDouble(".").value), 0u);
  EXPECT_EQ(AsDouble("-.").result, 0);
  EXPECT_EQ(Bits(AsDouble("-.").value), 0x8000000000000000u);
}

TEST(StrictParse, EmptyAndBlankTextsFailAndLeaveTheValueUntouched) {
  for (const char* text : {"", " ", "     "}) {
    EXPECT_EQ(AsDouble(text).result, -1) << '"' << text << '"';
    EXPECT_EQ(AsDouble(text).value, kUntouched) << '"' << text << '"';
    EXPECT_EQ(AsFloat(text).result, -1) << '"' << text << '"';
    EXPECT_EQ(AsFloat(text).value, kUntouched) << '"' << text << '"';
    EXPECT_EQ(AsInt(text).result, -1) << '"' << text << '"';
    EXPECT_EQ(AsInt(text).value, 77) << '"' << text << '"';
  }
}

TEST(StrictParse, OnlyTheSpaceCharacterIsABlank) {
  for (const char* text : {"\t1", "1\t", "1\r\n",
                           "\xA0"
                           "1",
                           "1 \t ", "- 1", "--1", "1-", "1,5", "0x10", "inf", "nan", "1f", "/", ":"}) {
    EXPECT_EQ(AsDouble(text).result, -1) << text;
    EXPECT_EQ(AsFloat(text).result, -1) << text;
    EXPECT_EQ(AsInt(text).result, -1) << text;
  }
  // A digit to Unicode only: ARABIC-INDIC DIGIT ONE, FULLWIDTH DIGIT ONE; and a unit whose low byte is "1".
  for (const QXChar unit : {QXChar{0x0661}, QXChar{0xFF11}, QXChar{0x0131}}) {
    const Text text{unit, QXChar{0}};
    int value = 77;
    EXPECT_EQ(QXVString2Int(text.c_str(), value), -1);
    EXPECT_EQ(value, 0);
  }
}

// What the digit-by-digit rule gives, computed by the rule written down in Python, whose floats are IEEE doubles (each step
// packed to 4 bytes and back for single precision). The comment tells the nearest double where that is another one.
TEST(StrictParse, ReadsToTheBitsOfTheDigitRule) {
  struct Row {
    std::string text;
    std::uint64_t asDouble;
    std::uint32_t asFloat;
  };
  const Row rows[] = {
      {"0", 0x0000000000000000, 0x00000000},
      {"-0", 0x8000000000000000, 0x80000000},
      {"7", 0x401C000000000000, 0x40E00000},
      {"000123", 0x405EC00000000000, 0x42F60000},
      {"12.5", 0x4029000000000000, 0x41480000},
      {"0.1", 0x3FB999999999999A, 0x3DCCCCCD},
      {"0.7", 0x3FE6666666666666, 0x3F333333},
      {"3.14159265358979", 0x400921FB54442D11, 0x40490FD9},
      {"123456.789012", 0x40FE240C9FCB0C03, 0x47F12065},     // 0x40FE240C9FCB0C02
      {"0.000001", 0x3EB0C6F7A0B5ED8E, 0x358637BC},          // 0x3EB0C6F7A0B5ED8D
      {"9007199254740993", 0x4340000000000000, 0x59FFFFFF},  // 2^53 + 1
      {"9007199254740995", 0x4340000000000002, 0x59FFFFFF},
      {"18014398509481985", 0x4350000000000000, 0x5A7FFFFF},
      {"123456789012345678901234567890", 0x45F8EE90FF6C373D, 0x6FC7748B},  // 0x45F8EE90FF6C373E
      {"16777217", 0x4170000010000000, 0x4B800000},                        // 2^24 + 1
      {"16777219", 0x4170000030000000, 0x4B800002},
      {"33554435", 0x4180000018000000, 0x4C000001},
      {"0.333333333333333333333", 0x3FD5555555555554, 0x3EAAAAAB},  // 0x3FD5555555555555
      {"2.718281828459045235", 0x4005BF0A8B145769, 0x402DF854},
      {"-273.15", 0xC071126666666667, 0xC3889333},            // 0xC071126666666666
      {"99999999.99999999", 0x4197D78400000000, 0x4CBEBC20},  // 0x4197D783FFFFFFFF
      {"1" + std::string(308, '0'), 0x7FE1CCF385EBC89F, 0x7F800000},
      {"2" + std::string(308, '0'), 0x7FF0000000000000, 0x7F800000},
      {"1" + std::string(38, '0'), 0x47D2CED32A16A1B0, 0x7E96769A},
      {"4" + std::string(38, '0'), 0x47F2CED32A16A1B0, 0x7F800000},
      {"0." + std::string(44, '0') + "1", 0x3696D601AD376ABB, 0x00000001},
      {"0." + std::string(322, '0') + "9", 0x0000000000000012, 0x00000000},
      {"0." + std::string(400, '9'), 0x3FF0000000000000, 0x3F7FFFFF},
  };
  for (const Row& row : rows) {
    double asDouble = kUntouched;
    EXPECT_EQ(QXVString2Double(Wide(row.text).c_str(), asDouble), 0) << row.text;
    EXPECT_EQ(Bits(asDouble), row.asDouble) << row.text;
    float asFloat = 0;
    EXPECT_EQ(QXVString2Float(Wide(row.text).c_str(), asFloat), 0) << row.text;
    EXPECT_EQ(Bits(asFloat), row.asFloat) << row.text;
  }
}

// The rule as it is told, step by step.
template <class T>
int ParseByTheRule(std::string text, T& value) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) {
    return -1;
  }
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  value = 0;
  const bool negative = text[0] == '-';
  int place = -1;
  for (std::size_t i = negative ? 1 : 0; i < text.size(); ++i) {
    if (text[i] == '.') {
      if (place >= 0) {
        return -1;
      }
      place = 0;
      continue;
    }
    if (text[i] < '0' || text[i] > '9') {
      return -1;
    }
    const T digit = static_cast<T>(text[i] - '0');
    T v = value * T{10} + digit;
    if (place >= 0) {
      ++place;
      T quotient = digit;
      for (int k = 0; k < place; ++k) {
        quotient = static_cast<T>(quotient / 10.0);
      }
      v = value + quotient;
    }
    if (v < value || (v == value && text[i] != '0' && place < 0)) {
      return -1;
    }
    value = v;
  }
  value = negative ? -value : value;
  return 0;
}

template <class T, class Parse>
void CompareWithTheRule(Parse parse, const std::string& text) {
  T expected = T(kUntouched);
  T value = T(kUntouched);
  const int result = ParseByTheRule(text, expected);
  ASSERT_EQ(parse(Wide(text).c_str(), value), result) << text;
  ASSERT_EQ(Bits(value), Bits(expected)) << text;
}

TEST(StrictParse, EqualsTheRuleForSeededRandomTexts) {
  std::mt19937 random(20240611);
  const auto below = [&random](unsigned n) { return static_cast<std::size_t>(random() % n); };
  for (int turn = 0; turn < 20000; ++turn) {
    std::string text(below(3), ' ');
    text += below(3) == 0 ? "-" : "";
    // Mostly numbers of usual length, some beyond every precision and range.
    const unsigned longest = below(50) == 0 ? 420 : 25;
    const std::size_t whole = below(longest);
    const std::size_t fraction = below(longest);
    for (std::size_t i = 0; i < whole; ++i) {
      text += static_cast<char>('0' + below(10));
    }
    text += below(4) == 0 ? "" : ".";
    for (std::size_t i = 0; i < fraction; ++i) {
      text += static_cast<char>('0' + below(10));
    }
    if (below(10) == 0) {
      text.insert(below(static_cast<unsigned>(text.size() + 1)), 1, "+-. e,x"[below(7)]);
    }
    text += std::string(below(3), ' ');
    CompareWithTheRule<double>(QXVString2Double, text);
    CompareWithTheRule<float>(QXVString2Float, text);
    if (HasFatalFailure()) {
      return;
    }
  }
}

TEST(StrictParse, EqualsTheRuleForEachDigitAtEachPlace) {
  for (std::size_t place = 0; place < 330; ++place) {
    for (char digit = '1'; digit <= '9'; ++digit) {
      const std::string text = "." + std::string(place, '0') + digit;
      CompareWithTheRule<double>(QXVString2Double, text);
      CompareWithTheRule<float>(QXVString2Float, text);
      if (HasFatalFailure()) {
        return;
      }
    }
  }
}

TEST(StrictParse, MillionDigitsBehindThePointTakeAMoment) {
  const std::string text = "0." + std::string(1'000'000, '1');
  double value = 0;
  EXPECT_EQ(QXVString2Double(Wide(text).c_str(), value), 0);
  EXPECT_EQ(Bits(value), 0x3FBC71C71C71C71Du);  // Python: 0x1.c71c71c71c71dp-4
  EXPECT_EQ(AsDouble(text + "x").result, -1);
}

TEST(StrictParse, IntLimits) {
  struct Row {
    const char* text;
    int result;
    int value;
  };
  const Row rows[] = {
      {"2147483647", 0, 2147483647},
      {"-2147483647", 0, -2147483647},
      {"2147483648", -1, 214748364},
      {"-2147483648", -1, 214748364},
      {"2147483650", -1, 214748365},
      {"0002147483647", 0, 2147483647},
      {"5000000000", -1, 500000000},  // modulo 2^32 it would be larger than the value before
      {"9999999999", -1, 999999999},
      {"4294967296", -1, 429496729},
      {"21474836470", -1, 2147483647},
      {"00000000000000000000", 0, 0},
      {"-0", 0, 0},
      {"-", 0, 0},
      {"-12", 0, -12},
      {"12.0", -1, 12},
      {".", -1, 0},
      {"x", -1, 0},
      {"-x", -1, 0},
      {"12x", -1, 12},
      {"-12x", -1, 12},
      {"1 2", -1, 1},
      {"99999999999999999999999999", -1, 999999999},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(AsInt(row.text).result, row.result) << row.text;
    EXPECT_EQ(AsInt(row.text).value, row.value) << row.text;
  }
}

TEST(StrictParse, IntTextsEndAtTheTerminatorOfAFullBuffer) {
  // 128 characters fill the buffer to its slot; what stands behind is no text.
  int value = 77;
  EXPECT_EQ(QXVString2Int((Wide(std::string(127, '0') + "7")).c_str(), value), 0);
  EXPECT_EQ(value, 7);
}

TEST(StrictParseKept, SmallestIntFails) {
  EXPECT_EQ(AsInt("-2147483648").result, -1);
  EXPECT_EQ(AsInt("-2147483648").value, 214748364);
}

TEST(StrictParseKept, MinusAloneIsMinusZero) {
  for (const char* text : {"-", " - "}) {
    EXPECT_EQ(AsDouble(text).result, 0) << text;
    EXPECT_EQ(Bits(AsDouble(text).value), 0x8000000000000000u) << text;
    EXPECT_EQ(AsFloat(text).result, 0) << text;
    EXPECT_TRUE(std::signbit(AsFloat(text).value)) << text;
    EXPECT_EQ(AsInt(text).result, 0) << text;
    EXPECT_EQ(AsInt(text).value, 0) << text;
  }
}

TEST(StrictParseKept, FailureLeavesTheValueReadSoFar) {
  struct Row {
    const char* text;
    double left;
  };
  const Row rows[] = {{"12.5e3", 12.5}, {"-12.5e3", 12.5}, {"1 000", 1}, {"1.5.3", 1.5}, {"+3", 0},
                      {"x", 0},         {"-x", 0},         {"3\r\n", 3}, {"-2\r\n", 2},  {".25.", 0.25}};
  for (const Row& row : rows) {
    EXPECT_EQ(AsDouble(row.text).result, -1) << row.text;
    EXPECT_EQ(AsDouble(row.text).value, row.left) << row.text;
    EXPECT_EQ(AsFloat(row.text).result, -1) << row.text;
    EXPECT_EQ(AsFloat(row.text).value, row.left) << row.text;
  }
  EXPECT_EQ(AsInt("3\r\n").result, -1);
  EXPECT_EQ(AsInt("3\r\n").value, 3);
  EXPECT_EQ(AsInt("-2\r\n").value, 2);
}

TEST(StrictParseKept, ZerosBehindAnInfiniteValueAreAccepted) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  const std::string huge = "1" + std::string(400, '0');
  EXPECT_EQ(AsDouble(huge).result, 0);
  EXPECT_EQ(AsDouble(huge).value, kInfinite);
  EXPECT_EQ(AsDouble("-" + huge).value, -kInfinite);
  EXPECT_EQ(AsDouble(huge + ".5").result, 0);
  EXPECT_EQ(AsDouble(huge + "1").result, -1);
  EXPECT_EQ(AsDouble(huge + "1").value, kInfinite);
  EXPECT_EQ(AsFloat("1" + std::string(40, '0')).result, 0);
  EXPECT_EQ(AsFloat("1" + std::string(40, '0')).value, kInfinite);
  EXPECT_EQ(AsFloat("1" + std::string(40, '0') + "1").result, -1);
}

TEST(StrictParseKept, FractionsAreSumsOfRepeatedQuotients) {
  // The nearest doubles end in 0D, 66 and FF.
  EXPECT_EQ(Bits(AsDouble("0.000001").value), 0x3EB0C6F7A0B5ED8Eu);
  EXPECT_EQ(Bits(AsDouble("-273.15").value), 0xC071126666666667u);
  EXPECT_EQ(Bits(AsDouble("99999999.99999999").value), 0x4197D78400000000u);
  // Single precision rounds each quotient to a float: from double quotients it would be 0x358637BD, the nearest float.
  float single = 0;
  EXPECT_EQ(QXVString2Float(QXT("0.000001"), single), 0);
  EXPECT_EQ(Bits(single), 0x358637BCu);
}

}  // namespace
