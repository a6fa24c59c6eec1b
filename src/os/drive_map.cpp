// drive_map.cpp - from drive-form names to the system's paths and back.

#include "os/drive_map.h"

#include "os/name_match.h"
#include "os/posix_open.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

namespace qxv::os {
namespace {

constexpr const char* kVariable = "QXV_DRIVES";

struct FreeBlock {
  void operator()(void* block) const noexcept { std::free(block); }
};

constexpr bool IsSeparator(QXChar unit) { return unit == QXT('\\') || unit == QXT('/'); }
constexpr bool IsLetter(int unit) { return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z'); }
constexpr QXChar UpperLetter(int unit) { return static_cast<QXChar>(unit & ~0x20); }

std::string_view WithoutTrailingSlashes(std::string_view path) {
  while (!path.empty() && path.back() == '/') {
    path.remove_suffix(1);
  }
  return path;
}

bool Exists(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0;
}

bool LiesBelow(std::string_view path, std::string_view root) {
  return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
}

const Drive* DriveOf(std::string_view path, const std::vector<Drive>& drives) {
  const Drive* best = nullptr;
  for (const Drive& drive : drives) {
    if (LiesBelow(path, drive.root) && (best == nullptr || drive.root.size() > best->root.size())) {
      best = &drive;
    }
  }
  return best;
}

struct Parsed {
  std::string base;             // "" is the root folder, "." the current one
  std::vector<TextView> parts;  // the components below it
  bool trailingSeparator = false;
};

std::vector<TextView> Split(TextView rest) {
  std::vector<TextView> parts;
  for (std::size_t at = 0; at < rest.size();) {
    std::size_t end = at;
    while (end < rest.size() && !IsSeparator(rest[end])) {
      ++end;
    }
    if (end > at) {
      parts.push_back(rest.substr(at, end - at));
    }
    at = end + 1;
  }
  return parts;
}

void ResolveDots(std::vector<TextView>& parts, bool relative) {
  std::vector<TextView> resolved;
  for (const TextView part : parts) {
    if (part == QXT(".")) {
      continue;
    }
    if (part != QXT("..")) {
      resolved.push_back(part);
    } else if (!resolved.empty() && resolved.back() != QXT("..")) {
      resolved.pop_back();
    } else if (relative) {
      resolved.push_back(part);
    }
  }
  parts.swap(resolved);
}

ErrorCode Parse(const QXChar* name, Parsed& out) {
  if (name == nullptr || *name == 0) {
    return kErrorPathNotFound;
  }
  std::size_t length = 0;
  while (name[length] != 0) {
    if (++length > kLongestName) {
      return kErrorInvalidName;
    }
  }
  TextView rest(name, length);
  if (rest.starts_with(QXT("\\\\?\\"))) {
    rest.remove_prefix(4);
    if (rest.size() < 2 || !IsLetter(rest[0]) || rest[1] != QXT(':')) {
      return kErrorBadNetPath;
    }
  }
  if (rest.size() > 1 && rest[0] == QXT('\\') && IsSeparator(rest[1])) {
    return kErrorBadNetPath;  // no share is reached by its network name
  }
  const bool asItIs = rest[0] == QXT('/');
  bool relative = false;
  if (rest.size() > 1 && IsLetter(rest[0]) && rest[1] == QXT(':')) {
    const std::vector<Drive> drives = MappedDrives();
    const auto drive =
        std::find_if(drives.begin(), drives.end(), [&](const Drive& d) { return d.letter == UpperLetter(rest[0]); });
    if (drive == drives.end()) {
      return kErrorPathNotFound;
    }
    rest.remove_prefix(2);
    if (rest.empty() || !IsSeparator(rest[0])) {
      const Drive* current = DriveOf(CurrentNativeFolder(), drives);
      relative = current != nullptr && current->letter == drive->letter;
    }
    out.base = relative ? "." : drive->root;
  } else if (!IsSeparator(rest[0])) {
    relative = true;
    out.base = ".";
  }
  out.parts = Split(rest);
  if (!asItIs) {
    ResolveDots(out.parts, relative);
  }
  out.trailingSeparator = !out.parts.empty() && IsSeparator(rest.back());
  return kErrorNone;
}

/// The entry of a folder that equals the component but for case; empty when there is none.
std::string FindEntry(const std::string& folder, TextView component) {
  const FolderStream entries(::opendir(folder.empty() ? "/" : folder.c_str()));
  std::string found;
  if (entries == nullptr) {
    return found;
  }
  while (const dirent* entry = ::readdir(entries.get())) {
    const std::string_view bytes = entry->d_name;
    if (EqualsIgnoringCase(FileNameFromUtf8(bytes), component) && (found.empty() || bytes < found)) {
      found = bytes;
    }
  }
  return found;
}

enum class Search { Nothing, AllButTheLast, All };  // components that are looked up ignoring case

ErrorCode Build(const QXChar* name, Search search, std::string& path) {
  Parsed parsed;
  if (const ErrorCode error = Parse(name, parsed); error != kErrorNone) {
    return error;
  }
  std::vector<std::string> parts(parsed.parts.size());
  std::string asGiven = parsed.base;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (!FileNameToUtf8(parsed.parts[i], parts[i])) {
      return kErrorInvalidName;
    }
    asGiven += '/';
    asGiven += parts[i];
  }
  if (asGiven.empty()) {
    asGiven = "/";
  }
  path = asGiven;
  if (search != Search::Nothing && !Exists(asGiven) && errno == ENOENT) {
    path = parsed.base;
    bool missing = false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      const std::string folder = path;
      path += '/';
      path += parts[i];
      if (missing || (search == Search::AllButTheLast && i + 1 == parts.size()) || Exists(path)) {
        continue;
      }
      const std::string entry = FindEntry(folder, parsed.parts[i]);
      missing = entry.empty();
      if (!missing) {
        path = folder + '/' + entry;
      }
    }
  }
  if (parsed.trailingSeparator) {
    path += '/';  // the system then insists on a folder
  }
  return kErrorNone;
}

}  // namespace

