// image_reader.cpp - CQXVImageReader: which codec reads a file, and its frames in the caller's shape.

#include "image/image_reader.h"

#include "image/image_type.h"
#include "image/pixel_layout.h"
#include "image/pixel_layout_frame.h"
#include "os/file.h"

#include <cstring>
#include <new>
#include <utility>

namespace {

using qxv::FrameShape;
using qxv::ImageType;
using qxv::kStatusOk;
using qxv::NativeFrame;
using qxv::ReadExtent;
using qxv::Status;

// The signed numbers of the interface.
int Answer(Status status) noexcept { return static_cast<int>(status); }

bool IsReadable(const QXChar* name) noexcept {
  qxv::os::OpenOptions options;
  options.share = qxv::os::kShareRead | qxv::os::kShareWrite;
  qxv::os::File file;
  return file.Open(name, options) == qxv::os::kErrorNone;
}

// What every file tells, asked of a codec or of FreeImage's adapter alike.
template <class Source>
void FillInfo(ImageType type, const Source& source, QXVImageInfo& info) noexcept {
  info.nType = static_cast<int>(type);
  info.nFrames = 1;
  info.nPixelLayout = source.Layout();
  info.nWidth = source.Width();
  info.nHeight = source.Height();
  info.nPadding = 0;
}

constexpr std::uint32_t kNativeLayout = 0;  // to CQXVFreeImage: the layout that the file has

bool IsForeignStill(ImageType type) noexcept { return type == ImageType::Tif || type == ImageType::Png; }

// Of a file that is open.
Status DecodeForeign(qxv::CQXVFreeImage& file, std::uint32_t index, NativeFrame& frame) {
  frame.layout = file.Layout();
  return file.Frame(index, kNativeLayout, frame.picture);
}

// KEPT: a frame has room for four bytes a pixel in every layout; what the pixels do not take of it is zeros. Callers count on the
//   size. Pinned by ImageReaderKept.EveryLayoutHasRoomForFourBytesAPixel.
constexpr unsigned kRoomPerPixel = 4;

// A layout without a converter receives the working layout.
unsigned BytesPerPixelOf(std::uint32_t outputLayout) noexcept {
  return qxv::FromWorking(outputLayout) != nullptr ? qxv::LayoutBytes(outputLayout) : qxv::kWorkingBytes;
}

// Without pixels the picture has no rows.
FrameShape ShapeOf(const NativeFrame& frame) noexcept {
  return {frame.layout, frame.picture.width, frame.picture.pixels != nullptr ? frame.picture.height : 0, 0 /*padding*/};
}

bool IsSame(const FrameShape& a, const FrameShape& b) noexcept {
  return a.layout == b.layout && a.width == b.width && a.height == b.height && a.padding == b.padding;
}

// The buffer that the caller receives. Fill(buffer, bytes) writes all bytes of the pixels and the padding.
template <class Fill>
Status MakeOutput(const FrameShape& output, std::unique_ptr<unsigned char[]>& result, const Fill& fill) {
  auto made = qxv::NewFrame(output, kRoomPerPixel);
  const auto room = static_cast<std::size_t>(qxv::FrameBytes(output, kRoomPerPixel));
  const auto bytes = static_cast<std::size_t>(qxv::FrameBytes(output, BytesPerPixelOf(output.layout)));
  const Status status = fill(made.get(), bytes);
  if (status == kStatusOk) {
    std::memset(made.get() + bytes, 0, room - bytes);
    result = std::move(made);
  }
  return status;
}

Status ToOutput(NativeFrame&& frame, const FrameShape& output, std::unique_ptr<unsigned char[]>& result) {
  const FrameShape native = ShapeOf(frame);
  const bool unchanged = frame.picture.pixels != nullptr && IsSame(native, output);
  if (unchanged && BytesPerPixelOf(output.layout) == kRoomPerPixel) {
    result = std::move(frame.picture.pixels);
    return kStatusOk;
  }
  return MakeOutput(output, result, [&](unsigned char* made, std::size_t bytes) {
    if (unchanged) {
      std::memcpy(made, frame.picture.pixels.get(), bytes);
      return kStatusOk;
    }
    return qxv::ConvertFrame(native, frame.picture.pixels.get(), output, made);
  });
}

// Straight out of FreeImage's memory where the frame is the canvas.
Status ForeignToOutput(qxv::CQXVFreeImage& file, std::uint32_t index, std::uint32_t wantedLayout, const FrameShape& output,
                       std::unique_ptr<unsigned char[]>& result) {
  qxv::ForeignFrame frame;
  if (const Status status = file.Borrow(index, wantedLayout, frame); status != kStatusOk) {
    return status;
  }
  const qxv::FrameView& view = frame.view;
  if (frame.place.left != 0 || frame.place.top != 0 || view.width != file.Width() || view.height != file.Height()) {
    return ToOutput({file.Placed(frame), frame.layout}, output, result);
  }
  const auto pitch = static_cast<std::ptrdiff_t>(view.pitch);
  const qxv::SourceRows rows{view.bottomRow + pitch * (view.height - 1), -pitch};
  return MakeOutput(output, result, [&](unsigned char* made, std::size_t) {
    return qxv::ConvertFrame({frame.layout, file.Width(), file.Height(), 0 /*padding*/}, rows, output, made);
  });
}

}  // namespace

