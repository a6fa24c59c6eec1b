// process_posix.cpp - the program behind /proc/self/exe.

#include "os/process.h"

#include "os/drive_map.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <string>

namespace qxv::os {

Text ExecutablePath() {
  std::string path(256, '\0');
  for (;;) {
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0) {
      return Text();
    }
    if (static_cast<std::size_t>(length) < path.size()) {
      path.resize(static_cast<std::size_t>(length));
      break;
    }
    path.resize(path.size() * 2);
  }
  // A program replaced while it runs: the system marks the path, and the folder is still the one asked for.
  constexpr std::string_view kReplaced = " (deleted)";
  if (path.ends_with(kReplaced) && ::access(path.c_str(), F_OK) != 0) {
    path.resize(path.size() - kReplaced.size());
  }
  Text name;
  return DrivePathOf(path, name) ? name : Text();
}

std::uint32_t CurrentThreadId() noexcept { return static_cast<std::uint32_t>(::syscall(SYS_gettid)); }

std::uint32_t CurrentProcessId() noexcept { return static_cast<std::uint32_t>(::getpid()); }

void YieldThread() noexcept { (void)::sched_yield(); }

void SleepMilliseconds(std::uint32_t milliseconds) noexcept {
  timespec rest{static_cast<std::time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1'000'000};
  while (::nanosleep(&rest, &rest) != 0 && errno == EINTR) {
  }
}

}  // namespace qxv::os
