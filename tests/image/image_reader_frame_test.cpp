// image_reader_frame_test.cpp - frames in the caller's layout, size and padding.

#include "image/image_files.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

using namespace image_test;

// Red 200, green 100, blue 50, in each layout by the formulas: Y 122.67, U 91.22, V 175.50 (a hair below).
constexpr int kRed = 200, kGreen = 100, kBlue = 50;

TEST(ImageReaderFrame, EveryLayoutOfOneColour) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(1, Bytes({kBlue, kGreen, kRed}))));
  const struct {
    unsigned int layout;
    std::string pixel;
  } rows[] = {
      {1, Bytes({50, 100, 200, 255})},
      {4, Bytes({50, 100, 200, 0})},
      {8, Bytes({123, 91, 175, 0})},
      {0x02000000, Bytes({175, 91, 123, 0})},
      {0x40000000, Bytes({200, 100, 50, 0})},
      // without a converter: the working layout, alpha first
      {0, Bytes({255, 200, 100, 50})},
      {32, Bytes({255, 200, 100, 50})},
      {64, Bytes({255, 200, 100, 50})},
      {128, Bytes({255, 200, 100, 50})},
      {0xFFFFFFFF, Bytes({255, 200, 100, 50})},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ReadAs(*reader, {row.layout, 1, 1, 0}), Buffer(row.pixel)) << std::hex << row.layout;
  }
}

TEST(ImageReaderFrame, EveryTypeGivesItsColours) {
  const ImageFolder folder;
  const struct {
    support::Text name;
    std::string file;
    std::string bgra;
  } rows[] = {
      {QXT("a.tga"), TgaFile(1, Bytes({1, 2, 3, 4})), Bytes({1, 2, 3, 4})},
      {QXT("a.bmp"), BmpFile(1, Bytes({1, 2, 3})), Bytes({1, 2, 3, 255})},
      {QXT("b.bmp"), BmpFile(1, Bytes({1, 2, 3, 4}), 32), Bytes({1, 2, 3, 4})},
      {QXT("a.pcx"), PcxFile(1, Bytes({1, 2, 3})), Bytes({3, 2, 1, 255})},
      // y 184, u 22, v -28: R 214.24 - 44.69 = 169.55, G 214.25 - 8.62 + 22.76 = 228.39, B 214.24 + 44.38 = 258.62
      {QXT("a.yuv"), YuvFile(1, Bytes({200, 150, 100})), Bytes({255, 228, 170, 255})},
  };
  for (const auto& row : rows) {
    const auto reader = ReaderOf(folder.Put(row.name, row.file));
    EXPECT_EQ(ReadAs(*reader, {1, 1, 1, 0}), Buffer(row.bgra)) << support::Printable(row.name);
  }
}

TEST(ImageReaderFrame, TheFilesOwnShapeIsCopied) {
  const ImageFolder folder;
  const std::string three = Bytes({9, 80, 190, 1, 2, 3});
  const std::string four = Bytes({9, 80, 190, 0, 1, 2, 3, 4});
  EXPECT_EQ(ReadAs(*ReaderOf(folder.Put(QXT("a.tga"), TgaFile(2, four))), {1, 2, 1, 0}), Buffer(four));
  EXPECT_EQ(ReadAs(*ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(2, three))), {4, 2, 1, 0}), Buffer(three + Zeros(2)));
  EXPECT_EQ(ReadAs(*ReaderOf(folder.Put(QXT("a.pcx"), PcxFile(2, three))), {0x40000000, 2, 1, 0}), Buffer(three + Zeros(2)));
  EXPECT_EQ(ReadAs(*ReaderOf(folder.Put(QXT("a.yuv"), YuvFile(2, three))), {8, 2, 1, 0}), Buffer(three + Zeros(2)))
      << "a colour that no red, green and blue give stays as it is";
}

TEST(ImageReaderFrame, PaddingIsZerosBehindEachRow) {
  const ImageFolder folder;
  const std::string pixels = Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9});
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(3, pixels)));
  // 3 rows, all alike: the source is one row high
  const std::string row = pixels + Zeros(5);
  EXPECT_EQ(ReadAs(*reader, {4, 3, 3, 5}), Buffer(row + row + row + Zeros(9)));
  EXPECT_EQ(ReadAs(*reader, {4, 3, 1, 1}), Buffer(pixels + Zeros(1) + Zeros(3)));
  const std::string working = Bytes({255, 3, 2, 1, 255, 6, 5, 4, 255, 9, 8, 7});
  EXPECT_EQ(ReadAs(*reader, {99, 3, 1, 2}), Buffer(working + Zeros(2)));
}

TEST(ImageReaderFrame, AnotherSizeIsBlendedAndTheLastColumnsGoOn) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.tga"), TgaFile(2, Bytes({0, 0, 0, 0, 255, 255, 255, 255}))));
  // at 0, 0.5, 1 and 1.5 between the two columns: 0, 127.5, 255, 382.5
  EXPECT_EQ(ReadAs(*reader, {1, 4, 1, 0}), Buffer(std::string(4, '\0') + std::string(4, '\x80') + std::string(8, '\xFF')));
}

TEST(ImageReaderFrame, ASourceOfOnePixelFillsThePicture) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(1, Bytes({10, 20, 30}))));
  std::string expected;
  for (int i = 0; i < 7 * 5; ++i) {
    expected += Bytes({10, 20, 30, 255});
  }
  EXPECT_EQ(ReadAs(*reader, {1, 7, 5, 0}), Buffer(expected));
}

