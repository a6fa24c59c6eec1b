// module_entry_win.cpp - DllMain. Thread notices are ignored.

#include "os/module_entry.h"

#include "os/win_api.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      return qxv::os::OnModuleLoad() ? TRUE : FALSE;
    case DLL_PROCESS_DETACH:
      qxv::os::OnModuleUnload();
      return TRUE;
    default:
      return TRUE;
  }
}
