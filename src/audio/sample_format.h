// sample_format.h - samples as bytes and as floats, without gaps between them.
#pragma once

#include <cstddef>

namespace qxv {

/// Bytes of one sample of one channel. Others exist, and stand for nothing.
constexpr bool IsSampleWidth(int width) noexcept { return width >= 1 && width <= 4; }

/// Floats of count samples.
/// @param width  1 to 4, see audio.h
void SamplesFromBytes(int width, const unsigned char* bytes, float* samples, std::size_t count) noexcept;

/// The same for a part of a result that the caches do not hold.
void SamplesFromBytesPastCaches(int width, const unsigned char* bytes, float* samples, std::size_t count) noexcept;

/// The bytes of count samples, cut towards zero; what exceeds the width wraps, what exceeds 32 bits or is no number is 0.
/// @param width  1 to 4
void BytesFromSamples(int width, const float* samples, unsigned char* bytes, std::size_t count) noexcept;

/// Floats of count pairs of 16-bit samples, the first of each pair to one place, the second to another.
void SplitPairs16(const unsigned char* bytes, float* first, float* second, std::size_t count) noexcept;

/// One sample, the rule that the functions above are tested against.
float SampleFromBytes(int width, const unsigned char* bytes) noexcept;
void ByteSample(int width, float sample, unsigned char* bytes) noexcept;

}  // namespace qxv
