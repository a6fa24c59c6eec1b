// memory_win.cpp - large pages need a right that programs do not have.

#include "os/memory.h"

namespace qxv::os {

void PreferLargePages(void* /*block*/, std::size_t /*bytes*/) noexcept {}

}  // namespace qxv::os
