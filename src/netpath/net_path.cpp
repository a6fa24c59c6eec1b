// net_path.cpp - the exported functions over the process's one table.
// The table is made at the first use, not at load: the sockets library may not be started under the loader's lock. It goes with
// the module; calls behind that find an empty table.

#include "qxv/net_path.h"

#include "foundation/module.h"
#include "netpath/host_text.h"
#include "netpath/net_path_exchange.h"
#include "os/fork.h"
#include "os/lock.h"

#include <atomic>
#include <cstddef>
#include <new>
#include <type_traits>

namespace {

using namespace qxv;

class SharedExchange {  // NOLINT(cppcoreguidelines-special-member-functions): nothing to destroy
 public:
  constexpr SharedExchange() noexcept = default;
  SharedExchange(const SharedExchange&) = delete;
  SharedExchange& operator=(const SharedExchange&) = delete;

  // Another thread may hold the lock for ever when a process is ended under it; then the table stays.
  void End() noexcept {
    m_ended.store(true);
    if (m_lock.TryLock()) {
      if (m_exchange != nullptr) {
        m_exchange->~CQXNetPathExchange();
        m_exchange = nullptr;
      }
      m_lock.Unlock();
    }
  }

  template <typename Action>
  auto With(Action action) {
    const os::LockGuard guard(m_lock);
    if (m_ended.load() || !ModuleIsLoaded()) {
      CQXNetPathExchange empty;
      empty.initialised = 1;
      return action(empty);
    }
    if (m_exchange == nullptr) {
      m_exchange = new (m_storage) CQXNetPathExchange;
    }
    return action(*m_exchange);
  }

  os::RecursiveLock& Lock() noexcept { return m_lock; }

 private:
  alignas(CQXNetPathExchange) std::byte m_storage[sizeof(CQXNetPathExchange)]{};
  CQXNetPathExchange* m_exchange = nullptr;
  std::atomic<bool> m_ended{false};
  os::RecursiveLock m_lock;
};

constinit SharedExchange theExchange;
static_assert(std::is_trivially_destructible_v<SharedExchange>);  // so that calls behind its end find it ended

struct LifeOfExchange {  // NOLINT(cppcoreguidelines-special-member-functions): one object
  LifeOfExchange() noexcept { (void)os::HoldAcrossFork(theExchange.Lock()); }
  ~LifeOfExchange() { theExchange.End(); }
};
const LifeOfExchange life;

}  // namespace

int QXVIsUNCPath(const CQXString& path) { return IsNetworkForm(ViewOf(path)) ? 1 : 0; }

int QXVIsLocalPath(const CQXString& path) { return IsNetworkForm(ViewOf(path)) ? 0 : 1; }

// KEPT: the result is 0 whatever happened (callers look at the path). Pinned by NetPathFunctionsKept.TheResultIsAlwaysZero.
int QXVUNC2Local(CQXString& local, const CQXString& network) {
  const os::Text path(ViewOf(network));  // the two may be one object
  local = theExchange.With([&](CQXNetPathExchange& exchange) { return exchange.ToLocal(path); }).c_str();
  return 0;
}

int QXVLocal2UNC(CQXString& network, const CQXString& local) {
  const os::Text path(ViewOf(local));
  network = theExchange.With([&](CQXNetPathExchange& exchange) { return exchange.ToNetwork(path); }).c_str();
  return 0;
}

int QXVGetLocalPath(CQXString& local, const CQXString& network) { return QXVUNC2Local(local, network); }

int QXVGetRemotePath(CQXString& network, const CQXString& local) { return QXVLocal2UNC(network, local); }

int QXVDumpNetPathTable(CQXString& lines) {
  int count = 0;
  lines = theExchange.With([&](CQXNetPathExchange& exchange) { return exchange.Describe(count); }).c_str();
  return count;
}

void QXVRefreshNetPathTable() {
  theExchange.With([](CQXNetPathExchange& exchange) { exchange.Forget(); });
}
