// error.h - the system's error numbers. Both systems answer with the numbers of Windows, so callers hold one table.
#pragma once

#include <cstdint>

namespace qxv::os {

/// 0 is success; anything else is a Windows system error number.
using ErrorCode = std::uint32_t;

inline constexpr ErrorCode kErrorNone = 0;
inline constexpr ErrorCode kErrorFileNotFound = 2;
inline constexpr ErrorCode kErrorPathNotFound = 3;  // a folder on the way is missing, or the drive
inline constexpr ErrorCode kErrorTooManyOpenFiles = 4;
inline constexpr ErrorCode kErrorAccessDenied = 5;
inline constexpr ErrorCode kErrorInvalidHandle = 6;
inline constexpr ErrorCode kErrorNotEnoughMemory = 8;
inline constexpr ErrorCode kErrorNotSameDevice = 17;
inline constexpr ErrorCode kErrorGeneralFailure = 31;
inline constexpr ErrorCode kErrorSharingViolation = 32;
inline constexpr ErrorCode kErrorBadNetPath = 53;
inline constexpr ErrorCode kErrorFileExists = 80;
inline constexpr ErrorCode kErrorInvalidParameter = 87;
inline constexpr ErrorCode kErrorDiskFull = 112;
inline constexpr ErrorCode kErrorInvalidName = 123;
inline constexpr ErrorCode kErrorNegativeSeek = 131;
inline constexpr ErrorCode kErrorFolderNotEmpty = 145;
inline constexpr ErrorCode kErrorBadPathName = 161;
inline constexpr ErrorCode kErrorAlreadyExists = 183;
inline constexpr ErrorCode kErrorFileTooLarge = 223;
inline constexpr ErrorCode kErrorMoreData = 234;  // the buffer is too small
inline constexpr ErrorCode kErrorNoMoreItems = 259;
inline constexpr ErrorCode kErrorNotAFolder = 267;
inline constexpr ErrorCode kErrorEmptyFile = 1006;  // nothing to map
inline constexpr ErrorCode kErrorBadKey = 1010;
inline constexpr ErrorCode kErrorRegistryDamaged = 1015;
inline constexpr ErrorCode kErrorKeyDeleted = 1018;

/// The number that stands for an errno value of this system; 31 for the ones without a counterpart.
ErrorCode ErrorFromErrno(int error) noexcept;

/// Why the last system call of this thread failed. Ask at once; never 0.
ErrorCode LastError() noexcept;

}  // namespace qxv::os
