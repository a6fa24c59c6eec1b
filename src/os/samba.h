// samba.h - what the Samba server of this computer publishes (Linux only).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qxv::os {

struct SambaShare {
  std::string name;    // as written, UTF-8
  std::string folder;  // absolute
};

struct SambaServer {
  std::string workgroup = "WORKGROUP";
  std::vector<SambaShare> shares;  // in the order of the configuration, then the user shares by file name
};

/// The bytes of a file that a configuration includes; empty when it cannot be read.
using ReadIncluded = std::function<std::string(const std::string& path)>;

/// What smb.conf says, without the user shares.
struct SambaConfiguration {
  SambaServer server;
  std::string userShares = "/var/lib/samba/usershares";
  bool hasUserShares = false;  // "usershare max shares" above 0
};

/// Reads a configuration: sections and parameters in any case, blanks inside names ignored, "#" and ";" comments, a backslash at
/// the end of a line continues it, a value may stand in quotation marks. Left out are what another computer does not see or
/// cannot use as a folder: [global], [homes], [printers], printers, shares that are not available or not browseable, names with
/// "$" at the end, and folders that are not absolute or hold a "%" of Samba's.
/// @param read  for "include"; at most 8 deep and 64 in all. Without it included files are left out.
SambaConfiguration ParseSambaConfiguration(std::string_view bytes, const ReadIncluded& read = {});

/// A user share's file: path=, and sharename= where its case differs from the file's name.
std::optional<SambaShare> ParseUserShare(std::string_view bytes, const std::string& fileName);

/// The server that a configuration file describes, with its user shares; nothing when there is no such file.
std::optional<SambaServer> ReadSambaServer(const std::string& configurationPath);

}  // namespace qxv::os
