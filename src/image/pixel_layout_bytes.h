// pixel_layout_bytes.h - rows whose pixels change their order of bytes only. The working layout is A, R, G, B.
// Rows of 3 bytes need not be aligned; input and output must not overlap.
#pragma once

#include <cstddef>

namespace qxv {

/// B G R A to A R G B and back.
void ReversePixels(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
/// Three bytes become four, behind a first byte of 255.
void BgrToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
void RgbToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
/// The first byte of the four is dropped.
void WorkingToBgr(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
void WorkingToRgb(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;

}  // namespace qxv
