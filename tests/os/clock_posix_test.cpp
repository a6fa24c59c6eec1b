// clock_posix_test.cpp - local times while the program changes its zone.

#include "os/clock.h"
#include "support/environment.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

using qxv::os::LocalTimeOf;
using qxv::os::Moment;

struct SettingAtTheEnd {
  SettingAtTheEnd() = default;
  SettingAtTheEnd(const SettingAtTheEnd&) = delete;
  SettingAtTheEnd& operator=(const SettingAtTheEnd&) = delete;
  ~SettingAtTheEnd() { ::tzset(); }
};

class Zone {
 public:
  explicit Zone(const char* name) : m_variable("TZ", name) { ::tzset(); }

 private:
  SettingAtTheEnd m_end;  // first: ends when the variable is back
  support::ScopedVariable m_variable;
};

constexpr Moment kMoment{1241165107, 45};  // 2009-05-01 08:05:07.045 UTC

TEST(ClockPosix, TheSameSecondFollowsTheZone) {
  for (int round = 0; round < 2; ++round) {
    {
      const Zone zone("UTC0");
      EXPECT_EQ(LocalTimeOf(kMoment).wHour, 8);
    }
    {
      const Zone zone("CST-8");
      EXPECT_EQ(LocalTimeOf(kMoment).wHour, 16);
    }
    {
      const Zone zone("EST5EDT,M3.2.0,M11.1.0");
      EXPECT_EQ(LocalTimeOf(kMoment).wHour, 4);
    }
  }
}

TEST(ClockPosix, TheSameSecondHasEachMillisecond) {
  const Zone zone("UTC0");
  for (const std::int32_t milliseconds : {0, 45, 999, 7}) {
    const SYSTEMTIME time = LocalTimeOf({1241165107, milliseconds});
    EXPECT_EQ(time.wMilliseconds, milliseconds);
    EXPECT_EQ(time.wYear, 2009);
    EXPECT_EQ(time.wMonth, 5);
    EXPECT_EQ(time.wDayOfWeek, 5);
    EXPECT_EQ(time.wDay, 1);
    EXPECT_EQ(time.wHour, 8);
    EXPECT_EQ(time.wMinute, 5);
    EXPECT_EQ(time.wSecond, 7);
  }
  EXPECT_EQ(LocalTimeOf({1241165108, 3}).wSecond, 8);
  EXPECT_EQ(LocalTimeOf({0, 3}).wYear, 1970);
}

TEST(ClockPosix, AMomentWithoutACalendarStaysWithoutOne) {
  for (int round = 0; round < 2; ++round) {
    const SYSTEMTIME time = LocalTimeOf({std::int64_t{1} << 60, 9});
    EXPECT_EQ(time.wYear, 0);
    EXPECT_EQ(time.wMilliseconds, 0);
  }
}

}  // namespace
