// image_layouts_test.cpp - every layout into every other through reader and writer, with every padding and odd sizes, beside the
// rules worked out a pixel at a time.

#include "image/bmp.h"
#include "image/gif.h"
#include "image/image_shapes.h"
#include "image/jpg.h"
#include "image/pcx.h"
#include "image/tga.h"
#include "image/yuv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using namespace image_test;

TEST(ImageLayouts, FilesOfOursAreReadInEveryShape) {
  const ImageFolder folder;
  const struct {
    const QXChar* name;
    unsigned int layout;
    std::string (*file)(unsigned, const std::string&, unsigned);
  } types[] = {
      {QXT("a.tga"), 1, [](unsigned w, const std::string& pixels, unsigned h) { return TgaFile(w, pixels, h); }},
      {QXT("a.bmp"), 4, [](unsigned w, const std::string& pixels, unsigned h) { return BmpFile(w, pixels, 24, h); }},
      {QXT("a.pcx"), 0x40000000, [](unsigned w, const std::string& pixels, unsigned h) { return PcxFile(w, pixels, h); }},
      {QXT("a.yuv"), 8, [](unsigned w, const std::string& pixels, unsigned h) { return YuvFile(w, pixels, h); }},
  };
  for (const auto& type : types) {
    for (const Size size : kSizes) {
      const oracle::Shape from{type.layout, size.width, size.height, 0};
      const std::string pixels = PixelsOf(from);
      const std::string file = type.file(static_cast<unsigned>(size.width), pixels, static_cast<unsigned>(size.height));
      const auto reader = ReaderOf(folder.Put(type.name, file));
      ASSERT_EQ(ReadRaw(*reader), Buffer(pixels)) << support::Printable(type.name) << ' ' << ShapeName(from);
      ASSERT_NO_FATAL_FAILURE(ExpectEveryOutput(*reader, from, pixels)) << support::Printable(type.name);
    }
  }
}

// A TGA file shows 4 bytes a pixel of the frame that the writer keeps, its rows bottom-up.
TEST(ImageLayouts, EveryShapeIsConvertedToEveryTarget) {
  const ImageFolder folder;
  const auto name = folder.Name(QXT("a.tga"));
  const auto writer = NewWriter();
  const auto expectFile = [&](const oracle::Shape& from, const oracle::Shape& to) {
    const QXVImageInfo target{0, 1, to.layout, to.width, to.height, to.padding, 0};
    const QXVPixelLayout input{from.layout, from.width, from.height, from.padding};
    ASSERT_EQ(writer->Create(name.c_str(), &target), 0);
    ASSERT_EQ(writer->SetInputLayout(&input), 0);
    const std::string pixels = PixelsOf(from);
    const std::unique_ptr<unsigned char[]> exact(new unsigned char[pixels.size()]);  // it ends where a page ends
    std::copy(pixels.begin(), pixels.end(), exact.get());
    ASSERT_EQ(writer->WriteFrame(0, exact.get()), 0) << ShapeName(from) << " to " << ShapeName(to);
    const std::size_t row = static_cast<std::size_t>(to.width) * 4;
    const std::string kept = OfLength(Converted(from, pixels, to), row * static_cast<std::size_t>(to.height));
    std::string rows;
    for (std::size_t y = static_cast<std::size_t>(to.height); y-- > 0;) {
      rows += kept.substr(y * row, row);
    }
    ASSERT_EQ(Hex(folder.Get(QXT("a.tga")).substr(18)), Hex(rows)) << ShapeName(from) << " to " << ShapeName(to);
  };
  for (const std::uint32_t from : oracle::kLayouts) {
    for (const std::uint32_t to : {1u, 4u, 8u, 0x02000000u, 0x40000000u, 32u}) {
      for (const Size size : kSizes) {
        for (int padding = 0; padding <= kMostPadding; ++padding) {
          for (const Size wanted : {size, Size{5, 3}}) {
            ASSERT_NO_FATAL_FAILURE(
                expectFile({from, size.width, size.height, padding}, {to, wanted.width, wanted.height, 7 - padding}));
          }
        }
      }
    }
  }
}

// The bytes of a raw frame as each codec takes them: of its own size a pixel, cut or filled up with zeros.
TEST(ImageLayouts, RawFramesOfEveryTargetInEveryTypeOfFile) {
  const ImageFolder folder;
  constexpr int kWidth = 5, kHeight = 3;
  const struct {
    const QXChar* name;
    std::size_t bytesPerPixel;
    std::string (*encode)(std::int32_t, std::int32_t, const std::string&);
  } types[] = {
      {QXT("a.tga"), 4, &Encode<qxv::CQXVTga>}, {QXT("a.bmp"), 3, &Encode<qxv::CQXVBmp>},
      {QXT("a.pcx"), 3, &Encode<qxv::CQXVPcx>}, {QXT("a.yuv"), 3, &Encode<qxv::CQXVYUV>},
      {QXT("a.jpg"), 3, &Encode<qxv::CQXVJpg>},
  };
  for (const std::uint32_t layout : {1u, 4u, 8u, 0x02000000u, 0x40000000u, 32u, 64u, 128u}) {
    for (int padding = 0; padding <= kMostPadding; ++padding) {
      const std::string frame = PixelsOf({layout, kWidth, kHeight, padding});
      const std::unique_ptr<unsigned char[]> exact(new unsigned char[frame.size()]);
      std::copy(frame.begin(), frame.end(), exact.get());
      const QXVImageInfo target{0, 1, layout, kWidth, kHeight, padding, 0};
      for (const auto& type : types) {
        const auto writer = NewWriter();
        ASSERT_EQ(writer->Create(folder.Name(type.name).c_str(), &target), 0);
        ASSERT_EQ(writer->WriteRawFrame(0, exact.get()), 0) << support::Printable(type.name) << ' ' << layout << '+' << padding;
        EXPECT_EQ(folder.Get(type.name), type.encode(kWidth, kHeight, OfLength(frame, kWidth * kHeight * type.bytesPerPixel)))
            << support::Printable(type.name) << ' ' << layout << '+' << padding;
      }
      const auto writer = NewWriter();
      ASSERT_EQ(writer->Create(folder.Name(QXT("a.gif")).c_str(), &target), 0);
      ASSERT_EQ(writer->WriteRawFrame(0, exact.get()), 0);
      const std::string pixels = OfLength(frame, kWidth * kHeight * 3);
      const qxv::CQXVGif::Frame frames[] = {support::BytesOf(pixels)};
      ASSERT_EQ(qxv::CQXVGif(kWidth, kHeight).Write(folder.Name(QXT("b.gif")).c_str(), frames), 0u);
      EXPECT_EQ(folder.Get(QXT("a.gif")), folder.Get(QXT("b.gif"))) << layout << '+' << padding;
    }
  }
}

}  // namespace
