// image_reader_foreign_test.cpp - PNG, TIF and GIF files through the reader's interface.

#include "image/image_shapes.h"
#include "image/picture_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace {

using namespace image_test;
using picture_files::Gif;
using picture_files::GifImage;

// 10 x 4 pixels of every kind.
TEST(ImageReaderForeign, TellsTypeLayoutAndSides) {
  const ImageFolder folder;
  const struct {
    const char* sample;
    const QXChar* name;
    int type;
    unsigned int layout;
  } rows[] = {
      {"24-bit.png", QXT("a.png"), 8, 4},
      {"24-bit.png", QXT("a.PNG"), 8, 4},
      {"32-bit.png", QXT("a.png"), 8, 1},
      {"palette.png", QXT("a.png"), 8, 4},
      {"palette-transparent.png", QXT("a.png"), 8, 1},
      {"24-bit.tif", QXT("a.Tif"), 3, 4},
      {"32-bit.tif", QXT("a.tif"), 3, 1},
      {"two-pages.tif", QXT("a.tif"), 3, 4},
  };
  for (const auto& row : rows) {
    const auto reader = ReaderOf(folder.Put(row.name, SampleFile(std::string("image/") + row.sample)));
    EXPECT_EQ(InfoEx(*reader), (Info{0, {row.type, 1, row.layout, 10, 4, 0, 77}})) << row.sample;
    EXPECT_EQ(InfoOf(*reader), (Info{0, {row.type, 1, row.layout, 10, 4, 0, 77}})) << row.sample;
    EXPECT_EQ(ReadRaw(*reader).bytes.size(), 10u * 4 * (row.layout == 1 ? 4 : 3)) << row.sample;
  }
}

TEST(ImageReaderForeign, AGifTellsItsFramesAndTheTimeOfTheFirst) {
  const ImageFolder folder;
  const auto five = ReaderOf(folder.Put(QXT("a.gif"), SampleFile("image/five-frames.gif")));
  EXPECT_EQ(InfoEx(*five), (Info{0, {4, 5, 4, 8, 6, 0, 70}}));
  EXPECT_EQ(InfoOf(*five), (Info{0, {4, 5, 4, 8, 6, 0, 77}})) << "the last field is left as it was";
  const auto transparent = ReaderOf(folder.Put(QXT("b.gif"), SampleFile("image/transparent.gif")));
  EXPECT_EQ(InfoEx(*transparent).record.nPixelLayout, 1u);
}

