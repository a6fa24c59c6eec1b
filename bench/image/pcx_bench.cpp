// pcx_bench.cpp - PCX files of three planes: from file to pixels beside FreeImage, from pixels to file beside GraphicsMagick.

#include "bench/image/pictures.h"
#include "bench/support/ratio.h"
#include "image/pcx.h"

#include <magick/api.h>

#include <cstdio>
#include <cstdlib>

namespace {

using bench::PictureFile;
using bench::Texture;

void Save(const PictureFile& file) {
  if (qxv::CQXVPcx().Write(file.name.c_str(), file.View()) != 0) {
    std::abort();
  }
}

bench::Job DecodeJob(Texture texture) {
  const auto file = std::make_shared<PictureFile>(QXT("picture.pcx"), texture, 3);
  Save(*file);
  const auto ours = [file] {
    qxv::CQXVPcx codec;
    benchmark::DoNotOptimize(codec.Read(file->name.c_str(), qxv::ReadExtent::Pixels));
    benchmark::DoNotOptimize(codec.Pixels());
  };
  const auto freeImage = [file] { bench::OnlyLoadByFreeImage(file->native.c_str()); };
  return {std::string("pcx/decode 24 bit ") + bench::NameOf(texture), "1080p", ours, {{"FreeImage", freeImage, 2.9}}};
}

// GraphicsMagick's own picture, made once of the same pixels.
struct MagickPicture {
  explicit MagickPicture(const PictureFile& file) {
    ::InitializeMagick(nullptr);
    ::ExceptionInfo exception;
    ::GetExceptionInfo(&exception);
    image = ::ConstituteImage(bench::kWidth, bench::kHeight, "RGB", ::CharPixel, file.pixels.data(), &exception);
    info = ::CloneImageInfo(nullptr);
    if (image == nullptr || info == nullptr) {
      std::abort();
    }
    std::snprintf(image->filename, sizeof image->filename, "%s", (file.native + ".peer.pcx").c_str());
  }
  MagickPicture(const MagickPicture&) = delete;
  MagickPicture& operator=(const MagickPicture&) = delete;
  ~MagickPicture() {
    ::DestroyImage(image);
    ::DestroyImageInfo(info);
  }
  ::Image* image;
  ::ImageInfo* info;
};

bench::Job EncodeJob(Texture texture) {
  const auto file = std::make_shared<PictureFile>(QXT("picture.pcx"), texture, 3);
  const auto ours = [file] { Save(*file); };
  const auto picture = std::make_shared<MagickPicture>(*file);
  const auto magick = [picture] {
    if (::WriteImage(picture->info, picture->image) == 0) {
      std::abort();
    }
  };
  return {std::string("pcx/encode 24 bit ") + bench::NameOf(texture), "1080p", ours, {{"GraphicsMagick", magick, 4}}};
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{DecodeJob(Texture::Graphics), DecodeJob(Texture::Photo), EncodeJob(Texture::Graphics),
                                 EncodeJob(Texture::Photo)};
});

}  // namespace
