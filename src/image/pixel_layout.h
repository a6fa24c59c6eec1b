// pixel_layout.h - bytes a pixel of each layout (layout_codes.h) and rows to and from the working layout A, R, G, B.
#pragma once

#include "image/layout_codes.h"

#include <cstddef>
#include <cstdint>

namespace qxv {

inline constexpr unsigned kWorkingBytes = 4;

/// 3 for B G R and V U Y, 4 for B G R A and the layouts 32, 64 and 128, else 0x89601A17 as a number.
// KEPT: Y U V and R G B have no size here, though their pixels have three bytes; applications see that answer.
//   Pinned by PixelLayoutKept.YuvAndRgbHaveNoSizeInTheLookup.
std::uint32_t LayoutBytesLookup(std::uint32_t layout) noexcept;

/// Bytes a pixel as they lie in memory: the lookup's answer, 3 for Y U V and R G B, 0 for a layout that has no size at all.
unsigned LayoutBytes(std::uint32_t layout) noexcept;

/// Converts a row, or a part of one. Input and output must not overlap.
using RowConverter = void (*)(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;

/// Null for a layout without a converter.
RowConverter ToWorking(std::uint32_t layout) noexcept;
RowConverter FromWorking(std::uint32_t layout) noexcept;

/// The way of a row whose picture changes its size: first widened to four bytes a pixel, then blended, then finished into the
/// working layout. What only changes places may be done on either side of the blending; Y, U and V are blended as they are.
struct ResizedRow {
  RowConverter widen = nullptr;   ///< null: the pixels have four bytes already
  RowConverter finish = nullptr;  ///< null: widening gave the working layout
};
/// Only for layouts that ToWorking knows.
ResizedRow ResizedToWorking(std::uint32_t layout) noexcept;

}  // namespace qxv
