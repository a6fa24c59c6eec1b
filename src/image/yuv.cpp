// yuv.cpp - CQXVYUV, uncompressed pictures of Y, U and V.
// In memory and in the file: Y U V a pixel, rows top-down, no padding.

#include "image/yuv.h"

#include "image/pixel_memory.h"
#include "image/rows.h"
#include "streams/byte_reader.h"
#include "streams/byte_writer.h"
#include "streams/file_pieces.h"

#include <algorithm>
#include <array>
#include <vector>

namespace qxv {
namespace {

constexpr std::array<unsigned char, 3> kSignature = {'Y', 'U', 'V'};
constexpr std::size_t kBeforeSides = 3 + 1 + 4 + 2 + 5;            // signature, 0, file length, offset of the pixels, zeros
constexpr std::size_t kHeader = kBeforeSides + 2 + 2 + 1 + 8 + 3;  // width, height, zeros
constexpr unsigned kBytesPerPixel = 3;

struct Header {
  std::int32_t width = 0;
  std::int32_t height = 0;
};

// KEPT: the length and the offset of the pixels are not looked at; pixels begin behind the header.
//   Pinned by YuvKept.LengthAndOffsetFieldsAreIgnored.
Status ReadHeader(FileReader& file, Header& header) noexcept {
  ByteReader in(file.Take(kHeader));
  const auto signature = in.Bytes(kSignature.size());  // 0
  in.Skip(kBeforeSides - kSignature.size());           // 3: 0, file length, offset of the pixels, zeros
  header.width = in.U16();                             // 15
  header.height = in.U16();                            // 17
  in.Skip(1 + 8 + 3);                                  // 19: zeros
  const bool signedAsYuv = std::equal(signature.begin(), signature.end(), kSignature.begin(), kSignature.end());
  return in.Failed() || !signedAsYuv ? kStatusImageBadData : kStatusOk;
}

template <class Sides>
RowShape RowsOf(const Sides& sides) noexcept {
  return {static_cast<std::size_t>(sides.width) * kBytesPerPixel, static_cast<std::size_t>(sides.height), RowOrder::TopDown};
}

Status DecodeImage(FileReader& in, const Header& header, Picture& picture) {
  const std::uint64_t bytes = PixelBytes(header.width, header.height, kBytesPerPixel);
  if (bytes > in.Left()) {
    return kStatusImageBadData;
  }
  picture.pixels = NewPixels(bytes);
  return ReadRows(in, RowsOf(header), picture.pixels.get()) ? kStatusOk : kStatusImageBadData;
}

void WriteHeader(FileWriter& file, const PictureView& picture) {
  const std::uint64_t length = PixelBytes(picture.width, picture.height, kBytesPerPixel) + kHeader;
  std::vector<unsigned char> bytes;
  ByteWriter out(bytes);
  out.Bytes(kSignature);                                // 0
  out.U8(0);                                            // 3
  out.U32(static_cast<std::uint32_t>(length));          // 4
  out.U16(kHeader);                                     // 8: offset of the pixels
  out.Zeros(5);                                         // 10
  out.U16(static_cast<std::uint16_t>(picture.width));   // 15
  out.U16(static_cast<std::uint16_t>(picture.height));  // 17
  out.Zeros(1 + 8 + 3);                                 // 19
  file.Write(bytes);
}

void WriteImage(FileWriter& out, const PictureView& picture) { WriteRows(out, RowsOf(picture), picture.pixels.data()); }

}  // namespace

Status CQXVYUV::Read(const QXChar* name, ReadExtent extent) {
  Header header;
  return ReadPicture(name, extent, header, &ReadHeader, &DecodeImage);
}

Status CQXVYUV::Write(const QXChar* name, const PictureView& picture) const {
  return WritePicture(name, picture, kBytesPerPixel, &WriteHeader, &WriteImage);
}

}  // namespace qxv
