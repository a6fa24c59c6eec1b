// fuzz_tga.cpp - any bytes as a TGA file.

#include "fuzz/fuzz_codec.h"
#include "image/tga.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzz::ReadPicture<qxv::CQXVTga>("tga", 4 /*bytes a pixel*/, data, size);
}
