// image_frames_subject.cpp - the reader and the writer on command: lines of standard input, the pixels in files. Each line is
// answered by one: the status as 8 hexadecimal digits, then what is told.
//   info FILE                                              type, frames, layout, width, height, frame time
//   raw FRAME FILE OUT                                     number of bytes
//   read FRAME LAYOUT WIDTH HEIGHT PADDING FILE OUT        number of bytes
//   write FRAMES TARGET INPUT FILE IN                      target and input are LAYOUT WIDTH HEIGHT PADDING; the frames follow
//                                                          each other in one file
//   digest FRAME FILE                                      CRC-32/MPEG-2 of the raw frame
// Names are without blanks.

#include "image/layout_codes.h"
#include "os/utf.h"
#include "qxv/crc.h"
#include "qxv/image.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

namespace {

using Buffer = std::unique_ptr<unsigned char[]>;

std::size_t BytesPerPixel(unsigned int layout) { return layout == qxv::kLayoutBgra ? 4 : 3; }

void Save(const std::string& name, const Buffer& buffer, std::size_t size) {
  std::ofstream file(name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(buffer.get()), static_cast<std::streamsize>(size));
}

CQXString NameOf(const std::string& path) { return CQXString(qxv::os::TextFromUtf8(path).c_str()); }

struct Reader {
  explicit Reader(const std::string& path) : object(QXVCOMMONLIB_GetImageReader()), status(object->SetFile(NameOf(path))) {}
  std::unique_ptr<CQXVImageReader> object;
  int status;
};

int Info(std::istream& line, std::ostream& answer) {
  std::string path;
  line >> path;
  const Reader reader(path);
  QXVImageInfo info{};
  const int status = reader.status != 0 ? reader.status : reader.object->GetImageInfoEx(&info);
  answer << ' ' << info.nType << ' ' << info.nFrames << ' ' << info.nPixelLayout << ' ' << info.nWidth << ' ' << info.nHeight
         << ' ' << info.nFrameTime;
  return status;
}

// A frame in the file's own shape, and its size.
int Raw(const std::string& path, int frame, Buffer& buffer, std::size_t& size) {
  const Reader reader(path);
  QXVImageInfo info{};
  int status = reader.status != 0 ? reader.status : reader.object->GetImageInfoEx(&info);
  void* given = nullptr;
  status = status != 0 ? status : reader.object->ReadRawFrame(frame, &given);
  buffer.reset(static_cast<unsigned char*>(given));
  size = static_cast<std::size_t>(info.nWidth) * static_cast<std::size_t>(info.nHeight) * BytesPerPixel(info.nPixelLayout);
  return status;
}

int SaveRaw(std::istream& line, std::ostream& answer) {
  int frame = 0;
  std::string path, out;
  line >> frame >> path >> out;
  Buffer buffer;
  std::size_t size = 0;
  const int status = Raw(path, frame, buffer, size);
  if (buffer) {
    Save(out, buffer, size);
    answer << ' ' << size;
  }
  return status;
}

int Digest(std::istream& line, std::ostream& answer) {
  int frame = 0;
  std::string path;
  line >> frame >> path;
  Buffer buffer;
  std::size_t size = 0;
  const int status = Raw(path, frame, buffer, size);
  if (buffer) {
    answer << ' ' << QXVCalculateCRC(buffer.get(), buffer.get() + size);
  }
  return status;
}

int Read(std::istream& line, std::ostream& answer) {
  unsigned frame = 0;
  QXVPixelLayout shape{};
  std::string path, out;
  line >> frame >> shape.nPixelLayout >> shape.nWidth >> shape.nHeight >> shape.nPadding >> path >> out;
  const Reader reader(path);
  int status = reader.status != 0 ? reader.status : reader.object->SetOutputLayout(&shape);
  unsigned char* given = nullptr;
  status = status != 0 ? status : reader.object->ReadFrame(frame, &given);
  const Buffer buffer(given);
  if (buffer) {
    const std::size_t size = (static_cast<std::size_t>(shape.nWidth) * 4 + static_cast<std::size_t>(shape.nPadding)) *
                             static_cast<std::size_t>(shape.nHeight);
    Save(out, buffer, size);
    answer << ' ' << size;
  }
  return status;
}

int Write(std::istream& line, std::ostream& /*answer*/) {
  QXVImageInfo target{};
  QXVPixelLayout input{};
  std::string path, in;
  line >> target.nFrames >> target.nPixelLayout >> target.nWidth >> target.nHeight >> target.nPadding >> input.nPixelLayout >>
      input.nWidth >> input.nHeight >> input.nPadding >> path >> in;
  std::ifstream file(in, std::ios::binary);
  const std::string pixels(std::istreambuf_iterator<char>(file), {});
  const std::size_t frameBytes = pixels.size() / static_cast<std::size_t>(target.nFrames);
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  int status = writer->Create(NameOf(path), &target);
  status = status != 0 ? status : writer->SetInputLayout(&input);
  for (int frame = 0; frame < target.nFrames && status == 0; ++frame) {
    status = writer->WriteFrame(
        frame, reinterpret_cast<const unsigned char*>(pixels.data()) + static_cast<std::size_t>(frame) * frameBytes);
  }
  return status;
}

}  // namespace

int main() {
  constexpr struct {
    const char* name;
    int (*run)(std::istream&, std::ostream&);
  } kCommands[] = {{"info", &Info}, {"raw", &SaveRaw}, {"digest", &Digest}, {"read", &Read}, {"write", &Write}};
  for (std::string text; std::getline(std::cin, text);) {
    std::istringstream line(text);
    std::ostringstream answer;
    std::string name;
    line >> name;
    for (const auto& command : kCommands) {
      if (name == command.name) {
        char status[9];
        std::snprintf(status, sizeof status, "%08X", static_cast<unsigned>(command.run(line, answer)));
        std::cout << status << answer.str() << std::endl;
      }
    }
  }
}
