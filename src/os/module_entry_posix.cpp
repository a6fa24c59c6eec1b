// module_entry_posix.cpp - the library's constructor and destructor.
// A shared object cannot refuse to be loaded; where Windows would, the process ends with a message instead.

#include "os/module_entry.h"

#include <cstdio>
#include <cstdlib>

namespace {

[[gnu::constructor]] void Load() {
  if (!qxv::os::OnModuleLoad()) {
    std::fputs("QXVCommonLibU: the module could not be initialised\n", stderr);
    std::abort();
  }
}

[[gnu::destructor]] void Unload() { qxv::os::OnModuleUnload(); }

}  // namespace
