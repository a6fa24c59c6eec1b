// pcx.h - CQXVPcx, run-length PCX files.
#pragma once

#include "image/layout_codes.h"
#include "image/picture_codec.h"

namespace qxv {

/// Reads 24 bits a pixel in three planes, 8 bits with a palette or grey, and 1 bit; writes three planes (docs/formats.md).
class CQXVPcx final : public PictureCodec {
 public:
  /// 0x89601A16 for another manufacturer or encoding, sides below 1, a header cut short and, with pixels, a palette without its
  /// marker, runs beyond a row's end and data cut short.
  [[nodiscard]] Status Read(const QXChar* name, ReadExtent extent) override;
  /// The file keeps the low 16 bits of the sides, and all rows.
  [[nodiscard]] Status Write(const QXChar* name, const PictureView& picture) const override;

  std::uint32_t Layout() const noexcept override { return kLayoutRgb; }
};

}  // namespace qxv
