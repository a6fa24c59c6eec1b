// mount_table.cpp - the lines of /proc/self/mounts, and which of them a folder belongs to.

#include "os/mount_table.h"

#include "os/native_file.h"
#include "os/network_places.h"

#include <algorithm>
#include <iterator>

namespace qxv::os {
namespace {

constexpr std::size_t kLargestTable = 16 << 20;
constexpr std::string_view kBlanks = " \t";

constexpr std::string_view kNetworkTypes[] = {
    "9p",          "afs",       "beegfs",     "ceph",  "cifs",  "coda",      "fuse.ceph", "fuse.glusterfs",
    "fuse.rclone", "fuse.s3fs", "fuse.sshfs", "davfs", "gfs2",  "glusterfs", "gpfs",      "lustre",
    "ncpfs",       "nfs",       "nfs4",       "smb3",  "smbfs",
};

constexpr bool IsOctal(char byte) { return byte >= '0' && byte <= '7'; }

// \040 and the like, which stand for blanks, tabs, line feeds and backslashes.
std::string Unescaped(std::string_view field) {
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && field.size() - i > 3 && IsOctal(field[i + 1]) && IsOctal(field[i + 2]) && IsOctal(field[i + 3])) {
      text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0'));
      i += 3;
    } else {
      text += field[i];
    }
  }
  return text;
}

// The text in front of the first separator; both go.
std::string_view TakeUpTo(std::string_view& text, std::string_view separators) {
  const std::string_view taken = text.substr(0, text.find_first_of(separators));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

void SkipBlanks(std::string_view& line) { line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size())); }

std::string TakeField(std::string_view& line) {
  SkipBlanks(line);
  return Unescaped(TakeUpTo(line, kBlanks));
}

bool LiesBelow(std::string_view path, std::string_view folder) {
  return folder == "/" || (path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/'));
}

}  // namespace

std::vector<Mount> ParseMounts(std::string_view table) {
  std::vector<Mount> mounts;
  while (!table.empty()) {
    std::string_view line = TakeUpTo(table, "\n");
    SkipBlanks(line);
    if (line.starts_with('#')) {
      continue;
    }
    Mount mount;
    mount.source = TakeField(line);
    mount.folder = TakeField(line);
    mount.type = TakeField(line);
    if (!mount.type.empty()) {
      mounts.push_back(std::move(mount));
    }
  }
  return mounts;
}

std::vector<Mount> ReadMounts() {
  std::string table;
  (void)ReadNativeFile(MountTablePath(), kLargestTable, table);  // without it nothing is mounted
  return ParseMounts(table);
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

Text NetworkNameOfFolder(const std::string& folder, const std::vector<Mount>& mounts) {
  const Mount* const mount = MountOf(folder, mounts);
  if (mount == nullptr || (mount->type != "cifs" && mount->type != "smb3" && mount->type != "smbfs")) {
    return {};
  }
  std::string name = mount->source;
  if (mount->folder != "/") {
    name += folder.substr(mount->folder.size());
  } else if (folder != "/") {
    name += folder;
  }
  std::replace(name.begin(), name.end(), '/', '\\');
  return name.starts_with("\\\\") ? FileNameFromUtf8(name) : Text();
}

}  // namespace qxv::os
