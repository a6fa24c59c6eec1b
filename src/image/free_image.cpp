// free_image.cpp - CQXVFreeImage, pictures that FreeImage decodes for us: PNG, TIFF and GIF.
// FreeImage's bitmaps have their rows bottom-up, each filled up to 4 bytes; ours are top-down without padding.

#include "image/free_image.h"

#include "image/frame_copy.h"
#include "image/image_probe.h"
#include "image/pixel_memory.h"
#include "os/code_page.h"
#include "os/tiff_messages.h"
#include "streams/file_pieces.h"

#include <FreeImage.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace qxv {
namespace {

constexpr std::size_t kLongestName = 2047;                                       // bytes in the ANSI code page
constexpr std::int64_t kLongestFile = std::numeric_limits<std::int32_t>::max();  // FreeImage's long has 32 bits on Windows

struct Release {
  void operator()(FIBITMAP* bitmap) const noexcept { FreeImage_Unload(bitmap); }
  void operator()(FIMEMORY* stream) const noexcept { FreeImage_CloseMemory(stream); }
  void operator()(FIMULTIBITMAP* animation) const noexcept { FreeImage_CloseMultiBitmap(animation, 0 /*flags*/); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

// The file is opened by its own name, but names that the code page cannot write are refused on both systems alike.
bool IsAnsiName(const QXChar* name) {
  std::string bytes;
  bool lost = false;
  return name != nullptr && os::WideToMultiByte(os::kCodePageAnsi, name, bytes, &lost) && !lost && bytes.size() <= kLongestName;
}

FREE_IMAGE_FORMAT FormatOf(PictureKind kind) noexcept {
  switch (kind) {
    case PictureKind::Png:
      return FIF_PNG;
    case PictureKind::Tiff:
      return FIF_TIFF;
    case PictureKind::Gif:
      return FIF_GIF;
    case PictureKind::Other:
      break;
  }
  return FIF_UNKNOWN;
}

// --- A file as FreeImage reads it ---

struct Stream {
  ByteSource* source = nullptr;
  const BytePatch* patch = nullptr;
  std::int64_t position = 0;
};

unsigned DLL_CALLCONV ReadStream(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  auto& stream = *static_cast<Stream*>(handle);
  const auto position = static_cast<std::uint64_t>(stream.position);
  const std::uint64_t left = stream.source->Length() - std::min(position, stream.source->Length());
  const std::uint64_t items = size == 0 ? 0 : std::min<std::uint64_t>(count, left / size);
  const std::span bytes(static_cast<unsigned char*>(buffer), static_cast<std::size_t>(items * size));
  if (!stream.source->ReadAt(position, bytes)) {
    return 0;
  }
  stream.patch->Apply(position, bytes);
  stream.position += static_cast<std::int64_t>(bytes.size());
  return static_cast<unsigned>(items);
}

unsigned DLL_CALLCONV WriteStream(void* /*buffer*/, unsigned /*size*/, unsigned /*count*/, fi_handle /*handle*/) { return 0; }

int DLL_CALLCONV SeekStream(fi_handle handle, long offset, int origin) {
  auto& stream = *static_cast<Stream*>(handle);
  const std::int64_t base = origin == SEEK_SET   ? 0
                            : origin == SEEK_CUR ? stream.position
                                                 : static_cast<std::int64_t>(stream.source->Length());
  if (offset > kLongestFile - base || offset < -base) {
    return -1;
  }
  stream.position = base + offset;
  return 0;
}

long DLL_CALLCONV TellStream(fi_handle handle) { return static_cast<long>(static_cast<Stream*>(handle)->position); }

// --- Pixels ---

bool IsStandard(FIBITMAP* bitmap, unsigned bits) noexcept {
  return FreeImage_GetImageType(bitmap) == FIT_BITMAP && FreeImage_GetBPP(bitmap) == bits;
}

std::uint32_t NativeLayout(FIBITMAP* bitmap) noexcept {
  return FreeImage_GetBPP(bitmap) == 32 || FreeImage_IsTransparent(bitmap) ? kLayoutBgra : kLayoutBgr;
}

// The numbers of a page of a GIF. FreeImage's own text of them goes through one buffer for all threads.
std::optional<std::int32_t> AnimationNumber(FIBITMAP* page, const char* key) noexcept {
  FITAG* tag = nullptr;
  if (!FreeImage_GetMetadata(FIMD_ANIMATION, page, key, &tag) || FreeImage_GetTagCount(tag) < 1) {
    return std::nullopt;
  }
  const void* value = FreeImage_GetTagValue(tag);
  if (FreeImage_GetTagType(tag) == FIDT_SHORT) {
    std::uint16_t number = 0;
    std::memcpy(&number, value, sizeof number);
    return number;
  }
  if (FreeImage_GetTagType(tag) == FIDT_LONG) {
    std::int32_t number = 0;
    std::memcpy(&number, value, sizeof number);
    return number;
  }
  return std::nullopt;
}

}  // namespace

// An opened file: a still picture, or an animation with one of its pages locked.
class CQXVFreeImage::File {
 public:
  File() noexcept = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { UnlockPage(); }

