// resample_test.cpp - pictures at another size: the rule by hand, by many sizes, in every tier.

#include "image/resample.h"

#include "image/pixel_oracle.h"
#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using namespace pixel_oracle;

Bytes Resample(const Bytes& in, qxv::PictureSides source, qxv::PictureSides result) {
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[in.size()]);
  std::copy(in.begin(), in.end(), exact.get());
  const std::size_t stride = 4 * static_cast<std::size_t>(source.width), row = 4 * static_cast<std::size_t>(result.width);
  const std::unique_ptr<unsigned char[]> out(new unsigned char[row]);
  qxv::Resampler resampler(source, result);
  Bytes all;
  for (int r = 0; r < result.height; ++r) {
    resampler.Row(
        r, [&](std::int32_t y) { return exact.get() + static_cast<std::size_t>(y) * stride; }, out.get());
    all.insert(all.end(), out.get(), out.get() + row);
  }
  return all;
}

Bytes Wanted(const Bytes& in, const Shape& source, const Shape& result) {
  Bytes wanted;
  for (int row = 0; row < result.height; ++row) {
    for (int column = 0; column < result.width; ++column) {
      for (std::size_t n = 0; n < 4; ++n) {
        wanted.push_back(Blend(column, row, source, result, [&](int r, int c) {
          return static_cast<float>(in[4 * static_cast<std::size_t>(r * source.width + c) + n]);
        }));
      }
    }
  }
  return wanted;
}

Bytes Grey(const Bytes& values) {
  Bytes pixels;
  for (const unsigned char value : values) {
    pixels.insert(pixels.end(), 4, value);
  }
  return pixels;
}

// x = 0, 0.5, 1, 1.5: the last two reach beyond with weights 0, 1 and -0.5, 1.5.
TEST(ResampleKept, LastColumnsReachBeyondTheSource) {
  support::ForEachCpuTier([] {
    EXPECT_EQ(Resample(Grey({0, 255}), {2, 1}, {4, 1}), Grey({0, 128, 255, 255}));
    EXPECT_EQ(Resample(Grey({100, 140}), {2, 1}, {4, 1}), Grey({100, 120, 140, 160}));
    EXPECT_EQ(Resample(Grey({140, 100}), {1, 2}, {1, 4}), Grey({140, 120, 100, 80}));
  });
}

// x = 0, 4/3, 8/3: 10, a third of the way from 20 to 30, two thirds of the way from 30 to 40.
TEST(Resample, FourBecomeThree) {
  support::ForEachCpuTier([] { EXPECT_EQ(Resample(Grey({10, 20, 30, 40}), {4, 1}, {3, 1}), Grey({10, 23, 37})); });
}

TEST(Resample, OnePixelFillsEverySize) {
  support::ForEachCpuTier([] {
    for (int side = 1; side < 40; ++side) {
      const Bytes out = Resample({1, 127, 200, 255}, {1, 1}, {side, 41 - side});
      for (std::size_t i = 0; i < out.size(); i += 4) {
        ASSERT_EQ(Bytes(&out[i], &out[i] + 4), (Bytes{1, 127, 200, 255})) << side;
      }
    }
  });
}

TEST(Resample, HalfTheSizeTakesEveryOtherPixel) {
  support::ForEachCpuTier([] {
    EXPECT_EQ(Resample(Grey({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}), {4, 4}, {2, 2}), Grey({1, 3, 9, 11}));
  });
}

TEST(Resample, WholeStepsTakeTheirPixelsAtEveryLength) {
  for (const int step : {2, 3, 4, 5}) {
    for (int side = 1; side < 72; ++side) {
      const Bytes in = Mixed(4 * static_cast<std::size_t>(step * side), 3);
      Bytes wanted;
      for (std::size_t i = 0; i < in.size(); i += 4 * static_cast<std::size_t>(step)) {
        wanted.insert(wanted.end(), &in[i], &in[i] + 4);
      }
      support::ForEachCpuTier([&] { ASSERT_TRUE(Resample(in, {step * side, 1}, {side, 1}) == wanted) << step << ' ' << side; });
    }
  }
}

