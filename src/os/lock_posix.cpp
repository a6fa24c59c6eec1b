// lock_posix.cpp - a plain mutex with an owner. pthread_self, not the thread's number: it stays in the child of a fork.

#include "os/lock.h"

#include <type_traits>

namespace qxv::os {

static_assert(std::is_trivially_destructible_v<RecursiveLock>);

namespace {

std::uintptr_t Self() noexcept { return static_cast<std::uintptr_t>(::pthread_self()); }

}  // namespace

void RecursiveLock::Lock() noexcept {
  const std::uintptr_t self = Self();
  if (m_owner.load(std::memory_order_relaxed) != self) {  // only this thread itself could have written its own name
    (void)::pthread_mutex_lock(&m_native);
    m_owner.store(self, std::memory_order_relaxed);
  }
  ++m_depth;
}

bool RecursiveLock::TryLock() noexcept {
  const std::uintptr_t self = Self();
  if (m_owner.load(std::memory_order_relaxed) != self) {
    if (::pthread_mutex_trylock(&m_native) != 0) {
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
    (void)::pthread_mutex_unlock(&m_native);
  }
}

void RecursiveLock::ResetAfterFork() noexcept {
  (void)::pthread_mutex_init(&m_native, nullptr /*attributes*/);
  m_owner.store(0, std::memory_order_relaxed);
  m_depth = 0;
}

}  // namespace qxv::os