TEST(ImageReaderForeign, GifFramesInAnyOrderUntilTheirNumber) {
  const ImageFolder folder;
  const std::string red = Bytes({0, 0, 255}), green = Bytes({0, 255, 0}), blue = Bytes({255, 0, 0}), none = Zeros(3);
  const auto reader = ReaderOf(
      folder.Put(QXT("a.gif"), Gif(2, 1, {{0, 0, 2, 1, Bytes({1, 2})}, {1, 0, 1, 1, Bytes({3})}, {0, 0, 2, 1, Bytes({2, 1})}})));
  for (int turn = 0; turn < 2; ++turn) {
    EXPECT_EQ(ReadRaw(*reader, 2), Buffer(green + red));
    EXPECT_EQ(ReadRaw(*reader, 0), Buffer(red + green));
    EXPECT_EQ(ReadRaw(*reader, 1), Buffer(none + blue)) << "zeros around a frame smaller than the first";
    EXPECT_EQ(ReadRaw(*reader, 1), Buffer(none + blue)) << "again";
  }
  for (const int frame : {3, 4, -1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(ReadRaw(*reader, frame), Refusal(0x89601A11)) << frame;
    EXPECT_EQ(ReadAs(*reader, {4, 2, 1, 0}, static_cast<unsigned int>(frame)), Refusal(0x89601A11)) << frame;
  }
  EXPECT_EQ(ReadAs(*reader, {4, 2, 1, 0}, 1), Buffer(none + blue + Zeros(2)));
  EXPECT_EQ(ReadAs(*reader, {1, 2, 1, 0}, 1), Buffer(Zeros(4) + blue + Bytes({255}))) << "and transparent where asked for";
  EXPECT_EQ(ReadAs(*reader, {0x40000000, 2, 1, 0}, 1), Buffer(none + Bytes({0, 0, 255}) + Zeros(2)));
  // red, green at 0, 0.5, 1 and 1.5: half of each, then as far again
  EXPECT_EQ(ReadAs(*reader, {4, 4, 1, 0}, 0), Buffer(red + Bytes({0, 128, 128}) + green + green + Zeros(4)));
}

TEST(ImageReaderForeign, AGifStaysOpenUntilClose) {
  const ImageFolder folder;
  const auto name = folder.Put(QXT("a.gif"), Gif(1, 1, {{0, 0, 1, 1, Bytes({1})}}));
  const auto reader = ReaderOf(name);
  EXPECT_EQ(InfoEx(*reader).record.nFrames, 1);
  ASSERT_TRUE(support::WriteBytes(name, Gif(1, 1, {{0, 0, 1, 1, Bytes({2})}, {0, 0, 1, 1, Bytes({3})}})));
  EXPECT_EQ(ReadRaw(*reader), Buffer(Bytes({0, 0, 255}))) << "as it was opened";
  EXPECT_EQ(reader->Close(), 0);
  EXPECT_EQ(ReadRaw(*reader), Buffer(Bytes({0, 255, 0})));
  EXPECT_EQ(InfoEx(*reader).record.nFrames, 2);
  ASSERT_TRUE(support::WriteBytes(name, Gif(1, 1, {{0, 0, 1, 1, Bytes({3})}})));
  EXPECT_EQ(Code(reader->SetFile(folder.Name(QXT("none.gif")).c_str())), 0x89601A12u);
  EXPECT_EQ(ReadRaw(*reader), Buffer(Bytes({255, 0, 0}))) << "closed by SetFile, which failed";
}

TEST(ImageReaderForeign, FilesOfTwoMebibytesAndOneByteMore) {
  const ImageFolder folder;
  const std::string png = SampleFile("image/32-bit.png");
  const Given expected = ReadRaw(*ReaderOf(folder.Put(QXT("a.png"), png)));
  ASSERT_EQ(expected.bytes.size(), 160u);
  for (const std::size_t length : {2097152u, 2097153u}) {
    const auto reader = ReaderOf(folder.Put(QXT("a.png"), picture_files::PngOfLength(png, length)));
    EXPECT_EQ(ReadRaw(*reader), expected) << length;
  }
}

TEST(ImageReaderForeign, AShortGifThatIsOpenMayBeReplaced) {
  const ImageFolder folder;
  const auto name = folder.Put(QXT("a.gif"), SampleFile("image/five-frames.gif"));
  const auto reader = ReaderOf(name);
  const Given last = ReadRaw(*reader, 4);
  ASSERT_EQ(last.status, 0u);
  std::error_code error;
  EXPECT_TRUE(std::filesystem::remove(support::NativePath(name), error)) << error.message();
  EXPECT_EQ(ReadRaw(*reader, 0).status, 0u);
  EXPECT_EQ(ReadRaw(*reader, 4), last);
}

// What tells memory from file: frames of a file of up to 2,097,152 bytes stay, longer ones are read when they are asked for.
TEST(ImageReaderForeign, AGifIsHeldInMemoryUpToTwoMebibytes) {
  const ImageFolder folder;
  const auto gifOfLength = [](std::size_t length, char second) {
    const std::string empty = Gif(1, 1, {}), head = empty.substr(0, empty.size() - 1) + GifImage({0, 0, 1, 1, Bytes({1})}),
                      tail = GifImage({0, 0, 1, 1, std::string(1, second)}) + empty.back();
    std::size_t left = length - head.size() - tail.size() - 3;  // of a comment between the frames, in blocks
    std::string comment = "\x21\xFE";
    while (left > 0) {
      std::size_t block = std::min<std::size_t>(left - 1, 255);
      block -= left == block + 2 ? 1 : 0;  // a byte alone is no block
      comment += static_cast<char>(block) + std::string(block, 'x');
      left -= block + 1;
    }
    return head + comment + '\0' + tail;
  };
  for (const std::size_t length : {2097152u, 2097153u}) {
    const auto name = folder.Put(QXT("a.gif"), gifOfLength(length, '\2'));
    ASSERT_EQ(folder.Get(QXT("a.gif")).size(), length);
    const auto reader = ReaderOf(name);
    ASSERT_EQ(ReadRaw(*reader, 0), Buffer(Bytes({0, 0, 255})));
    ASSERT_TRUE(support::WriteBytes(name, gifOfLength(length, '\3')));
    EXPECT_EQ(ReadRaw(*reader, 1), Buffer(length == 2097152 ? Bytes({0, 255, 0}) : Bytes({255, 0, 0}))) << length;
  }
}

// Some of them whole pictures that FreeImage could decode.
TEST(ImageReaderForeign, OtherContentsAreRefused) {
  const ImageFolder folder;
  const std::string contents[] = {
      SampleFile("jpg/37x21.jpg"),
      BmpFile(1, "abc"),
      TgaFile(1, "abcd"),
      SampleFile("pcx/24-bit.pcx"),
      SampleFile("image/bigtiff.tif"),
      "P6\n1 1\n255\nabc",
      "/* XPM */\nstatic char *a[] = {\n\"1 1 1 1\",\n\"a c #FF0000\",\n\"a\"};\n",
      "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\nabcd",
      "\x76\x2F\x31\x01" + Zeros(400),                                                             // EXR
      "8BPS" + Bytes({0, 1}) + Zeros(400),                                                         // PSD
      Bytes({0, 0, 1, 0, 1, 0, 1, 1, 0, 0, 1, 0, 24, 0}) + U32(48) + U32(22) + U32(40) + U32(1) +  // ICO of 1 x 1
          U32(2) + U16(1) + U16(24) + Zeros(24) + Zeros(8),
      std::string(),
      std::string("GIF89a"),
  };
  for (const auto* name : {QXT("a.png"), QXT("a.tif"), QXT("a.gif")}) {
    for (const std::string& bytes : contents) {
      const auto reader = ReaderOf(folder.Put(name, bytes));
      EXPECT_EQ(InfoEx(*reader), (Info{0xFFFFFFFF, kUntouched})) << support::Printable(name) << ' ' << bytes.substr(0, 8);
      EXPECT_EQ(InfoOf(*reader), (Info{0xFFFFFFFF, {0, 0, 0, 0, 0, 0, 77}})) << support::Printable(name);
      EXPECT_EQ(ReadRaw(*reader), Refusal(0xFFFFFFFF)) << support::Printable(name) << ' ' << bytes.substr(0, 8);
      EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(0xFFFFFFFF)) << support::Printable(name);
    }
  }
}

