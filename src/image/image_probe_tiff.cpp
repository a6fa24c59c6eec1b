// image_probe_tiff.cpp - the directory of a TIFF file (TIFF 6.0), checked as a whole.
// Header: "II" or "MM", 42, offset of the directory.

#include "image/image_probe_tiff.h"

#include "image/tiff_directory.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>

namespace qxv {
namespace {

using namespace tiff;

constexpr std::size_t kHeader = 8;
constexpr std::uint64_t kMostTilePixels = std::uint64_t{1} << 24;

enum Compression : std::uint32_t {
  kPlain = 1,
  kCcittRuns = 2,
  kCcitt3 = 3,
  kCcitt4 = 4,
  kLzw = 5,
  kJpeg = 7,
  kDeflate = 8,
  kPackBits = 32773,
  kOldDeflate = 32946,
};

enum Photometric : std::uint32_t { kWhiteIsZero = 0, kBlackIsZero, kRgb, kPaletteColour, kCmyk = 5, kYcbcr, kLab = 8 };

struct Fields {
  std::uint32_t width, height;
  std::uint32_t bits;
  std::uint32_t samples;
  std::uint32_t photometric;
  std::uint32_t compression;
  bool separatePlanes;
};

constexpr bool IsOneOf(std::uint32_t value, std::initializer_list<std::uint32_t> list) noexcept {
  return std::find(list.begin(), list.end(), value) != list.end();
}

std::optional<std::uint32_t> ColourChannels(std::uint32_t photometric) noexcept {
  switch (photometric) {
    case kWhiteIsZero:
    case kBlackIsZero:
    case kPaletteColour:
      return 1;
    case kRgb:
    case kYcbcr:
    case kLab:
      return 3;
    case kCmyk:
      return 4;
    default:
      return std::nullopt;
  }
}

// One number for all samples, or as many equal ones as there are samples.
bool IsSameForAll(const Directory& directory, std::uint16_t tag, std::uint32_t samples) noexcept {
  const Entry* entry = directory.Find(tag);
  if (entry == nullptr) {
    return true;
  }
  const std::uint32_t first = directory.Value(tag, 0);
  return (entry->count == 1 || entry->count == samples) &&
         directory.All(*entry, [&](std::uint32_t value) { return value == first; });
}

bool HasSamples(const Directory& directory, const Fields& fields) noexcept {
  const auto channels = ColourChannels(fields.photometric);
  const Entry* extra = directory.Find(kExtraSamples);
  // Many writers of alpha do not declare it; the decoder takes such samples for extra ones.
  const bool hasChannels =
      channels && (extra == nullptr ? fields.samples >= *channels : fields.samples - *channels == extra->count);
  return hasChannels && fields.samples <= 4 && IsSameForAll(directory, kBits, fields.samples) &&
         IsOneOf(fields.bits, {1, 2, 4, 8, 16, 32}) && (fields.samples == 1 || fields.bits == 8 || fields.bits == 16) &&
         IsSameForAll(directory, kSampleFormat, fields.samples) && IsOneOf(directory.Value(kSampleFormat, 1), {1, 2, 3}) &&
         (extra == nullptr || directory.All(*extra, [](std::uint32_t value) { return value <= 2; })) &&
         (fields.bits != 8 || directory.TellsSamples());  // else FreeImage takes pixels for alpha, and one behind the last
}

bool HasPalette(const Directory& directory, const Fields& fields) noexcept {
  if (fields.photometric != kPaletteColour) {
    return true;
  }
  const Entry* palette = directory.Find(kPalette);
  return palette != nullptr && fields.bits <= 8 && palette->count == std::uint32_t{3} << fields.bits;
}

bool IsKnownCompression(const Directory& directory, const Fields& fields) noexcept {
  switch (fields.compression) {
    case kPlain:
    case kPackBits:
      return true;
    case kLzw:
    case kDeflate:
    case kOldDeflate:
      return IsOneOf(directory.Value(kPredictor, 1), {1, 2, 3});
    case kCcittRuns:
    case kCcitt3:
    case kCcitt4:
      return fields.bits == 1 && fields.samples == 1;
    case kJpeg:
      return fields.bits == 8;
    default:
      return false;
  }
}

bool HasYcbcr(const Directory& directory, const Fields& fields) noexcept {
  const Entry* subsampling = directory.Find(kYcbcrSubsampling);
  return fields.photometric != kYcbcr || subsampling == nullptr || directory.All(*subsampling, [](std::uint32_t value) {
    return IsOneOf(value, {1, 2, 4});
  });
}

bool HasPieces(const Directory& directory, std::uint16_t offsetsTag, std::uint16_t bytesTag, std::uint64_t expected) noexcept {
  const Entry* offsets = directory.Find(offsetsTag);
  const Entry* bytes = directory.Find(bytesTag);
  if (offsets == nullptr || bytes == nullptr || offsets->count != expected || bytes->count != expected) {
    return false;
  }
  Numbers counts = directory.NumbersOf(*bytes);
  return directory.All(*offsets, [&](std::uint32_t offset) {
    const std::uint32_t count = counts.Next();
    return offset <= directory.FileLength() && count <= directory.FileLength() - offset;
  });
}

constexpr std::uint64_t RoundedUp(std::uint64_t value, std::uint64_t unit) noexcept { return (value + unit - 1) / unit; }

bool HasStrips(const Directory& directory, const Fields& fields) noexcept {
  const std::uint32_t rows = directory.Value(kRowsPerStrip, 0xFFFFFFFF);
  return rows != 0 &&
         HasPieces(directory, kStripOffsets, kStripBytes,
                   RoundedUp(fields.height, std::min(rows, fields.height)) * (fields.separatePlanes ? fields.samples : 1));
}

bool HasTiles(const Directory& directory, const Fields& fields) noexcept {
  const std::uint64_t width = directory.Value(kTileWidth, 0);
  const std::uint64_t height = directory.Value(kTileHeight, 0);
  return width != 0 && height != 0 && width % 16 == 0 && height % 16 == 0 && width <= kMostTilePixels &&
         height <= kMostTilePixels && width * height <= kMostTilePixels &&
         HasPieces(
             directory, kTileOffsets, kTileBytes,
             RoundedUp(fields.width, width) * RoundedUp(fields.height, height) * (fields.separatePlanes ? fields.samples : 1));
}

bool IsTiled(const Directory& directory) noexcept {
  for (const std::uint16_t tag : {kTileWidth, kTileHeight, kTileOffsets, kTileBytes}) {
    if (directory.Find(tag) != nullptr) {
      return true;
    }
  }
  return false;
}

bool IsSound(const Directory& directory) noexcept {
  const bool isTiled = IsTiled(directory);
  const bool hasStrips = directory.Find(kStripOffsets) != nullptr || directory.Find(kStripBytes) != nullptr;
  const std::uint32_t planar = directory.Value(kPlanar, 1);
  const Fields fields{directory.Value(kWidth, 0),
                      directory.Value(kHeight, 0),
                      directory.Value(kBits, 1),
                      directory.Value(kSamples, 1),
                      directory.Value(kPhotometric, 0xFFFFFFFF),
                      directory.Value(kCompression, kPlain),
                      planar == 2};
  return IsDecodableSize(fields.width, fields.height) && IsOneOf(planar, {1, 2}) && HasSamples(directory, fields) &&
         HasPalette(directory, fields) && IsKnownCompression(directory, fields) && HasYcbcr(directory, fields) &&
         isTiled != hasStrips && (isTiled ? HasTiles(directory, fields) : HasStrips(directory, fields));
}

}  // namespace

bool MayDecodeTiff(ByteSource& source, BytePatch& patch) {
  std::array<unsigned char, kHeader> header{};
  if (!source.ReadAt(0, header)) {
    return false;
  }
  const ByteOrder order(header[0] == 'M');
  Directory directory(source, order);
  const std::uint32_t at = order.Get(&header[4], 4);
  return order.Get(&header[2], 2) == 42 && at >= kHeader && directory.Read(at, patch) && IsSound(directory);
}

}  // namespace qxv