CQXVImageReader* QXVCOMMONLIB_GetImageReader() { return new (std::nothrow) CQXImageReader; }

CQXVImageReader::~CQXVImageReader() = default;

int CQXImageReader::SetFile(const CQXString& strFile) {
  Close();
  if (!IsReadable(strFile)) {
    return Answer(qxv::kStatusImageNotFound);
  }
  m_file = strFile;
  return Answer(kStatusOk);
}

int CQXImageReader::Close() {
  m_animation.reset();
  return Answer(kStatusOk);
}

Status CQXImageReader::OpenAnimation() {
  if (!m_animation) {
    m_animation = std::make_unique<qxv::CQXVFreeImage>();
  }
  return m_animation->IsOpen() ? kStatusOk : m_animation->Open(m_file);
}

int CQXImageReader::GetImageInfoEx(QXVImageInfo* pInfo) {
  if (pInfo == nullptr) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  const ImageType type = qxv::TypeOfFile(m_file);
  if (const auto codec = qxv::CodecFor(type)) {
    const Status status = codec->Read(m_file, ReadExtent::Header);
    if (status == kStatusOk) {
      FillInfo(type, *codec, *pInfo);
    }
    return Answer(status);
  }
  if (type == ImageType::Gif) {
    const Status status = OpenAnimation();
    if (status == kStatusOk) {
      FillInfo(type, *m_animation, *pInfo);
      pInfo->nFrames = static_cast<int>(m_animation->FrameCount());
      pInfo->nFrameTime = m_animation->FrameTime().value_or(0);
    }
    return Answer(status);
  }
  if (IsForeignStill(type)) {
    qxv::CQXVFreeImage file;
    const Status status = file.Open(m_file);
    if (status == kStatusOk) {
      FillInfo(type, file, *pInfo);
    }
    return Answer(status);
  }
  pInfo->nType = static_cast<int>(type);
  return Answer(qxv::kStatusImageUnsupported);
}

int CQXImageReader::GetImageInfo(QXVImageInfo* pInfo) {
  if (pInfo == nullptr) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  QXVImageInfo info{};
  const int answer = GetImageInfoEx(&info);
  info.nFrameTime = pInfo->nFrameTime;
  *pInfo = info;
  return answer;
}

Status CQXImageReader::DecodeFrame(std::uint32_t index, NativeFrame& frame) {
  const ImageType type = qxv::TypeOfFile(m_file);
  if (type == ImageType::Gif) {
    const Status status = OpenAnimation();
    return status == kStatusOk ? DecodeForeign(*m_animation, index, frame) : status;
  }
  if (index != 0) {
    return qxv::kStatusImageBadArgument;
  }
  if (const auto codec = qxv::CodecFor(type)) {
    const Status status = codec->Read(m_file, ReadExtent::Pixels);
    if (status == kStatusOk) {
      frame = {{codec->Width(), codec->Height(), codec->TakePixels()}, codec->Layout()};
    }
    return status;
  }
  if (IsForeignStill(type)) {
    qxv::CQXVFreeImage file;
    const Status status = file.Open(m_file);
    return status == kStatusOk ? DecodeForeign(file, index, frame) : status;
  }
  return qxv::kStatusImageUnsupported;
}

// KEPT: a file whose header alone is understood gives success and a null pointer.
//   Pinned by ImageReaderKept.AFrameWithoutAReaderIsRawNull.
int CQXImageReader::ReadRawFrame(int nFrame, void** ppData) {
  if (ppData == nullptr || nFrame < 0) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  NativeFrame frame;
  const Status status = DecodeFrame(static_cast<std::uint32_t>(nFrame), frame);
  if (status == kStatusOk) {
    *ppData = frame.picture.pixels.release();
  }
  return Answer(status);
}

int CQXImageReader::SetOutputLayout(const QXVPixelLayout* pLayout) {
  if (pLayout == nullptr) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  m_output = *pLayout;
  return Answer(kStatusOk);
}

// Only the frames of a GIF can be had in another layout than the file's own.
Status CQXImageReader::ConvertedFrame(std::uint32_t index, std::unique_ptr<unsigned char[]>& result) {
  const FrameShape output{m_output.nPixelLayout, m_output.nWidth, m_output.nHeight, m_output.nPadding};
  const ImageType type = qxv::TypeOfFile(m_file);
  if (type == ImageType::Gif) {
    const Status status = OpenAnimation();
    return status == kStatusOk ? ForeignToOutput(*m_animation, index, output.layout, output, result) : status;
  }
  if (IsForeignStill(type) && index == 0) {
    qxv::CQXVFreeImage file;
    const Status status = file.Open(m_file);
    return status == kStatusOk ? ForeignToOutput(file, index, kNativeLayout, output, result) : status;
  }
  NativeFrame frame;
  const Status status = DecodeFrame(index, frame);
  return status == kStatusOk ? ToOutput(std::move(frame), output, result) : status;
}

int CQXImageReader::ReadFrame(unsigned int nFrame, unsigned char** ppData) {
  if (ppData == nullptr) {
    return Answer(qxv::kStatusImageBadArgument);
  }
  std::unique_ptr<unsigned char[]> result;
  const Status status = ConvertedFrame(nFrame, result);
  if (status == kStatusOk) {
    *ppData = result.release();
  }
  return Answer(status);
}
