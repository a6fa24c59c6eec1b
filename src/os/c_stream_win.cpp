// c_stream_win.cpp - streams of the C run-time by wide name.

#include "os/c_stream.h"

#include "os/win_api.h"
#include "os/win_name.h"

#include <cerrno>
#include <cstdlib>

namespace qxv::os {

std::FILE* OpenStream(const QXChar* name, const char* mode, ErrorCode* error) noexcept {
  StreamMode parsed;
  ErrorCode reason = CheckName(name);
  if (!ParseStreamMode(mode, parsed)) {
    reason = kErrorInvalidParameter;
  }
  std::FILE* stream = nullptr;
  if (reason == kErrorNone) {
    const wchar_t wideMode[] = {static_cast<wchar_t>(parsed.kind), L'b', parsed.update ? L'+' : L'\0', L'\0'};
    errno = 0;
    stream = ::_wfopen(name, wideMode);
    if (stream == nullptr) {
      reason = _doserrno != 0 ? static_cast<ErrorCode>(_doserrno) : ErrorFromErrno(errno);
    }
  }
  if (error != nullptr) {
    *error = reason;
  }
  return stream;
}

bool SeekStream(std::FILE* stream, std::int64_t offset, SeekOrigin origin) noexcept {
  const int whence = origin == SeekOrigin::Begin ? SEEK_SET : origin == SeekOrigin::Current ? SEEK_CUR : SEEK_END;
  return stream != nullptr && ::_fseeki64(stream, offset, whence) == 0;
}

std::int64_t TellStream(std::FILE* stream) noexcept { return stream == nullptr ? -1 : ::_ftelli64(stream); }

bool StreamIsFolder(std::FILE*) noexcept { return false; }  // the run-time opens none

}  // namespace qxv::os
