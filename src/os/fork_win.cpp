// fork_win.cpp - processes are not copied here.

#include "os/fork.h"

namespace qxv::os {

bool HoldAcrossFork(RecursiveLock&) noexcept { return true; }

}  // namespace qxv::os
