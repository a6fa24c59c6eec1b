// fork.h - locks and the child of a fork.
#pragma once

#include "os/lock.h"

namespace qxv::os {

/// Holds the lock over every fork of the process from now on, so that what it guards is whole in the child and the lock free.
/// The lock must outlive the module. At most eight locks; false for more, and when the system refuses. Nothing to do on Windows.
[[nodiscard]] bool HoldAcrossFork(RecursiveLock& lock) noexcept;

}  // namespace qxv::os
