// free_image_absent.cpp - CQXVFreeImage of a build without FreeImage: it opens nothing.

#include "image/free_image.h"

namespace qxv {

class CQXVFreeImage::File {};

CQXVFreeImage::CQXVFreeImage() noexcept = default;
CQXVFreeImage::~CQXVFreeImage() = default;

Status CQXVFreeImage::Open(const QXChar* /*name*/) { return kStatusImageForeign; }
void CQXVFreeImage::Close() noexcept {}

Status CQXVFreeImage::Frame(std::uint32_t /*index*/, std::uint32_t /*layout*/, Picture& /*picture*/) {
  return kStatusImageBadArgument;
}

Status CQXVFreeImage::Borrow(std::uint32_t /*index*/, std::uint32_t /*layout*/, ForeignFrame& /*frame*/) {
  return kStatusImageBadArgument;
}

Picture CQXVFreeImage::Placed(const ForeignFrame& /*frame*/) const { return {}; }

}  // namespace qxv
