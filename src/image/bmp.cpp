// bmp.cpp - CQXVBmp, Windows bitmap files.
// In memory: B G R or B G R A a pixel, rows top-down, no padding. In the file: rows bottom-up, each padded to four bytes; 1, 4
// and 8 bits a pixel are indices, the leftmost pixel in the highest bits, into a palette of B G R and an unused byte.

#include "image/bmp.h"

#include "image/pixel_memory.h"
#include "image/rows.h"
#include "streams/byte_reader.h"
#include "streams/byte_writer.h"
#include "streams/file_pieces.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <vector>

namespace qxv {
namespace {

constexpr std::uint16_t kSignature = 0x4D42;        // "BM"
constexpr std::size_t kFileHeader = 2 + 4 + 4 + 4;  // signature, file size, reserved, offset of the pixels
constexpr std::size_t kInfoHeader = 3 * 4 + 2 * 2 + 6 * 4;
constexpr std::size_t kHeader = kFileHeader + kInfoHeader;
constexpr unsigned kBytesPerColour = 3;
constexpr unsigned kBytesPerPaletteEntry = 4;
constexpr unsigned kBitsWritten = 24;  // a pixel

using Colour = std::array<unsigned char, kBytesPerColour>;  // B G R
using Palette = std::array<Colour, 256>;

struct Header {
  std::uint32_t pixelOffset = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::uint8_t bitsPerPixel = 0;
  Palette palette;  // up to 8 bits a pixel
};

std::size_t PaletteEntries(unsigned bitsPerPixel) noexcept {
  return bitsPerPixel == 1 || bitsPerPixel == 4 || bitsPerPixel == 8 ? std::size_t{1} << bitsPerPixel : 0;
}

// KEPT: the palette has all its entries, whatever the field of colours used says; behind a shorter palette they take bytes of
//   the pixels. Files written earlier must read the same. Pinned by BmpKept.ColoursUsedIsIgnored and
//   BmpKept.AFileShorterThanTheWholePaletteIsRefused.
bool ReadPalette(FileReader& file, std::size_t entries, Palette& palette) noexcept {
  ByteReader in(file.Take(entries * kBytesPerPaletteEntry));
  for (std::size_t i = 0; i < entries; ++i) {
    for (unsigned char& byte : palette[i]) {
      byte = in.U8();
    }
    in.Skip(1);
  }
  return !in.Failed();
}

Status ReadHeader(FileReader& file, Header& header) noexcept {
  ByteReader in(file.Take(kHeader));
  const std::uint16_t signature = in.U16();                   // 0
  in.Skip(4 + 4);                                             // 2: file size, reserved
  header.pixelOffset = in.U32();                              // 10
  in.Skip(4);                                                 // 14: header size
  header.width = in.I32();                                    // 18
  header.height = in.I32();                                   // 22
  in.Skip(2);                                                 // 26: planes
  header.bitsPerPixel = static_cast<std::uint8_t>(in.U16());  // 28: its low byte
  in.Skip(6 * 4);                                             // 30: compression, image size, resolutions, colours used, important
  if (in.Failed() || signature != kSignature || header.width < 0 || header.height < 0) {
    return kStatusImageBadData;
  }
  const bool reached = header.pixelOffset <= static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
  return ReadPalette(file, PaletteEntries(header.bitsPerPixel), header.palette) && reached ? kStatusOk : kStatusImageBadData;
}

std::uint32_t LayoutOf(const Header& header) noexcept {
  const bool isBgr = header.bitsPerPixel == 24 || PaletteEntries(header.bitsPerPixel) != 0;
  return isBgr ? kLayoutBgr : kLayoutBgra;
}

template <class Sides>
RowShape RowsOf(const Sides& sides, unsigned bitsPerPixel) noexcept {
  const std::size_t rowBytes = (static_cast<std::size_t>(sides.width) * bitsPerPixel + 7) / 8;
  return {rowBytes, static_cast<std::size_t>(sides.height), RowOrder::BottomUp, (4 - rowBytes % 4) % 4};
}

template <unsigned kBits>
void DecodeIndices(const unsigned char* bytes, std::size_t pixels, const Palette& palette, unsigned char* out) noexcept {
  constexpr std::size_t kPerByte = 8 / kBits;
  constexpr unsigned kMask = (1u << kBits) - 1;
  for (std::size_t i = 0; i < pixels; ++i, out += kBytesPerColour) {
    const unsigned shift = static_cast<unsigned>(kPerByte - 1 - i % kPerByte) * kBits;
    std::memcpy(out, palette[bytes[i / kPerByte] >> shift & kMask].data(), kBytesPerColour);
  }
}

using DecodeIndicesFunction = void (*)(const unsigned char*, std::size_t, const Palette&, unsigned char*) noexcept;

DecodeIndicesFunction IndexDecoder(unsigned bitsPerPixel) noexcept {
  switch (bitsPerPixel) {
    case 1:
      return &DecodeIndices<1>;
    case 4:
      return &DecodeIndices<4>;
    default:
      return &DecodeIndices<8>;
  }
}

bool DecodeIndexedRow(FileReader& in, const Header& header, unsigned char* out) noexcept {
  const auto decode = IndexDecoder(header.bitsPerPixel);
  const std::size_t pixelsPerByte = 8u / header.bitsPerPixel;
  for (auto left = static_cast<std::size_t>(header.width); left > 0;) {
    const auto bytes = in.Peek(1);
    if (bytes.empty()) {
      return false;
    }
    const std::size_t pixels = std::min(bytes.size() * pixelsPerByte, left);
    decode(bytes.data(), pixels, header.palette, out);
    in.Skip((pixels + pixelsPerByte - 1) / pixelsPerByte);
    out += pixels * kBytesPerColour;
    left -= pixels;
  }
  return true;
}

bool DecodeIndexedRows(FileReader& in, const Header& header, unsigned char* pixels) noexcept {
  const RowShape rows = RowsOf(header, header.bitsPerPixel);
  const std::size_t rowInMemory = static_cast<std::size_t>(header.width) * kBytesPerColour;
  for (std::size_t n = 0; n < rows.height && rowInMemory > 0; ++n) {
    if (!DecodeIndexedRow(in, header, pixels + RowInMemory(n, rows.height, rows.order) * rowInMemory)) {
      return false;
    }
    (void)in.Take(rows.padding);  // the last row's may be missing
  }
  return true;
}

// KEPT: what has no reader for its pixels (16 bits among them) is read with success and without pixels.
//   Pinned by BmpKept.OtherBitCountsAreReadWithoutPixels.
bool HasPixelReader(const Header& header) noexcept {
  return PaletteEntries(header.bitsPerPixel) != 0 || header.bitsPerPixel == 24 || header.bitsPerPixel == 32;
}

Status DecodeImage(FileReader& in, const Header& header, Picture& picture) {
  if (!HasPixelReader(header)) {
    return kStatusOk;
  }
  in.GoTo(header.pixelOffset);
  const RowShape rows = RowsOf(header, header.bitsPerPixel);
  if (BytesOfRows(rows) > in.Left()) {
    return kStatusImageBadData;
  }
  const unsigned bytesPerPixel = header.bitsPerPixel == 32 ? 4 : kBytesPerColour;
  picture.pixels = NewPixels(PixelBytes(header.width, header.height, bytesPerPixel));
  const bool whole = PaletteEntries(header.bitsPerPixel) != 0 ? DecodeIndexedRows(in, header, picture.pixels.get())
                                                              : ReadRows(in, rows, picture.pixels.get());
  return whole ? kStatusOk : kStatusImageBadData;
}

// KEPT: the two size fields add the padding to the width in pixels and multiply by 3, so they exceed the true sizes by twice the
//   padding of all rows. Pinned by BmpKept.SizeFieldsCountThePaddingAsPixels.
std::uint32_t StatedImageBytes(const PictureView& picture) noexcept {
  const std::size_t padding = RowsOf(picture, kBitsWritten).padding;
  return (static_cast<std::uint32_t>(picture.width) + static_cast<std::uint32_t>(padding)) *
         static_cast<std::uint32_t>(picture.height) * kBytesPerColour;
}

void WriteHeader(FileWriter& file, const PictureView& picture) {
  const std::uint32_t imageBytes = StatedImageBytes(picture);
  std::vector<unsigned char> bytes;
  ByteWriter out(bytes);
  out.U16(kSignature);                           // 0
  out.U32(imageBytes + std::uint32_t{kHeader});  // 2: file size
  out.U32(0);                                    // 6: reserved
  out.U32(kHeader);                              // 10: offset of the pixels
  out.U32(kInfoHeader);                          // 14
  out.I32(picture.width);                        // 18
  out.I32(picture.height);                       // 22: positive, rows bottom-up
  out.U16(1);                                    // 26: planes
  out.U16(kBitsWritten);                         // 28: bits a pixel
  out.U32(0);                                    // 30: not compressed
  out.U32(imageBytes);                           // 34
  out.Zeros(4 * 4);                              // 38: resolutions, colours used, important colours
  file.Write(bytes);
}

void WriteImage(FileWriter& out, const PictureView& picture) {
  WriteRows(out, RowsOf(picture, kBitsWritten), picture.pixels.data());
}

}  // namespace

Status CQXVBmp::Read(const QXChar* name, ReadExtent extent) {
  Header header;
  const Status status = ReadPicture(name, extent, header, &ReadHeader, &DecodeImage);
  if (status == kStatusOk) {
    m_layout = LayoutOf(header);
  }
  return status;
}

Status CQXVBmp::Write(const QXChar* name, const PictureView& picture) const {
  return WritePicture(name, picture, kBytesPerColour, &WriteHeader, &WriteImage);
}

}  // namespace qxv
