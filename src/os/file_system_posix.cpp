// file_system_posix.cpp - files and folders by name on Linux, through the drive map.

#include "os/file_system.h"

#include "os/drive_map.h"
#include "os/name_match.h"
#include "os/posix_open.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace qxv::os {
namespace {

constexpr mode_t kAnybodyMayWrite = S_IWUSR | S_IWGRP | S_IWOTH;

/// Runs one action on the native path of a name; no exception leaves.
template <typename Action>
ErrorCode WithPath(const QXChar* name, Action action) noexcept {
  try {
    std::string path;
    const ErrorCode error = NativePathOf(name, path);
    return error != kErrorNone ? error : action(path);
  } catch (const std::bad_alloc&) {
    return kErrorNotEnoughMemory;
  }
}

std::string_view LastComponent(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') {
    path.remove_suffix(1);
  }
  return path.substr(path.rfind('/') + 1);
}

void StripTrailingSlashes(std::string& path) {
  while (path.size() > 1 && path.back() == '/') {
    path.pop_back();
  }
}

ErrorCode StatusOf(const std::string& path, NativeStatus& status) {
  return ReadStatus(AT_FDCWD, path.c_str(), 0, status) ? kErrorNone : ErrorForPath(errno, path);
}

ErrorCode CheckEntering(const std::string& path) {
  NativeStatus status;
  if (const ErrorCode error = StatusOf(path, status); error != kErrorNone) {
    return error == kErrorPathNotFound && errno == ENOTDIR ? kErrorNotAFolder : error;
  }
  if (!S_ISDIR(status.mode)) {
    return kErrorNotAFolder;
  }
  return ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0 ? kErrorNone : ErrorForPath(errno, path);
}

timespec TimeSpecOf(const FILETIME& time) {
  const std::uint64_t ticks = static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  constexpr std::uint64_t kTicksASecond = 10'000'000;
  constexpr std::int64_t kSeconds1601To1970 = 11'644'473'600;
  return {static_cast<std::int64_t>(ticks / kTicksASecond) - kSeconds1601To1970, static_cast<long>(ticks % kTicksASecond * 100)};
}

/// False for an entry that vanished meanwhile, or whose name cannot be handed out.
bool Describe(int folder, const char* name, FoundFile& file) {
  NativeStatus status;
  // A link that leads nowhere is shown as itself.
  if (std::string_view(name).find('\\') != std::string_view::npos ||
      (!ReadStatus(folder, name, 0, status) && !ReadStatus(folder, name, AT_SYMLINK_NOFOLLOW, status))) {
    return false;
  }
  file.name = FileNameFromUtf8(name);
  file.attributes = AttributesOf(status, name);
  file.size = S_ISREG(status.mode) ? status.size : 0;
  file.times = status.times;
  return true;
}

ErrorCode FindOne(const QXChar* name, std::vector<FoundFile>& found) {
  std::string path;
  if (const ErrorCode error = NativePathOf(name, path); error != kErrorNone) {
    return error;
  }
  FoundFile file;
  if (path.back() == '/' || IsDriveRoot(path) || LastComponent(path) == "." || LastComponent(path) == "..") {
    return kErrorFileNotFound;  // a folder's own name is wanted, not its inside
  }
  if (!Describe(AT_FDCWD, path.c_str(), file)) {
    return ErrorForPath(errno, path);
  }
  file.name = FileNameFromUtf8(LastComponent(path));
  file.attributes = (file.attributes & ~kAttributeHidden) | (LastComponent(path)[0] == '.' ? kAttributeHidden : 0);
  found.push_back(std::move(file));
  return kErrorNone;
}

bool LessIgnoringCase(const FoundFile& a, const FoundFile& b) {
  const auto less = [](QXChar x, QXChar y) { return FoldCase(x) < FoldCase(y); };
  const auto& an = a.name;
  const auto& bn = b.name;
  if (EqualsIgnoringCase(an, bn)) {
    return an < bn;
  }
  return std::lexicographical_compare(an.begin(), an.end(), bn.begin(), bn.end(), less);
}

