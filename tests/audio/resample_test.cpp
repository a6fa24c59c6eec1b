// resample_test.cpp - one channel at another rate.

#include "qxv/audio.h"

#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace {

std::vector<float> ReSampled(const std::vector<float>& source, int from, int to) {
  std::vector<float> target(source.size() * 8 + 64, -7.0f);
  int count = -99;
  EXPECT_EQ(QXVReSample(source.data(), from, static_cast<int>(source.size()), target.data(), to, count), 0);
  EXPECT_GE(count, 0);
  for (std::size_t i = static_cast<std::size_t>(count); i < target.size(); ++i) {
    EXPECT_EQ(target[i], -7.0f) << "behind the last sample";
  }
  target.resize(static_cast<std::size_t>(count));
  return target;
}

TEST(ReSample, EqualRatesCopy) {
  EXPECT_EQ(ReSampled({1, 2, 3}, 48000, 48000), (std::vector<float>{1, 2, 3}));
  EXPECT_EQ(ReSampled({1, 2, 3}, 0, 0), (std::vector<float>{1, 2, 3}));
}

TEST(ReSample, DownwardsLiesOnStraightLines) {
  // Positions 0, 48000/44100 and 96000/44100.
  const std::vector<float> samples = ReSampled({0, 441, 882, 1323}, 48000, 44100);
  ASSERT_EQ(samples.size(), 3u);
  EXPECT_EQ(samples[0], 0);
  EXPECT_FLOAT_EQ(samples[1], 480);
  EXPECT_FLOAT_EQ(samples[2], 960);
}

TEST(ReSample, UpwardsBlendsTheLastWithZero) {
  EXPECT_EQ(ReSampled({10, 20}, 22050, 44100), (std::vector<float>{10, 15, 20, 10}));
}

