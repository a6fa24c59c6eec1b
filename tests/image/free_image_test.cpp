// free_image_test.cpp - PNG, TIFF and GIF files through FreeImage: sizes, layouts, pixels and placed frames.

#include "image/free_image.h"

#include "image/picture_files.h"
#include "image/picture_samples.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace {

using namespace picture_files;
using support::Text;

constexpr int kWidth = 10;
constexpr int kHeight = 4;
constexpr std::uint32_t kBgra = 1, kBgr = 4;

struct FreeImage : testing::Test {
  support::TempFolder folder;
  qxv::CQXVFreeImage image;

  Text Write(const std::string& bytes, const Text& name = QXT("picture.png")) {
    EXPECT_TRUE(support::WriteBytes(folder.File(name), bytes));
    return folder.File(name);
  }
  std::uint32_t Open(const std::string& bytes) { return image.Open(Write(bytes).c_str()); }

  std::string Frame(std::uint32_t index, std::uint32_t layout) {
    qxv::Picture picture;
    const std::uint32_t status = image.Frame(index, layout, picture);
    if (status != 0) {
      EXPECT_EQ(picture.pixels, nullptr);
      return "<" + std::to_string(status) + ">";
    }
    EXPECT_EQ(picture.width, image.Width());
    EXPECT_EQ(picture.height, image.Height());
    const bool hasAlpha = layout == kBgra || (layout != kBgr && image.Layout() == kBgra);
    return std::string(reinterpret_cast<const char*>(picture.pixels.get()),
                       static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * (hasAlpha ? 4 : 3));
  }
};
using FreeImageMalformed = FreeImage;
using FreeImageGif = FreeImage;

// Channels by the formulas of the sample files: blue first, then green, red and alpha.
template <class Value>
std::string Pixels(int channels, Value value) {
  std::string pixels;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    for (int channel = 0; channel < channels; ++channel) {
      pixels += static_cast<char>(static_cast<unsigned char>(value(i, channel < 3 ? 2 - channel : 3)));
    }
  }
  return pixels;
}
int Colours(int i, int channel) {
  const int x = i % kWidth, y = i / kWidth;
  return x < 6 ? x * 25 + channel * 40 + y * 60 : 200;
}
int OpaqueColours(int i, int channel) { return channel == 3 ? 255 : Colours(i, channel); }
int FewColours(int i, int channel) { return channel == 0 ? i % 7 * 30 : channel == 1 ? i % 5 * 50 : channel == 2 ? 9 : 255; }
int HolesInFewColours(int i, int channel) {
  return channel == 3 ? (FewColours(i, 0) == 0 && FewColours(i, 1) == 0 ? 0 : 255) : FewColours(i, channel);
}
int Grey(int i, int /*channel*/) { return Colours(i, 0); }
int BlackAndWhite(int i, int /*channel*/) { return i * i % 3 != 0 ? 0 : 255; }

TEST_F(FreeImage, ReportsFramesSizeAndNativeLayout) {
  for (const auto& [name, layout] : {std::pair{"24-bit.png", kBgr},
                                     {"32-bit.png", kBgra},
                                     {"48-bit.png", kBgr},
                                     {"palette.png", kBgr},
                                     {"palette-transparent.png", kBgra},
                                     {"8-bit-grey.png", kBgr},
                                     {"16-bit-grey.png", kBgr},
                                     {"1-bit.png", kBgr},
                                     {"24-bit.tif", kBgr},
                                     {"32-bit.tif", kBgra},
                                     {"ccitt4.tif", kBgr},
                                     {"two-pages.tif", kBgr},
                                     {"still.gif", kBgr},
                                     {"transparent.gif", kBgra}}) {
    ASSERT_EQ(Open(Sample(name)), 0u) << name;
    EXPECT_EQ(image.Layout(), layout) << name;
    EXPECT_EQ(image.FrameCount(), 1u) << name;
    EXPECT_EQ(image.Width(), kWidth) << name;
    EXPECT_EQ(image.Height(), kHeight) << name;
  }
}

