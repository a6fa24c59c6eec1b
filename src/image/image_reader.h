// image_reader.h - what implements CQXVImageReader.
#pragma once

#include "foundation/status.h"
#include "image/free_image.h"
#include "image/picture_codec.h"
#include "qxv/image.h"

#include <cstdint>
#include <memory>

namespace qxv {

/// A frame as its file gives it, and the layout of its pixels, rows without padding. No pixels where a codec has no reader for
/// them.
struct NativeFrame {
  Picture picture{};
  std::uint32_t layout = 0;
};

}  // namespace qxv

class CQXImageReader final : public CQXVImageReader {
 public:
  int SetFile(const CQXString& strFile) override;
  int Close() override;
  int GetImageInfoEx(QXVImageInfo* pInfo) override;
  int GetImageInfo(QXVImageInfo* pInfo) override;
  int ReadRawFrame(int nFrame, void** ppData) override;
  int SetOutputLayout(const QXVPixelLayout* pLayout) override;
  int ReadFrame(unsigned int nFrame, unsigned char** ppData) override;

 private:
  qxv::Status OpenAnimation();
  qxv::Status DecodeFrame(std::uint32_t index, qxv::NativeFrame& frame);
  qxv::Status ConvertedFrame(std::uint32_t index, std::unique_ptr<unsigned char[]>& result);

  CQXString m_file;
  QXVPixelLayout m_output{};
  std::unique_ptr<qxv::CQXVFreeImage> m_animation;  // open from the first question about a GIF on
};
