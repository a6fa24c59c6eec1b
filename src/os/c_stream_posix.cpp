// c_stream_posix.cpp - streams over descriptors that were opened by our rules.

#include "os/c_stream.h"

#include "os/drive_map.h"
#include "os/posix_open.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>

namespace qxv::os {
namespace {

OpenOptions OptionsOf(const StreamMode& mode) {
  OpenOptions options;
  options.share = kShareRead | kShareWrite;
  switch (mode.kind) {
    case 'r':
      options.access = mode.update ? FileAccess::ReadWrite : FileAccess::Read;
      break;
    case 'w':
      options.access = mode.update ? FileAccess::ReadWrite : FileAccess::Write;
      options.disposition = FileDisposition::CreateAlways;
      break;
    default:
      options.access = FileAccess::Append;
      options.disposition = FileDisposition::OpenAlways;
      break;
  }
  return options;
}

std::FILE* Open(const QXChar* name, const char* mode, ErrorCode& error) {
  StreamMode parsed;
  if (!ParseStreamMode(mode, parsed)) {
    error = kErrorInvalidParameter;
    return nullptr;
  }
  std::string path;
  int descriptor = -1;
  error = NativePathOf(name, path);
  if (error == kErrorNone) {
    error = OpenDescriptor(path, OptionsOf(parsed), descriptor);
  }
  if (error != kErrorNone) {
    return nullptr;
  }
  const char streamMode[] = {parsed.kind, parsed.update ? '+' : '\0', '\0'};
  std::FILE* stream = ::fdopen(descriptor, streamMode);
  if (stream == nullptr) {
    error = LastError();
    (void)::close(descriptor);
  }
  return stream;
}

}  // namespace

std::FILE* OpenStream(const QXChar* name, const char* mode, ErrorCode* error) noexcept {
  ErrorCode reason = kErrorNone;
  std::FILE* stream = nullptr;
  try {
    stream = Open(name, mode, reason);
  } catch (const std::bad_alloc&) {
    reason = kErrorNotEnoughMemory;
  }
  if (error != nullptr) {
    *error = reason;
  }
  return stream;
}

bool SeekStream(std::FILE* stream, std::int64_t offset, SeekOrigin origin) noexcept {
  const int whence = origin == SeekOrigin::Begin ? SEEK_SET : origin == SeekOrigin::Current ? SEEK_CUR : SEEK_END;
  return stream != nullptr && ::fseeko(stream, offset, whence) == 0;
}

std::int64_t TellStream(std::FILE* stream) noexcept { return stream == nullptr ? -1 : ::ftello(stream); }

bool StreamIsFolder(std::FILE* stream) noexcept {
  struct stat status;
  return stream != nullptr && ::fstat(::fileno(stream), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace qxv::os
