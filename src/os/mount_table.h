// mount_table.h - what is mounted where. Linux only.
#pragma once

#include "os/disk.h"

#include <string>
#include <string_view>
#include <vector>

namespace qxv::os {

struct Mount {
  std::string source;  // a device, a share such as //server/share, or any word
  std::string folder;
  std::string type;  // of its file system
};

inline constexpr const char* kMountTable = "/proc/self/mounts";

/// The lines of a mount table (fstab's form), in their order; empty when it cannot be read. May throw std::bad_alloc.
std::vector<Mount> ReadMounts(const char* file = kMountTable);

/// The mount that holds an absolute path without links: the longest folder, of several mounted one over the other the last. Null
/// when there is none.
const Mount* MountOf(std::string_view path, const std::vector<Mount>& mounts);

/// Network, Disc or Memory by the file system's type and source; Fixed for everything else.
DriveKind KindOfMount(const Mount& mount);

}  // namespace qxv::os
