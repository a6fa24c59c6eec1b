// pcx.cpp - CQXVPcx, run-length PCX files.
// In memory: R G B a pixel, rows top-down, no padding. In the file: runs (pcx_runs.h) of the planes R, G and B one after another
// in each row, or of one plane of palette indices, of grey, or of bits with the leftmost pixel in the highest.

#include "image/pcx.h"

#include "image/pcx_planes.h"
#include "image/pcx_runs.h"
#include "image/pixel_memory.h"
#include "streams/byte_reader.h"
#include "streams/byte_writer.h"
#include "streams/file_pieces.h"

#include <array>
#include <cstring>
#include <vector>

namespace qxv {
namespace {

constexpr unsigned kManufacturer = 10;
constexpr unsigned kRunLength = 1;  // the encoding
constexpr std::size_t kHeader = 4 + 4 * 2 + 2 * 2 + 48 + 1 + 1 + 2 + 2 + 58;
constexpr unsigned kPaletteMarker = 12;
constexpr std::size_t kPaletteTrailer = 1 + 256 * 3;  // marker, then R G B
constexpr unsigned kColourPalette = 1;                // palette information
constexpr unsigned kGreyPalette = 2;
constexpr unsigned kBytesPerPixel = 3;  // in memory
constexpr std::size_t kPlanes = 3;

struct Header {
  unsigned bitsPerPixel = 0;  // of a plane
  std::int32_t width = 0;
  std::int32_t height = 0;
  unsigned planes = 0;
  unsigned paletteInformation = 0;
};

enum class PixelKind { Unknown, ThreePlanes, Indices, Grey, Bits };

using Colour = std::array<unsigned char, kBytesPerPixel>;  // R G B
using Palette = std::array<Colour, 256>;

Status ReadHeader(FileReader& file, Header& header) noexcept {
  ByteReader in(file.Take(kHeader));
  const unsigned manufacturer = in.U8();  // 0
  in.Skip(1);                             // 1: version
  const unsigned encoding = in.U8();      // 2
  header.bitsPerPixel = in.U8();          // 3
  const int left = in.U16();              // 4
  const int top = in.U16();               // 6
  const int right = in.U16();             // 8
  const int bottom = in.U16();            // 10
  in.Skip(2 * 2 + 48 + 1);                // 12: resolutions, palette of 16 colours, reserved
  header.planes = in.U8();                // 65
  // KEPT: the bytes a line are not used, so rows with a byte of padding decode shifted. Files written earlier must read the same.
  //   Pinned by PcxKept.PadByteShiftsTheRow.
  in.Skip(2);                            // 66: bytes a line
  header.paletteInformation = in.U16();  // 68
  in.Skip(58);                           // 70
  header.width = right - left + 1;
  header.height = bottom - top + 1;
  const bool known = manufacturer == kManufacturer && encoding == kRunLength && header.width > 0 && header.height > 0;
  return in.Failed() || !known ? kStatusImageBadData : kStatusOk;
}

PixelKind KindOf(const Header& header) noexcept {
  if (header.bitsPerPixel == 1) {
    return PixelKind::Bits;
  }
  if (header.bitsPerPixel == 8 && header.planes == kPlanes && header.paletteInformation == kColourPalette) {
    return PixelKind::ThreePlanes;
  }
  if (header.bitsPerPixel == 8 && header.planes == 1 && header.paletteInformation == kColourPalette) {
    return PixelKind::Indices;
  }
  if (header.bitsPerPixel == 8 && header.planes == 1 && header.paletteInformation == kGreyPalette) {
    return PixelKind::Grey;
  }
  return PixelKind::Unknown;
}

// What stands for the values of a row that has one plane of them: colours behind the pixels, or shades of grey.
bool ReadPalette(FileReader& file, PixelKind kind, Palette& palette) noexcept {
  if (kind != PixelKind::Indices) {
    for (std::size_t i = 0; i < palette.size(); ++i) {
      palette[i].fill(static_cast<unsigned char>(i));
    }
    return true;
  }
  if (file.Length() < kPaletteTrailer) {
    return false;
  }
  file.GoTo(file.Length() - kPaletteTrailer);
  ByteReader in(file.Take(kPaletteTrailer));
  const unsigned marker = in.U8();
  for (Colour& colour : palette) {
    for (unsigned char& byte : colour) {
      byte = in.U8();
    }
  }
  return !in.Failed() && marker == kPaletteMarker;
}

// Values of one plane of one row.
class PlaneRow {
 public:
  explicit PlaneRow(std::size_t size) : m_size(size), m_values(size + kPcxSlack) {}

  std::span<unsigned char> Values() noexcept { return {m_values.data(), m_size}; }
  unsigned char* Data() noexcept { return m_values.data(); }

