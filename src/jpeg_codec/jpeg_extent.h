// jpeg_extent.h - how far compressed data goes that may have been cut short.
#pragma once

#include <cstddef>

namespace qxv {

/// The bytes to decode: all of them, unless the data ends inside a marker's segment. Then those before that marker, since half
/// a table is an error, while a picture that ends between two scans, or within one, is shown as far as it goes.
std::size_t JpegExtent(const unsigned char* data, std::size_t length) noexcept;

}  // namespace qxv
