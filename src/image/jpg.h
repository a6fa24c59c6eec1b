// jpg.h - JPG files through the JPEG codec library.
#pragma once

#include "image/layout_codes.h"
#include "image/picture_codec.h"

namespace qxv {

/// Layout 4: B, G, R. Whatever goes wrong is -1, a file that cannot be opened or created included.
class CQXVJpg : public PictureCodec {
 public:
  CQXVJpg() noexcept : PictureCodec(100, 100) {}

  /// A file cut short reads as far as it goes.
  [[nodiscard]] Status Read(const QXChar* name, ReadExtent extent) override;

  /// Quality 70. The file is created only when there is something to put into it.
  [[nodiscard]] Status Write(const QXChar* name, const PictureView& picture) const override;

  std::uint32_t Layout() const noexcept override { return kLayoutBgr; }
};

}  // namespace qxv
