// image_type.h - what kind of file a name promises, and who reads and writes that kind.
#pragma once

#include "image/picture_codec.h"
#include "qxv/types.h"

#include <memory>

namespace qxv {

enum class ImageType : int { Other = 0, Tga = 1, Bmp = 2, Tif = 3, Gif = 4, Pcx = 5, Yuv = 6, Jpg = 7, Png = 8 };

/// By the extension, in either case.
ImageType TypeOfFile(const QXChar* name);

/// A codec of ours for still pictures of this type; null for the types that have none.
std::unique_ptr<PictureCodec> CodecFor(ImageType type);

/// Whether FreeImage reads this type.
constexpr bool IsReadByFreeImage(ImageType type) noexcept {
  return type == ImageType::Tif || type == ImageType::Gif || type == ImageType::Png;
}

}  // namespace qxv
