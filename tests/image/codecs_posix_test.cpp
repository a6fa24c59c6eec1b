// codecs_posix_test.cpp - picture files on what only Linux can show: full disks, pipes, devices.

#include "image/bmp.h"
#include "image/codec_files.h"
#include "image/gif.h"
#include "image/jpg.h"
#include "image/pcx.h"
#include "image/tga.h"
#include "image/yuv.h"
#include "support/full_disk.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

using namespace image_test;

constexpr const QXChar* kFullDisk = u"/dev/full";

TEST(JpgPosix, AFullDiskIsReported) {
  const std::string pixels = MixedPixels(600 * 400 * 3, 1);
  EXPECT_EQ(qxv::CQXVJpg().Write(kFullDisk, {1, 1, support::BytesOf(pixels)}), 0xFFFFFFFF);
  EXPECT_EQ(qxv::CQXVJpg().Write(kFullDisk, {600, 400, support::BytesOf(pixels)}), 0xFFFFFFFF);
}

TEST(JpgPosix, AFileThatEndsEarlyIsReported) {
  const std::string pixels = MixedPixels(600 * 400 * 3, 1);
  const CodecFile file;
  const std::size_t whole = Encode<qxv::CQXVJpg>(600, 400, pixels).size();
  for (const std::size_t most : {std::size_t{0}, std::size_t{1}, whole / 2, whole - 1, whole}) {
    qxv::Status status = 0;
    {
      const support::FileSizeLimit limit(most);
      status = qxv::CQXVJpg().Write(file.Name(), {600, 400, support::BytesOf(pixels)});
    }
    EXPECT_EQ(status, most < whole ? 0xFFFFFFFF : 0u) << most << " of " << whole;
    EXPECT_EQ(file.Get().size(), most);
  }
}

template <class Codec>
void ExpectSilence(unsigned bytesPerPixel) {
  const std::string pixels = MixedPixels(std::size_t{600} * 400 * bytesPerPixel, 1);
  EXPECT_EQ(Codec().Write(kFullDisk, {600, 400, support::BytesOf(pixels)}), 0u);
}

TEST(CodecsPosix, TheOthersDoNotReportAFullDisk) {
  ExpectSilence<qxv::CQXVBmp>(3);
  ExpectSilence<qxv::CQXVTga>(4);
  ExpectSilence<qxv::CQXVYUV>(3);
  ExpectSilence<qxv::CQXVPcx>(3);
  const std::string pixels = MixedPixels(600 * 400 * 3, 1);
  const qxv::CQXVGif::Frame frames[] = {support::BytesOf(pixels)};
  EXPECT_EQ(qxv::CQXVGif(600, 400).Write(kFullDisk, frames), 0u);
}

template <class Codec>
void ExpectRefused(const QXChar* name, qxv::Status expected) {
  for (const auto extent : {ReadExtent::Header, ReadExtent::Pixels}) {
    Codec codec;
    EXPECT_EQ(codec.Read(name, extent), expected);
    EXPECT_EQ(codec.Pixels(), nullptr);
  }
}

TEST(CodecsPosix, PipesAndDevicesAreRefusedWithoutWaiting) {
  const support::TempFolder folder;
  ASSERT_EQ(std::system(("mkfifo '" + (folder.Native() / "pipe").string() + "'").c_str()), 0);
  for (const auto& name : {folder.File(u"pipe"), support::Text(u"/dev/zero"), support::Text(u"/dev/full")}) {
    ExpectRefused<qxv::CQXVBmp>(name.c_str(), 0x89601A15);
    ExpectRefused<qxv::CQXVTga>(name.c_str(), 0x89601A15);
    ExpectRefused<qxv::CQXVYUV>(name.c_str(), 0x89601A15);
    ExpectRefused<qxv::CQXVPcx>(name.c_str(), 0x89601A15);
    ExpectRefused<qxv::CQXVJpg>(name.c_str(), 0xFFFFFFFF);
  }
}

}  // namespace
