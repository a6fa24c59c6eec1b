// debug_output.h - texts for whoever debugs the program.
#pragma once

#include "qxv/types.h"

namespace qxv::os {

/// Takes the texts while a ScopedDebugSink is alive.
class DebugSink {
 public:
  virtual ~DebugSink() = default;
  /// text is never null. Called from any thread.
  virtual void Write(const QXChar* text) noexcept = 0;
};

/// Puts a sink in the place of the system's channel for the whole process; the earlier one comes back at the end. For tests: no
/// text may be under way in another thread when it begins or ends.
class ScopedDebugSink {
 public:
  explicit ScopedDebugSink(DebugSink& sink) noexcept;
  ScopedDebugSink(const ScopedDebugSink&) = delete;
  ScopedDebugSink& operator=(const ScopedDebugSink&) = delete;
  ~ScopedDebugSink();

 private:
  DebugSink* m_before;
};

/// Hands one text over; null is an empty one. Windows: the debugger's channel, as it stands. Linux: UTF-8 on standard error, by
/// one write so that lines of threads and processes stay whole, with a line feed added where the text does not end in one; what
/// cannot be written is lost, without a signal.
void WriteDebugText(const QXChar* text) noexcept;

/// The system's channel itself; callers take the function above.
namespace system_debug {
void Write(const QXChar* text) noexcept;
}  // namespace system_debug

}  // namespace qxv::os
