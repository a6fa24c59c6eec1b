// sound.cpp - reading and writing WAV files.

#include "qxvtool/support/sound.h"

#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

#include <array>
#include <cstdio>

namespace tool {

SoundHead ReadSoundHead(const std::string& path) {
  SoundHead head;
  head.bytes = InputFile(path).Size();  // says why a file cannot be opened
  if (QXVGetWavAtt(Wide(path), head.format, head.frames) != 0) {
    throw Failure(path, "is no WAV file, or damaged before its samples");
  }
  if (head.frames < 0 || static_cast<std::uint64_t>(head.frames) * head.format.nBlockAlign > head.bytes) {
    throw Failure(path, "tells of more samples than it holds");
  }
  return head;
}

Sound ReadSound(const std::string& path) {
  const SoundHead head = ReadSoundHead(path);
  if (head.Bits() < 8 || head.Bits() > 32) {
    throw Failure(path, "has samples of " + std::to_string(head.Bits()) + " bits, and 8 to 32 can be read");
  }
  Sound sound{head.Channels(), head.Rate(), head.Bits(), 0, {}};
  sound.samples.resize(static_cast<std::size_t>(head.frames) * static_cast<std::size_t>(head.Channels()));
  float nothing = 0;
  float* room = sound.samples.empty() ? &nothing : sound.samples.data();
  if (QXVReadWavBounded(Wide(path), room, head.frames, sound.frames) != 0) {
    throw Failure(path, "cannot be read to the end of its samples");
  }
  sound.samples.resize(static_cast<std::size_t>(sound.frames) * static_cast<std::size_t>(sound.channels));
  return sound;
}

void WriteSound(const std::string& path, Sound sound) {
  const auto width = static_cast<WORD>(sound.bits / 8);
  tWAVEFORMATEX format{};
  format.wFormatTag = sound.bits == 32 ? 3 : 1;  // floats, else whole numbers
  format.nChannels = static_cast<WORD>(sound.channels);
  format.nSamplesPerSec = static_cast<DWORD>(sound.rate);
  format.nBlockAlign = static_cast<WORD>(width * sound.channels);
  format.nAvgBytesPerSec = format.nSamplesPerSec * format.nBlockAlign;
  format.wBitsPerSample = static_cast<WORD>(sound.bits);
  QXVClampSamples(sound.samples.data(), static_cast<int>(sound.samples.size()), sound.bits);
  const float nothing = 0;
  if (QXVWriteWav(Wide(path), format, sound.samples.empty() ? &nothing : sound.samples.data(), sound.frames) != 0) {
    throw Failure(path, "cannot be created");
  }
  constexpr std::uint64_t kHeader = 44;  // what follows it tells whether the disk took all
  if (InputFile(path).Size() < kHeader + static_cast<std::uint64_t>(sound.frames) * format.nBlockAlign) {
    throw Failure(path, "could not be written to its end");
  }
}

std::vector<float> ChannelOf(const Sound& sound, int channel) {
  std::vector<float> samples(static_cast<std::size_t>(sound.frames));
  const int width = sizeof(float);
  QXVSplitPCM(sound.channels, width * sound.channels, channel, reinterpret_cast<const unsigned char*>(sound.samples.data()),
              samples.data(), sound.frames);
  return samples;
}

std::string SoundText(int rate, int channels, int bits, double seconds) {
  std::array<char, 96> text{};
  (void)std::snprintf(text.data(), text.size(), "%d Hz, %d channel%s, %d bits, %.3f s", rate, channels, channels == 1 ? "" : "s",
                      bits, seconds);
  return text.data();
}

}  // namespace tool
