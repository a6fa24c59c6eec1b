// conversion_runtime_test.cpp - the C run-time's conversions for CQXString. Each text and result is what the Microsoft run-time
// gives, but for 64-bit overflow, where it clamps and its stand-in under Wine wraps.

#include "qxv/conversion.h"

#include "support/comma_locale.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <new>

namespace {

using support::Text;
using support::TextOf;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST(RuntimeNumbers, AtoIAndAtoLReadTheLeadingIntegerAndClamp) {
  struct Row {
    const QXChar* text;
    int value;
  };
  const Row rows[] = {
      {QXT(""), 0},
      {QXT("0"), 0},
      {QXT("123"), 123},
      {QXT("-123"), -123},
      {QXT("+7"), 7},
      {QXT(" \t\r\n\v\f42"), 42},
      {QXT("42abc"), 42},
      {QXT("12.9"), 12},
      {QXT("1e3"), 1},
      {QXT("0x10"), 0},
      {QXT("010"), 10},
      {QXT("abc"), 0},
      {QXT("- 5"), 0},
      {QXT("--5"), 0},
      {QXT("+-5"), 0},
      {QXT("2147483647"), INT_MAX},
      {QXT("2147483648"), INT_MAX},
      {QXT("4294967296"), INT_MAX},
      {QXT("99999999999999999999999999"), INT_MAX},
      {QXT("-2147483648"), INT_MIN},
      {QXT("-2147483649"), INT_MIN},
      {QXT("-99999999999999999999999999"), INT_MIN},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(QXVAtoI(row.text), row.value) << row.value;
    EXPECT_EQ(QXVAtoL(row.text), static_cast<long>(row.value)) << row.value;
  }
}

TEST(RuntimeNumbers, AtoLLongReadsTheLeadingIntegerAndClamps) {
  EXPECT_EQ(QXVAtoLLong(QXT(" -9007199254740993x")), -9007199254740993LL);
  EXPECT_EQ(QXVAtoLLong(QXT("2147483648")), 2147483648LL);
  EXPECT_EQ(QXVAtoLLong(QXT("9223372036854775807")), LLONG_MAX);
  EXPECT_EQ(QXVAtoLLong(QXT("9223372036854775808")), LLONG_MAX);
  EXPECT_EQ(QXVAtoLLong(QXT("99999999999999999999")), LLONG_MAX);
  EXPECT_EQ(QXVAtoLLong(QXT("-9223372036854775808")), LLONG_MIN);
  EXPECT_EQ(QXVAtoLLong(QXT("-9223372036854775809")), LLONG_MIN);
  EXPECT_EQ(QXVAtoLLong(QXT("")), 0);
  EXPECT_EQ(QXVAtoLLong(QXT("x1")), 0);
}

TEST(RuntimeNumbers, AtoFReadsTheLeadingNumber) {
  struct Row {
    const QXChar* text;
    double value;
  };
  const Row rows[] = {
      {QXT(""), 0},
      {QXT("12.5"), 12.5},
      {QXT("  -12.5e1xyz"), -125},
      {QXT("+.5"), 0.5},
      {QXT("5."), 5},
      {QXT("1,5"), 1},
      {QXT("1e"), 1},
      {QXT("1e+"), 1},
      {QXT("2E-3"), 0.002},
      {QXT("."), 0},
      {QXT("e5"), 0},
      {QXT("abc"), 0},
      {QXT("1e400"), kInfinite},
      {QXT("-1e400"), -kInfinite},
      {QXT("1e-400"), 0},
      {QXT("9007199254740993"), 9007199254740992.0},
      {QXT("123456.789012"), 0x1.e240c9fcb0c02p+16},  // correctly rounded, where the strict parser ends one bit higher
  };
  for (const Row& row : rows) {
    EXPECT_EQ(QXVAtoF(row.text), row.value) << row.value;
  }
  EXPECT_TRUE(std::signbit(QXVAtoF(QXT("-0"))));
  // Exponents of more digits than any integer holds.
  const Text ones(100, QXT('1'));
  EXPECT_EQ(QXVAtoF((QXT("2e20") + ones).c_str()), kInfinite);
  EXPECT_EQ(QXVAtoF((QXT("-2e-20") + ones).c_str()), 0.0);
  EXPECT_EQ(QXVAtoF((QXT("0e20") + ones).c_str()), 0.0);
}

TEST(RuntimeNumbers, TextWithoutABufferIsZero) {
  // A string whose bytes were zeroed, as a host's own containers make them.
  alignas(CQXString) unsigned char zeroed[sizeof(CQXString)] = {};
  const CQXString& none = *reinterpret_cast<const CQXString*>(zeroed);
  EXPECT_EQ(QXVAtoI(none), 0);
  EXPECT_EQ(QXVAtoL(none), 0);
  EXPECT_EQ(QXVAtoLLong(none), 0);
  EXPECT_EQ(QXVAtoF(none), 0.0);
  int value = 77;
  EXPECT_EQ(QXVString2Int(none, value), -1);
  EXPECT_EQ(value, 77);
}

TEST(RuntimeNumbers, IntegersPrintTheirDigits) {
  struct Row {
    int value;
    const QXChar* text;
  };
  const Row rows[] = {{0, QXT("0")},
                      {9, QXT("9")},
                      {10, QXT("10")},
                      {-1, QXT("-1")},
                      {1005, QXT("1005")},
                      {99999, QXT("99999")},
                      {INT_MAX, QXT("2147483647")},
                      {INT_MIN, QXT("-2147483648")}};
  for (const Row& row : rows) {
    EXPECT_EQ(TextOf(QXVItoA(row.value)), row.text);
    EXPECT_EQ(TextOf(QXVLtoA(row.value)), row.text);
    EXPECT_EQ(TextOf(QXVLLongtoA(row.value)), row.text);
  }
  EXPECT_EQ(TextOf(QXVLLongtoA(LLONG_MAX)), QXT("9223372036854775807"));
  EXPECT_EQ(TextOf(QXVLLongtoA(LLONG_MIN)), QXT("-9223372036854775808"));
}

TEST(RuntimeNumbers, LongsBeyond32BitsPrintAsTheNearest32BitNumber) {
  if (sizeof(long) == 4) {
    GTEST_SKIP() << "a long has 32 bits here";
  }
  EXPECT_EQ(TextOf(QXVLtoA(static_cast<long>(2147483648LL))), QXT("2147483647"));
  EXPECT_EQ(TextOf(QXVLtoA(static_cast<long>(-2147483649LL))), QXT("-2147483648"));
  EXPECT_EQ(TextOf(QXVLtoA(std::numeric_limits<long>::max())), QXT("2147483647"));
  EXPECT_EQ(TextOf(QXVLtoA(std::numeric_limits<long>::min())), QXT("-2147483648"));
}

// The digits: Python's decimal, ROUND_HALF_UP.
TEST(RuntimeNumbers, FtoAGivesTheRoundedDigits) {
  struct Row {
    double value;
    int count;
    const QXChar* digits;
    bool negative;
  };
  const Row rows[] = {
      {123.456, 3, QXT("123456"), false},
      {-1.5, 3, QXT("1500"), true},
      {0.001, 3, QXT("1"), false},
      {0.0, 3, QXT("000"), false},
      {0.0, 0, QXT(""), false},
      {0.0001, 3, QXT(""), false},
      {0.5, 0, QXT("1"), false},
      {2.5, 0, QXT("3"), false},
      {-2.5, 0, QXT("3"), true},
      {0.0078125, 6, QXT("7813"), false},
      {0.1, 20, QXT("10000000000000000555"), false},
      {999.9999, 2, QXT("100000"), false},
      {1e22, 1, QXT("100000000000000000000000"), false},
      {12.5, -3, QXT("13"), false},
      {12.5, INT_MIN, QXT("13"), false},
  };
  for (const Row& row : rows) {
    int sign = 77;
    EXPECT_EQ(TextOf(QXVFtoA(row.value, row.count, sign)), row.digits) << row.value << " with " << row.count;
    EXPECT_EQ(sign != 0, row.negative) << row.value << " with " << row.count;
  }
}

TEST(RuntimeNumbers, FtoAClampsTheCountAt350) {
  int sign = 77;
  const Text most = TextOf(QXVFtoA(-std::numeric_limits<double>::max(), INT_MAX, sign));
  EXPECT_EQ(most.size(), 309u + 350u);
  EXPECT_EQ(most.substr(0, 12), QXT("179769313486"));
  EXPECT_EQ(most.substr(309), Text(350, QXT('0')));
  EXPECT_NE(sign, 0);
  EXPECT_EQ(TextOf(QXVFtoA(1.0, 351, sign)), TextOf(QXVFtoA(1.0, 350, sign)));
  EXPECT_EQ(sign, 0);
}

TEST(RuntimeNumbers, LocaleWithADecimalCommaChangesNothing) {
  const support::CommaLocale locale;
  if (!locale.Lacking().empty()) {
    GTEST_SKIP() << locale.Lacking();
  }
  char judge[8];
  std::snprintf(judge, sizeof judge, "%.1f", 1.5);
  ASSERT_STREQ(judge, "1,5");
  EXPECT_EQ(QXVAtoF(QXT("1.5")), 1.5);
  double value = 0;
  EXPECT_EQ(QXVString2Double(QXT("1.5"), value), 0);
  EXPECT_EQ(value, 1.5);
  CQXString text;
  QXVDouble2String(1.5, text);
  EXPECT_EQ(TextOf(text), QXT("1.5"));
  QXVDouble2String(1e22, text);
  EXPECT_EQ(TextOf(text), QXT("10000000000000000000000"));
}

TEST(RuntimeNumbersKept, FtoATellsTheSignAndNotThePoint) {
  int sign = 77;
  EXPECT_EQ(TextOf(QXVFtoA(1.25, 2, sign)), QXT("125"));
  EXPECT_EQ(sign, 0);
  EXPECT_EQ(TextOf(QXVFtoA(-12.5, 1, sign)), QXT("125"));
  EXPECT_NE(sign, 0);
}

}  // namespace
