// provider_library_win.h - the network provider library, taken for the length of a block.
#pragma once

#include "os/win_api.h"

namespace qxv::os {

/// "Mpr.dll", loaded unless the process has it already, and then freed again at the end.
class ProviderLibrary {
 public:
  ProviderLibrary() noexcept : m_module(::GetModuleHandleW(kName)) {
    if (m_module == nullptr) {
      m_module = ::LoadLibraryW(kName);
      m_loadedHere = m_module != nullptr;
    }
  }
  ProviderLibrary(const ProviderLibrary&) = delete;
  ProviderLibrary& operator=(const ProviderLibrary&) = delete;
  ~ProviderLibrary() {
    if (m_loadedHere) {
      ::FreeLibrary(m_module);
    }
  }

  /// A function of the library; null when the library or the function is missing.
  template <typename Function>
  Function* Find(const char* name) const noexcept {
    return m_module == nullptr ? nullptr : reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(m_module, name)));
  }

 private:
  static constexpr const QXChar* kName = QXT("Mpr.dll");

  HMODULE m_module;
  bool m_loadedHere = false;
};

}  // namespace qxv::os
