// memory_posix.cpp - the whole pages of a block get the advice; a kernel without large pages refuses it, which harms nobody.

#include "os/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace qxv::os {

void PreferLargePages(void* block, std::size_t bytes) noexcept {
  constexpr std::size_t kLeast = std::size_t{4} << 20;
  if (bytes < kLeast) {
    return;
  }
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t start = (place + page - 1) / page * page;
  const std::uintptr_t end = (place + bytes) / page * page;
  const int error = errno;
  (void)::madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
  errno = error;
}

}  // namespace qxv::os
