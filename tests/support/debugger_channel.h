// debugger_channel.h - what the process tells its debugger, caught from outside the library: as a debugger reads it on Windows
// (bytes of the ANSI code page, of this process only), from standard error on Linux.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace support {

/// Listens from its construction on. One at a time in the whole system: tests that use it hold the resource debugger_channel.
class DebuggerChannel {
 public:
  DebuggerChannel();
  DebuggerChannel(const DebuggerChannel&) = delete;
  DebuggerChannel& operator=(const DebuggerChannel&) = delete;
  ~DebuggerChannel();

  /// Ends listening; what came, one entry for each text on Windows, each line without its line feed on Linux.
  std::vector<std::string> Stop();

 private:
  struct Listener;
  std::unique_ptr<Listener> m_listener;
};

}  // namespace support
