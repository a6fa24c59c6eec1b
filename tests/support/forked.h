// forked.h - a part of a test in the child of a fork, with the parent's memory. Linux only.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace support {

/// Runs action in a child, which then ends at once without destructors. 0 when it came to its end, 98 when it was ended by a
/// signal (10 seconds after its start at the latest), 99 without a child.
template <typename Action>
int RunForked(Action action) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(10);
    action();
    ::_exit(0);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) {
    return 99;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

}  // namespace support
