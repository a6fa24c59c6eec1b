// fuzz_free_image.cpp - any bytes as a PNG, TIFF or GIF file: a status, and frames of the stated size only with success.
// Checksums of PNG chunks are mended after each change, so that changes get behind them.

#include "fuzz/fuzz_input.h"
#include "fuzz/mend_png.h"
#include "image/free_image.h"

#include <algorithm>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

constexpr std::uint64_t kMostBytes = 1 << 22;  // a canvas; larger ones only cost time

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned /*seed*/) {
  const std::size_t changed = LLVMFuzzerMutate(data, size, maxSize);
  fuzz::MendPng(data, changed);
  return changed;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile file("free-image");
  file.Write(std::string(reinterpret_cast<const char*>(data), size));
  qxv::CQXVFreeImage image;
  const qxv::Status status = image.Open(file.Name());
  fuzz::Require(status == qxv::kStatusOk || status == qxv::kStatusImageForeign);
  fuzz::Require(image.IsOpen() == (status == qxv::kStatusOk));
  const std::uint32_t frames = std::min(image.FrameCount(), 4u);
  for (std::uint32_t i = 0; i < frames * 2 && image.IsOpen(); ++i) {
    const std::uint32_t layout = i % 2 == 0 ? image.Layout() : 5 - image.Layout();
    if (qxv::PixelBytes(image.Width(), image.Height(), 4) > kMostBytes) {
      break;
    }
    qxv::Picture picture;
    const qxv::Status frame = image.Frame(i / 2, layout, picture);
    fuzz::Require(frame == qxv::kStatusOk ? picture.pixels != nullptr : frame == qxv::kStatusImageForeign && !image.IsOpen());
    if (frame == qxv::kStatusOk) {
      fuzz::Require(picture.width == image.Width() && picture.height == image.Height());
      const std::string touched(reinterpret_cast<const char*>(picture.pixels.get()),
                                qxv::PixelBytes(picture.width, picture.height, layout == qxv::kLayoutBgra ? 4 : 3));
    }
  }
  return 0;
}
