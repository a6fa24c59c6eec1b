// network_mounts.cpp - which mount a folder lies in, and what is mounted there.

#include "os/network_mounts.h"

#include <algorithm>
#include <array>

namespace qxv::os {
namespace {

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

struct Mount {
  std::string source;
  std::string folder;
  std::string type;
};

Mount MountOf(std::string_view line) {
  std::array<std::string, 3> fields;
  for (std::string& field : fields) {
    const std::size_t end = std::min(line.find(' '), line.size());
    field = Unescaped(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return {std::move(fields[0]), std::move(fields[1]), std::move(fields[2])};
}

bool Contains(const std::string& mountFolder, const std::string& folder) {
  return mountFolder == "/" || (!mountFolder.empty() && folder.starts_with(mountFolder) &&
                                (folder.size() == mountFolder.size() || folder[mountFolder.size()] == '/'));
}

}  // namespace

Text NetworkNameOfFolder(std::string_view mounts, const std::string& folder) {
  Mount best;
  while (!mounts.empty()) {
    const std::size_t end = std::min(mounts.find('\n'), mounts.size());
    Mount mount = MountOf(mounts.substr(0, end));
    mounts.remove_prefix(std::min(end + 1, mounts.size()));
    if (Contains(mount.folder, folder) && mount.folder.size() >= best.folder.size()) {
      best = std::move(mount);  // of two in one place the later covers the earlier
    }
  }
  if (best.type != "cifs" && best.type != "smb3" && best.type != "smbfs") {
    return {};
  }
  std::string name = best.source;
  if (best.folder != "/") {
    name += folder.substr(best.folder.size());
  } else if (folder != "/") {
    name += folder;
  }
  std::replace(name.begin(), name.end(), '/', '\\');
  return name.starts_with("\\\\") ? FileNameFromUtf8(name) : Text();
}

}  // namespace qxv::os
