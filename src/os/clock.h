// clock.h - the time of day, the calendar and the high-resolution counter.
#pragma once

#include "qxv/types.h"

#include <cstdint>

namespace qxv::os {

/// A moment, read by one system call: the two parts always belong together.
struct Moment {
  std::int64_t seconds;       // since 1970-01-01 00:00 UTC, may be negative
  std::int32_t milliseconds;  // 0 to 999
};

/// Where the time comes from while a ScopedClock is alive.
class ClockSource {
 public:
  virtual ~ClockSource() = default;
  virtual Moment Now() noexcept = 0;
  virtual SYSTEMTIME LocalTime() noexcept = 0;
  virtual std::int64_t Counter() noexcept = 0;
};

/// Puts a source in the place of the system's clock for the whole process; the earlier one comes back at the end. For tests: no
/// call of another thread may be under way when it begins or ends.
class ScopedClock {
 public:
  explicit ScopedClock(ClockSource& source) noexcept;
  ScopedClock(const ScopedClock&) = delete;
  ScopedClock& operator=(const ScopedClock&) = delete;
  ~ScopedClock();

 private:
  ClockSource* m_before;
};

/// The current time.
Moment ReadClock() noexcept;

/// The current time in the local time zone.
SYSTEMTIME ReadLocalTime() noexcept;

/// A counter that never goes back, and its steps in a second.
std::int64_t ReadCounter() noexcept;
std::int64_t CounterFrequency() noexcept;

/// A moment in the local time zone; all zero when the calendar cannot express it.
SYSTEMTIME LocalTimeOf(const Moment& moment) noexcept;

// Conversions between moments, file times and calendar times, all of them UTC.

FILETIME FileTimeOf(const Moment& moment) noexcept;

/// The same in full resolution; nanoseconds 0 to 999,999,999, of which the hundreds count.
FILETIME FileTimeOf(std::int64_t seconds, std::int64_t nanoseconds) noexcept;

/// Rounded down to the millisecond.
Moment MomentOf(const FILETIME& time) noexcept;

/// False, and nothing written, for a date that does not exist or lies outside the years 1601 to 30827. The day of week is
/// ignored.
[[nodiscard]] bool FileTimeOf(const SYSTEMTIME& calendar, FILETIME& time) noexcept;

/// False, and nothing written, for a time from 0x8000000000000000 on.
[[nodiscard]] bool CalendarOf(const FILETIME& time, SYSTEMTIME& calendar) noexcept;

/// What the system itself says; callers take the functions above.
namespace system_clock {
Moment Now() noexcept;
SYSTEMTIME LocalTimeOf(const Moment& moment) noexcept;
std::int64_t Counter() noexcept;
std::int64_t Frequency() noexcept;
}  // namespace system_clock

}  // namespace qxv::os
