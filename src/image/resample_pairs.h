// resample_pairs.h - the two pixels of a source row that each pixel of a result row lies between, brought together or blended.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace qxv {

inline constexpr std::size_t kPairBytes = 8;

struct PixelPairs {
  std::size_t step = 0;  ///< not 0: the firsts are 0, step, ..., of step times as many; GatherFirsts asks for no places then
  std::unique_ptr<std::int32_t[]> places{};  ///< for each pixel of the result two of the source row, both rising
  std::size_t pixels = 0;                    ///< of the result
  std::size_t sourcePixels = 0;

  // What FindBlocks finds.
  std::size_t blocks = 0;  ///< of four pixels, from the left, whose pairs lie within 8 pixels of the source
  std::unique_ptr<std::int32_t[]> blockPlaces{};  ///< where these 8 pixels begin
  std::unique_ptr<unsigned char[]> inBlock{};     ///< of both pixels of each pair the place among them
};

/// The places and both counts of pixels must be there. std::bad_alloc.
void FindBlocks(PixelPairs& pairs);

/// Both pixels of each pair: kPairBytes for each pixel of the result.
void GatherPairs(const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept;

/// The sum of both by two whole numbers for each pixel of the result, in 16 bits a channel: as many bytes.
void GatherSums(const PixelPairs& pairs, const signed char* counts, const unsigned char* row, unsigned char* out) noexcept;

/// The first pixel of each pair.
void GatherFirsts(const PixelPairs& pairs, const unsigned char* row, unsigned char* out) noexcept;

}  // namespace qxv
