// fuzz_image_writer.cpp - any sequence of calls of the writer beside a model of it: each status, the moment at which the file is
// written, and its pixels as the reader finds them.

#include "fuzz/fuzz_input.h"
#include "image/pixel_oracle.h"
#include "qxv/image.h"

#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <vector>

namespace {

namespace oracle = pixel_oracle;
using oracle::Bytes;
using oracle::Shape;

enum Kind : unsigned { kTga, kBmp, kTif, kGif, kPcx, kYuv, kJpg, kPng };
constexpr unsigned kKinds = 8;

const fuzz::ScratchFile& FileOf(unsigned kind) {
  static const std::array<fuzz::ScratchFile, kKinds> files{
      fuzz::ScratchFile("writer", ".tga"), fuzz::ScratchFile("writer", ".bmp"), fuzz::ScratchFile("writer", ".tif"),
      fuzz::ScratchFile("writer", ".gif"), fuzz::ScratchFile("writer", ".pcx"), fuzz::ScratchFile("writer", ".yuv"),
      fuzz::ScratchFile("writer", ".jpg"), fuzz::ScratchFile("writer", ".png")};
  return files[kind];
}

bool HasConverter(std::uint32_t layout) {
  return layout == 1 || layout == 4 || layout == 8 || layout == 0x02000000 || layout == 0x40000000;
}
bool HasSize(std::uint32_t layout) { return HasConverter(layout) || layout == 32 || layout == 64 || layout == 128; }

std::uint32_t Layout(fuzz::Input& in) {
  constexpr std::uint32_t kLayouts[] = {1, 4, 8, 0x02000000, 0x40000000, 32, 64, 128, 0, 2, 0xFFFFFFFF};
  return kLayouts[in.Byte() % std::size(kLayouts)];
}

// Mostly small and whole; some that cannot be.
int Side(fuzz::Input& in) {
  constexpr int kStrange[] = {0, -1, INT32_MIN, INT32_MAX, 1 << 29, 65536};
  const unsigned byte = in.Byte();
  return byte < 240 ? static_cast<int>(byte % 24) + 1 : kStrange[byte % std::size(kStrange)];
}
int Padding(fuzz::Input& in) {
  const unsigned byte = in.Byte();
  return byte < 250 ? static_cast<int>(byte % 8) : byte < 253 ? -1 : INT32_MAX;
}

// Bytes of a frame; nothing where it cannot be.
std::optional<std::size_t> SizeOf(const Shape& shape) {
  if (shape.width < 0 || shape.height < 0 || shape.padding < 0) {
    return std::nullopt;
  }
  const unsigned __int128 row =
      static_cast<unsigned __int128>(shape.width) * oracle::BytesOf(shape.layout) + static_cast<unsigned __int128>(shape.padding);
  const unsigned __int128 size = row * static_cast<unsigned __int128>(shape.height);
  return size > INT32_MAX ? std::nullopt : std::optional(static_cast<std::size_t>(size));
}

struct Model {
  unsigned kind = kPng;
  Shape target{}, input{};
  std::vector<std::optional<Bytes>> slots{};

