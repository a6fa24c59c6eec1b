// image_probe_test.cpp - which files the decoder may see, and what of a TIFF it sees.

#include "image/image_probe.h"
#include "image/picture_files.h"
#include "image/picture_samples.h"
#include "support/file_bytes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace picture_files;
using qxv::PictureKind;

struct Seen {
  PictureKind kind;
  bool may;
  qxv::BytePatch patch;
};

Seen Look(const std::string& bytes) {
  qxv::MemorySource source(support::BytesOf(bytes));
  Seen seen{qxv::KindOfPicture(source), false, {}};
  seen.may = qxv::MayDecode(source, seen.kind, seen.patch);
  return seen;
}

bool May(const std::string& bytes) { return Look(bytes).may; }

TEST(ImageProbe, KnowsTheKindByTheFirstBytesAlone) {
  EXPECT_EQ(Look(Sample("24-bit.png")).kind, PictureKind::Png);
  EXPECT_EQ(Look(Sample("24-bit.tif")).kind, PictureKind::Tiff);
  EXPECT_EQ(Look(Sample("big-endian.tif")).kind, PictureKind::Tiff);
  EXPECT_EQ(Look(Sample("still.gif")).kind, PictureKind::Gif);
  EXPECT_EQ(Look("GIF87a..").kind, PictureKind::Gif);
  EXPECT_EQ(Look(Sample("bigtiff.tif")).kind, PictureKind::Other);
  for (const std::string other :
       {"", "GIF89a", "GIF88a..", "\xFF\xD8\xFF\xE0....", "v/1\x01....", "#?RADIANCE", "8BPS....", "BM......"}) {
    EXPECT_EQ(Look(other).kind, PictureKind::Other);
    EXPECT_FALSE(May(other));
  }
}

TEST(ImageProbe, LimitsSidesAndPixels) {
  EXPECT_TRUE(qxv::IsDecodableSize(1, 1));
  EXPECT_TRUE(qxv::IsDecodableSize(65535, 4096));
  EXPECT_TRUE(qxv::IsDecodableSize(16384, 16384));
  EXPECT_FALSE(qxv::IsDecodableSize(16384, 16385));
  EXPECT_FALSE(qxv::IsDecodableSize(65535, 65535));
  EXPECT_FALSE(qxv::IsDecodableSize(65536, 1));
  EXPECT_FALSE(qxv::IsDecodableSize(1, 65536));
  EXPECT_FALSE(qxv::IsDecodableSize(0, 1));
  EXPECT_FALSE(qxv::IsDecodableSize(1, 0));
}

TEST(ImageProbe, ReadsTheSizeOfAPng) {
  const std::string png = Sample("24-bit.png");
  EXPECT_TRUE(May(png));
  EXPECT_TRUE(May(PngOfSize(png, 65535, 4096)));
  EXPECT_FALSE(May(PngOfSize(png, 20000, 20000)));
  EXPECT_FALSE(May(PngOfSize(png, 0, 4)));
  EXPECT_FALSE(May(PngOfSize(png, 10, 0x80000000)));
  std::string otherChunk = png;
  otherChunk[12] = 'i';
  EXPECT_FALSE(May(otherChunk));
  for (std::size_t n = 0; n < 29; ++n) {
    EXPECT_FALSE(May(png.substr(0, n))) << n;
  }
}

TEST(ImageProbe, ReadsTheSizeOfEveryFrameOfAGif) {
  const std::string bomb = "GIF89a" + Little(20000, 2) + Little(20000, 2) + std::string(3, '\0') +  // no colours
                           '\x2C' + std::string(4, '\0') + Little(20000, 2) + Little(20000, 2) + '\0' + "\x02\x02\x4C\x01" +
                           '\0' + '\x3B' + std::string(6, '\0');
  ASSERT_EQ(bomb.size(), 35u);
  EXPECT_FALSE(May(bomb));
  const GifFrame small{0, 0, 2, 1, std::string("\1\2", 2)};
  EXPECT_TRUE(May(Gif(2, 1, {small, small})));
  EXPECT_FALSE(May(Gif(2, 1, {small, {0, 0, 20000, 20000, "\1"}})));
  EXPECT_FALSE(May(Gif(2, 1, {small, {0, 0, 0, 1, "\1"}})));
  EXPECT_TRUE(May(Gif(20000, 20000, {small}))) << "the screen is not what is allocated";
}

TEST(ImageProbe, RefusesAGifWithoutFrames) { EXPECT_FALSE(May(Gif(2, 1, {}))); }

