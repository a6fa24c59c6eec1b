// pixel_layout_yuv.h - rows between Y, U, V and the working layout A, R, G, B, in single precision, every tier bit for bit alike.
// Input and output must not overlap.
#pragma once

#include <cstddef>

namespace qxv {

/// Y U V, or V U Y, a pixel.
void YuvToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
void VuyToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
/// Four bytes a pixel: any, Y, U, V.
void WideYuvToWorking(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
void WorkingToYuv(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;
void WorkingToVuy(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept;

}  // namespace qxv
