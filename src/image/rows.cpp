// rows.cpp - the rows of a picture between a file and memory.

#include "image/rows.h"

#include <cstring>

namespace qxv {
namespace {

// Rows without bytes are one empty block, however many a header claims.
bool IsOneBlock(const RowShape& shape) noexcept {
  return shape.padding == 0 && (shape.order == RowOrder::TopDown || shape.rowBytes == 0);
}

}  // namespace

std::uint64_t BytesOfRows(const RowShape& shape) noexcept {
  return shape.height == 0 ? 0 : std::uint64_t{shape.rowBytes + shape.padding} * (shape.height - 1) + shape.rowBytes;
}

bool ReadRows(FileReader& in, const RowShape& shape, unsigned char* pixels) noexcept {
  if (IsOneBlock(shape)) {
    return in.Read({pixels, shape.rowBytes * shape.height});
  }
  for (std::size_t n = 0; n < shape.height; ++n) {
    if (n > 0) {
      (void)in.Take(shape.padding);  // should it be missing, the row behind it is too
    }
    if (!in.Read({pixels + RowInMemory(n, shape.height, shape.order) * shape.rowBytes, shape.rowBytes})) {
      return false;
    }
  }
  return true;
}

void WriteRows(FileWriter& out, const RowShape& shape, const unsigned char* pixels) noexcept {
  if (IsOneBlock(shape)) {
    out.Write({pixels, shape.rowBytes * shape.height});
    return;
  }
  for (std::size_t n = 0; n < shape.height; ++n) {
    out.Write({pixels + RowInMemory(n, shape.height, shape.order) * shape.rowBytes, shape.rowBytes});
    out.Zeros(shape.padding);
  }
}

void CopyRows(const RowShape& shape, const unsigned char* source, unsigned char* target) noexcept {
  for (std::size_t n = 0; n < shape.height && shape.rowBytes > 0; ++n) {
    std::memcpy(target + RowInMemory(n, shape.height, shape.order) * shape.rowBytes, source + n * shape.rowBytes, shape.rowBytes);
  }
}

}  // namespace qxv
