// pixel_layout.cpp - the layouts, their sizes and their converters.

#include "image/pixel_layout.h"

#include "foundation/status.h"
#include "image/pixel_layout_bytes.h"
#include "image/pixel_layout_yuv.h"

namespace qxv {

std::uint32_t LayoutBytesLookup(std::uint32_t layout) noexcept {
  switch (layout) {
    case kLayoutBgr:
    case kLayoutVuy:
      return 3;
    case kLayoutBgra:
    case 32:
    case 64:
    case 128:
      return 4;
    default:
      return kStatusImageNoPixelSize;
  }
}

unsigned LayoutBytes(std::uint32_t layout) noexcept {
  if (layout == kLayoutYuv || layout == kLayoutRgb) {
    return 3;
  }
  const std::uint32_t bytes = LayoutBytesLookup(layout);
  return bytes == kStatusImageNoPixelSize ? 0 : bytes;
}

RowConverter ToWorking(std::uint32_t layout) noexcept {
  switch (layout) {
    case kLayoutBgra:
      return &ReversePixels;
    case kLayoutBgr:
      return &BgrToWorking;
    case kLayoutRgb:
      return &RgbToWorking;
    case kLayoutYuv:
      return &YuvToWorking;
    case kLayoutVuy:
      return &VuyToWorking;
    default:
      return nullptr;
  }
}

RowConverter FromWorking(std::uint32_t layout) noexcept {
  switch (layout) {
    case kLayoutBgra:
      return &ReversePixels;
    case kLayoutBgr:
      return &WorkingToBgr;
    case kLayoutRgb:
      return &WorkingToRgb;
    case kLayoutYuv:
      return &WorkingToYuv;
    case kLayoutVuy:
      return &WorkingToVuy;
    default:
      return nullptr;
  }
}

ResizedRow ResizedToWorking(std::uint32_t layout) noexcept {
  switch (layout) {
    case kLayoutBgra:
      return {nullptr, &ReversePixels};
    case kLayoutYuv:
      return {&RgbToWorking, &WideYuvToWorking};  // Y U V in the places of R G B
    case kLayoutVuy:
      return {&BgrToWorking, &WideYuvToWorking};
    default:
      return {ToWorking(layout), nullptr};
  }
}

}  // namespace qxv
