// trace.cpp - CQXVTraceInner: the threshold and the line.

#include "qxv/trace.h"

#include "diagnostics/trace_settings.h"
#include "os/c_runtime.h"
#include "os/clock.h"
#include "os/debug_output.h"
#include "os/process.h"
#include "os/utf.h"
#include "os/wide_format.h"

#include <atomic>

namespace {

using namespace qxv;

constexpr std::size_t kMessageRoom = 2048;
constexpr std::size_t kTimeRoom = 64;
constexpr std::size_t kNumberRoom = 16;

constinit std::atomic<bool> levelIsLoaded{false};

// Threads that come first together may each read the file; all of them read the same.
int Threshold() {
  const std::atomic_ref<int> level(CQXVTraceInner::m_nLevel);
  if (!levelIsLoaded.load(std::memory_order_acquire)) {
    const int loaded = ReadTraceLevel();
    if (!levelIsLoaded.load(std::memory_order_acquire)) {  // else the application may have set another one meanwhile
      // KEPT: what was set before the first call is replaced (the file is the user's word). Pinned by
      //   TraceKept.ALevelSetBeforeTheFirstCallIsReplaced.
      level.store(loaded, std::memory_order_relaxed);
      levelIsLoaded.store(true, std::memory_order_release);
    }
  }
  return level.load(std::memory_order_relaxed);
}

void AppendNumber(os::Text& line, int number) {
  QXChar digits[kNumberRoom];
  (void)os::FormatTextWith(digits, kNumberRoom, QXT("%d"), number);
  line += digits;
}

os::Text LineOf(const CQXString& name, int number, int level, const QXChar* message) {
  QXChar time[kTimeRoom];
  (void)os::ClockText(os::ReadLocalTime(), time, kTimeRoom);
  os::Text line = QXT("[");
  line.append(time).append(QXT("][THREAD:"));
  AppendNumber(line, static_cast<int>(os::CurrentThreadId()));
  line.append(QXT("][")).append(os::ExecutableName()).append(QXT("]["));
  line.append(static_cast<const QXChar*>(name)).append(QXT("]["));
  AppendNumber(line, number);
  line.append(QXT("][L"));
  AppendNumber(line, level);
  line.append(QXT("]:")).append(message);
  return line;
}

}  // namespace

int CQXVTraceInner::m_nLevel = 0;

CQXVTraceInner::CQXVTraceInner(const QXChar* name, int number) : m_name(name), m_number(number) {}
CQXVTraceInner::CQXVTraceInner(const CQXVTraceInner& other) = default;
CQXVTraceInner& CQXVTraceInner::operator=(const CQXVTraceInner& other) = default;
CQXVTraceInner::~CQXVTraceInner() = default;

void CQXVTraceInner::operator()(int level, const QXChar* format, ...) const noexcept {
  try {
    if (level < Threshold()) {
      return;
    }
    QXChar message[kMessageRoom];
    message[0] = 0;
    va_list args;
    va_start(args, format);
    (void)os::FormatText(message, kMessageRoom, format == nullptr ? QXT("") : format, args);
    va_end(args);
    os::WriteDebugText(LineOf(m_name, m_number, level, message).c_str());
  } catch (...) {  // no memory for the line: it is lost
  }
}
