// pcx_runs.h - the runs of a PCX row.
//   00..BF        the value itself
//   C0 + n, value n times the value, n from 0 to 63
#pragma once

#include <cstddef>
#include <span>

namespace qxv {

inline constexpr std::size_t kLongestPcxRun = 63;

/// Bytes that must stand behind a row: the encoder may read them, the decoder write them.
inline constexpr std::size_t kPcxSlack = 96;

/// Room in which the encoder gets further.
inline constexpr std::size_t kLeastPcxRoom = 512;

/// The fewest bytes that can stand for so many values.
constexpr std::size_t FewestPcxBytes(std::size_t values) noexcept {
  const std::size_t rest = values % kLongestPcxRun;
  return values / kLongestPcxRun * 2 + (rest < 2 ? rest : 2);
}

/// Decodes what is whole in bytes into row, until row is full or a run would go beyond it.
/// @param row   followed by kPcxSlack bytes
/// @param done  values of the row so far, counted on
/// @return bytes used; 0 when nothing could be decoded
std::size_t DecodePcxRuns(std::span<const unsigned char> bytes, std::span<unsigned char> row, std::size_t& done) noexcept;

/// Encodes row from done on, until its end or until less than kLeastPcxRoom bytes of room are left.
/// @param row  followed by kPcxSlack bytes
/// @return bytes written
std::size_t EncodePcxRuns(std::span<const unsigned char> row, std::size_t& done, std::span<unsigned char> room) noexcept;

}  // namespace qxv
