// tga.cpp - CQXVTga, true-colour and grey TGA files.
// In memory: B G R A a pixel, rows top-down, no padding. In the file: B G R A, B G R, 1-5-5-5 or grey; rows bottom-up unless the
// descriptor says otherwise, as they are or in packets of up to 128 pixels, which may run on into the next row.

#include "image/tga.h"

#include "image/pixel_memory.h"
#include "image/rows.h"
#include "os/intrinsics.h"
#include "streams/byte_reader.h"
#include "streams/byte_writer.h"
#include "streams/file_pieces.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qxv {
namespace {

constexpr unsigned kTrueColour = 2;
constexpr unsigned kRunLength = 10;
constexpr unsigned kFirstRowIsTop = 0x20;                // in the descriptor
constexpr std::size_t kBeforeSides = 1 + 1 + 1 + 5 + 4;  // length of the image ID, colour map type, type, colour map, origin
constexpr unsigned kBytesPerPixel = 4;                   // in memory
constexpr std::size_t kMostPixelsOfPacket = 128;
constexpr std::size_t kLongestPacket = 1 + kMostPixelsOfPacket * 4;

struct Header {
  unsigned type = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  unsigned depth = 0;  // bits of a pixel in the file
  RowOrder order = RowOrder::BottomUp;
};

// KEPT: an image ID and a colour map are not skipped, so the pixels of a file that has one are misread by its length.
//   Pinned by TgaKept.AnImageIdIsReadAsPixels and TgaKept.AColourMapIsReadAsPixels.
Status ReadHeader(FileReader& file, Header& header) noexcept {
  ByteReader in(file.Take(kBeforeSides + 2 + 2 + 1 + 1));
  in.Skip(1 + 1);            // 0: length of the image ID, colour map type
  header.type = in.U8();     // 2
  in.Skip(5 + 4);            // 3: colour map, origin
  header.width = in.U16();   // 12
  header.height = in.U16();  // 14
  header.depth = in.U8();    // 16
  header.order = (in.U8() & kFirstRowIsTop) != 0 ? RowOrder::TopDown : RowOrder::BottomUp;  // 17
  const bool known = header.type == kTrueColour || header.type == kRunLength;
  return in.Failed() || !known ? kStatusImageBadData : kStatusOk;
}

bool SupportedFormat(const Header& header) noexcept {
  switch (header.depth) {
    case 32:
    case 24:
      return true;
    case 16:
      return header.type == kRunLength;
    case 8:
      return header.type == kTrueColour;
    default:
      return false;
  }
}

void UnpackBgr(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (; pixels > 0; --pixels, in += 3, out += kBytesPerPixel) {
    out[0] = in[0];
    out[1] = in[1];
    out[2] = in[2];
    out[3] = 255;
  }
}

// Five bits become eight by a plain shift: 31 is 248.
void Unpack1555(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (; pixels > 0; --pixels, in += 2, out += kBytesPerPixel) {
    const unsigned value = in[0] | unsigned{in[1]} << 8;
    out[0] = static_cast<unsigned char>((value & 0x1F) << 3);
    out[1] = static_cast<unsigned char>((value >> 5 & 0x1F) << 3);
    out[2] = static_cast<unsigned char>((value >> 10 & 0x1F) << 3);
    out[3] = (value & 0x8000) != 0 ? 255 : 0;
  }
}

void UnpackGrey(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  for (; pixels > 0; --pixels, ++in, out += kBytesPerPixel) {
    out[0] = out[1] = out[2] = *in;
    out[3] = 255;
  }
}

template <unsigned kBytes>
void Unpack(const unsigned char* in, std::size_t pixels, unsigned char* out) noexcept {
  if constexpr (kBytes == 4) {
    std::memcpy(out, in, pixels * kBytesPerPixel);
  } else if constexpr (kBytes == 3) {
    UnpackBgr(in, pixels, out);
  } else if constexpr (kBytes == 2) {
    Unpack1555(in, pixels, out);
  } else {
    UnpackGrey(in, pixels, out);
  }
}

// Four pixels at a time; the last four may overlap those before them.
void Fill(std::uint32_t pixel, std::size_t pixels, unsigned char* out) noexcept {
  constexpr std::size_t kWide = sizeof(__m128i) / kBytesPerPixel;
  if (pixels < kWide) {
    for (; pixels > 0; --pixels, out += kBytesPerPixel) {
      std::memcpy(out, &pixel, kBytesPerPixel);
    }
    return;
  }
  const __m128i four = _mm_set1_epi32(static_cast<int>(pixel));
  const auto store = [four](unsigned char* place) { _mm_storeu_si128(reinterpret_cast<__m128i*>(place), four); };
  unsigned char* const last = out + (pixels - kWide) * kBytesPerPixel;
  for (; out < last; out += sizeof four) {
    store(out);
  }
  store(last);
}

// Where the next pixels of the file go.
class Target {
 public:
  Target(const Header& header, unsigned char* pixels) noexcept
      : m_pixels(pixels),
        m_width(static_cast<std::size_t>(header.width)),
        m_height(static_cast<std::size_t>(header.height)),
        m_order(header.order),
        m_left(m_width * m_height) {}

  std::size_t PixelsLeft() const noexcept { return m_left; }

  // The place of the next pixels, as many of count as lie in one row, and moves behind them.
  unsigned char* Next(std::size_t count, std::size_t& inRow) noexcept {
    if (m_column == m_width) {
      m_column = 0;
      ++m_row;
    }
    unsigned char* place = m_pixels + (RowInMemory(m_row, m_height, m_order) * m_width + m_column) * kBytesPerPixel;
    inRow = std::min(count, m_width - m_column);
    m_column += inRow;
    m_left -= inRow;
    return place;
  }