ErrorCode FindMany(TextView folderName, TextView pattern, std::vector<FoundFile>& found) {
  std::string path = ".";
  if (!folderName.empty()) {
    if (const ErrorCode error = NativePathOf(Text(folderName).c_str(), path); error != kErrorNone) {
      return error;
    }
  }
  const FolderStream entries(::opendir(path.c_str()));
  if (entries == nullptr) {
    return errno == ENOENT ? kErrorPathNotFound : ErrorFromErrno(errno);
  }
  const bool isRoot = !folderName.empty() && IsDriveRoot(path);
  while (const dirent* entry = ::readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    FoundFile file;
    if ((!isRoot || (name != "." && name != "..")) && MatchesPattern(FileNameFromUtf8(name), pattern) &&
        Describe(::dirfd(entries.get()), entry->d_name, file)) {
      found.push_back(std::move(file));
    }
  }
  std::sort(found.begin(), found.end(), LessIgnoringCase);
  return found.empty() ? kErrorFileNotFound : kErrorNone;
}

ErrorCode RenameTo(const std::string& source, const std::string& target, bool replace) {
  if (replace) {
    return ::rename(source.c_str(), target.c_str()) == 0 ? kErrorNone : ErrorForPath(errno, target);
  }
  if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
    return kErrorNone;
  }
  if (errno != ENOSYS && errno != EINVAL) {
    return errno == EEXIST ? kErrorAlreadyExists : ErrorForPath(errno, target);
  }
  struct stat status;  // a file system without that call: there a moment remains between the look and the step
  if (::lstat(target.c_str(), &status) == 0) {
    return kErrorAlreadyExists;
  }
  return ::rename(source.c_str(), target.c_str()) == 0 ? kErrorNone : ErrorForPath(errno, target);
}

ErrorCode Rename(const QXChar* from, const QXChar* to, bool replace) {
  std::string source, existing, target;
  if (const ErrorCode error = NativePathOf(from, source); error != kErrorNone) {
    return error;
  }
  if (const ErrorCode error = NativePathOf(to, existing); error != kErrorNone) {
    return error;
  }
  if (const ErrorCode error = NativePathForNew(to, target); error != kErrorNone) {
    return error;
  }
  StripTrailingSlashes(source);
  StripTrailingSlashes(existing);
  StripTrailingSlashes(target);
  struct stat sourceStatus, targetStatus;
  if (::lstat(source.c_str(), &sourceStatus) != 0) {
    return ErrorForPath(errno, source);
  }
  if (S_ISREG(sourceStatus.st_mode) && IsDeletionDenied(source)) {
    return kErrorSharingViolation;
  }
  if (::lstat(existing.c_str(), &targetStatus) == 0 && source != existing) {
    if (!replace) {
      return kErrorAlreadyExists;
    }
    if (S_ISDIR(targetStatus.st_mode)) {
      return kErrorAccessDenied;
    }
    if (S_ISREG(targetStatus.st_mode) && IsDeletionDenied(existing)) {
      return kErrorAccessDenied;
    }
    return RenameTo(source, existing, true);  // the one that exists in another case is the one to replace
  }
  return source == target ? kErrorNone : RenameTo(source, target, replace);
}

}  // namespace

ErrorCode GetPathAttributes(const QXChar* path, std::uint32_t& attributes) noexcept {
  attributes = 0;
  return WithPath(path, [&](const std::string& native) {
    NativeStatus status;
    const ErrorCode error = StatusOf(native, status);
    if (error == kErrorNone) {
      attributes = AttributesOf(status, LastComponent(native));
    }
    return error;
  });
}

ErrorCode SetReadOnly(const QXChar* path, bool readOnly) noexcept {
  return WithPath(path, [&](const std::string& native) {
    NativeStatus status;
    if (const ErrorCode error = StatusOf(native, status); error != kErrorNone) {
      return error;
    }
    const mode_t mode = readOnly ? status.mode & ~kAnybodyMayWrite : status.mode | S_IWUSR;
    return ::chmod(native.c_str(), mode & 07777) == 0 ? kErrorNone : ErrorForPath(errno, native);
  });
}

ErrorCode CheckFolderAccess(const QXChar* path) noexcept { return WithPath(path, CheckEntering); }

ErrorCode GetCurrentFolder(Text& folder) {
  folder.clear();
  const std::string path = CurrentNativeFolder();
  if (path.empty()) {
    return LastError();
  }
  return DrivePathOf(path, folder) ? kErrorNone : kErrorInvalidName;
}

