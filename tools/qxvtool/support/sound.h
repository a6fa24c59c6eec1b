// sound.h - WAV files as the commands need them: read whole, written at a width.
#pragma once

#include "qxv/audio.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tool {

/// Samples of all channels, interleaved, full scale 1.0.
struct Sound {
  int channels = 0;
  int rate = 0;
  int bits = 0;
  int frames = 0;
  std::vector<float> samples;
};

/// What the head of a file tells.
struct SoundHead {
  tWAVEFORMATEX format{};
  int frames = 0;
  std::uint64_t bytes = 0;

  int Channels() const { return format.nChannels; }
  int Rate() const { return static_cast<int>(format.nSamplesPerSec); }
  /// Of a sample of one channel, by the room that it takes.
  int Bits() const { return format.nBlockAlign / format.nChannels * 8; }
  double Seconds() const { return Rate() > 0 ? static_cast<double>(frames) / Rate() : 0; }
};

/// Both throw a Failure for a file that is no WAV file, or damaged; ReadSound also for a width that the library does not know.
SoundHead ReadSoundHead(const std::string& path);
Sound ReadSound(const std::string& path);

/// Writes with sound.bits: 16, 24 or 32. Samples beyond full scale are clipped.
void WriteSound(const std::string& path, Sound sound);

/// One channel's samples, the first channel being 0.
std::vector<float> ChannelOf(const Sound& sound, int channel);

/// "48000 Hz, 2 channels, 24 bits, 12.5 s"
std::string SoundText(int rate, int channels, int bits, double seconds);

}  // namespace tool
