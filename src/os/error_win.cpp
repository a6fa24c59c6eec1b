// error_win.cpp - why the last system call failed, in the system's own numbers.

#include "os/error.h"

#include "os/win_api.h"

namespace qxv::os {

ErrorCode LastError() noexcept {
  const DWORD error = ::GetLastError();
  return error == ERROR_SUCCESS ? kErrorGeneralFailure : error;
}

}  // namespace qxv::os
