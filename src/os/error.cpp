// error.cpp - errno as Windows error numbers, for the C run-time of either system.

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
#if defined(EDQUOT)  // a quota, which not every run-time knows
    case EDQUOT:
#endif
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

}  // namespace qxv::os
