// bmp_bench.cpp - a bitmap of 24 bits from its file to top-down rows, beside FreeImage's load, flip and copy.

#include "bench/image/pictures.h"
#include "bench/support/ratio.h"
#include "image/bmp.h"

#include <cstdlib>

namespace {

bench::Job LoadJob() {
  const auto file = std::make_shared<bench::PictureFile>(QXT("picture.bmp"), bench::Texture::Photo, 3);
  if (qxv::CQXVBmp().Write(file->name.c_str(), file->View()) != 0) {
    std::abort();
  }
  const auto ours = [file] {
    qxv::CQXVBmp codec;
    benchmark::DoNotOptimize(codec.Read(file->name.c_str(), qxv::ReadExtent::Pixels));
    benchmark::DoNotOptimize(codec.Pixels());
  };
  const auto freeImage = [file] { benchmark::DoNotOptimize(bench::LoadByFreeImage(file->native.c_str(), 3)); };
  return {"bmp/load 24 bit", "1080p", ours, {{"FreeImage load, flip, copy", freeImage, 2.0}}};
}

const bench::Register kRegistered([] { return std::vector<bench::Job>{LoadJob()}; });

}  // namespace
