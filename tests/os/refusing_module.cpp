// refusing_module.cpp - a module whose initialisation fails, made of the library's own entry.

#include "os/module_entry.h"

bool qxv::os::OnModuleLoad() noexcept { return false; }
void qxv::os::OnModuleUnload() noexcept {}