TEST_F(FreeImage, DecodesEveryKindOfPng) {
  for (const auto& [name, pixels] : {std::pair<const char*, std::string>{"24-bit.png", Pixels(3, Colours)},
                                     {"24-bit-interlaced.png", Pixels(3, Colours)},
                                     {"32-bit.png", Pixels(4, Colours)},
                                     {"48-bit.png", Pixels(3, Colours)},
                                     {"palette.png", Pixels(3, FewColours)},
                                     {"palette-transparent.png", Pixels(4, HolesInFewColours)},
                                     {"8-bit-grey.png", Pixels(3, Grey)},
                                     {"1-bit.png", Pixels(3, BlackAndWhite)}}) {
    ASSERT_EQ(Open(Sample(name)), 0u) << name;
    EXPECT_EQ(Frame(0, 0), pixels) << name;
  }
}

TEST_F(FreeImage, DecodesEveryKindOfTiff) {
  for (const auto& [name, pixels] : {std::pair<const char*, std::string>{"24-bit.tif", Pixels(3, Colours)},
                                     {"32-bit.tif", Pixels(4, Colours)},
                                     {"48-bit.tif", Pixels(3, Colours)},
                                     {"8-bit-grey.tif", Pixels(3, Grey)},
                                     {"big-endian.tif", Pixels(3, Colours)},
                                     {"ccitt4.tif", Pixels(3, BlackAndWhite)},
                                     {"deflate.tif", Pixels(3, Colours)},
                                     {"described.tif", Pixels(3, Colours)},
                                     {"lzw-predictor.tif", Pixels(3, Colours)},
                                     {"packbits.tif", Pixels(3, Colours)},
                                     {"palette.tif", Pixels(3, FewColours)},
                                     {"planes.tif", Pixels(3, Colours)},
                                     {"strips.tif", Pixels(3, Colours)},
                                     {"tiles.tif", Pixels(3, Colours)},
                                     {"two-pages.tif", Pixels(3, Colours)}}) {
    ASSERT_EQ(Open(Sample(name)), 0u) << name;
    EXPECT_EQ(Frame(0, 0), pixels) << name;
  }
}

// 32 x 16 pixels of 180, 90, 30 coded with the best quality: the codec may be off by two.
TEST_F(FreeImage, DecodesTiffsCodedAsJpeg) {
  for (const char* name : {"jpeg.tif", "jpeg-ycbcr.tif"}) {
    ASSERT_EQ(Open(Sample(name)), 0u) << name;
    ASSERT_EQ(image.Width(), 32);
    ASSERT_EQ(image.Height(), 16);
    const std::string pixels = Frame(0, kBgr);
    ASSERT_EQ(pixels.size(), 32u * 16 * 3) << name;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      EXPECT_NEAR(static_cast<unsigned char>(pixels[i]), i % 3 == 0 ? 30 : i % 3 == 1 ? 90 : 180, 2) << name << " " << i;
    }
  }
}

TEST_F(FreeImage, ConvertsToTheLayoutThatIsAskedFor) {
  ASSERT_EQ(Open(Sample("24-bit.png")), 0u);
  EXPECT_EQ(Frame(0, kBgra), Pixels(4, OpaqueColours));
  EXPECT_EQ(Frame(0, kBgr), Pixels(3, Colours)) << "again, from the same decoded picture";
  EXPECT_EQ(Frame(0, 0x02000000), Pixels(3, Colours)) << "the native one";
  ASSERT_EQ(Open(Sample("32-bit.png")), 0u);
  EXPECT_EQ(Frame(0, kBgr), Pixels(3, Colours));
  EXPECT_EQ(Frame(0, 8), Pixels(4, Colours));
  ASSERT_EQ(Open(Sample("palette-transparent.png")), 0u);
  EXPECT_EQ(Frame(0, kBgr), Pixels(3, FewColours));
  ASSERT_EQ(Open(Sample("still.gif")), 0u);
  EXPECT_EQ(Frame(0, kBgra), Pixels(4, FewColours)) << "an opaque page asked for with alpha";
  ASSERT_EQ(Open(Sample("transparent.gif")), 0u);
  EXPECT_EQ(Frame(0, 0).substr(0, 4), Pixels(4, HolesInFewColours).substr(0, 4));
  EXPECT_EQ(Frame(0, kBgr), Pixels(3, FewColours));
}

