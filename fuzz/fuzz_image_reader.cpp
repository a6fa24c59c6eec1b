// fuzz_image_reader.cpp - any bytes as a picture file of any type through the reader: a status, buffers of the stated size only
// with success, and frames in the caller's shape as the rules make them of the raw one.
// The first bytes tell the extension; the shape that is asked for comes of the file's checksum, so that inputs are files.
// Changes know three formats: checksums of PNG chunks are mended, TIFF entries and GIF image descriptors are changed as fields.

#include "fuzz/fuzz_input.h"
#include "fuzz/mend_png.h"
#include "image/pixel_oracle.h"
#include "qxv/image.h"

#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

namespace oracle = pixel_oracle;

// --- changes ---

constexpr std::uint32_t kTellingNumbers[] = {0,   1,   2,     3,     4,          7,          8,          16,        32,
                                             255, 256, 65535, 65536, 0x10000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

// One field of one entry of the first directory, or its length, becomes a telling number.
bool ChangeTiffEntry(std::uint8_t* data, std::size_t size, std::minstd_rand& random) {
  const bool isLittle = size >= 8 && std::memcmp(data, "II*\0", 4) == 0;
  const bool isBig = size >= 8 && std::memcmp(data, "MM\0*", 4) == 0;
  if (!isLittle && !isBig) {
    return false;
  }
  const auto number = [&](std::size_t at, std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
      value = value << 8 | data[at + (isBig ? i : bytes - 1 - i)];
    }
    return value;
  };
  const std::size_t directory = number(4, 4);
  if (directory > size || size - directory < 2 + 12) {
    return false;
  }
  const std::size_t entries = std::min<std::size_t>(number(directory, 2), (size - directory - 2) / 12);
  if (entries == 0) {
    return false;
  }
  const std::size_t entry = directory + 2 + random() % entries * 12;
  constexpr struct { std::size_t at, bytes; } kFields[] = {{0, 2}, {2, 2}, {4, 4}, {8, 2}, {8, 4}};
  const auto field = kFields[random() % std::size(kFields)];
  const std::uint32_t value = kTellingNumbers[random() % std::size(kTellingNumbers)];
  for (std::size_t i = 0; i < field.bytes; ++i) {
    data[entry + field.at + i] = static_cast<std::uint8_t>(value >> (8 * (isBig ? field.bytes - 1 - i : i)));
  }
  return true;
}

// A field of one of the image descriptors becomes a telling number.
bool ChangeGifImage(std::uint8_t* data, std::size_t size, std::minstd_rand& random) {
  if (size < 24 || std::memcmp(data, "GIF8", 4) != 0) {
    return false;
  }
  const std::size_t start = 13 + random() % (size - 23);
  const void* found = std::memchr(data + start, 0x2C, size - 10 - start);
  if (found == nullptr) {
    return false;
  }
  auto* const image = data + (static_cast<const std::uint8_t*>(found) - data);
  const std::uint32_t value = kTellingNumbers[random() % std::size(kTellingNumbers)] % 65537;
  const std::size_t field = 1 + random() % 4 * 2;
  image[field] = static_cast<std::uint8_t>(value);
  image[field + 1] = static_cast<std::uint8_t>(value >> 8);
  return true;
}

// --- what must hold ---

constexpr std::int64_t kMostPixels = 1 << 20;      // larger ones only cost time
constexpr std::int64_t kMostCompared = 64 * 1024;  // the rules go a pixel at a time
constexpr int kMostSide = 65535;                   // of a picture without pixels, whose rows may still be padded

const char* ExtensionOf(const std::uint8_t* data, std::size_t size) {
  const std::string start(reinterpret_cast<const char*>(data), std::min<std::size_t>(size, 4));
  const struct {
    const char *bytes, *extension;
  } kinds[] = {{"\x89PNG", ".png"}, {"II", ".tif"},  {"MM", ".tif"},   {"GIF8", ".gif"},
               {"BM", ".bmp"},      {"YUV", ".yuv"}, {"\x0A", ".pcx"}, {"\xFF\xD8", ".jpg"}};
  for (const auto& kind : kinds) {
    if (start.compare(0, std::strlen(kind.bytes), kind.bytes) == 0) {
      return kind.extension;
    }
  }
  return ".tga";
}

const fuzz::ScratchFile& FileOf(const std::string& extension) {
  static const std::array<fuzz::ScratchFile, 8> files{fuzz::ScratchFile("reader", ".png"), fuzz::ScratchFile("reader", ".tif"),
                                                      fuzz::ScratchFile("reader", ".gif"), fuzz::ScratchFile("reader", ".bmp"),
                                                      fuzz::ScratchFile("reader", ".yuv"), fuzz::ScratchFile("reader", ".pcx"),
                                                      fuzz::ScratchFile("reader", ".jpg"), fuzz::ScratchFile("reader", ".tga")};
  constexpr const char* kExtensions[] = {".png", ".tif", ".gif", ".bmp", ".yuv", ".pcx", ".jpg", ".tga"};
  std::size_t index = 0;
  while (index < files.size() - 1 && extension != kExtensions[index]) {
    ++index;
  }
  return files[index];
}

