// gif_colours.h - the fixed palette of GIF files, and the entry that a pixel takes.
// An entry's index has red in its upper three bits, green in the next three and blue in the lowest two.
#pragma once

#include <array>
#include <cstddef>

namespace qxv {

/// Red, green, blue of each index.
std::array<unsigned char, std::size_t{256} * 3> GifPalette() noexcept;

/// count pixels of B, G, R to as many indices.
void MapToGifPalette(const unsigned char* pixels, std::size_t count, unsigned char* indices) noexcept;

}  // namespace qxv
