// lock.cpp - who owns the lock and how often, above the system's plain lock.

#include "os/lock.h"

#include <type_traits>

namespace qxv::os {

static_assert(std::is_trivially_destructible_v<RecursiveLock>);

void RecursiveLock::Lock() noexcept {
  const std::uintptr_t self = CurrentThread();
  if (m_owner.load(std::memory_order_relaxed) != self) {  // only this thread itself could have written its own name
    LockNative();
    m_owner.store(self, std::memory_order_relaxed);
  }
  ++m_depth;
}

bool RecursiveLock::TryLock() noexcept {
  const std::uintptr_t self = CurrentThread();
  if (m_owner.load(std::memory_order_relaxed) != self) {
    if (!TryLockNative()) {
      return false;
    }
    m_owner.store(self, std::memory_order_relaxed);
  }
  ++m_depth;
  return true;
}

void RecursiveLock::Unlock() noexcept {
  if (m_owner.load(std::memory_order_relaxed) != CurrentThread()) {
    return;
  }
  if (--m_depth == 0) {
    m_owner.store(0, std::memory_order_relaxed);
    UnlockNative();
  }
}

void RecursiveLock::ResetAfterFork() noexcept {
  ResetNative();
  m_owner.store(0, std::memory_order_relaxed);
  m_depth = 0;
}

}  // namespace qxv::os
