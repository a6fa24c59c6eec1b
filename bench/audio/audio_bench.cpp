// audio_bench.cpp - reading WAV files beside libsndfile, channels beside swresample, writing samples beside libsamplerate's
// conversion, another rate beside soxr and libsamplerate.

#include "audio/sample_format.h"
#include "bench/support/ratio.h"
#include "qxv/audio.h"
#include "support/temp_folder.h"

#include <samplerate.h>
#include <sndfile.h>
#include <soxr.h>

#include <cmath>
#include <memory>
#include <new>
#include <vector>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

namespace {

using qxv::os::CpuTier;

// Blocks of audio begin at a line of the cache, for us and for the peers.
template <typename Element>
struct OnALine {
  using value_type = Element;
  OnALine() = default;
  template <typename Other>
  OnALine(const OnALine<Other>&) noexcept {}  // NOLINT(google-explicit-constructor): as allocators convert
  Element* allocate(std::size_t count) { return static_cast<Element*>(::operator new(count * sizeof(Element), kLine)); }
  void deallocate(Element* block, std::size_t) noexcept { ::operator delete(block, kLine); }
  bool operator==(const OnALine&) const = default;
  static constexpr std::align_val_t kLine{64};
};

template <typename Element>
using Block = std::vector<Element, OnALine<Element>>;

Block<float> Tone(std::size_t count) {
  Block<float> samples(count);
  for (std::size_t i = 0; i < count; ++i) {
    samples[i] = 0.7f * std::sin(static_cast<float>(i % 48000) * 0.031f);
  }
  return samples;
}

// Ten minutes of two channels, read as a whole.
bench::Job ReadJob(int width, double must) {
  struct File {
    support::TempFolder folder;
    support::Text name = folder.File(QXT("a.wav"));
    Block<float> samples;
  };
  constexpr int kFrames = 600 * 48000;
  const auto file = std::make_shared<File>();
  const auto align = static_cast<WORD>(2 * width);
  const auto make = [file, width, align] {
    if (file->samples.empty()) {
      file->samples = Tone(std::size_t{kFrames} * 2);
      const tWAVEFORMATEX format{1, 2, 48000, 48000u * align, align, static_cast<WORD>(8 * width), 0};
      (void)QXVWriteWav(file->name.c_str(), format, file->samples.data(), kFrames);
    }
  };
  const auto ours = [file, make] {
    make();
    int frames = 0;
    benchmark::DoNotOptimize(QXVReadWav(file->name.c_str(), file->samples.data(), frames));
  };
  const auto sndfile = [file, make] {
    make();
    SF_INFO info{};
    SNDFILE* const sound = sf_open((file->folder.Native() / "a.wav").c_str(), SFM_READ, &info);
    benchmark::DoNotOptimize(sf_readf_float(sound, file->samples.data(), info.frames));
    sf_close(sound);
  };
  return {"audio/wav read",  std::to_string(8 * width) + " bits, 10 min", ours, {{"libsndfile", sndfile, must}}, {},
          bench::Clock::Wall};
}

bench::Job SplitJob(CpuTier tier) {
  constexpr int kFrames = 8192;
  struct Buffers {
    Block<unsigned char> bytes = Block<unsigned char>(kFrames * 4);
    Block<float> left = Block<float>(kFrames), right = Block<float>(kFrames);
    SwrContext* context = nullptr;
    ~Buffers() { swr_free(&context); }
  };
  const auto buffers = std::make_shared<Buffers>();
  AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
  swr_alloc_set_opts2(&buffers->context, &stereo, AV_SAMPLE_FMT_FLTP, 48000, &stereo, AV_SAMPLE_FMT_S16, 48000, 0, nullptr);
  swr_init(buffers->context);
  const auto ours = [buffers] {
    float* const channels[] = {buffers->left.data(), buffers->right.data()};
    QXVSplitPCM(2, 4, buffers->bytes.data(), channels, kFrames);
    benchmark::DoNotOptimize(channels);
  };
  const auto swresample = [buffers] {
    const unsigned char* source[] = {buffers->bytes.data()};
    unsigned char* channels[] = {reinterpret_cast<unsigned char*>(buffers->left.data()),
                                 reinterpret_cast<unsigned char*>(buffers->right.data())};
    benchmark::DoNotOptimize(swr_convert(buffers->context, channels, kFrames, source, kFrames));
  };
  return {"audio/split", "16 bits, 2 x 8192", ours, {{"swresample", swresample, tier == CpuTier::Baseline ? 0 : 1.9}}, tier};
}

bench::Job EncodeJob(CpuTier tier) {
  constexpr std::size_t kSamples = 4096;  // both sides stay in the first cache
  const auto samples = std::make_shared<const Block<float>>(Tone(kSamples));
  const auto ours = [samples, bytes = Block<unsigned char>(kSamples * 2)]() mutable {
    qxv::BytesFromSamples(2, samples->data(), bytes.data(), kSamples);
    benchmark::DoNotOptimize(bytes.data());
  };
  const auto samplerate = [samples, shorts = Block<short>(kSamples)]() mutable {
    src_float_to_short_array(samples->data(), shorts.data(), static_cast<int>(kSamples));
    benchmark::DoNotOptimize(shorts.data());
  };
  return {"audio/float to 16", "4096", ours, {{"libsamplerate", samplerate, tier == CpuTier::Baseline ? 0 : 100.0}}, tier};
}

bench::Job ResampleJob(CpuTier tier) {
  constexpr int kSource = 44000;
  const auto source = std::make_shared<const Block<float>>(Tone(kSource));
  constexpr std::size_t kRoom = kSource;
  const auto ours = [source, target = Block<float>(kRoom)]() mutable {
    int count = 0;
    QXVReSample(source->data(), 48000, kSource, target.data(), 44100, count);
    benchmark::DoNotOptimize(target.data());
  };
  const auto soxr = [source, target = Block<float>(kRoom)]() mutable {
    const soxr_quality_spec_t quick = soxr_quality_spec(SOXR_QQ, 0);
    std::size_t done = 0;
    soxr_oneshot(48000, 44100, 1, source->data(), kSource, nullptr, target.data(), kRoom, &done, nullptr, &quick, nullptr);
    benchmark::DoNotOptimize(target.data());
  };
  const auto linear = [source, target = Block<float>(kRoom)]() mutable {
    SRC_DATA data{};
    data.data_in = source->data();
    data.data_out = target.data();
    data.input_frames = kSource;
    data.output_frames = static_cast<long>(kRoom);
    data.src_ratio = 44100.0 / 48000.0;
    src_simple(&data, SRC_LINEAR, 1);
    benchmark::DoNotOptimize(target.data());
  };
  const bool asked = tier != CpuTier::Baseline;
  return {"audio/resample",
          "48 to 44.1 kHz",
          ours,
          {{"soxr quick", soxr, asked ? 6.0 : 0}, {"SRC_LINEAR", linear, asked ? 9.0 : 0}},
          tier};
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs{ReadJob(2, 2.5), ReadJob(3, 3.6)};
  for (const CpuTier tier : {CpuTier::Baseline, CpuTier::Avx2, CpuTier::Avx512}) {
    jobs.push_back(SplitJob(tier));
    jobs.push_back(EncodeJob(tier));
    jobs.push_back(ResampleJob(tier));
  }
  return jobs;
});

}  // namespace
