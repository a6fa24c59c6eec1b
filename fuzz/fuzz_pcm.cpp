// fuzz_pcm.cpp - channels, silence, clamping and other rates with any integers: blocks of exactly the stated sizes.

#include "fuzz/fuzz_input.h"
#include "qxv/audio.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using fuzz::Require;

int Small(fuzz::Input& input) { return static_cast<int>(input.Byte()) - 8; }

// Small numbers mostly, any 32 bits now and then.
int Any(fuzz::Input& input) {
  const unsigned kind = input.Byte();
  if (kind < 230) {
    return static_cast<int>(kind % 64) - 4;
  }
  return static_cast<int>(input.Unit()) | static_cast<int>(input.Unit()) << 16;
}

void Split(fuzz::Input& input) {
  const int channels = Any(input), align = Any(input), channel = Any(input), frames = Small(input);
  const bool sane = channels > 0 && channels < 300 && align > 0 && align < 2000 && frames > 0;
  const std::size_t bytes = sane ? static_cast<std::size_t>(align) * static_cast<std::size_t>(frames) : 0;
  const auto source = std::make_unique<unsigned char[]>(bytes);
  std::memset(source.get(), static_cast<int>(input.Byte()), bytes);
  const auto room = static_cast<std::size_t>(frames > 0 ? frames : 0);
  if (!sane && channels > 0 && frames > 0 && align / channels >= 1 && align / channels <= 4) {
    return;  // such a block is not to be had here
  }
  const auto one = std::make_unique<float[]>(room);
  const int result = QXVSplitPCM(channels, align, channel, source.get(), one.get(), frames);
  Require((result == 0) == (channels > 0 && channel >= 0 && channel < channels));
  std::vector<std::unique_ptr<float[]>> slots;
  std::vector<float*> targets;
  for (int i = 0; sane && i < channels; ++i) {
    slots.push_back(std::make_unique<float[]>(room));
    targets.push_back(slots.back().get());
  }
  targets.push_back(nullptr);
  (void)QXVSplitPCM(channels, align, source.get(), targets.data(), frames);
}

void Rates(fuzz::Input& input) {
  const int from = Any(input), to = Any(input), count = Small(input);
  const auto room = static_cast<std::size_t>(count > 0 ? count : 0);
  const auto source = std::make_unique<float[]>(room);
  for (std::size_t i = 0; i < room; ++i) {
    source[i] = static_cast<float>(input.Byte()) / 256;
  }
  const auto wrapped = static_cast<std::int32_t>(static_cast<std::uint32_t>(count) * static_cast<std::uint32_t>(to));
  std::int64_t samples = from == to ? count : from == 0 ? 0 : std::int64_t{wrapped} / from;
  if (count < 0 && from != to) {
    samples = std::min<std::int64_t>(samples, 0);
  }
  if (samples > 1'000'000) {
    return;
  }
  const auto target = std::make_unique<float[]>(static_cast<std::size_t>(samples > 0 ? samples : 0));
  int done = -1;
  (void)QXVReSample(source.get(), from, count, target.get(), to, done);
  Require(done == static_cast<int>(samples));
  for (int i = 0; from > 0 && to > 0 && i < done; ++i) {
    Require(target[static_cast<std::size_t>(i)] >= 0 && target[static_cast<std::size_t>(i)] <= 1);  // between its neighbours
  }
}

void Fill(fuzz::Input& input) {
  const int bits = Any(input), samples = Small(input);
  const std::size_t bytes = bits > 0 && bits < 4096 && samples > 0 ? static_cast<std::size_t>(bits / 8 * samples) : 0;
  if (bits >= 4096 && samples > 0) {
    return;
  }
  const auto buffer = std::make_unique<unsigned char[]>(bytes);
  (void)QXVFillSilence(bits, buffer.get(), samples);
  for (std::size_t i = 0; i < bytes; ++i) {
    Require(buffer[i] == (bits == 8 ? 0x80 : 0));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  while (!input.AtEnd()) {
    switch (input.Byte() % 3) {
      case 0:
        Split(input);
        break;
      case 1:
        Rates(input);
        break;
      default:
        Fill(input);
    }
  }
  return 0;
}
