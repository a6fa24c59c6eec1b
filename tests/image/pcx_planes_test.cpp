// pcx_planes_test.cpp - planes and pixels of three bytes, in every tier.

#include "image/pcx_planes.h"

#include "image/codec_files.h"
#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using namespace image_test;

// Blocks that end where an allocation ends, offset bytes behind its start.
struct Placed {
  Placed(const std::string& bytes, std::size_t offset)
      : block(new unsigned char[bytes.size() + offset]), at(block.get() + offset) {
    std::copy(bytes.begin(), bytes.end(), at);
  }
  std::string Text(std::size_t size) const { return std::string(reinterpret_cast<const char*>(at), size); }
  std::unique_ptr<unsigned char[]> block;
  unsigned char* at;
};

TEST(PcxPlanes, AreJoinedAndSplitAlikeAtEveryLengthAndPlace) {
  support::ForEachCpuTier([] {
    for (std::size_t pixels = 0; pixels < 70; ++pixels) {
      const std::string first = MixedPixels(pixels, 1), second = MixedPixels(pixels, 2), third = MixedPixels(pixels, 3);
      std::string joined;
      for (std::size_t i = 0; i < pixels; ++i) {
        joined += {first[i], second[i], third[i]};
      }
      for (std::size_t offset = 0; offset < 17; ++offset) {
        const Placed a(first, offset), b(second, offset / 2), c(third, offset / 3), out(Zeros(3 * pixels), offset);
        qxv::JoinPlanes(a.at, b.at, c.at, pixels, out.at);
        ASSERT_EQ(Hex(out.Text(3 * pixels)), Hex(joined)) << pixels << ' ' << offset;
        const Placed in(joined, offset), d(Zeros(pixels), offset), e(Zeros(pixels), offset / 2), f(Zeros(pixels), offset / 3);
        qxv::SplitPlanes(in.at, pixels, d.at, e.at, f.at);
        ASSERT_EQ(Hex(d.Text(pixels)), Hex(first)) << pixels << ' ' << offset;
        ASSERT_EQ(Hex(e.Text(pixels)), Hex(second)) << pixels << ' ' << offset;
        ASSERT_EQ(Hex(f.Text(pixels)), Hex(third)) << pixels << ' ' << offset;
      }
    }
  });
}

}  // namespace
