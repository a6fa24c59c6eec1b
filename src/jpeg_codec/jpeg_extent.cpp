// jpeg_extent.cpp - how far compressed data goes that may have been cut short.
// A file is a row of markers, FF and a code. Most begin a segment with its length, big-endian, in two bytes that count
// themselves; the scan's is followed by coded data, in which FF 00 stands for a byte FF and FF D0 to FF D7 are restart marks.

#include "jpeg_codec/jpeg_extent.h"

#include <cstring>

namespace qxv {
namespace {

constexpr unsigned char kMark = 0xFF;
constexpr unsigned kStartOfImage = 0xD8;
constexpr unsigned kEndOfImage = 0xD9;

bool HasSegment(unsigned code) noexcept {
  const bool restart = code >= 0xD0 && code <= 0xD7;
  return code > 0x01 && !restart && code != kStartOfImage && code != kEndOfImage && code != kMark;
}

}  // namespace

std::size_t JpegExtent(const unsigned char* data, std::size_t length) noexcept {
  const bool complete = length >= 2 && data[length - 2] == kMark && data[length - 1] == kEndOfImage;
  std::size_t at = 0;
  while (!complete && at < length) {
    const void* found = std::memchr(data + at, kMark, length - at);
    if (found == nullptr) {
      return length;
    }
    at = static_cast<std::size_t>(static_cast<const unsigned char*>(found) - data);
    if (length - at < 2) {
      return at;
    }
    const unsigned code = data[at + 1];
    if (code == kEndOfImage) {
      return length;
    }
    if (!HasSegment(code)) {
      at += code == kMark ? 1 : 2;  // any number of FF may stand before a code
      continue;
    }
    const std::size_t left = length - at - 2;
    const std::size_t size = left < 2 ? 2 : std::size_t{data[at + 2]} << 8 | data[at + 3];
    if (left < size) {
      return at;
    }
    at += 2 + size;
  }
  return length;
}

}  // namespace qxv
