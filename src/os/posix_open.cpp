// posix_open.cpp - open(2) with the rules that CreateFileW has: kinds of files, share modes before anything is destroyed.

#include "os/posix_open.h"

#include "os/clock.h"
#include "os/drive_map.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace qxv::os {
namespace {

int FlagsOf(const OpenOptions& options) {
  // Whoever writes also opens for reading where he may: a shared lock wants a readable descriptor. The handle remembers the
  // access.
  int flags = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;  // a FIFO must not stop us before it can be refused
  if (options.access != FileAccess::Read || options.disposition == FileDisposition::CreateAlways) {
    flags |= O_RDWR;
  }
  if (options.access == FileAccess::Append) {
    flags |= O_APPEND;
  }
  if (options.disposition != FileDisposition::OpenExisting) {
    flags |= O_CREAT;
  }
  if (options.disposition == FileDisposition::CreateNew) {
    flags |= O_EXCL;
  }
  return flags;
}

int OpenRetrying(const char* path, int flags) {
  constexpr mode_t kReadableAndWritable = 0666;  // less the umask
  int descriptor;
  do {
    descriptor = ::open(path, flags, kReadableAndWritable);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

ErrorCode Admit(int descriptor, const OpenOptions& options) {
  struct stat status;
  if (::fstat(descriptor, &status) != 0) {
    return LastError();
  }
  if (S_ISDIR(status.st_mode)) {
    return options.folder && options.access == FileAccess::Read ? kErrorNone : kErrorAccessDenied;
  }
  if (S_ISCHR(status.st_mode)) {
    const int flags = ::fcntl(descriptor, F_GETFL);
    const bool ready = options.access != FileAccess::Read && flags >= 0 && ::fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) == 0;
    return ready ? kErrorNone : kErrorAccessDenied;
  }
  if (!S_ISREG(status.st_mode)) {
    return kErrorAccessDenied;
  }
  if (const ErrorCode error = TakeShareMarks(descriptor, options.access, options.share); error != kErrorNone) {
    return error;
  }
  if (options.disposition == FileDisposition::CreateAlways && ::ftruncate(descriptor, 0) != 0) {
    return LastError();
  }
  return kErrorNone;
}

FILETIME TimeOf(const struct statx_timestamp& time) { return FileTimeOf(time.tv_sec, time.tv_nsec); }
FILETIME TimeOf(const struct timespec& time) { return FileTimeOf(time.tv_sec, time.tv_nsec); }

}  // namespace

ErrorCode OpenDescriptor(const std::string& path, const OpenOptions& options, int& descriptor) noexcept {
  const int flags = FlagsOf(options);
  int opened = OpenRetrying(path.c_str(), flags);
  if (opened < 0 && errno == EACCES && (options.access == FileAccess::Write || options.access == FileAccess::Append)) {
    opened = OpenRetrying(path.c_str(), (flags & ~O_RDWR) | O_WRONLY);  // a file that we may write but not read: no share marks
  }
  descriptor = -1;
  if (opened < 0) {
    return errno == ENXIO ? kErrorAccessDenied : ErrorForPath(errno, path);
  }
  if (const ErrorCode error = Admit(opened, options); error != kErrorNone) {
    (void)::close(opened);
    return error;
  }
  descriptor = opened;
  return kErrorNone;
}

bool ReadStatus(int folder, const char* path, int flags, NativeStatus& status) noexcept {
  struct statx extended;
  if (::statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &extended) == 0) {
    status.mode = extended.stx_mode;
    status.size = extended.stx_size;
    status.device = static_cast<std::uint64_t>(extended.stx_dev_major) << 32 | extended.stx_dev_minor;
    status.inode = extended.stx_ino;
    const bool bornKnown = (extended.stx_mask & STATX_BTIME) != 0;
    status.times = {TimeOf(bornKnown ? extended.stx_btime : extended.stx_mtime), TimeOf(extended.stx_atime),
                    TimeOf(extended.stx_mtime)};
    return true;
  }
  if (errno != ENOSYS && errno != EPERM) {  // refused by a sandbox that knows the older call only
    return false;
  }
  struct stat plain;
  if (::fstatat(folder, path, &plain, flags) != 0) {
    return false;
  }
  status.mode = plain.st_mode;
  status.size = static_cast<std::uint64_t>(plain.st_size);
  status.device = plain.st_dev;
  status.inode = plain.st_ino;
  status.times = {TimeOf(plain.st_mtim), TimeOf(plain.st_atim), TimeOf(plain.st_mtim)};
  return true;
}

std::uint32_t AttributesOf(const NativeStatus& status, std::string_view name) noexcept {
  std::uint32_t attributes = S_ISDIR(status.mode) ? kAttributeFolder : kAttributeArchive;
  if ((status.mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    attributes |= kAttributeReadOnly;
  }
  if (name.size() > 1 && name[0] == '.' && name != "..") {
    attributes |= kAttributeHidden;
  }
  return attributes;
}

}  // namespace qxv::os
