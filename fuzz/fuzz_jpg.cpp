// fuzz_jpg.cpp - any bytes as a JPG file: a size and pixels, or -1. What has been read is written and reads again at its size.

#include "fuzz/fuzz_input.h"
#include "image/jpg.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile file("jpg");
  file.Write(std::string(reinterpret_cast<const char*>(data), size));
  qxv::CQXVJpg header, codec;
  const qxv::Status headerStatus = header.Read(file.Name(), qxv::ReadExtent::Header);
  fuzz::Require(headerStatus == 0 || headerStatus == 0xFFFFFFFF);
  fuzz::Require(header.Pixels() == nullptr);
  if (headerStatus == 0 && std::int64_t{header.Width()} * header.Height() > 1'000'000) {
    return 0;  // a second each
  }
  const qxv::Status status = codec.Read(file.Name(), qxv::ReadExtent::Pixels);
  fuzz::Require(status == 0 || status == 0xFFFFFFFF);
  fuzz::Require(headerStatus == 0 || status != 0);
  if (status != 0) {
    fuzz::Require(codec.Pixels() == nullptr && codec.Width() == 100 && codec.Height() == 100);
    return 0;
  }
  fuzz::Require(codec.Width() == header.Width() && codec.Height() == header.Height());
  const std::string pixels(reinterpret_cast<const char*>(codec.Pixels()),
                           qxv::PixelBytes(codec.Width(), codec.Height(), 3));  // touches every byte
  qxv::CQXVJpg again;
  if (again.Write(file.Name(), {codec.Width(), codec.Height(), {codec.Pixels(), pixels.size()}}) == 0) {
    fuzz::Require(again.Read(file.Name(), qxv::ReadExtent::Pixels) == 0);
    fuzz::Require(again.Width() == codec.Width() && again.Height() == codec.Height());
  }
  return 0;
}
