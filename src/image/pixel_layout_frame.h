// pixel_layout_frame.h - whole pictures between two layouts and sizes, row by row: nothing in between is larger than a few rows.
#pragma once

#include "foundation/status.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace qxv {

/// A picture in memory: rows top-down, each width x bytes a pixel and padding bytes long.
struct FrameShape {
  std::uint32_t layout = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t padding = 0;
};

/// (width x bytesPerPixel + padding) x height, exact. What needs more than 64 bits, and a negative field, gives the greatest
/// number.
std::uint64_t FrameBytes(const FrameShape& shape, unsigned bytesPerPixel) noexcept;

/// new[] of FrameBytes, not filled. std::bad_alloc for a negative field and for more than 2^31 - 1 bytes, before anything is
/// asked of the system.
std::unique_ptr<unsigned char[]> NewFrame(const FrameShape& shape, unsigned bytesPerPixel);

/// Source layout -> working layout -> (at another size) blended -> target layout; padding becomes zero.
/// A target layout without a converter receives the working layout, four bytes a pixel.
/// KEPT: Y, U and V always go through the working layout, so padding alone changes some of their values.
///   Pinned by FrameKept.YuvWithPaddingGoesThroughTheWorkingLayout.
/// Rows are packed at width x LayoutBytes + padding (4 bytes a pixel without a converter); FrameBytes of that size must be there
/// at both ends, behind them nothing is touched; no field may be negative; input and output must not overlap.
/// @return 0; 0x89601A17 for a source layout without a converter; 0x89601A16 for a source without pixels where the target has
///         some. On failure, and on std::bad_alloc for the strips, the target may be partly written.
[[nodiscard]] Status ConvertFrame(const FrameShape& from, const unsigned char* in, const FrameShape& to, unsigned char* out);

/// Rows that lie elsewhere, also bottom-up.
struct SourceRows {
  const unsigned char* top = nullptr;
  std::ptrdiff_t step = 0;  ///< bytes from a row to the one below it
};
/// The same from such rows; the padding of `from` does not count.
[[nodiscard]] Status ConvertFrame(const FrameShape& from, const SourceRows& in, const FrameShape& to, unsigned char* out);

}  // namespace qxv
