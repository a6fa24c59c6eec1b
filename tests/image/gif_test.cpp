// gif_test.cpp - GIF files as they are written, byte by byte.

#include "image/gif.h"

#include "image/gif_colours.h"
#include "image/gif_linear.h"
#include "support/cpu_tier.h"
#include "support/file_bytes.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

using qxv::CQXVGif;
using support::BytesOf;
using support::TempFolder;

constexpr std::size_t kHeaderSize = 6 + 7 + 768;

// The file of some frames.
std::string Written(std::int32_t width, std::int32_t height, const std::vector<std::string>& frames) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.gif"));
  const std::vector<CQXVGif::Frame> views = [&] {
    std::vector<CQXVGif::Frame> spans;
    for (const std::string& frame : frames) {
      spans.push_back(BytesOf(frame));
    }
    return spans;
  }();
  EXPECT_EQ(CQXVGif(width, height).Write(name.c_str(), views), 0u);
  return support::ReadBytes(name);
}

std::string Pixels(std::size_t count, const std::string& blueGreenRed) {
  std::string pixels;
  for (std::size_t i = 0; i < count; ++i) {
    pixels += blueGreenRed;
  }
  return pixels;
}

std::string Noise(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  return bytes;
}

// The index that a 1 x 1 file holds: its first code, of nine bits.
unsigned FirstIndex(const std::string& file) {
  const std::size_t at = kHeaderSize + 11 + 1;
  return static_cast<unsigned char>(file.at(at)) | (static_cast<unsigned char>(file.at(at + 1)) & 1u) << 8;
}

TEST(Gif, OneBlackPixelIsTheCodes0And257) {
  const std::string file = Written(1, 1, {std::string(3, '\0')});
  ASSERT_EQ(file.size(), kHeaderSize + 11 + 5 + 1);
  const std::string image(
      ","         // mark
      "\0\0\0\0"  // left, top
      "\1\0\1\0"  // width, height
      "\0"        // no palette
      "\x08"      // code size
      "\3\0\2\2"  // 18 bits
      "\0"        // end
      ";",
      17);
  EXPECT_EQ(file.substr(kHeaderSize), image);
}

TEST(Gif, NoFramesGiveHeaderPaletteAndTrailer) {
  const std::string file = Written(640, 480, {});
  ASSERT_EQ(file.size(), 782u);
  EXPECT_EQ(file.substr(0, 6), "GIF87a");
  EXPECT_EQ(file.substr(6, 7), std::string("\x80\x02\xE0\x01\xF7\x00\x00", 7));
  EXPECT_EQ(file.back(), ';');
}

TEST(Gif, ThePaletteHasRedOutermost) {
  const std::string palette = Written(1, 1, {}).substr(13, 768);
  EXPECT_EQ(palette.substr(0, 3), std::string(3, '\0')) << "entry 0 is black";
  EXPECT_EQ(palette.substr(3, 3), std::string("\0\0\x55", 3)) << "then the blues";
  EXPECT_EQ(palette.substr(9, 3), std::string("\0\0\xFF", 3));
  EXPECT_EQ(palette.substr(3 * 4, 3), std::string("\0\x24\0", 3)) << "then the greens";
  EXPECT_EQ(palette.substr(3 * 32, 3), std::string("\x24\0\0", 3));
  EXPECT_EQ(palette.substr(3 * 224, 3), std::string("\xFF\0\0", 3)) << "pure red";
  EXPECT_EQ(palette.substr(3 * 255, 3), std::string(3, '\xFF')) << "entry 255 is white";
  const unsigned widened[] = {0, 36, 73, 109, 146, 182, 219, 255};
  for (unsigned i = 0; i < 256; ++i) {
    EXPECT_EQ(static_cast<unsigned char>(palette[3 * i]), widened[i / 32]) << i;
    EXPECT_EQ(static_cast<unsigned char>(palette[3 * i + 1]), widened[i / 4 % 8]) << i;
    EXPECT_EQ(static_cast<unsigned char>(palette[3 * i + 2]), i % 4 * 85) << i;
  }
}

