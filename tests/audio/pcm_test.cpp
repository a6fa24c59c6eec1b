// pcm_test.cpp - silence, channels out of interleaved bytes, and clamping.

#include "qxv/audio.h"

#include "audio/sample_format.h"
#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

// An array block of exactly so many elements, which ends at an inaccessible page.
template <typename Element>
std::unique_ptr<Element[]> Guarded(const std::vector<Element>& elements) {
  auto block = std::make_unique<Element[]>(elements.size());
  std::copy(elements.begin(), elements.end(), block.get());
  return block;
}

std::vector<float> One(int channels, int align, int channel, const Bytes& source, int frames) {
  const auto bytes = Guarded(source);
  std::vector<float> samples(static_cast<std::size_t>(frames), -7.0f);
  EXPECT_EQ(QXVSplitPCM(channels, align, channel, bytes.get(), samples.data(), frames), 0);
  return samples;
}

TEST(FillSilence, IsZeroButForEightBits) {
  const struct {
    int bits, samples;
    Bytes expected;
  } rows[] = {{8, 3, {0x80, 0x80, 0x80}},
              {16, 2, {0, 0, 0, 0}},
              {24, 1, {0, 0, 0}},
              {32, 1, {0, 0, 0, 0}},
              {12, 2, {0, 0}},
              {40, 1, {0, 0, 0, 0, 0}},
              {7, 5, {}},
              {0, 5, {}}};
  for (const auto& row : rows) {
    auto buffer = Guarded(Bytes(row.expected.size(), 0xEE));
    EXPECT_EQ(QXVFillSilence(row.bits, buffer.get(), row.samples), 0) << row.bits;
    EXPECT_EQ(Bytes(buffer.get(), buffer.get() + row.expected.size()), row.expected) << row.bits;
  }
}

TEST(FillSilence, RefusesNoBufferAndNegativeWidths) {
  unsigned char byte = 0xEE;
  EXPECT_EQ(QXVFillSilence(8, nullptr, 1), -1);
  EXPECT_EQ(QXVFillSilence(-8, &byte, 1), -1);
  EXPECT_EQ(QXVFillSilence(INT_MIN, &byte, 1), -1);
  EXPECT_EQ(QXVFillSilence(8, nullptr, 0), 0) << "nothing is asked for";
  EXPECT_EQ(QXVFillSilence(8, &byte, INT_MIN), 0);
  EXPECT_EQ(byte, 0xEE);
}

TEST(SplitPcm, SamplesOfEachWidth) {
  EXPECT_EQ(One(1, 1, 0, {0x80, 0x00, 0xFF, 0xC0}, 4), (std::vector<float>{0, -1, 127 * 0x1p-7f, 0.5f}));
  EXPECT_EQ(One(1, 2, 0, {0x00, 0x80, 0xFF, 0x7F, 0xFF, 0xFF, 0x00, 0x40}, 4),
            (std::vector<float>{-1, 32767 * 0x1p-15f, -1 * 0x1p-15f, 0.5f}));
  EXPECT_EQ(One(1, 3, 0, {0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x40}, 4),
            (std::vector<float>{-1 * 0x1p-23f, -1, 8388607 * 0x1p-23f, 0.5f}));
  EXPECT_EQ(One(1, 4, 0, {0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x20, 0xC1}, 2), (std::vector<float>{1, -10}));
}

TEST(SplitPcm, FloatsKeepTheirBits) {
  const Bytes signalling{0x01, 0x00, 0x80, 0x7F};  // a NaN that arithmetic would turn quiet
  const std::vector<float> one = One(1, 4, 0, signalling, 1);
  EXPECT_EQ(std::memcmp(one.data(), signalling.data(), 4), 0);
  float sample = 0;
  float* const channels[] = {&sample};
  EXPECT_EQ(QXVSplitPCM(1, 4, signalling.data(), channels, 1), 0);
  EXPECT_EQ(std::memcmp(&sample, signalling.data(), 4), 0);
}

TEST(SplitPcm, OneChannelOfSeveral) {
  const Bytes source{0, 64, 1, 64, 2, 64, 3, 64, 4, 64, 5, 64};  // 16 bits: 0x4000 + n, three channels of two frames
  for (int channel = 0; channel < 3; ++channel) {
    const auto c = static_cast<float>(channel);
    EXPECT_EQ(One(3, 6, channel, source, 2), (std::vector<float>{(16384 + c) * 0x1p-15f, (16387 + c) * 0x1p-15f}));
  }
}

