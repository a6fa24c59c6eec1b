// gif.h - GIF files, written only.
#pragma once

#include "foundation/status.h"
#include "qxv/types.h"

#include <cstdint>
#include <span>

namespace qxv {

/// Frames of one size in layout 4: B, G, R, rows top-down, no padding. Colours are brought to a fixed palette of 256.
class CQXVGif {
 public:
  using Frame = std::span<const unsigned char>;

  CQXVGif(std::int32_t width, std::int32_t height) noexcept : m_width(width), m_height(height) {}

  /// Any number of frames, none included. 0; 0x89601A14 for a file that cannot be created; 0x89601B11, before the file is
  /// touched, for a frame of fewer bytes than its pixels have. Sides below 1 give frames without pixels; of sides above 65535 the
  /// file tells the low 16 bits.
  [[nodiscard]] Status Write(const QXChar* name, std::span<const Frame> frames) const;

 private:
  std::int32_t m_width;
  std::int32_t m_height;
};

}  // namespace qxv
