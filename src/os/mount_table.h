// mount_table.h - what is mounted where (Linux only). All of it may throw std::bad_alloc.
#pragma once

#include "os/disk.h"
#include "os/utf.h"

#include <string>
#include <string_view>
#include <vector>

namespace qxv::os {

struct Mount {
  std::string source;  // a device, a share such as //server/share, or any word
  std::string folder;
  std::string type;  // of its file system
};

/// The lines of a mount table in fstab's form: source, folder, type, and more, with blanks between and octal escapes in them. In
/// their order; comments and lines without a type are left out.
std::vector<Mount> ParseMounts(std::string_view table);

/// The mounts of this system (os/network_places.h names the table); empty when they cannot be read.
std::vector<Mount> ReadMounts();

/// The mount that holds an absolute path without links: the longest folder, of several mounted one over the other the last. Null
/// when there is none.
const Mount* MountOf(std::string_view path, const std::vector<Mount>& mounts);

/// Network, Disc or Memory by the file system's type and source; Fixed for everything else.
DriveKind KindOfMount(const Mount& mount);

/// The network name of a folder that lies in a cifs, smb3 or smbfs mount: \\server\share and what stands below the mount.
/// Empty for any other folder.
/// @param folder  absolute, without links
Text NetworkNameOfFolder(const std::string& folder, const std::vector<Mount>& mounts);

}  // namespace qxv::os