TEST_F(FreeImage, StillsHaveOneFrame) {
  ASSERT_EQ(Open(Sample("24-bit.png")), 0u);
  EXPECT_EQ(Frame(1, kBgr), "<2304776721>");  // 0x89601A11
  EXPECT_EQ(Frame(0xFFFFFFFF, kBgr), "<2304776721>");
  EXPECT_TRUE(image.IsOpen());
  EXPECT_EQ(image.FrameTime(), std::nullopt);
}

// 16-bit grey has no way to 24 bits in FreeImage.
TEST_F(FreeImage, RefusesToConvertGreyOfSixteenBits) {
  ASSERT_EQ(Open(Sample("16-bit-grey.png")), 0u);
  EXPECT_EQ(Frame(0, 0), "<4294967295>");
  EXPECT_FALSE(image.IsOpen());
  EXPECT_EQ(Frame(0, 0), "<2304776721>");
}

TEST_F(FreeImage, FilesOfTwoMebibytesAndOneByteMoreGiveTheSamePixels) {
  const std::string png = Sample("24-bit.png");
  for (const std::size_t length : {2097151u, 2097152u, 2097153u, 4000000u}) {
    const std::string bytes = PngOfLength(png, length);
    ASSERT_EQ(bytes.size(), length);
    ASSERT_EQ(Open(bytes), 0u) << length;
    EXPECT_EQ(Frame(0, 0), Pixels(3, Colours)) << length;
  }
}

TEST_F(FreeImage, LongTiffsAndGifsAreReadFromTheFile) {
  for (const char* name : {"lzw-predictor.tif", "big-endian.tif", "two-pages.tif", "tiles.tif"}) {
    ASSERT_EQ(Open(Sample(name) + std::string(2100000, 'x')), 0u) << name;
    EXPECT_EQ(Frame(0, 0), Pixels(3, Colours)) << name;
  }
  std::string gif = Sample("still.gif");
  std::string comment = "\x21\xFE";
  for (int i = 0; i < 8300; ++i) {
    comment += '\xFF' + std::string(255, 'x');
  }
  gif.insert(gif.size() - 1, comment + '\0');  // before the trailer
  ASSERT_GT(gif.size(), 2097152u);
  ASSERT_EQ(Open(gif), 0u);
  EXPECT_EQ(Frame(0, kBgr), Pixels(3, FewColours));
}

TEST_F(FreeImage, TheContentDecidesNotTheName) {
  ASSERT_EQ(image.Open(Write(Sample("24-bit.tif"), QXT("a.gif")).c_str()), 0u);
  EXPECT_EQ(Frame(0, 0), Pixels(3, Colours));
  ASSERT_EQ(image.Open(Write(Sample("five-frames.gif"), QXT("a.TIF")).c_str()), 0u);
  EXPECT_EQ(image.FrameCount(), 5u);
  EXPECT_EQ(image.Open(Write("\xFF\xD8\xFF\xE0 no PNG at all", QXT("a.png")).c_str()), 0xFFFFFFFFu);
}

TEST_F(FreeImage, NamesThatTheCodePageLacksAreRefused) {
  const std::string png = Sample("24-bit.png");
  EXPECT_EQ(image.Open(Write(png, QXT("\u00E9.png")).c_str()), 0u) << "in code page 1252";
  EXPECT_EQ(image.Open(Write(png, QXT("\u0416\u4E2D.png")).c_str()), 0xFFFFFFFFu);
  EXPECT_EQ(image.Open((folder.Path() + support::Repeat(QXT('a'), 2048)).c_str()), 0xFFFFFFFFu);
  EXPECT_EQ(image.Open(nullptr), 0xFFFFFFFFu);
  EXPECT_EQ(image.Open(QXT("")), 0xFFFFFFFFu);
  EXPECT_EQ(image.Open(folder.File(QXT("missing.png")).c_str()), 0xFFFFFFFFu);
  EXPECT_EQ(image.Open(folder.Path().c_str()), 0xFFFFFFFFu) << "a folder";
}

