// gif.cpp - CQXVGif, GIF files of a fixed palette, written only.
// In memory: B, G, R a pixel, rows top-down, no padding. In the file: an index a pixel, in row order, coded by gif_lzw.

#include "image/gif.h"

#include "image/gif_colours.h"
#include "image/gif_lzw.h"
#include "streams/byte_writer.h"
#include "streams/file_pieces.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace qxv {
namespace {

constexpr std::size_t kBytesPerPixel = 3;
constexpr std::size_t kPixelsAtOnce = 16384;

constexpr std::uint8_t kScreenFlags =
    0x80 | 7 << 4 | 7;  // a palette for all frames, 8 bits a colour, 2^(7+1) entries, not sorted
constexpr std::uint8_t kImageMark = ',';
constexpr std::uint8_t kTrailer = ';';
constexpr std::uint8_t kCodeSize = 8;

std::size_t PixelsOf(std::int32_t width, std::int32_t height) noexcept {
  return width < 1 || height < 1 ? 0 : std::size_t{static_cast<std::uint32_t>(width)} * static_cast<std::uint32_t>(height);
}

using Bytes = std::vector<unsigned char>;

// KEPT: the version is 87a and no extension stands anywhere, also when frames follow each other: no times, no loop.
//   Pinned by GifKept.FramesFollowEachOtherWithoutExtensions.
Bytes Header(std::int32_t width, std::int32_t height) {
  Bytes header;
  ByteWriter out(header);
  for (const char letter : {'G', 'I', 'F', '8', '7', 'a'}) {
    out.U8(static_cast<std::uint8_t>(letter));
  }
  out.U16(static_cast<std::uint16_t>(width));   // 6: screen width
  out.U16(static_cast<std::uint16_t>(height));  // 8: screen height
  out.U8(kScreenFlags);                         // 10
  out.U8(0);                                    // 11: index of the background
  out.U8(0);                                    // 12: aspect of a pixel, not told
  out.Bytes(GifPalette());                      // 13
  return header;
}

Bytes ImageHeader(std::int32_t width, std::int32_t height) {
  Bytes header;
  ByteWriter out(header);
  out.U8(kImageMark);                           // 0
  out.U16(0);                                   // 1: left
  out.U16(0);                                   // 3: top
  out.U16(static_cast<std::uint16_t>(width));   // 5
  out.U16(static_cast<std::uint16_t>(height));  // 7
  out.U8(0);                                    // 9: no palette of its own, not interlaced
  out.U8(kCodeSize);                            // 10
  return header;
}

[[nodiscard]] Status EncodeFrame(CFrame& coder, CQXVGif::Frame frame, std::size_t pixels) noexcept {
  if (pixels == 0) {
    coder.FinishEmpty();
    return kStatusImageBadCode;
  }
  Status status = kStatusOk;
  unsigned char indices[kPixelsAtOnce];
  for (std::size_t done = 0; done < pixels && status == kStatusOk;) {
    const std::size_t count = std::min(kPixelsAtOnce, pixels - done);
    MapToGifPalette(frame.data() + done * kBytesPerPixel, count, indices);
    status = coder.Encode({indices, count});
    done += count;
  }
  const Status finished = coder.Finish();
  return status == kStatusOk ? finished : status;
}

}  // namespace

Status CQXVGif::Write(const QXChar* name, std::span<const Frame> frames) const {
  const std::size_t pixels = PixelsOf(m_width, m_height);
  for (const Frame frame : frames) {
    if (frame.size() / kBytesPerPixel < pixels) {
      return kStatusImageNullPixels;
    }
  }
  const Bytes header = Header(m_width, m_height);
  const Bytes imageHeader = ImageHeader(m_width, m_height);
  FileWriter out;
  const auto coder = std::make_unique<CFrame>(out);
  if (out.Open(name) != os::kErrorNone) {
    return kStatusImageCannotCreate;
  }
  out.Write(header);
  for (const Frame frame : frames) {
    out.Write(imageHeader);
    // KEPT: what the coder finds wrong is not reported, the file is finished all the same.
    //   Pinned by GifKept.AFrameWithoutPixelsIsWrittenAndNotReported.
    (void)EncodeFrame(*coder, frame, pixels);
  }
  out.Write({&kTrailer, 1});
  return kStatusOk;
}

}  // namespace qxv
