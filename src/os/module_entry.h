// module_entry.h - how the system tells the library that it was loaded or will go away.
// The entry stands in module_entry_win.cpp (DllMain), module_entry_posix.cpp (constructor and destructor) or module_entry_mfc.cpp
// (the host framework's extension module); each calls the two functions below.
#pragma once

namespace qxv::os {

/// Called once when the module is loaded, before any other code of it. False makes the module refuse to load. Defined above this
/// layer, in foundation/module.cpp.
bool OnModuleLoad() noexcept;

/// Called once when the module is unloaded or the process ends.
void OnModuleUnload() noexcept;

}  // namespace qxv::os
