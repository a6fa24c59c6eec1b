// error_win.cpp - the system's own numbers, and those of the C run-time's errno.

#include "os/error.h"

#include "os/win_api.h"

#include <cerrno>

namespace qxv::os {

ErrorCode ErrorFromErrno(int error) noexcept {
  switch (error) {
    case 0:
      return kErrorNone;
    case ENOENT:
      return kErrorFileNotFound;
    case ENOTDIR:
      return kErrorPathNotFound;
    case EMFILE:
    case ENFILE:
      return kErrorTooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return kErrorAccessDenied;
    case EBADF:
      return kErrorInvalidHandle;
    case ENOMEM:
      return kErrorNotEnoughMemory;
    case EXDEV:
      return kErrorNotSameDevice;
    case EBUSY:
      return kErrorSharingViolation;
    case EEXIST:
      return kErrorFileExists;
    case EINVAL:
      return kErrorInvalidParameter;
    case ENOSPC:
      return kErrorDiskFull;
    case ENAMETOOLONG:
    case EILSEQ:
      return kErrorInvalidName;
    case ENOTEMPTY:
      return kErrorFolderNotEmpty;
    case EFBIG:
      return kErrorFileTooLarge;
    default:
      return kErrorGeneralFailure;
  }
}

ErrorCode LastError() noexcept {
  const DWORD error = ::GetLastError();
  return error == ERROR_SUCCESS ? kErrorGeneralFailure : error;
}

}  // namespace qxv::os
