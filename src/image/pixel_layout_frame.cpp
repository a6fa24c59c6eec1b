// pixel_layout_frame.cpp - whole pictures between two layouts and sizes.
// Equal sizes go in pieces of some thousand pixels through one strip; other sizes row by row through the resampler.

#include "image/pixel_layout_frame.h"

#include "image/pixel_layout.h"
#include "image/pixel_memory.h"
#include "image/resample.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace qxv {
namespace {

constexpr std::size_t kPiece = 4096;  // pixels: the strip stays in the first cache

std::size_t RowBytes(const FrameShape& shape, unsigned bytesPerPixel) noexcept {
  return static_cast<std::size_t>(shape.width) * bytesPerPixel + static_cast<std::size_t>(shape.padding);
}

// The last step: pixels of the working layout into the target, and the padding behind the row.
class Target {
 public:
  Target(const FrameShape& shape, unsigned char* out) noexcept
      : m_convert(FromWorking(shape.layout)),
        m_bytesPerPixel(m_convert != nullptr ? LayoutBytes(shape.layout) : kWorkingBytes),
        m_padding(static_cast<std::size_t>(shape.padding)),
        m_at(out) {}

  /// For rows whose pixels have the target's form already.
  static Target AsItComes(const FrameShape& shape, unsigned char* out) noexcept {
    Target target(shape, out);
    target.m_convert = nullptr;
    return target;
  }

  /// Whether Place may take what comes: the working layout, or the target's.
  bool IsWorking() const noexcept { return m_convert == nullptr; }
  unsigned char* Place() const noexcept { return m_at; }

  void Put(const unsigned char* working, std::size_t pixels) noexcept {
    m_convert(working, pixels, m_at);
    Advance(pixels);
  }
  void Advance(std::size_t pixels) noexcept { m_at += pixels * m_bytesPerPixel; }
  void EndRow() noexcept {
    std::memset(m_at, 0, m_padding);
    m_at += m_padding;
  }

 private:
  RowConverter m_convert;
  unsigned m_bytesPerPixel;
  std::size_t m_padding;
  unsigned char* m_at;
};

// There and back leaves every byte where only places change.
bool IsCopy(const FrameShape& from, const FrameShape& to) noexcept {
  return from.layout == to.layout && from.layout != kLayoutYuv && from.layout != kLayoutVuy;
}

void CopyRows(const FrameShape& from, const SourceRows& in, Target target) noexcept {
  const unsigned bytesPerPixel = LayoutBytes(from.layout);
  const auto width = static_cast<std::size_t>(from.width);
  for (std::int32_t row = 0; row < from.height; ++row) {
    std::memcpy(target.Place(), in.top + row * in.step, width * bytesPerPixel);
    target.Advance(width);
    target.EndRow();
  }
}

void ConvertRows(const FrameShape& from, const SourceRows& in, Target target) {
  const RowConverter toWorking = ToWorking(from.layout);
  const unsigned bytesPerPixel = LayoutBytes(from.layout);
  const auto width = static_cast<std::size_t>(from.width);
  const std::unique_ptr<unsigned char[]> strip(target.IsWorking() ? nullptr
                                                                  : new unsigned char[std::min(width, kPiece) * kWorkingBytes]);
  for (std::int32_t row = 0; row < from.height; ++row) {
    const unsigned char* const bytes = in.top + row * in.step;
    for (std::size_t column = 0; column < width;) {
      const std::size_t pixels = std::min(width - column, kPiece);
      const unsigned char* const piece = bytes + column * bytesPerPixel;
      if (target.IsWorking()) {
        toWorking(piece, pixels, target.Place());
        target.Advance(pixels);
      } else {
        toWorking(piece, pixels, strip.get());
        target.Put(strip.get(), pixels);
      }
      column += pixels;
    }
    target.EndRow();
  }
}

void ResampleRows(const ResizedRow& steps, const FrameShape& from, const SourceRows& in, const FrameShape& to, Target target) {
  const auto sourceWidth = static_cast<std::size_t>(from.width), width = static_cast<std::size_t>(to.width);
  const auto strip = [](bool needed, std::size_t pixels) {
    return std::unique_ptr<unsigned char[]>(needed ? new unsigned char[pixels * kWorkingBytes] : nullptr);
  };
  const auto wide = strip(steps.widen != nullptr, 2 * sourceWidth);  // a row of even number and one of odd
  const auto blended = strip(steps.finish != nullptr || !target.IsWorking(), width);
  const auto working = strip(steps.finish != nullptr && !target.IsWorking(), width);
  const auto fetch = [&](std::int32_t row) -> const unsigned char* {
    const unsigned char* const bytes = in.top + row * in.step;
    if (steps.widen == nullptr) {
      return bytes;
    }
    unsigned char* const place = wide.get() + static_cast<std::size_t>(row % 2) * sourceWidth * kWorkingBytes;
    steps.widen(bytes, sourceWidth, place);
    return place;
  };
  Resampler resampler({from.width, from.height}, {to.width, to.height});
  for (std::int32_t row = 0; row < to.height; ++row) {
    unsigned char* const finished = target.IsWorking() ? target.Place() : steps.finish != nullptr ? working.get() : blended.get();
    unsigned char* const first = steps.finish != nullptr ? blended.get() : finished;
    resampler.Row(row, fetch, first);
    if (steps.finish != nullptr) {
      steps.finish(first, width, finished);
    }
    if (target.IsWorking()) {
      target.Advance(width);
    } else {
      target.Put(finished, width);
    }
    target.EndRow();
  }
}

}  // namespace

