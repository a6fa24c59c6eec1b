// process.h - the running program, its threads and its module.
#pragma once

#include "os/utf.h"

#include <cstdint>

namespace qxv::os {

/// The full path of the program's file, in drive form; empty when the system does not tell.
Text ExecutablePath();

/// The last component of it; empty when unknown.
Text ExecutableName();

std::uint32_t CurrentThreadId() noexcept;
std::uint32_t CurrentProcessId() noexcept;

/// Gives the rest of the time slice to another thread.
void YieldThread() noexcept;

void SleepMilliseconds(std::uint32_t milliseconds) noexcept;

}  // namespace qxv::os
