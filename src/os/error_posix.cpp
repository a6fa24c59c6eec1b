// error_posix.cpp - errno as Windows error numbers.

#include "os/error.h"

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
    case ETXTBSY:
      return kErrorSharingViolation;
    case EEXIST:
      return kErrorFileExists;
    case EINVAL:
      return kErrorInvalidParameter;
    case ENOSPC:
    case EDQUOT:
      return kErrorDiskFull;
    case ELOOP:
    case ENAMETOOLONG:
    case EILSEQ:
      return kErrorInvalidName;
    case ENOTEMPTY:
      return kErrorFolderNotEmpty;
    case EFBIG:
    case EOVERFLOW:
      return kErrorFileTooLarge;
    default:
      return kErrorGeneralFailure;
  }
}

ErrorCode LastError() noexcept {
  const int error = errno;
  return error == 0 ? kErrorGeneralFailure : ErrorFromErrno(error);
}

}  // namespace qxv::os
