// resample.cpp - where each pixel of a result lies in the source, and which of the inner loops makes a row.

#include "image/resample.h"

#include "image/resample_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qxv {
namespace {

constexpr std::size_t kPixel = 4;
constexpr std::size_t kPair = 2 * kPixel;

// Within these bounds the sums of the blend in quarters stay in 16 bits.
bool IsInQuarters(float weight) noexcept { return weight * 4 == std::trunc(weight * 4) && weight >= -1 && weight <= 2; }

bool TapIsInQuarters(const Tap& tap) noexcept { return IsInQuarters(tap.firstWeight) && IsInQuarters(tap.secondWeight); }

int Quarters(float weight) noexcept { return static_cast<int>(weight * 4); }

// Whether all places along a side hold what is asked.
bool All(std::int32_t sourceSide, std::int32_t side, bool (*holds)(const Tap&)) noexcept {
  for (std::int32_t i = 0; i < side; ++i) {
    if (!holds(TapAt(i, sourceSide, side))) {
      return false;
    }
  }
  return true;
}

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

Resampler::Resampler(PictureSides source, PictureSides result)
    : m_source(source),
      m_result(result),
      m_columnsMeet(All(source.width, result.width, [](const Tap& tap) { return tap.Only() >= 0; })),
      m_inQuarters(All(source.width, result.width, &TapIsInQuarters) && All(source.height, result.height, &TapIsInQuarters)),
      m_first(new std::int32_t[static_cast<std::size_t>(result.width)]),
      m_weights(new float[2 * static_cast<std::size_t>(result.width)]) {
  const auto width = static_cast<std::size_t>(result.width);
  for (std::size_t i = 0; i < width; ++i) {
    const Tap tap = TapAt(static_cast<std::int32_t>(i), source.width, result.width);
    const Tap taken = m_columnsMeet ? tap.Alone() : tap;
    m_first[i] = taken.first;
    m_weights[i] = taken.firstWeight;
    m_weights[width + i] = taken.secondWeight;
    m_pairs += taken.first + 1 < source.width ? 1 : 0;
  }
  if (m_inQuarters) {
    m_quarters.reset(new signed char[kPair * width]);
    for (std::size_t i = 0; i < kPair * width; ++i) {
      m_quarters[i] = static_cast<signed char>(Quarters(m_weights[i % 2 * width + i / kPair]));
    }
  }
  for (PreparedRow& row : m_prepared) {
    row.bytes.reset(new unsigned char[kPair * width]);
  }
}

void Resampler::Pick(const unsigned char* in, unsigned char* out) const noexcept {
  const auto width = static_cast<std::size_t>(m_result.width);
  if (m_source.width == m_result.width) {
    std::memcpy(out, in, width * kPixel);
    return;
  }
  for (std::size_t i = 0; i < width; ++i) {
    std::memcpy(out + i * kPixel, in + static_cast<std::size_t>(m_first[i]) * kPixel, kPixel);
  }
}

void Resampler::Prepare(const unsigned char* in, unsigned char* out) const noexcept {
  const auto width = static_cast<std::size_t>(m_result.width);
  for (std::size_t i = 0; i < m_pairs; ++i) {
    std::memcpy(out + i * kPair, in + static_cast<std::size_t>(m_first[i]) * kPixel, kPair);
  }
  for (std::size_t i = m_pairs; i < width; ++i) {  // the last pixel is its own neighbour
    std::memcpy(out + i * kPair, in + static_cast<std::size_t>(m_first[i]) * kPixel, kPixel);
    std::memcpy(out + i * kPair + kPixel, out + i * kPair, kPixel);
  }
  if (m_inQuarters) {
    BlendColumnsInQuarters(m_quarters.get(), width, out);
  }
}

void Resampler::Blend(const unsigned char* first, const unsigned char* second, const Tap& rows,
                      unsigned char* out) const noexcept {
  const auto width = static_cast<std::size_t>(m_result.width);
  if (m_inQuarters) {
    BlendRowsInQuarters(first, second, Quarters(rows.firstWeight), Quarters(rows.secondWeight), width, out);
  } else {
    BlendPairs(first, second, m_weights.get(), rows.firstWeight, rows.secondWeight, width, out);
  }
}

}  // namespace qxv
