// variant_time_test.cpp - dates as a number of days: the same table on both systems.

#include "foundation/variant_time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using qxv::SystemTimeToVariantDays;
using qxv::VariantDaysToSystemTime;

SYSTEMTIME Calendar(int year, int month, int day, int hour, int minute, int second) {
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(year);
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(day);
  time.wHour = static_cast<WORD>(hour);
  time.wMinute = static_cast<WORD>(minute);
  time.wSecond = static_cast<WORD>(second);
  time.wDayOfWeek = 9;  // neither is looked at
  time.wMilliseconds = 65535;
  return time;
}

TEST(VariantTime, CountsDaysFrom30December1899) {
  const struct {
    int year, month, day, hour, minute, second;
    double days;
  } rows[] = {
      {1899, 12, 30, 0, 0, 0, 0.0},
      {1899, 12, 31, 0, 0, 0, 1.0},
      {1900, 1, 1, 0, 0, 0, 2.0},
      {1900, 1, 1, 12, 0, 0, 2.5},
      {1900, 1, 4, 6, 0, 0, 5.25},
      {1899, 12, 30, 23, 59, 59, 0x1.fffe7ba375f32p-1},
      {1899, 12, 29, 0, 0, 0, -1.0},
      {1899, 12, 29, 6, 0, 0, -1.25},  // the fraction still counts the time of day up
      {1899, 12, 29, 18, 0, 0, -1.75},
      {1970, 1, 1, 0, 0, 0, 25569.0},
      {2000, 2, 29, 0, 0, 0, 36585.0},
      {2000, 3, 1, 0, 0, 0, 36586.0},
      {2023, 2, 29, 1, 2, 3, 0x1.5f74160fedcbap+15},  // 1 March
      {2024, 2, 29, 23, 59, 59, 0x1.624ffffe7ba38p+15},
      {1600, 2, 29, 0, 0, 0, -109512.0},
      {1582, 10, 10, 0, 0, 0, -115863.0},  // no gap: the Gregorian rule holds in all years
      {101, 1, 1, 1, 1, 1, -0x1.40d5a15b1df62p+19},
      {100, 1, 1, 0, 0, 0, -657434.0},
      {9999, 12, 31, 23, 59, 59, 0x1.69240ffff9ee9p+21},
      // Days that the month has not.
      {2024, 2, 31, 0, 0, 0, 45353.0},   // 2 March
      {2023, 2, 31, 0, 0, 0, 44988.0},   // 3 March
      {2024, 11, 31, 0, 0, 0, 45627.0},  // 1 December
      {2024, 4, 31, 0, 0, 0, 45413.0},   // 1 May
      {1900, 2, 29, 0, 0, 0, 61.0},      // 1900 was no leap year
      {2024, 3, 0, 0, 0, 0, 45351.0},    // 29 February
      {2024, 1, 0, 0, 0, 0, 45291.0},    // 31 December before
      {100, 3, 0, 0, 0, 0, -657376.0},
      // Years of two digits.
      {0, 1, 1, 0, 0, 0, 36526.0},
      {24, 2, 29, 0, 0, 0, 45351.0},
      {49, 1, 1, 0, 0, 0, 54424.0},
      {50, 1, 1, 0, 0, 0, 18264.0},
      {99, 1, 1, 0, 0, 0, 36161.0},
  };
  for (const auto& row : rows) {
    double days = -7;
    EXPECT_TRUE(SystemTimeToVariantDays(Calendar(row.year, row.month, row.day, row.hour, row.minute, row.second), days));
    EXPECT_EQ(days, row.days) << row.year << '-' << row.month << '-' << row.day;
  }
}

TEST(VariantTime, RefusesWhatIsNoDate) {
  const SYSTEMTIME rows[] = {
      Calendar(2024, 0, 1, 0, 0, 0),   Calendar(2024, 13, 1, 0, 0, 0),     Calendar(2024, 65535, 1, 0, 0, 0),
      Calendar(2024, 12, 32, 0, 0, 0), Calendar(2024, 12, 65535, 0, 0, 0), Calendar(2024, 1, 1, 24, 0, 0),
      Calendar(2024, 1, 1, 0, 60, 0),  Calendar(2024, 1, 1, 0, 0, 60),     Calendar(2024, 1, 1, 65535, 0, 0),
      Calendar(10000, 1, 1, 0, 0, 0),  Calendar(32768, 1, 1, 0, 0, 0),     Calendar(65535, 1, 1, 0, 0, 0),
      Calendar(100, 1, 0, 0, 0, 0),  // 31 December 99
  };
  for (const SYSTEMTIME& row : rows) {
    double days = -7;
    EXPECT_FALSE(SystemTimeToVariantDays(row, days)) << row.wYear << '-' << row.wMonth << '-' << row.wDay << ' ' << row.wHour;
    EXPECT_EQ(days, -7);
  }
}

