// resample_direct.h - blending in whole numbers straight from the rows of the source, where no row of sums is worth keeping: in a
// picture that becomes lower hardly any row is wanted twice.
//
// A row of the result is made in blocks of 8 pixels. Where the sizes have a simple ratio, blocks take and weigh their pixels in
// a few ways only, which come again and again; the last block may have one of its own.
#pragma once

#include "image/resample_fractions.h"
#include "image/resample_pairs.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace qxv {

struct DirectBlocks {
  /// How the 8 pairs of a block are made from 16 pixels of the source, or the four of each half from 8; they are all there.
  struct Way {
    std::int32_t inHalves[16];  ///< pixels, counted from where the half begins
    unsigned char bytes[64];    ///< of both pixels of each pair side by side, counted from where the block begins
    signed char counts[64];     ///< of these bytes
  };
  struct Place {
    std::int32_t block;      ///< pixel of the source where it begins
    std::int32_t halves[2];  ///< and where each half of it
  };

  std::size_t blocks = 0;  ///< from the left; fewer than the row has where one is of another kind
  std::unique_ptr<Place[]> places{};
  std::unique_ptr<unsigned char[]> ways{};  ///< of each block
  std::unique_ptr<Way[]> table{};

  /// At most a part of a block is left over.
  bool Cover(std::size_t pixels) const noexcept { return pixels - blocks * 8 < 8; }
};

/// What a row's pixels take from the source; both counts of each pixel stand beside each other.
struct WeighedPairs {
  const PixelPairs& pairs;
  const signed char* counts;
};

/// Blocks whose ways come again after so many pixels. std::bad_alloc.
DirectBlocks FindDirectBlocks(const WeighedPairs& weighed, int period);

/// Blends two rows of the source.
void BlendDirect(const WeighedPairs& weighed, const DirectBlocks& blocks, const BlendedRows& rows, const Fractions& fractions,
                 unsigned char* out) noexcept;

}  // namespace qxv
