// pcx_planes.h - three planes of a row and its pixels of three bytes.
#pragma once

#include <cstddef>

namespace qxv {

/// out receives 3 x pixels bytes: a byte of each plane by turns.
void JoinPlanes(const unsigned char* first, const unsigned char* second, const unsigned char* third, std::size_t pixels,
                unsigned char* out) noexcept;

/// The reverse: each plane receives pixels bytes.
void SplitPlanes(const unsigned char* in, std::size_t pixels, unsigned char* first, unsigned char* second,
                 unsigned char* third) noexcept;

}  // namespace qxv
