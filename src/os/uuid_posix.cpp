// uuid_posix.cpp - random identifiers from the system's generator.

#include "os/uuid.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <cerrno>

namespace qxv::os {
namespace {

bool FillFromDevice(std::span<unsigned char> bytes) {
  int descriptor;
  do {
    descriptor = ::open("/dev/urandom", O_RDONLY | O_CLOEXEC);
  } while (descriptor < 0 && errno == EINTR);
  std::size_t done = 0;
  while (descriptor >= 0 && done < bytes.size()) {
    const ssize_t count = ::read(descriptor, bytes.data() + done, bytes.size() - done);
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      break;
    }
  }
  if (descriptor >= 0) {
    (void)::close(descriptor);
  }
  return done == bytes.size();
}

bool FillRandom(std::span<unsigned char> bytes) noexcept {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::getrandom(bytes.data() + done, bytes.size() - done, 0);
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      return FillFromDevice(bytes);  // the call is missing or forbidden here
    }
  }
  return true;
}

}  // namespace

bool CreateSystemGuid(GUID& guid) noexcept { return CreateRandomGuid(FillRandom, guid); }

}  // namespace qxv::os