TEST(SplitPcm, AllChannels) {
  const Bytes source{0, 64, 1, 64, 2, 64, 3, 64, 4, 64, 5, 64};
  std::vector<float> a(2), b(2), c(2);
  float* const three[] = {a.data(), b.data(), c.data()};
  EXPECT_EQ(QXVSplitPCM(3, 6, source.data(), three, 2), 0);
  EXPECT_EQ(a, (std::vector<float>{16384 * 0x1p-15f, 16387 * 0x1p-15f}));
  EXPECT_EQ(b, (std::vector<float>{16385 * 0x1p-15f, 16388 * 0x1p-15f}));
  EXPECT_EQ(c, (std::vector<float>{16386 * 0x1p-15f, 16389 * 0x1p-15f}));
}

// A frame of five bytes for two channels: two bytes a sample. One channel keeps to the frames, all channels read without gaps.
TEST(SplitPcm, ARestInTheFrameSeparatesTheTwoForms) {
  const Bytes source{0x00, 0x10, 0x00, 0x20, 0xEE, 0x00, 0x30, 0x00, 0x40, 0xEE};
  EXPECT_EQ(One(2, 5, 0, source, 2), (std::vector<float>{0x1000 * 0x1p-15f, 0x3000 * 0x1p-15f}));
  EXPECT_EQ(One(2, 5, 1, source, 2), (std::vector<float>{0x2000 * 0x1p-15f, 0x4000 * 0x1p-15f}));
  std::vector<float> a(2), b(2);
  float* const two[] = {a.data(), b.data()};
  EXPECT_EQ(QXVSplitPCM(2, 5, source.data(), two, 2), 0);
  EXPECT_EQ(a, (std::vector<float>{0x1000 * 0x1p-15f, 0x00EE * 0x1p-15f}));
  EXPECT_EQ(b, (std::vector<float>{0x2000 * 0x1p-15f, 0x0030 * 0x1p-15f}));
}

TEST(SplitPcm, OtherWidthsLeaveTheSlots) {
  const Bytes source(64, 0x55);
  EXPECT_EQ(One(1, 5, 0, source, 2), (std::vector<float>{-7, -7}));
  EXPECT_EQ(One(4, 3, 0, source, 2), (std::vector<float>{-7, -7})) << "no whole byte a sample";
  EXPECT_EQ(One(1, 0, 0, source, 2), (std::vector<float>{-7, -7}));
  EXPECT_EQ(One(1, -2, 0, source, 2), (std::vector<float>{-7, -7}));
  float slot = -7;
  float* const one[] = {&slot};
  EXPECT_EQ(QXVSplitPCM(1, 5, source.data(), one, 1), 0);
  EXPECT_EQ(QXVSplitPCM(1, -1, source.data(), one, 1), 0);
  EXPECT_EQ(slot, -7);
}

TEST(SplitPcm, RefusesChannelsThatAreNotThere) {
  const Bytes source(16, 0x55);
  float slot = -7;
  float* const one[] = {&slot};
  for (const int channel : {-1, 2, INT_MAX, INT_MIN}) {
    EXPECT_EQ(QXVSplitPCM(2, 4, channel, source.data(), &slot, 1), -1) << channel;
  }
  for (const int channels : {0, -1, INT_MIN}) {
    EXPECT_EQ(QXVSplitPCM(channels, 4, 0, source.data(), &slot, 1), -1) << channels;
    EXPECT_EQ(QXVSplitPCM(channels, 4, source.data(), one, 1), -1) << channels;
  }
  EXPECT_EQ(QXVSplitPCM(1, 2, 0, nullptr, &slot, 1), -1);
  EXPECT_EQ(QXVSplitPCM(1, 2, 0, source.data(), nullptr, 1), -1);
  EXPECT_EQ(QXVSplitPCM(1, 2, nullptr, one, 1), -1);
  EXPECT_EQ(QXVSplitPCM(1, 2, source.data(), nullptr, 1), -1);
  EXPECT_EQ(QXVSplitPCM(1, 2, 0, source.data(), &slot, 0), 0);
  EXPECT_EQ(QXVSplitPCM(1, 2, source.data(), one, INT_MIN), 0);
  EXPECT_EQ(slot, -7);
}

