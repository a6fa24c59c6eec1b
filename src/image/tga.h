// tga.h - CQXVTga, true-colour and grey TGA files.
#pragma once

#include "image/layout_codes.h"
#include "image/picture_codec.h"

namespace qxv {

/// Reads types 2 (uncompressed) and 10 (run-length), writes type 2 with 32 bits (docs/formats.md).
class CQXVTga final : public PictureCodec {
 public:
  CQXVTga() noexcept : PictureCodec(100, 100) {}

  /// 0x89601A16 for another type, a header cut short and, with pixels, a depth that the type does not have here and data cut
  /// short.
  [[nodiscard]] Status Read(const QXChar* name, ReadExtent extent) override;
  /// The file keeps the low 16 bits of the sides, and all rows.
  [[nodiscard]] Status Write(const QXChar* name, const PictureView& picture) const override;

  std::uint32_t Layout() const noexcept override { return kLayoutBgra; }
};

}  // namespace qxv
