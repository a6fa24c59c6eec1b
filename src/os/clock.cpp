// clock.cpp - the replaceable source, and the proleptic Gregorian calendar behind FILETIME and SYSTEMTIME.

#include "os/clock.h"

#include <atomic>

namespace qxv::os {
namespace {

std::atomic<ClockSource*> currentSource{nullptr};

constexpr std::int64_t kTicksASecond = 10'000'000;
constexpr std::int64_t kTicksAMillisecond = 10'000;
constexpr std::int64_t kSecondsADay = 86'400;
constexpr std::int64_t kSeconds1601To1970 = 11'644'473'600;
constexpr std::int64_t kDaysOf400Years = 146'097;
constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;

std::uint64_t TicksOf(const FILETIME& time) { return static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime; }

FILETIME FromTicks(std::uint64_t ticks) { return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)}; }

// Days since 1601-01-01, which begins a cycle of 400 years. The year is counted from March, so that the leap day is its last.
std::int64_t DaysOf(int year, int month, int day) {
  const std::int64_t y = year - (month <= 2 ? 1 : 0);
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return 365 * y + y / 4 - y / 100 + y / 400 + dayOfYear - 584'694;
}

struct Date {
  int year;
  int month;
  int day;
};

Date DateOf(std::int64_t days) {
  const std::int64_t shifted = days + 584'694;  // since 0000-03-01
  const std::int64_t cycle = shifted / kDaysOf400Years;
  const std::int64_t dayOfCycle = shifted % kDaysOf400Years;
  const std::int64_t yearOfCycle = (dayOfCycle - dayOfCycle / 1'460 + dayOfCycle / 36'524 - dayOfCycle / 146'096) / 365;
  const std::int64_t dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
  const std::int64_t year = cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0);
  return {static_cast<int>(year), month, static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1)};
}

}  // namespace

ScopedClock::ScopedClock(ClockSource& source) noexcept : m_before(currentSource.exchange(&source)) {}
ScopedClock::~ScopedClock() { currentSource.store(m_before); }

Moment ReadClock() noexcept {
  ClockSource* source = currentSource.load(std::memory_order_acquire);
  return source != nullptr ? source->Now() : system_clock::Now();
}

SYSTEMTIME ReadLocalTime() noexcept {
  ClockSource* source = currentSource.load(std::memory_order_acquire);
  return source != nullptr ? source->LocalTime() : system_clock::LocalTimeOf(system_clock::Now());
}

std::int64_t ReadCounter() noexcept {
  ClockSource* source = currentSource.load(std::memory_order_acquire);
  return source != nullptr ? source->Counter() : system_clock::Counter();
}

std::int64_t CounterFrequency() noexcept { return system_clock::Frequency(); }

SYSTEMTIME LocalTimeOf(const Moment& moment) noexcept { return system_clock::LocalTimeOf(moment); }

FILETIME FileTimeOf(const Moment& moment) noexcept {
  return FileTimeOf(moment.seconds, static_cast<std::int64_t>(moment.milliseconds) * 1'000'000);
}

FILETIME FileTimeOf(std::int64_t seconds, std::int64_t nanoseconds) noexcept {
  constexpr std::int64_t kLastSecond = INT64_MAX / kTicksASecond - kSeconds1601To1970 - 1;
  if (seconds < -kSeconds1601To1970) {
    return FromTicks(0);
  }
  if (seconds > kLastSecond) {
    return FromTicks(INT64_MAX);
  }
  return FromTicks(static_cast<std::uint64_t>((seconds + kSeconds1601To1970) * kTicksASecond + nanoseconds / 100));
}

Moment MomentOf(const FILETIME& time) noexcept {
  const std::uint64_t ticks = TicksOf(time);
  return {static_cast<std::int64_t>(ticks / kTicksASecond) - kSeconds1601To1970,
          static_cast<std::int32_t>(ticks % kTicksASecond / kTicksAMillisecond)};
}

bool FileTimeOf(const SYSTEMTIME& calendar, FILETIME& time) noexcept {
  if (calendar.wYear < kFirstYear || calendar.wYear > kLastYear || calendar.wMonth < 1 || calendar.wMonth > 12 ||
      calendar.wDay < 1 || calendar.wHour > 23 || calendar.wMinute > 59 || calendar.wSecond > 59 ||
      calendar.wMilliseconds > 999) {
    return false;
  }
  const std::int64_t days = DaysOf(calendar.wYear, calendar.wMonth, calendar.wDay);
  if (DateOf(days).day != calendar.wDay) {
    return false;  // the 31st of a shorter month
  }
  const std::int64_t seconds = days * kSecondsADay + calendar.wHour * 3600 + calendar.wMinute * 60 + calendar.wSecond;
  if (seconds > INT64_MAX / kTicksASecond - 1) {
    return false;
  }
  time = FromTicks(static_cast<std::uint64_t>(seconds * kTicksASecond + calendar.wMilliseconds * kTicksAMillisecond));
  return true;
}

bool CalendarOf(const FILETIME& time, SYSTEMTIME& calendar) noexcept {
  const std::uint64_t ticks = TicksOf(time);
  if (ticks > static_cast<std::uint64_t>(INT64_MAX)) {
    return false;
  }
  const auto seconds = static_cast<std::int64_t>(ticks / kTicksASecond);
  const std::int64_t days = seconds / kSecondsADay;
  const std::int64_t second = seconds % kSecondsADay;
  const Date date = DateOf(days);
  calendar.wYear = static_cast<WORD>(date.year);
  calendar.wMonth = static_cast<WORD>(date.month);
  calendar.wDayOfWeek = static_cast<WORD>((days + 1) % 7);  // 1601-01-01 was a Monday
  calendar.wDay = static_cast<WORD>(date.day);
  calendar.wHour = static_cast<WORD>(second / 3600);
  calendar.wMinute = static_cast<WORD>(second / 60 % 60);
  calendar.wSecond = static_cast<WORD>(second % 60);
  calendar.wMilliseconds = static_cast<WORD>(ticks / kTicksAMillisecond % 1000);
  return true;
}

}  // namespace qxv::os
