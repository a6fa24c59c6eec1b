// wav_files_subject.cpp - reads and writes WAV files by the library, as a program that scripts may ask.
//   read FILE           channels, rate, bytes a frame, frames, then the samples as 32-bit floats, all on standard output
//   range FILE A N      the samples of N frames from frame A on
//   write FILE C R W N  N frames of C channels, rate R, W bytes a sample, from floats on standard input
//   resample A B        floats of rate A on standard input to floats of rate B

#include "qxv/audio.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

CQXString NameOf(const char* path) { return std::filesystem::absolute(path).u16string().c_str(); }

std::vector<float> FloatsFromInput() {
  std::vector<float> floats;
  float value = 0;
  while (std::fread(&value, sizeof value, 1, stdin) == 1) {
    floats.push_back(value);
  }
  return floats;
}

int Print(const std::vector<float>& floats) {
  return std::fwrite(floats.data(), sizeof(float), floats.size(), stdout) == floats.size() ? 0 : 1;
}

int Read(const char* path) {
  tWAVEFORMATEX format{};
  int frames = 0, same = 0;
  if (QXVGetWavAtt(NameOf(path), format, frames) != 0) {
    return 2;
  }
  std::vector<float> samples(static_cast<std::size_t>(frames) * format.nChannels);
  if (QXVReadWavBounded(NameOf(path), samples.data(), frames, same) != 0 || same != frames) {
    return 3;
  }
  std::printf("%u %u %u %d\n", format.nChannels, static_cast<unsigned>(format.nSamplesPerSec), format.nBlockAlign, frames);
  return Print(samples);
}

int Range(const char* path, int first, int frames) {
  tWAVEFORMATEX format{};
  int all = 0;
  if (QXVGetWavAtt(NameOf(path), format, all) != 0) {
    return 2;
  }
  std::vector<float> samples(static_cast<std::size_t>(frames) * format.nChannels);
  return QXVReadWav(NameOf(path), samples.data(), first, frames) == 0 ? Print(samples) : 3;
}

int Write(const char* path, int channels, int rate, int width, int frames) {
  const std::vector<float> samples = FloatsFromInput();
  const auto align = static_cast<WORD>(channels * width);
  const auto tag = static_cast<WORD>(width == 4 ? 3 : 1);  // a float, as other readers ask for
  const tWAVEFORMATEX format{tag,
                             static_cast<WORD>(channels),
                             static_cast<DWORD>(rate),
                             static_cast<DWORD>(rate) * align,
                             align,
                             static_cast<WORD>(8 * width),
                             0};
  return QXVWriteWav(NameOf(path), format, samples.data(), frames) == 0 ? 0 : 2;
}

int Resample(int from, int to) {
  const std::vector<float> source = FloatsFromInput();
  std::vector<float> target(source.size() * static_cast<std::size_t>(to) / static_cast<std::size_t>(from) + 1);
  int count = 0;
  if (QXVReSample(source.data(), from, static_cast<int>(source.size()), target.data(), to, count) != 0) {
    return 2;
  }
  target.resize(static_cast<std::size_t>(count));
  return Print(target);
}

}  // namespace

int main(int count, char** arguments) {
  const std::string mode = count > 1 ? arguments[1] : "";
  const auto number = [&](int i) { return std::atoi(arguments[i]); };
  if (mode == "read" && count == 3) {
    return Read(arguments[2]);
  }
  if (mode == "range" && count == 5) {
    return Range(arguments[2], number(3), number(4));
  }
  if (mode == "write" && count == 7) {
    return Write(arguments[2], number(3), number(4), number(5), number(6));
  }
  if (mode == "resample" && count == 4) {
    return Resample(number(2), number(3));
  }
  return 64;
}
