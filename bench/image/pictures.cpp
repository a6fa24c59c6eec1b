// pictures.cpp - pictures of 1920 x 1080, files of them, FreeImage's way to the same pixels.

#include "bench/image/pictures.h"

#include <FreeImage.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <random>

namespace bench {
namespace {

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

unsigned char GraphicsValue(int x, int y, unsigned channel) {
  const unsigned cell = static_cast<unsigned>(x / 37) * 7919 + static_cast<unsigned>(y / 53) * 104'729;
  return static_cast<unsigned char>((cell >> channel * 3) * 37);
}

unsigned char PhotoValue(int x, int y, unsigned channel, unsigned noise) {
  const unsigned gradient = static_cast<unsigned>(x * 200 / kWidth + y * 40 / kHeight) + channel * 5;
  return static_cast<unsigned char>(gradient + noise % 8);
}

unsigned char SkyValue(int x, int y, unsigned channel, unsigned noise) {
  const int shades[] = {x / 10, y / 6, (x + y) / 16, 0};
  return static_cast<unsigned char>(static_cast<unsigned>(shades[channel]) + noise % 24);
}

FIBITMAP* Load(const char* name) {
  const FREE_IMAGE_FORMAT format = FreeImage_GetFIFFromFilename(name);
  FIBITMAP* bitmap = FreeImage_Load(format, name, 0);
  Require(bitmap != nullptr);
  return bitmap;
}

}  // namespace

const char* NameOf(Texture texture) {
  switch (texture) {
    case Texture::Flat:
      return "flat";
    case Texture::Graphics:
      return "graphics";
    case Texture::Sky:
      return "sky";
    default:
      return "photo";
  }
}

Pixels MakePicture(Texture texture, unsigned bytesPerPixel) {
  constexpr unsigned char kFlat = 0xC8;
  std::mt19937 random(1);
  Pixels pixels;
  pixels.reserve(std::size_t{kWidth} * kHeight * bytesPerPixel);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const auto shared = static_cast<unsigned>(random());
      for (unsigned channel = 0; channel < bytesPerPixel; ++channel) {
        pixels.push_back(texture == Texture::Flat       ? kFlat
                         : texture == Texture::Graphics ? GraphicsValue(x, y, channel)
                         : texture == Texture::Sky      ? SkyValue(x, y, channel, shared)
                                                        : PhotoValue(x, y, channel, static_cast<unsigned>(random())));
      }
    }
  }
  return pixels;
}

PictureFile::PictureFile(const support::Text& fileName, Texture texture, unsigned bytesPerPixel)
    : name(folder.File(fileName)), native(support::NativePath(name).string()), pixels(MakePicture(texture, bytesPerPixel)) {}

std::unique_ptr<unsigned char[]> LoadByFreeImage(const char* name, unsigned bytesPerPixel) {
  FIBITMAP* const bitmap = Load(name);
  FreeImage_FlipVertical(bitmap);
  const std::size_t rowBytes = std::size_t{kWidth} * bytesPerPixel;
  std::unique_ptr<unsigned char[]> pixels(new unsigned char[rowBytes * kHeight]);
  for (int y = 0; y < kHeight; ++y) {
    std::memcpy(pixels.get() + static_cast<std::size_t>(y) * rowBytes, FreeImage_GetScanLine(bitmap, y), rowBytes);
  }
  FreeImage_Unload(bitmap);
  return pixels;
}

void OnlyLoadByFreeImage(const char* name) {
  FIBITMAP* const bitmap = Load(name);
  benchmark::DoNotOptimize(FreeImage_GetBits(bitmap));
  FreeImage_Unload(bitmap);
}

void SaveRunLengthTga(const PictureFile& file) {
  FIBITMAP* const bitmap = FreeImage_Allocate(kWidth, kHeight, 32);
  Require(bitmap != nullptr);
  constexpr std::size_t kRowBytes = std::size_t{kWidth} * 4;
  for (int y = 0; y < kHeight; ++y) {
    std::memcpy(FreeImage_GetScanLine(bitmap, y), file.pixels.data() + static_cast<std::size_t>(y) * kRowBytes, kRowBytes);
  }
  Require(FreeImage_Save(FIF_TARGA, bitmap, file.native.c_str(), TARGA_SAVE_RLE));
  FreeImage_Unload(bitmap);
}

}  // namespace bench
