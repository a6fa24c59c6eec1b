// c_runtime_judge_test.cpp - the C run-time services against the run-time's own: comparisons, numbers, digits, path parts.

#include "os/c_runtime.h"

#include "os/msvcrt.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <string>

namespace {

using namespace qxv::os;
using support::Text;

std::wstring RandomText(std::mt19937_64& random, const std::wstring& alphabet, std::size_t most) {
  std::wstring text;
  for (std::size_t length = random() % (most + 1); length > 0; --length) {
    text += alphabet[random() % alphabet.size()];
  }
  return text;
}

TEST(CRuntimeJudge, ComparisonsAgree) {
  QXV_NEEDS_WINE();
  auto* const compare = msvcrt::Named<int(const wchar_t*, const wchar_t*, std::size_t)>("wcsncmp");
  auto* const compareNoCase = msvcrt::Named<int(const wchar_t*, const wchar_t*, std::size_t)>("_wcsnicmp");
  std::mt19937_64 random(20260107);
  for (int round = 0; round < 100000 && !HasFatalFailure(); ++round) {
    const std::wstring left = RandomText(random, L"aAbBzZ[@`{\x00C9\x00E9\x0130\xFF21\xFFFF", 4);
    const std::wstring right = RandomText(random, L"aAbBzZ[@`{\x00C9\x00E9\x0130\xFF21\xFFFF", 4);
    const std::size_t count = random() % 6;
    ASSERT_EQ(CompareText(left.c_str(), right.c_str(), count), compare(left.c_str(), right.c_str(), count))
        << left << "," << right;
    ASSERT_EQ(CompareTextNoCase(left.c_str(), right.c_str(), count), compareNoCase(left.c_str(), right.c_str(), count))
        << left << "," << right;
  }
}

void ExpectSameIntegers(const std::wstring& text, int radix) {
  static auto* const parse32 = msvcrt::Named<long(const wchar_t*, wchar_t**, int)>("wcstol");
  static auto* const parse64 = msvcrt::Named<long long(const wchar_t*, wchar_t**, int)>("_wcstoi64");
  const wchar_t* end = nullptr;
  wchar_t* judgeEnd = nullptr;
  ASSERT_EQ(ParseInt32(text.c_str(), &end, radix), parse32(text.c_str(), &judgeEnd, radix))
      << testing::PrintToString(text) << radix;
  ASSERT_EQ(end, judgeEnd) << testing::PrintToString(text) << radix;
  ASSERT_EQ(ParseInt64(text.c_str(), &end, radix), parse64(text.c_str(), &judgeEnd, radix))
      << testing::PrintToString(text) << radix;
  ASSERT_EQ(end, judgeEnd) << testing::PrintToString(text) << radix;
}

TEST(CRuntimeJudge, EveryUnitIsTheSameBlankOrDigit) {
  QXV_NEEDS_WINE();
  for (int unit = 1; unit < 65536 && !HasFatalFailure(); ++unit) {
    ExpectSameIntegers(std::wstring{static_cast<wchar_t>(unit), L'7'}, 10);
    ExpectSameIntegers(std::wstring{L'1', static_cast<wchar_t>(unit)}, 36);
  }
}

TEST(CRuntimeJudge, IntegersAgree) {
  QXV_NEEDS_WINE();
  auto* const toInt = msvcrt::Named<int(const wchar_t*)>("_wtoi");
  std::mt19937_64 random(20260108);
  for (int round = 0; round < 200000 && !HasFatalFailure(); ++round) {
    const std::wstring text = RandomText(random, L"0123456789 \t+-xXaAfFzZ0009\x0661\xFF19\x3000", 24);
    ExpectSameIntegers(text, std::array{0, 2, 8, 10, 16, 36}[random() % 6]);
    ASSERT_EQ(ToInt32(text.c_str()), toInt(text.c_str())) << testing::PrintToString(text);
  }
}

TEST(CRuntimeJudge, DoublesAgree) {
  QXV_NEEDS_WINE();
  auto* const parse = msvcrt::Named<double(const wchar_t*, wchar_t**)>("wcstod");
  std::mt19937_64 random(20260109);
  for (int round = 0; round < 200000 && !HasFatalFailure(); ++round) {
    std::wstring text = RandomText(random, L"0123456789", 1 + random() % 30);
    text += random() % 2 == 0 ? L"." + RandomText(random, L"0123456789", random() % 30) : L"";
    text += random() % 2 == 0 ? std::wstring(1, L"eEdD"[random() % 4]) + RandomText(random, L"+-", 1) +
                                    std::to_wstring(random() % (random() % 2 == 0 ? 30 : 400))
                              : L"";
    if (random() % 8 == 0) {
      text = RandomText(random, L"0123456789.eE+-d \t\x3000xinfna", 12);
    }
    const wchar_t* end = nullptr;
    wchar_t* judgeEnd = nullptr;
    const double value = ParseDouble(text.c_str(), &end);
    const double judged = parse(text.c_str(), &judgeEnd);
    ASSERT_EQ(value, judged) << testing::PrintToString(text);
    ASSERT_EQ(end, judgeEnd) << testing::PrintToString(text);
    if (end != text.c_str()) {
      ASSERT_EQ(std::signbit(value), std::signbit(judged)) << testing::PrintToString(text);
    }
  }
}

TEST(CRuntimeJudge, DigitsAgree) {
  QXV_NEEDS_WINE();
  auto* const fcvt = msvcrt::Named<char*(double, int, int*, int*)>("_fcvt");
  std::mt19937_64 random(20260110);
  for (int round = 0; round < 100000 && !HasFatalFailure(); ++round) {
    // Wine 8 prints through 80 characters, so neither huge numbers nor many decimals.
    const double value =
        static_cast<double>(static_cast<std::int64_t>(random())) * std::ldexp(1.0, -static_cast<int>(random() % 80));
    const int count = static_cast<int>(random() % 20);
    if (std::fabs(value) < std::pow(10.0, -count)) {
      continue;  // Wine 8 gives zeros or nothing there, whatever the sign is
    }
    int point = 0;
    int negative = 0;
    const std::string judged = fcvt(value, count, &point, &negative);
    const FixedDigitText text = FixedDigits(value, count);
    ASSERT_EQ(text.digits, judged) << value << " " << count;
    ASSERT_EQ(text.point, point) << value << " " << count;
    ASSERT_EQ(text.negative, negative != 0) << value << " " << count;
  }
}

TEST(CRuntimeJudge, PathPartsAgree) {
  QXV_NEEDS_WINE();
  auto* const split = msvcrt::Named<int(const wchar_t*, wchar_t*, std::size_t, wchar_t*, std::size_t, wchar_t*, std::size_t,
                                        wchar_t*, std::size_t)>("_wsplitpath_s");
  std::mt19937_64 random(20260111);
  for (int round = 0; round < 100000 && !HasFatalFailure(); ++round) {
    const std::wstring path = RandomText(random, L"ab:\\/..\x4E2D", 10);
    std::size_t room[4];
    wchar_t ours[4][16] = {};
    wchar_t judges[4][16] = {};
    for (std::size_t& size : room) {
      size = 1 + random() % (random() % 2 == 0 ? 15 : 4);
    }
    const int result = SplitPath(path.c_str(), {ours[0], room[0]}, {ours[1], room[1]}, {ours[2], room[2]}, {ours[3], room[3]});
    ASSERT_EQ(result, split(path.c_str(), judges[0], room[0], judges[1], room[1], judges[2], room[2], judges[3], room[3]))
        << testing::PrintToString(path);
    for (int part = 0; part < 4; ++part) {
      ASSERT_EQ(Text(ours[part]), Text(judges[part])) << testing::PrintToString(path) << part;
    }
  }
}

}  // namespace
