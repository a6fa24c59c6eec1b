// image_reader_samples_test.cpp - PNG, TIF and GIF files that other programs wrote (tests/data/PROVENANCE.md), through the
// reader: what they tell, and their pixels by formulas.

#include "image/image_files.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>

namespace {

using namespace image_test;

constexpr int kWidth = 10, kHeight = 4;

// Red, green, blue or alpha (0 to 3) of a pixel, counted row by row.
using Formula = std::function<int(int i, int channel)>;

std::string Pixels(int channels, const Formula& value, int height = kHeight) {
  std::string pixels;
  for (int i = 0; i < kWidth * height; ++i) {
    for (const int channel : {2, 1, 0, 3}) {
      if (channel < channels) {
        pixels += Bytes({value(i, channel)});
      }
    }
  }
  return pixels;
}

int Colours(int i, int channel) {
  const int x = i % kWidth, y = i / kWidth;
  return (x < 6 ? x * 25 + channel * 40 + y * 60 : 200) % 256;
}
int FewColours(int i, int channel) { return channel == 0 ? i % 7 * 30 : channel == 1 ? i % 5 * 50 : 9; }
// Pillow writes a palette as 256 times the colours, and FreeImage cuts down what that is of 65535.
int FewColoursOfATif(int i, int channel) { return FewColours(i, channel) * 256 * 255 / 65535; }
int GreyAndAlpha(int i, int channel) { return Colours(i, channel == 3 ? 3 : 0); }
int Grey(int i, int /*channel*/) { return Colours(i, 0); }
int FourGreys(int i, int /*channel*/) { return i % 4 * 85; }
int HolesInColours(int i, int channel) {
  const bool isHole = Colours(i, 0) == 200 && Colours(i, 1) == 200 && Colours(i, 2) == 200;
  return channel < 3 ? Colours(i, channel) : isHole ? 0 : 255;
}
// Cyan, magenta and yellow wholly or not at all, then shades of black.
int Inks(int i, int channel) { return i >= 24 ? 255 - i * 6 : (i >> channel & 1) != 0 ? 0 : 255; }

TEST(ImageReaderSamples, EveryKindOfStill) {
  const ImageFolder folder;
  const struct {
    const char* sample;
    const QXChar* name;
    int type;
    unsigned int layout;
    Formula formula;
  } rows[] = {
      {"64-bit.png", QXT("a.png"), 8, 1, Colours},
      {"grey-alpha.png", QXT("a.png"), 8, 1, GreyAndAlpha},
      {"2-bit-grey.png", QXT("a.png"), 8, 4, FourGreys},
      {"colour-key.png", QXT("a.png"), 8, 1, HolesInColours},
      {"palette-interlaced.png", QXT("a.png"), 8, 4, FewColours},
      {"cmyk.tif", QXT("a.tif"), 3, 4, Inks},
      {"grey-alpha.tif", QXT("a.tif"), 3, 1, GreyAndAlpha},
      {"metadata.tif", QXT("a.tif"), 3, 4, Colours},
      {"samples-untold.tif", QXT("a.tif"), 3, 4, Grey},
      {"samples-untold-palette.tif", QXT("a.tif"), 3, 4, FewColoursOfATif},
  };
  for (const auto& row : rows) {
    const auto reader = ReaderOf(folder.Put(row.name, SampleFile(std::string("image/") + row.sample)));
    EXPECT_EQ(InfoEx(*reader), (Info{0, {row.type, 1, row.layout, kWidth, kHeight, 0, 77}})) << row.sample;
    EXPECT_EQ(ReadRaw(*reader), Buffer(Pixels(row.layout == 1 ? 4 : 3, row.formula))) << row.sample;
  }
}

TEST(ImageReaderSamples, AnInterlacedGif) {
  const ImageFolder folder;
  constexpr int kRows = 9;  // of up to 4 rows FreeImage shows the first alone
  const auto reader = ReaderOf(folder.Put(QXT("a.gif"), SampleFile("image/interlaced.gif")));
  EXPECT_EQ(InfoEx(*reader), (Info{0, {4, 1, 4, kWidth, kRows, 0, 0}}));
  EXPECT_EQ(ReadRaw(*reader), Buffer(Pixels(3, FewColours, kRows)));
}

// Netpbm declares no extra sample for alpha, and the decoder takes what is more than red, green and blue for one.
TEST(ImageReaderSamples, ATifWithAlphaThatIsNotDeclared) {
  const ImageFolder folder;
  const std::string tif = SampleFile("image/32-bit.tif");
  EXPECT_EQ(tif.find("\x52\x01\x03", 8), std::string::npos) << "no tag 338";
  EXPECT_EQ(ReadRaw(*ReaderOf(folder.Put(QXT("a.tif"), tif))), Buffer(Pixels(4, Colours)));
}

// EXIF, GPS, IPTC, XMP, ICC and Photoshop data that point nowhere, or to themselves.
TEST(ImageReaderSamples, MetadataThatLiesDoesNotDisturbThePixels) {
  const ImageFolder folder;
  const std::string tif = SampleFile("image/metadata.tif");
  const auto number = [&](std::size_t at, int bytes) {
    unsigned value = 0;
    for (int i = bytes; i-- > 0;) {
      value = value << 8 | static_cast<unsigned char>(tif[at + static_cast<std::size_t>(i)]);
    }
    return value;
  };
  const std::size_t directory = number(4, 4);
  int found = 0;
  std::string all = tif;
  for (std::size_t entry = directory + 2; entry < directory + 2 + number(directory, 2) * 12; entry += 12) {
    const unsigned tag = number(entry, 2);
    if (tag != 700 && tag != 33723 && tag != 34377 && tag != 34665 && tag != 34675 && tag != 34853) {
      continue;
    }
    ++found;
    for (const unsigned place : {0xFFFFFFFFu, 0x7FFFFFFFu, static_cast<unsigned>(directory), 0u}) {
      std::string lie = tif;
      lie.replace(entry + 8, 4, U32(place));
      EXPECT_EQ(ReadRaw(*ReaderOf(folder.Put(QXT("a.tif"), lie))), Buffer(Pixels(3, Colours))) << tag << ' ' << place;
      lie.replace(entry + 4, 4, U32(0xFFFFFFFF));
      EXPECT_EQ(ReadRaw(*ReaderOf(folder.Put(QXT("a.tif"), lie))), Buffer(Pixels(3, Colours)))
          << tag << ' ' << place << " of many";
    }
    all.replace(entry + 2, 10, std::string(10, '\xFF'));
  }
  EXPECT_EQ(found, 6);
  EXPECT_EQ(ReadRaw(*ReaderOf(folder.Put(QXT("a.tif"), all))), Buffer(Pixels(3, Colours)));
}

// --- animations of 12 x 9: four columns of colours, a chequered rectangle of 4 x 3 at 3, 2, one of 2 x 2 at 10, 7 ---

constexpr int kScreenWidth = 12, kScreenHeight = 9;
enum class Holes { Opaque, Clear };

std::string AnimatedFrame(int frame, bool hasAlpha, Holes holes) {
  const std::string columns[] = {Bytes({0, 0, 250}), Bytes({0, 240, 0}), Bytes({230, 0, 0}), Bytes({0, 90, 90})};
  std::string pixels;
  for (int y = 0; y < kScreenHeight; ++y) {
    for (int x = 0; x < kScreenWidth; ++x) {
      std::string colour = Zeros(3);
      bool isThere = true, isHole = false;
      if (frame == 0) {
        colour = columns[x / 3];
      } else if (frame == 1 && x >= 3 && x < 7 && y >= 2 && y < 5) {
        colour = (x + y) % 2 != 0 ? Bytes({33, 22, 11}) : Bytes({66, 55, 44});
      } else if (frame == 2 && x >= 10 && y >= 7) {
        isHole = x != y + 3;
        // gifsicle gave the clear pixels the index of a colour that was there
        colour = !isHole ? Bytes({99, 88, 77}) : holes == Holes::Clear ? Bytes({0, 240, 0}) : Bytes({3, 2, 1});
      } else {
        isThere = false;
      }
      const bool isClear = !isThere || (isHole && holes == Holes::Clear);
      pixels += colour + (hasAlpha ? std::string(1, isClear ? '\0' : '\xFF') : std::string());
    }
  }
  return pixels;
}

TEST(ImageReaderSamples, AnimationsWithOffsetsPalettesAndTransparency) {
  const ImageFolder folder;
  for (const auto& [sample, holes] :
       {std::pair{"image/local-palettes.gif", Holes::Opaque}, {"image/offsets-transparent.gif", Holes::Clear}}) {
    const auto reader = ReaderOf(folder.Put(QXT("a.gif"), SampleFile(sample)));
    EXPECT_EQ(InfoEx(*reader), (Info{0, {4, 3, 4, kScreenWidth, kScreenHeight, 0, 120}})) << sample;
    for (const int frame : {2, 0, 1, 1, 0, 2}) {
      EXPECT_EQ(ReadRaw(*reader, frame), Buffer(AnimatedFrame(frame, false, holes))) << sample << ' ' << frame;
      const QXVPixelLayout withAlpha{1, kScreenWidth, kScreenHeight, 0};
      EXPECT_EQ(ReadAs(*reader, withAlpha, static_cast<unsigned>(frame)), Buffer(AnimatedFrame(frame, true, holes)))
          << sample << ' ' << frame;
    }
    EXPECT_EQ(ReadRaw(*reader, 3), Refusal(0x89601A11)) << sample;
  }
}

}  // namespace
