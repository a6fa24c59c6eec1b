// wav_test.cpp - WAV files read: attributes, samples, ranges, with a bound, malformed.

#include "qxv/audio.h"

#include "audio/wav_bytes.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <new>

namespace {

using namespace wav;
using support::TempFolder;

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
  format = tWAVEFORMATEX{};
  format.nBlockAlign = 8;
  EXPECT_EQ(Attributes(file, format, frames), 0) << "of which the alignment is enough: attributes ask for no channels";
  EXPECT_EQ(frames, 1);
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
