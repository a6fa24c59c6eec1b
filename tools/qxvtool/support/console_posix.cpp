// console_posix.cpp - the terminal of Linux, and the program's entry point there.

#include "qxvtool/support/console.h"

#include <cerrno>
#include <csignal>
#include <cstddef>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t g_interrupted = 0;

// The standard error as it was at the start: the debugger's lines go to whatever has its number.
int g_words = STDERR_FILENO;

int Descriptor(tool::Stream stream) noexcept { return stream == tool::Stream::Out ? STDOUT_FILENO : g_words; }

void Remember(int /*signal*/) { g_interrupted = 1; }

}  // namespace

bool tool::IsTerminal(Stream stream) noexcept { return ::isatty(Descriptor(stream)) == 1; }

int tool::TerminalColumns() noexcept {
  winsize size{};
  for (const int descriptor : {g_words, STDOUT_FILENO}) {
    if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
      return size.ws_col;
    }
  }
  return 80;
}

void tool::Write(Stream stream, std::string_view utf8) {
  while (!utf8.empty()) {
    const ssize_t written = ::write(Descriptor(stream), utf8.data(), utf8.size());
    if (written >= 0) {
      utf8.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return;
    }
  }
}

void tool::HoldBackDebugger(bool isHeldBack) noexcept {
  if (!isHeldBack) {
    (void)::dup2(g_words, STDERR_FILENO);
    return;
  }
  const int copy = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (copy >= 0 && nowhere >= 0 && ::dup2(nowhere, STDERR_FILENO) >= 0) {
    g_words = copy;
  }
  if (nowhere >= 0) {
    (void)::close(nowhere);
  }
}

void tool::CatchInterrupt() {
  struct sigaction action {};
  action.sa_handler = Remember;
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGINT, &action, nullptr);
  ::sigaction(SIGTERM, &action, nullptr);
}

bool tool::Interrupted() noexcept { return g_interrupted != 0; }

int main(int argc, char** argv) { return tool::Main(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc)); }
