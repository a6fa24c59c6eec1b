// pixel_layout_test.cpp - sizes of the layouts, every converter in every tier, whole pictures between all layouts.

#include "image/pixel_layout.h"

#include "image/pixel_layout_frame.h"
#include "image/pixel_oracle.h"
#include "support/cpu_tier.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <vector>

namespace {

using namespace pixel_oracle;
using qxv::FrameShape;

Bytes Convert(qxv::RowConverter convert, const Bytes& in, std::size_t pixels, std::size_t bytesPerPixel) {
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[in.size()]), out(new unsigned char[pixels * bytesPerPixel]);
  std::copy(in.begin(), in.end(), exact.get());  // blocks that end where a page ends
  convert(exact.get(), pixels, out.get());
  return Bytes(out.get(), out.get() + pixels * bytesPerPixel);
}

TEST(PixelLayout, LookupAnswersThreeFourOrTheStatus) {
  EXPECT_EQ(qxv::LayoutBytesLookup(4), 3u);
  EXPECT_EQ(qxv::LayoutBytesLookup(0x02000000), 3u);
  for (const std::uint32_t layout : {1u, 32u, 64u, 128u}) {
    EXPECT_EQ(qxv::LayoutBytesLookup(layout), 4u) << layout;
    EXPECT_EQ(qxv::LayoutBytes(layout), 4u) << layout;
  }
  for (const std::uint32_t layout : {0u, 2u, 16u, 256u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(qxv::LayoutBytesLookup(layout), 0x89601A17u) << layout;
    EXPECT_EQ(qxv::LayoutBytes(layout), 0u) << layout;
  }
}

TEST(PixelLayoutKept, YuvAndRgbHaveNoSizeInTheLookup) {
  EXPECT_EQ(qxv::LayoutBytesLookup(8), 0x89601A17u);
  EXPECT_EQ(qxv::LayoutBytesLookup(0x40000000), 0x89601A17u);
  EXPECT_EQ(qxv::LayoutBytes(8), 3u);
  EXPECT_EQ(qxv::LayoutBytes(0x40000000), 3u);
}

TEST(PixelLayout, OnlyFiveLayoutsHaveConverters) {
  for (const std::uint32_t layout : {0u, 2u, 16u, 32u, 64u, 128u, 0x80000000u}) {
    EXPECT_EQ(qxv::ToWorking(layout), nullptr) << layout;
    EXPECT_EQ(qxv::FromWorking(layout), nullptr) << layout;
  }
}

TEST(PixelLayout, BytesTakeTheirPlaces) {
  EXPECT_EQ(Convert(qxv::ToWorking(1), {10, 20, 30, 40}, 1, 4), (Bytes{40, 30, 20, 10}));
  EXPECT_EQ(Convert(qxv::ToWorking(4), {10, 20, 30}, 1, 4), (Bytes{255, 30, 20, 10}));
  EXPECT_EQ(Convert(qxv::ToWorking(0x40000000), {10, 20, 30}, 1, 4), (Bytes{255, 10, 20, 30}));
  EXPECT_EQ(Convert(qxv::FromWorking(1), {40, 30, 20, 10}, 1, 4), (Bytes{10, 20, 30, 40}));
  EXPECT_EQ(Convert(qxv::FromWorking(4), {40, 30, 20, 10}, 1, 3), (Bytes{10, 20, 30}));
  EXPECT_EQ(Convert(qxv::FromWorking(0x40000000), {40, 30, 20, 10}, 1, 3), (Bytes{30, 20, 10}));
}

// Worked out by hand from the factors.
TEST(PixelLayoutKept, ColoursFollowTheListedFactors) {
  // Y 16, U 128, V 128 is black. Y 235: 219 x 1.164352 = 254.993, x 1.164402 = 255.004, x 1.164345 = 254.992.
  EXPECT_EQ(Convert(qxv::ToWorking(8), {16, 128, 128}, 1, 4), (Bytes{255, 0, 0, 0}));
  EXPECT_EQ(Convert(qxv::ToWorking(8), {235, 128, 128}, 1, 4), (Bytes{255, 255, 255, 255}));
  // y 100, u 20, v -40: R 116.4352 + 0.00032 - 63.84056 = 52.59; G 116.4402 - 7.83482 + 32.51848 = 141.12;
  // B 116.4345 + 40.34438 - 0.00072 = 156.78.
  EXPECT_EQ(Convert(qxv::ToWorking(8), {116, 148, 88}, 1, 4), (Bytes{255, 53, 141, 157}));
  EXPECT_EQ(Convert(qxv::ToWorking(0x02000000), {88, 148, 116}, 1, 4), (Bytes{255, 53, 141, 157}));
  // R 200, G 100, B 50: Y 51.358 + 50.4135 + 4.895 + 16 = 122.67; U -29.6448 - 29.0985 + 21.9612 + 128 = 91.22;
  // V 87.8448 - 36.7783 - 3.5713 + 128 = 175.50 (175.4952).
  EXPECT_EQ(Convert(qxv::FromWorking(8), {0, 200, 100, 50}, 1, 3), (Bytes{123, 91, 175}));
  EXPECT_EQ(Convert(qxv::FromWorking(0x02000000), {0, 200, 100, 50}, 1, 3), (Bytes{175, 91, 123}));
}

TEST(PixelLayout, EveryColourIsConvertedAlikeInEveryTier) {
  constexpr std::size_t kRow = 65536;
  Bytes three(3 * kRow), working(4 * kRow), wantedWorking(4 * kRow), wantedThree(3 * kRow), out(4 * kRow);
  for (unsigned first = 0; first < 256; ++first) {
    for (std::size_t i = 0; i < kRow; ++i) {
      const auto a = static_cast<unsigned char>(first), b = static_cast<unsigned char>(i >> 8), c = static_cast<unsigned char>(i);
      const Pixel toColours = YuvToColours(a, b, c), toYuv = ColoursToYuv(a, b, c);
      const unsigned char yuv[] = {a, b, c}, rgb[] = {77, a, b, c};
      std::memcpy(&three[3 * i], yuv, 3);
      std::memcpy(&working[4 * i], rgb, 4);
      std::memcpy(&wantedWorking[4 * i], toColours.data(), 4);
      std::memcpy(&wantedThree[3 * i], toYuv.data() + 1, 3);
    }
    support::ForEachCpuTier([&] {
      qxv::ToWorking(8)(three.data(), kRow, out.data());
      ASSERT_TRUE(out == wantedWorking) << "from Y = " << first;
      qxv::FromWorking(8)(working.data(), kRow, out.data());
      ASSERT_TRUE(std::equal(wantedThree.begin(), wantedThree.end(), out.begin())) << "from R = " << first;
    });
    if (HasFatalFailure()) {
      return;
    }
  }
}

TEST(PixelLayout, RowsOfEveryLengthAreConvertedAlikeInEveryTier) {
  support::ForEachCpuTier([] {
    for (const std::uint32_t layout : kLayouts) {
      for (std::size_t pixels = 0; pixels < 150; ++pixels) {
        const Bytes in = Mixed(pixels * BytesOf(layout), 1), working = Mixed(4 * pixels, 2);
        ASSERT_EQ(Convert(qxv::ToWorking(layout), in, pixels, 4), RowToWorking(layout, in)) << layout << ' ' << pixels;
        ASSERT_EQ(Convert(qxv::FromWorking(layout), working, pixels, BytesOf(layout)), RowFromWorking(layout, working))
            << layout << ' ' << pixels;
      }
    }
  });
}

// Blocks begin where the target is aligned, whatever the source is; around the row nothing is touched.
TEST(PixelLayout, RowsAtEveryAlignmentAreConvertedAlikeInEveryTier) {
  constexpr std::size_t kLine = 64;
  support::ForEachCpuTier([] {
    for (const std::uint32_t layout : kLayouts) {
      for (const std::size_t pixels : {5u, 40u, 131u, 200u}) {
        const Bytes in = Mixed(pixels * BytesOf(layout), 1), working = Mixed(4 * pixels, 2);
        const Bytes wantedWorking = RowToWorking(layout, in), wanted = RowFromWorking(layout, working);
        alignas(kLine) unsigned char source[4 * 200 + kLine], target[4 * 200 + 2 * kLine];
        for (std::size_t at = 0; at < kLine; ++at) {
          const std::size_t from = at * 5 % kLine;
          const auto expect = [&](qxv::RowConverter convert, const Bytes& bytes, const Bytes& row) {
            std::copy(bytes.begin(), bytes.end(), source + from);
            std::fill(std::begin(target), std::end(target), static_cast<unsigned char>(0xA5));
            Bytes all(sizeof target, 0xA5);
            std::copy(row.begin(), row.end(), all.begin() + static_cast<std::ptrdiff_t>(at));
            convert(source + from, pixels, target + at);
            return std::equal(all.begin(), all.end(), target);
          };
          ASSERT_TRUE(expect(qxv::ToWorking(layout), in, wantedWorking)) << layout << ' ' << pixels << ' ' << at;
          ASSERT_TRUE(expect(qxv::FromWorking(layout), working, wanted)) << layout << ' ' << pixels << ' ' << at;
        }
      }
    }
  });
}

struct Case {
  FrameShape from, to;
};

void ExpectFrame(const Case& shapes) {
  const Bytes in = Mixed((static_cast<std::size_t>(shapes.from.width) * BytesOf(shapes.from.layout) +
                          static_cast<std::size_t>(shapes.from.padding)) *
                             static_cast<std::size_t>(shapes.from.height),
                         3);
  const Bytes wanted = Frame({shapes.from.layout, shapes.from.width, shapes.from.height, shapes.from.padding}, in,
                             {shapes.to.layout, shapes.to.width, shapes.to.height, shapes.to.padding});
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[in.size()]), out(new unsigned char[wanted.size()]);
  std::copy(in.begin(), in.end(), exact.get());
  std::fill_n(out.get(), wanted.size(), static_cast<unsigned char>(0xA5));
  ASSERT_EQ(qxv::ConvertFrame(shapes.from, exact.get(), shapes.to, out.get()), 0u);
  ASSERT_TRUE(std::equal(wanted.begin(), wanted.end(), out.get()))
      << shapes.from.layout << ' ' << shapes.from.width << 'x' << shapes.from.height << '+' << shapes.from.padding << " to "
      << shapes.to.layout << ' ' << shapes.to.width << 'x' << shapes.to.height << '+' << shapes.to.padding;
}

