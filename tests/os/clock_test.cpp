// clock_test.cpp - the time of day, the calendar, the counter.

#include "os/clock.h"

#include "support/fake_clock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using namespace qxv::os;

std::uint64_t Ticks(const FILETIME& time) { return static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime; }

struct CalendarRow {
  SYSTEMTIME calendar;  // year, month, day of week, day, hour, minute, second, milliseconds
  std::uint64_t ticks;
  Moment moment;
};

constexpr CalendarRow kRows[] = {
    {{1601, 1, 1, 1, 0, 0, 0, 0}, 0, {-11644473600, 0}},
    {{1900, 3, 4, 1, 0, 0, 0, 0}, 0x014F6598C43F8000, {-2203891200, 0}},
    {{1970, 1, 4, 1, 0, 0, 0, 0}, 0x019DB1DED53E8000, {0, 0}},
    {{2000, 2, 2, 29, 0, 0, 0, 0}, 0x01BF8247EBCC8000, {951782400, 0}},
    {{2009, 5, 5, 1, 8, 5, 7, 45}, 0x01C9CA338A5FD950, {1241165107, 45}},
    {{2100, 2, 0, 28, 0, 0, 0, 0}, 0x022F9EF713598000, {4107456000, 0}},
    {{9999, 12, 5, 31, 23, 59, 59, 999}, 0x24C85A5ED1C018F0, {253402300799, 999}},
};

TEST(Clock, CalendarFileTimeAndSecondsAgree) {
  for (const CalendarRow& row : kRows) {
    SCOPED_TRACE(row.calendar.wYear);
    FILETIME time{1, 1};
    ASSERT_TRUE(FileTimeOf(row.calendar, time));
    EXPECT_EQ(Ticks(time), row.ticks);
    EXPECT_EQ(Ticks(FileTimeOf(row.moment)), row.ticks);
    EXPECT_EQ(MomentOf(time).seconds, row.moment.seconds);
    EXPECT_EQ(MomentOf(time).milliseconds, row.moment.milliseconds);
    SYSTEMTIME calendar{};
    ASSERT_TRUE(CalendarOf(time, calendar));
    EXPECT_EQ(calendar.wYear, row.calendar.wYear);
    EXPECT_EQ(calendar.wMonth, row.calendar.wMonth);
    EXPECT_EQ(calendar.wDayOfWeek, row.calendar.wDayOfWeek);
    EXPECT_EQ(calendar.wDay, row.calendar.wDay);
    EXPECT_EQ(calendar.wHour, row.calendar.wHour);
    EXPECT_EQ(calendar.wMinute, row.calendar.wMinute);
    EXPECT_EQ(calendar.wSecond, row.calendar.wSecond);
    EXPECT_EQ(calendar.wMilliseconds, row.calendar.wMilliseconds);
  }
}

TEST(Clock, EveryDayOf400YearsComesBack) {
  using namespace std::chrono;
  for (sys_days day = sys_days(year(1601) / 1 / 1); day < sys_days(year(2001) / 1 / 1); day += days(1)) {
    const year_month_day expected(day);
    SYSTEMTIME calendar{};
    ASSERT_TRUE(CalendarOf(FileTimeOf(Moment{day.time_since_epoch().count() * 86400LL, 0}), calendar));
    ASSERT_EQ(calendar.wYear, static_cast<int>(expected.year()));
    ASSERT_EQ(calendar.wMonth, static_cast<unsigned>(expected.month()));
    ASSERT_EQ(calendar.wDay, static_cast<unsigned>(expected.day()));
    ASSERT_EQ(calendar.wDayOfWeek, weekday(day).c_encoding());
  }
}

