// posix_share.cpp - the share modes of Windows as shared byte locks behind any possible end of a file.
// A lock belongs to the opened file description: it ends with the last duplicate, and a crashed process leaves none behind.
// Each byte that somebody has locked says one thing about him:
//   0 he reads   1 he writes   2 he denies reading   3 he denies writing   4 he denies deletion

#include "os/posix_open.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace qxv::os {
namespace {

constexpr off_t kFirstByte = 0x7FFFFFFFFFFFFF00;
constexpr unsigned kReads = 1u << 0;
constexpr unsigned kWrites = 1u << 1;
constexpr unsigned kDeniesReading = 1u << 2;
constexpr unsigned kDeniesWriting = 1u << 3;
constexpr unsigned kDeniesDeletion = 1u << 4;
constexpr int kMarks = 5;

struct flock LockOf(int mark, short type) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kFirstByte + mark;
  lock.l_len = 1;
  return lock;
}

bool IsMarkedByOthers(int descriptor, int mark) {
  struct flock lock = LockOf(mark, F_WRLCK);  // what would stand against an exclusive lock
  return ::fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

void RemoveMarks(int descriptor) {
  struct flock lock = LockOf(0, F_UNLCK);
  lock.l_len = kMarks;
  (void)::fcntl(descriptor, F_OFD_SETLK, &lock);
}

/// Keeps two openers from seeing each other's marks half made, for as long as they keep to it: whoever holds the lock for himself
/// delays us by 10 ms only, and both then fail rather than both succeed.
class OpeningGate {
 public:
  explicit OpeningGate(int descriptor) noexcept : m_descriptor(descriptor) {
    constexpr int kTries = 50;
    for (int i = 0; i < kTries && !m_held; ++i) {
      m_held = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
      if (!m_held && errno != EWOULDBLOCK && errno != EINTR) {
        return;
      }
      if (!m_held) {
        const timespec pause{0, 200'000};
        (void)::nanosleep(&pause, nullptr);
      }
    }
  }
  OpeningGate(const OpeningGate&) = delete;
  OpeningGate& operator=(const OpeningGate&) = delete;
  ~OpeningGate() {
    if (m_held) {
      (void)::flock(m_descriptor, LOCK_UN);
    }
  }

 private:
  int m_descriptor;
  bool m_held = false;
};

}  // namespace

ErrorCode TakeShareMarks(int descriptor, FileAccess access, unsigned share) noexcept {
  const bool reads = access == FileAccess::Read || access == FileAccess::ReadWrite;
  const bool writes = access != FileAccess::Read;
  const unsigned marks = (reads ? kReads : 0u) | (writes ? kWrites : 0u) | ((share & kShareRead) != 0 ? 0u : kDeniesReading) |
                         ((share & kShareWrite) != 0 ? 0u : kDeniesWriting) |
                         ((share & kShareDelete) != 0 ? 0u : kDeniesDeletion);
  const unsigned against = (reads ? kDeniesReading : 0u) | (writes ? kDeniesWriting : 0u) |
                           ((share & kShareRead) != 0 ? 0u : kReads) | ((share & kShareWrite) != 0 ? 0u : kWrites);
  const OpeningGate gate(descriptor);
  for (int mark = 0; mark < kMarks; ++mark) {
    if ((marks >> mark & 1) == 0) {
      continue;
    }
    struct flock lock = LockOf(mark, F_RDLCK);
    if (::fcntl(descriptor, F_OFD_SETLK, &lock) != 0) {
      const bool foreign = errno == EAGAIN || errno == EACCES;  // somebody else's exclusive lock
      RemoveMarks(descriptor);
      return foreign ? kErrorSharingViolation : kErrorNone;  // without locks on this file system everything is shared
    }
  }
  for (int mark = 0; mark < kMarks; ++mark) {
    if ((against >> mark & 1) != 0 && IsMarkedByOthers(descriptor, mark)) {
      RemoveMarks(descriptor);
      return kErrorSharingViolation;
    }
  }
  return kErrorNone;
}

bool IsDeletionDenied(const std::string& path) noexcept {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW);
  if (descriptor < 0) {
    return false;
  }
  const bool denied = IsMarkedByOthers(descriptor, 4);
  (void)::close(descriptor);
  return denied;
}

}  // namespace qxv::os
