// resample.cpp - where each pixel of a result lies in the source, and which inner loops make a row.

#include "image/resample.h"

#include "image/resample_kernels.h"

#include <algorithm>
#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kPixel = 4;

}  // namespace

Tap TapAt(std::int32_t index, std::int32_t sourceSide, std::int32_t side) noexcept {
  const float place = static_cast<float>(index) * static_cast<float>(sourceSide) / static_cast<float>(side);
  std::int64_t first = static_cast<std::int64_t>(place);
  // KEPT: where the second place would lie outside both step back, so the last ones are reckoned beyond the source.
  //   Pinned by ResampleKept.LastColumnsReachBeyondTheSource.
  if (first + 1 >= sourceSide) {
    --first;
  }
  // Exact in double, so the only rounding is the one to float, also where a float no longer tells neighbours apart.
  const auto secondWeight = static_cast<float>(double{place} - static_cast<double>(first));
  const auto firstWeight = static_cast<float>(static_cast<double>(first + 1) - double{place});
  const std::int64_t last = sourceSide - 1;
  return {static_cast<std::int32_t>(std::clamp<std::int64_t>(first, 0, last)),
          static_cast<std::int32_t>(std::clamp<std::int64_t>(first + 1, 0, last)), firstWeight, secondWeight};
}

Resampler::Resampler(PictureSides source, PictureSides result) : m_source(source), m_result(result) {
  const SideWeights columns = WeightsOf(source.width, result.width), rows = WeightsOf(source.height, result.height);
  m_columnsMeet = columns.Meet();
  const bool onlyPicks = m_columnsMeet && rows.Meet();
  m_fractions = FractionsFor(columns, rows);
  const int parts = m_fractions.columnParts;
  const auto width = static_cast<std::size_t>(result.width);
  m_pairs.step = static_cast<std::size_t>(columns.step);
  m_pairs.pixels = width;
  m_pairs.sourcePixels = static_cast<std::size_t>(source.width);
  if (onlyPicks && columns.step != 0) {
    return;
  }
  m_pairs.places.reset(new std::int32_t[2 * width]);
  if (!onlyPicks && parts != 0) {
    m_counts.reset(new signed char[2 * width]);
  } else if (!onlyPicks) {
    m_weights.reset(new float[2 * width]);
  }
  for (std::size_t i = 0; i < width; ++i) {
    const Tap tap = TapAt(static_cast<std::int32_t>(i), source.width, result.width);
    const Tap taken = m_columnsMeet ? tap.Alone() : tap;
    m_pairs.places[2 * i] = taken.first;
    m_pairs.places[2 * i + 1] = taken.second;
    if (m_counts) {
      m_counts[2 * i] = static_cast<signed char>(CountOfParts(taken.firstWeight, parts));
      m_counts[2 * i + 1] = static_cast<signed char>(CountOfParts(taken.secondWeight, parts));
    } else if (m_weights) {
      m_weights[i] = taken.firstWeight;
      m_weights[width + i] = taken.secondWeight;
    }
  }
  if (onlyPicks) {
    return;
  }
  if (m_counts && result.height <= source.height) {
    m_blocks = FindDirectBlocks({m_pairs, m_counts.get()}, parts);
    m_goesDirect = m_blocks.Cover(width);
  }
  if (!m_goesDirect) {
    FindBlocks(m_pairs);
    for (PreparedRow& row : m_prepared) {
      row.bytes.reset(new unsigned char[kPairBytes * width]);
    }
  }
}

void Resampler::Pick(const unsigned char* in, unsigned char* out) const noexcept {
  if (m_source.width == m_result.width) {
    std::memcpy(out, in, m_pairs.pixels * kPixel);
  } else {
    GatherFirsts(m_pairs, in, out);
  }
}

void Resampler::Direct(const unsigned char* first, const unsigned char* second, const Tap& rows,
                       unsigned char* out) const noexcept {
  const int parts = m_fractions.rowParts;
  BlendDirect({m_pairs, m_counts.get()}, m_blocks,
              {first, second, CountOfParts(rows.firstWeight, parts), CountOfParts(rows.secondWeight, parts)}, m_fractions, out);
}

void Resampler::Prepare(const unsigned char* in, unsigned char* out) const noexcept {
  if (m_counts) {
    GatherSums(m_pairs, m_counts.get(), in, out);
  } else {
    GatherPairs(m_pairs, in, out);
  }
}

void Resampler::Blend(const unsigned char* first, const unsigned char* second, const Tap& rows,
                      unsigned char* out) const noexcept {
  if (m_counts) {
    const int parts = m_fractions.rowParts;
    BlendRows({first, second, CountOfParts(rows.firstWeight, parts), CountOfParts(rows.secondWeight, parts)}, m_fractions,
              m_pairs.pixels, out);
  } else {
    BlendPairs(first, second, m_weights.get(), rows.firstWeight, rows.secondWeight, m_pairs.pixels, out);
  }
}

}  // namespace qxv
