// error_posix.cpp - why the last system call failed, by errno.

#include "os/error.h"

#include <cerrno>

namespace qxv::os {

ErrorCode LastError() noexcept {
  const int error = errno;
  return error == 0 ? kErrorGeneralFailure : ErrorFromErrno(error);
}

}  // namespace qxv::os