  bool IsComplete() const {
    for (const auto& slot : slots) {
      if (!slot) {
        return false;
      }
    }
    return true;
  }
};

void ExpectPixels(const fuzz::ScratchFile& file, int frame, const Bytes& expected) {
  const std::unique_ptr<CQXVImageReader> reader(QXVCOMMONLIB_GetImageReader());
  fuzz::Require(reader->SetFile(file.Name()) == 0);
  void* given = nullptr;
  fuzz::Require(reader->ReadRawFrame(frame, &given) == 0 && given != nullptr);
  const std::unique_ptr<unsigned char[]> buffer(static_cast<unsigned char*>(given));
  fuzz::Require(std::memcmp(buffer.get(), expected.data(), expected.size()) == 0);
}

// As the fixed palette of three, three and two bits shows a colour.
Bytes InPalette(Bytes bgr) {
  for (std::size_t i = 0; i + 2 < bgr.size(); i += 3) {
    const unsigned blue = bgr[i] >> 6, green = bgr[i + 1] >> 5, red = bgr[i + 2] >> 5;
    bgr[i] = static_cast<unsigned char>(blue * 85);
    bgr[i + 1] = static_cast<unsigned char>(green * 36 + green / 2);
    bgr[i + 2] = static_cast<unsigned char>(red * 36 + red / 2);
  }
  return bgr;
}

void CheckFile(const Model& model) {
  const Shape& shape = model.target;
  const fuzz::ScratchFile& file = FileOf(model.kind);
  if (shape.width < 1 || shape.height < 1 || shape.width > 65535 || shape.height > 65535) {
    return;  // written, but no picture
  }
  const auto pixels = [&](const Bytes& slot, std::size_t bytesPerPixel) {
    Bytes bytes = slot;
    bytes.resize(static_cast<std::size_t>(shape.width) * static_cast<std::size_t>(shape.height) * bytesPerPixel);
    return bytes;
  };
  if (model.kind == kGif) {
    for (std::size_t i = 0; i < model.slots.size(); ++i) {
      ExpectPixels(file, static_cast<int>(i), InPalette(pixels(*model.slots[i], 3)));
    }
  } else if (model.kind == kJpg) {
    const std::unique_ptr<CQXVImageReader> reader(QXVCOMMONLIB_GetImageReader());
    QXVImageInfo info{};
    fuzz::Require(reader->SetFile(file.Name()) == 0 && reader->GetImageInfoEx(&info) == 0);
    fuzz::Require(info.nWidth == shape.width && info.nHeight == shape.height);
  } else {
    ExpectPixels(file, 0, pixels(*model.slots[0], model.kind == kTga ? 4 : 3));
  }
}

void Keep(Model& model, int frame, Bytes bytes, int status) {
  model.slots[static_cast<std::size_t>(frame)] = std::move(bytes);
  if (!model.IsComplete()) {
    fuzz::Require(status == 0);
  } else if (model.kind == kPng) {
    fuzz::Require(status == QXV_IMAGE_STATUS_UNSUPPORTED);
  } else if (model.kind == kTif) {
    fuzz::Require(status == 0);
  } else if (model.kind == kJpg && status != 0) {
    fuzz::Require(status == -1 && (model.target.width < 1 || model.target.height < 1));
  } else {
    fuzz::Require(status == 0);
    CheckFile(model);
  }
}

void Create(CQXVImageWriter& writer, Model& model, fuzz::Input& in) {
  const unsigned kind = in.Byte() % kKinds;
  const int frames = static_cast<int>(in.Byte() % 5) - 1;
  const Shape target{Layout(in), Side(in), Side(in), Padding(in)};
  const QXVImageInfo info{static_cast<int>(in.Byte()), frames, target.layout, target.width, target.height, target.padding, 0};
  const bool isRight = frames == 1 || (frames > 1 && kind == kGif);
  fuzz::Require(writer.Create(FileOf(kind).Name(), &info) == (isRight ? 0 : QXV_IMAGE_STATUS_BAD_ARGUMENT));
  if (isRight) {
    model.kind = kind;
    model.target = target;
    model.slots.assign(static_cast<std::size_t>(frames), std::nullopt);
  }
}

void Write(CQXVImageWriter& writer, Model& model, fuzz::Input& in) {
  const bool isRaw = in.Byte() % 2 == 0;
  const int frame = static_cast<int>(in.Byte() % 6) - 1;
  const bool isNull = in.Byte() % 16 == 0;
  const auto targetSize = SizeOf(model.target), inputSize = SizeOf(model.input);
  const auto needed = isRaw ? targetSize : inputSize;
  if ((needed && *needed > 100'000) || (targetSize && *targetSize > 100'000)) {
    return;  // only costs time
  }
  const Bytes content = oracle::Mixed(needed.value_or(0), in.Byte());
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[content.size()]);  // a byte too many read is found
  std::copy(content.begin(), content.end(), exact.get());
  const unsigned char* data = isNull ? nullptr : exact.get();
  int status = 0;
  bool lacksMemory = false;
  try {
    status = isRaw ? writer.WriteRawFrame(frame, data) : writer.WriteFrame(frame, data);
  } catch (const std::bad_alloc&) {
    lacksMemory = true;
  }
  const Shape& input = model.input;
  if (frame < 0 || static_cast<std::size_t>(frame) >= model.slots.size()) {
    fuzz::Require(status == QXV_IMAGE_STATUS_BAD_ARGUMENT && !lacksMemory);
  } else if (isNull) {
    fuzz::Require(status == QXV_IMAGE_STATUS_NULL_PIXELS && !lacksMemory);
  } else if (!HasSize(model.target.layout)) {
    fuzz::Require(status == QXV_IMAGE_STATUS_NO_PIXEL_SIZE && !lacksMemory);
  } else if (!isRaw && (input.width < 1 || input.height < 1 || input.padding < 0)) {
    fuzz::Require(status == QXV_IMAGE_STATUS_BAD_ARGUMENT && !lacksMemory);
  } else if (!targetSize) {
    fuzz::Require(lacksMemory);
  } else if (!isRaw && !HasConverter(input.layout)) {
    fuzz::Require(status == QXV_IMAGE_STATUS_NO_PIXEL_SIZE && !lacksMemory);
  } else if (!isRaw && !inputSize) {
    fuzz::Require(lacksMemory);
  } else {
    fuzz::Require(!lacksMemory);
    Bytes kept = isRaw ? content : oracle::Frame(input, content, model.target);
    kept.resize(*targetSize);
    Keep(model, frame, std::move(kept), status);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  Model model;
  for (int call = 0; call < 40 && !in.AtEnd(); ++call) {
    switch (in.Byte() % 8) {
      case 0:
        Create(*writer, model, in);
        break;
      case 1: {
        model.input = {Layout(in), Side(in), Side(in), Padding(in)};
        const QXVPixelLayout shape{model.input.layout, model.input.width, model.input.height, model.input.padding};
        fuzz::Require(writer->SetInputLayout(&shape) == 0);
        break;
      }
      case 2:
        fuzz::Require(writer->Close() == 0);
        model.slots.clear();
        break;
      default:
        Write(*writer, model, in);
    }
  }
  return 0;
}