std::uint64_t FrameBytes(const FrameShape& shape, unsigned bytesPerPixel) noexcept {
  if (shape.width < 0 || shape.height < 0 || shape.padding < 0) {
    return std::numeric_limits<std::uint64_t>::max();
  }
  const std::uint64_t row =
      std::uint64_t{static_cast<std::uint32_t>(shape.width)} * bytesPerPixel + static_cast<std::uint32_t>(shape.padding);
  const auto rows = static_cast<std::uint32_t>(shape.height);
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  return rows != 0 && row > kMost / rows ? kMost : row * rows;
}

std::unique_ptr<unsigned char[]> NewFrame(const FrameShape& shape, unsigned bytesPerPixel) {
  const std::uint64_t bytes = FrameBytes(shape, bytesPerPixel);
  if (bytes > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
    throw std::bad_alloc();
  }
  return NewPixels(bytes);
}

Status ConvertFrame(const FrameShape& from, const unsigned char* in, const FrameShape& to, unsigned char* out) {
  return ConvertFrame(from, {in, static_cast<std::ptrdiff_t>(RowBytes(from, LayoutBytes(from.layout)))}, to, out);
}

Status ConvertFrame(const FrameShape& from, const SourceRows& in, const FrameShape& to, unsigned char* out) {
  if (ToWorking(from.layout) == nullptr) {
    return kStatusImageNoPixelSize;
  }
  if (to.width == 0 || to.height == 0) {
    const unsigned noPixels = 0;
    std::memset(out, 0, static_cast<std::size_t>(FrameBytes(to, noPixels)));  // columns of padding alone
    return kStatusOk;
  }
  if (from.width == 0 || from.height == 0) {
    return kStatusImageBadData;
  }
  const Target target(to, out);
  if (from.width != to.width || from.height != to.height) {
    // Blending asks for no order, so pixels of four bytes that keep theirs need not be turned round and back.
    const bool asTheyAre = IsCopy(from, to) && LayoutBytes(from.layout) == kWorkingBytes;
    ResampleRows(asTheyAre ? ResizedRow{} : ResizedToWorking(from.layout), from, in, to,
                 asTheyAre ? Target::AsItComes(to, out) : target);
  } else if (IsCopy(from, to)) {
    CopyRows(from, in, target);
  } else {
    ConvertRows(from, in, target);
  }
  return kStatusOk;
}

}  // namespace qxv
