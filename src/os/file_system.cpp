// file_system.cpp - what both systems do alike.

#include "os/file_system.h"

namespace qxv::os {
namespace {

constexpr bool IsSeparator(QXChar unit) { return unit == QXT('\\') || unit == QXT('/'); }

/// The length of what cannot be created: a drive's root, or the server and share of a network path.
std::size_t RootLength(TextView path) {
  if (path.size() >= 2 && path[1] == QXT(':')) {
    return path.size() >= 3 && IsSeparator(path[2]) ? 3 : 0;
  }
  if (path.empty() || !IsSeparator(path[0])) {
    return 0;
  }
  if (path.size() < 2 || !IsSeparator(path[1])) {
    return 1;
  }
  std::size_t at = path.find_first_of(QXT("\\/"), 2);
  at = at == TextView::npos ? at : path.find_first_of(QXT("\\/"), at + 1);
  return at == TextView::npos ? path.size() : at + 1;
}

}  // namespace

ErrorCode CreateFolders(const QXChar* path) {
  if (path == nullptr || *path == 0) {
    return kErrorPathNotFound;
  }
  Text folder(path);
  const std::size_t root = RootLength(folder);
  if (root == 0) {
    return kErrorBadPathName;
  }
  while (folder.size() > root && IsSeparator(folder.back())) {
    folder.pop_back();
  }
  const ErrorCode direct = CreateFolder(folder.c_str());
  if (direct != kErrorPathNotFound) {
    return direct;  // made, there, or not to be had for another reason
  }
  for (std::size_t end = root; end < folder.size(); ++end) {
    if (!IsSeparator(folder[end])) {
      continue;
    }
    const Text parent = folder.substr(0, end);
    std::uint32_t attributes = 0;
    if (GetPathAttributes(parent.c_str(), attributes) == kErrorNone) {
      if ((attributes & kAttributeFolder) == 0) {
        return kErrorPathNotFound;
      }
      continue;
    }
    // Another process may have made it in between.
    if (const ErrorCode error = CreateFolder(parent.c_str()); error != kErrorNone && error != kErrorAlreadyExists) {
      return error;
    }
  }
  return CreateFolder(folder.c_str());
}

}  // namespace qxv::os