TEST(Resample, EveryPairOfSizesFollowsTheRule) {
  constexpr int kSides[] = {1, 2, 3, 5, 7, 8, 9, 16, 17, 24, 33, 48, 64, 71};
  std::size_t pairs = 0;
  for (const int from : kSides) {
    for (const int to : kSides) {
      const Shape source{32, from, 72 - from, 0}, result{32, to, (to * 5 + from) % 61 + 1, 0};
      const Bytes in = Mixed(4 * static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.height), 5);
      const Bytes wanted = Wanted(in, source, result);
      support::ForEachCpuTier([&] {
        ASSERT_TRUE(Resample(in, {source.width, source.height}, {result.width, result.height}) == wanted)
            << source.width << 'x' << source.height << " to " << result.width << 'x' << result.height;
      });
      ++pairs;
    }
  }
  EXPECT_GE(pairs, 40u);
}

TEST(Resample, WholeFactorsAndQuartersFollowTheRule) {
  struct Sides {
    int from, to;
  };
  for (const Sides& sides : {Sides{30, 20}, {20, 40}, {20, 80}, {80, 20}, {60, 80}, {25, 20}, {36, 16}, {16, 16}}) {
    const int from = sides.from, to = sides.to;
    for (const int otherTo : {30, 45, 60, 15}) {
      const Shape source{32, from, 30, 0}, result{32, to, otherTo, 0};
      const Bytes in = Mixed(4 * static_cast<std::size_t>(from) * 30, 6);
      const Bytes wanted = Wanted(in, source, result);
      support::ForEachCpuTier([&] {
        ASSERT_TRUE(Resample(in, {from, 30}, {to, otherTo}) == wanted) << from << ' ' << to << ' ' << otherTo;
      });
    }
  }
}

// Whole numbers may do the work where the sizes have a simple ratio; the longer a side, the coarser its places in single
// precision.
TEST(Resample, SimpleRatiosOfLongSidesFollowTheRule) {
  struct Sides {
    int from, to;
  };
  for (const Sides& sides : {Sides{1280, 1920},
                             {1920, 1280},
                             {1440, 1080},
                             {2560, 1920},
                             {2560, 3840},
                             {3840, 2560},
                             {1920, 3840},
                             {3840, 1920},
                             {3840, 1280},
                             {3840, 960},
                             {1280, 3840},
                             {1200, 2000},
                             {2000, 1200},
                             {4000, 2800},
                             {6000, 10000},
                             {1279, 1919},
                             {40000, 60000},
                             {300000, 200000}}) {
    const Shape wide{32, sides.from, 4, 0}, high{32, 4, sides.from, 0};
    for (const Shape& source : {wide, high}) {
      const int otherSide = sides.from % 3 == 0 ? 8 : 6;  // halves beside thirds, too
      const bool isWide = source.width == sides.from;
      const Shape result{32, isWide ? sides.to : otherSide, isWide ? otherSide : sides.to, 0};
      const Bytes in = Mixed(4 * static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.height), 7);
      const Bytes wanted = Wanted(in, source, result);
      support::ForEachCpuTier([&] {
        ASSERT_TRUE(Resample(in, {source.width, source.height}, {result.width, result.height}) == wanted)
            << source.width << 'x' << source.height << " to " << result.width << 'x' << result.height;
      });
    }
  }
}

// Rows of the source are not kept then, and blocks of 8 pixels come in many ways: alone, with a rest, at the end of a row.
TEST(Resample, SimpleRatiosOfPicturesThatBecomeLowerFollowTheRule) {
  struct Sides {
    int from, to;
  };
  constexpr Sides kWidths[] = {{15, 10}, {24, 16},  {27, 18},   {30, 20}, {48, 32}, {69, 46}, {1200, 800},
                               {32, 24}, {60, 45},  {160, 120}, {40, 24}, {70, 50}, {28, 20}, {45, 25},
                               {20, 16}, {100, 80}, {30, 30},   {20, 30}, {16, 32}, {24, 36}, {36, 16}};
  constexpr Sides kHeights[] = {{6, 4}, {8, 6}, {10, 6}, {14, 10}, {5, 4}, {7, 7}, {9, 3}};
  for (const Sides& width : kWidths) {
    for (const Sides& height : kHeights) {
      const Shape source{32, width.from, height.from, 0}, result{32, width.to, height.to, 0};
      const Bytes in = Mixed(4 * static_cast<std::size_t>(width.from) * static_cast<std::size_t>(height.from), 10);
      const Bytes wanted = Wanted(in, source, result);
      support::ForEachCpuTier([&] {
        ASSERT_TRUE(Resample(in, {width.from, height.from}, {width.to, height.to}) == wanted)
            << width.from << 'x' << height.from << " to " << width.to << 'x' << height.to;
      });
    }
  }
}

