// yuv.h - CQXVYUV, uncompressed pictures of Y, U and V.
#pragma once

#include "image/layout_codes.h"
#include "image/picture_codec.h"

namespace qxv {

/// A format of our own (docs/formats.md).
class CQXVYUV final : public PictureCodec {
 public:
  CQXVYUV() noexcept : PictureCodec(100, 100) {}

  /// 0x89601A16 for another signature and for what is cut short.
  [[nodiscard]] Status Read(const QXChar* name, ReadExtent extent) override;
  /// The file keeps the low 16 bits of the sides, and all rows.
  [[nodiscard]] Status Write(const QXChar* name, const PictureView& picture) const override;

  std::uint32_t Layout() const noexcept override { return kLayoutYuv; }
};

}  // namespace qxv