TEST(Frame, EveryLayoutBecomesEveryLayoutWithAnyPadding) {
  support::ForEachCpuTier([] {
    for (const std::uint32_t from : kLayouts) {
      for (const std::uint32_t to : {1u, 4u, 8u, 0x02000000u, 0x40000000u, 32u, 2u}) {  // the last two have no converter
        for (int padding = 0; padding <= 7; ++padding) {
          ASSERT_NO_FATAL_FAILURE(ExpectFrame({{from, 13, 3, padding}, {to, 13, 3, 7 - padding}}));
          ASSERT_NO_FATAL_FAILURE(ExpectFrame({{from, 13, 7, padding}, {to, 29, 5, padding}}));
          ASSERT_NO_FATAL_FAILURE(ExpectFrame({{from, 1, 1, padding}, {to, 5, 3, 7 - padding}}));
          ASSERT_NO_FATAL_FAILURE(ExpectFrame({{from, 37, 9, padding}, {to, 1, 1, padding}}));
        }
        ASSERT_NO_FATAL_FAILURE(ExpectFrame({{from, 8195, 2, 1}, {to, 8195, 2, 3}}));  // more than one piece
      }
    }
  });
}

// B G R pixels in rows of 8 bytes, the lowest first: above 4 5 6 and 7 8 9, below 10 11 12 and 13 14 15.
TEST(Frame, RowsMayLieBottomUp) {
  const unsigned char in[] = {10, 11, 12, 13, 14, 15, 0xEE, 0xEE, 4, 5, 6, 7, 8, 9, 0xEE, 0xEE};
  const qxv::SourceRows rows{in + 8, -8};
  Bytes same(14), working(16), half(3);
  ASSERT_EQ(qxv::ConvertFrame({4, 2, 2, 0}, rows, {4, 2, 2, 1}, same.data()), 0u);
  EXPECT_EQ(same, (Bytes{4, 5, 6, 7, 8, 9, 0, 10, 11, 12, 13, 14, 15, 0}));
  ASSERT_EQ(qxv::ConvertFrame({4, 2, 2, 0}, rows, {32, 2, 2, 0}, working.data()), 0u);
  EXPECT_EQ(working, (Bytes{255, 6, 5, 4, 255, 9, 8, 7, 255, 12, 11, 10, 255, 15, 14, 13}));
  ASSERT_EQ(qxv::ConvertFrame({4, 2, 2, 0}, rows, {4, 1, 1, 0}, half.data()), 0u);
  EXPECT_EQ(half, (Bytes{4, 5, 6}));
}

