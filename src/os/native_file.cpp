// native_file.cpp - a small file of the system read whole.

#include "os/native_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace qxv::os {
namespace {

class Descriptor {
 public:
  // Without waiting for the other side of a FIFO.
  explicit Descriptor(const std::string& path) noexcept
      : m_number(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_number >= 0) {
      (void)::close(m_number);
    }
  }

  bool IsRegularFile() const noexcept {
    struct stat status {};
    return m_number >= 0 && ::fstat(m_number, &status) == 0 && S_ISREG(status.st_mode);
  }

  ssize_t Read(char* bytes, std::size_t count) const noexcept {
    ssize_t done;
    do {
      done = ::read(m_number, bytes, count);
    } while (done < 0 && errno == EINTR);
    return done;
  }

 private:
  int m_number;
};

}  // namespace

bool ReadNativeFile(const std::string& path, std::size_t mostBytes, std::string& bytes) {
  bytes.clear();
  const Descriptor file(path);
  if (!file.IsRegularFile()) {
    return false;
  }
  char piece[4096];
  ssize_t count = 0;
  while ((count = file.Read(piece, sizeof piece)) > 0 && bytes.size() + static_cast<std::size_t>(count) <= mostBytes) {
    bytes.append(piece, static_cast<std::size_t>(count));
  }
  if (count != 0) {
    bytes.clear();
  }
  return count == 0;
}

}  // namespace qxv::os
