// consumer.cpp - a program of somebody else: includes everything, and calls what needs each library of the package.

#include "qxv/interop.h"
#include "qxv/qxv.h"

#include <cstring>
#include <iostream>
#include <memory>
#include <vector>

namespace {

int failures = 0;

void Expect(bool isRight, const char* what) {
  std::cout << (isRight ? "ok      " : "FAILED  ") << what << '\n';
  failures += isRight ? 0 : 1;
}

// Writes 4 x 4 pixels of one grey, reads them back, and says whether each of B, G and R is that grey again.
bool ComesBack(const QXChar* name, unsigned char grey) {
  const QXVImageInfo info{QXV_IMAGE_TYPE_OTHER, 1, QXV_LAYOUT_BGR, 4, 4, 0, 0};
  const QXVPixelLayout layout{QXV_LAYOUT_BGR, 4, 4, 0};
  const std::vector<unsigned char> pixels(4 * 4 * 3, grey);
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  if (writer->Create(name, &info) != 0 || writer->SetInputLayout(&layout) != 0 || writer->WriteFrame(0, pixels.data()) != 0) {
    return false;
  }
  const std::unique_ptr<CQXVImageReader> reader(QXVCOMMONLIB_GetImageReader());
  unsigned char* data = nullptr;
  if (reader->SetFile(name) != 0 || reader->SetOutputLayout(&layout) != 0 || reader->ReadFrame(0, &data) != 0) {
    return false;
  }
  const std::unique_ptr<unsigned char[]> owned(data);
  return std::memcmp(data, pixels.data(), pixels.size()) == 0;
}

}  // namespace

int main() {
  std::cout << "QXVCommonLibU " << QXV_VERSION_MAJOR << '.' << QXV_VERSION_MINOR << '.' << QXV_VERSION_PATCH << '\n';

  const unsigned char digits[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  Expect(QXVCalculateCRC(digits, digits + sizeof digits) == 0x0376E6E7, "the CRC-32/MPEG-2 of 123456789");

  CQXString text;
  text.Format(QXT("%d %s"), 42, QXT("apples"));
  Expect(qxv::ToUtf8(qxv::ToView(text)) == "42 apples", "a text is formatted, and its memory crosses the border");

  Expect(ComesBack(QXT("consumer.bmp"), 200), "BMP, by the library itself");
  Expect(ComesBack(QXT("consumer.jpg"), 128), "JPG, by the codec library");
  Expect(ComesBack(QXT("consumer.gif"), 0), "GIF, read by FreeImage");
  return failures == 0 ? 0 : 1;
}
