// wav_test.cpp - WAV files byte by byte: attributes, samples, ranges, bounded reading, writing.

#include "qxv/audio.h"

#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using support::TempFolder;

std::string U16(unsigned value) { return {static_cast<char>(value), static_cast<char>(value >> 8)}; }
std::string U32(std::uint32_t value) { return U16(value & 0xFFFF) + U16(value >> 16); }

std::string Chunk(const std::string& id, const std::string& body) {
  return id + U32(static_cast<std::uint32_t>(body.size())) + body;
}

// Tag 1, channels, rate 48000, bytes a second, block alignment, bits.
std::string Format(unsigned channels, unsigned align, unsigned bits) {
  return U16(1) + U16(channels) + U32(48000) + U32(48000 * align) + U16(align) + U16(bits);
}

std::string Riff(const std::string& chunks) {
  return "RIFF" + U32(static_cast<std::uint32_t>(4 + chunks.size())) + "WAVE" + chunks;
}

struct WavFile {
  explicit WavFile(const std::string& bytes) { EXPECT_TRUE(support::WriteBytes(name, bytes)); }
  CQXString Name() const { return name.c_str(); }
  TempFolder folder;
  support::Text name = folder.File(QXT("a.wav"));
};

const std::string kTwoFrames("\x00\x40\x00\xC0\x00\x20\xFF\x7F", 8);  // stereo, 16 bits: 0.5 -0.5 0.25 0.99997
const std::vector<float> kTwoFramesAsFloats{0.5f, -0.5f, 0.25f, 32767 * 0x1p-15f};

int Attributes(const WavFile& file, tWAVEFORMATEX& format, int& frames) { return QXVGetWavAtt(file.Name(), format, frames); }

struct Whole {
  int result = 99;
  int frames = -99;
  std::vector<float> samples;
};

Whole Read(const WavFile& file, std::size_t room) {
  const auto buffer = std::make_unique<float[]>(room);
  std::fill_n(buffer.get(), room, -7.0f);
  Whole whole;
  whole.result = QXVReadWav(file.Name(), buffer.get(), whole.frames);
  whole.samples.assign(buffer.get(), buffer.get() + room);
  return whole;
}

TEST(Wav, AttributesOfAPlainFile) {
  const WavFile file(Riff(Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames)));
  tWAVEFORMATEX format{};
  format.cbSize = 77;
  int frames = -99;
  ASSERT_EQ(Attributes(file, format, frames), 0);
  EXPECT_EQ(frames, 2);
  EXPECT_EQ(format.wFormatTag, 1);
  EXPECT_EQ(format.nChannels, 2);
  EXPECT_EQ(format.nSamplesPerSec, 48000u);
  EXPECT_EQ(format.nAvgBytesPerSec, 192000u);
  EXPECT_EQ(format.nBlockAlign, 4);
  EXPECT_EQ(format.wBitsPerSample, 16);
  EXPECT_EQ(format.cbSize, 0) << "whatever the file holds";
}

TEST(Wav, SamplesOfEachWidth) {
  const struct {
    unsigned align;
    std::string data;
    float sample;
  } rows[] = {{1, std::string("\xC0", 1), 0.5f},
              {2, std::string("\x00\x80", 2), -1},
              {3, std::string("\xFF\xFF\xFF", 3), -1 * 0x1p-23f},
              {4, std::string("\x00\x00\x20\xC1", 4), -10}};
  for (const auto& row : rows) {
    const WavFile file(Riff(Chunk("fmt ", Format(1, row.align, 8 * row.align)) + Chunk("data", row.data)));
    const Whole whole = Read(file, 1);
    EXPECT_EQ(whole.result, 0) << row.align;
    EXPECT_EQ(whole.frames, 1) << row.align;
    EXPECT_EQ(whole.samples[0], row.sample) << row.align;
  }
}

TEST(Wav, OtherChunksAreSkipped) {
  const WavFile file(Riff(Chunk("LIST", std::string(26, 'x')) + Chunk("fmt ", Format(2, 4, 16)) +
                          Chunk("junk", std::string(9000, 'y')) + Chunk("data", kTwoFrames)));
  tWAVEFORMATEX format{};
  int frames = -99;
  EXPECT_EQ(Attributes(file, format, frames), 0);
  EXPECT_EQ(frames, 2);
  EXPECT_EQ(Read(file, 4).samples, kTwoFramesAsFloats);
}