TEST(FrameKept, YuvWithPaddingGoesThroughTheWorkingLayout) {
  const unsigned char in[] = {0, 128, 128};  // darker than black: y = -16 gives 0 0 0, and that is 16 128 128
  unsigned char out[4] = {1, 1, 1, 1};
  ASSERT_EQ(qxv::ConvertFrame({8, 1, 1, 0}, in, {8, 1, 1, 1}, out), 0u);
  EXPECT_EQ(Bytes(out, out + 4), (Bytes{16, 128, 128, 0}));
}

// Y 0 and 255 meet in the middle at 127.5, which is 128; blended as colours they would give another byte.
TEST(Frame, YuvIsBlendedBeforeItIsConverted) {
  const unsigned char in[] = {0, 128, 128, 255, 128, 128};
  unsigned char out[16];
  ASSERT_EQ(qxv::ConvertFrame({8, 2, 1, 0}, in, {32, 4, 1, 0}, out), 0u);
  // Y 0, 128, 255, 255: y -16, 112, 239, 239; 112 x 1.164352 = 130.41, x 1.164402 = 130.41, x 1.164345 = 130.41.
  EXPECT_EQ(Bytes(out, out + 16), (Bytes{255, 0, 0, 0, 255, 130, 130, 130, 255, 255, 255, 255, 255, 255, 255, 255}));
}