TEST(ImageReaderFrame, WithoutPixelsTheBufferHoldsThePadding) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(1, Bytes({1, 2, 3}))));
  for (const unsigned int layout : {0u, 1u, 4u, 8u, 32u, 0x02000000u, 0x40000000u}) {
    EXPECT_EQ(ReadAs(*reader, {layout, 0, 0, 0}), Buffer("")) << layout;
    EXPECT_EQ(ReadAs(*reader, {layout, 5, 0, 3}), Buffer("")) << layout;
    EXPECT_EQ(ReadAs(*reader, {layout, 0, 5, 0}), Buffer("")) << layout;
    EXPECT_EQ(ReadAs(*reader, {layout, 0, 3, 5}), Buffer(Zeros(15))) << layout;
  }
}

TEST(ImageReaderFrame, BeforeAnOutputLayoutTheBufferIsEmpty) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(1, Bytes({1, 2, 3}))));
  unsigned char* buffer = nullptr;
  const int status = reader->ReadFrame(0, &buffer);
  EXPECT_EQ(Take(status, buffer, true), Buffer(""));
}

TEST(ImageReaderFrame, ShapesThatCannotBeAreTooMuchMemory) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(1, Bytes({1, 2, 3}))));
  const QXVPixelLayout shapes[] = {
      {4, -1, 1, 0},
      {4, 1, -1, 0},
      {4, 1, 1, -1},
      {4, INT_MIN, INT_MIN, INT_MIN},
      {4, 1 << 29, 1, 0},        // 2^31 bytes
      {4, 65536, 65536, 0},      // 2^34
      {4, 1, 1, INT_MAX},        // 4 more than fit
      {4, INT_MAX, INT_MAX, 0},  // 2^64 - 2^33 ...
      {4, INT_MAX, INT_MAX, 9},  // 2^64 + 2147483643: 64 bits lose the first part
      {4, INT_MAX, INT_MAX, INT_MAX},
  };
  for (const QXVPixelLayout& shape : shapes) {
    ASSERT_EQ(reader->SetOutputLayout(&shape), 0);
    unsigned char* buffer = nullptr;
    EXPECT_THROW((void)reader->ReadFrame(0, &buffer), std::bad_alloc) << shape.nWidth << ' ' << shape.nHeight;
    EXPECT_EQ(buffer, nullptr);
  }
  EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Buffer(Bytes({1, 2, 3, 0})));
}

// Headers that are understood, of pixels that are not: a bitmap of 16 bits, a PCX file of 4 bits in one plane.
std::string BmpOf16Bits() { return BmpFile(2, Bytes({1, 2, 3, 4}), 16); }
std::string PcxOf4Bits() {
  auto fields = pcx::Sides(2, 1);
  fields.bits = 4;
  fields.planes = 1;
  return pcx::File(fields, Bytes({1, 2, 3, 4}));
}

TEST(ImageReaderKept, AFrameWithoutAReaderIsRawNull) {
  const ImageFolder folder;
  for (const auto& name : {folder.Put(QXT("a.bmp"), BmpOf16Bits()), folder.Put(QXT("a.pcx"), PcxOf4Bits())}) {
    const auto reader = ReaderOf(name);
    EXPECT_EQ(InfoEx(*reader).status, 0u);
    unsigned char mine = 0;
    void* buffer = &mine;
    EXPECT_EQ(reader->ReadRawFrame(0, &buffer), 0);
    EXPECT_EQ(buffer, nullptr);
  }
}

TEST(ImageReaderFrame, WithoutPixelsToReadThereIsNothingToConvert) {
  const ImageFolder folder;
  for (const auto& name : {folder.Put(QXT("a.bmp"), BmpOf16Bits()), folder.Put(QXT("a.pcx"), PcxOf4Bits()),
                           folder.Put(QXT("b.bmp"), BmpFile(0, ""))}) {
    const auto reader = ReaderOf(name);
    for (const unsigned int layout : {1u, 4u, 8u, 32u, 0x02000000u, 0x40000000u}) {
      EXPECT_EQ(ReadAs(*reader, {layout, 2, 1, 0}), Refusal(0x89601A16)) << layout;
      EXPECT_EQ(ReadAs(*reader, {layout, 3, 5, 1}), Refusal(0x89601A16)) << layout;
      EXPECT_EQ(ReadAs(*reader, {layout, 2, 0, 0}), Buffer("")) << layout;
      EXPECT_EQ(ReadAs(*reader, {layout, 0, 2, 3}), Buffer(Zeros(6))) << layout;
    }
  }
}

TEST(ImageReaderKept, EveryLayoutHasRoomForFourBytesAPixel) {
  const ImageFolder folder;
  const std::string pixels = Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9});
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(3, pixels)));
  for (const unsigned int layout : {1u, 4u, 8u, 0x02000000u, 0x40000000u, 5u}) {
    EXPECT_EQ(ReadAs(*reader, {layout, 3, 2, 0}).bytes.size(), 3u * 2 * 4) << layout;
    EXPECT_EQ(ReadAs(*reader, {layout, 3, 2, 7}).bytes.size(), (3u * 4 + 7) * 2) << layout;
  }
  EXPECT_EQ(ReadAs(*reader, {4, 3, 1, 0}).bytes.substr(9), Zeros(3));
}

}  // namespace
