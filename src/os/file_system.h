// file_system.h - files and folders by name. Results are 0 or a Windows error number (os/error.h).
// 3 where a folder on the way (or the drive) is missing, and for a null or empty name; 2 where only the last component is.
#pragma once

#include "os/error.h"
#include "os/file.h"
#include "os/utf.h"

#include <cstdint>
#include <vector>

namespace qxv::os {

/// Attribute bits (kAttribute..., os/file.h) of a file or folder; 0 on failure. Linux: a leading dot is the hidden bit, a file
/// that nobody may write has the read-only bit, links are followed.
[[nodiscard]] ErrorCode GetPathAttributes(const QXChar* path, std::uint32_t& attributes) noexcept;

/// Sets or clears the read-only bit.
[[nodiscard]] ErrorCode SetReadOnly(const QXChar* path, bool readOnly) noexcept;

/// Whether a folder could become the current one, without changing anything: 267 for a file, 5 for a folder that may not be
/// entered.
[[nodiscard]] ErrorCode CheckFolderAccess(const QXChar* path) noexcept;

/// The current folder in drive form, with a trailing backslash only for the root of a drive.
[[nodiscard]] ErrorCode GetCurrentFolder(Text& folder);
[[nodiscard]] ErrorCode SetCurrentFolder(const QXChar* path) noexcept;

/// Where temporary files go, in drive form with a trailing backslash.
[[nodiscard]] ErrorCode GetTemporaryFolder(Text& folder);

/// 183 when something of that name exists.
[[nodiscard]] ErrorCode CreateFolder(const QXChar* path) noexcept;

/// Creates a folder with all that is missing above it. 161 for a relative path; 183 when it exists already.
[[nodiscard]] ErrorCode CreateFolders(const QXChar* path);

/// 5 for a folder and for a read-only file, 32 for one that somebody has open without sharing deletion.
[[nodiscard]] ErrorCode RemoveFile(const QXChar* path) noexcept;

/// 145 when it is not empty, 267 for a file.
[[nodiscard]] ErrorCode RemoveFolder(const QXChar* path) noexcept;

/// Renames or moves within one file system (else 17 for a folder; the same for files on Linux). An existing target is 183 unless
/// replaced; to may differ from from in case only.
[[nodiscard]] ErrorCode RenameFile(const QXChar* from, const QXChar* to, bool replace) noexcept;

[[nodiscard]] ErrorCode GetFileTimes(const QXChar* path, FileTimes& times) noexcept;

/// Sets the times of access and writing. The time of creation is set on Windows only; Linux has no call for it.
[[nodiscard]] ErrorCode SetFileTimes(const QXChar* path, const FileTimes& times) noexcept;

struct FoundFile {
  Text name;  // the last component
  std::uint32_t attributes;
  std::uint64_t size;  // 0 for a folder
  FileTimes times;

  bool IsFolder() const noexcept { return (attributes & kAttributeFolder) != 0; }
  bool IsDots() const noexcept { return name == QXT(".") || name == QXT(".."); }
};

/// What matches a pattern, in the order of the lower-case names. The last component may hold * and ?, case is ignored; without
/// them it finds that one file under its real name. As the system's finder does, * also finds "." and ".." outside a drive's
/// root. 2 when nothing matches, 3 when the folder is missing. Linux: names with a backslash cannot be handed out and are left
/// out.
[[nodiscard]] ErrorCode FindFiles(const QXChar* pattern, std::vector<FoundFile>& found);

}  // namespace qxv::os
