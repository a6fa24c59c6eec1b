// lock_win.cpp - the slim lock: a critical section would need a constructor.

#include "os/lock.h"

#include "os/win_api.h"

namespace qxv::os {

std::uintptr_t RecursiveLock::CurrentThread() noexcept { return ::GetCurrentThreadId(); }

void RecursiveLock::LockNative() noexcept { ::AcquireSRWLockExclusive(&m_native); }
bool RecursiveLock::TryLockNative() noexcept { return ::TryAcquireSRWLockExclusive(&m_native) != 0; }
void RecursiveLock::UnlockNative() noexcept { ::ReleaseSRWLockExclusive(&m_native); }
void RecursiveLock::ResetNative() noexcept { m_native = SRWLOCK_INIT; }

}  // namespace qxv::os
