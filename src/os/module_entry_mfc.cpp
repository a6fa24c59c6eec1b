// module_entry_mfc.cpp - DllMain of an extension module of the host framework (QXV_HOST_MFC): the module's classes and resources
// join the calling application's chain of modules. The framework's own entry glue sets its lists aside before this runs. Not
// built by our CI: the framework exists for MSVC only.

#include "os/module_entry.h"

#include <afxdllx.h>
#include <afxwin.h>

namespace {

AFX_EXTENSION_MODULE extensionModule = {};

}  // namespace

extern "C" int APIENTRY DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      if (!AfxInitExtensionModule(extensionModule, instance) || !qxv::os::OnModuleLoad()) {
        return 0;
      }
      new CDynLinkLibrary(extensionModule, FALSE /*bSystem*/);  // the framework owns and deletes it
      return 1;
    case DLL_PROCESS_DETACH:
      qxv::os::OnModuleUnload();
      AfxTermExtensionModule(extensionModule, FALSE /*bAll*/);
      return 1;
    default:
      return 1;
  }
}
