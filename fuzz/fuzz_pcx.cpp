// fuzz_pcx.cpp - any bytes as a PCX file.

#include "fuzz/fuzz_codec.h"
#include "image/pcx.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzz::ReadPicture<qxv::CQXVPcx>("pcx", 3 /*bytes a pixel*/, data, size);
}
