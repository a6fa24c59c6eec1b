// image_probe.cpp - what kind of picture a file holds, and the sizes that PNG and GIF files claim.

#include "image/image_probe.h"

#include "image/image_probe_tiff.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace qxv {
namespace {

constexpr std::size_t kSignature = 8;
constexpr std::string_view kPngStart("\x89PNG\r\n\x1A\n", 8);

bool StartsWith(std::span<const unsigned char> bytes, std::string_view text) noexcept {
  return bytes.size() >= text.size() && std::memcmp(bytes.data(), text.data(), text.size()) == 0;
}

// --- PNG (ISO/IEC 15948): signature, then the header chunk ---

constexpr std::size_t kPngHeader = kSignature + 4 + 4 + 13;  // length, type, fields

std::uint32_t BigEndian32(const unsigned char* bytes) noexcept {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

bool MayDecodePng(ByteSource& source) noexcept {
  std::array<unsigned char, kPngHeader> header{};
  return source.ReadAt(0, header) && StartsWith(std::span(header).subspan(8), std::string_view("\0\0\0\x0DIHDR", 8)) &&
         IsDecodableSize(BigEndian32(&header[16]), BigEndian32(&header[20]));
}

// --- GIF (87a, 89a): screen, colours, then blocks up to the trailer ---

constexpr unsigned char kGifImage = 0x2C;
constexpr unsigned char kGifExtension = 0x21;
constexpr unsigned char kGifTrailer = 0x3B;
constexpr unsigned kHasColours = 0x80;
constexpr unsigned kGreatestCodeSize = 8;  // bits of a colour index

// Reads front to back; the first failure sticks.
class GifReader {
 public:
  explicit GifReader(ByteSource& source) noexcept : m_source(source) {}

  unsigned U8() noexcept {
    unsigned char byte = 0;
    m_failed = m_failed || !m_source.ReadAt(m_at, {&byte, 1});
    ++m_at;
    return m_failed ? 0 : byte;
  }

  unsigned U16() noexcept {
    const unsigned low = U8();
    return low | U8() << 8;
  }

  void Skip(std::uint64_t count) noexcept { m_at += count; }  // what is not there fails at the next byte

  void SkipColours(unsigned packed) noexcept {
    if ((packed & kHasColours) != 0) {
      Skip(std::uint64_t{3} << ((packed & 7) + 1));
    }
  }

  void SkipSubBlocks() noexcept {
    for (unsigned length = U8(); length != 0; length = U8()) {
      Skip(length);
    }
  }

  bool Failed() const noexcept { return m_failed; }

 private:
  ByteSource& m_source;
  std::uint64_t m_at = 0;
  bool m_failed = false;
};

bool MayDecodeGifImage(GifReader& in) noexcept {
  in.Skip(2 + 2);  // left, top
  const unsigned width = in.U16();
  const unsigned height = in.U16();
  in.SkipColours(in.U8());
  const unsigned codeSize = in.U8();
  in.SkipSubBlocks();
  return !in.Failed() && IsDecodableSize(width, height) && codeSize >= 1 && codeSize <= kGreatestCodeSize;
}

bool MayDecodeGif(ByteSource& source) noexcept {
  GifReader in(source);
  in.Skip(6 + 2 + 2);  // signature, width and height of the screen
  const unsigned packed = in.U8();
  in.Skip(1 + 1);  // background, aspect
  in.SkipColours(packed);
  bool hasImage = false;
  for (;;) {
    const unsigned block = in.U8();
    if (block == kGifTrailer) {
      return hasImage;
    }
    if (block == kGifImage) {
      if (!MayDecodeGifImage(in)) {
        return false;
      }
      hasImage = true;
    } else if (block == kGifExtension) {
      in.Skip(1);  // label
      in.SkipSubBlocks();
    } else {
      return false;
    }
  }
}

}  // namespace

void BytePatch::Apply(std::uint64_t place, std::span<unsigned char> read) const noexcept {
  const std::uint64_t first = std::max(place, at);
  const std::uint64_t end = std::min(place + read.size(), at + bytes.size());
  if (first < end) {
    std::memcpy(read.data() + (first - place), bytes.data() + (first - at), static_cast<std::size_t>(end - first));
  }
}

PictureKind KindOfPicture(ByteSource& source) noexcept {
  std::array<unsigned char, kSignature> bytes{};
  if (!source.ReadAt(0, bytes)) {
    return PictureKind::Other;
  }
  if (StartsWith(bytes, kPngStart)) {
    return PictureKind::Png;
  }
  if (StartsWith(bytes, "GIF87a") || StartsWith(bytes, "GIF89a")) {
    return PictureKind::Gif;
  }
  const bool isTiff = StartsWith(bytes, std::string_view("II*\0", 4)) || StartsWith(bytes, std::string_view("MM\0*", 4));
  return isTiff ? PictureKind::Tiff : PictureKind::Other;
}

bool MayDecode(ByteSource& source, PictureKind kind, BytePatch& patch) {
  switch (kind) {
    case PictureKind::Png:
      return MayDecodePng(source);
    case PictureKind::Gif:
      return MayDecodeGif(source);
    case PictureKind::Tiff:
      return MayDecodeTiff(source, patch);
    case PictureKind::Other:
      break;
  }
  return false;
}

}  // namespace qxv
