// fuzz_bmp.cpp - any bytes as a BMP file.

#include "fuzz/fuzz_codec.h"
#include "image/bmp.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzz::ReadPicture<qxv::CQXVBmp>("bmp", 3 /*bytes a pixel*/, data, size);
}
