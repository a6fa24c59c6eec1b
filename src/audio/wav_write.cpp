// wav_write.cpp - WAV files of a 44-byte header and samples.

#include "audio/sample_format.h"
#include "audio/wav_header.h"
#include "qxv/audio.h"
#include "streams/byte_writer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using qxv::FileWriter;

constexpr std::uint32_t kFormatBytes = 16;                         // of the record: all but the extra size
constexpr std::uint32_t kBytesBetween = 4 + 8 + kFormatBytes + 8;  // the RIFF size counts them with the samples

void WriteHeader(FileWriter& out, const tWAVEFORMATEX& format, std::uint32_t dataSize) {
  std::vector<unsigned char> header;
  header.reserve(8 + kBytesBetween);
  qxv::ByteWriter bytes(header);
  const auto id = [&bytes](const char(&name)[5]) { bytes.Bytes({reinterpret_cast<const unsigned char*>(name), 4}); };
  id("RIFF");                           // 0
  bytes.U32(dataSize + kBytesBetween);  // 4: modulo 2^32, as the other size
  id("WAVE");                           // 8
  id("fmt ");                           // 12
  bytes.U32(kFormatBytes);              // 16
  bytes.U16(format.wFormatTag);         // 20
  bytes.U16(format.nChannels);          // 22
  bytes.U32(format.nSamplesPerSec);     // 24
  bytes.U32(format.nAvgBytesPerSec);    // 28
  bytes.U16(format.nBlockAlign);        // 32
  bytes.U16(format.wBitsPerSample);     // 34
  id("data");                           // 36
  bytes.U32(dataSize);                  // 40
  out.Write(header);
}

void WriteSamples(FileWriter& out, int width, const float* samples, std::uint64_t count) noexcept {
  const auto sampleBytes = static_cast<std::size_t>(width);
  while (count > 0) {
    const auto room = out.Room(sampleBytes);
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, room.size() / sampleBytes));
    qxv::BytesFromSamples(width, samples, room.data(), part);
    out.Commit(part * sampleBytes);
    samples += part;
    count -= part;
  }
}

}  // namespace

int QXVWriteWav(const CQXString& strFile, tWAVEFORMATEX wfx, const float* pSrc, int nFrames) {
  FileWriter out;
  if (wfx.nChannels == 0 || wfx.nBlockAlign == 0 || (pSrc == nullptr && nFrames > 0) ||
      out.Open(strFile) != qxv::os::kErrorNone) {
    return -1;
  }
  WriteHeader(out, wfx, std::uint32_t{wfx.nBlockAlign} * static_cast<std::uint32_t>(nFrames));
  const int width = qxv::SampleWidth(wfx);
  if (nFrames > 0 && qxv::IsSampleWidth(width)) {
    WriteSamples(out, width, pSrc, std::uint64_t{wfx.nChannels} * static_cast<std::uint32_t>(nFrames));
  }
  return 0;
}