  [[nodiscard]] Status Open(const QXChar* name, std::unique_ptr<unsigned char[]>& whole) {
    if (m_reader.Open(name) != os::kErrorNone || m_reader.Length() > static_cast<std::uint64_t>(kLongestFile)) {
      return kStatusImageForeign;
    }
    if (m_reader.Length() > kReadWhole) {
      return Decode(m_file, nullptr);
    }
    if (!whole) {
      whole.reset(new unsigned char[static_cast<std::size_t>(kReadWhole)]);
    }
    const std::span bytes(whole.get(), static_cast<std::size_t>(m_reader.Length()));
    if (!m_reader.Read(bytes) || m_reader.HasGrown()) {
      return kStatusImageCannotRead;
    }
    m_reader = FileReader();  // a file that is in memory may be replaced
    MemorySource memory(bytes);
    return Decode(memory, bytes.data());
  }

  [[nodiscard]] Facts GetFacts() const {
    FIBITMAP* first = FirstFrame();
    Facts facts;
    facts.frameCount = m_animation ? static_cast<std::uint32_t>(FreeImage_GetPageCount(m_animation.get())) : 1;
    facts.width = static_cast<std::int32_t>(FreeImage_GetWidth(first));
    facts.height = static_cast<std::int32_t>(FreeImage_GetHeight(first));
    facts.layout = NativeLayout(first);
    facts.frameTime = m_animation ? AnimationNumber(first, "FrameTime") : std::nullopt;
    return facts;
  }

  /// Null when it cannot be decoded.
  [[nodiscard]] FIBITMAP* Frame(std::uint32_t index) { return m_animation ? LockPage(static_cast<int>(index)) : m_still.get(); }

  /// A bitmap with the pixels of the layout: the one given, or one that stands until it is dropped. Null where there is no way.
  [[nodiscard]] FIBITMAP* Convert(FIBITMAP* bitmap, std::uint32_t layout) noexcept {
    if (IsStandard(bitmap, layout == kLayoutBgra ? 32 : 24)) {
      return bitmap;
    }
    m_converted.reset(layout == kLayoutBgra ? FreeImage_ConvertTo32Bits(bitmap) : FreeImage_ConvertTo24Bits(bitmap));
    return m_converted.get();
  }
  void DropConverted() noexcept { m_converted.reset(); }

 private:
  FIBITMAP* FirstFrame() const noexcept { return m_animation ? m_page : m_still.get(); }

  // whole: the bytes of source, where they stand in memory.
  Status Decode(ByteSource& source, unsigned char* whole) {
    const PictureKind kind = KindOfPicture(source);
    if (!MayDecode(source, kind, m_patch)) {
      return kStatusImageForeign;
    }
    if (whole != nullptr) {
      const auto length = static_cast<std::size_t>(source.Length());
      m_patch.Apply(0, {whole, length});
      m_memory.reset(FreeImage_OpenMemory(whole, static_cast<DWORD>(length)));
    } else {
      m_stream = {&source, &m_patch};
    }
    const bool decoded = kind == PictureKind::Gif ? DecodeAnimation() : DecodeStill(kind);
    return decoded ? kStatusOk : kStatusImageForeign;
  }