TEST(Frame, RefusesWhatHasNoConverterOrNoPixels) {
  unsigned char byte[4] = {};
  for (const std::uint32_t layout : {0u, 2u, 32u, 64u, 128u, 0x80000000u}) {
    EXPECT_EQ(qxv::ConvertFrame({layout, 1, 1, 0}, byte, {1, 1, 1, 0}, byte), 0x89601A17u) << layout;
  }
  EXPECT_EQ(qxv::ConvertFrame({1, 0, 1, 0}, byte, {1, 1, 1, 0}, byte), 0x89601A16u);
  EXPECT_EQ(qxv::ConvertFrame({1, 1, 0, 0}, byte, {1, 1, 1, 0}, byte), 0x89601A16u);
  EXPECT_EQ(qxv::ConvertFrame({1, 0, 0, 0}, nullptr, {1, 0, 1, 0}, byte), 0u);
}

TEST(Frame, RowsWithoutPixelsAreTheirPadding) {
  unsigned char out[6] = {1, 1, 1, 1, 1, 1};
  ASSERT_EQ(qxv::ConvertFrame({1, 0, 0, 0}, nullptr, {4, 0, 2, 2}, out), 0u);
  EXPECT_EQ(Bytes(out, out + 6), (Bytes{0, 0, 0, 0, 1, 1}));
}

TEST(Frame, SizesAreExactAndBounded) {
  EXPECT_EQ(qxv::FrameBytes({4, 3, 2, 5}, 4), 34u);
  EXPECT_EQ(qxv::FrameBytes({1, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF}, 3), 18446744056529682436u);  // 4 x (2^31 - 1)^2
  const auto live = support::LiveArrays();
  EXPECT_THROW(qxv::NewFrame({1, -1, 1, 0}, 4), std::bad_alloc);
  EXPECT_THROW(qxv::NewFrame({1, 1, -1, 0}, 4), std::bad_alloc);
  EXPECT_THROW(qxv::NewFrame({1, 1, 1, -5}, 4), std::bad_alloc);
  EXPECT_THROW(qxv::NewFrame({1, 0x8000, 0x4000, 0}, 4), std::bad_alloc);  // 2^31
  EXPECT_EQ(support::LiveArrays(), live);
  EXPECT_NE(qxv::NewFrame({1, 0, 0, 0}, 4), nullptr);
}

TEST(Frame, LackOfMemoryLeavesNothingBehind) {
  const Bytes in(3 * 5 * 5);
  Bytes out(3 * 9 * 9);
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    ASSERT_LT(index, 100u);
    const auto live = support::LiveArrays();
    const support::FailAllocation fail(index);
    try {
      EXPECT_EQ(qxv::ConvertFrame({8, 5, 5, 0}, in.data(), {8, 9, 9, 0}, out.data()), 0u);
    } catch (const std::bad_alloc&) {
    }
    refused = fail.Refused();
    EXPECT_EQ(support::LiveArrays(), live);
  }
}

}  // namespace
