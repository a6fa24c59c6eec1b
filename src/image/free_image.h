// free_image.h - CQXVFreeImage, pictures that FreeImage decodes for us: PNG, TIFF and GIF.
#pragma once

#include "foundation/status.h"
#include "image/frame_copy.h"
#include "image/layout_codes.h"
#include "image/picture_codec.h"
#include "qxv/types.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace qxv {

/// Files of at most so many bytes are read whole and decoded from memory; longer ones stay open and are decoded piece by piece.
inline constexpr std::uint64_t kReadWhole = 2 * 1024 * 1024;

/// A frame where FreeImage has it, in the layout that was asked for, or in the native one.
struct ForeignFrame {
  FrameView view{};
  FramePlace place{};
  std::uint32_t layout = 0;
};

/// One file at a time; what it holds decides, not the extension of its name. Stills have one frame. The frames of a GIF are
/// placed on a canvas of the size of the first one, each alone: what earlier frames drew is not under it. An object is used by
/// one thread at a time; objects share nothing.
class CQXVFreeImage {
 public:
  CQXVFreeImage() noexcept;
  CQXVFreeImage(const CQXVFreeImage&) = delete;
  CQXVFreeImage& operator=(const CQXVFreeImage&) = delete;
  ~CQXVFreeImage();

  /// Closes what was open, then opens a file and decodes its first frame, so that the sizes below are known.
  /// 0x89601A15 for a short file that shrinks or grows while it is read, and
  /// -1 for one that cannot be opened, holds no PNG, TIFF or GIF picture, is damaged or larger than image_probe.h allows, and for
  /// a name that the ANSI code page cannot write in at most 2,047 bytes. Then nothing is open.
  [[nodiscard]] Status Open(const QXChar* name);
  void Close() noexcept;
  bool IsOpen() const noexcept { return m_file != nullptr; }

  // All of these 0 (kLayoutBgr) while nothing is open.
  std::uint32_t FrameCount() const noexcept { return m_facts.frameCount; }
  std::int32_t Width() const noexcept { return m_facts.width; }
  std::int32_t Height() const noexcept { return m_facts.height; }
  /// The native layout: kLayoutBgra where the first frame has 32 bits a pixel or something transparent, else kLayoutBgr.
  std::uint32_t Layout() const noexcept { return m_facts.layout; }
  /// Milliseconds that the first frame of a GIF is shown; nothing for other files.
  std::optional<std::int32_t> FrameTime() const noexcept { return m_facts.frameTime; }

  /// A frame on the canvas, rows top-down without padding; zeros where the frame does not reach.
  /// @param layout  kLayoutBgr or kLayoutBgra; every other number is the native layout
  /// 0x89601A11 for a frame that is not there; -1 for one that cannot be decoded or converted (16-bit grey and floating samples):
  /// then the file is closed. The picture changes only with 0.
  [[nodiscard]] Status Frame(std::uint32_t index, std::uint32_t layout, Picture& picture);

  /// The same without a copy, not placed on the canvas. The pixels stand until the object is asked for anything else.
  [[nodiscard]] Status Borrow(std::uint32_t index, std::uint32_t layout, ForeignFrame& frame);
  [[nodiscard]] Picture Placed(const ForeignFrame& frame) const;

 private:
  class File;
  struct Facts {
    std::uint32_t frameCount = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t layout = kLayoutBgr;
    std::optional<std::int32_t> frameTime{};
  };

  Facts m_facts;
  std::unique_ptr<File> m_file;
  std::unique_ptr<unsigned char[]> m_whole;  // kReadWhole bytes, from the first short file on
};

}  // namespace qxv