  bool DecodeStill(PictureKind kind) {
    const FREE_IMAGE_FORMAT format = FormatOf(kind);
    const os::QuietTiff quiet;
    m_still.reset(m_memory ? FreeImage_LoadFromMemory(format, m_memory.get(), 0 /*flags*/)
                           : FreeImage_LoadFromHandle(format, &m_io, &m_stream, 0 /*flags*/));
    m_memory.reset();  // a bitmap stands alone
    return m_still != nullptr;
  }

  bool DecodeAnimation() {
    m_animation.reset(m_memory ? FreeImage_LoadMultiBitmapFromMemory(FIF_GIF, m_memory.get(), 0 /*flags*/)
                               : FreeImage_OpenMultiBitmapFromHandle(FIF_GIF, &m_io, &m_stream, 0 /*flags*/));
    return m_animation && FreeImage_GetPageCount(m_animation.get()) > 0 && LockPage(0) != nullptr;
  }

  FIBITMAP* LockPage(int index) {
    if (m_page == nullptr || m_pageIndex != index) {
      UnlockPage();
      m_page = FreeImage_LockPage(m_animation.get(), index);
      m_pageIndex = index;
    }
    return m_page;
  }

  void UnlockPage() noexcept {
    if (m_page != nullptr) {
      FreeImage_UnlockPage(m_animation.get(), m_page, FALSE /*changed*/);
      m_page = nullptr;
    }
  }

  // From here on each leans on the ones before it, so they end in the other order.
  FileReader m_reader;
  FileSource m_file{m_reader};
  BytePatch m_patch;
  Stream m_stream;
  FreeImageIO m_io{ReadStream, WriteStream, SeekStream, TellStream};
  Owned<FIMEMORY> m_memory;
  Owned<FIMULTIBITMAP> m_animation;
  FIBITMAP* m_page = nullptr;
  int m_pageIndex = 0;
  Owned<FIBITMAP> m_still;
  Owned<FIBITMAP> m_converted;
};

CQXVFreeImage::CQXVFreeImage() noexcept = default;
CQXVFreeImage::~CQXVFreeImage() = default;

Status CQXVFreeImage::Open(const QXChar* name) {
  Close();
  if (!IsAnsiName(name)) {
    return kStatusImageForeign;
  }
  auto file = std::make_unique<File>();
  const Status status = file->Open(name, m_whole);
  if (status == kStatusOk) {
    m_facts = file->GetFacts();
    m_file = std::move(file);
  }
  return status;
}

void CQXVFreeImage::Close() noexcept {
  m_file.reset();
  m_facts = {};
}

Status CQXVFreeImage::Borrow(std::uint32_t index, std::uint32_t layout, ForeignFrame& frame) {
  if (index >= m_facts.frameCount) {
    return kStatusImageBadArgument;
  }
  m_file->DropConverted();
  const std::uint32_t wanted = layout == kLayoutBgr || layout == kLayoutBgra ? layout : m_facts.layout;
  FIBITMAP* bitmap = m_file->Frame(index);
  FIBITMAP* pixels = bitmap == nullptr ? nullptr : m_file->Convert(bitmap, wanted);
  if (pixels == nullptr) {
    Close();
    return kStatusImageForeign;
  }
  frame.view = {FreeImage_GetBits(pixels), FreeImage_GetPitch(pixels), FreeImage_GetWidth(pixels), FreeImage_GetHeight(pixels)};
  frame.place = {AnimationNumber(bitmap, "FrameLeft").value_or(0), AnimationNumber(bitmap, "FrameTop").value_or(0)};
  frame.layout = wanted;
  return kStatusOk;
}

Picture CQXVFreeImage::Placed(const ForeignFrame& frame) const {
  const unsigned bytesPerPixel = frame.layout == kLayoutBgra ? 4 : 3;
  Picture placed{m_facts.width, m_facts.height, NewPixels(PixelBytes(m_facts.width, m_facts.height, bytesPerPixel))};
  PlaceFrame(frame.view, frame.place, static_cast<std::size_t>(placed.width), static_cast<std::size_t>(placed.height),
             bytesPerPixel, placed.pixels.get());
  return placed;
}

Status CQXVFreeImage::Frame(std::uint32_t index, std::uint32_t layout, Picture& picture) {
  ForeignFrame frame;
  const Status status = Borrow(index, layout, frame);
  if (status == kStatusOk) {
    picture = Placed(frame);
    m_file->DropConverted();
  }
  return status;
}

}  // namespace qxv