TEST(Wav, AnExtensibleFormatIsCutToTheRecord) {
  std::string extensible = Format(2, 4, 16) + U16(22) + U16(16) + U32(3) + std::string(16, '\xAB');
  ASSERT_EQ(extensible.size(), 40u);
  extensible.replace(0, 2, U16(0xFFFE));
  const WavFile file(Riff(Chunk("fmt ", extensible) + Chunk("data", kTwoFrames)));
  struct {
    tWAVEFORMATEX format{};
    unsigned char behind[32];
  } guarded;
  std::memset(guarded.behind, 0x5A, sizeof guarded.behind);
  int frames = -99;
  EXPECT_EQ(Attributes(file, guarded.format, frames), 0);
  EXPECT_EQ(frames, 2);
  EXPECT_EQ(guarded.format.wFormatTag, 0xFFFE);
  EXPECT_EQ(guarded.format.cbSize, 0);
  for (const unsigned char byte : guarded.behind) {
    EXPECT_EQ(byte, 0x5A);
  }
  EXPECT_EQ(Read(file, 4).samples, kTwoFramesAsFloats);
}

TEST(WavKept, AttributesAreFoundByPartOfAChunksName) {
  const WavFile file(Riff(Chunk("xyz ", Format(2, 4, 16)) + Chunk("qata", kTwoFrames)));
  tWAVEFORMATEX format{};
  int frames = -99;
  EXPECT_EQ(Attributes(file, format, frames), 0);
  EXPECT_EQ(frames, 2);
  EXPECT_EQ(format.nChannels, 2);
  const WavFile prefixes(Riff(Chunk("fmtX", Format(1, 2, 16)) + Chunk("datX", kTwoFrames)));
  EXPECT_EQ(Attributes(prefixes, format, frames), 0);
  EXPECT_EQ(frames, 4);
  EXPECT_EQ(Read(file, 4).result, -1) << "the readers compare all of the name";
  EXPECT_EQ(Read(prefixes, 4).result, -1);
}

TEST(WavKept, ThePadByteIsNotSkipped) {
  const std::string odd = Chunk("LIST", "abc");
  const WavFile padded(Riff(odd + std::string(1, '\0') + Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames)));
  const WavFile unpadded(Riff(odd + Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames)));
  EXPECT_EQ(Read(padded, 4).result, -1);
  EXPECT_EQ(Read(unpadded, 4).samples, kTwoFramesAsFloats);
}

TEST(Wav, SamplesBeforeTheirFormat) {
  const WavFile file(Riff(Chunk("data", kTwoFrames) + Chunk("fmt ", Format(2, 4, 16))));
  tWAVEFORMATEX format{};
  int frames = -99;
  EXPECT_EQ(Attributes(file, format, frames), -1) << "no block alignment yet";
  format.nChannels = 1;
  format.nBlockAlign = 2;
  EXPECT_EQ(Attributes(file, format, frames), 0) << "the record's own values count";
  EXPECT_EQ(frames, 4);
  EXPECT_EQ(format.nBlockAlign, 4) << "and are replaced by the file's";
  EXPECT_EQ(Read(file, 4).result, -1);
  EXPECT_EQ(QXVReadWav(file.Name(), std::make_unique<float[]>(4).get(), 0, 1), -1);
}

TEST(Wav, NoChannelsOrNoAlignmentIsRefused) {
  for (const auto& [channels, align] : {std::pair(0u, 4u), std::pair(2u, 0u), std::pair(0u, 0u)}) {
    const WavFile file(Riff(Chunk("fmt ", Format(channels, align, 16)) + Chunk("data", kTwoFrames)));
    tWAVEFORMATEX format{};
    int frames = -99;
    float slot = -7;
    EXPECT_EQ(Attributes(file, format, frames), -1);
    EXPECT_EQ(Read(file, 4).result, -1);
    EXPECT_EQ(QXVReadWav(file.Name(), &slot, 0, 1), -1);
    EXPECT_EQ(QXVReadWavBounded(file.Name(), &slot, 1, frames), -1);
    EXPECT_EQ(slot, -7);
  }
}

