// resample_kernels.h - the inner loop of resampling in single precision. A pair is 8 bytes: two pixels of the source that one of
// the result lies between.
#pragma once

#include <cstddef>

namespace qxv {

/// Of two source rows, the weights of the columns (pixels of first ones, then as many of second ones) and of the two rows. Where
/// both rows are one and the same, that row has weight 1.
void BlendPairs(const unsigned char* first, const unsigned char* second, const float* columnWeights, float firstWeight,
                float secondWeight, std::size_t pixels, unsigned char* out) noexcept;

}  // namespace qxv
