// fake_provider.cpp - a network provider for the system's real provider library: it lists the shares that the test names.

#include "support/fake_provider.h"

#include <winnetwk.h>
extern "C" {
#include <npapi.h>
}

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace {

FakeProviderState state{};
const wchar_t* nextShare = L"";  // of the open enumeration

}  // namespace

extern "C" {

FakeProviderState* FakeProvider() { return &state; }

DWORD APIENTRY NPGetCaps(DWORD index) {
  switch (index) {
    case WNNC_SPEC_VERSION:
      return WNNC_SPEC_VERSION51;
    case WNNC_NET_TYPE:
      return WNNC_NET_LANMAN;
    case WNNC_ENUMERATION:
      return WNNC_ENUM_GLOBAL | WNNC_ENUM_LOCAL;
    case WNNC_START:
      return 1;
    default:
      return 0;
  }
}

DWORD APIENTRY NPOpenEnum(DWORD, DWORD, DWORD, LPNETRESOURCEW container, LPHANDLE handle) {
  if (state.openResult != 0) {
    return state.openResult;
  }
  ++state.opened;
  std::wcsncpy(state.container, container->lpRemoteName, 299);
  nextShare = state.shares;
  *handle = &state;
  return WN_SUCCESS;
}

// Entries from the front of the block, their names from its end.
DWORD APIENTRY NPEnumResource(HANDLE, LPDWORD count, LPVOID block, LPDWORD bytes) {
  ++state.enumerations;
  if (state.enumResult != 0) {
    return state.enumResult;
  }
  auto* entry = static_cast<NETRESOURCEW*>(block);
  auto* end = reinterpret_cast<wchar_t*>(static_cast<char*>(block) + *bytes);
  DWORD given = 0;
  for (; *nextShare != 0 && given < *count; ++given, ++entry) {
    const std::size_t units = std::wcslen(nextShare) + 1;
    if (end - units < reinterpret_cast<wchar_t*>(entry + 1)) {
      break;
    }
    *entry = NETRESOURCEW{};
    entry->dwScope = RESOURCE_GLOBALNET;
    entry->dwDisplayType = RESOURCEDISPLAYTYPE_SHARE;
    if (*nextShare != L'?') {
      end -= units;
      std::copy_n(nextShare, units, end);
      entry->lpRemoteName = end;
    }
    nextShare += units;
  }
  *count = given;
  return given == 0 ? WN_NO_MORE_ENTRIES : WN_SUCCESS;
}

DWORD APIENTRY NPCloseEnum(HANDLE) {
  --state.opened;
  return WN_SUCCESS;
}

}  // extern "C"
