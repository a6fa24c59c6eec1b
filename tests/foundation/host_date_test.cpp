// host_date_test.cpp - COleDateTime.

#include "host_test.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>

static_assert(sizeof(COleDateTime) == 16 && offsetof(COleDateTime, m_dt) == 0 && offsetof(COleDateTime, m_status) == 8);
static_assert(std::is_trivially_copyable_v<COleDateTime>);
static_assert(COleDateTime::error == -1 && COleDateTime::valid == 0 && COleDateTime::invalid == 1 && COleDateTime::null == 2);

namespace {

SYSTEMTIME Calendar(int year, int month, int day, int hour, int minute, int second) {
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(year);
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(day);
  time.wHour = static_cast<WORD>(hour);
  time.wMinute = static_cast<WORD>(minute);
  time.wSecond = static_cast<WORD>(second);
  return time;
}

TEST(HostDate, StartsAtDayZeroAndValid) {
  const COleDateTime date;
  EXPECT_EQ(date.m_dt, 0.0);
  EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
}

TEST(HostDate, TellsItsParts) {
  const COleDateTime date(2024, 2, 29, 13, 14, 15);
  EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
  EXPECT_EQ(date.GetYear(), 2024);
  EXPECT_EQ(date.GetMonth(), 2);
  EXPECT_EQ(date.GetDay(), 29);
  EXPECT_EQ(date.GetHour(), 13);
  EXPECT_EQ(date.GetMinute(), 14);
  EXPECT_EQ(date.GetSecond(), 15);
  EXPECT_EQ(date.GetDayOfWeek(), 5);  // Thursday
  EXPECT_EQ(date.GetDayOfYear(), 60);
  EXPECT_EQ(COleDateTime(2024, 12, 31, 0, 0, 0).GetDayOfYear(), 366);
  EXPECT_EQ(COleDateTime(2023, 12, 31, 0, 0, 0).GetDayOfYear(), 365);
  EXPECT_EQ(COleDateTime(1900, 3, 1, 0, 0, 0).GetDayOfYear(), 60);
  EXPECT_EQ(COleDateTime(2024, 3, 3, 0, 0, 0).GetDayOfWeek(), 1);  // Sunday
}

TEST(HostDate, IsInvalidForADayThatDoesNotExist) {
  const SYSTEMTIME rows[] = {
      Calendar(2024, 2, 31, 0, 0, 0), Calendar(2023, 2, 29, 0, 0, 0), Calendar(2024, 4, 31, 0, 0, 0),
      Calendar(2024, 1, 0, 0, 0, 0),  Calendar(2024, 0, 1, 0, 0, 0),  Calendar(2024, 13, 1, 0, 0, 0),
      Calendar(2024, 1, 32, 0, 0, 0), Calendar(2024, 1, 1, 24, 0, 0), Calendar(2024, 1, 1, 0, 60, 0),
      Calendar(2024, 1, 1, 0, 0, 60), Calendar(0, 0, 0, 0, 0, 0),     Calendar(24, 1, 1, 0, 0, 0),
      Calendar(99, 12, 31, 0, 0, 0),  Calendar(10000, 1, 1, 0, 0, 0), Calendar(65535, 65535, 65535, 65535, 65535, 65535),
  };
  for (const SYSTEMTIME& row : rows) {
    SCOPED_TRACE(testing::Message() << row.wYear << '-' << row.wMonth << '-' << row.wDay << ' ' << row.wHour);
    EXPECT_EQ(COleDateTime(row).GetStatus(), COleDateTime::invalid);
    COleDateTime date(2000, 1, 1, 0, 0, 0);
    date = row;
    EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(date.m_dt, 36526.0);  // the value stays
  }
}

TEST(HostDate, IgnoresDayOfWeekAndMilliseconds) {
  SYSTEMTIME time = Calendar(2024, 2, 29, 12, 0, 0);
  time.wDayOfWeek = 0;
  time.wMilliseconds = 999;
  const COleDateTime date(time);
  EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
  EXPECT_EQ(date.m_dt, 45351.5);
  SYSTEMTIME back{};
  EXPECT_TRUE(date.GetAsSystemTime(back));
  EXPECT_EQ(back.wDayOfWeek, 4);
  EXPECT_EQ(back.wMilliseconds, 0);
}

TEST(HostDate, SettingGivesTheStatus) {
  COleDateTime date;
  EXPECT_EQ(date.SetDateTime(1999, 12, 31, 23, 59, 59), 0);
  EXPECT_EQ(date, COleDateTime(1999, 12, 31, 23, 59, 59));
  EXPECT_EQ(date.SetDateTime(1999, 2, 30, 0, 0, 0), 1);
  EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
  EXPECT_EQ(date.SetDateTime(-1, 1, 1, 0, 0, 0), 1);
  EXPECT_EQ(date.SetDateTime(2024, 65537, 1, 0, 0, 0), 1);  // no field is cut to 16 bits
  EXPECT_EQ(date.SetDateTime(2024, 1, 1, 0, 0, -1), 1);
  EXPECT_EQ(date.SetDate(1900, 1, 1), 0);
  EXPECT_EQ(date.m_dt, 2.0);
  EXPECT_EQ(date.SetTime(6, 0, 0), 0);
  EXPECT_EQ(date.m_dt, 0.25);
  EXPECT_EQ(date.SetTime(24, 0, 0), 1);
}

TEST(HostDate, TakesANumberOfDays) {
  EXPECT_EQ(COleDateTime(45351.5), COleDateTime(2024, 2, 29, 12, 0, 0));
  EXPECT_EQ(COleDateTime(2958466.0).GetStatus(), COleDateTime::invalid);
  EXPECT_EQ(COleDateTime(-657435.0).GetStatus(), COleDateTime::invalid);
  EXPECT_EQ(COleDateTime(std::numeric_limits<double>::quiet_NaN()).GetStatus(), COleDateTime::invalid);
  COleDateTime date(1e300);
  EXPECT_EQ(date.GetYear(), -1);
  date = -1.25;
  EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
  EXPECT_EQ(date.GetDay(), 29);
  EXPECT_EQ(date.GetHour(), 6);
}

TEST(HostDate, TellsNothingUnlessValid) {
  for (const auto status : {COleDateTime::invalid, COleDateTime::null, COleDateTime::error}) {
    COleDateTime date(2024, 2, 29, 1, 2, 3);
    date.SetStatus(status);
    EXPECT_EQ(date.GetStatus(), status);
    EXPECT_EQ(date.GetYear(), -1);
    EXPECT_EQ(date.GetMonth(), -1);
    EXPECT_EQ(date.GetDay(), -1);
    EXPECT_EQ(date.GetHour(), -1);
    EXPECT_EQ(date.GetMinute(), -1);
    EXPECT_EQ(date.GetSecond(), -1);
    EXPECT_EQ(date.GetDayOfWeek(), -1);
    EXPECT_EQ(date.GetDayOfYear(), -1);
    SYSTEMTIME time = Calendar(1, 2, 3, 4, 5, 6);
    EXPECT_FALSE(date.GetAsSystemTime(time));
    EXPECT_EQ(time.wYear, 1);
  }
  COleDateTime outside;  // valid by status, but set past the end
  outside.m_dt = 1e9;
  EXPECT_EQ(outside.GetYear(), -1);
}

TEST(HostDate, ComparesMoments) {
  const COleDateTime morning(1899, 12, 29, 6, 0, 0);   // -1.25
  const COleDateTime evening(1899, 12, 29, 18, 0, 0);  // -1.75
  const COleDateTime nextDay(1899, 12, 30, 1, 0, 0);
  EXPECT_TRUE(morning < evening);
  EXPECT_TRUE(evening > morning);
  EXPECT_TRUE(evening < nextDay);
  EXPECT_TRUE(morning <= morning);
  EXPECT_TRUE(morning >= morning);
  EXPECT_FALSE(evening <= morning);
  EXPECT_TRUE(morning != evening);
  EXPECT_TRUE(COleDateTime(-0.5) == COleDateTime(0.5));  // noon of the same day
}

TEST(HostDate, ComparesTheStatusToo) {
  COleDateTime one(2024, 1, 1, 0, 0, 0);
  const COleDateTime two(one);
  EXPECT_TRUE(one == two);
  one.SetStatus(COleDateTime::invalid);
  EXPECT_FALSE(one == two);
  EXPECT_FALSE(one <= two);
  EXPECT_FALSE(one >= two);
  const COleDateTime copy(one);
  EXPECT_TRUE(copy == one);
  EXPECT_FALSE(copy <= one);
}

}  // namespace