struct Colour {
  const char* what;
  std::string blueGreenRed;
  unsigned index;
};

TEST(Gif, ColoursTakeTheirUpperBits) {
  const Colour colours[] = {
      {"white", "\xFF\xFF\xFF", 255},
      {"red", std::string("\0\0\xFF", 3), 224},
      {"green", std::string("\0\xFF\0", 3), 28},
      {"blue", std::string("\xFF\0\0", 3), 3},
      {"just below each step", "\x3F\x1F\x1F", 0},
      {"each first step", "\x40\x20\x20", 37},
      {"middle", "\x80\x80\x80", 146},
  };
  for (const Colour& colour : colours) {
    EXPECT_EQ(FirstIndex(Written(1, 1, {colour.blueGreenRed})), colour.index) << colour.what;
  }
}

TEST(Gif, EveryTierMapsEveryColour) {
  support::ForEachCpuTier([] {
    for (std::size_t count = 0; count <= 70; ++count) {
      const std::string noise = Noise(count * 3, static_cast<unsigned>(count));
      const std::unique_ptr<unsigned char[]> pixels(new unsigned char[noise.size()]);  // ends at an inaccessible page
      const std::unique_ptr<unsigned char[]> indices(new unsigned char[count]);
      std::copy(noise.begin(), noise.end(), pixels.get());
      qxv::MapToGifPalette(pixels.get(), count, indices.get());
      for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* pixel = pixels.get() + 3 * i;
        ASSERT_EQ(indices[i], (pixel[2] & 0xE0u) | (pixel[1] & 0xE0u) >> 3 | pixel[0] / 64u) << i << " of " << count;
      }
    }
  });
}

TEST(Gif, EveryPixelIsMapped) {
  const std::int32_t sides[][2] = {{1, 1}, {2, 1}, {1, 2}, {7, 5}, {127, 3}, {129, 128}, {300, 112}};
  for (const auto& [width, height] : sides) {
    const auto count = static_cast<std::size_t>(width * height);
    const std::string pixels = Noise(count * 3, 5);
    std::string indices;
    for (std::size_t i = 0; i < count; ++i) {
      const unsigned b = static_cast<unsigned char>(pixels[3 * i]);
      const unsigned g = static_cast<unsigned char>(pixels[3 * i + 1]);
      const unsigned r = static_cast<unsigned char>(pixels[3 * i + 2]);
      indices += static_cast<char>((r & 0xE0) | ((g & 0xE0) >> 3) | (b >> 6));
    }
    const std::string file = Written(width, height, {pixels});
    const std::string expected = support::InSubBlocks(support::LinearGifCoder().Encode(indices)) + ";";
    EXPECT_TRUE(file.substr(kHeaderSize + 11) == expected) << width << " x " << height;
  }
}

TEST(Gif, OnlyThePixelsOfALongerFrameCount) {
  const std::string pixels = Noise(6 * 3, 1);
  EXPECT_TRUE(Written(3, 2, {pixels + "more"}) == Written(3, 2, {pixels}));
}

TEST(Gif, SidesAbove65535AreToldByTheirLow16Bits) {
  const std::string file = Written(65537, 1, {std::string(65537 * 3, '\0')});
  EXPECT_EQ(file.substr(6, 4), std::string("\1\0\1\0", 4));
  EXPECT_EQ(file.substr(kHeaderSize + 5, 4), std::string("\1\0\1\0", 4));
  const std::string indices(65537, '\0');
  EXPECT_TRUE(file.substr(kHeaderSize + 11) == support::InSubBlocks(support::LinearGifCoder().Encode(indices)) + ";");
}

TEST(Gif, AFileThatCannotBeCreated) {
  const TempFolder folder;
  EXPECT_EQ(CQXVGif(1, 1).Write(folder.Path().c_str(), {}), 0x89601A14u);
  EXPECT_EQ(CQXVGif(1, 1).Write(folder.File(QXT("none\\a.gif")).c_str(), {}), 0x89601A14u);
}

