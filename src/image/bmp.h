// bmp.h - CQXVBmp, Windows bitmap files.
#pragma once

#include "image/layout_codes.h"
#include "image/picture_codec.h"

namespace qxv {

/// Reads bitmaps of 1, 4, 8, 24 and 32 bits a pixel, writes 24 bits (docs/formats.md).
class CQXVBmp final : public PictureCodec {
 public:
  /// 0x89601A16 for another signature, a negative side, a header, palette or rows cut short, and an offset of the pixels that
  /// cannot be reached.
  [[nodiscard]] Status Read(const QXChar* name, ReadExtent extent) override;
  [[nodiscard]] Status Write(const QXChar* name, const PictureView& picture) const override;

  /// B G R up to 24 bits a pixel, else B G R A; B G R before anything has been read.
  std::uint32_t Layout() const noexcept override { return m_layout; }

 private:
  std::uint32_t m_layout = kLayoutBgr;
};

}  // namespace qxv
