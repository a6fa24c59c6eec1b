// module.h - whether the module is between its load and its unload.
#pragma once

namespace qxv {

/// False once the module was unloaded or the process is ending: process-wide services that hold system resources then do nothing.
/// Needs no constructor, so it may be asked at any time.
bool ModuleIsLoaded() noexcept;

}  // namespace qxv
