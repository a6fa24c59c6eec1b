// tga_bench.cpp - run-length TGA files of 32 bits from file to pixels, beside stb_image and FreeImage.

#include "bench/image/pictures.h"
#include "bench/support/ratio.h"
#include "image/tga.h"

#include <stb/stb_image.h>

#include <cstdlib>
#include <cstring>

namespace {

bench::Job DecodeJob(bench::Texture texture) {
  const auto file = std::make_shared<bench::PictureFile>(QXT("picture.tga"), texture, 4);
  bench::SaveRunLengthTga(*file);
  const auto ours = [file] {
    qxv::CQXVTga codec;
    benchmark::DoNotOptimize(codec.Read(file->name.c_str(), qxv::ReadExtent::Pixels));
    benchmark::DoNotOptimize(codec.Pixels());
  };
  const auto stb = [file] {
    int width, height, channels;
    ::stbi_uc* const pixels = ::stbi_load(file->native.c_str(), &width, &height, &channels, 4);
    benchmark::DoNotOptimize(pixels);
    ::stbi_image_free(pixels);
  };
  const auto freeImage = [file] { benchmark::DoNotOptimize(bench::LoadByFreeImage(file->native.c_str(), 4)); };
  const auto onlyLoad = [file] { bench::OnlyLoadByFreeImage(file->native.c_str()); };
  return {std::string("tga/run-length 32 bit ") + bench::NameOf(texture),
          "1080p",
          ours,
          {{"stb_image", stb, 10}, {"FreeImage load, flip, copy", freeImage, 10}, {"FreeImage load", onlyLoad}}};
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{DecodeJob(bench::Texture::Graphics), DecodeJob(bench::Texture::Photo)};
});

}  // namespace
