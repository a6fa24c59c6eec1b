// c_stream.cpp - what the streams of both systems share.

#include "os/c_stream.h"

#include <cstring>

namespace qxv::os {

bool ParseStreamMode(const char* mode, StreamMode& parsed) noexcept {
  if (mode == nullptr || (mode[0] != 'r' && mode[0] != 'w' && mode[0] != 'a')) {
    return false;
  }
  const char* rest = mode + 1;
  const bool update = std::strcmp(rest, "b+") == 0 || std::strcmp(rest, "+b") == 0;
  if (!update && std::strcmp(rest, "b") != 0) {
    return false;
  }
  parsed = {mode[0], update};
  return true;
}

std::int64_t StreamLength(std::FILE* stream) noexcept {
  const std::int64_t position = TellStream(stream);
  if (position < 0 || !SeekStream(stream, 0, SeekOrigin::End)) {
    return -1;
  }
  const std::int64_t length = TellStream(stream);
  return SeekStream(stream, position, SeekOrigin::Begin) ? length : -1;
}

}  // namespace qxv::os
