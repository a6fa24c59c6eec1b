// wide_format_libc_test.cpp - the formatter against the C library's narrow snprintf, where both agree by definition: integers,
// and %f %e of values that are no ties (there the C library rounds to even).

#include "os/wide_format.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

namespace {

using support::Text;

template <typename Argument>
void Compare(const std::string& format, const std::string& libcFormat, Argument argument) {
  char expected[500];
  const int length = std::snprintf(expected, sizeof expected, libcFormat.c_str(), argument);
  ASSERT_GE(length, 0);
  QXChar out[500];
  const Text wideFormat(format.begin(), format.end());
  ASSERT_EQ(qxv::os::FormatTextWith(out, 500, wideFormat.c_str(), argument), length) << format;
  ASSERT_EQ(std::string(out, out + length), expected) << format;
}

TEST(WideFormatLibc, IntegersPrintAlike) {
  std::mt19937_64 random(20260105);
  for (int round = 0; round < 100000 && !HasFatalFailure(); ++round) {
    std::string head = "%";
    const bool signedOne = random() % 2 == 0;
    for (const char flag : std::string(signedOne ? "-+" : "-#")) {
      head += random() % 3 == 0 ? std::string(1, flag) : "";
    }
    // The C library drops the flag 0 beside a precision, the Microsoft run-time keeps it: never both here.
    const bool hasPrecision = random() % 3 == 0;
    head += !hasPrecision && random() % 3 == 0 ? "0" : "";
    head += random() % 2 == 0 ? std::to_string(1 + random() % 40) : "";
    head += hasPrecision ? "." + std::to_string(1 + random() % 30) : "";
    const std::string conversion(1, (signedOne ? "di" : "uoxX")[random() % (signedOne ? 2 : 4)]);
    const auto value = static_cast<long long>(random() >> random() % 64);
    Compare(head + conversion, head + conversion, static_cast<int>(value));
    Compare(head + "I64" + conversion, head + "ll" + conversion, value);
    Compare(head + "h" + conversion, head + "h" + conversion, static_cast<int>(value));
  }
}

TEST(WideFormatLibc, NumbersThatAreNoTiesPrintAlike) {
  std::mt19937_64 random(20260106);
  for (int round = 0; round < 100000 && !HasFatalFailure(); ++round) {
    // An odd multiple of 2^-60 has 60 decimals: no cut at 25 or fewer decimals is a tie.
    const double value = static_cast<double>(static_cast<std::int64_t>(random() | 1) >> (11 + random() % 40)) * 0x1p-60 + 0x1p-60;
    const std::string head = std::string("%") + (random() % 2 == 0 ? "+" : "") + (random() % 2 == 0 ? "0" : "") +
                             std::to_string(random() % 40) + "." + std::to_string(random() % 8);
    Compare(head + "f", head + "f", static_cast<std::int64_t>(value * 0x1p60) % 2 != 0 ? value : value + 0x1p-60);
  }
}

}  // namespace