TEST(ImageProbeMalformed, GifBlocks) {
  const GifFrame small{0, 0, 2, 1, std::string("\1\2", 2)};
  const std::string gif = Gif(2, 1, {small});
  const std::size_t image = gif.find('\x2C', 13 + 12);
  std::string codeSize = gif;
  codeSize[image + 10] = '\x09';
  EXPECT_FALSE(May(codeSize));
  codeSize[image + 10] = '\0';
  EXPECT_FALSE(May(codeSize));
  std::string unknown = gif;
  unknown[image] = '\x2D';
  EXPECT_FALSE(May(unknown));
  for (std::size_t n = 0; n < gif.size(); ++n) {
    EXPECT_FALSE(May(gif.substr(0, n))) << n;
  }
}

// --- TIFF ---

// 2 x 1 pixels of R, G, B: entry by entry, for tests to change.
struct TiffFields {
  std::vector<TiffEntry> entries{
      {256, 3, 1, 2},                           // width
      {257, 3, 1, 1},                           // height
      {258, 3, 3, BehindTiffDirectory(8)},      // bits a sample
      {259, 3, 1, 1},                           // compression: none
      {262, 3, 1, 2},                           // photometric: RGB
      {273, 4, 1, BehindTiffDirectory(8) + 6},  // strip
      {277, 3, 1, 3},                           // samples
      {279, 4, 1, 6},                           // bytes of the strip
  };
  std::string behind = Little(8, 2) + Little(8, 2) + Little(8, 2) + "abcdef";

  TiffEntry& operator[](std::uint32_t tag) {
    for (TiffEntry& entry : entries) {
      if (entry.tag == tag) {
        return entry;
      }
    }
    ADD_FAILURE() << tag;
    return entries[0];
  }
  std::string Bytes() const { return Tiff(entries, behind); }
  /// With one more entry behind the last; what the entries point to moves along.
  std::string With(TiffEntry more) const {
    TiffFields copy = *this;
    copy[258].value += 12;
    copy[273].value += 12;
    copy.entries.push_back(more);
    return copy.Bytes();
  }
};

bool MayWith(std::uint32_t tag, std::uint32_t value) {
  TiffFields fields;
  fields[tag].value = value;
  return May(fields.Bytes());
}

TEST(ImageProbeTiff, TakesASoundFile) {
  EXPECT_TRUE(May(TiffFields().Bytes()));
  for (const char* name : {"24-bit.tif", "32-bit.tif", "48-bit.tif", "8-bit-grey.tif", "big-endian.tif", "ccitt4.tif",
                           "deflate.tif", "described.tif", "jpeg.tif", "jpeg-ycbcr.tif", "lzw-predictor.tif", "packbits.tif",
                           "palette.tif", "planes.tif", "strips.tif", "tiles.tif", "two-pages.tif"}) {
    EXPECT_TRUE(May(Sample(name))) << name;
  }
  EXPECT_FALSE(May(Sample("lzma.tif"))) << "a compression that only one system decodes";
}

TEST(ImageProbeTiff, RefusesFieldsThatLie) {
  EXPECT_FALSE(MayWith(256, 0));
  EXPECT_FALSE(MayWith(257, 0));
  EXPECT_FALSE(MayWith(259, 6)) << "old JPEG";
  EXPECT_FALSE(MayWith(259, 99));
  EXPECT_FALSE(MayWith(259, 4)) << "CCITT has 1 bit a pixel";
  EXPECT_FALSE(MayWith(262, 5)) << "CMYK has four";
  EXPECT_FALSE(MayWith(262, 32845));
  EXPECT_FALSE(MayWith(277, 4)) << "three bits a sample";
  EXPECT_FALSE(MayWith(277, 2));
  EXPECT_FALSE(MayWith(273, 0xFFFFFFFF));
  EXPECT_FALSE(MayWith(279, 7)) << "a strip behind the end";
  EXPECT_FALSE(MayWith(258, 0xFFFFFFF0));
}

TEST(ImageProbeTiff, TakesExtraSamplesUpToFour) {
  TiffFields fields;
  fields[258].count = fields[277].value = 4;
  fields[273].value += 2;
  fields.behind = Little(8, 2) + Little(8, 2) + Little(8, 2) + Little(8, 2) + "abcdefgh";
  EXPECT_TRUE(May(fields.Bytes())) << "not declared";
  EXPECT_TRUE(May(fields.With({338, 3, 1, 2})));
  EXPECT_FALSE(May(fields.With({338, 3, 2, 2}))) << "two where there is room for one";
  EXPECT_FALSE(May(fields.With({338, 3, 1, 3}))) << "no such kind";
  TiffFields grey;
  grey[262].value = 1;
  EXPECT_TRUE(May(grey.Bytes()));
  EXPECT_FALSE(May(grey.With({338, 3, 1, 2})));
  EXPECT_TRUE(May(grey.With({338, 3, 2, 0})));
  TiffFields five;
  five[258] = {258, 3, 1, 8};
  five[277].value = 5;
  EXPECT_FALSE(May(five.Bytes()));
}

