// log.cpp - the process's one log.
// It works before the first constructor of other sources and is silent behind its own end: everything is constant-initialised and
// trivially destructible but the state, which is made at the first use and freed when the module goes. A line is built as
// one block, with the file's head in front, and appended by one write.

#include "qxv/log.h"

#include "diagnostics/log_text.h"
#include "foundation/module.h"
#include "foundation/text_scan.h"
#include "os/append.h"
#include "os/clock.h"
#include "os/fork.h"
#include "os/lock.h"
#include "os/process.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <new>
#include <span>
#include <type_traits>

namespace {

using namespace qxv;

static_assert(std::endian::native == std::endian::little, "units are written as they stand in memory");

constexpr int kInitialLevel = 100;

class Log {
 public:
  constexpr Log() noexcept = default;
  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;
  ~Log() = default;

  // Another thread may hold the lock for ever when a process is ended under it; then the state stays.
  void End() noexcept {
    m_ended.store(true);
    if (m_lock.TryLock()) {
      if (m_state != nullptr) {
        m_state->~State();
        m_state = nullptr;
      }
      m_lock.Unlock();
    }
  }

  // Runs a change or a line under the lock. What has no memory is left undone.
  template <typename Action>
  void Do(Action action) noexcept {
    if (!IsAlive()) {
      return;
    }
    const os::LockGuard guard(m_lock);
    try {
      if (IsAlive()) {
        action(*this);
      }
    } catch (...) {
    }
  }

  void SetFolder(os::Text folder) {
    Made().place.folder.swap(folder);
    m_state->fileIsNamed = false;
  }
  void SetMainName(os::Text name) {
    Made().place.mainName.swap(name);
    m_state->fileIsNamed = false;
  }
  void SetLevel(int level) noexcept { m_level = level; }

  void Write(const QXChar* message, int level) {
    if (level < m_level) {
      return;
    }
    State& state = Made();
    const SYSTEMTIME now = os::ReadLocalTime();  // one reading for the name and the stamp: midnight may come between two
    NameFile(state, now);
    const os::TextView text = message == nullptr ? os::TextView() : os::TextView(message, ScanLength(message));
    os::Text& block = state.block;
    block.resize(kLogHead.size() + kLogNumberRoom + text.size() + kLineEnd.size());  // the most that it takes
    QXChar* end = std::copy(kLogHead.begin(), kLogHead.end(), block.data());
    end = WriteLogStamp(end, now);
    end = std::copy(text.begin(), text.end(), end);
    end = std::copy(kLineEnd.begin(), kLineEnd.end(), end);
    const auto bytes = std::as_bytes(std::span(block.data(), end));
    (void)state.file.Append({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()},
                            kLogHead.size() * sizeof(QXChar));  // nobody is told
    if (block.capacity() > kLargestBlockKept) {
      block.clear();
      block.shrink_to_fit();
    }
  }

  os::RecursiveLock& Lock() noexcept { return m_lock; }

 private:
  // What needs memory, made at the first use.
  struct State {
    LogPlace place = LogPlaceOf(os::ExecutablePath());
    os::AppendFile file;  // the day's
    SYSTEMTIME day{};
    bool fileIsNamed = false;
    os::Text block;  // of the last line, for its room
  };

  static constexpr os::TextView kLineEnd = QXT("\r\n");
  static constexpr std::size_t kLargestBlockKept = 32768;

  bool IsAlive() const noexcept { return !m_ended.load() && ModuleIsLoaded(); }

  State& Made() {
    if (m_state == nullptr) {
      m_state = new (m_storage) State;
    }
    return *m_state;
  }

  static void NameFile(State& state, const SYSTEMTIME& now) {
    if (state.fileIsNamed && state.day.wYear == now.wYear && state.day.wMonth == now.wMonth && state.day.wDay == now.wDay) {
      return;
    }
    state.fileIsNamed = false;
    QXChar date[kLogNumberRoom];
    const os::TextView dateText(date, static_cast<std::size_t>(WriteLogDate(date, now) - date));
    os::Text name = state.place.folder + state.place.mainName + QXT('_');
    name.append(dateText).append(QXT(".txt"));
    // A name that is refused now is tried again with the next line: a drive may have been mapped meanwhile.
    state.fileIsNamed = state.file.SetName(name.c_str()) == os::kErrorNone;
    state.day = now;
  }

  alignas(State) std::byte m_storage[sizeof(State)]{};
  State* m_state = nullptr;
  int m_level = kInitialLevel;
  std::atomic<bool> m_ended{false};
  os::RecursiveLock m_lock;
};

constinit Log theLog;
static_assert(std::is_trivially_destructible_v<Log>);  // so that calls behind its end find it ended

struct LifeOfLog {
  LifeOfLog() noexcept { (void)os::HoldAcrossFork(theLog.Lock()); }
  LifeOfLog(const LifeOfLog&) = delete;
  LifeOfLog& operator=(const LifeOfLog&) = delete;
  ~LifeOfLog() { theLog.End(); }
};
const LifeOfLog life;

}  // namespace

void QXVLogSetPath(const CQXString& folder) noexcept {
  theLog.Do([&](Log& log) { log.SetFolder(static_cast<const QXChar*>(folder)); });
}

void QXVLogSetMainName(const CQXString& name) noexcept {
  theLog.Do([&](Log& log) { log.SetMainName(static_cast<const QXChar*>(name)); });
}

void QXVLogSetWriteLevel(int level) noexcept {
  theLog.Do([&](Log& log) { log.SetLevel(level); });
}

void QXVWriteLog(const QXChar* message, int level) noexcept {
  theLog.Do([&](Log& log) { log.Write(message, level); });
}
