// picture.h - image files as the commands need them: what can be written, and a canvas to draw on.
#pragma once

#include "qxv/image.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tool {

struct Size {
  int width = 0;
  int height = 0;
};

/// "320x200"; both sides 1 to 16384. Throws WrongUse.
Size ParseSize(const std::string& text);

std::string TypeName(int type);
std::string LayoutName(unsigned int layout);

/// The extension, which decides the type, in lower case.
std::string ImageExtension(const std::string& path);

/// The layout that files of this name's type hold. Throws WrongUse for a type that the library does not write.
unsigned int LayoutOfWrittenFile(const std::string& path);

/// Pixels in rows from top to bottom, without padding.
using Pixels = std::unique_ptr<unsigned char[]>;

/// Writes an image of one frame, or more for a GIF.
/// @param frame  gives the pixels of a frame in the layout of LayoutOfWrittenFile
void WriteImage(const std::string& path, Size size, int frames, const std::function<Pixels(int)>& frame);

struct Colour {
  unsigned char red, green, blue;
};

/// A surface for curves. Coordinates in pixels, the centre of the first one at 0, 0; what lies outside is not drawn.
class Canvas {
 public:
  Canvas(Size size, Colour background);

  Size GetSize() const { return m_size; }
  void Fill(double left, double top, double right, double bottom, Colour colour);
  /// A line of a given width with soft edges.
  void Line(double x0, double y0, double x1, double y1, double width, Colour colour);
  void Disc(double x, double y, double radius, Colour colour) { Line(x, y, x, y, 2 * radius, colour); }

  void Save(const std::string& path) const;

 private:
  unsigned char* PixelAt(int x, int y);

  Size m_size;
  std::vector<unsigned char> m_rgb;
};

}  // namespace tool
