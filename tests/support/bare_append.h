// bare_append.h - the least that adds a block to a file: open, write, close. Linux only.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace support {

/// True when the whole block was written.
/// @param seek  asks for the end before, as whoever wants to know whether the file is empty
inline bool BareAppend(const char* path, const std::string& block, bool seek) {
  const int descriptor = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (seek && ::lseek(descriptor, 0, SEEK_END) < 0) {
    return false;
  }
  const bool written = descriptor >= 0 && ::write(descriptor, block.data(), block.size()) == static_cast<ssize_t>(block.size());
  return descriptor >= 0 && ::close(descriptor) == 0 && written;
}

}  // namespace support