TEST(SplitPcmKept, TheFirstSamplesPlaceWraps) {
  // 131072 channels of one byte: 131072 x 32768 is 2^32, so that channel is read from the start of the frame.
  constexpr int kChannels = 131072;
  Bytes source(kChannels);
  source[0] = 0xC0;
  EXPECT_EQ(One(kChannels, kChannels, 32768, source, 1), (std::vector<float>{0.5f}));
  EXPECT_EQ(One(kChannels, kChannels, 32769, source, 1), (std::vector<float>{-1})) << "the byte behind it";
  // 131072 x 16384 is 2^31, below zero in 32 bits: a place before the block, which is refused.
  float slot = -7;
  EXPECT_EQ(QXVSplitPCM(kChannels, kChannels, 16384, source.data(), &slot, 1), -1);
  EXPECT_EQ(slot, -7);
}

// All widths, lengths around every vector size and channel counts, in each tier, against the rule of one sample.
TEST(SplitPcm, EveryTierEqualsTheRuleOfOneSample) {
  std::mt19937 random(31);
  support::ForEachCpuTier([&] {
    for (int width = 1; width <= 4; ++width) {
      for (const int channels : {1, 2, 3, 6}) {
        for (int frames = 0; frames <= 70; ++frames) {
          const auto count = static_cast<std::size_t>(channels * frames);
          auto bytes = std::make_unique<unsigned char[]>(count * static_cast<std::size_t>(width));
          for (std::size_t i = 0; i < count * static_cast<std::size_t>(width); ++i) {
            bytes[i] = static_cast<unsigned char>(random());
          }
          std::vector<std::unique_ptr<float[]>> slots;
          std::vector<float*> targets;
          for (int c = 0; c < channels; ++c) {
            slots.push_back(std::make_unique<float[]>(static_cast<std::size_t>(frames)));
            targets.push_back(slots.back().get());
          }
          ASSERT_EQ(QXVSplitPCM(channels, channels * width, bytes.get(), targets.data(), frames), 0);
          for (std::size_t k = 0; k < count; ++k) {
            const float expected = qxv::SampleFromBytes(width, bytes.get() + k * static_cast<std::size_t>(width));
            const float actual = targets[k % static_cast<std::size_t>(channels)][k / static_cast<std::size_t>(channels)];
            ASSERT_EQ(std::memcmp(&actual, &expected, sizeof actual), 0) << width << " bytes, sample " << k << " of " << count;
          }
          for (int c = 0; c < channels; ++c) {
            auto one = std::make_unique<float[]>(static_cast<std::size_t>(frames));
            ASSERT_EQ(QXVSplitPCM(channels, channels * width, c, bytes.get(), one.get(), frames), 0);
            ASSERT_EQ(std::memcmp(one.get(), targets[static_cast<std::size_t>(c)], static_cast<std::size_t>(frames) * 4), 0);
          }
        }
      }
    }
  });
}

TEST(SplitPcm, ThousandsOfChannels) {
  constexpr int kChannels = 5000, kFrames = 3;
  Bytes source(kChannels * kFrames * 2);
  std::vector<float> samples(kChannels * kFrames);
  std::vector<float*> targets;
  for (int c = 0; c < kChannels; ++c) {
    targets.push_back(&samples[static_cast<std::size_t>(c) * kFrames]);
    for (int f = 0; f < kFrames; ++f) {
      source[static_cast<std::size_t>(f * kChannels + c) * 2] = static_cast<unsigned char>(c + f);
    }
  }
  ASSERT_EQ(QXVSplitPCM(kChannels, kChannels * 2, source.data(), targets.data(), kFrames), 0);
  for (int c = 0; c < kChannels; ++c) {
    for (int f = 0; f < kFrames; ++f) {
      ASSERT_EQ(targets[static_cast<std::size_t>(c)][f], static_cast<float>((c + f) % 256) * 0x1p-15f);
    }
  }
}

