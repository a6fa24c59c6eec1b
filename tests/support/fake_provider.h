// fake_provider.h - what the test tells the network provider that it brought along, and hears from it.
#pragma once

#include "os/win_api.h"

/// The state of the provider's one copy in this process.
struct FakeProviderState {
  const wchar_t* shares;  // a zero unit behind each and one more at the end; "?" is an entry without a name
  DWORD openResult;       // 0 or an error number
  DWORD enumResult;
  int opened;  // enumerations that were not closed
  int enumerations;
  wchar_t container[300];  // the last one that was opened
};

extern "C" FakeProviderState* FakeProvider();