 private:
  std::size_t m_size;
  std::vector<unsigned char> m_values;
};

bool DecodePlane(FileReader& in, PlaneRow& row) noexcept {
  const auto values = row.Values();
  for (std::size_t done = 0; done < values.size();) {
    const std::size_t used = DecodePcxRuns(in.Peek(2), values, done);
    if (used == 0) {
      return false;
    }
    in.Skip(used);
  }
  return true;
}

void StoreColours(std::span<const unsigned char> indices, const Palette& palette, unsigned char* out) noexcept {
  for (const unsigned char index : indices) {
    std::memcpy(out, palette[index].data(), kBytesPerPixel);
    out += kBytesPerPixel;
  }
}

void StoreBits(std::span<const unsigned char> bits, std::size_t width, unsigned char* out) noexcept {
  for (std::size_t i = 0; i < width; ++i, out += kBytesPerPixel) {
    const bool isWhite = (bits[i / 8] & 0x80 >> i % 8) != 0;
    std::memset(out, isWhite ? 255 : 0, kBytesPerPixel);
  }
}

bool DecodeThreePlanes(FileReader& in, std::size_t width, std::size_t height, unsigned char* out) {
  PlaneRow red(width), green(width), blue(width);
  for (; height > 0; --height, out += width * kBytesPerPixel) {
    if (!DecodePlane(in, red) || !DecodePlane(in, green) || !DecodePlane(in, blue)) {
      return false;
    }
    JoinPlanes(red.Data(), green.Data(), blue.Data(), width, out);
  }
  return true;
}

bool DecodeOnePlane(FileReader& in, const Palette& palette, std::size_t width, std::size_t height, unsigned char* out) {
  PlaneRow row(width);
  for (; height > 0; --height, out += width * kBytesPerPixel) {
    if (!DecodePlane(in, row)) {
      return false;
    }
    StoreColours(row.Values(), palette, out);
  }
  return true;
}

bool DecodeBits(FileReader& in, std::size_t width, std::size_t height, unsigned char* out) {
  PlaneRow row((width + 7) / 8);
  for (; height > 0; --height, out += width * kBytesPerPixel) {
    if (!DecodePlane(in, row)) {
      return false;
    }
    StoreBits(row.Values(), width, out);
  }
  return true;
}

// The least that the file must hold.
std::uint64_t FewestBytes(PixelKind kind, std::size_t width, std::size_t height) noexcept {
  switch (kind) {
    case PixelKind::ThreePlanes:
      return std::uint64_t{FewestPcxBytes(width)} * kPlanes * height;
    case PixelKind::Bits:
      return std::uint64_t{FewestPcxBytes((width + 7) / 8)} * height;
    default:
      return std::uint64_t{FewestPcxBytes(width)} * height;
  }
}

Status DecodeImage(FileReader& in, const Header& header, Picture& picture) {
  const PixelKind kind = KindOf(header);
  if (kind == PixelKind::Unknown) {
    // KEPT: other kinds of pixels are read with success and without pixels. Pinned by PcxKept.OtherKindsAreReadWithoutPixels.
    return kStatusOk;
  }
  Palette palette;
  if (!ReadPalette(in, kind, palette)) {
    return kStatusImageBadData;
  }
  in.GoTo(kHeader);
  const auto width = static_cast<std::size_t>(header.width);
  const auto height = static_cast<std::size_t>(header.height);
  if (FewestBytes(kind, width, height) > in.Left()) {
    return kStatusImageBadData;
  }
  picture.pixels = NewPixels(PixelBytes(header.width, header.height, kBytesPerPixel));
  unsigned char* const pixels = picture.pixels.get();
  const bool whole = kind == PixelKind::ThreePlanes ? DecodeThreePlanes(in, width, height, pixels)
                     : kind == PixelKind::Bits      ? DecodeBits(in, width, height, pixels)
                                                    : DecodeOnePlane(in, palette, width, height, pixels);
  return whole ? kStatusOk : kStatusImageBadData;
}

void EncodePlane(FileWriter& out, PlaneRow& row) noexcept {
  const auto values = row.Values();
  for (std::size_t done = 0; done < values.size();) {
    out.Commit(EncodePcxRuns(values, done, out.Room(kLeastPcxRoom)));
  }
}

void WriteHeader(FileWriter& file, const PictureView& picture) {
  std::vector<unsigned char> bytes;
  ByteWriter out(bytes);
  const auto width = static_cast<std::uint16_t>(picture.width);
  const auto height = static_cast<std::uint16_t>(picture.height);
  out.U8(kManufacturer);                            // 0
  out.U8(5);                                        // 1: version
  out.U8(kRunLength);                               // 2
  out.U8(8);                                        // 3: bits a pixel of a plane
  out.U16(0);                                       // 4: left
  out.U16(0);                                       // 6: top
  out.U16(static_cast<std::uint16_t>(width - 1));   // 8: right
  out.U16(static_cast<std::uint16_t>(height - 1));  // 10: bottom
  // KEPT: the fields of the resolution hold the sides. Pinned by PcxKept.ResolutionFieldsHoldTheSides.
  out.U16(width);           // 12
  out.U16(height);          // 14
  out.Zeros(48 + 1);        // 16: palette of 16 colours, reserved
  out.U8(kPlanes);          // 65
  out.U16(width);           // 66: bytes a line, not made even
  out.U16(kColourPalette);  // 68
  out.Zeros(58);            // 70
  file.Write(bytes);
}

void WriteImage(FileWriter& out, const PictureView& picture) {
  const auto width = static_cast<std::size_t>(picture.width);
  PlaneRow red(width), green(width), blue(width);
  const unsigned char* row = picture.pixels.data();
  for (std::int32_t n = 0; n < picture.height && width > 0; ++n, row += width * kBytesPerPixel) {
    SplitPlanes(row, width, red.Data(), green.Data(), blue.Data());
    EncodePlane(out, red);
    EncodePlane(out, green);
    EncodePlane(out, blue);
  }
}

}  // namespace

Status CQXVPcx::Read(const QXChar* name, ReadExtent extent) {
  Header header;
  return ReadPicture(name, extent, header, &ReadHeader, &DecodeImage);
}

Status CQXVPcx::Write(const QXChar* name, const PictureView& picture) const {
  return WritePicture(name, picture, kBytesPerPixel, &WriteHeader, &WriteImage);
}

}  // namespace qxv
