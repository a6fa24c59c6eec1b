// full_disk_posix.cpp - a limit on the size of files, a disk in memory in a mount namespace of its own.

#include "support/full_disk.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <csignal>
#include <string>

namespace support {

FileSizeLimit::FileSizeLimit(std::uint64_t bytes) {
  (void)std::signal(SIGXFSZ, SIG_IGN);  // the write fails instead
  rlimit limit{};
  (void)::getrlimit(RLIMIT_FSIZE, &limit);
  m_before = limit.rlim_cur;
  limit.rlim_cur = bytes;
  (void)::setrlimit(RLIMIT_FSIZE, &limit);
}

FileSizeLimit::~FileSizeLimit() {
  rlimit limit{};
  (void)::getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = m_before;
  (void)::setrlimit(RLIMIT_FSIZE, &limit);
}

SmallDisk::SmallDisk(const std::filesystem::path& folder, unsigned kibibytes) : m_folder(folder) {
  const std::string size = "size=" + std::to_string(kibibytes) + "k";
  m_mounted = ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              ::mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

SmallDisk::~SmallDisk() {
  if (m_mounted) {
    (void)::umount2(m_folder.c_str(), MNT_DETACH);
  }
}

}  // namespace support
