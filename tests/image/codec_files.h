// codec_files.h - picture files made byte by byte, and what a codec makes of them.
#pragma once

#include "image/picture_codec.h"
#include "support/file_bytes.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <random>
#include <string>

namespace image_test {

using qxv::ReadExtent;

inline std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) {
    bytes += static_cast<char>(static_cast<unsigned char>(value));
  }
  return bytes;
}

/// A number in so many little-endian bytes.
inline std::string Number(std::uint64_t value, unsigned count) {
  std::string bytes;
  for (; count > 0; --count, value >>= 8) {
    bytes += static_cast<char>(static_cast<unsigned char>(value));
  }
  return bytes;
}
inline std::string U16(std::uint64_t value) { return Number(value, 2); }
inline std::string U32(std::uint64_t value) { return Number(value, 4); }
inline std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

inline std::string Hex(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    text += digits;
  }
  return text;
}

/// What a codec holds after reading.
struct Held {
  qxv::Status status = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  bool hasPixels = false;
  std::string pixels{};  // the whole allocation

  bool operator==(const Held&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Held& held) {
  out << std::hex << "status " << held.status << std::dec << ' ' << held.width << " x " << held.height;
  return held.hasPixels ? out << " pixels " << Hex(held.pixels) : out << " no pixels";
}

/// Bytes of the buffer of pixels. AddressSanitizer gives empty blocks a byte.
inline std::size_t AllocatedPixels(const qxv::PictureCodec& codec) {
  const std::size_t size = support::AllocationSize(codec.Pixels());
  const bool isEmpty = codec.Width() == 0 || codec.Height() == 0;
  return isEmpty && size == 1 ? 0 : size;
}

inline Held HeldBy(const qxv::PictureCodec& codec, qxv::Status status = 0) {
  Held held{status, codec.Width(), codec.Height(), codec.Pixels() != nullptr};
  if (held.hasPixels) {
    held.pixels.assign(reinterpret_cast<const char*>(codec.Pixels()), AllocatedPixels(codec));
  }
  return held;
}

/// One file in a folder of its own.
class CodecFile {
 public:
  CodecFile() = default;
  explicit CodecFile(const std::string& bytes) { Set(bytes); }

  const QXChar* Name() const { return m_name.c_str(); }
  void Set(const std::string& bytes) const { EXPECT_TRUE(support::WriteBytes(m_name, bytes)); }
  std::string Get() const { return support::ReadBytes(m_name); }

 private:
  support::TempFolder m_folder;
  support::Text m_name = m_folder.File(QXT("picture.bin"));
};

template <class Codec>
Held Decode(const std::string& bytes, ReadExtent extent = ReadExtent::Pixels) {
  static const CodecFile file;
  file.Set(bytes);
  Codec codec;
  const qxv::Status status = codec.Read(file.Name(), extent);
  return HeldBy(codec, status);
}

template <class Codec>
Held DecodeHeader(const std::string& bytes) {
  return Decode<Codec>(bytes, ReadExtent::Header);
}

/// A field of a header, made of numbers called Fields, and what a codec holds of a file that has it at 0, at 1, at its maximum
/// and with its sign bit alone.
template <class Fields>
struct FieldLimits {
  const char* what;
  std::uint64_t Fields::*field;
  unsigned bytes;
  Held expected[4];
};

/// @param file makes the file of some fields
template <class Codec, class Fields, std::size_t Count, class MakeFile>
void ExpectFieldsAtTheirLimits(const FieldLimits<Fields> (&rows)[Count], const Fields& others, MakeFile file) {
  for (const FieldLimits<Fields>& row : rows) {
    const std::uint64_t signBit = std::uint64_t{1} << (8 * row.bytes - 1);
    const std::uint64_t values[] = {0, 1, 2 * signBit - 1, signBit};
    for (std::size_t i = 0; i < 4; ++i) {
      Fields fields = others;
      fields.*row.field = values[i];
      EXPECT_EQ(Decode<Codec>(file(fields)), row.expected[i]) << row.what << ' ' << values[i];
    }
  }
}

/// The file's bytes.
template <class Codec>
std::string Encode(std::int32_t width, std::int32_t height, const std::string& pixels) {
  const CodecFile file;
  EXPECT_EQ(Codec().Write(file.Name(), {width, height, support::BytesOf(pixels)}), 0u);
  return file.Get();
}

/// What an object without a picture holds after a refusal.
template <class Codec>
Held Refused() {
  return HeldBy(Codec(), 0x89601A16);
}

inline Held Sized(std::int32_t width, std::int32_t height) { return {0, width, height}; }
inline Held WithPixels(std::int32_t width, std::int32_t height, const std::string& pixels) {
  return {0, width, height, true, pixels};
}

/// Every prefix of a file: refused below neededForHeader and neededForPixels bytes, read alike from there on.
template <class Codec>
void SweepPrefixes(const std::string& file, std::size_t neededForHeader, std::size_t neededForPixels) {
  const Held header = DecodeHeader<Codec>(file);
  const Held whole = Decode<Codec>(file);
  ASSERT_EQ(header.status, 0u);
  ASSERT_EQ(whole.status, 0u);
  const std::size_t arrays = support::LiveArrays();
  for (std::size_t size = 0; size <= file.size(); ++size) {
    const std::string prefix = file.substr(0, size);
    ASSERT_EQ(DecodeHeader<Codec>(prefix), size < neededForHeader ? Refused<Codec>() : header) << "of " << size << " bytes";
    ASSERT_EQ(Decode<Codec>(prefix), size < neededForPixels ? Refused<Codec>() : whole) << "of " << size << " bytes";
  }
  EXPECT_EQ(support::LiveArrays(), arrays);
}

/// What a header claims is refused before anything is allocated for it: with as many allocations as reading the header takes.
template <class Codec>
void RefusesWithoutAllocating(const std::string& bytes) {
  const CodecFile file(bytes);
  Codec codec;
  const auto allocations = [&](ReadExtent extent, qxv::Status expected) {
    const std::size_t before = support::AllocationsOfThisThread();
    EXPECT_EQ(codec.Read(file.Name(), extent), expected);
    return support::AllocationsOfThisThread() - before;
  };
  const std::size_t ofHeader = allocations(ReadExtent::Header, 0);
  EXPECT_EQ(allocations(ReadExtent::Pixels, 0x89601A16), ofHeader);
}

/// Pixels of stretches of equal bytes, short and long, and of noise.
inline std::string MixedPixels(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string pixels;
  while (pixels.size() < size) {
    if (random() % 2 == 0) {
      pixels.append(1 + random() % 150, static_cast<char>(random()));
    } else {
      for (auto count = random() % 40; count > 0; --count) {
        pixels += static_cast<char>(random());
      }
    }
  }
  pixels.resize(size);
  return pixels;
}

}  // namespace image_test