TEST(Gif, AFrameWithTooFewPixelsIsRefusedBeforeTheFileIsTouched) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.gif"));
  const std::string frame(3 * 2 * 3, 'x');
  const CQXVGif::Frame frames[] = {BytesOf(frame), BytesOf(frame).first(frame.size() - 1)};
  EXPECT_EQ(CQXVGif(3, 2).Write(name.c_str(), frames), 0x89601B11u);
  EXPECT_FALSE(support::Exists(name));
  EXPECT_EQ(CQXVGif(INT_MAX, INT_MAX).Write(name.c_str(), frames), 0x89601B11u) << "a product that 32 bits do not hold";
  EXPECT_FALSE(support::Exists(name));
  EXPECT_EQ(CQXVGif(3, 2).Write(name.c_str(), {frames, 1}), 0u);
}

TEST(Gif, NothingBehindTheLastPixelIsRead) {
  for (std::int32_t width = 1; width <= 40; ++width) {
    const auto size = static_cast<std::size_t>(width) * 3;
    const std::unique_ptr<unsigned char[]> pixels(new unsigned char[size]());  // ends at an inaccessible page
    const TempFolder folder;
    const CQXVGif::Frame frames[] = {{pixels.get(), size}};
    EXPECT_EQ(CQXVGif(width, 1).Write(folder.File(QXT("a.gif")).c_str(), frames), 0u);
  }
}

TEST(Gif, LackOfMemoryLeavesTheFile) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.gif"));
  const std::string frame(3, 'x');
  const CQXVGif::Frame frames[] = {BytesOf(frame)};
  std::size_t thrown = 0;
  for (std::size_t index = 0;; ++index) {
    ASSERT_TRUE(support::WriteBytes(name, "old"));
    const support::FailAllocation fail(index);
    try {
      const auto status = CQXVGif(1, 1).Write(name.c_str(), frames);
      if (!fail.Refused()) {
        EXPECT_EQ(status, 0u);
        break;
      }
      EXPECT_EQ(status, 0x89601A14u) << "the system's part answers by its own error";
    } catch (const std::bad_alloc&) {
      ++thrown;
    }
    EXPECT_EQ(support::ReadBytes(name), "old") << index;
  }
  EXPECT_GE(thrown, 4u);
}

TEST(GifKept, FramesFollowEachOtherWithoutExtensions) {
  const std::string red = Pixels(6, std::string("\0\0\xFF", 3)), white = Pixels(6, "\xFF\xFF\xFF");
  const std::string file = Written(3, 2, {red, white, red});
  EXPECT_EQ(file.substr(0, 6), "GIF87a");
  const std::string first = Written(3, 2, {red}), second = Written(3, 2, {white});
  const auto image = [](const std::string& single) { return single.substr(kHeaderSize, single.size() - kHeaderSize - 1); };
  EXPECT_EQ(file, first.substr(0, kHeaderSize) + image(first) + image(second) + image(first) + ";");
}

TEST(GifKept, AFrameWithoutPixelsIsWrittenAndNotReported) {
  struct Size {
    std::int32_t width, height;
    std::string told;
  };
  const Size sizes[] = {{0, 5, std::string("\0\0\5\0", 4)},
                        {5, 0, std::string("\5\0\0\0", 4)},
                        {-1, 1, std::string("\xFF\xFF\1\0", 4)},
                        {-2, -3, "\xFE\xFF\xFD\xFF"},
                        {INT_MIN, 1, std::string("\0\0\1\0", 4)}};
  for (const Size& size : sizes) {
    const std::string file = Written(size.width, size.height, {"", "xyz"});
    const std::string image = "," + std::string(4, '\0') + size.told + std::string("\0\x08\0", 3);
    EXPECT_EQ(file.substr(kHeaderSize), image + image + ";") << size.width << " x " << size.height;
  }
}

}  // namespace
