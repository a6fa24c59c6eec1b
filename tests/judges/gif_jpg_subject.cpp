// gif_jpg_subject.cpp - writes GIF and JPG files of raw pixels (B, G, R, rows top-down) from its standard input, and prints a JPG
// file's pixels.
//   gif_jpg_subject gif|jpg width height file     one frame, or for gif any number of them
//   gif_jpg_subject read file                     a line "width height", then the pixels

#include "image/gif.h"
#include "image/jpg.h"
#include "os/utf.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::span<const unsigned char>;

int WriteFrames(bool gif, std::int32_t width, std::int32_t height, const QXChar* name) {
  const std::string input(std::istreambuf_iterator<char>(std::cin), {});
  const Bytes pixels(reinterpret_cast<const unsigned char*>(input.data()), input.size());
  if (!gif) {
    return qxv::CQXVJpg().Write(name, {width, height, pixels}) == 0 ? 0 : 1;
  }
  const std::size_t frameBytes = qxv::PixelBytes(width, height, 3);
  std::vector<qxv::CQXVGif::Frame> frames;
  for (std::size_t at = 0; at + frameBytes <= pixels.size(); at += frameBytes) {
    frames.push_back(pixels.subspan(at, frameBytes));
  }
  return qxv::CQXVGif(width, height).Write(name, frames) == 0 ? 0 : 1;
}

int Print(const QXChar* name) {
  qxv::CQXVJpg codec;
  if (codec.Read(name, qxv::ReadExtent::Pixels) != 0) {
    return 1;
  }
  std::cout << codec.Width() << ' ' << codec.Height() << '\n';
  std::cout.write(reinterpret_cast<const char*>(codec.Pixels()),
                  static_cast<std::streamsize>(qxv::PixelBytes(codec.Width(), codec.Height(), 3)));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc > 1 ? argv[1] : "";
  if (argc == 3 && mode == "read") {
    return Print(qxv::os::TextFromUtf8(argv[2]).c_str());
  }
  if (argc == 5 && (mode == "gif" || mode == "jpg")) {
    return WriteFrames(mode == "gif", std::atoi(argv[2]), std::atoi(argv[3]), qxv::os::TextFromUtf8(argv[4]).c_str());
  }
  std::fputs("usage: gif_jpg_subject gif|jpg width height file | read file\n", stderr);
  return 2;
}
