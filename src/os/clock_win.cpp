// clock_win.cpp - the system time and the performance counter.

#include "os/clock.h"
#include "os/win_api.h"

namespace qxv::os::system_clock {

Moment Now() noexcept {
  FILETIME now;
  ::GetSystemTimeAsFileTime(&now);
  return MomentOf(now);
}

SYSTEMTIME LocalTimeOf(const Moment& moment) noexcept {
  SYSTEMTIME utc{};
  SYSTEMTIME local{};
  if (!CalendarOf(FileTimeOf(moment), utc) || !::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local)) {
    return SYSTEMTIME{};
  }
  return local;
}

std::int64_t Counter() noexcept {
  LARGE_INTEGER counter;
  ::QueryPerformanceCounter(&counter);
  return counter.QuadPart;
}

std::int64_t Frequency() noexcept {
  LARGE_INTEGER frequency;
  ::QueryPerformanceFrequency(&frequency);
  return frequency.QuadPart;
}

}  // namespace qxv::os::system_clock