bool IsRefusal(int status) {
  return status == -1 || status == QXV_IMAGE_STATUS_BAD_DATA || status == QXV_IMAGE_STATUS_BAD_ARGUMENT;
}

using Buffer = std::unique_ptr<unsigned char[]>;

oracle::Bytes Touched(const Buffer& buffer, std::size_t size) { return {buffer.get(), buffer.get() + size}; }

// The frame in the shape; raw: in the file's own, empty where it has none.
void CheckFrame(CQXVImageReader& reader, const QXVImageInfo& info, int frame, const oracle::Bytes& raw,
                std::minstd_rand& random) {
  constexpr unsigned int kLayouts[] = {1, 4, 8, 0x02000000, 0x40000000, 32, 0};
  const bool isSame = random() % 4 == 0 && std::max(info.nWidth, info.nHeight) <= kMostSide;
  const QXVPixelLayout shape{kLayouts[random() % std::size(kLayouts)], isSame ? info.nWidth : static_cast<int>(random() % 40),
                             isSame ? info.nHeight : static_cast<int>(random() % 40), static_cast<int>(random() % 8)};
  fuzz::Require(reader.SetOutputLayout(&shape) == 0);
  unsigned char* given = nullptr;
  const int status = reader.ReadFrame(static_cast<unsigned>(frame), &given);
  const Buffer buffer(given);
  fuzz::Require((status == 0) == (given != nullptr) && (status == 0 || IsRefusal(status)));
  if (status != 0) {
    return;
  }
  const std::size_t room = (static_cast<std::size_t>(shape.nWidth) * 4 + static_cast<std::size_t>(shape.nPadding)) *
                           static_cast<std::size_t>(shape.nHeight);
  const oracle::Bytes bytes = Touched(buffer, room);
  const bool isOtherRaw = info.nType == QXV_IMAGE_TYPE_GIF && (shape.nPixelLayout == 1 || shape.nPixelLayout == 4);
  const bool isCopy = shape.nPixelLayout == info.nPixelLayout && isSame && shape.nPadding == 0;
  if (raw.empty() || isOtherRaw || std::int64_t{info.nWidth} * info.nHeight > kMostCompared) {
    return;
  }
  oracle::Bytes expected = isCopy ? raw
                                  : oracle::Frame({info.nPixelLayout, info.nWidth, info.nHeight, 0}, raw,
                                                  {shape.nPixelLayout, shape.nWidth, shape.nHeight, shape.nPadding});
  expected.resize(room);
  fuzz::Require(bytes == expected);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed) {
  std::minstd_rand random(seed);
  if (random() % 2 == 0 && (ChangeTiffEntry(data, size, random) || ChangeGifImage(data, size, random))) {
    return size;
  }
  const std::size_t changed = LLVMFuzzerMutate(data, size, maxSize);
  fuzz::MendPng(data, changed);
  return changed;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const fuzz::ScratchFile& file = FileOf(ExtensionOf(data, size));
  file.Write(bytes);
  std::minstd_rand random(picture_files::PngChecksum(bytes.substr(0, 4096)));
  const std::unique_ptr<CQXVImageReader> reader(QXVCOMMONLIB_GetImageReader());
  fuzz::Require(reader->SetFile(file.Name()) == 0);
  QXVImageInfo info{};
  const int told = reader->GetImageInfoEx(&info);
  fuzz::Require(told == 0 || IsRefusal(told));
  if (told != 0) {
    void* none = nullptr;
    fuzz::Require(reader->ReadRawFrame(0, &none) != 0 && none == nullptr);
    return 0;
  }
  fuzz::Require(info.nFrames >= 1 && info.nWidth >= 0 && info.nHeight >= 0);
  if (std::int64_t{info.nWidth} * info.nHeight > kMostPixels) {
    return 0;
  }
  for (int frame = 0; frame < std::min(info.nFrames, 4); ++frame) {
    void* given = nullptr;
    const int status = reader->ReadRawFrame(frame, &given);
    const Buffer buffer(static_cast<unsigned char*>(given));
    fuzz::Require(status == 0 || (IsRefusal(status) && given == nullptr));
    oracle::Bytes raw;
    if (given != nullptr) {
      raw = Touched(buffer, oracle::BytesOf(info.nPixelLayout) * static_cast<std::size_t>(info.nWidth) *
                                static_cast<std::size_t>(info.nHeight));
    }
    CheckFrame(*reader, info, frame, raw, random);
  }
  void* none = nullptr;
  fuzz::Require(reader->ReadRawFrame(info.nFrames, &none) == QXV_IMAGE_STATUS_BAD_ARGUMENT && none == nullptr);
  return 0;
}
