// lock_posix.cpp - a plain mutex. A thread goes by pthread_self, not by its number: that stays in the child of a fork.

#include "os/lock.h"

namespace qxv::os {

std::uintptr_t RecursiveLock::CurrentThread() noexcept { return static_cast<std::uintptr_t>(::pthread_self()); }

void RecursiveLock::LockNative() noexcept { (void)::pthread_mutex_lock(&m_native); }
bool RecursiveLock::TryLockNative() noexcept { return ::pthread_mutex_trylock(&m_native) == 0; }
void RecursiveLock::UnlockNative() noexcept { (void)::pthread_mutex_unlock(&m_native); }
void RecursiveLock::ResetNative() noexcept { (void)::pthread_mutex_init(&m_native, nullptr /*attributes*/); }

}  // namespace qxv::os
