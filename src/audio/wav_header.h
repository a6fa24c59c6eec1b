// wav_header.h - the chunks of a WAV file up to its samples.
//   "RIFF" size "WAVE", then chunks: id (4), size (4), body. The format stands in "fmt ", the samples in "data".
#pragma once

#include "qxv/string.h"
#include "qxv/types.h"
#include "streams/file_pieces.h"

#include <cstddef>
#include <cstdint>

namespace qxv {

enum class WavChunk { Format, Data, Other };

/// How the readers of samples know a chunk: all four bytes.
WavChunk StrictWavChunk(const unsigned char* id) noexcept;

/// How the reader of attributes knows it: "fmt" or a fourth byte that is a blank; "dat" or a fourth byte that is an a.
WavChunk LooseWavChunk(const unsigned char* id) noexcept;

/// Bytes of one sample of one channel; 0 where the format has no channels or no frames.
inline int SampleWidth(const tWAVEFORMATEX& format) noexcept {
  return format.nChannels == 0 ? 0 : format.nBlockAlign / format.nChannels;
}

/// Frames of a data chunk, as a 32-bit signed number: 0 and below from 2^31 bytes on.
inline int FramesOf(std::uint32_t dataSize, const tWAVEFORMATEX& format) noexcept {
  return static_cast<std::int32_t>(dataSize) / format.nBlockAlign;
}

/// Walks over the chunks until both the format and the samples have been seen.
/// @param format  what stood in it counts for samples that come before their format
/// @param onData  int(FileReader&, std::uint32_t size), called at the first byte of each data chunk; moves over what it reads and
///                returns 0 or -1. Never called while the format has no block alignment, or once the file has given it no
///                channels: that is -1
/// @return 0 or -1
template <typename OnData>
int WalkWav(FileReader& in, tWAVEFORMATEX& format, WavChunk (*chunkOf)(const unsigned char*), OnData onData);

/// Opens a file and checks that it is one; the reader then stands at its first chunk.
[[nodiscard]] bool OpenWav(FileReader& in, const CQXString& name);

struct WavChunkHead {
  unsigned char id[4];
  std::uint32_t size;
};

/// False where the file ends before.
[[nodiscard]] bool ReadChunkHead(FileReader& in, WavChunkHead& head) noexcept;

/// As much of the body as the record holds, the rest is skipped; the extra size counts as 0. False where the file ends before.
[[nodiscard]] bool ReadFormat(FileReader& in, std::uint32_t size, tWAVEFORMATEX& format) noexcept;

/// False where the file ends before.
[[nodiscard]] bool SkipBody(FileReader& in, std::uint64_t size) noexcept;

template <typename OnData>
int WalkWav(FileReader& in, tWAVEFORMATEX& format, WavChunk (*chunkOf)(const unsigned char*), OnData onData) {
  bool formatSeen = false, dataSeen = false;
  while (!formatSeen || !dataSeen) {
    WavChunkHead head;
    if (!ReadChunkHead(in, head)) {
      return -1;
    }
    switch (chunkOf(head.id)) {
      case WavChunk::Format:
        formatSeen = ReadFormat(in, head.size, format);
        if (!formatSeen) {
          return -1;
        }
        break;
      case WavChunk::Data:
        dataSeen = format.nBlockAlign != 0 && (format.nChannels != 0 || !formatSeen) && onData(in, head.size) == 0;
        if (!dataSeen) {
          return -1;
        }
        break;
      case WavChunk::Other:
        if (!SkipBody(in, head.size)) {
          return -1;
        }
    }
  }
  return 0;
}

}  // namespace qxv
