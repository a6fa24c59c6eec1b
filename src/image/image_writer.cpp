// image_writer.cpp - CQXVImageWriter: frames are collected in the target's shape until none is missing, then go to the codec.

#include "image/image_writer.h"

#include "image/gif.h"
#include "image/pixel_layout.h"
#include "image/pixel_memory.h"

#include <cstring>
#include <limits>
#include <new>
#include <span>
#include <utility>

namespace {

using qxv::ImageType;
using qxv::kStatusOk;
using qxv::Status;

// The signed numbers of the interface.
int Answer(Status status) noexcept { return static_cast<int>(status); }

constexpr std::size_t kMostBytes = std::numeric_limits<std::int32_t>::max();  // of the slots, and of a frame that is given

}  // namespace

CQXVImageWriter* QXVCOMMONLIB_GetImageWriter() { return new (std::nothrow) CQXImageWriter; }

CQXVImageWriter::~CQXVImageWriter() = default;

int CQXImageWriter::Create(const CQXString& strFile, const QXVImageInfo* pInfo) {
  if (pInfo == nullptr || pInfo->nFrames < 1 || (pInfo->nFrames != 1 && qxv::TypeOfFile(strFile) != ImageType::Gif)) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  const auto count = static_cast<std::size_t>(pInfo->nFrames);
  if (count > kMostBytes / sizeof(Frame)) {
    throw std::bad_alloc();
  }
  std::vector<Frame> frames(count);
  m_file = strFile;
  m_frames = std::move(frames);
  m_missing = count;
  m_target = {pInfo->nPixelLayout, pInfo->nWidth, pInfo->nHeight, pInfo->nPadding};
  return Answer(kStatusOk);
}

int CQXImageWriter::Close() {
  m_frames = std::vector<Frame>();
  return Answer(kStatusOk);
}

int CQXImageWriter::SetInputLayout(const QXVPixelLayout* pLayout) {
  if (pLayout == nullptr) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  m_input = {pLayout->nPixelLayout, pLayout->nWidth, pLayout->nHeight, pLayout->nPadding};
  return Answer(kStatusOk);
}

// The refusals that both ways of writing begin with.
Status CQXImageWriter::CheckFrame(int index, const unsigned char* data) const noexcept {
  if (index < 0 || static_cast<std::size_t>(index) >= m_frames.size()) {
    return qxv::kStatusImageBadArgument;
  }
  if (data == nullptr) {
    return qxv::kStatusImageNullPixels;
  }
  return qxv::LayoutBytes(m_target.layout) != 0 ? kStatusOk : qxv::kStatusImageNoPixelSize;
}

std::size_t CQXImageWriter::FrameSize() const noexcept {
  return static_cast<std::size_t>(qxv::FrameBytes(m_target, qxv::LayoutBytes(m_target.layout)));
}

int CQXImageWriter::WriteFrame(int nFrame, const unsigned char* pData) {
  if (const Status status = CheckFrame(nFrame, pData); status != kStatusOk) {
    return Answer(status);
  }
  if (m_input.width < 1 || m_input.height < 1 || m_input.padding < 0) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  Frame frame = qxv::NewFrame(m_target, qxv::LayoutBytes(m_target.layout));
  const bool hasConverter = qxv::ToWorking(m_input.layout) != nullptr;
  if (hasConverter && qxv::FrameBytes(m_input, qxv::LayoutBytes(m_input.layout)) > kMostBytes) {
    throw std::bad_alloc();
  }
  const Status status = qxv::ConvertFrame(m_input, pData, m_target, frame.get());
  return Answer(status == kStatusOk ? Keep(nFrame, std::move(frame)) : status);
}

int CQXImageWriter::WriteRawFrame(int nFrame, const unsigned char* pData) {
  if (const Status status = CheckFrame(nFrame, pData); status != kStatusOk) {
    return Answer(status);
  }
  Frame frame = qxv::NewFrame(m_target, qxv::LayoutBytes(m_target.layout));
  std::memcpy(frame.get(), pData, FrameSize());
  return Answer(Keep(nFrame, std::move(frame)));
}

// KEPT: a frame that comes again when none is missing writes the file once more.
//   Pinned by ImageWriterKept.AFrameThatComesAgainWritesTheFileAgain.
Status CQXImageWriter::Keep(int index, Frame frame) {
  Frame& slot = m_frames[static_cast<std::size_t>(index)];
  if (!slot) {
    --m_missing;
  }
  slot = std::move(frame);
  return m_missing == 0 ? Encode() : kStatusOk;
}

// KEPT: TIF is accepted and answered with success, though no file is made of it. Pinned by ImageWriterKept.TifWritesNothing.
Status CQXImageWriter::Encode() const {
  switch (const ImageType type = qxv::TypeOfFile(m_file)) {
    case ImageType::Tif:
      return kStatusOk;
    case ImageType::Gif:
      return EncodeAnimation();
    default:
      const auto codec = qxv::CodecFor(type);
      return codec ? EncodeStill(*codec) : qxv::kStatusImageUnsupported;
  }
}

// KEPT: a codec takes the frame for pixels of its own layout without padding, whatever the target's layout and padding are.
//   Pinned by ImageWriterKept.TheCodecTakesTheBytesAsTheyLie.
// TGA pixels have 4 bytes and may want more than the frame has: what is missing is zeros.
Status CQXImageWriter::EncodeStill(const qxv::PictureCodec& codec) const {
  const auto wanted =
      static_cast<std::size_t>(qxv::PixelBytes(m_target.width, m_target.height, qxv::LayoutBytes(codec.Layout())));
  const std::size_t held = FrameSize();
  std::unique_ptr<unsigned char[]> extended;
  if (held < wanted) {
    extended = qxv::NewPixels(wanted);
    std::memcpy(extended.get(), m_frames[0].get(), held);
    std::memset(extended.get() + held, 0, wanted - held);
  }
  const unsigned char* const pixels = extended ? extended.get() : m_frames[0].get();
  return codec.Write(m_file, {m_target.width, m_target.height, {pixels, wanted}});
}

// Frames have at least the 3 bytes a pixel that GIF takes.
Status CQXImageWriter::EncodeAnimation() const {
  std::vector<qxv::CQXVGif::Frame> frames;
  frames.reserve(m_frames.size());
  for (const Frame& frame : m_frames) {
    frames.emplace_back(frame.get(), FrameSize());
  }
  return qxv::CQXVGif(m_target.width, m_target.height).Write(m_file, frames);
}
