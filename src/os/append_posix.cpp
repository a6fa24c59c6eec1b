// append_posix.cpp - open, look at the end, write, close: no share marks, and no look at the name before the open itself.

#include "os/append.h"

#include "os/drive_map.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>

namespace qxv::os {
namespace {

// Without waiting for a FIFO's reader; regular files do not care.
constexpr int kFlags = O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

int OpenRetrying(const std::string& path, int flags) {
  constexpr mode_t kReadableAndWritable = 0666;  // less the umask
  int descriptor;
  do {
    descriptor = ::open(path.c_str(), flags, kReadableAndWritable);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

ErrorCode OpenForAppending(const Text& name, const std::string& path, int& descriptor) {
  descriptor = OpenRetrying(path, kFlags);
  if (descriptor >= 0) {
    return kErrorNone;
  }
  std::string found = path;
  if (errno == ENOENT) {  // missing, or there in another case
    if (const ErrorCode error = NativePathOf(name.c_str(), found); error != kErrorNone) {
      return error;
    }
    descriptor = OpenRetrying(found, kFlags | O_CREAT);
  }
  return descriptor >= 0 ? kErrorNone : errno == ENXIO ? kErrorAccessDenied : ErrorForPath(errno, found);
}

ErrorCode WriteBlock(int descriptor, std::span<const unsigned char> block, std::size_t openingBytes) {
  const off_t end = ::lseek(descriptor, 0, SEEK_END);
  if (end < 0) {
    return errno == ESPIPE ? kErrorAccessDenied : LastError();
  }
  if (end > 0) {
    block = block.subspan(openingBytes);
  }
  ssize_t count;
  do {
    count = ::write(descriptor, block.data(), block.size());  // placed and written under one lock of the system
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    return LastError();
  }
  return static_cast<std::size_t>(count) == block.size() ? kErrorNone : kErrorDiskFull;
}

}  // namespace

ErrorCode AppendFile::SetName(const QXChar* name) {
  m_path.clear();
  std::string path;
  if (const ErrorCode error = NativePathAsGiven(name, path); error != kErrorNone) {
    return error;
  }
  m_name = name;
  m_path.swap(path);
  return kErrorNone;
}

ErrorCode AppendFile::Append(std::span<const unsigned char> block, std::size_t openingBytes) const noexcept {
  if (m_path.empty()) {
    return kErrorPathNotFound;
  }
  try {
    int descriptor = -1;
    if (const ErrorCode error = OpenForAppending(m_name, m_path, descriptor); error != kErrorNone) {
      return error;
    }
    const ErrorCode error = WriteBlock(descriptor, block, openingBytes);
    (void)::close(descriptor);
    return error;
  } catch (const std::bad_alloc&) {
    return kErrorNotEnoughMemory;
  }
}

}  // namespace qxv::os
