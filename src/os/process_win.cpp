// process_win.cpp - the program through the system's calls.

#include "os/process.h"
#include "os/win_api.h"

namespace qxv::os {

Text ExecutablePath() {
  constexpr std::size_t kLongestPath = 32768;
  Text path(MAX_PATH, QXChar(0));
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(nullptr /*the program*/, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size() || path.size() >= kLongestPath) {
      path.resize(length < path.size() ? length : 0);  // a path that was cut is no path
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::uint32_t CurrentThreadId() noexcept { return ::GetCurrentThreadId(); }

std::uint32_t CurrentProcessId() noexcept { return ::GetCurrentProcessId(); }

void YieldThread() noexcept { ::Sleep(0); }

void SleepMilliseconds(std::uint32_t milliseconds) noexcept { ::Sleep(milliseconds); }

}  // namespace qxv::os
