// jpg_test.cpp - JPG files by name.

#include "image/jpg.h"

#include "image/codec_files.h"
#include "jpeg_codec/jpeg_codec.h"
#include "jpeg_codec/jpeg_pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <new>
#include <string>

namespace {

using namespace image_test;
using qxv::CQXVJpg;
using support::JpegFile;
using support::JpegPicture;
using support::MeanDifference;

constexpr qxv::Status kFailed = 0xFFFFFFFF;

// The pixels alone, whatever room is behind them.
std::string PixelsOf(const CQXVJpg& codec) {
  return std::string(reinterpret_cast<const char*>(codec.Pixels()),
                     static_cast<std::size_t>(qxv::PixelBytes(codec.Width(), codec.Height(), 3)));
}

TEST(Jpg, HoldsASizeOf100BeforeAnythingIsRead) {
  const CQXVJpg codec;
  EXPECT_EQ(codec.Width(), 100);
  EXPECT_EQ(codec.Height(), 100);
  EXPECT_EQ(codec.Layout(), 4u);
  EXPECT_EQ(codec.Pixels(), nullptr);
}

TEST(Jpg, ReadsRowsTopDown) {
  const CodecFile file(JpegFile("200x150.jpg"));
  CQXVJpg codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  EXPECT_EQ(codec.Width(), 200);
  EXPECT_EQ(codec.Height(), 150);
  EXPECT_LT(MeanDifference(PixelsOf(codec), JpegPicture(200, 150)), 25);
}

TEST(Jpg, AHeaderAloneGivesSidesWithoutPixels) {
  EXPECT_EQ(DecodeHeader<CQXVJpg>(JpegFile("37x21.jpg")), Sized(37, 21));
  EXPECT_EQ(DecodeHeader<CQXVJpg>(JpegFile("progressive.jpg")), Sized(37, 21));
  EXPECT_EQ(DecodeHeader<CQXVJpg>(JpegFile("grey.jpg")), Sized(37, 21));
}

TEST(Jpg, WritesTheBytesOfCjpegOnEverySystem) {
  EXPECT_TRUE(Encode<CQXVJpg>(37, 21, JpegPicture(37, 21)) == JpegFile("37x21.jpg"));
  EXPECT_TRUE(Encode<CQXVJpg>(200, 150, JpegPicture(200, 150)) == JpegFile("200x150.jpg"));
}

TEST(Jpg, FilesThatCannotBeOpenedOrCreated) {
  const support::TempFolder folder;
  const unsigned char pixel[3] = {};
  for (const auto& name : {folder.File(QXT("none\\a.jpg")), folder.Path(), support::Text()}) {
    CQXVJpg codec;
    EXPECT_EQ(codec.Read(name.c_str(), ReadExtent::Header), kFailed);
    EXPECT_EQ(codec.Read(name.c_str(), ReadExtent::Pixels), kFailed);
    EXPECT_EQ(codec.Write(name.c_str(), {1, 1, pixel}), kFailed);
  }
}

TEST(Jpg, WriteRefusesWhatIsNoPicture) {
  const CodecFile file("as it was");
  const std::string pixels(1000, 'x');
  const std::int32_t sizes[][2] = {{-1, 1}, {1, -1},    {INT_MIN, INT_MIN}, {0, 1},
                                   {1, 0},  {65501, 1}, {INT_MAX, INT_MAX}, {40, 40}};
  for (const auto& [width, height] : sizes) {
    EXPECT_EQ(CQXVJpg().Write(file.Name(), {width, height, support::BytesOf(pixels)}), kFailed) << width << " x " << height;
  }
  EXPECT_EQ(file.Get(), "as it was");
}

TEST(JpgMalformed, TwoBytesAreNoFile) {
  EXPECT_EQ(Decode<CQXVJpg>("").status, kFailed);
  EXPECT_EQ(Decode<CQXVJpg>("\xFF\xD8").status, kFailed);
  EXPECT_EQ(Decode<CQXVJpg>("\xFF\xD8\xFF").status, kFailed);
}

TEST(JpgMalformed, FilesOf4GiBAreRefusedUnread) {
  const CodecFile file("\xFF\xD8");
  std::filesystem::resize_file(support::NativePath(file.Name()), std::uint64_t{1} << 32);  // a hole, not bytes
  CQXVJpg codec;
  EXPECT_EQ(codec.Read(file.Name(), ReadExtent::Header), kFailed);
}

TEST(JpgMalformed, APrefixGivesASizeOnlyWithItsWholeHeader) {
  const std::string file = JpegFile("37x21.jpg");
  const std::size_t scan = file.find("\xFF\xDA") + 14;
  for (std::size_t size = 0; size <= file.size(); ++size) {
    const Held header = DecodeHeader<CQXVJpg>(file.substr(0, size));
    const Held whole = Decode<CQXVJpg>(file.substr(0, size));
    ASSERT_EQ(header.status, size < scan ? kFailed : 0u) << size;
    ASSERT_EQ(whole.status, size < scan ? kFailed : 0u) << size;
    ASSERT_EQ(whole.hasPixels, size >= scan) << size;
  }
}

TEST(JpgMalformed, AFailureLeavesWhatWasRead) {
  const CodecFile file(JpegFile("37x21.jpg"));
  CQXVJpg codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  const std::string before = PixelsOf(codec);
  const std::size_t arrays = support::LiveArrays();
  file.Set(JpegFile("grey.jpg").substr(0, 100));
  EXPECT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), kFailed);
  EXPECT_EQ(codec.Width(), 37);
  EXPECT_EQ(PixelsOf(codec), before);
  EXPECT_EQ(support::LiveArrays(), arrays);
}

