// wine.h - whether the tests of the Windows build run under Wine: some services of the system answer differently there.
#pragma once

#include "qxv/types.h"

namespace support {

inline bool IsWine() { return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

}  // namespace support