 private:
  unsigned char* m_pixels;
  std::size_t m_width;
  std::size_t m_height;
  RowOrder m_order;
  std::size_t m_left;
  std::size_t m_row = 0;
  std::size_t m_column = 0;
};

// The packets that are whole in these bytes, up to the last pixel of the picture, behind which the rest of a packet does not
// count.
// @return bytes used; 0 when not even the first packet is whole
template <unsigned kBytes>
std::size_t DecodePackets(std::span<const unsigned char> bytes, Target& target) noexcept {
  const unsigned char* at = bytes.data();
  const unsigned char* const end = at + bytes.size();
  while (target.PixelsLeft() > 0 && at != end) {
    const bool isRun = (*at & 0x80) != 0;
    std::size_t count = std::min<std::size_t>((*at & 0x7Fu) + 1, target.PixelsLeft());
    const std::size_t length = 1 + (isRun ? 1 : count) * kBytes;
    if (static_cast<std::size_t>(end - at) < length) {
      break;
    }
    std::uint32_t pixel = 0;
    if (isRun) {
      Unpack<kBytes>(at + 1, 1, reinterpret_cast<unsigned char*>(&pixel));
    }
    for (const unsigned char* source = at + 1; count > 0;) {
      std::size_t inRow;
      unsigned char* const place = target.Next(count, inRow);
      if (isRun) {
        Fill(pixel, inRow, place);
      } else {
        Unpack<kBytes>(source, inRow, place);
        source += inRow * kBytes;
      }
      count -= inRow;
    }
    at += length;
  }
  return static_cast<std::size_t>(at - bytes.data());
}

template <unsigned kBytes>
bool DecodeRunLength(FileReader& in, Target& target) noexcept {
  while (target.PixelsLeft() > 0) {
    const std::size_t used = DecodePackets<kBytes>(in.Peek(kLongestPacket), target);
    if (used == 0) {
      return false;
    }
    in.Skip(used);
  }
  return true;
}

template <unsigned kBytes>
bool DecodeUncompressed(FileReader& in, Target& target) noexcept {
  while (target.PixelsLeft() > 0) {
    const auto bytes = in.Peek(kBytes);
    std::size_t pixels;
    unsigned char* const place = target.Next(bytes.size() / kBytes, pixels);
    if (pixels == 0) {
      return false;
    }
    Unpack<kBytes>(bytes.data(), pixels, place);
    in.Skip(pixels * kBytes);
  }
  return true;
}

template <unsigned kBytes>
bool DecodeAs(FileReader& in, const Header& header, unsigned char* pixels) noexcept {
  Target target(header, pixels);
  return header.type == kRunLength ? DecodeRunLength<kBytes>(in, target) : DecodeUncompressed<kBytes>(in, target);
}

// The least that the file must hold.
std::uint64_t FewestBytes(const Header& header) noexcept {
  const unsigned bytes = header.depth / 8;
  const std::uint64_t pixels = PixelBytes(header.width, header.height, 1);
  return header.type == kRunLength ? (pixels + kMostPixelsOfPacket - 1) / kMostPixelsOfPacket * (1 + bytes) : pixels * bytes;
}

Status DecodeImage(FileReader& in, const Header& header, Picture& picture) {
  if (!SupportedFormat(header) || FewestBytes(header) > in.Left()) {
    return kStatusImageBadData;
  }
  picture.pixels = NewPixels(PixelBytes(header.width, header.height, kBytesPerPixel));
  unsigned char* const pixels = picture.pixels.get();
  const bool whole = header.depth == 32   ? DecodeAs<4>(in, header, pixels)
                     : header.depth == 24 ? DecodeAs<3>(in, header, pixels)
                     : header.depth == 16 ? DecodeAs<2>(in, header, pixels)
                                          : DecodeAs<1>(in, header, pixels);
  return whole ? kStatusOk : kStatusImageBadData;
}

void WriteHeader(FileWriter& file, const PictureView& picture) {
  std::vector<unsigned char> bytes;
  ByteWriter out(bytes);
  out.U8(0);                                            // 0: no image ID
  out.U8(0);                                            // 1: no colour map
  out.U8(kTrueColour);                                  // 2
  out.Zeros(5 + 4);                                     // 3: colour map, origin
  out.U16(static_cast<std::uint16_t>(picture.width));   // 12
  out.U16(static_cast<std::uint16_t>(picture.height));  // 14
  out.U8(32);                                           // 16: bits a pixel
  out.U8(0);                                            // 17: first row is the bottom one, no alpha declared
  file.Write(bytes);
}

void WriteImage(FileWriter& out, const PictureView& picture) {
  const std::size_t rowBytes = static_cast<std::size_t>(picture.width) * kBytesPerPixel;
  WriteRows(out, {rowBytes, static_cast<std::size_t>(picture.height), RowOrder::BottomUp}, picture.pixels.data());
}

}  // namespace

Status CQXVTga::Read(const QXChar* name, ReadExtent extent) {
  Header header;
  return ReadPicture(name, extent, header, &ReadHeader, &DecodeImage);
}

Status CQXVTga::Write(const QXChar* name, const PictureView& picture) const {
  return WritePicture(name, picture, kBytesPerPixel, &WriteHeader, &WriteImage);
}

}  // namespace qxv