TEST(JpgMalformed, LackOfMemoryLeavesEverything) {
  const std::string picture = JpegPicture(37, 21);
  const CodecFile file(JpegFile("37x21.jpg"));
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    CQXVJpg codec;
    const std::size_t arrays = support::LiveArrays();
    const support::FailAllocation fail(index);
    try {
      const qxv::Status status = codec.Read(file.Name(), ReadExtent::Pixels);
      EXPECT_EQ(status, fail.Refused() ? kFailed : 0u);
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(codec.Pixels(), nullptr);
    }
    refused = fail.Refused();
    EXPECT_EQ(support::LiveArrays(), refused ? arrays : arrays + 1) << index;
  }
  refused = true;
  for (std::size_t index = 0; refused; ++index) {
    file.Set("old");
    {
      const support::FailAllocation fail(index);
      try {
        const qxv::Status status = CQXVJpg().Write(file.Name(), {37, 21, support::BytesOf(picture)});
        EXPECT_EQ(status, fail.Refused() ? kFailed : 0u);
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(fail.Refused());
      }
      refused = fail.Refused();
    }
    EXPECT_EQ(file.Get() == "old", refused) << index;
  }
}

TEST(JpgKept, RowsAreTurnedOverOnWritingOnly) {
  // what the class hands to the library
  const std::string picture = JpegPicture(37, 21);
  std::string rows = support::TurnedOver(picture, 37 * 3);
  QXVJpegImage image{};
  image.pixels = reinterpret_cast<unsigned char*>(rows.data());
  image.format = 792;
  image.width = 37;
  image.height = 21;
  const QXVJpegParameters parameters{70.0, 0};
  std::string data(qxv::JpegEncodeRoom(37, 21), '\0');
  QXVJpegStream stream{};
  stream.data = reinterpret_cast<unsigned char*>(data.data());
  ASSERT_EQ(::EncodeJpeg(&image, &parameters, &stream), 0);
  EXPECT_TRUE(Encode<CQXVJpg>(37, 21, picture) == data.substr(0, stream.length));
  // what it takes from it
  std::string decoded(qxv::JpegDecodeRoom(37, 21), '\0');
  image.pixels = reinterpret_cast<unsigned char*>(decoded.data());
  image.format = 0;
  ASSERT_EQ(::DecodeJpeg(&stream, &image), 0);
  const CodecFile file(data.substr(0, stream.length));
  CQXVJpg codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  EXPECT_TRUE(PixelsOf(codec) == decoded.substr(0, 37 * 21 * 3));
}

TEST(JpgRoundTrip, SizesFrom1To70By1To20StandUpright) {
  const CodecFile file;
  for (std::int32_t width = 1; width <= 70; ++width) {
    for (std::int32_t height = 1; height <= 20; ++height) {
      // the upper half dark, the lower one light
      const std::size_t rowBytes = static_cast<std::size_t>(width) * 3;
      const std::size_t dark = rowBytes * static_cast<std::size_t>(height / 2);
      std::string pixels(rowBytes * static_cast<std::size_t>(height), '\xC8');
      std::fill_n(pixels.begin(), dark, '\x32');
      CQXVJpg codec;
      ASSERT_EQ(codec.Write(file.Name(), {width, height, support::BytesOf(pixels)}), 0u);
      ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
      ASSERT_EQ(codec.Width(), width);
      ASSERT_EQ(codec.Height(), height);
      ASSERT_LT(MeanDifference(PixelsOf(codec), pixels), 8) << width << " x " << height;
    }
  }
}

}  // namespace