TEST(ImageReaderForeign, AContentOfTheThreeIsReadInEachOfTheirNames) {
  const ImageFolder folder;
  for (const auto* name : {QXT("a.png"), QXT("a.tif"), QXT("a.gif"), QXT("a.PNG"), QXT("a.TIF"), QXT("a.GIF")}) {
    for (const char* sample : {"image/24-bit.png", "image/24-bit.tif", "image/still.gif"}) {
      const auto reader = ReaderOf(folder.Put(name, SampleFile(sample)));
      const Info info = InfoEx(*reader);
      EXPECT_EQ(info.status, 0u) << support::Printable(name) << ' ' << sample;
      EXPECT_EQ(info.record.nWidth, 10) << support::Printable(name) << ' ' << sample;
      EXPECT_EQ(ReadRaw(*reader).bytes.size(), 10u * 4 * 3) << support::Printable(name) << ' ' << sample;
    }
  }
}

// A name that lost something would be another file's.
TEST(ImageReaderForeign, NamesThatTheCodePageLacksAreNotOpened) {
  const ImageFolder folder;
  const std::string png = SampleFile("image/24-bit.png");
  folder.Put(QXT("A.png"), png);
  folder.Put(QXT("_.png"), png);
  for (const auto* name : {QXT("\u0416.png"), QXT("\uFF21.png"), QXT("\u0100.png")}) {
    const auto reader = ReaderOf(folder.Put(name, png));
    EXPECT_EQ(InfoEx(*reader), (Info{0xFFFFFFFF, kUntouched})) << support::Printable(name);
    EXPECT_EQ(ReadRaw(*reader), Refusal(0xFFFFFFFF)) << support::Printable(name);
    EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(0xFFFFFFFF)) << support::Printable(name);
  }
}

