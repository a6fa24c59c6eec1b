// pcx_marks.h - where runs begin, as bits: the part of the run coding that the processor does 64 bytes at a time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qxv {

inline constexpr std::size_t kPcxBlock = 64;

/// The first byte of a run in a file, and the least value that needs a run of its own.
inline constexpr unsigned kPcxRun = 0xC0;

/// A bit for each byte of each block that is kPcxRun or more, the lowest for the first.
void MarkPcxRuns(const unsigned char* bytes, std::size_t blocks, std::uint64_t* runs) noexcept;

/// A bit for each byte that is equal to the next one; reads one byte behind the last block.
void MarkPcxEqual(const unsigned char* values, std::size_t blocks, std::uint64_t* equal) noexcept;

}  // namespace qxv