TEST(VariantTime, GivesTheCalendarOfANumber) {
  const struct {
    double days;
    int year, month, day, dayOfWeek, hour, minute, second;
  } rows[] = {
      {0.0, 1899, 12, 30, 6, 0, 0, 0},
      {-0.0, 1899, 12, 30, 6, 0, 0, 0},
      {0.5, 1899, 12, 30, 6, 12, 0, 0},
      {-0.5, 1899, 12, 30, 6, 12, 0, 0},
      {-0.25, 1899, 12, 30, 6, 6, 0, 0},
      {-1.0, 1899, 12, 29, 5, 0, 0, 0},
      {-1.25, 1899, 12, 29, 5, 6, 0, 0},
      {-1.75, 1899, 12, 29, 5, 18, 0, 0},
      {2.0, 1900, 1, 1, 1, 0, 0, 0},
      {60.0, 1900, 2, 28, 3, 0, 0, 0},
      {61.0, 1900, 3, 1, 4, 0, 0, 0},
      {45000.0, 2023, 3, 15, 3, 0, 0, 0},
      {45351.0, 2024, 2, 29, 4, 0, 0, 0},
      {-657434.0, 100, 1, 1, 5, 0, 0, 0},
      {-657434.999, 100, 1, 1, 5, 23, 58, 34},
      {2958465.0, 9999, 12, 31, 5, 0, 0, 0},
      {2958465.999994, 9999, 12, 31, 5, 23, 59, 59},
      // To the nearest second, a half upwards.
      {45000 + 0.49 / 86400, 2023, 3, 15, 3, 0, 0, 0},
      {45000 + 0.5 / 86400, 2023, 3, 15, 3, 0, 0, 1},
      {1.5 / 86400, 1899, 12, 30, 6, 0, 0, 2},
      {2.5 / 86400, 1899, 12, 30, 6, 0, 0, 3},
      {-1 - 0.5 / 86400, 1899, 12, 29, 5, 0, 0, 1},
      // Into the next day, whose day of the week it then is.
      {45000.999999, 2023, 3, 16, 4, 0, 0, 0},
      {0.9999999, 1899, 12, 31, 0, 0, 0, 0},
      {-0.9999999, 1899, 12, 31, 0, 0, 0, 0},
      {-1.9999999, 1899, 12, 30, 6, 0, 0, 0},
      {-657434.9999999, 100, 1, 2, 6, 0, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.days);
    SYSTEMTIME time = Calendar(1, 1, 1, 1, 1, 1);
    ASSERT_TRUE(VariantDaysToSystemTime(row.days, time));
    EXPECT_EQ(time.wYear, row.year);
    EXPECT_EQ(time.wMonth, row.month);
    EXPECT_EQ(time.wDay, row.day);
    EXPECT_EQ(time.wDayOfWeek, row.dayOfWeek);
    EXPECT_EQ(time.wHour, row.hour);
    EXPECT_EQ(time.wMinute, row.minute);
    EXPECT_EQ(time.wSecond, row.second);
    EXPECT_EQ(time.wMilliseconds, 0);
  }
}

TEST(VariantTime, RefusesNumbersOutsideTheYears) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double rows[] = {
      -657435.0, -657436.5, 2958466.0, 2958465.9999999,  // that would be a day of the year 10000
      1e10,      -1e10,     1e300,     -1e300,          infinity, -infinity, std::numeric_limits<double>::quiet_NaN()};
  for (const double days : rows) {
    SYSTEMTIME time = Calendar(1, 2, 3, 4, 5, 6);
    EXPECT_FALSE(VariantDaysToSystemTime(days, time)) << days;
    EXPECT_EQ(time.wYear, 1);
    EXPECT_EQ(time.wMilliseconds, 65535);
  }
}

// The calendar counted up one day after the other by its plain rules, over all the years.
TEST(VariantTime, EveryDayThereAndBack) {
  constexpr int kDaysOfMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  int number = -657434;
  int dayOfWeek = 5;
  for (int year = 100; year <= 9999; ++year) {
    const bool leapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    for (int month = 1; month <= 12; ++month) {
      const int daysOfMonth = kDaysOfMonth[month - 1] + (leapYear && month == 2 ? 1 : 0);
      for (int day = 1; day <= daysOfMonth; ++day) {
        double days = 0;
        ASSERT_TRUE(SystemTimeToVariantDays(Calendar(year, month, day, 0, 0, 0), days));
        ASSERT_EQ(days, number);
        SYSTEMTIME back;
        ASSERT_TRUE(VariantDaysToSystemTime(days, back));
        ASSERT_EQ(back.wYear, year);
        ASSERT_EQ(back.wMonth, month);
        ASSERT_EQ(back.wDay, day);
        ASSERT_EQ(back.wDayOfWeek, dayOfWeek);
        ++number;
        dayOfWeek = (dayOfWeek + 1) % 7;
      }
    }
  }
  EXPECT_EQ(number, 2958466);
}

TEST(VariantTime, EverySecondOfADayThereAndBack) {
  for (const int year : {100, 1899, 2024, 9999}) {
    for (int second = 0; second < 86400; ++second) {
      const SYSTEMTIME time = Calendar(year, 12, 28, second / 3600, second / 60 % 60, second % 60);
      double days = 0;
      SYSTEMTIME back;
      ASSERT_TRUE(SystemTimeToVariantDays(time, days) && VariantDaysToSystemTime(days, back));
      ASSERT_EQ(back.wDay, 28);
      ASSERT_EQ(back.wHour * 3600 + back.wMinute * 60 + back.wSecond, second) << year;
    }
  }
}

}  // namespace
