// frame_copy.cpp - a decoded frame, rows bottom-up, placed on a canvas.

#include "image/frame_copy.h"

#include <algorithm>
#include <cstring>

namespace qxv {
namespace {

// The part of 0 up to size that a frame of some length covers from start on.
struct Covered {
  std::size_t first;
  std::size_t end;  // not below first
};

Covered Cover(std::int64_t start, std::int64_t length, std::size_t size) noexcept {
  const auto last = static_cast<std::int64_t>(size);
  const std::int64_t first = std::clamp<std::int64_t>(start, 0, last);
  const std::int64_t end = std::clamp<std::int64_t>(start + length, first, last);
  return {static_cast<std::size_t>(first), static_cast<std::size_t>(end)};
}

}  // namespace

void PlaceFrame(const FrameView& frame, const FramePlace& place, std::size_t width, std::size_t height, std::size_t bytesPerPixel,
                unsigned char* canvas) noexcept {
  const Covered rows = Cover(place.top, frame.height, height);
  const Covered columns = Cover(place.left, frame.width, width);
  const std::size_t rowBytes = width * bytesPerPixel;
  const std::size_t before = columns.first * bytesPerPixel;
  const std::size_t covered = (columns.end - columns.first) * bytesPerPixel;
  std::memset(canvas, 0, rows.first * rowBytes);
  for (std::size_t y = rows.first; y < rows.end; ++y) {
    unsigned char* target = canvas + y * rowBytes;
    std::memset(target, 0, before);
    if (covered != 0) {
      const auto frameRow = static_cast<std::size_t>(frame.height - 1 - (static_cast<std::int64_t>(y) - place.top));
      const auto frameColumn = static_cast<std::size_t>(static_cast<std::int64_t>(columns.first) - place.left);
      std::memcpy(target + before, frame.bottomRow + frameRow * frame.pitch + frameColumn * bytesPerPixel, covered);
    }
    std::memset(target + before + covered, 0, rowBytes - before - covered);
  }
  std::memset(canvas + rows.end * rowBytes, 0, (height - rows.end) * rowBytes);
}

}  // namespace qxv