TEST_F(FreeImage, AFailedOpenLeavesNothingOpen) {
  ASSERT_EQ(Open(Sample("32-bit.png")), 0u);
  EXPECT_EQ(Open("nothing"), 0xFFFFFFFFu);
  EXPECT_FALSE(image.IsOpen());
  EXPECT_EQ(image.Width(), 0);
  EXPECT_EQ(image.FrameCount(), 0u);
  EXPECT_EQ(image.Layout(), kBgr);
  EXPECT_EQ(Frame(0, 0), "<2304776721>");
}

// --- GIF ---

TEST_F(FreeImageGif, PlacesFramesWhereTheyBelong) {
  ASSERT_EQ(Open(Sample("five-frames.gif")), 0u);
  EXPECT_EQ(image.FrameCount(), 5u);
  EXPECT_EQ(image.FrameTime(), 70);
  EXPECT_EQ(image.Width(), 8) << "of the first frame, not of the screen";
  EXPECT_EQ(image.Height(), 6);
  EXPECT_EQ(image.Layout(), kBgr);
  const auto picture = [](int left, int top, int width, int height, const std::string& colour, const std::string& empty) {
    std::string pixels;
    for (int y = 0; y < 6; ++y) {
      for (int x = 0; x < 8; ++x) {
        pixels += x >= left && x < left + width && y >= top && y < top + height ? colour : empty;
      }
    }
    return pixels;
  };
  const std::string green("\0\xC8\0", 3), red("\0\0\xDC", 3), blue("\xD2\0\0", 3), none(3, '\0');
  const auto opaque = [](const std::string& colour) { return colour + '\xFF'; };
  for (const std::uint32_t index : {4u, 0u, 3u, 1u, 1u, 2u}) {  // in any order
    const std::string& colour = index % 4 == 0 ? green : index == 2 ? blue : red;
    const int left = index == 1 ? 2 : index == 3 ? 6 : 0, top = index == 1 ? 1 : index == 3 ? 5 : 0;
    const int width = index == 1 || index == 3 ? 3 : 8, height = index == 1 || index == 3 ? 2 : 6;
    EXPECT_EQ(Frame(index, kBgr), picture(left, top, width, height, colour, none)) << index;
    EXPECT_EQ(Frame(index, kBgra), picture(left, top, width, height, opaque(colour), std::string(4, '\0'))) << index;
  }
  EXPECT_EQ(Frame(5, kBgr), "<2304776721>");
  EXPECT_TRUE(image.IsOpen());
}

TEST_F(FreeImageGif, EachFrameHasItsPaletteAndItsTransparency) {
  const std::string palette("\x0A\x14\x1E\x28\x32\x3C\x46\x50\x5A\x64\x6E\x78", 12);
  ASSERT_EQ(
      Open(Gif(2, 1, {{0, 0, 2, 1, std::string("\1\2", 2), {}, -1, 12}, {0, 0, 2, 1, std::string("\0\3", 2), palette, 3, 5}})),
      0u);
  EXPECT_EQ(image.FrameCount(), 2u);
  EXPECT_EQ(image.FrameTime(), 120);
  EXPECT_EQ(image.Layout(), kBgr);
  EXPECT_EQ(Frame(0, 0), std::string("\0\0\xFF\0\xFF\0", 6));
  EXPECT_EQ(Frame(1, 0), std::string("\x1E\x14\x0A\x78\x6E\x64", 6));
  EXPECT_EQ(Frame(1, kBgra), std::string("\x1E\x14\x0A\xFF\x78\x6E\x64\0", 8));
  EXPECT_EQ(Frame(0, kBgra), std::string("\0\0\xFF\xFF\0\xFF\0\xFF", 8));
}

