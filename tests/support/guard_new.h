// guard_new.h - what the replaced allocation functions of every test program tell and do.
// Each array-new block ends at an inaccessible page, so one byte written or read behind it ends the program; the 16 bytes before
// it are checked at its release, as is the pairing of new with delete and new[] with delete[]. Under AddressSanitizer, which
// watches both itself, only counting and refusing remain.
#pragma once

#include <cstddef>

namespace support {

/// Bytes that the array-new expression behind this pointer asked for.
std::size_t AllocationSize(const void* arrayBlock);

/// Array-new blocks alive now in the whole program.
std::size_t LiveArrays();

/// Allocations (new and new[]) made by this thread so far.
std::size_t AllocationsOfThisThread();

/// While it lives, the allocation with this index (0 is the next one of this thread) throws std::bad_alloc; later ones succeed.
class FailAllocation {
 public:
  explicit FailAllocation(std::size_t index) noexcept;
  FailAllocation(const FailAllocation&) = delete;
  FailAllocation& operator=(const FailAllocation&) = delete;
  ~FailAllocation();

  /// Whether an allocation was refused.
  bool Refused() const noexcept;
};

}  // namespace support
