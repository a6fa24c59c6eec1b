// full_path_posix.cpp - through the drive map and back.

#include "os/full_path.h"

#include "os/drive_map.h"

#include <filesystem>
#include <string>

namespace qxv::os {

ErrorCode GetFullPath(const QXChar* name, Text& path) {
  std::string native;
  if (const ErrorCode error = NativePathForNew(name, native); error != kErrorNone) {
    return error;
  }
  if (native.empty() || native.front() != '/') {
    native = std::filesystem::path(CurrentNativeFolder() + '/' + native).lexically_normal().native();
  }
  Text full;
  if (!DrivePathOf(native, full)) {
    return kErrorInvalidName;
  }
  path.swap(full);
  return kErrorNone;
}

}  // namespace qxv::os
