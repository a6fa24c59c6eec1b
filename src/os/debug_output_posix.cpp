// debug_output_posix.cpp - standard error as the debugger's channel.

#include "os/debug_output.h"

#include "os/utf.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <string>

namespace qxv::os::system_debug {
namespace {

/// Keeps a write to a closed pipe from ending the host: blocks the signal for this thread, and takes back one that we caused.
class NoBrokenPipeSignal {
 public:
  NoBrokenPipeSignal() noexcept {
    sigset_t pending;
    sigemptyset(&m_pipe);
    sigaddset(&m_pipe, SIGPIPE);
    sigemptyset(&pending);
    (void)sigpending(&pending);
    m_wasPending = sigismember(&pending, SIGPIPE) == 1;
    m_blocked = pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before) == 0;
  }
  NoBrokenPipeSignal(const NoBrokenPipeSignal&) = delete;
  NoBrokenPipeSignal& operator=(const NoBrokenPipeSignal&) = delete;
  ~NoBrokenPipeSignal() {
    if (!m_blocked) {
      return;
    }
    if (!m_wasPending) {
      const timespec now{};
      while (sigtimedwait(&m_pipe, nullptr, &now) < 0 && errno == EINTR) {
      }
    }
    (void)pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
  }

 private:
  sigset_t m_pipe;
  sigset_t m_before;
  bool m_wasPending = false;
  bool m_blocked = false;
};

}  // namespace

void Write(const QXChar* text) noexcept {
  const int error = errno;
  try {
    std::string line = Utf8FromText(text);
    if (line.empty() || line.back() != '\n') {
      line.push_back('\n');
    }
    const NoBrokenPipeSignal guard;
    ssize_t written;
    do {
      written = ::write(STDERR_FILENO, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
  } catch (...) {  // no memory for the line: it is lost
  }
  errno = error;
}

}  // namespace qxv::os::system_debug
