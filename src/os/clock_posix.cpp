// clock_posix.cpp - clock_gettime and the C library's time zone.

#include "os/clock.h"

#include <ctime>

namespace qxv::os::system_clock {
namespace {

// The last second that this thread asked for, and the zone that it was asked in: whoever writes many lines to a log asks for each
// of them, and the C library's answer would be a twentieth of a short line's time. A program that changes its zone calls tzset,
// which gives other names or another offset.
struct LastSecond {
  std::time_t seconds = 0;
  long zone = 0;
  const char* names[2] = {};
  SYSTEMTIME calendar{};  // year 0: none yet

  bool Is(std::time_t wanted) const noexcept {
    return calendar.wYear != 0 && seconds == wanted && zone == ::timezone && names[0] == ::tzname[0] && names[1] == ::tzname[1];
  }
};

thread_local constinit LastSecond last;

SYSTEMTIME CalendarOf(std::time_t seconds) noexcept {
  std::tm local{};
  SYSTEMTIME calendar{};
  if (::localtime_r(&seconds, &local) == nullptr || local.tm_year < 1601 - 1900 || local.tm_year > 30827 - 1900) {
    return calendar;
  }
  calendar.wYear = static_cast<WORD>(local.tm_year + 1900);
  calendar.wMonth = static_cast<WORD>(local.tm_mon + 1);
  calendar.wDayOfWeek = static_cast<WORD>(local.tm_wday);
  calendar.wDay = static_cast<WORD>(local.tm_mday);
  calendar.wHour = static_cast<WORD>(local.tm_hour);
  calendar.wMinute = static_cast<WORD>(local.tm_min);
  calendar.wSecond = static_cast<WORD>(local.tm_sec < 60 ? local.tm_sec : 59);  // no leap second in this calendar
  return calendar;
}

}  // namespace

Moment Now() noexcept {
  timespec now{};
  (void)::clock_gettime(CLOCK_REALTIME, &now);
  return {now.tv_sec, static_cast<std::int32_t>(now.tv_nsec / 1'000'000)};
}

SYSTEMTIME LocalTimeOf(const Moment& moment) noexcept {
  const std::time_t seconds = moment.seconds;
  if (!last.Is(seconds)) {
    const SYSTEMTIME calendar = CalendarOf(seconds);
    last = {seconds, ::timezone, {::tzname[0], ::tzname[1]}, calendar};  // after the conversion, which may read the zone first
  }
  SYSTEMTIME calendar = last.calendar;
  if (calendar.wYear != 0) {
    calendar.wMilliseconds = static_cast<WORD>(moment.milliseconds);
  }
  return calendar;
}

std::int64_t Counter() noexcept {
  timespec now{};
  (void)::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

std::int64_t Frequency() noexcept { return 1'000'000'000; }

}  // namespace qxv::os::system_clock