TEST(ClockMalformed, DatesThatDoNotExist) {
  const SYSTEMTIME rows[] = {
      {1600, 12, 0, 31, 0, 0, 0, 0},   {30828, 1, 0, 1, 0, 0, 0, 0},
      {2001, 0, 0, 1, 0, 0, 0, 0},     {2001, 13, 0, 1, 0, 0, 0, 0},
      {2001, 1, 0, 0, 0, 0, 0, 0},     {2001, 1, 0, 32, 0, 0, 0, 0},
      {2001, 2, 0, 29, 0, 0, 0, 0},    {2001, 4, 0, 31, 0, 0, 0, 0},
      {1900, 2, 0, 29, 0, 0, 0, 0},    {2001, 1, 0, 1, 24, 0, 0, 0},
      {2001, 1, 0, 1, 0, 60, 0, 0},    {2001, 1, 0, 1, 0, 0, 60, 0},
      {2001, 1, 0, 1, 0, 0, 0, 1000},  {65535, 65535, 65535, 65535, 65535, 65535, 65535, 65535},
      {2001, 1, 0, 65535, 0, 0, 0, 0},
  };
  int number = 0;
  for (const SYSTEMTIME& row : rows) {
    FILETIME time{7, 8};
    EXPECT_FALSE(FileTimeOf(row, time)) << "row " << number;
    EXPECT_EQ(time.dwLowDateTime, 7u) << "row " << number++;
  }
  SYSTEMTIME calendar{};
  EXPECT_FALSE(CalendarOf(FILETIME{0, 0x80000000}, calendar));
  EXPECT_TRUE(CalendarOf(FILETIME{0xFFFFFFFF, 0x7FFFFFFF}, calendar));
  EXPECT_EQ(calendar.wYear, 30828);
  EXPECT_EQ(Ticks(FileTimeOf(Moment{INT64_MAX, 999})), 0x7FFFFFFFFFFFFFFFu);
  EXPECT_EQ(Ticks(FileTimeOf(Moment{INT64_MIN, 0})), 0u);
}

TEST(Clock, TheSystemsTimeIsThatOfTheStandardLibrary) {
  const auto before = std::chrono::system_clock::now() - std::chrono::milliseconds(50);  // the systems' clocks differ in grain
  const Moment now = ReadClock();
  const auto after = std::chrono::system_clock::now() + std::chrono::milliseconds(50);
  const auto milliseconds = [](auto time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
  };
  EXPECT_GE(now.seconds * 1000 + now.milliseconds, milliseconds(before));
  EXPECT_LE(now.seconds * 1000 + now.milliseconds, milliseconds(after));
  EXPECT_GE(now.milliseconds, 0);
  EXPECT_LT(now.milliseconds, 1000);
}

TEST(Clock, LocalTimeIsAtMostADayFromUtc) {
  const Moment moment{1241165107, 45};
  const SYSTEMTIME local = LocalTimeOf(moment);
  FILETIME asUtc;
  ASSERT_TRUE(FileTimeOf(local, asUtc));
  const std::int64_t offset = MomentOf(asUtc).seconds - moment.seconds;
  EXPECT_LE(offset < 0 ? -offset : offset, 86400);
  EXPECT_EQ(offset % 900, 0) << "zones differ by quarters of an hour";
  EXPECT_EQ(local.wMilliseconds, 45);
}

TEST(Clock, TheCounterRunsForward) {
  const std::int64_t first = ReadCounter();
  const std::int64_t second = ReadCounter();
  EXPECT_GE(second, first);
  EXPECT_GE(CounterFrequency(), 1000000);
}

TEST(Clock, ASourceTakesTheSystemsPlaceAndGivesItBack) {
  support::FakeClock outer, inner;
  outer.now = {100, 990};
  outer.millisecondsAReading = 20;
  outer.local = {2009, 5, 5, 1, 8, 5, 7, 45};
  outer.counter = 0x123456789ABCDEF0;
  inner.now = {7, 8};
  {
    const ScopedClock first(outer);
    EXPECT_EQ(ReadClock().milliseconds, 990);
    const Moment second = ReadClock();
    EXPECT_EQ(second.seconds, 101);
    EXPECT_EQ(second.milliseconds, 10);
    {
      const ScopedClock nested(inner);
      EXPECT_EQ(ReadClock().seconds, 7);
    }
    EXPECT_EQ(ReadLocalTime().wHour, 8);
    EXPECT_EQ(ReadCounter(), 0x123456789ABCDEF0);
    EXPECT_EQ(outer.readings, 2);
  }
  EXPECT_GT(ReadClock().seconds, 1600000000);
}

}  // namespace