TEST_F(FreeImageGif, FramesLargerThanTheCanvasAndOutsideOfItAreCut) {
  ASSERT_EQ(
      Open(Gif(
          3, 3,
          {{0, 0, 1, 1, "\1"}, {0, 0, 3, 2, std::string("\2\1\1\1\1\1", 6)}, {65535, 65535, 1, 1, "\3"}, {1, 0, 1, 1, "\3"}})),
      0u);
  EXPECT_EQ(image.Width(), 1);
  EXPECT_EQ(image.Height(), 1);
  EXPECT_EQ(Frame(0, kBgr), std::string("\0\0\xFF", 3));
  EXPECT_EQ(Frame(1, kBgr), std::string("\0\xFF\0", 3));
  EXPECT_EQ(Frame(2, kBgr), std::string(3, '\0'));
  EXPECT_EQ(Frame(3, kBgra), std::string(4, '\0'));
}

TEST_F(FreeImageGif, TheFirstFrameIsPlacedToo) {
  ASSERT_EQ(Open(Gif(4, 4, {{1, 1, 2, 2, std::string("\1\2\3\1", 4)}})), 0u);
  EXPECT_EQ(image.Width(), 2);
  EXPECT_EQ(Frame(0, kBgr), std::string(9, '\0') + std::string("\0\0\xFF", 3)) << "its upper left pixel in the lower right place";
}

// --- damage ---

TEST_F(FreeImageMalformed, EveryTruncationOfEveryKind) {
  for (const char* name :
       {"24-bit.png", "palette-transparent.png", "strips.tif", "lzw-predictor.tif", "jpeg.tif", "five-frames.gif"}) {
    const std::string whole = Sample(name);
    std::size_t decoded = 0;
    for (std::size_t n = 0; n < whole.size(); n += name[0] == 'j' ? 13 : 1) {
      const std::uint32_t status = Open(whole.substr(0, n));
      ASSERT_TRUE(status == 0 || status == 0xFFFFFFFF) << name << " " << n;
      if (status == 0) {
        ++decoded;
        EXPECT_EQ(Frame(0, kBgr).size(), static_cast<std::size_t>(image.Width() * image.Height() * 3)) << name << " " << n;
      }
    }
    // A PNG may lack its end, a TIFF what stands behind its strips and directory, such as a resolution.
    EXPECT_LE(decoded, name[0] == '2' || name[0] == 'p' ? 16u : 32u) << name;
  }
}

TEST_F(FreeImageMalformed, ChangedPngDataIsRefused) {
  std::string png = Sample("24-bit.png");
  png[png.find("IDAT") + 8] ^= 0x55;
  EXPECT_EQ(Open(png), 0xFFFFFFFFu);
}

TEST_F(FreeImageMalformed, HugeSizesAreRefusedBeforeMemoryIsTaken) {
  EXPECT_EQ(Open(PngOfSize(Sample("24-bit.png"), 60000, 60000)), 0xFFFFFFFFu);
  EXPECT_EQ(Open(Gif(2, 1, {{0, 0, 2, 1, std::string("\1\2", 2)}, {0, 0, 65535, 65535, "\1"}})), 0xFFFFFFFFu);
}

// The first allocations are ours: the name's bytes, the file, its piece. FreeImage does not survive it where its own fail.
TEST_F(FreeImageMalformed, FailingAllocationsLeaveNothingOpen) {
  const Text name = Write(Sample("32-bit.png"));
  const std::size_t before = support::LiveArrays();
  for (std::size_t index = 0; index < 3; ++index) {
    const support::FailAllocation fail(index);
    bool opened = false;  // the system's part answers lack of memory by its own error
    try {
      opened = image.Open(name.c_str()) == 0;
    } catch (const std::bad_alloc&) {
    }
    EXPECT_TRUE(fail.Refused()) << index;
    EXPECT_FALSE(opened) << index;
    EXPECT_FALSE(image.IsOpen()) << index;
  }
  EXPECT_EQ(support::LiveArrays(), before);
  EXPECT_EQ(image.Open(name.c_str()), 0u);
}

}  // namespace
