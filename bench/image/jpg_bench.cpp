// jpg_bench.cpp - the JPEG codec library beside TurboJPEG, both from memory to memory with the same transforms, and CQXVJpg,
// which also turns rows over, takes fresh memory and reads and writes a file, beside TurboJPEG alone.

#include "bench/image/pictures.h"
#include "bench/support/ratio.h"
#include "image/jpg.h"
#include "jpeg_codec/jpeg_codec.h"

#include <turbojpeg.h>

#include <algorithm>
#include <vector>

namespace {

using bench::kHeight;
using bench::kWidth;
using bench::Pixels;

constexpr int kQuality = 70;

const Pixels& Picture() {
  static const Pixels pixels = bench::MakePicture(bench::Texture::Sky, 3);
  return pixels;
}

const support::Text& FileName() {
  static const support::TempFolder folder;
  static const support::Text name = folder.File(QXT("ours.jpg"));
  return name;
}

Pixels EncodeByTurbo(tjhandle turbo, const Pixels& pixels) {
  static Pixels data(::tjBufSize(kWidth, kHeight, TJSAMP_420));
  unsigned char* place = data.data();
  unsigned long size = data.size();
  ::tjCompress2(turbo, pixels.data(), kWidth, 0, kHeight, TJPF_BGR, &place, &size, TJSAMP_420, kQuality,
                TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT);
  benchmark::DoNotOptimize(place);
  return size == 0 ? Pixels() : Pixels(place, place + size);
}

const Pixels& Compressed() {
  static const Pixels data = EncodeByTurbo(::tjInitCompress(), Picture());
  return data;
}

void EncodeOnce() {
  static Pixels data(static_cast<std::size_t>(qxv::JpegEncodeRoom(kWidth, kHeight)));
  QXVJpegImage image{};
  image.pixels = const_cast<unsigned char*>(Picture().data());
  image.format = qxv::kJpegRowsBottomUp;
  image.width = kWidth;
  image.height = kHeight;
  const QXVJpegParameters parameters{kQuality, 0};
  QXVJpegStream stream{};
  stream.data = data.data();
  benchmark::DoNotOptimize(::EncodeJpeg(&image, &parameters, &stream));
}

void DecodeOnce() {
  static Pixels pixels(static_cast<std::size_t>(qxv::JpegDecodeRoom(kWidth, kHeight)));
  QXVJpegStream stream{};
  stream.data = const_cast<unsigned char*>(Compressed().data());
  stream.length = static_cast<std::uint32_t>(Compressed().size());
  QXVJpegImage image{};
  image.pixels = pixels.data();
  benchmark::DoNotOptimize(::GetJpegInfo(&stream, &image));
  benchmark::DoNotOptimize(::DecodeJpeg(&stream, &image));
}

void EncodeOnceByTurbo() {
  static const tjhandle turbo = ::tjInitCompress();
  benchmark::DoNotOptimize(EncodeByTurbo(turbo, Picture()));
}

void DecodeOnceByTurbo() {
  static const tjhandle turbo = ::tjInitDecompress();
  static Pixels pixels(Picture().size());
  int width = 0, height = 0, sampling = 0, colours = 0;
  ::tjDecompressHeader3(turbo, Compressed().data(), Compressed().size(), &width, &height, &sampling, &colours);
  ::tjDecompress2(turbo, Compressed().data(), Compressed().size(), pixels.data(), width, 0, height, TJPF_BGR, TJFLAG_ACCURATEDCT);
  benchmark::DoNotOptimize(pixels.data());
}

void WriteOnce() { benchmark::DoNotOptimize(qxv::CQXVJpg().Write(FileName().c_str(), {kWidth, kHeight, Picture()})); }

void ReadOnce() {
  static const bool written = (WriteOnce(), true);
  qxv::CQXVJpg codec;
  benchmark::DoNotOptimize(written ? codec.Read(FileName().c_str(), qxv::ReadExtent::Pixels) : 0);
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{
      {"jpg/encode", "1080p in memory", &EncodeOnce, {{"turbojpeg", &EncodeOnceByTurbo, 0.97}}},
      {"jpg/decode", "1080p in memory", &DecodeOnce, {{"turbojpeg", &DecodeOnceByTurbo, 0.97}}},
      {"jpg/write", "1080p file", &WriteOnce, {{"turbojpeg in memory", &EncodeOnceByTurbo}}},
      {"jpg/read", "1080p file", &ReadOnce, {{"turbojpeg in memory", &DecodeOnceByTurbo}}},
  };
});

}  // namespace
