// frame_copy.h - a decoded frame, rows bottom-up, placed on a canvas.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qxv {

/// A frame as FreeImage holds it.
struct FrameView {
  const unsigned char* bottomRow;
  std::size_t pitch;  // bytes from a row to the one above it
  std::int64_t width;
  std::int64_t height;
};

/// The upper left corner of a frame on the canvas, also outside of it; up to 2^62 either way.
struct FramePlace {
  std::int64_t left = 0;
  std::int64_t top = 0;
};

/// Fills width x height pixels, rows top-down without padding: the frame where it lies on the canvas, zeros elsewhere. Bytes
/// between the rows of the frame are never copied.
void PlaceFrame(const FrameView& frame, const FramePlace& place, std::size_t width, std::size_t height, std::size_t bytesPerPixel,
                unsigned char* canvas) noexcept;

}  // namespace qxv
