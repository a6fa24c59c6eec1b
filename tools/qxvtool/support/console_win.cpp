// console_win.cpp - the console of Windows, and the program's entry point there.
// A console is written in UTF-16, whatever its code page; a file or pipe gets UTF-8.

#include "qxvtool/support/console.h"

#include "qxv/types.h"
#include "qxvtool/support/text.h"

#include <atomic>
#include <cstddef>

namespace {

std::atomic<bool> g_interrupted{false};

HANDLE Handle(tool::Stream stream) noexcept {
  return ::GetStdHandle(stream == tool::Stream::Out ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

BOOL WINAPI Remember(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
    return FALSE;
  }
  g_interrupted = true;
  return TRUE;
}

}  // namespace

bool tool::IsTerminal(Stream stream) noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(Handle(stream), &mode) != 0;
}

int tool::TerminalColumns() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  for (const Stream stream : {Stream::Error, Stream::Out}) {
    if (::GetConsoleScreenBufferInfo(Handle(stream), &info) != 0) {
      return info.srWindow.Right - info.srWindow.Left + 1;
    }
  }
  return 80;
}

void tool::Write(Stream stream, std::string_view utf8) {
  const HANDLE handle = Handle(stream);
  DWORD written = 0;
  if (IsTerminal(stream)) {
    const CQXString text = Wide(utf8);
    ::WriteConsoleW(handle, static_cast<const QXChar*>(text), static_cast<DWORD>(text.GetLength()), &written, nullptr);
    return;
  }
  while (!utf8.empty() && ::WriteFile(handle, utf8.data(), static_cast<DWORD>(utf8.size()), &written, nullptr) != 0) {
    utf8.remove_prefix(written);
  }
}

void tool::HoldBackDebugger(bool /*isHeldBack*/) noexcept {}

void tool::CatchInterrupt() { ::SetConsoleCtrlHandler(Remember, TRUE); }

bool tool::Interrupted() noexcept { return g_interrupted; }

extern "C" int wmain(int argc, wchar_t** argv);

int wmain(int argc, wchar_t** argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    arguments.push_back(qxv::ToUtf8(argv[i]));
  }
  return tool::Main(arguments);
}
