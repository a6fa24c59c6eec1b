// fork_posix.cpp - the handlers around fork, registered once for all locks.

#include "os/fork.h"

#include <pthread.h>

#include <algorithm>
#include <array>

namespace qxv::os {
namespace {

constinit RecursiveLock tableLock;
constinit std::array<RecursiveLock*, 8> locks{};
constinit std::size_t count = 0;

void BeforeFork() {
  tableLock.Lock();
  std::for_each_n(locks.begin(), count, [](RecursiveLock* lock) { lock->Lock(); });
}

void AfterFork() {
  std::for_each_n(locks.begin(), count, [](RecursiveLock* lock) { lock->Unlock(); });
  tableLock.Unlock();
}

}  // namespace

bool HoldAcrossFork(RecursiveLock& lock) noexcept {
  static const bool kRegistered = ::pthread_atfork(&BeforeFork, &AfterFork, &AfterFork) == 0;
  const LockGuard guard(tableLock);
  if (!kRegistered || count == locks.size()) {
    return false;
  }
  locks[count++] = &lock;
  return true;
}

}  // namespace qxv::os
