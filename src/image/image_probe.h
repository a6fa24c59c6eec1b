// image_probe.h - looks at a PNG, TIFF or GIF file before the library that decodes it does.
// That library believes what a header says: it allocates the size that is claimed, and damaged TIFF directories make it write
// outside of its memory or end the program. So the sizes and the whole TIFF directory are checked here first.
#pragma once

#include "image/byte_source.h"

#include <cstdint>
#include <vector>

namespace qxv {

inline constexpr std::uint32_t kGreatestSide = 65535;
inline constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 28;

enum class PictureKind { Other, Png, Tiff, Gif };

/// Bytes to be handed over in place of what the file holds there. No bytes: the file as it is.
struct BytePatch {
  std::uint64_t at = 0;
  std::vector<unsigned char> bytes{};

  /// Puts its part over bytes that were read from a place of the file.
  void Apply(std::uint64_t place, std::span<unsigned char> read) const noexcept;
};

/// What the first bytes say; the name's extension does not matter.
[[nodiscard]] PictureKind KindOfPicture(ByteSource& source) noexcept;

/// Whether the decoder may see the file: sides of 1 to 65,535, at most 2^28 pixels, for every frame of a GIF; for a TIFF the
/// rules of image_probe_tiff.h.
/// @param patch  receives what a TIFF's decoder must see instead of the file's own directory
[[nodiscard]] bool MayDecode(ByteSource& source, PictureKind kind, BytePatch& patch);

/// The limits that hold for every picture.
constexpr bool IsDecodableSize(std::uint64_t width, std::uint64_t height) noexcept {
  return width >= 1 && height >= 1 && width <= kGreatestSide && height <= kGreatestSide && width * height <= kMostPixels;
}

}  // namespace qxv
