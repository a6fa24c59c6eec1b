// resample_fractions.h - blending in whole numbers of 16 bits, where that gives every byte that the sums in single precision
// give.
//
// All weights of a side are counts of equal parts when the sizes have a simple ratio, as 2 to 3. With halves and quarters single
// precision is exact too. With an odd number of parts no exact sum lies half-way between two bytes, so both round alike as long
// as the weights in single precision are not too far from the exact ones.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace qxv {

/// The weights along one side.
struct SideWeights {
  int parts = 0;          ///< every weight is a count of 1 / parts; 0: no simple ratio
  double error = 0;       ///< how far those in single precision lie from that, a bound for a sum over both
  double reach = 1;       ///< both without their signs, at most: 1, and more where they reach beyond the source
  std::int32_t step = 0;  ///< not 0: the places are 0, step, twice that, ...

  /// Every place of the result is one of the source.
  bool Meet() const noexcept { return parts == 1 && error == 0; }
};
SideWeights WeightsOf(std::int32_t sourceSide, std::int32_t side) noexcept;

/// How a blend's weights are counted, and its sum divided by the product, rounded half up: (sum + half) x factor / 2^(16 +
/// shift).
struct Fractions {
  int columnParts = 0;  ///< 0: whole numbers may give other bytes
  int rowParts = 0;
  std::int16_t half = 0;
  std::int16_t factor = 0;
  int shift = 0;
};
Fractions FractionsFor(const SideWeights& columns, const SideWeights& rows) noexcept;

/// The byte of a sum that was not divided yet.
inline unsigned char QuotientByte(int sum, const Fractions& fractions) noexcept {
  const int product = fractions.columnParts * fractions.rowParts;
  return static_cast<unsigned char>(std::clamp(sum + fractions.half, 0, 256 * product - 1) / product);
}

/// The count of parts nearest to a weight.
int CountOfParts(float weight, int parts) noexcept;

struct BlendedRows {
  const unsigned char* first;
  const unsigned char* second;  ///< may be the same
  int firstCount;
  int secondCount;
};
/// Blends two rows of sums (resample_pairs.h).
void BlendRows(const BlendedRows& rows, const Fractions& fractions, std::size_t pixels, unsigned char* out) noexcept;

}  // namespace qxv