TEST(Wav, WidthsWithoutASampleReadAsNothing) {
  for (const auto& [channels, align] : {std::pair(65535u, 4u), std::pair(1u, 8u)}) {
    const WavFile file(Riff(Chunk("fmt ", Format(channels, align, 16)) + Chunk("data", kTwoFrames)));
    const Whole whole = Read(file, 1);
    EXPECT_EQ(whole.result, 0) << channels;
    EXPECT_EQ(whole.frames, static_cast<int>(8 / align));
    EXPECT_EQ(whole.samples[0], -7);
  }
}

TEST(WavMalformed, EveryTruncationIsAFailure) {
  const std::string bytes = Riff(Chunk("LIST", "abcd") + Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames));
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const WavFile file(bytes.substr(0, size));
    tWAVEFORMATEX format{};
    int frames = -99;
    const auto buffer = std::make_unique<float[]>(4);
    EXPECT_EQ(Attributes(file, format, frames), -1) << size;
    EXPECT_EQ(Read(file, 4).result, -1) << size;
    EXPECT_EQ(QXVReadWav(file.Name(), buffer.get(), 0, 2), -1) << size;
    EXPECT_EQ(QXVReadWavBounded(file.Name(), buffer.get(), 2, frames), -1) << size;
  }
}

TEST(WavMalformed, ATruncatedFileKeepsWhatWasRead) {
  const std::string bytes = Riff(Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames));
  const WavFile file(bytes.substr(0, bytes.size() - 3));
  const Whole whole = Read(file, 4);
  EXPECT_EQ(whole.result, -1);
  EXPECT_EQ(whole.frames, 2);
  EXPECT_EQ(whole.samples, (std::vector<float>{0.5f, -0.5f, -7, -7}));
  tWAVEFORMATEX format{};
  int frames = -99;
  EXPECT_EQ(Attributes(file, format, frames), -1);
  EXPECT_EQ(frames, 2) << "as the chunk declares";
}

TEST(WavMalformed, OtherFilesAndNoFiles) {
  tWAVEFORMATEX format{};
  int frames = -99;
  float slot = -7;
  for (const std::string& bytes : {std::string(), std::string("RIFX") + U32(4) + "WAVE", std::string("RIFF") + U32(4) + "AVI ",
                                   std::string("RIFF") + U32(4) + "WAVE", std::string(5000, 'R')}) {
    const WavFile file(bytes);
    EXPECT_EQ(Attributes(file, format, frames), -1);
    EXPECT_EQ(Read(file, 1).result, -1);
    EXPECT_EQ(QXVReadWav(file.Name(), &slot, 0, 1), -1);
    EXPECT_EQ(QXVReadWavBounded(file.Name(), &slot, 1, frames), -1);
  }
  const TempFolder folder;
  for (const auto& name : {folder.Path(), folder.File(QXT("none.wav")), support::Text()}) {
    EXPECT_EQ(QXVGetWavAtt(name.c_str(), format, frames), -1);
    EXPECT_EQ(QXVReadWav(name.c_str(), &slot, frames), -1);
  }
  for (const auto& name : {folder.Path(), folder.File(QXT("none\\a.wav")), support::Text()}) {
    EXPECT_EQ(QXVWriteWav(name.c_str(), tWAVEFORMATEX{1, 1, 48000, 96000, 2, 16, 0}, &slot, 1), -1);
  }
  EXPECT_EQ(slot, -7);
}

TEST(WavMalformed, SizesUpTo32Bits) {
  const std::string format = Chunk("fmt ", Format(2, 4, 16));
  tWAVEFORMATEX record{};
  int frames = -99;
  for (const std::uint32_t size : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Attributes(WavFile(Riff(format + "data" + U32(size) + kTwoFrames)), record, frames), -1) << size;
    EXPECT_EQ(Attributes(WavFile(Riff("fmt " + U32(size) + Format(2, 4, 16) + Chunk("data", kTwoFrames))), record, frames), -1);
    EXPECT_EQ(Attributes(WavFile(Riff("LIST" + U32(size) + format + Chunk("data", kTwoFrames))), record, frames), -1);
  }
  // From 2^31 on the count of frames is no more above 0, and nothing is read.
  const Whole whole = Read(WavFile(Riff(format + "data" + U32(0x80000000u) + kTwoFrames)), 1);
  EXPECT_EQ(whole.result, 0);
  EXPECT_EQ(whole.frames, INT_MIN / 4);
  EXPECT_EQ(whole.samples[0], -7);
}

