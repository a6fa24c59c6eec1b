// variant_time_win_test.cpp - our conversions beside those of oleaut32.dll. Windows only.
// Where ours differs on purpose it is said in the test: the month 0, a time of day that is none and results outside the years 100
// to 9999 are refused as Microsoft's documentation has it, and the day of the week is always that of the day told.

#include "foundation/variant_time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

namespace {

class SystemConversions : public testing::Test {
 protected:
  using ToDays = int(WINAPI*)(SYSTEMTIME*, double*);
  using ToCalendar = int(WINAPI*)(double, SYSTEMTIME*);

  void SetUp() override {
    m_module = ::LoadLibraryW(L"oleaut32.dll");
    ASSERT_NE(m_module, nullptr);
    const FARPROC toDays = ::GetProcAddress(m_module, "SystemTimeToVariantTime");
    const FARPROC toCalendar = ::GetProcAddress(m_module, "VariantTimeToSystemTime");
    ASSERT_NE(toDays, nullptr);
    ASSERT_NE(toCalendar, nullptr);
    static_assert(sizeof m_toDays == sizeof toDays);
    std::memcpy(&m_toDays, &toDays, sizeof m_toDays);
    std::memcpy(&m_toCalendar, &toCalendar, sizeof m_toCalendar);
  }
  void TearDown() override {
    if (m_module != nullptr) {
      ::FreeLibrary(m_module);
    }
  }

  HMODULE m_module = nullptr;
  ToDays m_toDays = nullptr;
  ToCalendar m_toCalendar = nullptr;
};

TEST_F(SystemConversions, AgreeOnTheNumberOfACalendarDateBitForBit) {
  std::mt19937_64 random(20240229);
  const auto upTo = [&](unsigned last) { return static_cast<WORD>(random() % (last + 1)); };
  for (int i = 0; i < 200000; ++i) {
    SYSTEMTIME time{};
    time.wYear = upTo(10099);
    time.wMonth = static_cast<WORD>(1 + upTo(12));
    time.wDay = upTo(32);
    time.wHour = upTo(23);
    time.wMinute = upTo(59);
    time.wSecond = upTo(59);
    time.wMilliseconds = upTo(999);
    time.wDayOfWeek = upTo(6);
    const bool beforeTheFirstYear = time.wYear == 100 && time.wMonth == 1 && time.wDay == 0;
    const bool november31 = time.wMonth == 11 && time.wDay == 31;  // 1 December; Wine 8 gives 1 January
    if (beforeTheFirstYear || november31) {
      continue;
    }
    SYSTEMTIME copy = time;
    double expected = -7;
    double days = -7;
    const bool converted = m_toDays(&copy, &expected) != 0;
    ASSERT_EQ(qxv::SystemTimeToVariantDays(time, days), converted)
        << time.wYear << '-' << time.wMonth << '-' << time.wDay << ", number " << i;
    ASSERT_EQ(days, expected) << time.wYear << '-' << time.wMonth << '-' << time.wDay << ' ' << time.wHour << ':' << time.wMinute
                              << ':' << time.wSecond << ", number " << i;
  }
}

TEST_F(SystemConversions, AgreeOnTheCalendarDateOfANumber) {
  std::mt19937_64 random(19991231);
  std::uniform_real_distribution<double> everywhere(-660000, 2960000);
  std::uniform_real_distribution<double> nearZero(-3, 3);
  int compared = 0;
  for (int i = 0; i < 200000; ++i) {
    const double days = i % 4 == 0 ? nearZero(random) : everywhere(random);
    const double seconds = std::fabs(days - std::trunc(days)) * 86400;
    const bool isHalfSecond = std::fabs(seconds - std::floor(seconds) - 0.5) < 1e-3;  // within the spacing of the numbers
    const bool ofTheYear10000 = days >= 2958465 && seconds >= 86399.5;
    if (isHalfSecond || ofTheYear10000) {
      continue;
    }
    SYSTEMTIME expected{};
    SYSTEMTIME time{};
    const bool converted = m_toCalendar(days, &expected) != 0;
    ASSERT_EQ(qxv::VariantDaysToSystemTime(days, time), converted) << days;
    if (converted && seconds >= 86399.5) {
      expected.wDayOfWeek = static_cast<WORD>((expected.wDayOfWeek + 1) % 7);  // the system tells that of the day before
    }
    ASSERT_EQ(std::memcmp(&time, &expected, sizeof time), 0)
        << days << ": " << time.wYear << '-' << time.wMonth << '-' << time.wDay << " (" << time.wDayOfWeek << ") " << time.wHour
        << ':' << time.wMinute << ':' << time.wSecond << " beside " << expected.wYear << '-' << expected.wMonth << '-'
        << expected.wDay << " (" << expected.wDayOfWeek << ") " << expected.wHour << ':' << expected.wMinute << ':'
        << expected.wSecond;
    ++compared;
  }
  EXPECT_GT(compared, 150000);
}

TEST_F(SystemConversions, AgreeOnWholeSecondsThereAndBack) {
  std::mt19937_64 random(86400);
  for (int i = 0; i < 100000; ++i) {
    const auto dayNumber = static_cast<int>(random() % (657434 + 2958466)) - 657434;
    const auto second = static_cast<int>(random() % 86400);
    const double days = dayNumber + (dayNumber < 0 ? -1 : 1) * (second / 86400.0);
    SYSTEMTIME expected{};
    SYSTEMTIME time{};
    ASSERT_TRUE(m_toCalendar(days, &expected) != 0 && qxv::VariantDaysToSystemTime(days, time)) << days;
    ASSERT_EQ(std::memcmp(&time, &expected, sizeof time), 0) << days;
  }
}

}  // namespace