TEST(ImageReaderForeign, AGifInAPngsNameIsAStill) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.png"), SampleFile("image/five-frames.gif")));
  EXPECT_EQ(InfoEx(*reader), (Info{0, {8, 1, 4, 8, 6, 0, 77}}));
  EXPECT_EQ(ReadRaw(*reader).bytes.size(), 8u * 6 * 3);
  EXPECT_EQ(ReadRaw(*reader, 1), Refusal(0x89601A11));
}

TEST(ImageReaderForeign, AGifOfHugeSidesTakesNoMemory) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.gif"), Gif(20000, 20000, {{0, 0, 20000, 20000, Bytes({1})}})));
  EXPECT_EQ(InfoEx(*reader), (Info{0xFFFFFFFF, kUntouched}));
  EXPECT_EQ(ReadRaw(*reader), Refusal(0xFFFFFFFF));
}

// Their own pixels are those of the formulas in free_image_test.cpp.
TEST(ImageReaderForeign, EveryLayoutSizeAndPadding) {
  const ImageFolder folder;
  const struct {
    const QXChar* name;
    const char* sample;
    unsigned int layout;
  } files[] = {{QXT("a.png"), "24-bit.png", 4},     {QXT("a.png"), "32-bit.png", 1}, {QXT("a.png"), "palette-transparent.png", 1},
               {QXT("a.tif"), "24-bit.tif", 4},     {QXT("a.tif"), "32-bit.tif", 1}, {QXT("a.gif"), "still.gif", 4},
               {QXT("a.gif"), "transparent.gif", 1}};
  for (const auto& file : files) {
    const auto reader = ReaderOf(folder.Put(file.name, SampleFile(std::string("image/") + file.sample)));
    const oracle::Shape from{file.layout, 10, 4, 0};
    const Given raw = ReadRaw(*reader);
    ASSERT_EQ(raw.status, 0u) << file.sample;
    ASSERT_NO_FATAL_FAILURE(ExpectEveryOutput(*reader, from, raw.bytes)) << file.sample;
  }
}

TEST(ImageReaderForeign, WhatIsWrittenIsReadAgain) {
  const ImageFolder folder;
  const std::string pixels = Bytes({0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255});  // colours of every palette
  const QXVImageInfo target{0, 2, QXV_LAYOUT_BGR, 2, 2, 0, 0};
  const auto writer = NewWriter();
  ASSERT_EQ(writer->Create(folder.Name(QXT("a.gif")).c_str(), &target), 0);
  for (const int frame : {1, 0}) {
    ASSERT_EQ(writer->WriteRawFrame(frame, reinterpret_cast<const unsigned char*>(pixels.data())), 0);
  }
  const auto reader = ReaderOf(folder.Name(QXT("a.gif")));
  EXPECT_EQ(InfoEx(*reader).record.nFrames, 2);
  for (const int frame : {0, 1}) {
    EXPECT_EQ(ReadRaw(*reader, frame), Buffer(pixels)) << frame;
  }
}

}  // namespace
