// lock_test.cpp - the recursive lock.

#include "os/lock.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <vector>

namespace {

using namespace qxv::os;

static_assert(std::is_trivially_destructible_v<RecursiveLock>);

extern RecursiveLock earlyLock;
bool earlyWorked = [] {  // runs before the lock's line below; constant initialisation came earlier
  const LockGuard guard(earlyLock);
  const bool again = earlyLock.TryLock();
  earlyLock.Unlock();
  return again;
}();
constinit RecursiveLock earlyLock;

bool FreeForOthers(RecursiveLock& lock) {
  bool free = false;
  std::thread([&] {
    free = lock.TryLock();
    if (free) {
      lock.Unlock();
    }
  }).join();
  return free;
}

TEST(Lock, WorksBeforeItsOwnLineIsReached) {
  EXPECT_TRUE(earlyWorked);
  EXPECT_TRUE(FreeForOthers(earlyLock));
}

TEST(Lock, IsFreeAfterAsManyUnlocksAsLocks) {
  RecursiveLock lock;
  lock.Lock();
  lock.Lock();
  ASSERT_TRUE(lock.TryLock());
  EXPECT_FALSE(FreeForOthers(lock));
  lock.Unlock();
  lock.Unlock();
  EXPECT_FALSE(FreeForOthers(lock));
  lock.Unlock();
  EXPECT_TRUE(FreeForOthers(lock));
}

TEST(Lock, UnlockingWhatOneDoesNotHoldDoesNothing) {
  RecursiveLock lock;
  lock.Unlock();
  EXPECT_TRUE(FreeForOthers(lock));
  lock.Lock();
  std::thread([&] { lock.Unlock(); }).join();
  EXPECT_FALSE(FreeForOthers(lock));
  lock.Unlock();
  lock.Unlock();
  EXPECT_TRUE(FreeForOthers(lock));
}

TEST(Lock, KeepsThreadsApart) {
  RecursiveLock lock;
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int k = 0; k < 20000; ++k) {
        const LockGuard outer(lock);
        const LockGuard inner(lock);
        ++count;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(count, 80000);
}

}  // namespace
