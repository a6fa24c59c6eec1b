// image_writer.h - what implements CQXVImageWriter.
#pragma once

#include "foundation/status.h"
#include "image/image_type.h"
#include "image/pixel_layout_frame.h"
#include "qxv/image.h"

#include <cstddef>
#include <memory>
#include <vector>

class CQXImageWriter final : public CQXVImageWriter {
 public:
  int Create(const CQXString& strFile, const QXVImageInfo* pInfo) override;
  int Close() override;
  int SetInputLayout(const QXVPixelLayout* pLayout) override;
  int WriteFrame(int nFrame, const unsigned char* pData) override;
  int WriteRawFrame(int nFrame, const unsigned char* pData) override;

 private:
  using Frame = std::unique_ptr<unsigned char[]>;  // of the target's shape; null until it has come

  qxv::Status CheckFrame(int index, const unsigned char* data) const noexcept;
  std::size_t FrameSize() const noexcept;
  qxv::Status Keep(int index, Frame frame);
  qxv::Status Encode() const;
  qxv::Status EncodeStill(const qxv::PictureCodec& codec) const;
  qxv::Status EncodeAnimation() const;

  CQXString m_file;
  qxv::FrameShape m_target;
  qxv::FrameShape m_input;
  std::vector<Frame> m_frames;
  std::size_t m_missing = 0;  // frames that have not come yet
};