TEST(ReSample, NothingComesOfNothing) {
  int count = -99;
  float slot = -7;
  EXPECT_EQ(QXVReSample(&slot, 48000, 0, &slot, 44100, count), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(QXVReSample(nullptr, 48000, -5, nullptr, 48000, count), 0);
  EXPECT_EQ(count, -5) << "equal rates hand the count on";
  EXPECT_EQ(QXVReSample(&slot, 48000, -5, &slot, 44100, count), 0);
  EXPECT_EQ(count, -4) << "and other rates its share: no samples";
  EXPECT_EQ(QXVReSample(&slot, 44100, -50000, &slot, 48000, count), 0);
  EXPECT_EQ(count, 0) << "a product that wraps above zero is no room";
  EXPECT_EQ(QXVReSample(&slot, 48000, 1, &slot, 0, count), 0) << "no samples a second";
  EXPECT_EQ(count, 0);
  EXPECT_EQ(slot, -7);
}

TEST(ReSample, RefusesARateOfZeroAndNullPointers) {
  int count = -99;
  float slot = -7;
  EXPECT_EQ(QXVReSample(&slot, 0, 1, &slot, 44100, count), -1);
  EXPECT_EQ(count, 0);
  count = -99;
  EXPECT_EQ(QXVReSample(nullptr, 48000, 1, &slot, 44100, count), -1);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(QXVReSample(&slot, 48000, 1, nullptr, 44100, count), -1);
  EXPECT_EQ(slot, -7);
}

TEST(ReSampleKept, TheProductOfCountAndRateWraps) {
  // 96000 x 48000 is 313032704 modulo 2^32, and that through 96000 is 3260.
  const std::vector<float> source(96000, 0.25f);
  EXPECT_EQ(ReSampled(source, 96000, 48000).size(), 3260u);
}

TEST(ReSample, HostileRatesNeitherTrapNorLeaveTheSource) {
  const std::vector<float> source{1, 2};
  const auto guarded = std::make_unique<float[]>(2);
  std::copy(source.begin(), source.end(), guarded.get());
  std::vector<float> target(64, -7.0f);
  int count = 0;
  EXPECT_EQ(QXVReSample(guarded.get(), -1, 1, target.data(), INT_MIN, count), 0) << "2^31 samples, which no int counts";
  EXPECT_EQ(count, INT_MIN);
  EXPECT_EQ(QXVReSample(guarded.get(), INT_MAX, 2, target.data(), 1, count), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(QXVReSample(guarded.get(), -2, 2, target.data(), -4, count), 0) << "both below zero: as if above";
  EXPECT_EQ(count, 4);
  EXPECT_EQ(target[1], 1.5f);
  EXPECT_EQ(QXVReSample(guarded.get(), -2, 2, target.data(), 4, count), 0);
  EXPECT_EQ(count, -4) << "no samples";
}

// The rule once more, plainly, in each tier.
TEST(ReSample, EveryTierEqualsThePlainRule) {
  std::mt19937 random(33);
  std::uniform_real_distribution<float> any(-1, 1);
  const int rates[] = {8000, 11025, 22050, 32000, 44100, 48000, 96000, 192000, 7, 1};
  support::ForEachCpuTier([&] {
    for (int round = 0; round < 400; ++round) {
      const int from = rates[random() % std::size(rates)], to = rates[random() % std::size(rates)];
      const int sourceCount = static_cast<int>(random() % 60) + 1;
      const std::int64_t expectedCount = from == to ? sourceCount : std::int64_t{sourceCount} * to / from;
      if (expectedCount > 100000) {
        continue;
      }
      auto source = std::make_unique<float[]>(static_cast<std::size_t>(sourceCount));
      for (int i = 0; i < sourceCount; ++i) {
        source[static_cast<std::size_t>(i)] = any(random);
      }
      auto target = std::make_unique<float[]>(static_cast<std::size_t>(expectedCount));
      int count = -1;
      ASSERT_EQ(QXVReSample(source.get(), from, sourceCount, target.get(), to, count), 0);
      ASSERT_EQ(count, expectedCount) << from << " to " << to;
      for (int i = 0; i < count; ++i) {
        float expected = source[static_cast<std::size_t>(std::min(i, sourceCount - 1))];
        if (from != to) {
          const double position = static_cast<double>(i) * from / to;
          const auto k = static_cast<std::int64_t>(position);
          const double s0 = k < sourceCount ? source[static_cast<std::size_t>(k)] : 0;
          const double s1 = k + 1 < sourceCount ? source[static_cast<std::size_t>(k + 1)] : 0;
          const auto whole = static_cast<double>(k);
          expected = static_cast<float>((position - whole) * s1 + (whole + 1 - position) * s0);
        }
        ASSERT_EQ(target[static_cast<std::size_t>(i)], expected) << from << " to " << to << ", sample " << i << " of " << count;
      }
    }
  });
}

// Far into a block positions have few bits left behind the point. Each tier's divisions round as the plain one.
TEST(ReSample, LongBlocksInEveryTier) {
  constexpr int kCount = 300'000;
  std::mt19937 random(35);
  std::uniform_real_distribution<float> any(-1, 1);
  std::vector<float> source(kCount);
  std::generate(source.begin(), source.end(), [&] { return any(random); });
  const struct {
    int from, to;
  } rates[] = {{48000, 44100}, {44100, 48000}, {7, 5}, {6999, 7001}, {3, 1}, {6997, 4999}, {1, 3}, {7127, 6841}};
  for (const auto& row : rates) {
    SCOPED_TRACE(row.from);
    const int usable = static_cast<int>(std::min<std::int64_t>(kCount, INT_MAX / row.to));
    std::vector<float> expected(static_cast<std::size_t>(std::int64_t{usable} * row.to / row.from));
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const double position = static_cast<double>(i) * row.from / row.to;
      const auto k = static_cast<std::size_t>(position);
      const double s0 = source[k], s1 = k + 1 < static_cast<std::size_t>(usable) ? source[k + 1] : 0;
      const auto whole = static_cast<double>(k);
      expected[i] = static_cast<float>((position - whole) * s1 + (whole + 1 - position) * s0);
    }
    support::ForEachCpuTier([&] {
      std::vector<float> target(expected.size());
      int count = 0;
      ASSERT_EQ(QXVReSample(source.data(), row.from, usable, target.data(), row.to, count), 0);
      ASSERT_EQ(static_cast<std::size_t>(count), expected.size());
      EXPECT_TRUE(target == expected);
    });
  }
}

TEST(ReSample, OfARisingRampRises) {
  std::vector<float> ramp(500);
  for (std::size_t i = 0; i < ramp.size(); ++i) {
    ramp[i] = static_cast<float>(i);
  }
  for (const int to : {44100, 32000, 96000, 48001}) {
    std::vector<float> samples = ReSampled(ramp, 48000, to);
    while (!samples.empty() && samples.back() < samples[samples.size() / 2]) {
      samples.pop_back();  // the blend with zero behind the last one
    }
    EXPECT_TRUE(std::is_sorted(samples.begin(), samples.end())) << to;
  }
}

}  // namespace
