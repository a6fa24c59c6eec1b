// lock_win.cpp - the slim lock with an owner: a critical section would need a constructor.

#include "os/lock.h"

#include "os/win_api.h"

#include <type_traits>

namespace qxv::os {

static_assert(std::is_trivially_destructible_v<RecursiveLock>);

namespace {

std::uintptr_t Self() noexcept { return ::GetCurrentThreadId(); }

}  // namespace

void RecursiveLock::Lock() noexcept {
  const std::uintptr_t self = Self();
  if (m_owner.load(std::memory_order_relaxed) != self) {  // only this thread itself could have written its own name
    ::AcquireSRWLockExclusive(&m_native);
    m_owner.store(self, std::memory_order_relaxed);
  }
  ++m_depth;
}

bool RecursiveLock::TryLock() noexcept {
  const std::uintptr_t self = Self();
  if (m_owner.load(std::memory_order_relaxed) != self) {
    if (::TryAcquireSRWLockExclusive(&m_native) == 0) {
      return false;
    }
    m_owner.store(self, std::memory_order_relaxed);
  }
  ++m_depth;
  return true;
}

void RecursiveLock::Unlock() noexcept {
  if (m_owner.load(std::memory_order_relaxed) != Self()) {
    return;
  }
  if (--m_depth == 0) {
    m_owner.store(0, std::memory_order_relaxed);
    ::ReleaseSRWLockExclusive(&m_native);
  }
}

void RecursiveLock::ResetAfterFork() noexcept {
  m_native = SRWLOCK_INIT;
  m_owner.store(0, std::memory_order_relaxed);
  m_depth = 0;
}

}  // namespace qxv::os
