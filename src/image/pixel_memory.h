// pixel_memory.h - the buffers that pictures and frames stand in.
#pragma once

#include "os/memory.h"

#include <cstdint>
#include <memory>

namespace qxv {

/// Room for so many bytes of pixels that will all be written (std::bad_alloc without memory).
[[nodiscard]] inline std::unique_ptr<unsigned char[]> NewPixels(std::uint64_t bytes) {
  const auto size = static_cast<std::size_t>(bytes);
  std::unique_ptr<unsigned char[]> pixels(new unsigned char[size]);
  os::PreferLargePages(pixels.get(), size);
  return pixels;
}

}  // namespace qxv
