// stream_block.cpp - counted texts and blocks: a signed 32-bit count, then the units or bytes.

#include "streams/stream_block.h"

#include <cstring>
#include <memory>

namespace qxv {
namespace {

constexpr std::size_t kUnitBytes = sizeof(QXChar);

// The elements behind a count, which is compared with the bytes left before anything is made of it.
bool ReadCounted(ByteReader& in, std::size_t elementBytes, std::span<const unsigned char>& bytes) {
  const std::int32_t count = in.I32();
  if (in.Failed()) {
    return false;
  }
  const std::size_t elements = count > 0 ? static_cast<std::size_t>(count) : 0;
  const auto found = in.Bytes(elements * elementBytes);
  if (in.Failed()) {
    return false;
  }
  bytes = found;
  return true;
}

template <class TextType>
bool ReadText(ByteReader& in, TextType& text) {
  std::span<const unsigned char> bytes;
  if (!ReadCounted(in, kUnitBytes, bytes)) {
    return false;
  }
  const std::size_t units = bytes.size() / kUnitBytes;
  if (units == 0) {
    text.Empty();
    return true;
  }
  std::unique_ptr<QXChar[]> copy(new QXChar[units + 1]);  // the bytes may stand at an odd address
  std::memcpy(copy.get(), bytes.data(), bytes.size());
  copy[units] = 0;
  text = static_cast<const QXChar*>(copy.get());
  return true;
}

}  // namespace

bool ReadCountedText(ByteReader& in, CQXString& text) { return ReadText(in, text); }

bool ReadCountedText(ByteReader& in, CString& text) { return ReadText(in, text); }

bool ReadCountedBytes(ByteReader& in, std::span<const unsigned char>& bytes) { return ReadCounted(in, 1, bytes); }

}  // namespace qxv
