// memory.h - advice about large blocks of memory.
#pragma once

#include <cstddef>

namespace qxv::os {

/// Says that a new block will be filled, so that the system may back it with large pages: a fault every 4 KiB costs more than
/// what is then done with the bytes. Changes no byte. Nothing to do for blocks below 4 MiB, and on Windows, where that takes a
/// right.
void PreferLargePages(void* block, std::size_t bytes) noexcept;

}  // namespace qxv::os
