// debugger_channel.cpp - the shared buffer and its two events on Windows, a pipe in the place of standard error on Linux.

#include "support/debugger_channel.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <thread>

#if defined(_WIN32)
#include "os/win_api.h"
#else
#include <unistd.h>
#endif

namespace support {

#if defined(_WIN32)

namespace {

struct SharedText {
  DWORD process;
  char text[4096 - sizeof(DWORD)];
};

}  // namespace

struct DebuggerChannel::Listener {
  Listener()
      : ready(::CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_BUFFER_READY")),
        filled(::CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY")),
        section(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(SharedText), L"DBWIN_BUFFER")),
        stop(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    shared = section == nullptr ? nullptr : static_cast<SharedText*>(::MapViewOfFile(section, FILE_MAP_READ, 0, 0, 0));
    if (ready == nullptr || filled == nullptr || stop == nullptr || shared == nullptr) {
      throw std::runtime_error("no debugger channel");
    }
    ::SetEvent(ready);
    thread = std::thread([this] { Listen(); });
  }
  ~Listener() {
    Finish();
    ::UnmapViewOfFile(shared);
    for (const HANDLE handle : {ready, filled, section, stop}) {
      ::CloseHandle(handle);
    }
  }
  void Listen() {
    const HANDLE events[] = {filled, stop};  // texts first: what was handed over before the stop is taken
    while (::WaitForMultipleObjects(2, events, FALSE, INFINITE) == WAIT_OBJECT_0) {
      if (shared->process == ::GetCurrentProcessId()) {
        texts.emplace_back(shared->text, ::strnlen(shared->text, sizeof shared->text));
      }
      ::SetEvent(ready);
    }
  }
  void Finish() {
    if (thread.joinable()) {
      ::SetEvent(stop);
      thread.join();
    }
  }

  HANDLE ready, filled, section, stop;
  SharedText* shared = nullptr;
  std::vector<std::string> texts;
  std::thread thread;
};

#else

struct DebuggerChannel::Listener {
  Listener() : before(::dup(STDERR_FILENO)) {
    int ends[2];
    if (before < 0 || ::pipe(ends) != 0 || ::dup2(ends[1], STDERR_FILENO) < 0) {
      throw std::runtime_error("no debugger channel");
    }
    ::close(ends[1]);
    thread = std::thread([this, reader = ends[0]] {
      char bytes[4096];
      for (ssize_t count; (count = ::read(reader, bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(count));
      }
      ::close(reader);
    });
  }
  ~Listener() { Finish(); }
  void Finish() {
    if (!thread.joinable()) {
      return;
    }
    (void)::dup2(before, STDERR_FILENO);  // closes the pipe's last writer
    ::close(before);
    thread.join();
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size());
      texts.push_back(text.substr(at, end - at));
      at = end + 1;
    }
  }

  int before;
  std::string text;
  std::vector<std::string> texts;
  std::thread thread;
};

#endif

DebuggerChannel::DebuggerChannel() : m_listener(std::make_unique<Listener>()) {}
DebuggerChannel::~DebuggerChannel() = default;

std::vector<std::string> DebuggerChannel::Stop() {
  m_listener->Finish();
  return m_listener->texts;
}

}  // namespace support
