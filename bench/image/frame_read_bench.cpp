// frame_read_bench.cpp - frames of the types that FreeImage decodes, in the caller's layout, beside FreeImage's bare load and
// conversion, which leaves the rows bottom-up and in FreeImage's memory.

#include "bench/image/pictures.h"
#include "bench/support/ratio.h"
#include "image/image_reader.h"
#include "image/layout_codes.h"

#include <FreeImage.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using bench::kHeight;
using bench::kWidth;

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// The picture as FreeImage writes it; a GIF has 256 colours.
void Save(const bench::PictureFile& file, FREE_IMAGE_FORMAT format, int flags) {
  FIBITMAP* bitmap = FreeImage_Allocate(kWidth, kHeight, 24);
  Require(bitmap != nullptr);
  constexpr std::size_t kRowBytes = std::size_t{kWidth} * 3;
  for (int y = 0; y < kHeight; ++y) {
    std::memcpy(FreeImage_GetScanLine(bitmap, y), file.pixels.data() + static_cast<std::size_t>(y) * kRowBytes, kRowBytes);
  }
  if (format == FIF_GIF) {
    FIBITMAP* const indexed = FreeImage_ColorQuantize(bitmap, FIQ_WUQUANT);
    FreeImage_Unload(bitmap);
    bitmap = indexed;
  }
  Require(FreeImage_Save(format, bitmap, file.native.c_str(), flags));
  FreeImage_Unload(bitmap);
}

struct Type {
  const char* name;
  const QXChar* file;
  FREE_IMAGE_FORMAT format;
  int flags;
};
const Type kTypes[] = {{"PNG", QXT("picture.png"), FIF_PNG, PNG_DEFAULT},
                       {"TIF LZW", QXT("lzw.tif"), FIF_TIFF, TIFF_LZW},
                       {"TIF plain", QXT("plain.tif"), FIF_TIFF, TIFF_NONE},
                       {"GIF", QXT("picture.gif"), FIF_GIF, GIF_DEFAULT}};

bench::Job ReadJob(const Type& type, std::uint32_t layout) {
  struct Subject {
    bench::PictureFile file;
    explicit Subject(const Type& from) : file(from.file, bench::Texture::Sky, 3) { Save(file, from.format, from.flags); }
  };
  const auto subject = std::make_shared<std::unique_ptr<Subject>>();
  const auto file = [subject, type]() -> const bench::PictureFile& {
    if (!*subject) {
      *subject = std::make_unique<Subject>(type);
    }
    return (*subject)->file;
  };
  const auto ours = [file, layout] {
    CQXImageReader reader;
    Require(reader.SetFile(file().name.c_str()) == 0);
    const QXVPixelLayout output{layout, kWidth, kHeight, 0};
    (void)reader.SetOutputLayout(&output);
    unsigned char* pixels = nullptr;
    Require(reader.ReadFrame(0, &pixels) == 0);
    benchmark::DoNotOptimize(pixels);
    delete[] pixels;
  };
  const auto bare = [file, format = type.format, layout] {
    FIBITMAP* const bitmap = FreeImage_Load(format, file().native.c_str(), 0);
    FIBITMAP* const converted =
        layout == qxv::kLayoutBgra ? FreeImage_ConvertTo32Bits(bitmap) : FreeImage_ConvertTo24Bits(bitmap);
    benchmark::DoNotOptimize(FreeImage_GetBits(converted));
    FreeImage_Unload(converted);
    FreeImage_Unload(bitmap);
  };
  return {std::string("frame/") + type.name + (layout == qxv::kLayoutBgra ? " to BGRA" : " to BGR"),
          "1080p file",
          ours,
          {{"FreeImage load, conversion", bare, 0.97}}};
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const Type& type : kTypes) {
    for (const std::uint32_t layout : {qxv::kLayoutBgra, qxv::kLayoutBgr}) {
      jobs.push_back(ReadJob(type, layout));
    }
  }
  return jobs;
});

}  // namespace
