// pcx_file.h - PCX files made field by field.
#pragma once

#include "image/codec_files.h"

#include <cstdint>
#include <string>

namespace image_test::pcx {

struct Fields {
  std::uint64_t manufacturer = 10;
  std::uint64_t version = 5;
  std::uint64_t encoding = 1;
  std::uint64_t bits = 8;
  std::uint64_t left = 0;
  std::uint64_t top = 0;
  std::uint64_t right = 1;
  std::uint64_t bottom = 0;
  std::uint64_t resolutionX = 0;
  std::uint64_t resolutionY = 0;
  std::uint64_t reserved = 0;
  std::uint64_t planes = 3;
  std::uint64_t bytesPerLine = 2;
  std::uint64_t paletteInformation = 1;
  char filler = '\0';  // of the palette of 16 colours, and of the last 58 bytes
};

inline std::string File(const Fields& f, const std::string& behindHeader) {
  return Number(f.manufacturer, 1) + Number(f.version, 1) + Number(f.encoding, 1) + Number(f.bits, 1) + U16(f.left) + U16(f.top) +
         U16(f.right) + U16(f.bottom) + U16(f.resolutionX) + U16(f.resolutionY) + std::string(48, f.filler) +
         Number(f.reserved, 1) + Number(f.planes, 1) + U16(f.bytesPerLine) + U16(f.paletteInformation) +
         std::string(58, f.filler) + behindHeader;
}

enum class Kind { Colour, Indices, Grey, Bits };

inline Fields Sides(unsigned width, unsigned height, Kind kind = Kind::Colour) {
  Fields fields;
  fields.right = width - 1;
  fields.bottom = height - 1;
  fields.bits = kind == Kind::Bits ? 1 : 8;
  fields.planes = kind == Kind::Colour ? 3 : 1;
  fields.paletteInformation = kind == Kind::Grey ? 2 : 1;
  return fields;
}

// Entry i is i, i + 1, i + 2.
inline std::string Palette(int marker = 12) {
  std::string bytes = Bytes({marker});
  for (int i = 0; i < 256; ++i) {
    bytes += Bytes({i, i + 1, i + 2});
  }
  return bytes;
}

inline std::string Colour(int index) { return Bytes({index, index + 1, index + 2}); }
inline std::string Grey(int value) { return Bytes({value, value, value}); }

}  // namespace image_test::pcx
