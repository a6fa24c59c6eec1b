// image.cpp - pictures written and read back, in every layout, and damaged files.

#include "parity/trial.h"

#include "qxv/image.h"

#include <memory>
#include <vector>

namespace parity {

namespace {

constexpr unsigned kLayouts[] = {QXV_LAYOUT_BGRA, QXV_LAYOUT_BGR, QXV_LAYOUT_YUV, QXV_LAYOUT_VUY, QXV_LAYOUT_RGB, 32, 3};
constexpr const QXChar* kNames[] = {QXT("a.bmp"), QXT("a.tga"), QXT("a.pcx"), QXT("a.yuv"),
                                    QXT("a.jpg"), QXT("a.gif"), QXT("a.png"), QXT("a.xyz")};

std::size_t BytesOf(const QXVPixelLayout& layout) {  // of four bytes a pixel, which is enough for all layouts
  return (static_cast<std::size_t>(layout.nWidth) * 4 + static_cast<std::size_t>(layout.nPadding)) *
         static_cast<std::size_t>(layout.nHeight);
}

void TakeReading(Trial& t, const Text& name) {
  const std::unique_ptr<CQXVImageReader> reader(QXVCOMMONLIB_GetImageReader());
  t << reader->SetFile(name.c_str());
  QXVImageInfo info{};
  t << reader->GetImageInfo(&info) << reader->GetImageInfoEx(&info) << info.nType << info.nFrames << info.nPixelLayout
    << info.nWidth << info.nHeight << info.nPadding << info.nFrameTime;
  const QXVPixelLayout layout{kLayouts[t.Below(5)], t.Between(1, 20), t.Between(1, 20), t.Below(5)};
  t << reader->SetOutputLayout(&layout);
  unsigned char* frame = nullptr;
  if (t << reader->ReadFrame(0, &frame); frame != nullptr) {
    const std::unique_ptr<unsigned char[]> owned(frame);
    t.Raw(frame, BytesOf(layout));
  }
  void* raw = nullptr;
  t << reader->ReadRawFrame(0, &raw) << (raw != nullptr) << reader->Close();
  delete[] static_cast<unsigned char*>(raw);
}

void ThereAndBack(Trial& t) {
  t.Next();
  const Text name = t.File(kNames[t.Below(8)]);
  const QXVPixelLayout given{kLayouts[t.Below(7)], t.Between(1, 24), t.Between(1, 24), t.Below(4)};
  const QXVImageInfo info{0, 1, kLayouts[t.Below(5)], t.Between(1, 24), t.Between(1, 24), 0, 0};
  std::vector<unsigned char> pixels(BytesOf(given));
  for (unsigned char& byte : pixels) {
    byte = static_cast<unsigned char>(t.Bits());
  }
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  t << writer->Create(name.c_str(), &info) << writer->SetInputLayout(&given) << writer->WriteFrame(0, pixels.data())
    << writer->Close();
  TakeReading(t, name);
}

void Damaged(Trial& t) {
  t.Next();
  const Text name = t.File(kNames[t.Below(6)]);
  {
    CFile file(name.c_str(), CFile::modeReadWrite);
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    (void)file.Read(bytes.data(), static_cast<unsigned>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(t.Below(static_cast<int>(bytes.size()) + 1)));
    if (!bytes.empty()) {
      bytes[static_cast<std::size_t>(t.Below(static_cast<int>(bytes.size())))] = static_cast<char>(t.Bits());
    }
    file.SetLength(bytes.size());
    file.SeekToBegin();
    file.Write(bytes.data(), static_cast<unsigned>(bytes.size()));
  }
  TakeReading(t, name);
}

void Animation(Trial& t) {
  t.Next();
  const Text name = t.File(QXT("a.gif"));
  const int frames = t.Between(1, 4);
  const QXVImageInfo info{0, frames, QXV_LAYOUT_BGR, 8, 6, 0, 0};
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  t << writer->Create(name.c_str(), &info);
  for (int i = 0; i < frames; ++i) {
    std::vector<unsigned char> pixels(8 * 6 * 3);
    for (unsigned char& byte : pixels) {
      byte = static_cast<unsigned char>(t.Bits());
    }
    t << writer->WriteRawFrame(i, pixels.data());
  }
  TakeReading(t, name);
}

}  // namespace

void RunImage(Trial& t) {
  for (const QXChar* name : kNames) {  // so that there is something to damage
    CFile(t.File(name).c_str(), CFile::modeCreate | CFile::modeWrite);
  }
  for (int i = 0; i < 800; ++i) {
    ThereAndBack(t);
    Damaged(t);
  }
  for (int i = 0; i < 50; ++i) {
    Animation(t);
  }
}

}  // namespace parity
