// critical_section.cpp - CMyCritialSection over the system's recursive lock.

#include "qxv/module.h"

#include "os/lock.h"

namespace {

qxv::os::RecursiveLock& LockOf(void* lock) { return *static_cast<qxv::os::RecursiveLock*>(lock); }

}  // namespace

CMyCritialSection::CMyCritialSection() : m_pLock(new qxv::os::RecursiveLock) {}
CMyCritialSection::~CMyCritialSection() { delete static_cast<qxv::os::RecursiveLock*>(m_pLock); }
void CMyCritialSection::Lock() noexcept { LockOf(m_pLock).Lock(); }
void CMyCritialSection::Unlock() noexcept { LockOf(m_pLock).Unlock(); }
