// debug_output_win.cpp - the debugger's channel.

#include "os/debug_output.h"
#include "os/win_api.h"

namespace qxv::os::system_debug {

void Write(const QXChar* text) noexcept { ::OutputDebugStringW(text); }

}  // namespace qxv::os::system_debug
