// gif_bench.cpp - CQXVGif beside giflib with a plain index map: pixels to a file.

#include "bench/image/pictures.h"
#include "bench/support/ratio.h"
#include "image/gif.h"

#include <gif_lib.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using bench::Pixels;

const support::TempFolder& Folder() {
  static const support::TempFolder folder;
  return folder;
}

void WriteByGiflib(const std::string& name, const Pixels& pixels) {
  std::vector<GifByteType> indices(pixels.size() / 3);
  for (std::size_t i = 0; i < indices.size(); ++i) {
    const unsigned b = pixels[3 * i], g = pixels[3 * i + 1], r = pixels[3 * i + 2];
    indices[i] = static_cast<GifByteType>((r & 0xE0) | (g & 0xE0) >> 3 | b >> 6);
  }
  std::vector<GifColorType> colours(256);
  ColorMapObject* map = ::GifMakeMapObject(256, colours.data());
  GifFileType* file = ::EGifOpenFileName(name.c_str(), false, nullptr);
  ::EGifPutScreenDesc(file, bench::kWidth, bench::kHeight, 8, 0, map);
  ::EGifPutImageDesc(file, 0, 0, bench::kWidth, bench::kHeight, false, nullptr);
  for (int y = 0; y < bench::kHeight; ++y) {
    ::EGifPutLine(file, indices.data() + std::size_t{static_cast<unsigned>(y)} * bench::kWidth, bench::kWidth);
  }
  ::EGifCloseFile(file, nullptr);
  ::GifFreeMapObject(map);
}

bench::Job GifJob(bench::Texture texture, double must) {
  const auto picture = std::make_shared<const Pixels>(bench::MakePicture(texture, 3));
  const auto ours = [picture] {
    const qxv::CQXVGif::Frame frames[] = {*picture};
    benchmark::DoNotOptimize(qxv::CQXVGif(bench::kWidth, bench::kHeight).Write(Folder().File(QXT("ours.gif")).c_str(), frames));
  };
  const auto giflib = [picture] { WriteByGiflib((Folder().Native() / "theirs.gif").string(), *picture); };
  return {std::string("gif/encode ") + bench::NameOf(texture), "1080p", ours, {{"giflib", giflib, must}}};
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{GifJob(bench::Texture::Flat, 1.1), GifJob(bench::Texture::Sky, 1.3)};
});

}  // namespace
