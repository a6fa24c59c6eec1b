// file_posix.cpp - files as descriptors behind numbered handles.

#include "os/file.h"

#include "os/drive_map.h"
#include "os/posix_open.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <new>

namespace qxv::os {
namespace {

constexpr std::size_t kLargestTransfer = 0x7FFFF000;  // what one read or write moves at most

/// The last component of an open file's path, for its hidden bit; empty when the system does not tell.
std::string_view NameOf(int descriptor, std::span<char> buffer) {
  char link[32];
  (void)std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
  const ssize_t length = ::readlink(link, buffer.data(), buffer.size());
  if (length <= 0) {
    return {};
  }
  const std::string_view path(buffer.data(), static_cast<std::size_t>(length));
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

ErrorCode OpenFileNamed(const QXChar* name, const OpenOptions& options, HANDLE& file) noexcept {
  file = INVALID_HANDLE_VALUE;
  try {
    std::string path;
    if (const ErrorCode error = NativePathOf(name, path); error != kErrorNone) {
      return error;
    }
    int descriptor = -1;
    if (const ErrorCode error = OpenDescriptor(path, options, descriptor); error != kErrorNone) {
      return error;
    }
    file = MakeHandle(descriptor, options.access);
    if (file == INVALID_HANDLE_VALUE) {
      (void)::close(descriptor);
      return kErrorTooManyOpenFiles;
    }
    return kErrorNone;
  } catch (const std::bad_alloc&) {
    return kErrorNotEnoughMemory;
  }
}

ErrorCode DuplicateFile(HANDLE file, HANDLE& copy) noexcept {
  copy = INVALID_HANDLE_VALUE;
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  const int descriptor = ::fcntl(pinned.Descriptor(), F_DUPFD_CLOEXEC, 0);
  if (descriptor < 0) {
    return LastError();
  }
  copy = MakeHandle(descriptor, pinned.Access());
  if (copy == INVALID_HANDLE_VALUE) {
    (void)::close(descriptor);
    return kErrorTooManyOpenFiles;
  }
  return kErrorNone;
}

ErrorCode ReadFromFile(HANDLE file, std::span<unsigned char> bytes, std::size_t& done) noexcept {
  done = 0;
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  if (!pinned.MayRead()) {
    return kErrorAccessDenied;
  }
  if (bytes.data() == nullptr && !bytes.empty()) {
    return kErrorInvalidParameter;
  }
  while (done < bytes.size()) {
    const ssize_t count = ::read(pinned.Descriptor(), bytes.data() + done, std::min(bytes.size() - done, kLargestTransfer));
    if (count == 0) {
      break;
    }
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      return LastError();
    }
  }
  return kErrorNone;
}

ErrorCode WriteToFile(HANDLE file, std::span<const unsigned char> bytes, std::size_t& done) noexcept {
  done = 0;
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  if (!pinned.MayAppend()) {
    return kErrorAccessDenied;
  }
  if (bytes.data() == nullptr && !bytes.empty()) {
    return kErrorInvalidParameter;
  }
  while (done < bytes.size()) {
    const ssize_t count = ::write(pinned.Descriptor(), bytes.data() + done, std::min(bytes.size() - done, kLargestTransfer));
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0) {
      return kErrorDiskFull;
    } else if (errno != EINTR) {
      return LastError();
    }
  }
  return kErrorNone;
}

ErrorCode AppendToFile(HANDLE file, std::span<const unsigned char> block) noexcept {
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  if (pinned.Access() != FileAccess::Append) {
    return kErrorAccessDenied;
  }
  if ((block.data() == nullptr && !block.empty()) || block.size() > kLargestTransfer) {
    return kErrorInvalidParameter;
  }
  if (block.empty()) {
    return kErrorNone;
  }
  ssize_t count;
  do {
    count =
        ::write(pinned.Descriptor(), block.data(), block.size());  // O_APPEND: placed and written under one lock of the system
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    return LastError();
  }
  return static_cast<std::size_t>(count) == block.size() ? kErrorNone : kErrorDiskFull;
}

ErrorCode SeekInFile(HANDLE file, std::int64_t offset, SeekOrigin origin, std::int64_t* position) noexcept {
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  const int whence = origin == SeekOrigin::Begin ? SEEK_SET : origin == SeekOrigin::Current ? SEEK_CUR : SEEK_END;
  const off_t reached = ::lseek(pinned.Descriptor(), offset, whence);
  if (reached < 0) {
    return errno == EINVAL || errno == EOVERFLOW ? kErrorNegativeSeek : LastError();
  }
  if (position != nullptr) {
    *position = reached;
  }
  return kErrorNone;
}

ErrorCode GetFileLength(HANDLE file, std::int64_t& length) noexcept {
  length = 0;
  const PinnedFile pinned(file);
  struct stat status;
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  if (::fstat(pinned.Descriptor(), &status) != 0) {
    return LastError();
  }
  length = S_ISREG(status.st_mode) ? status.st_size : 0;
  return kErrorNone;
}

ErrorCode CutFile(HANDLE file) noexcept {
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  if (!pinned.MayWrite()) {
    return kErrorAccessDenied;
  }
  const off_t position = ::lseek(pinned.Descriptor(), 0, SEEK_CUR);
  int result;
  do {
    result = position < 0 ? -1 : ::ftruncate(pinned.Descriptor(), position);
  } while (result != 0 && errno == EINTR);
  return result == 0 ? kErrorNone : LastError();
}

ErrorCode GetFileInformation(HANDLE file, FileInformation& information) noexcept {
  information = {};
  const PinnedFile pinned(file);
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  NativeStatus status;
  if (!ReadStatus(pinned.Descriptor(), "", AT_EMPTY_PATH, status)) {
    return LastError();
  }
  char buffer[PATH_MAX];
  information.attributes = AttributesOf(status, NameOf(pinned.Descriptor(), buffer));
  information.size = S_ISREG(status.mode) ? status.size : 0;
  information.times = status.times;
  information.volume = status.device;
  information.index = status.inode;
  return kErrorNone;
}

ErrorCode FileView::Map(HANDLE file) noexcept {
  Unmap();
  const PinnedFile pinned(file);
  struct stat status;
  if (!pinned.IsOpen()) {
    return kErrorInvalidHandle;
  }
  if (!pinned.MayRead()) {
    return kErrorAccessDenied;
  }
  if (::fstat(pinned.Descriptor(), &status) != 0) {
    return LastError();
  }
  if (!S_ISREG(status.st_mode)) {
    return kErrorAccessDenied;
  }
  if (status.st_size == 0) {
    return kErrorEmptyFile;
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  void* view = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, pinned.Descriptor(), 0);
  if (view == MAP_FAILED) {
    return LastError();
  }
  m_data = static_cast<const unsigned char*>(view);
  m_size = size;
  return kErrorNone;
}

void FileView::Unmap() noexcept {
  if (m_data != nullptr) {
    (void)::munmap(const_cast<unsigned char*>(m_data), m_size);
  }
  m_data = nullptr;
  m_size = 0;
}

}  // namespace qxv::os
