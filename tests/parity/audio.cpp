// audio.cpp - PCM, another rate, WAV files.

#include "parity/trial.h"

#include "qxv/audio.h"

#include <vector>

namespace parity {

namespace {

void Floats(Trial& t, const std::vector<float>& samples) {
  for (const float sample : samples) {
    t << sample;
  }
}

std::vector<float> Samples(Trial& t, int count) {
  std::vector<float> samples(static_cast<std::size_t>(count));
  for (float& sample : samples) {
    sample = static_cast<float>(t.Between(-40000, 40000)) / 32768.0F;
  }
  return samples;
}

void Pcm(Trial& t) {
  t.Next();
  const int channels = t.Between(1, 6);
  const int width = t.Between(1, 5);
  const int frames = t.Between(0, 40);
  std::vector<unsigned char> bytes(static_cast<std::size_t>(channels * width * frames + 8));
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(t.Bits());
  }
  const auto room = static_cast<std::size_t>(frames);
  std::vector<float> one(room, 7.0F);
  t << QXVSplitPCM(channels, channels * width, t.Between(-1, channels), bytes.data(), one.data(), frames);
  Floats(t, one);
  std::vector<std::vector<float>> all(static_cast<std::size_t>(channels), std::vector<float>(room, 7.0F));
  std::vector<float*> places;
  places.reserve(all.size());
  for (auto& channel : all) {
    places.push_back(channel.data());
  }
  t << QXVSplitPCM(channels, channels * width, bytes.data(), places.data(), frames);
  for (const auto& channel : all) {
    Floats(t, channel);
  }
  t << QXVFillSilence(8 * width, bytes.data(), t.Between(-1, channels * frames));
  t.Raw(bytes.data(), bytes.size());
}

void Rates(Trial& t) {
  constexpr int kRates[] = {8000, 11025, 22050, 32000, 44100, 48000, 96000};
  t.Next();
  std::vector<float> source = Samples(t, t.Between(1, 60));
  const int from = kRates[t.Below(7)];
  const int to = kRates[t.Below(7)];
  std::vector<float> target(source.size() * 13 + 8, 7.0F);
  int count = 0;
  t << QXVReSample(source.data(), from, static_cast<int>(source.size()), target.data(), to, count) << count;
  Floats(t, target);
  t << QXVClampSamples(source.data(), static_cast<int>(source.size()), 8 * t.Between(1, 4));
  Floats(t, source);
}

void Wav(Trial& t) {
  t.Next();
  const int channels = t.Between(1, 4);
  const int width = t.Between(1, 4);
  const int frames = t.Between(1, 50);
  const CQXString name(t.File(QXT("a.wav")).c_str());
  const auto align = static_cast<WORD>(channels * width);
  const tWAVEFORMATEX format{1, static_cast<WORD>(channels), 48000, 48000u * align, align, static_cast<WORD>(8 * width), 0};
  const std::vector<float> samples = Samples(t, channels * frames);
  t << QXVWriteWav(name, format, samples.data(), frames);
  tWAVEFORMATEX read{};
  int count = 0;
  t << QXVGetWavAtt(name, read, count) << count;
  t.Raw(&read, sizeof read);
  std::vector<float> back(samples.size(), 7.0F);
  t << QXVReadWav(name, back.data(), count) << count;
  Floats(t, back);
  t << QXVReadWavBounded(name, back.data(), frames - t.Below(2), count) << count;
  Floats(t, back);
  const int start = t.Below(frames);
  t << QXVReadWav(name, back.data(), start, frames - start);
  Floats(t, back);
}

}  // namespace

void RunAudio(Trial& t) {
  for (int i = 0; i < 3000; ++i) {
    Pcm(t);
    Rates(t);
  }
  for (int i = 0; i < 200; ++i) {
    Wav(t);
  }
}

}  // namespace parity
