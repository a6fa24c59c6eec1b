// image_demo.cpp - a host application of the image family: takes each file of its command line through every type that is
// written, two sizes and every layout, into a folder, and tells what it did: lines of fields with tabs between them, for a page
// to be made of.
//   original  file  bytes  type  frames  layout  width  height  frame time  microseconds of the information, of the raw frames
//   result    file  bytes  original  type  size  layout  width  height  microseconds of reading, of writing  alike
//   frame     file  original  number                                                    (of an animation)
// alike: whether the written file gives the very pixels back (yes or no), or not told for types that lose some by their nature.

#include "qxv/image.h"
#include "qxv/interop.h"
#include "qxv/string.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Buffer = std::unique_ptr<unsigned char[]>;

struct Layout {
  const char* name;
  unsigned int code;
  int bytesPerPixel;
};
constexpr Layout kLayouts[] = {{"BGRA", QXV_LAYOUT_BGRA, 4},
                               {"BGR", QXV_LAYOUT_BGR, 3},
                               {"RGB", QXV_LAYOUT_RGB, 3},
                               {"YUV", QXV_LAYOUT_YUV, 3},
                               {"VUY", QXV_LAYOUT_VUY, 3}};

// Each file takes its type's own layout; what passes between reader and writer is another one for each type.
struct Written {
  const char* extension;
  Layout own;
  Layout between;
  bool isExact;
};
constexpr Written kWritten[] = {{"tga", kLayouts[0], kLayouts[0], true},  {"bmp", kLayouts[1], kLayouts[0], true},
                                {"pcx", kLayouts[2], kLayouts[1], true},  {"yuv", kLayouts[3], kLayouts[4], false},
                                {"gif", kLayouts[1], kLayouts[2], false}, {"jpg", kLayouts[1], kLayouts[3], false}};

CQXString NameOf(const fs::path& path) {
  std::basic_string<QXChar> name;
  for (const auto unit : fs::absolute(path).u16string()) {
    name += static_cast<QXChar>(unit);
  }
  return name.c_str();
}

// The best of five runs: what the work takes where nothing disturbs it.
template <class Work>
long long Microseconds(Work work) {
  long long best = 0;
  for (int run = 0; run < 5; ++run) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const auto taken = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
    best = run == 0 ? taken : std::min<long long>(best, taken);
  }
  return best;
}

struct Original {
  fs::path path;
  QXVImageInfo info{};
  std::unique_ptr<CQXVImageReader> reader{};
};

bool Open(Original& original) {
  original.reader.reset(QXVCOMMONLIB_GetImageReader());
  const int status = original.reader->SetFile(NameOf(original.path));
  const int told = status != 0 ? status : original.reader->GetImageInfoEx(&original.info);
  if (told != 0) {
    std::cerr << original.path.string() << ": status " << std::hex << static_cast<unsigned>(told) << std::dec << '\n';
  }
  return told == 0;
}

void Describe(Original& original) {
  const auto information = Microseconds([&] {
    original.reader->Close();
    QXVImageInfo info{};
    (void)original.reader->GetImageInfoEx(&info);
  });
  const auto frames = Microseconds([&] {
    for (int frame = 0; frame < original.info.nFrames; ++frame) {
      void* pixels = nullptr;
      (void)original.reader->ReadRawFrame(frame, &pixels);
      delete[] static_cast<unsigned char*>(pixels);
    }
  });
  const auto* layout = std::find_if(std::begin(kLayouts), std::end(kLayouts),
                                    [&](const Layout& each) { return each.code == original.info.nPixelLayout; });
  std::cout << "original\t" << original.path.string() << '\t' << fs::file_size(original.path) << '\t' << original.info.nType
            << '\t' << original.info.nFrames << '\t' << layout->name << '\t' << original.info.nWidth << '\t'
            << original.info.nHeight << '\t' << original.info.nFrameTime << '\t' << information << '\t' << frames << '\n';
}

// Frames in one shape; empty after a refusal.
std::vector<Buffer> ReadFrames(Original& original, int frames, const QXVPixelLayout& shape) {
  std::vector<Buffer> read;
  if (original.reader->SetOutputLayout(&shape) != 0) {
    return read;
  }
  for (int frame = 0; frame < frames; ++frame) {
    unsigned char* pixels = nullptr;
    if (original.reader->ReadFrame(static_cast<unsigned>(frame), &pixels) != 0) {
      return {};
    }
    read.emplace_back(pixels);
  }
  return read;
}

bool WriteFrames(const fs::path& path, const QXVImageInfo& target, const QXVPixelLayout& input,
                 const std::vector<Buffer>& frames) {
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  if (writer->Create(NameOf(path), &target) != 0 || writer->SetInputLayout(&input) != 0) {
    return false;
  }
  for (std::size_t frame = 0; frame < frames.size(); ++frame) {
    if (writer->WriteFrame(static_cast<int>(frame), frames[frame].get()) != 0) {
      return false;
    }
  }
  return true;
}

