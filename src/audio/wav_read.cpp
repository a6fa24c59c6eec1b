// wav_read.cpp - attributes and samples of WAV files.

#include "audio/sample_format.h"
#include "audio/wav_header.h"
#include "qxv/audio.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

using qxv::FileReader;

constexpr std::uint64_t kLarge = (std::uint64_t{16} << 20) / sizeof(float);  // samples that would drive all else from the caches

// Interleaved samples up to the file's end; false where it comes too early.
bool ReadSamples(FileReader& in, int width, std::uint64_t count, float* samples) noexcept {
  if (!qxv::IsSampleWidth(width)) {
    return true;
  }
  const auto sampleBytes = static_cast<std::size_t>(width);
  const auto decode = count < kLarge ? &qxv::SamplesFromBytes : &qxv::SamplesFromBytesPastCaches;
  while (count > 0) {
    const auto bytes = in.Peek(sampleBytes);
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, bytes.size() / sampleBytes));
    if (part == 0) {
      return false;
    }
    decode(width, bytes.data(), samples, part);
    in.Skip(part * sampleBytes);
    samples += part;
    count -= part;
  }
  return true;
}

int ReadFrames(FileReader& in, const tWAVEFORMATEX& format, int frames, float* samples) noexcept {
  const std::uint64_t count = frames > 0 ? std::uint64_t{format.nChannels} * static_cast<unsigned>(frames) : 0;
  return ReadSamples(in, qxv::SampleWidth(format), count, samples) ? 0 : -1;
}

int ReadAttributes(FileReader& in, tWAVEFORMATEX& format, int& frames) {
  return WalkWav(in, format, &qxv::LooseWavChunk, [&](FileReader& at, std::uint32_t size) {
    frames = qxv::FramesOf(size, format);
    return SkipBody(at, size) ? 0 : -1;
  });
}

}  // namespace

int QXVGetWavAtt(const CQXString& strFile, tWAVEFORMATEX& wfx, int& nFrames) {
  FileReader in;
  return OpenWav(in, strFile) ? ReadAttributes(in, wfx, nFrames) : -1;
}

int QXVReadWav(const CQXString& strFile, float* pDst, int& nFrames) {
  FileReader in;
  if (pDst == nullptr || !OpenWav(in, strFile)) {
    return -1;
  }
  tWAVEFORMATEX format{};
  return WalkWav(in, format, &qxv::StrictWavChunk, [&](FileReader& at, std::uint32_t size) {
    nFrames = qxv::FramesOf(size, format);
    return ReadFrames(at, format, nFrames, pDst);
  });
}

int QXVReadWav(const CQXString& strFile, float* pDst, int nStartFrame, int nFrames) {
  FileReader in;
  if (pDst == nullptr || !OpenWav(in, strFile)) {
    return -1;
  }
  tWAVEFORMATEX format{};
  return WalkWav(in, format, &qxv::StrictWavChunk, [&](FileReader& at, std::uint32_t) {
    const auto here = static_cast<std::int64_t>(at.Length() - at.Left());
    const std::int64_t start = here + std::int64_t{format.nBlockAlign} * nStartFrame;
    if (start < 0) {
      return -1;
    }
    at.GoTo(static_cast<std::uint64_t>(start));
    return ReadFrames(at, format, nFrames, pDst);
  });
}

int QXVReadWavBounded(const CQXString& strFile, float* pDst, int nCapacityFrames, int& nFrames) {
  FileReader in;
  if (pDst == nullptr || !OpenWav(in, strFile)) {
    return -1;
  }
  const std::uint64_t firstChunk = in.Length() - in.Left();
  tWAVEFORMATEX reported{}, format{};
  int reportedFrames = 0;
  if (ReadAttributes(in, reported, reportedFrames) != 0) {
    return -1;
  }
  in.GoTo(firstChunk);
  return WalkWav(in, format, &qxv::StrictWavChunk, [&](FileReader& at, std::uint32_t size) {
    const int frames = qxv::FramesOf(size, format);
    if (frames > nCapacityFrames || format.nChannels != reported.nChannels) {
      return -1;
    }
    nFrames = frames;
    return ReadFrames(at, format, frames, pDst);
  });
}
