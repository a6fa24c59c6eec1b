// mount_table.cpp - the lines of /proc/self/mounts.

#include "os/mount_table.h"

#include <mntent.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>

namespace qxv::os {
namespace {

constexpr std::string_view kNetworkTypes[] = {
    "9p",          "afs",       "beegfs",     "ceph",  "cifs",  "coda",      "fuse.ceph", "fuse.glusterfs",
    "fuse.rclone", "fuse.s3fs", "fuse.sshfs", "davfs", "gfs2",  "glusterfs", "gpfs",      "lustre",
    "ncpfs",       "nfs",       "nfs4",       "smb3",  "smbfs",
};

struct CloseTable {
  void operator()(std::FILE* file) const noexcept { (void)::endmntent(file); }
};

bool LiesBelow(std::string_view path, std::string_view folder) {
  return folder == "/" || (path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/'));
}

}  // namespace

std::vector<Mount> ReadMounts(const char* file) {
  std::vector<Mount> mounts;
  const std::unique_ptr<std::FILE, CloseTable> table(::setmntent(file, "re"));
  if (table == nullptr) {
    return mounts;
  }
  char line[36864];  // holds source and folder of 4,095 bytes each with their escapes; what follows the type may be cut
  mntent entry;
  while (::getmntent_r(table.get(), &entry, line, sizeof line) != nullptr) {
    mounts.push_back({entry.mnt_fsname, entry.mnt_dir, entry.mnt_type});
  }
  return mounts;
}

const Mount* MountOf(std::string_view path, const std::vector<Mount>& mounts) {
  const Mount* best = nullptr;
  for (const Mount& mount : mounts) {
    if (LiesBelow(path, mount.folder) && (best == nullptr || mount.folder.size() >= best->folder.size())) {
      best = &mount;
    }
  }
  return best;
}

DriveKind KindOfMount(const Mount& mount) {
  const std::string_view source = mount.source;
  if (std::find(std::begin(kNetworkTypes), std::end(kNetworkTypes), mount.type) != std::end(kNetworkTypes)) {
    return DriveKind::Network;
  }
  if (mount.type == "iso9660" || source.starts_with("/dev/sr")) {
    return DriveKind::Disc;
  }
  if (mount.type == "tmpfs" || mount.type == "ramfs" || source.starts_with("/dev/ram") || source.starts_with("/dev/zram")) {
    return DriveKind::Memory;
  }
  return DriveKind::Fixed;
}

}  // namespace qxv::os
