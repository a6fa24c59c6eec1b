// disk.h - drives by their letter: space and kind.
#pragma once

#include "os/error.h"
#include "qxv/types.h"

#include <cstdint>

namespace qxv::os {

/// As Windows numbers them.
enum class DriveKind : unsigned {
  Unknown = 0,  // the system does not tell
  None = 1,     // no such drive
  Removable = 2,
  Fixed = 3,
  Network = 4,
  Disc = 5,  // CD or DVD
  Memory = 6,
};

struct DiskSpace {
  std::int64_t total;  // bytes
  std::int64_t free;   // also those that this user may not take
};

/// Zeros and an error number for a drive that is not there, and for anything that is no letter.
[[nodiscard]] ErrorCode GetDiskSpace(QXChar letter, DiskSpace& space) noexcept;

/// Linux: by the mount that holds the drive's folder.
DriveKind GetDriveKind(QXChar letter) noexcept;

}  // namespace qxv::os
