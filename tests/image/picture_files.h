// picture_files.h - PNG, GIF and TIFF files built field by field.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace picture_files {

inline std::string Little(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) {
    text += static_cast<char>(value >> (8 * i) & 0xFF);
  }
  return text;
}

inline std::string Big(std::uint32_t value, int bytes) {
  const std::string text = Little(value, bytes);
  return std::string(text.rbegin(), text.rend());
}

// --- PNG ---

/// ISO/IEC 15948, annex D.
inline std::uint32_t PngChecksum(const std::string& bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
    }
  }
  return ~sum;
}

inline std::string PngChunk(const std::string& type, const std::string& data) {
  return Big(static_cast<std::uint32_t>(data.size()), 4) + type + data + Big(PngChecksum(type + data), 4);
}

inline constexpr std::size_t kPngHeaderEnd = 8 + 4 + 4 + 13 + 4;

/// The same picture in a file of so many bytes (at least 12 more): a private chunk of zeros stands behind the header.
inline std::string PngOfLength(const std::string& png, std::size_t length) {
  const std::string chunk = PngChunk("quIt", std::string(length - png.size() - 12, '\0'));
  return png.substr(0, kPngHeaderEnd) + chunk + png.substr(kPngHeaderEnd);
}

/// The header of another size, with its checksum.
inline std::string PngOfSize(const std::string& png, std::uint32_t width, std::uint32_t height) {
  return png.substr(0, 8) + PngChunk("IHDR", Big(width, 4) + Big(height, 4) + png.substr(24, 5)) + png.substr(kPngHeaderEnd);
}

// --- GIF ---

/// A frame of up to 4 colours.
struct GifFrame {
  unsigned left, top, width, height;
  std::string indices;    // one a pixel
  std::string palette{};  // 4 x R, G, B of its own; none: the screen's
  int transparent = -1;   // an index
  unsigned delay = 0;     // hundredths of a second
};

/// Codes of 3 bits, with a clear code (4) before each pixel so that they never grow; 5 ends.
inline std::string GifCodes(const std::string& indices) {
  std::string bytes;
  unsigned held = 0;
  int bits = 0;
  const auto put = [&](unsigned code) {
    held |= code << bits;
    for (bits += 3; bits >= 8; bits -= 8, held >>= 8) {
      bytes += static_cast<char>(held & 0xFF);
    }
  };
  for (const char index : indices) {
    put(4);
    put(static_cast<unsigned char>(index));
  }
  put(5);
  if (bits > 0) {
    bytes += static_cast<char>(held);
  }
  std::string blocks;
  for (std::size_t i = 0; i < bytes.size(); i += 255) {
    const std::string block = bytes.substr(i, 255);
    blocks += static_cast<char>(block.size()) + block;
  }
  return blocks + '\0';
}

inline std::string GifImage(const GifFrame& frame) {
  const bool hasTransparent = frame.transparent >= 0;
  std::string bytes = "\x21\xF9\x04";                                  // graphic control
  bytes += hasTransparent ? '\x01' : '\0';                             // flags
  bytes += Little(frame.delay, 2);                                     // delay
  bytes += static_cast<char>(hasTransparent ? frame.transparent : 0);  // transparent index
  bytes += '\0';
  bytes += '\x2C';  // image
  bytes += Little(frame.left, 2) + Little(frame.top, 2) + Little(frame.width, 2) + Little(frame.height, 2);
  bytes += frame.palette.empty() ? '\0' : '\x81';  // 4 colours of its own
  return bytes + frame.palette + '\x02' + GifCodes(frame.indices);
}

/// Colours of the screen: black, red, green, blue.
inline std::string Gif(unsigned width, unsigned height, const std::vector<GifFrame>& frames) {
  std::string bytes = "GIF89a" + Little(width, 2) + Little(height, 2) + '\x81' + std::string(2, '\0');
  bytes += std::string("\0\0\0\xFF\0\0\0\xFF\0\0\0\xFF", 12);
  for (const GifFrame& frame : frames) {
    bytes += GifImage(frame);
  }
  return bytes + '\x3B';
}

// --- TIFF ---

struct TiffEntry {
  std::uint32_t tag, type, count, value;  // value: little-endian, or the place of the values
};

/// Header, directory at 8, then the bytes that the entries point to. No next directory.
inline std::string Tiff(const std::vector<TiffEntry>& entries, const std::string& behind) {
  std::string bytes = std::string("II*\0", 4) + Little(8, 4) + Little(static_cast<std::uint32_t>(entries.size()), 2);
  for (const TiffEntry& entry : entries) {
    bytes += Little(entry.tag, 2) + Little(entry.type, 2) + Little(entry.count, 4) + Little(entry.value, 4);
  }
  return bytes + Little(0, 4) + behind;
}

/// Where the bytes behind a directory of so many entries begin.
constexpr std::uint32_t BehindTiffDirectory(std::size_t entries) { return static_cast<std::uint32_t>(8 + 2 + entries * 12 + 4); }

}  // namespace picture_files
