// disk_posix.cpp - the folder that a letter is mapped to, the file system that holds it, and the mount table.

#include "os/disk.h"

#include "os/drive_map.h"
#include "os/mount_table.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

namespace qxv::os {
namespace {

struct CloseStream {
  void operator()(std::FILE* file) const noexcept { (void)std::fclose(file); }
};

/// The folder behind a drive's letter, links resolved.
ErrorCode FolderOf(QXChar letter, std::string& folder) {
  if (!(letter >= QXT('A') && letter <= QXT('Z')) && !(letter >= QXT('a') && letter <= QXT('z'))) {
    return kErrorPathNotFound;  // it would not be a drive's name
  }
  const QXChar root[] = {letter, QXT(':'), QXT('\\'), 0};
  std::string mapped;
  if (const ErrorCode error = NativePathOf(root, mapped); error != kErrorNone) {
    return error;
  }
  mapped += '/';  // a letter that is mapped to a file is no drive
  char resolved[PATH_MAX];
  if (::realpath(mapped.c_str(), resolved) == nullptr) {
    return ErrorForPath(errno, mapped);
  }
  folder = resolved;
  return kErrorNone;
}

std::int64_t Bytes(std::uint64_t blocks, std::uint64_t blockSize) {
  std::uint64_t bytes;
  return __builtin_mul_overflow(blocks, blockSize, &bytes) || bytes > INT64_MAX ? INT64_MAX : static_cast<std::int64_t>(bytes);
}

/// Whether the disk under a file system can be taken out; a partition asks the disk that it is on.
bool IsRemovable(dev_t device) {
  for (const char* place : {"removable", "../removable"}) {
    char name[64];
    (void)std::snprintf(name, sizeof name, "/sys/dev/block/%u:%u/%s", major(device), minor(device), place);
    const std::unique_ptr<std::FILE, CloseStream> file(std::fopen(name, "re"));
    if (file != nullptr) {
      return std::fgetc(file.get()) == '1';
    }
  }
  return false;
}

DriveKind KindOf(QXChar letter) {
  std::string folder;
  struct stat status;
  if (FolderOf(letter, folder) != kErrorNone || ::stat(folder.c_str(), &status) != 0) {
    return DriveKind::None;
  }
  const std::vector<Mount> mounts = ReadMounts();
  const Mount* mount = MountOf(folder, mounts);
  if (mount == nullptr) {
    return DriveKind::Unknown;
  }
  const DriveKind kind = KindOfMount(*mount);
  return kind == DriveKind::Fixed && IsRemovable(status.st_dev) ? DriveKind::Removable : kind;
}

}  // namespace

ErrorCode GetDiskSpace(QXChar letter, DiskSpace& space) noexcept {
  space = {};
  try {
    std::string folder;
    if (const ErrorCode error = FolderOf(letter, folder); error != kErrorNone) {
      return error;
    }
    struct statvfs status;
    while (::statvfs(folder.c_str(), &status) != 0) {
      if (errno != EINTR) {
        return ErrorForPath(errno, folder);
      }
    }
    space = {Bytes(status.f_blocks, status.f_frsize), Bytes(status.f_bfree, status.f_frsize)};
    return kErrorNone;
  } catch (const std::bad_alloc&) {
    return kErrorNotEnoughMemory;
  }
}

DriveKind GetDriveKind(QXChar letter) noexcept {
  try {
    return KindOf(letter);
  } catch (const std::bad_alloc&) {
    return DriveKind::Unknown;
  }
}

}  // namespace qxv::os