ErrorCode SetCurrentFolder(const QXChar* path) noexcept {
  return WithPath(path, [](const std::string& native) {
    if (const ErrorCode error = CheckEntering(native); error != kErrorNone) {
      return error;
    }
    return ::chdir(native.c_str()) == 0 ? kErrorNone : ErrorForPath(errno, native);
  });
}

ErrorCode GetTemporaryFolder(Text& folder) {
  folder.clear();
  const char* variable = std::getenv("TMPDIR");
  std::string path = variable != nullptr && variable[0] == '/' ? variable : "/tmp";
  StripTrailingSlashes(path);
  if (!DrivePathOf(path, folder)) {
    return kErrorInvalidName;
  }
  if (folder.back() != QXT('\\')) {
    folder.push_back(QXT('\\'));
  }
  return kErrorNone;
}

ErrorCode CreateFolder(const QXChar* path) noexcept {
  return WithPath(path, [](std::string& native) {
    constexpr mode_t kOpenToAll = 0777;  // less the umask
    StripTrailingSlashes(native);
    if (::mkdir(native.c_str(), kOpenToAll) == 0) {
      return kErrorNone;
    }
    return errno == EEXIST ? kErrorAlreadyExists : errno == ENOENT ? kErrorPathNotFound : ErrorFromErrno(errno);
  });
}

ErrorCode RemoveFile(const QXChar* path) noexcept {
  return WithPath(path, [](const std::string& native) {
    struct stat status;
    if (::lstat(native.c_str(), &status) != 0) {
      return ErrorForPath(errno, native);
    }
    if (S_ISREG(status.st_mode)) {
      if ((status.st_mode & kAnybodyMayWrite) == 0) {
        return kErrorAccessDenied;
      }
      if (IsDeletionDenied(native)) {
        return kErrorSharingViolation;
      }
    }
    return ::unlink(native.c_str()) == 0 ? kErrorNone : ErrorForPath(errno, native);
  });
}

ErrorCode RemoveFolder(const QXChar* path) noexcept {
  return WithPath(path, [](std::string& native) {
    StripTrailingSlashes(native);
    if (::rmdir(native.c_str()) == 0) {
      return kErrorNone;
    }
    struct stat status;
    switch (errno) {
      case EEXIST:
        return kErrorFolderNotEmpty;
      case ENOTDIR:
        return ::lstat(native.c_str(), &status) == 0 ? kErrorNotAFolder : kErrorPathNotFound;
      default:
        return ErrorForPath(errno, native);
    }
  });
}

ErrorCode RenameFile(const QXChar* from, const QXChar* to, bool replace) noexcept {
  try {
    return Rename(from, to, replace);
  } catch (const std::bad_alloc&) {
    return kErrorNotEnoughMemory;
  }
}

ErrorCode GetFileTimes(const QXChar* path, FileTimes& times) noexcept {
  times = {};
  return WithPath(path, [&](const std::string& native) {
    NativeStatus status;
    const ErrorCode error = StatusOf(native, status);
    if (error == kErrorNone) {
      times = status.times;
    }
    return error;
  });
}

ErrorCode SetFileTimes(const QXChar* path, const FileTimes& times) noexcept {
  return WithPath(path, [&](const std::string& native) {
    const timespec values[2] = {TimeSpecOf(times.accessed), TimeSpecOf(times.written)};
    return ::utimensat(AT_FDCWD, native.c_str(), values, 0) == 0 ? kErrorNone : ErrorForPath(errno, native);
  });
}

ErrorCode FindFiles(const QXChar* pattern, std::vector<FoundFile>& found) {
  found.clear();
  if (pattern == nullptr || *pattern == 0) {
    return kErrorPathNotFound;
  }
  const TextView whole(pattern);
  if (whole.size() > kLongestName) {
    return kErrorInvalidName;
  }
  const std::size_t separator = whole.find_last_of(QXT("\\/"));
  std::size_t nameStart = separator == TextView::npos ? 0 : separator + 1;
  if (nameStart == 0 && whole.size() > 2 && whole[1] == QXT(':')) {
    nameStart = 2;  // Z:*.txt
  }
  const TextView name = whole.substr(nameStart);
  return HasWildcard(name) ? FindMany(whole.substr(0, nameStart), name, found) : FindOne(pattern, found);
}

}  // namespace qxv::os
