// jpg.cpp - CQXVJpg, JPG files through the JPEG codec library.
// In memory: B, G, R a pixel, rows top-down, no padding. In the file: whatever that library makes of the pixels.

#include "image/jpg.h"

#include "image/pixel_memory.h"
#include "image/rows.h"
#include "jpeg_codec/jpeg_codec.h"
#include "streams/file_pieces.h"

#include <limits>

namespace qxv {
namespace {

constexpr unsigned kBytesPerPixel = 3;
constexpr std::uint64_t kShortestFile = 3;
constexpr std::uint64_t kLongestFile = std::numeric_limits<std::uint32_t>::max();
constexpr double kQuality = 70.0;

// A file's bytes, as the codec library takes and gives them.
struct Compressed {
  std::unique_ptr<unsigned char[]> bytes{};
  QXVJpegStream stream{};
};

[[nodiscard]] Status ReadCompressed(const QXChar* name, Compressed& file) {
  FileReader in;
  if (in.Open(name) != os::kErrorNone || in.Length() < kShortestFile || in.Length() > kLongestFile) {
    return kStatusImageForeign;
  }
  const auto length = static_cast<std::size_t>(in.Length());
  file.bytes.reset(new unsigned char[length]);
  file.stream.data = file.bytes.get();
  file.stream.length = static_cast<std::uint32_t>(length);
  return in.Read({file.stream.data, length}) ? kStatusOk : kStatusImageForeign;
}

// Into a block with the room that the library is promised; the picture stays where it was decoded, at its start.
[[nodiscard]] Status DecodeImage(const Compressed& file, QXVJpegImage& image, Picture& picture) {
  picture.pixels = NewPixels(JpegDecodeRoom(image.width, image.height));
  image.pixels = picture.pixels.get();
  return ::DecodeJpeg(&file.stream, &image) == 0 ? kStatusOk : kStatusImageForeign;
}

// KEPT: rows are turned over on writing and not on reading; the library turns them over once more, so pictures stand upright both
//   ways, and come back upside down where another library in its place does not. Pinned by
//   JpgKept.RowsAreTurnedOverOnWritingOnly.
// One block holds the room that the library is promised and the turned rows behind it: of two blocks of that size the C runtime
// gives the pages of one back to the system, and having them anew for each picture takes as long as encoding it.
[[nodiscard]] Status EncodeImage(const PictureView& picture, Compressed& file) {
  const RowShape shape{std::size_t{kBytesPerPixel} * static_cast<std::uint32_t>(picture.width),
                       static_cast<std::uint32_t>(picture.height), RowOrder::BottomUp};
  const auto room = static_cast<std::size_t>(JpegEncodeRoom(picture.width, picture.height));
  file.bytes.reset(new unsigned char[room + shape.rowBytes * shape.height]);
  file.stream.data = file.bytes.get();
  unsigned char* const rows = file.bytes.get() + room;
  CopyRows(shape, picture.pixels.data(), rows);
  QXVJpegImage image{};
  image.pixels = rows;
  image.format = kJpegRowsBottomUp;
  image.width = picture.width;
  image.height = picture.height;
  const QXVJpegParameters parameters{kQuality, 0};
  return ::EncodeJpeg(&image, &parameters, &file.stream) == 0 ? kStatusOk : kStatusImageForeign;
}

[[nodiscard]] Status WriteCompressed(const QXChar* name, const Compressed& file) {
  FileWriter out;
  if (out.Open(name) != os::kErrorNone) {
    return kStatusImageForeign;
  }
  out.Write({file.stream.data, file.stream.length});
  return out.Finish() ? kStatusOk : kStatusImageForeign;
}

}  // namespace

Status CQXVJpg::Read(const QXChar* name, ReadExtent extent) {
  Compressed file;
  if (const Status status = ReadCompressed(name, file); status != kStatusOk) {
    return status;
  }
  QXVJpegImage image{};
  if (::GetJpegInfo(&file.stream, &image) != 0 || !IsJpegSize(image.width, image.height)) {
    return kStatusImageForeign;
  }
  Picture picture{image.width, image.height};
  if (extent == ReadExtent::Pixels) {
    if (const Status status = DecodeImage(file, image, picture); status != kStatusOk) {
      return status;
    }
  }
  Commit(std::move(picture));
  return kStatusOk;
}

Status CQXVJpg::Write(const QXChar* name, const PictureView& picture) const {
  if (!IsJpegSize(picture.width, picture.height) || CheckPicture(picture, kBytesPerPixel) != kStatusOk) {
    return kStatusImageForeign;
  }
  Compressed file;
  const Status status = EncodeImage(picture, file);
  return status == kStatusOk ? WriteCompressed(name, file) : status;
}

}  // namespace qxv
