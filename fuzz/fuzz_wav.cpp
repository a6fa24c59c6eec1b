// fuzz_wav.cpp - any bytes as a WAV file, through all readers. The bounded one fills a block of exactly its capacity; the whole
// one gets as many floats as its own rule finds in the file; ranges are any numbers.

#include "audio/wav_header.h"
#include "fuzz/fuzz_input.h"
#include "qxv/audio.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace {

using fuzz::Require;

struct Found {
  std::int64_t floats = 0;  // that the whole reader may write, by the chunks as it finds them
  std::size_t channels = 0;
};

Found FindSamples(const QXChar* name) {
  Found found;
  qxv::FileReader in;
  if (!OpenWav(in, name)) {
    return found;
  }
  tWAVEFORMATEX format{};
  (void)WalkWav(in, format, &qxv::StrictWavChunk, [&](qxv::FileReader& at, std::uint32_t size) {
    // The bytes that are there bound what is written, whatever the size says.
    const std::int64_t frames = qxv::FramesOf(size, format), width = qxv::SampleWidth(format);
    const std::int64_t there = width == 0 ? 0 : static_cast<std::int64_t>(at.Left()) / width;
    found.floats = std::min(frames > 0 ? frames * format.nChannels : 0, there);
    found.channels = format.nChannels;
    return 0;
  });
  return found;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile file("wav");
  fuzz::Input input(data, size);
  const int capacity = static_cast<int>(input.Byte()) - 4;
  const int start = static_cast<int>(input.Unit()) - 4096;
  const int count = static_cast<int>(input.Byte()) - 4;
  file.Write(input.Bytes(size));

  tWAVEFORMATEX format{};
  int frames = -1;
  const bool known = QXVGetWavAtt(file.Name(), format, frames) == 0;
  if (known && capacity > 0) {
    const auto room = std::make_unique<float[]>(static_cast<std::size_t>(capacity) * format.nChannels);
    int bounded = -1;
    if (QXVReadWavBounded(file.Name(), room.get(), capacity, bounded) == 0) {
      Require(bounded <= capacity);
    }
  }
  const Found found = FindSamples(file.Name());
  const auto whole = std::make_unique<float[]>(static_cast<std::size_t>(found.floats));
  (void)QXVReadWav(file.Name(), whole.get(), frames);
  const auto range = std::make_unique<float[]>(found.channels * static_cast<std::size_t>(count > 0 ? count : 0));
  (void)QXVReadWav(file.Name(), range.get(), start, count);
  return 0;
}