TEST(ImageProbeTiff, RefusesAHugePicture) {
  TiffFields fields;
  fields[256] = {256, 4, 1, 65535};
  fields[257] = {257, 4, 1, 4097};
  EXPECT_FALSE(May(fields.Bytes()));
  fields[257].value = 4096;
  EXPECT_TRUE(May(fields.Bytes())) << "one strip, if short";
  fields[256].value = 65536;
  fields[257].value = 1;
  EXPECT_FALSE(May(fields.Bytes()));
}

TEST(ImageProbeTiff, WantsEqualBitsOfEightOrSixteen) {
  for (const auto& [bits, may] : {std::pair{8u, true},
                                  {16u, true},
                                  {1u, false},
                                  {2u, false},
                                  {4u, false},
                                  {32u, false},
                                  {0u, false},
                                  {64u, false},
                                  {12u, false}}) {
    TiffFields fields;
    fields.behind = Little(bits, 2) + Little(bits, 2) + Little(bits, 2) + "abcdef";
    EXPECT_EQ(May(fields.Bytes()), may) << bits;
  }
  TiffFields mixed;
  mixed.behind = Little(8, 2) + Little(8, 2) + Little(16, 2) + "abcdef";
  EXPECT_FALSE(May(mixed.Bytes()));
  TiffFields two;
  two[258].count = 2;
  EXPECT_FALSE(May(two.Bytes()));
}

TEST(ImageProbeTiff, WantsTypesAndCountsOfTheStandard) {
  for (const std::uint32_t tag : {256u, 257u, 258u, 259u, 262u, 273u, 277u, 279u}) {
    for (const std::uint32_t type : {0u, 2u, 5u, 7u, 12u, 16u, 17u, 65535u}) {
      TiffFields fields;
      fields[tag].type = type;
      EXPECT_FALSE(May(fields.Bytes())) << tag << " " << type;
    }
    for (const std::uint32_t count : {0u, 2u, 0x40000001u, 0xFFFFFFFFu}) {
      TiffFields fields;
      fields[tag].count = count;
      EXPECT_FALSE(May(fields.Bytes())) << tag << " " << count;
    }
  }
}

TEST(ImageProbeTiff, WantsAscendingTags) {
  TiffFields fields;
  std::swap(fields.entries[3], fields.entries[4]);
  EXPECT_FALSE(May(fields.Bytes()));
  TiffFields twice;
  twice.entries[6].tag = 273;
  EXPECT_FALSE(May(twice.Bytes()));
}

TEST(ImageProbeTiff, WantsAWholePalette) {
  EXPECT_TRUE(May(Sample("palette.tif")));
  TiffFields fields;
  fields.entries = {{256, 3, 1, 1},
                    {257, 3, 1, 1},
                    {258, 3, 1, 4},
                    {262, 3, 1, 3},
                    {273, 4, 1, 8},
                    {279, 4, 1, 1},
                    {320, 3, 48, BehindTiffDirectory(7)}};
  fields.behind = std::string(96, 'p');
  EXPECT_TRUE(May(fields.Bytes()));
  fields[320].count = 47;
  EXPECT_FALSE(May(fields.Bytes()));
  fields[320].count = 48;
  fields.behind = std::string(95, 'p');
  EXPECT_FALSE(May(fields.Bytes()));
  fields.entries.pop_back();
  EXPECT_FALSE(May(fields.Bytes()));
}

TEST(ImageProbeTiff, WantsAsManyPiecesAsTheSizeAsksFor) {
  const TiffFields fields;
  EXPECT_TRUE(May(fields.With({284, 3, 1, 1})));
  EXPECT_FALSE(May(fields.With({284, 3, 1, 2}))) << "planes have a strip each";
  EXPECT_FALSE(May(fields.With({284, 3, 1, 3})));
  TiffFields rows;
  rows[257].value = 2;
  rows.entries.insert(rows.entries.begin() + 7, {278, 3, 1, 1});  // a strip a row
  rows[258].value += 12;
  rows[273].value += 12;
  EXPECT_FALSE(May(rows.Bytes()));
  rows[278].value = 2;
  EXPECT_TRUE(May(rows.Bytes()));
  rows[278].value = 0;
  EXPECT_FALSE(May(rows.Bytes()));
  EXPECT_FALSE(May(fields.With({322, 3, 1, 16}))) << "strips and tiles";
}

