// resample.h - pictures of four bytes a pixel at another size, row by row. Each byte is blended by itself, so the order of the
// bytes does not matter.
//
// Row r of the result lies at y = r x source height / height, in single precision; y0 is its whole part and y1 = y0 + 1, but
// where y1 reaches the source height both step back by one, and the blend then reaches beyond the last rows. Columns likewise. A
// byte is
//   (y1 - y)(x1 - x) s[y0][x0] + (y1 - y)(x - x0) s[y0][x1] + (y - y0)(x1 - x) s[y1][x0] + (y - y0)(x - x0) s[y1][x1],
// weights multiplied first, summed from left to right, clamped to -0.499 ... 255.499, increased by a half and truncated. Indices
// outside the source (it is one pixel wide or high, or has more than 2^24) are brought inside, weights stay as they are.
#pragma once

#include "image/resample_direct.h"
#include "image/resample_fractions.h"
#include "image/resample_pairs.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace qxv {

struct PictureSides {
  std::int32_t width = 0;
  std::int32_t height = 0;
};

/// Where one place of the result lies between two of the source.
struct Tap {
  std::int32_t first = 0;  ///< inside the source; the second is the next one, or the same at the end
  std::int32_t second = 0;
  float firstWeight = 0;
  float secondWeight = 0;

  /// The one of the two that has all the weight; -1 where both have some.
  constexpr std::int32_t Only() const noexcept {
    return firstWeight == 1 && secondWeight == 0 ? first : firstWeight == 0 && secondWeight == 1 ? second : -1;
  }
  constexpr Tap Alone() const noexcept { return {Only(), Only(), 1, 0}; }
};
Tap TapAt(std::int32_t index, std::int32_t sourceSide, std::int32_t side) noexcept;

/// Makes one row after another of one result; source rows are fetched once each where rows are asked for in rising order.
class Resampler {
 public:
  /// All four sides at least 1. Takes memory for a few rows of the result (std::bad_alloc).
  Resampler(PictureSides source, PictureSides result);

  /// Writes one row of the result.
  /// @param fetch const unsigned char*(std::int32_t row): a row of the source, four bytes a pixel, valid until another one
  ///              of odd number is asked for if it is odd, of even number if it is even
  template <class Fetch>
  void Row(std::int32_t row, Fetch&& fetch, unsigned char* out) {
    Tap tap = TapAt(row, m_source.height, m_result.height);
    if (tap.Only() >= 0) {
      tap = tap.Alone();
      if (m_columnsMeet) {
        Pick(Fetched(tap.first, fetch), out);
        return;
      }
    }
    if (m_goesDirect) {
      const unsigned char* const first = Fetched(tap.first, fetch);
      Direct(first, tap.second == tap.first ? first : Fetched(tap.second, fetch), tap, out);
      return;
    }
    const unsigned char* const first = Prepared(tap.first, fetch);
    const unsigned char* const second = Prepared(tap.second, fetch);
    Blend(first, second, tap, out);
  }

 private:
  // A source row as the blend wants it: for each column of the result 8 bytes.
  struct PreparedRow {
    std::int32_t row = -1;
    std::unique_ptr<unsigned char[]> bytes{};
  };

  struct FetchedRow {
    std::int32_t row = -1;
    const unsigned char* bytes = nullptr;
  };

  // Every row comes through here: the next one of its kind takes its place.
  template <class Fetch>
  const unsigned char* Fetched(std::int32_t row, Fetch& fetch) {
    FetchedRow& place = m_fetched[static_cast<std::size_t>(row) % m_fetched.size()];
    if (place.row != row) {
      place = {row, fetch(row)};
    }
    return place.bytes;
  }

  template <class Fetch>
  const unsigned char* Prepared(std::int32_t row, Fetch& fetch) {
    PreparedRow& place = m_prepared[static_cast<std::size_t>(row) % m_prepared.size()];
    if (place.row != row) {
      Prepare(Fetched(row, fetch), place.bytes.get());
      place.row = row;
    }
    return place.bytes.get();
  }

  void Pick(const unsigned char* in, unsigned char* out) const noexcept;
  void Direct(const unsigned char* first, const unsigned char* second, const Tap& rows, unsigned char* out) const noexcept;
  void Prepare(const unsigned char* in, unsigned char* out) const noexcept;
  void Blend(const unsigned char* first, const unsigned char* second, const Tap& rows, unsigned char* out) const noexcept;

  PictureSides m_source;
  PictureSides m_result;
  bool m_columnsMeet = false;  // every column of the result is one of the source
  PixelPairs m_pairs{};        // of each column
  Fractions m_fractions{};
  std::unique_ptr<float[]> m_weights{};       // all first weights, then all second ones; none where fractions do
  std::unique_ptr<signed char[]> m_counts{};  // the same in parts, of each column the first and the second
  bool m_goesDirect = false;                  // no rows are prepared
  DirectBlocks m_blocks{};
  std::array<FetchedRow, 2> m_fetched{};
  std::array<PreparedRow, 2> m_prepared;
};

}  // namespace qxv
