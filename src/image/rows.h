// rows.h - the rows of a picture between a file and memory, where the first row is always the top one.
#pragma once

#include "streams/file_pieces.h"

#include <cstddef>

namespace qxv {

enum class RowOrder { TopDown, BottomUp };

struct RowShape {
  std::size_t rowBytes = 0;  // without padding
  std::size_t height = 0;
  RowOrder order = RowOrder::TopDown;  // in the file
  std::size_t padding = 0;             // bytes behind each row in the file
};

/// The place of the file's row n among the rows in memory.
constexpr std::size_t RowInMemory(std::size_t n, std::size_t height, RowOrder order) noexcept {
  return order == RowOrder::TopDown ? n : height - 1 - n;
}

/// Bytes that a file must hold for these rows: all padding but the last row's, which is never read.
std::uint64_t BytesOfRows(const RowShape& shape) noexcept;

/// Fills rowBytes x height bytes. False where the file ends before.
[[nodiscard]] bool ReadRows(FileReader& in, const RowShape& shape, unsigned char* pixels) noexcept;

/// Writes rowBytes x height bytes and each row's padding, as zeros.
void WriteRows(FileWriter& out, const RowShape& shape, const unsigned char* pixels) noexcept;

/// The same between two places in memory, without padding; they must not overlap.
void CopyRows(const RowShape& shape, const unsigned char* source, unsigned char* target) noexcept;

}  // namespace qxv