TEST(ImageProbeTiff, RefusesHugeTiles) {
  TiffFields fields;
  fields[273].tag = 324;
  fields[279].tag = 325;
  fields.entries = {fields[256], fields[257],     fields[258],     fields[259], fields[262],
                    fields[277], {322, 4, 1, 16}, {323, 4, 1, 16}, fields[324], fields[325]};
  fields[258].value += 24;
  fields[324].value += 24;
  EXPECT_TRUE(May(fields.Bytes()));
  fields[322].value = 17;
  EXPECT_FALSE(May(fields.Bytes()));
  fields[322].value = 0xFFFFFFF0;
  EXPECT_FALSE(May(fields.Bytes()));
  fields[322].value = 4096;
  fields[323].value = 4096;
  EXPECT_TRUE(May(fields.Bytes()));
  fields[323].value = 4112;
  EXPECT_FALSE(May(fields.Bytes()));
}

TEST(ImageProbeTiff, HandsOverADirectoryOfWhatDecodingNeedsAndNothingBehindIt) {
  const TiffFields fields;
  const Seen seen = Look(fields.With({34665, 4, 1, 0xFFFFFFFF}));  // EXIF far outside
  ASSERT_TRUE(seen.may);
  EXPECT_EQ(seen.patch.at, 8u);
  TiffFields same;
  same[258].value += 12;
  same[273].value += 12;
  EXPECT_EQ(std::string(seen.patch.bytes.begin(), seen.patch.bytes.end()), Tiff(same.entries, "").substr(8));
  // a next directory
  const std::string pages = Sample("two-pages.tif");
  const Seen first = Look(pages);
  ASSERT_TRUE(first.may);
  ASSERT_GE(first.patch.bytes.size(), 4u);
  EXPECT_EQ(std::string(first.patch.bytes.end() - 4, first.patch.bytes.end()), std::string(4, '\0'));
}

// FreeImage takes an 8-bit picture that does not tell its samples for one with alpha.
TEST(ImageProbeTiff, TellsOneSampleWhereTheFileIsSilent) {
  TiffFields grey;
  grey.entries = {{256, 3, 1, 1}, {257, 3, 1, 1}, {258, 3, 1, 8}, {259, 3, 1, 1}, {262, 3, 1, 1}, {273, 4, 1, 8}, {279, 4, 1, 1}};
  EXPECT_FALSE(May(grey.Bytes())) << "no room";
  auto told = grey.entries;
  told.insert(told.begin() + 6, {277, 3, 1, 1});
  const std::string expected = Tiff(told, "").substr(8);
  for (const TiffEntry& more : {TiffEntry{284, 3, 1, 1}, TiffEntry{305, 2, 1, 'x'}, TiffEntry{65000, 7, 0xFFFFFFFF, 0}}) {
    TiffFields room = grey;
    room.entries.push_back(more);
    const Seen seen = Look(room.Bytes());
    EXPECT_TRUE(seen.may) << more.tag;
    EXPECT_EQ(std::string(seen.patch.bytes.begin(), seen.patch.bytes.end()), expected) << more.tag;
  }
  grey.entries[2].value = 16;
  grey.entries[6].value = 2;
  EXPECT_TRUE(May(grey.Bytes())) << "only 8 bits are mistaken";
}

TEST(ImageProbeTiff, MetadataThatLiesDoesNotMakeAValidFileFail) {
  const TiffFields fields;
  for (const std::uint32_t tag : {330u, 700u, 33723u, 34377u, 34665u, 34675u, 34853u, 65000u}) {
    EXPECT_TRUE(May(fields.With({tag, 7, 0xFFFFFFFF, 0xFFFFFFFF}))) << tag;
    EXPECT_TRUE(May(fields.With({tag, 4, 1, 8}))) << tag;
  }
}

TEST(ImageProbeMalformed, TiffTruncated) {
  for (const char* name : {"strips.tif", "tiles.tif", "big-endian.tif", "jpeg.tif"}) {
    const std::string tiff = Sample(name);
    const Seen whole = Look(tiff);
    ASSERT_TRUE(whole.may) << name;
    const std::size_t directory = static_cast<std::size_t>(whole.patch.at) + 2;
    for (std::size_t n = 0; n < directory; ++n) {
      EXPECT_FALSE(May(tiff.substr(0, n))) << name << " " << n;
    }
  }
  const std::string tiff = TiffFields().Bytes();
  for (std::size_t n = 0; n < tiff.size(); ++n) {
    EXPECT_FALSE(May(tiff.substr(0, n))) << n;
  }
}

TEST(BytePatch, CoversOnlyItsPlace) {
  const qxv::BytePatch patch{4, {'x', 'y', 'z'}};
  for (const auto& [place, length, expected] : {std::tuple{0u, 4u, "...."},
                                                {0u, 5u, "....x"},
                                                {5u, 1u, "y"},
                                                {3u, 6u, ".xyz.."},
                                                {6u, 3u, "z.."},
                                                {7u, 3u, "..."},
                                                {9u, 0u, ""}}) {
    std::vector<unsigned char> read(length, '.');
    patch.Apply(place, read);
    EXPECT_EQ(std::string(read.begin(), read.end()), expected) << place;
  }
}

}  // namespace