TEST(SampleBytes, PastTheCachesTheyAreTheSame) {
  std::mt19937 random(34);
  support::ForEachCpuTier([&] {
    for (int width = 1; width <= 4; ++width) {
      for (std::size_t count = 0; count <= 70; ++count) {
        const std::size_t before = random() % 17;  // of any alignment
        const std::size_t size = count * static_cast<std::size_t>(width);
        const auto bytes = std::make_unique<unsigned char[]>(size);
        std::generate_n(bytes.get(), size, [&] { return static_cast<unsigned char>(random()); });
        const auto samples = std::make_unique<float[]>(before + count);
        std::fill_n(samples.get(), before, -7.0f);
        qxv::SamplesFromBytesPastCaches(width, bytes.get(), samples.get() + before, count);
        for (std::size_t i = 0; i < count; ++i) {
          const float expected = qxv::SampleFromBytes(width, bytes.get() + i * static_cast<std::size_t>(width));
          ASSERT_EQ(std::memcmp(&samples[before + i], &expected, sizeof expected), 0)
              << width << " bytes, " << i << " of " << count;
        }
        ASSERT_TRUE(before == 0 || samples[before - 1] == -7.0f);
      }
    }
  });
}

TEST(SampleBytes, EveryTierEqualsTheRuleOfOneSample) {
  std::mt19937 random(32);
  std::uniform_real_distribution<float> usual(-1.5f, 1.5f);
  const float special[] = {0.0f,
                           -0.0f,
                           1.0f,
                           -1.0f,
                           0.5f,
                           1e-9f,
                           65536.0f,
                           -65536.5f,
                           1e30f,
                           -1e30f,
                           std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity(),
                           std::numeric_limits<float>::quiet_NaN(),
                           std::numeric_limits<float>::denorm_min()};
  support::ForEachCpuTier([&] {
    for (int width = 1; width <= 4; ++width) {
      for (std::size_t count = 0; count <= 70; ++count) {
        auto samples = std::make_unique<float[]>(count);
        for (std::size_t i = 0; i < count; ++i) {
          samples[i] = random() % 4 == 0 ? special[random() % std::size(special)] : usual(random);
        }
        const auto size = count * static_cast<std::size_t>(width);
        auto bytes = std::make_unique<unsigned char[]>(size);
        qxv::BytesFromSamples(width, samples.get(), bytes.get(), count);
        for (std::size_t i = 0; i < count; ++i) {
          unsigned char expected[4];
          qxv::ByteSample(width, samples[i], expected);
          ASSERT_EQ(std::memcmp(bytes.get() + i * static_cast<std::size_t>(width), expected, static_cast<std::size_t>(width)), 0)
              << width << " bytes of " << samples[i];
        }
      }
    }
  });
}

TEST(ClampSamples, ToWhatTheWidthHolds) {
  const float infinity = std::numeric_limits<float>::infinity();
  const std::vector<float> wild{-infinity, -2, -1, -0.5f, 0, 0.5f, 0.99999f, 1, 2, infinity};
  const struct {
    int bits;
    float highest;
  } rows[] = {{16, 1 - 0x1p-15f}, {24, 1 - 0x1p-23f}, {32, 1}};
  for (const auto& row : rows) {
    std::vector<float> samples = wild;
    EXPECT_EQ(QXVClampSamples(samples.data(), static_cast<int>(samples.size()), row.bits), 0);
    const float inside = row.bits == 16 ? 1 - 0x1p-15f : 0.99999f;  // 0.99999 exceeds the highest 16-bit sample
    EXPECT_EQ(samples, (std::vector<float>{-1, -1, -1, -0.5f, 0, 0.5f, inside, row.highest, row.highest, row.highest}))
        << row.bits;
  }
  for (const int bits : {8, 0, -16, 12, 20, 64}) {
    std::vector<float> samples = wild;
    EXPECT_EQ(QXVClampSamples(samples.data(), static_cast<int>(samples.size()), bits), 0);
    EXPECT_EQ(samples, wild) << bits;
  }
  float noNumber = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(QXVClampSamples(&noNumber, 1, 16), 0);
  EXPECT_TRUE(std::isnan(noNumber));
  EXPECT_EQ(QXVClampSamples(nullptr, 1, 16), -1);
  EXPECT_EQ(QXVClampSamples(nullptr, 0, 16), 0);
}

}  // namespace
