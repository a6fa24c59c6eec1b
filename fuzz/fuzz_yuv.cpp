// fuzz_yuv.cpp - any bytes as a YUV file.

#include "fuzz/fuzz_codec.h"
#include "image/yuv.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return fuzz::ReadPicture<qxv::CQXVYUV>("yuv", 3 /*bytes a pixel*/, data, size);
}
