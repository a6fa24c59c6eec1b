// lock.h - one lock for state that outlives everything else.
#pragma once

#include "qxv/types.h"

#include <atomic>
#include <cstdint>

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace qxv::os {

/// A recursive lock. It is constant-initialised and has nothing to destroy, so it works before the first constructor and after
/// the last destructor of the program, and under the loader's lock. May be held across a fork when the handlers take and release
/// it (pthread_atfork: Lock, Unlock, Unlock): the child's thread is the owner that the parent's was.
class RecursiveLock {  // NOLINT(cppcoreguidelines-special-member-functions): nothing to destroy
 public:
  constexpr RecursiveLock() noexcept = default;
  RecursiveLock(const RecursiveLock&) = delete;
  RecursiveLock& operator=(const RecursiveLock&) = delete;

  void Lock() noexcept;
  [[nodiscard]] bool TryLock() noexcept;
  /// Nothing happens when this thread does not hold it.
  void Unlock() noexcept;

  /// Makes it free whatever it was. For the child of a fork that did not take it before.
  void ResetAfterFork() noexcept;

 private:
  // The system's plain lock; who owns it and how often stands above it, in lock.cpp.
  static std::uintptr_t CurrentThread() noexcept;
  void LockNative() noexcept;
  [[nodiscard]] bool TryLockNative() noexcept;
  void UnlockNative() noexcept;
  void ResetNative() noexcept;

#if defined(_WIN32)
  SRWLOCK m_native = SRWLOCK_INIT;
#else
  pthread_mutex_t m_native = PTHREAD_MUTEX_INITIALIZER;
#endif
  std::atomic<std::uintptr_t> m_owner{0};  // a thread; 0 is nobody
  std::uint32_t m_depth = 0;               // touched by the owner only
};

/// Holds a lock for a block.
class LockGuard {
 public:
  explicit LockGuard(RecursiveLock& lock) noexcept : m_lock(lock) { m_lock.Lock(); }
  LockGuard(const LockGuard&) = delete;
  LockGuard& operator=(const LockGuard&) = delete;
  ~LockGuard() { m_lock.Unlock(); }

 private:
  RecursiveLock& m_lock;
};

}  // namespace qxv::os
