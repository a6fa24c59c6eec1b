// image_type.cpp - what kind of file a name promises, and who reads and writes that kind.

#include "image/image_type.h"

#include "image/bmp.h"
#include "image/jpg.h"
#include "image/pcx.h"
#include "image/tga.h"
#include "image/yuv.h"
#include "qxv/path.h"
#include "qxv/string.h"

namespace qxv {
namespace {

struct Extension {
  const QXChar* text;
  ImageType type;
};

constexpr Extension kExtensions[] = {
    {QXT("tga"), ImageType::Tga}, {QXT("bmp"), ImageType::Bmp}, {QXT("tif"), ImageType::Tif}, {QXT("gif"), ImageType::Gif},
    {QXT("pcx"), ImageType::Pcx}, {QXT("yuv"), ImageType::Yuv}, {QXT("jpg"), ImageType::Jpg}, {QXT("png"), ImageType::Png},
};

}  // namespace

ImageType TypeOfFile(const QXChar* name) {
  const CQXString extension = QXVParseExtFileName(name);
  for (const Extension& known : kExtensions) {
    if (extension.CompareNoCase(known.text) == 0) {
      return known.type;
    }
  }
  return ImageType::Other;
}

std::unique_ptr<PictureCodec> CodecFor(ImageType type) {
  switch (type) {
    case ImageType::Tga:
      return std::make_unique<CQXVTga>();
    case ImageType::Bmp:
      return std::make_unique<CQXVBmp>();
    case ImageType::Pcx:
      return std::make_unique<CQXVPcx>();
    case ImageType::Yuv:
      return std::make_unique<CQXVYUV>();
    case ImageType::Jpg:
      return std::make_unique<CQXVJpg>();
    case ImageType::Other:
    case ImageType::Tif:
    case ImageType::Gif:
    case ImageType::Png:
      break;
  }
  return nullptr;
}

}  // namespace qxv
