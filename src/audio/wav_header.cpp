// wav_header.cpp - the chunks of a WAV file up to its samples.

#include "audio/wav_header.h"

#include "streams/byte_reader.h"

#include <algorithm>
#include <cstring>

namespace qxv {

// KEPT: attributes are found by part of a chunk's name, samples by all of it.
//   Pinned by WavKept.AttributesAreFoundByPartOfAChunksName.
WavChunk StrictWavChunk(const unsigned char* id) noexcept {
  if (std::memcmp(id, "fmt ", 4) == 0) {
    return WavChunk::Format;
  }
  return std::memcmp(id, "data", 4) == 0 ? WavChunk::Data : WavChunk::Other;
}

WavChunk LooseWavChunk(const unsigned char* id) noexcept {
  if (std::memcmp(id, "fmt", 3) == 0 || id[3] == ' ') {
    return WavChunk::Format;
  }
  return std::memcmp(id, "dat", 3) == 0 || id[3] == 'a' ? WavChunk::Data : WavChunk::Other;
}

bool OpenWav(FileReader& in, const CQXString& name) {
  if (in.Open(name) != os::kErrorNone) {
    return false;
  }
  const auto head = in.Take(12);
  return head.size() == 12 && std::memcmp(head.data(), "RIFF", 4) == 0 && std::memcmp(head.data() + 8, "WAVE", 4) == 0;
}

bool ReadChunkHead(FileReader& in, WavChunkHead& head) noexcept {
  const auto bytes = in.Take(8);
  if (bytes.size() < 8) {
    return false;
  }
  std::copy_n(bytes.begin(), 4, head.id);
  head.size = ByteReader(bytes.subspan(4)).U32();
  return true;
}

bool ReadFormat(FileReader& in, std::uint32_t size, tWAVEFORMATEX& format) noexcept {
  unsigned char record[sizeof format];
  std::memcpy(record, &format, sizeof format);
  const auto body = in.Take(std::min<std::size_t>(size, sizeof format));
  std::copy(body.begin(), body.end(), record);
  std::memcpy(&format, record, sizeof format);
  format.cbSize = 0;
  return SkipBody(in, size - body.size());
}

// KEPT: the byte behind a body of odd size is not skipped. Pinned by WavKept.ThePadByteIsNotSkipped.
bool SkipBody(FileReader& in, std::uint64_t size) noexcept {
  if (size > in.Left()) {
    return false;
  }
  in.GoTo(in.Length() - in.Left() + size);
  return true;
}

}  // namespace qxv