TEST(WavRange, FramesFromAnyPlace) {
  const std::string data = kTwoFrames + std::string("\x00\x10\x00\x30", 4);
  const WavFile file(
      Riff(Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", data) + Chunk("LIST", std::string("\x00\x08\x00\x18", 4))));
  std::vector<float> samples(2);
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), 1, 1), 0);
  EXPECT_EQ(samples, (std::vector<float>{0.25f, 32767 * 0x1p-15f}));
  samples.resize(4);
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), 1, 2), 0);
  EXPECT_EQ(samples, (std::vector<float>{0.25f, 32767 * 0x1p-15f, 0.125f, 0.375f}));
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), 5, 1), 0) << "the body of the chunk behind the samples";
  EXPECT_EQ(samples[0], 0x0800 * 0x1p-15f);
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), -1, 1), 0) << "backwards, over the chunk's head: d a t a is where it began";
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), 4, 2), 0);
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), 5, 2), -1) << "beyond the file";
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), 1000, 0), 0) << "nothing is asked for";
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), -12, 1), -1) << "before the file";
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), INT_MIN, 1), -1);
  EXPECT_EQ(QXVReadWav(file.Name(), samples.data(), INT_MAX, 1), -1);
  EXPECT_EQ(QXVReadWav(file.Name(), nullptr, 0, 1), -1);
}

TEST(WavBounded, ReadsWhatThereIsRoomFor) {
  const WavFile file(Riff(Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames)));
  auto buffer = std::make_unique<float[]>(4);
  int frames = -99;
  EXPECT_EQ(QXVReadWavBounded(file.Name(), buffer.get(), 2, frames), 0);
  EXPECT_EQ(frames, 2);
  EXPECT_EQ(std::vector<float>(buffer.get(), buffer.get() + 4), kTwoFramesAsFloats);
  for (const int capacity : {1, 0, -1, INT_MIN}) {
    float slot = -7;
    frames = -99;
    EXPECT_EQ(QXVReadWavBounded(file.Name(), &slot, capacity, frames), -1) << capacity;
    EXPECT_EQ(slot, -7);
    EXPECT_EQ(frames, -99);
  }
  EXPECT_EQ(QXVReadWavBounded(file.Name(), nullptr, 9, frames), -1);
}

TEST(WavBounded, AFileMadeToMisleadIsRefused) {
  // The attributes find one frame of one channel in chunks that the reader passes over.
  const WavFile file(
      Riff(Chunk("xyz ", Format(1, 2, 16)) + Chunk("qata", "ab") + Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames)));
  tWAVEFORMATEX format{};
  int frames = -99;
  ASSERT_EQ(Attributes(file, format, frames), 0);
  ASSERT_EQ(frames * format.nChannels, 1);
  auto slot = std::make_unique<float[]>(1);
  slot[0] = -7;
  EXPECT_EQ(QXVReadWavBounded(file.Name(), slot.get(), frames, frames), -1);
  EXPECT_EQ(QXVReadWavBounded(file.Name(), slot.get(), 2, frames), -1) << "two frames, but of more channels than reported";
  EXPECT_EQ(slot[0], -7);
}

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

TEST(Wav, LackOfMemoryIsThrownOrRefused) {
  const WavFile file(Riff(Chunk("fmt ", Format(2, 4, 16)) + Chunk("data", kTwoFrames)));
  const CQXString name = file.Name();
  float samples[4];
  for (std::size_t index = 0;; ++index) {
    const support::FailAllocation fail(index);
    int frames = 0, result = -1;
    try {
      result = QXVReadWav(name, samples, frames);
    } catch (const std::bad_alloc&) {
      continue;
    }
    if (!fail.Refused()) {
      EXPECT_EQ(result, 0);
      break;
    }
    EXPECT_EQ(result, -1) << index;
  }
}

}  // namespace
