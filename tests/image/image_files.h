// image_files.h - readers, writers and picture files of every type, for the tests of the two interfaces.
#pragma once

#include "image/codec_files.h"
#include "image/pcx_file.h"
#include "qxv/image.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>

namespace image_test {

using ReaderPointer = std::unique_ptr<CQXVImageReader>;
using WriterPointer = std::unique_ptr<CQXVImageWriter>;

inline ReaderPointer NewReader() { return ReaderPointer(QXVCOMMONLIB_GetImageReader()); }
inline WriterPointer NewWriter() { return WriterPointer(QXVCOMMONLIB_GetImageWriter()); }

/// The status as it is written down: 0x89601A11, 0xFFFFFFFF for -1.
inline std::uint32_t Code(int status) { return static_cast<std::uint32_t>(status); }

/// A file that other programs wrote.
inline std::string SampleFile(const std::string& name) {
  std::ifstream file(std::string(QXV_TEST_DATA) + "/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

class ImageFolder {
 public:
  support::Text Name(const support::Text& file) const { return m_folder.File(file); }
  support::Text Put(const support::Text& file, const std::string& bytes) const {
    EXPECT_TRUE(support::WriteBytes(Name(file), bytes));
    return Name(file);
  }
  std::string Get(const support::Text& file) const { return support::ReadBytes(Name(file)); }
  bool Has(const support::Text& file) const { return support::Exists(Name(file)); }

 private:
  support::TempFolder m_folder;
};

/// A frame that was handed out: its bytes to the end of the allocation.
struct Given {
  std::uint32_t status = 0;
  bool hasBuffer = false;
  std::string bytes{};

  bool operator==(const Given&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Given& given) {
  return out << std::hex << "status " << given.status << std::dec << (given.hasBuffer ? " bytes " : " no buffer ")
             << Hex(given.bytes.substr(0, 400));
}

inline Given Buffer(const std::string& bytes) { return {0, true, bytes}; }
inline Given Refusal(std::uint32_t status) { return {status}; }

/// Frees the buffer. AddressSanitizer gives empty blocks a byte, whose value is not looked at.
inline Given Take(int status, unsigned char* buffer, bool isEmpty = false) {
  Given given{Code(status), buffer != nullptr};
  if (buffer != nullptr && !isEmpty) {
    given.bytes.assign(reinterpret_cast<const char*>(buffer), support::AllocationSize(buffer));
  }
  delete[] buffer;
  return given;
}

inline Given ReadRaw(CQXVImageReader& reader, int frame = 0) {
  void* buffer = nullptr;
  const int status = reader.ReadRawFrame(frame, &buffer);
  return Take(status, static_cast<unsigned char*>(buffer));
}

inline Given ReadAs(CQXVImageReader& reader, const QXVPixelLayout& output, unsigned int frame = 0) {
  EXPECT_EQ(reader.SetOutputLayout(&output), 0);
  unsigned char* buffer = nullptr;
  const int status = reader.ReadFrame(frame, &buffer);
  const bool isEmpty = output.nHeight == 0 || (output.nWidth == 0 && output.nPadding == 0);
  return Take(status, buffer, isEmpty);
}

struct Info {
  std::uint32_t status = 0;
  QXVImageInfo record{};

  bool operator==(const Info& other) const {
    const QXVImageInfo &a = record, &b = other.record;
    return status == other.status && a.nType == b.nType && a.nFrames == b.nFrames && a.nPixelLayout == b.nPixelLayout &&
           a.nWidth == b.nWidth && a.nHeight == b.nHeight && a.nPadding == b.nPadding && a.nFrameTime == b.nFrameTime;
  }
};

inline std::ostream& operator<<(std::ostream& out, const Info& info) {
  const QXVImageInfo& r = info.record;
  return out << std::hex << "status " << info.status << " layout " << r.nPixelLayout << std::dec << " type " << r.nType
             << " frames " << r.nFrames << ' ' << r.nWidth << " x " << r.nHeight << " padding " << r.nPadding << " time "
             << r.nFrameTime;
}

/// What stands in a record before it is asked for.
inline constexpr QXVImageInfo kUntouched = {71, 72, 73, 74, 75, 76, 77};

inline Info InfoEx(CQXVImageReader& reader) {
  Info info{0, kUntouched};
  info.status = Code(reader.GetImageInfoEx(&info.record));
  return info;
}
inline Info InfoOf(CQXVImageReader& reader) {
  Info info{0, kUntouched};
  info.status = Code(reader.GetImageInfo(&info.record));
  return info;
}

/// A reader of this file.
inline ReaderPointer ReaderOf(const support::Text& name) {
  ReaderPointer reader = NewReader();
  EXPECT_EQ(reader->SetFile(name.c_str()), 0) << support::Printable(name);
  return reader;
}

// Files field by field, of one row or more, rows of pixels top-down.

/// 24 bits: pixels B, G, R.
inline std::string BmpFile(unsigned width, const std::string& pixels, unsigned bits = 24, unsigned height = 1) {
  const std::size_t rowBytes = pixels.size() / height;
  std::string rows;
  for (std::size_t y = height; y-- > 0;) {
    rows += pixels.substr(y * rowBytes, rowBytes) + Zeros((4 - rowBytes % 4) % 4);
  }
  return "BM" + U32(54 + rows.size()) + U32(0) + U32(54) + U32(40) + U32(width) + U32(height) + U16(1) + U16(bits) + U32(0) +
         U32(rows.size()) + Zeros(16) + rows;
}

/// 32 bits: pixels B, G, R, A.
inline std::string TgaFile(unsigned width, const std::string& pixels, unsigned height = 1) {
  return Bytes({0, 0, 2}) + Zeros(5) + U16(0) + U16(0) + U16(width) + U16(height) + Bytes({32, 0x20}) + pixels;
}

/// Pixels Y, U, V.
inline std::string YuvFile(unsigned width, const std::string& pixels, unsigned height = 1) {
  return "YUV" + Zeros(1) + U32(31 + pixels.size()) + U16(31) + Zeros(5) + U16(width) + U16(height) + Zeros(12) + pixels;
}

/// Pixels R, G, B, every byte a run of one.
inline std::string PcxFile(unsigned width, const std::string& pixels, unsigned height = 1) {
  constexpr unsigned kRun = 0xC0;  // from here on a byte tells a run
  const std::size_t rowBytes = pixels.size() / height;
  std::string planes;
  for (std::size_t row = 0; row < pixels.size(); row += rowBytes) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      for (std::size_t i = row + channel; i < row + rowBytes; i += 3) {
        if (static_cast<unsigned char>(pixels[i]) >= kRun) {
          planes += static_cast<char>(kRun + 1);
        }
        planes += pixels[i];
      }
    }
  }
  return pcx::File(pcx::Sides(width, height), planes);
}

}  // namespace image_test
