// drive_map.h - names with drive letters over a file system that has one root and looks at case. Linux only.
//
// Z: is the root. QXV_DRIVES maps further letters: "C=/srv/c;D=/mnt/media"; entries that are not a letter, "=" and an absolute
// path are left out, a letter's first entry counts, Z cannot be mapped. The variable is read anew for every name, so set it
// before threads use the library.
#pragma once

#include "os/error.h"
#include "os/utf.h"

#include <string>
#include <string_view>
#include <vector>

namespace qxv::os {

inline constexpr std::size_t kLongestName = 32767;  // units

struct Drive {
  QXChar letter;     // A to Z
  std::string root;  // absolute, without a trailing slash; "" is the root folder
};

/// Every mapped drive, Z: among them, by letter.
std::vector<Drive> MappedDrives();

/// The system's path of a name; the object itself need not exist.
///   Z:\a, Z:/a     below the drive's root, where ".." ends; Z: and Z:a below the current folder when it lies on that drive
///   \\?\Z:\a       as Z:\a
///   /a             taken as it is, up to the separators
///   \a             /a
///   a, ..\a        relative to the current folder
/// "\" and "/" both separate, "." and ".." are resolved in the text (not in names that begin with "/", where the system does it).
/// A component that does not exist in the given case is looked up ignoring case; of several the first in byte order is taken.
/// Fails with 3 (null, empty, a letter without a drive), 53 (\\server\share) and 123 (a name without an equivalent, or longer
/// than 32,767 units). May throw std::bad_alloc.
[[nodiscard]] ErrorCode NativePathOf(const QXChar* name, std::string& path);

/// The same, but the last component stands as it was given: for the new name of a file.
[[nodiscard]] ErrorCode NativePathForNew(const QXChar* name, std::string& path);

/// The same without a look at the file system: every component stands as it was given.
[[nodiscard]] ErrorCode NativePathAsGiven(const QXChar* name, std::string& path);

/// An absolute path of the system in drive form (Z:\home\x), by the longest mapping that contains it. False for a path that
/// cannot be named: not absolute, or with a backslash in a component.
[[nodiscard]] bool DrivePathOf(std::string_view path, Text& name);

/// The system's path of the current folder; empty, with errno telling why, when it is not to be had.
std::string CurrentNativeFolder();

/// Whether the path is the root folder of a drive.
bool IsDriveRoot(std::string_view path);

/// The error number for a failed call on a path: as ErrorFromErrno, but a missing file in a missing folder is 3.
ErrorCode ErrorForPath(int error, const std::string& path) noexcept;

}  // namespace qxv::os
