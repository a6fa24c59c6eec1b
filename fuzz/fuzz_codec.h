// fuzz_codec.h - any bytes as a picture file: a status, pixels of the stated size only with success, and what was read is written
// and read alike.
#pragma once

#include "fuzz/fuzz_input.h"
#include "image/layout_codes.h"
#include "image/picture_codec.h"

#include <cstdint>
#include <string>

namespace fuzz {

/// @param written  the layout that the codec writes, as bytes a pixel
template <class Codec>
int ReadPicture(const char* stem, unsigned written, const std::uint8_t* data, std::size_t size) {
  static const ScratchFile file(stem);
  file.Write(std::string(reinterpret_cast<const char*>(data), size));
  Codec header, codec;
  const qxv::Status headerStatus = header.Read(file.Name(), qxv::ReadExtent::Header);
  const qxv::Status status = codec.Read(file.Name(), qxv::ReadExtent::Pixels);
  Require(status == qxv::kStatusOk || status == qxv::kStatusImageBadData);
  Require(headerStatus == qxv::kStatusOk || headerStatus == status);
  Require(header.Pixels() == nullptr && (status == qxv::kStatusOk || codec.Pixels() == nullptr));
  if (codec.Pixels() == nullptr) {
    return 0;
  }
  Require(codec.Width() == header.Width() && codec.Height() == header.Height() && codec.Layout() == header.Layout());
  const unsigned bytesPerPixel = codec.Layout() == qxv::kLayoutBgra ? 4 : 3;
  const std::string pixels(reinterpret_cast<const char*>(codec.Pixels()),
                           qxv::PixelBytes(codec.Width(), codec.Height(), bytesPerPixel));  // touches every byte
  if (bytesPerPixel != written || codec.Width() < 1 || codec.Height() < 1 || codec.Width() > 0xFFFF || codec.Height() > 0xFFFF) {
    return 0;
  }
  Codec again;
  Require(codec.Write(file.Name(), {codec.Width(), codec.Height(), {codec.Pixels(), pixels.size()}}) == qxv::kStatusOk);
  Require(again.Read(file.Name(), qxv::ReadExtent::Pixels) == qxv::kStatusOk);
  Require(again.Width() == codec.Width() && again.Height() == codec.Height());
  Require(std::string(reinterpret_cast<const char*>(again.Pixels()), pixels.size()) == pixels);
  return 0;
}

}  // namespace fuzz
