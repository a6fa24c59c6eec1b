// wav_write_test.cpp - WAV files written, and read again.

#include "qxv/audio.h"

#include "audio/wav_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

using namespace wav;
using support::TempFolder;

TEST(WavWrite, TheFileByteByByte) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.wav"));
  const float samples[] = {1.0f, 0.5f, -1.0f, -0.25f};
  ASSERT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 2, 48000, 192000, 4, 16, 99}, samples, 2), 0);
  EXPECT_EQ(support::ReadBytes(name), "RIFF" + U32(44) + "WAVE" + "fmt " + U32(16) + Format(2, 4, 16) + "data" + U32(8) +
                                          std::string("\x00\x80\x00\x40\x00\x80\x00\xE0", 8));
}

TEST(WavWrite, SamplesAreCutAndWrap) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.wav"));
  const float infinity = std::numeric_limits<float>::infinity(), noNumber = std::numeric_limits<float>::quiet_NaN();
  const struct {
    WORD align;
    std::vector<float> samples;
    std::string bytes;
  } rows[] = {
      {1, {0.0f, 0.5f, 1.0f, -1.0f, infinity, noNumber, 1e-9f}, std::string("\x80\x00\x80\x80\x00\x00\x81", 7)},
      {2,
       {1.0f, -1.0f, 1.9999f, 0x1p-16f, -0x1p-16f, infinity, noNumber},
       std::string("\x00\x80\x00\x80\xFC\xFF\x00\x00\x00\x00\x00\x00\x00\x00", 14)},
      {3,
       {1.0f, -1.0f, 0x1p-23f, -0x1p-23f, noNumber},
       std::string("\x00\x00\x80\x00\x00\x80\x01\x00\x00\xFF\xFF\xFF\x00\x00\x00", 15)},
      {4, {1.0f, -2.5f}, std::string("\x00\x00\x80\x3F\x00\x00\x20\xC0", 8)},
      {5, {1.0f, -2.5f}, std::string()},
  };
  for (const auto& row : rows) {
    ASSERT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 1, 8000, 8000, row.align, 8, 0}, row.samples.data(),
                          static_cast<int>(row.samples.size())),
              0);
    const std::string bytes = support::ReadBytes(name);
    EXPECT_EQ(bytes.substr(44), row.bytes) << row.align;
    EXPECT_EQ(bytes.substr(40, 4), U32(static_cast<std::uint32_t>(row.samples.size()) * row.align))
        << "also where none is written";
  }
}

TEST(WavKept, EightBitsAreNotWrittenAsTheyAreRead) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.wav"));
  const float half[] = {0.5f};
  ASSERT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 1, 8000, 8000, 1, 8, 0}, half, 1), 0);
  float read = 0;
  int frames = 0;
  ASSERT_EQ(QXVReadWav(name.c_str(), &read, frames), 0);
  EXPECT_EQ(read, -1.0f) << "0x00";
}

TEST(WavWrite, RefusesBeforeAnythingIsCreated) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.wav"));
  const float sample = 0;
  EXPECT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 0, 8000, 8000, 2, 16, 0}, &sample, 1), -1);
  EXPECT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 1, 8000, 8000, 0, 16, 0}, &sample, 1), -1);
  EXPECT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 1, 8000, 8000, 2, 16, 0}, nullptr, 1), -1);
  EXPECT_FALSE(support::Exists(name));
}

TEST(WavWrite, CountsBelowOneLeaveAHeader) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.wav"));
  ASSERT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 2, 8000, 8000, 4, 16, 0}, nullptr, 0), 0);
  EXPECT_EQ(support::ReadBytes(name).size(), 44u);
  ASSERT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 2, 8000, 8000, 4, 16, 0}, nullptr, -1), 0);
  EXPECT_EQ(support::ReadBytes(name).substr(40), U32(0xFFFFFFFC)) << "as the product has it";
}

TEST(WavRoundTrip, LargeFilesComeBack) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.wav"));
  constexpr int kFrames = 200'003;
  for (const WORD width : {WORD{2}, WORD{3}, WORD{4}}) {
    std::vector<float> samples(kFrames * 2);
    for (std::size_t i = 0; i < samples.size(); ++i) {
      samples[i] = static_cast<float>(static_cast<int>(i * 7919 % 65536) - 32768) * 0x1p-15f;
    }
    const auto align = static_cast<WORD>(2 * width);
    ASSERT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 2, 48000, 0, align, 0, 0}, samples.data(), kFrames), 0);
    std::vector<float> read(samples.size());
    int frames = 0;
    ASSERT_EQ(QXVReadWav(name.c_str(), read.data(), frames), 0);
    EXPECT_EQ(frames, kFrames);
    EXPECT_TRUE(read == samples) << width;
    std::vector<float> part(2000);
    ASSERT_EQ(QXVReadWav(name.c_str(), part.data(), 150'000, 1000), 0);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), samples.begin() + 300'000)) << width;
  }
}

}  // namespace
