// picture_codec.h - what the codecs of still pictures have in common: sizes, a buffer of pixels, reading and writing by name.
#pragma once

#include "foundation/status.h"
#include "qxv/types.h"
#include "streams/file_pieces.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <utility>

namespace qxv {

/// Bytes of a picture without row padding, exact for 1 to 4 bytes a pixel. A negative side gives the greatest number, which no
/// file holds and no memory has, so that comparing with what is there refuses it.
constexpr std::uint64_t PixelBytes(std::int32_t width, std::int32_t height, unsigned bytesPerPixel) noexcept {
  if (width < 0 || height < 0) {
    return std::numeric_limits<std::uint64_t>::max();
  }
  return std::uint64_t{static_cast<std::uint32_t>(width)} * static_cast<std::uint32_t>(height) * bytesPerPixel;
}

/// A picture of somebody else: rows top-down, no padding.
struct PictureView {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::span<const unsigned char> pixels{};
};

/// A picture that has been read. Without pixels after a header alone, or where a codec has no reader for the pixels.
struct Picture {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::unique_ptr<unsigned char[]> pixels{};  // rows top-down, no padding
};

enum class ReadExtent { Header, Pixels };

/// One codec object reads one file at a time; objects share nothing.
class PictureCodec {
 public:
  PictureCodec() noexcept = default;
  PictureCodec(const PictureCodec&) = delete;
  PictureCodec& operator=(const PictureCodec&) = delete;
  virtual ~PictureCodec() = default;

  /// 0; 0x89601A15 for a file that cannot be opened; what else each codec names. On failure, and when memory lacks
  /// (std::bad_alloc), the object holds what it held before. With ReadExtent::Header it holds no pixels afterwards.
  [[nodiscard]] virtual Status Read(const QXChar* name, ReadExtent extent) = 0;

  /// Writes a picture in this codec's layout. 0; 0x89601A14 for a file that cannot be created; 0x89601A11 for a negative side and
  /// 0x89601B11 for fewer pixels than the sides ask for, both before the file is touched.
  [[nodiscard]] virtual Status Write(const QXChar* name, const PictureView& picture) const = 0;

  /// The layout of the pixels (layout_codes.h).
  virtual std::uint32_t Layout() const noexcept = 0;

  std::int32_t Width() const noexcept { return m_picture.width; }
  std::int32_t Height() const noexcept { return m_picture.height; }
  /// Null until pixels have been read.
  const unsigned char* Pixels() const noexcept { return m_picture.pixels.get(); }
  /// The caller's from now on.
  std::unique_ptr<unsigned char[]> TakePixels() noexcept { return std::move(m_picture.pixels); }

 protected:
  PictureCodec(std::int32_t width, std::int32_t height) noexcept : m_picture{width, height} {}

  void Commit(Picture&& picture) noexcept { m_picture = std::move(picture); }

  /// Every Read of a codec of our own: opens the file, takes the header apart and, if asked for, makes the pixels.
  /// @param header  receives what readHeader found; its sides are width and height
  template <class Header>
  [[nodiscard]] Status ReadPicture(const QXChar* name, ReadExtent extent, Header& header,
                                   Status (*readHeader)(FileReader&, Header&),
                                   Status (*decodeImage)(FileReader&, const Header&, Picture&)) {
    FileReader in;
    if (in.Open(name) != os::kErrorNone) {
      return kStatusImageCannotRead;
    }
    if (const Status status = readHeader(in, header); status != kStatusOk) {
      return status;
    }
    Picture picture{header.width, header.height};
    if (extent == ReadExtent::Pixels) {
      if (const Status status = decodeImage(in, header, picture); status != kStatusOk) {
        return status;
      }
    }
    Commit(std::move(picture));
    return kStatusOk;
  }

  /// Every Write of them.
  using WritePart = void (*)(FileWriter&, const PictureView&);
  [[nodiscard]] static Status WritePicture(const QXChar* name, const PictureView& picture, unsigned bytesPerPixel,
                                           WritePart writeHeader, WritePart writeImage) {
    if (const Status status = CheckPicture(picture, bytesPerPixel); status != kStatusOk) {
      return status;
    }
    FileWriter out;
    if (out.Open(name) != os::kErrorNone) {
      return kStatusImageCannotCreate;
    }
    writeHeader(out, picture);
    writeImage(out, picture);
    return kStatusOk;
  }

  /// The refusals that every Write begins with.
  static Status CheckPicture(const PictureView& picture, unsigned bytesPerPixel) noexcept {
    if (picture.width < 0 || picture.height < 0) {
      return kStatusImageBadArgument;
    }
    const bool hasPixels = picture.pixels.size() >= PixelBytes(picture.width, picture.height, bytesPerPixel);
    return hasPixels ? kStatusOk : kStatusImageNullPixels;
  }

 private:
  Picture m_picture;
};

}  // namespace qxv
