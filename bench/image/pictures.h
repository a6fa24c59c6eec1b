// pictures.h - what the races of the codecs share: pictures of 1920 x 1080, files of them, FreeImage's way to the same pixels.
#pragma once

#include "image/picture_codec.h"
#include "support/temp_folder.h"

#include <memory>
#include <string>
#include <vector>

namespace bench {

inline constexpr int kWidth = 1920;
inline constexpr int kHeight = 1080;

enum class Texture {
  Flat,      // one value
  Graphics,  // flat areas with edges, as drawn: titles, masks, charts
  Sky,       // slow shades under noise that all channels share
  Photo,     // soft gradients under noise: hardly two equal neighbours
};
const char* NameOf(Texture texture);

using Pixels = std::vector<unsigned char>;

/// Rows top-down, no padding.
Pixels MakePicture(Texture texture, unsigned bytesPerPixel);

/// A picture in a file of its own.
struct PictureFile {
  support::TempFolder folder;
  support::Text name;
  std::string native;
  Pixels pixels;

  PictureFile(const support::Text& fileName, Texture texture, unsigned bytesPerPixel);
  qxv::PictureView View() const { return {kWidth, kHeight, pixels}; }
};

/// Loads with FreeImage, turns it top-down and copies it into a buffer without padding, as a reader of ours delivers it.
std::unique_ptr<unsigned char[]> LoadByFreeImage(const char* name, unsigned bytesPerPixel);
/// Loads only.
void OnlyLoadByFreeImage(const char* name);
/// Writes a run-length TGA file of 32 bits a pixel.
void SaveRunLengthTga(const PictureFile& file);

}  // namespace bench
