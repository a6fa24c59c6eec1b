// jpeg_codec.h - QXVJpegCodec, a shared library of its own: JPEG pictures between two places in memory.
// An application suite may put another library of this name and these three functions in its place.
#pragma once

#include <cstdint>

/// Compressed data. 24 bytes.
struct QXVJpegStream {
  std::uint32_t length;  ///< in bytes: given for reading, received after encoding
  std::uint32_t notUsed0;
  unsigned char* data;
  std::uint64_t notUsed1;
};

/// Pixels: blue, green, red, rows of width x 3 bytes without padding. 1048 bytes.
struct QXVJpegImage {
  unsigned char* pixels;
  unsigned char notUsed0[1024];
  std::uint16_t format;  ///< 0 for reading, kJpegRowsBottomUp for encoding
  std::uint16_t notUsed1;
  std::int32_t width;
  std::int32_t height;
  std::uint32_t notUsed2;
};

/// How to encode. 16 bytes.
struct QXVJpegParameters {
  double quality;  ///< 1 to 100, rounded; anything below is 1, above 100
  std::uint64_t notUsed0;
};

namespace qxv {

inline constexpr std::uint16_t kJpegRowsTopDown = 0;
inline constexpr std::uint16_t kJpegRowsBottomUp = 792;

inline constexpr std::int32_t kJpegMostSide = 65500;
inline constexpr std::int64_t kJpegMostPixels = std::int64_t{1} << 28;

/// Whether pictures of this size are read and written.
constexpr bool IsJpegSize(std::int32_t width, std::int32_t height) noexcept {
  return width >= 1 && height >= 1 && width <= kJpegMostSide && height <= kJpegMostSide &&
         std::int64_t{width} * height <= kJpegMostPixels;
}

/// Bytes that the pixels of a record must have room for in DecodeJpeg, and the data of a stream in EncodeJpeg.
constexpr std::uint64_t JpegDecodeRoom(std::int32_t width, std::int32_t height) noexcept {
  return std::uint64_t{static_cast<std::uint32_t>(width)} * static_cast<std::uint32_t>(height) * 4 + 100;
}
constexpr std::uint64_t JpegEncodeRoom(std::int32_t width, std::int32_t height) noexcept {
  return std::uint64_t{static_cast<std::uint32_t>(width)} * static_cast<std::uint32_t>(height) * 3 + 4096;
}

}  // namespace qxv

// Each gives 0 or -1, and -1 for null pointers. Threads may use them at once on different records.
extern "C" {

/// Receives width and height. -1 for a header that cannot be read, or a size that IsJpegSize refuses; both stay then.
std::int32_t GetJpegInfo(const QXVJpegStream* stream, QXVJpegImage* image);

/// Decodes in format 0, rows top-down, into pixels of the width and height that GetJpegInfo gave; -1 for other ones. Grey, CMYK
/// (as Adobe's programs store it) and progressive pictures too. Data cut short decodes as far as it goes, the rest as the codec
/// fills it; so does data of more scans than a picture of its size and so many bytes are worth. More than 500 scans are -1.
/// After a failure the pixels are undefined.
std::int32_t DecodeJpeg(const QXVJpegStream* stream, QXVJpegImage* image);

/// Encodes pixels whose first row is the lowest (format 792), colour at half resolution, so that the picture stands upright in
/// every viewer; the same pixels give the same bytes on every machine. -1 also when the data has not enough room.
std::int32_t EncodeJpeg(const QXVJpegImage* image, const QXVJpegParameters* parameters, QXVJpegStream* stream);
}