std::string CurrentNativeFolder() {
  std::string folder;
  char* path = ::getcwd(nullptr, 0);  // of any length
  if (path != nullptr) {
    const std::unique_ptr<char, FreeBlock> owner(path);
    folder = path;
  }
  return folder;
}

std::vector<Drive> MappedDrives() {
  std::vector<Drive> drives{{QXT('Z'), std::string()}};
  const char* variable = std::getenv(kVariable);
  std::string_view rest = variable == nullptr ? std::string_view() : std::string_view(variable);
  while (!rest.empty()) {
    const std::string_view entry = rest.substr(0, rest.find(';'));
    rest.remove_prefix(std::min(rest.size(), entry.size() + 1));
    if (entry.size() < 3 || !IsLetter(entry[0]) || entry[1] != '=' || entry[2] != '/') {
      continue;
    }
    const QXChar letter = UpperLetter(entry[0]);
    const bool taken = std::any_of(drives.begin(), drives.end(), [&](const Drive& drive) { return drive.letter == letter; });
    if (!taken) {
      drives.push_back({letter, std::string(WithoutTrailingSlashes(entry.substr(2)))});
    }
  }
  std::sort(drives.begin(), drives.end(), [](const Drive& a, const Drive& b) { return a.letter < b.letter; });
  return drives;
}

ErrorCode NativePathOf(const QXChar* name, std::string& path) { return Build(name, Search::All, path); }

ErrorCode NativePathForNew(const QXChar* name, std::string& path) { return Build(name, Search::AllButTheLast, path); }

ErrorCode NativePathAsGiven(const QXChar* name, std::string& path) { return Build(name, Search::Nothing, path); }

bool DrivePathOf(std::string_view path, Text& name) {
  if (path.empty() || path[0] != '/' || path.find('\\') != std::string_view::npos) {
    return false;
  }
  const std::vector<Drive> drives = MappedDrives();
  const Drive* drive = DriveOf(path, drives);  // Z: contains every absolute path
  name.assign({drive->letter, QXT(':')});
  const std::string_view below = path.substr(drive->root.size());
  if (below.empty()) {
    name.push_back(QXT('\\'));
  }
  for (const QXChar unit : FileNameFromUtf8(below)) {
    name.push_back(unit == QXT('/') ? QXT('\\') : unit);
  }
  return true;
}

bool IsDriveRoot(std::string_view path) {
  const std::string_view folder = WithoutTrailingSlashes(path);
  const std::vector<Drive> drives = MappedDrives();
  return std::any_of(drives.begin(), drives.end(), [&](const Drive& drive) { return drive.root == folder; });
}

ErrorCode ErrorForPath(int error, const std::string& path) noexcept {
  if (error != ENOENT) {
    return ErrorFromErrno(error);
  }
  std::string_view folder = WithoutTrailingSlashes(path);
  const std::size_t slash = folder.rfind('/');
  if (slash == std::string_view::npos || slash == 0) {
    return kErrorFileNotFound;
  }
  try {
    struct stat status;
    return ::stat(std::string(folder.substr(0, slash)).c_str(), &status) == 0 ? kErrorFileNotFound : kErrorPathNotFound;
  } catch (...) {
    return kErrorFileNotFound;
  }
}

}  // namespace qxv::os