// Both sides at their full length, so that the errors of both weights meet.
TEST(Resample, TwoToThreeOfAWholePictureFollowsTheRule) {
  const Shape source{32, 1280, 720, 0}, result{32, 1920, 1080, 0};
  const Bytes in = Mixed(4 * 1280 * 720, 9);
  const Bytes wanted = Wanted(in, source, result);
  support::ForEachCpuTier([&] { ASSERT_TRUE(Resample(in, {1280, 720}, {1920, 1080}) == wanted); });
}

// Values at which the last columns and rows reach farthest beyond a byte, on both sides.
TEST(Resample, ExtremesFollowTheRuleInEveryRatio) {
  for (int from = 1; from <= 6; ++from) {
    for (int to = 1; to <= 12; ++to) {
      for (unsigned pattern = 0; pattern < 64; ++pattern) {
        const Shape source{32, from, from, 0}, result{32, to, to, 0};
        Bytes in;
        for (int i = 0; i < from * from; ++i) {
          const bool isLight = (pattern >> (i % 5 + i / from % 2)) % 2 != 0;
          in.insert(in.end(), {static_cast<unsigned char>(isLight ? 255 : 0), static_cast<unsigned char>(isLight ? 0 : 255),
                               static_cast<unsigned char>(isLight ? 254 : 1), 255});
        }
        const Bytes wanted = Wanted(in, source, result);
        support::ForEachCpuTier([&] { ASSERT_TRUE(Resample(in, {from, from}, {to, to}) == wanted) << from << ' ' << to; });
      }
    }
  }
}

TEST(Resample, PlacesNeverLeaveTheSource) {
  for (const int source : {1, 2, 16777217, 33554431, 2147483647}) {
    for (const int side : {1, 3, 16777216, 16777219, 2147483647}) {
      for (const int index : {0, side / 2, side - 1}) {
        const qxv::Tap tap = qxv::TapAt(index, source, side);
        EXPECT_TRUE(tap.first >= 0 && tap.first < source) << source << ' ' << side << ' ' << index;
        EXPECT_TRUE(tap.second >= tap.first && tap.second < source) << source << ' ' << side << ' ' << index;
      }
    }
  }
}

TEST(Resample, RowsMayBeAskedForInAnyOrder) {
  const Bytes in = Mixed(4 * 9 * 7, 8);
  const Bytes inOrder = Resample(in, {9, 7}, {11, 10});
  qxv::Resampler resampler({9, 7}, {11, 10});
  Bytes row(44);
  for (const int r : {9, 0, 5, 5, 1, 8, 2}) {
    resampler.Row(
        r, [&](std::int32_t y) { return in.data() + static_cast<std::size_t>(y) * 36; }, row.data());
    EXPECT_TRUE(std::equal(row.begin(), row.end(), inOrder.begin() + r * 44)) << r;
  }
}

TEST(Resample, OneRowOfOddNumberAndOneOfEvenNumberAreKept) {
  for (const auto& [width, height] : {std::pair{20, 4}, {20, 6}, {20, 7}, {20, 13}, {30, 4}, {30, 6}, {30, 13}, {15, 6}}) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    const Bytes in = Mixed(4 * 30 * 8, 11);
    const Bytes inOrder = Resample(in, {30, 8}, {width, height});
    qxv::Resampler resampler({30, 8}, {width, height});
    Bytes kept(2 * 120), row(4 * static_cast<std::size_t>(width));
    const auto fetch = [&](std::int32_t y) -> const unsigned char* {
      unsigned char* const place = kept.data() + y % 2 * 120;
      std::copy_n(in.begin() + y * 120, 120, place);
      return place;
    };
    const auto expectRow = [&](int r) {
      resampler.Row(r, fetch, row.data());
      ASSERT_TRUE(std::equal(row.begin(), row.end(), inOrder.begin() + r * static_cast<int>(row.size()))) << r;
    };
    for (int r = 0; r < height; ++r) {
      expectRow(r);
    }
    for (int r = height; r-- > 0;) {
      for (int between = 0; between < height; ++between) {
        expectRow(between);
        expectRow(r);
      }
    }
  }
}

}  // namespace
