// module.cpp - the module's life. Loading registers nothing: process-wide objects are constant-initialised and take what they
// need at their first use, because code that runs under the loader's lock may start nothing.

#include "foundation/module.h"

#include "os/module_entry.h"

#include <atomic>

namespace {

constinit std::atomic<bool> unloaded{false};

}  // namespace

namespace qxv {

bool ModuleIsLoaded() noexcept { return !unloaded.load(std::memory_order_acquire); }

}  // namespace qxv

bool qxv::os::OnModuleLoad() noexcept {
  unloaded.store(false, std::memory_order_release);
  return true;
}

void qxv::os::OnModuleUnload() noexcept { unloaded.store(true, std::memory_order_release); }
