// image_codecs_subject.cpp - writes and reads picture files by the codecs, pixels as PAM files (netpbm's simplest kind).
//   image_codecs_subject write bmp|tga|yuv|pcx picture.pam file ...      any number of pairs
//   image_codecs_subject read bmp|tga|yuv|pcx file picture.pam ...
// PAM files are RGB or RGB_ALPHA; the codecs' own order of bytes is turned into theirs.

#include "image/bmp.h"
#include "image/pcx.h"
#include "image/tga.h"
#include "image/yuv.h"
#include "os/utf.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::unique_ptr<qxv::PictureCodec> MakeCodec(const std::string& type) {
  if (type == "bmp") {
    return std::make_unique<qxv::CQXVBmp>();
  }
  if (type == "tga") {
    return std::make_unique<qxv::CQXVTga>();
  }
  if (type == "yuv") {
    return std::make_unique<qxv::CQXVYUV>();
  }
  return std::make_unique<qxv::CQXVPcx>();
}

struct Pam {
  int width = 0;
  int height = 0;
  unsigned depth = 0;
  std::vector<unsigned char> pixels;
};

Pam ReadPam(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  Pam pam;
  for (std::string line; std::getline(file, line) && line != "ENDHDR";) {
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (key == "WIDTH") {
      words >> pam.width;
    } else if (key == "HEIGHT") {
      words >> pam.height;
    } else if (key == "DEPTH") {
      words >> pam.depth;
    }
  }
  pam.pixels.assign(std::istreambuf_iterator<char>(file), {});
  return pam;
}

void WritePam(const std::string& name, const Pam& pam) {
  std::ofstream file(name, std::ios::binary);
  file << "P7\nWIDTH " << pam.width << "\nHEIGHT " << pam.height << "\nDEPTH " << pam.depth << "\nMAXVAL 255\nTUPLTYPE "
       << (pam.depth == 4 ? "RGB_ALPHA" : "RGB") << "\nENDHDR\n";
  file.write(reinterpret_cast<const char*>(pam.pixels.data()), static_cast<std::streamsize>(pam.pixels.size()));
}

// Blue and red change places, for the layouts that begin with blue.
void TurnColours(std::uint32_t layout, unsigned depth, std::vector<unsigned char>& pixels) {
  if (layout == qxv::kLayoutBgr || layout == qxv::kLayoutBgra) {
    for (std::size_t i = 0; i + depth <= pixels.size(); i += depth) {
      std::swap(pixels[i], pixels[i + 2]);
    }
  }
}

bool Write(const qxv::PictureCodec& codec, const std::string& source, const std::string& target) {
  Pam pam = ReadPam(source);
  TurnColours(codec.Layout(), pam.depth, pam.pixels);
  return codec.Write(qxv::os::TextFromUtf8(target).c_str(), {pam.width, pam.height, pam.pixels}) == 0;
}

bool Read(qxv::PictureCodec& codec, const std::string& source, const std::string& target) {
  if (codec.Read(qxv::os::TextFromUtf8(source).c_str(), qxv::ReadExtent::Pixels) != 0 || codec.Pixels() == nullptr) {
    return false;
  }
  Pam pam{codec.Width(), codec.Height(), codec.Layout() == qxv::kLayoutBgra ? 4u : 3u, {}};
  pam.pixels.assign(codec.Pixels(), codec.Pixels() + qxv::PixelBytes(pam.width, pam.height, pam.depth));
  TurnColours(codec.Layout(), pam.depth, pam.pixels);
  WritePam(target, pam);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5 || argc % 2 == 0) {
    std::fputs("usage: image_codecs_subject write|read bmp|tga|yuv|pcx from to ...\n", stderr);
    return 2;
  }
  const bool writes = std::string(argv[1]) == "write";
  for (int i = 3; i + 1 < argc; i += 2) {
    const auto codec = MakeCodec(argv[2]);
    if (!(writes ? Write(*codec, argv[i], argv[i + 1]) : Read(*codec, argv[i], argv[i + 1]))) {
      std::fprintf(stderr, "failed: %s\n", argv[i]);
      return 1;
    }
  }
  return 0;
}
