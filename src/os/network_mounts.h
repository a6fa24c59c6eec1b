// network_mounts.h - network shares in a table of mounts (Linux only).
#pragma once

#include "os/utf.h"

#include <string>
#include <string_view>

namespace qxv::os {

/// The network name of a folder that lies in a cifs, smb3 or smbfs mount: \\server\share and what stands below the mount.
/// Empty for any other folder.
/// @param mounts  the table as /proc/self/mounts shows it: a mount a line, source, folder, type, and more, with octal escapes
/// @param folder  absolute, without links
Text NetworkNameOfFolder(std::string_view mounts, const std::string& folder);

}  // namespace qxv::os
