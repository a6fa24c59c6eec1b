// fake_clock.h - a clock that stands where the test puts it.
#pragma once

#include "os/clock.h"

namespace support {

struct FakeClock : qxv::os::ClockSource {
  qxv::os::Moment now{0, 0};
  SYSTEMTIME local{};
  std::int64_t counter = 0;
  int millisecondsAReading = 0;  // how far each Now() moves it on, after answering
  int readings = 0;

  qxv::os::Moment Now() noexcept override {
    const qxv::os::Moment answer = now;
    ++readings;
    now.milliseconds += millisecondsAReading;
    now.seconds += now.milliseconds / 1000;
    now.milliseconds %= 1000;
    return answer;
  }
  SYSTEMTIME LocalTime() noexcept override { return local; }
  std::int64_t Counter() noexcept override { return counter; }
};

}  // namespace support
