// picture.cpp - writing images, and drawing on a canvas.

#include "qxvtool/support/picture.h"

#include "qxv/path.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

struct Written {
  const char* extension;
  unsigned int layout;
};

// What the library writes, in the layout that needs no conversion.
constexpr Written kWritten[] = {{"bmp", QXV_LAYOUT_BGR}, {"gif", QXV_LAYOUT_BGR},  {"jpg", QXV_LAYOUT_BGR},
                                {"pcx", QXV_LAYOUT_RGB}, {"tga", QXV_LAYOUT_BGRA}, {"yuv", QXV_LAYOUT_YUV}};

// A side of an image behind which nothing but the end stands.
bool ParseSide(const char* begin, const char* end, int& side) {
  const auto result = std::from_chars(begin, end, side);
  return result.ec == std::errc() && result.ptr == end && side >= 1 && side <= 16384;
}

void Check(const std::string& path, int status) {
  if (status != QXV_IMAGE_STATUS_OK) {
    throw tool::Failure(path, tool::ImageReason(status));
  }
}

// A writer that takes frames in a layout of the caller's.
std::unique_ptr<CQXVImageWriter> NewWriter(const std::string& path, tool::Size size, int frames, unsigned int inputLayout) {
  std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  const QXVImageInfo info{QXV_IMAGE_TYPE_OTHER, frames, tool::LayoutOfWrittenFile(path), size.width, size.height, 0, 0};
  const QXVPixelLayout shape{inputLayout, size.width, size.height, 0};
  Check(path, writer->Create(tool::Wide(path), &info));
  Check(path, writer->SetInputLayout(&shape));
  return writer;
}

// How far a point is from the line between two others.
double DistanceToSegment(double x, double y, double x0, double y0, double x1, double y1) {
  const double dx = x1 - x0, dy = y1 - y0, square = dx * dx + dy * dy;
  const double along = square > 0 ? std::clamp(((x - x0) * dx + (y - y0) * dy) / square, 0.0, 1.0) : 0;
  return std::hypot(x - x0 - along * dx, y - y0 - along * dy);
}

void Blend(unsigned char* pixel, tool::Colour colour, double share) {
  const unsigned char channels[3] = {colour.red, colour.green, colour.blue};
  for (int i = 0; i < 3; ++i) {
    pixel[i] = static_cast<unsigned char>(std::lround(pixel[i] + (channels[i] - pixel[i]) * share));
  }
}

}  // namespace

namespace tool {

Size ParseSize(const std::string& text) {
  const std::size_t cross = text.find('x');
  Size size;
  if (cross == std::string::npos || !ParseSide(text.data(), text.data() + cross, size.width) ||
      !ParseSide(text.data() + cross + 1, text.data() + text.size(), size.height)) {
    throw WrongUse("--size " + text + ": write it as 320x200, with sides of 1 to 16384 pixels");
  }
  return size;
}

std::string TypeName(int type) {
  static constexpr const char* kNames[] = {"other", "TGA", "BMP", "TIF", "GIF", "PCX", "YUV", "JPG", "PNG"};
  return type >= 0 && type < static_cast<int>(std::size(kNames)) ? kNames[type] : "other";
}

std::string LayoutName(unsigned int layout) {
  switch (layout) {
    case QXV_LAYOUT_BGRA:
      return "BGRA";
    case QXV_LAYOUT_BGR:
      return "BGR";
    case QXV_LAYOUT_YUV:
      return "YUV";
    case QXV_LAYOUT_VUY:
      return "VUY";
    case QXV_LAYOUT_RGB:
      return "RGB";
    default:
      return std::to_string(layout);
  }
}

std::string ImageExtension(const std::string& path) {
  std::string extension = Narrow(QXVParseExtFileName(Wide(path)));
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return extension;
}

unsigned int LayoutOfWrittenFile(const std::string& path) {
  const std::string extension = ImageExtension(path);
  std::string all;
  for (const Written& written : kWritten) {
    if (extension == written.extension) {
      return written.layout;
    }
    all += (all.empty() ? "" : ", ") + std::string(written.extension);
  }
  throw WrongUse(path + ": no type of image that is written; these are: " + all);
}

void WriteImage(const std::string& path, Size size, int frames, const std::function<Pixels(int)>& frame) {
  const auto writer = NewWriter(path, size, frames, LayoutOfWrittenFile(path));
  for (int i = 0; i < frames; ++i) {
    Check(path, writer->WriteFrame(i, frame(i).get()));
  }
}

Canvas::Canvas(Size size, Colour background)
    : m_size(size), m_rgb(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 3) {
  Fill(0, 0, size.width, size.height, background);
}

unsigned char* Canvas::PixelAt(int x, int y) {
  return &m_rgb[(static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size.width) + static_cast<std::size_t>(x)) * 3];
}

void Canvas::Fill(double left, double top, double right, double bottom, Colour colour) {
  const auto clamped = [](double at, int side) {
    return static_cast<int>(std::lround(std::clamp(at, 0.0, static_cast<double>(side))));
  };
  for (int y = clamped(top, m_size.height); y < clamped(bottom, m_size.height); ++y) {
    for (int x = clamped(left, m_size.width); x < clamped(right, m_size.width); ++x) {
      Blend(PixelAt(x, y), colour, 1);
    }
  }
}

void Canvas::Line(double x0, double y0, double x1, double y1, double width, Colour colour) {
  const double reach = width / 2 + 1;
  const auto first = [reach](double a, double b) { return static_cast<int>(std::max(0.0, std::floor(std::min(a, b) - reach))); };
  const auto last = [reach](double a, double b, int side) {
    return static_cast<int>(std::min(side - 1.0, std::ceil(std::max(a, b) + reach)));
  };
  for (int y = first(y0, y1); y <= last(y0, y1, m_size.height); ++y) {
    for (int x = first(x0, x1); x <= last(x0, x1, m_size.width); ++x) {
      const double cover = std::clamp(width / 2 + 0.5 - DistanceToSegment(x, y, x0, y0, x1, y1), 0.0, 1.0);
      Blend(PixelAt(x, y), colour, cover);
    }
  }
}

void Canvas::Save(const std::string& path) const {
  Check(path, NewWriter(path, m_size, 1, QXV_LAYOUT_RGB)->WriteFrame(0, m_rgb.data()));
}

}  // namespace tool