// Whether a file of ours holds the pixels that were written.
bool GivesBack(const fs::path& path, const Buffer& expected, std::size_t bytes) {
  Original written{path};
  void* pixels = nullptr;
  if (!Open(written) || written.reader->ReadRawFrame(0, &pixels) != 0) {
    return false;
  }
  const Buffer raw(static_cast<unsigned char*>(pixels));
  return std::memcmp(raw.get(), expected.get(), bytes) == 0;
}

struct Step {
  const char* size;  // what the page calls it
  int width, height;
};

bool Convert(Original& original, const fs::path& folder, const Written& type, const Layout& between, const Step& step) {
  const int frames = std::strcmp(type.extension, "gif") == 0 ? original.info.nFrames : 1;
  const QXVPixelLayout shape{between.code, step.width, step.height, 0};
  const QXVImageInfo target{0, frames, type.own.code, step.width, step.height, 0, 0};
  const std::string name = original.path.filename().string() + '-' + step.size + '-' + between.name + '.' + type.extension;
  const fs::path path = folder / name;
  std::vector<Buffer> read;
  const auto reading = Microseconds([&] { read = ReadFrames(original, frames, shape); });
  bool isWritten = !read.empty();
  const auto writing = Microseconds([&] { isWritten = isWritten && WriteFrames(path, target, shape, read); });
  if (!isWritten) {
    std::cerr << name << ": not written\n";
    return false;
  }
  const bool isCompared = type.isExact && between.code != QXV_LAYOUT_YUV && between.code != QXV_LAYOUT_VUY;
  const char* alike = "";
  if (isCompared) {
    const auto own = ReadFrames(original, 1, {type.own.code, step.width, step.height, 0});
    const auto bytes = static_cast<std::size_t>(step.width) * static_cast<std::size_t>(step.height) *
                       static_cast<std::size_t>(type.own.bytesPerPixel);
    alike = !own.empty() && GivesBack(path, own[0], bytes) ? "yes" : "no";
  }
  std::cout << "result\t" << name << '\t' << fs::file_size(path) << '\t' << original.path.filename().string() << '\t'
            << type.extension << '\t' << step.size << '\t' << between.name << '\t' << step.width << '\t' << step.height << '\t'
            << reading << '\t' << writing << '\t' << alike << '\n';
  return std::strcmp(alike, "no") != 0;
}

// No other program shows YUV files; the page shows them as the bitmap that the library makes of them.
bool MakePreview(const fs::path& path, const fs::path& preview) {
  Original original{path};
  if (!Open(original)) {
    return false;
  }
  const QXVPixelLayout shape{QXV_LAYOUT_BGR, original.info.nWidth, original.info.nHeight, 0};
  const QXVImageInfo target{0, 1, QXV_LAYOUT_BGR, shape.nWidth, shape.nHeight, 0, 0};
  const auto frames = ReadFrames(original, 1, shape);
  return !frames.empty() && WriteFrames(preview, target, shape, frames);
}

// The frames of an animation one by one, with what is clear.
bool ShowFrames(Original& original, const fs::path& folder) {
  const QXVPixelLayout shape{QXV_LAYOUT_BGRA, original.info.nWidth, original.info.nHeight, 0};
  const QXVImageInfo target{0, 1, QXV_LAYOUT_BGRA, shape.nWidth, shape.nHeight, 0, 0};
  auto frames = ReadFrames(original, original.info.nFrames, shape);
  bool all = !frames.empty();
  for (std::size_t frame = 0; frame < frames.size(); ++frame) {
    const std::string name = original.path.filename().string() + "-frame-" + std::to_string(frame) + ".tga";
    std::vector<Buffer> one;
    one.push_back(std::move(frames[frame]));
    all = WriteFrames(folder / name, target, shape, one) && all;
    std::cout << "frame\t" << name << '\t' << original.path.filename().string() << '\t' << frame << '\n';
  }
  return all;
}

bool Show(const fs::path& file, const fs::path& folder) {
  Original original{file};
  if (!Open(original)) {
    return false;
  }
  Describe(original);
  const Step own{"own", original.info.nWidth, original.info.nHeight};
  const Step other{"other", original.info.nWidth * 3 / 5, original.info.nHeight * 3 / 5};
  bool all = true;
  for (const Written& type : kWritten) {
    for (const Step& step : {own, other}) {
      all = Convert(original, folder, type, type.between, step) && all;
    }
  }
  for (const Layout& layout : kLayouts) {  // each of them on the way into a bitmap
    all = Convert(original, folder, kWritten[1], layout, {"layout", own.width, own.height}) && all;
  }
  return (original.info.nFrames == 1 || ShowFrames(original, folder)) && all;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "--bitmap") == 0) {
    return MakePreview(argv[2], argv[3]) ? 0 : 1;
  }
  if (argc < 3) {
    std::cerr << "usage: image_demo FOLDER FILE...          (the folder takes the files that it makes)\n"
                 "       image_demo --bitmap FILE BITMAP\n";
    return 2;
  }
  bool all = true;
  for (int i = 2; i < argc; ++i) {
    all = Show(argv[i], argv[1]) && all;
  }
  return all ? 0 : 1;
}
