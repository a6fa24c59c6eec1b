// pixel_oracle.h - the rules of layouts and resampling once more, a pixel at a time as they are stated: what the library is
// compared with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pixel_oracle {

using Bytes = std::vector<unsigned char>;
using Pixel = std::array<unsigned char, 4>;

inline constexpr std::uint32_t kLayouts[] = {1, 4, 8, 0x02000000, 0x40000000};

inline std::size_t BytesOf(std::uint32_t layout) {
  return layout == 4 || layout == 8 || layout == 0x02000000 || layout == 0x40000000 ? 3 : 4;
}

inline Bytes Mixed(std::size_t count, unsigned seed) {
  Bytes bytes(count);
  std::uint32_t state = seed * 2654435761u + 12345u;
  for (unsigned char& byte : bytes) {
    state = state * 1664525u + 1013904223u;
    byte = static_cast<unsigned char>((state >> 16) % 7 == 0 ? (state >> 31) * 255 : state >> 24);
  }
  return bytes;
}

inline unsigned char Round(float value) {
  if (value < -0.499f) {
    value = -0.499f;
  }
  if (value > 255.499f) {
    value = 255.499f;
  }
  return static_cast<unsigned char>(value + 0.5f);
}

inline Pixel YuvToColours(int Y, int U, int V) {
  const float y = static_cast<float>(Y - 16), u = static_cast<float>(U - 128), v = static_cast<float>(V - 128);
  return {255, Round(1.164352f * y + 0.000016f * u + 1.596014f * v), Round(1.164402f * y - 0.391741f * u - 0.812962f * v),
          Round(1.164345f * y + 2.017219f * u + 0.000018f * v)};
}

inline Pixel ColoursToYuv(int R, int G, int B) {
  const float r = static_cast<float>(R), g = static_cast<float>(G), b = static_cast<float>(B);
  return {0, Round(0.25679f * r + 0.504135f * g + 0.0979f * b + 16.0f),
          Round(-0.148224f * r - 0.290985f * g + 0.439224f * b + 128.0f),
          Round(0.439224f * r - 0.367783f * g - 0.071426f * b + 128.0f)};
}

inline Pixel ToWorking(std::uint32_t layout, const unsigned char* in) {
  switch (layout) {
    case 1:
      return {in[3], in[2], in[1], in[0]};
    case 4:
      return {255, in[2], in[1], in[0]};
    case 8:
      return YuvToColours(in[0], in[1], in[2]);
    case 0x02000000:
      return YuvToColours(in[2], in[1], in[0]);
    default:
      return {255, in[0], in[1], in[2]};
  }
}

inline Bytes FromWorking(std::uint32_t layout, const Pixel& in) {
  const Pixel yuv = ColoursToYuv(in[1], in[2], in[3]);
  switch (layout) {
    case 1:
      return {in[3], in[2], in[1], in[0]};
    case 4:
      return {in[3], in[2], in[1]};
    case 8:
      return {yuv[1], yuv[2], yuv[3]};
    case 0x02000000:
      return {yuv[3], yuv[2], yuv[1]};
    case 0x40000000:
      return {in[1], in[2], in[3]};
    default:
      return {in[0], in[1], in[2], in[3]};
  }
}

inline Bytes RowToWorking(std::uint32_t layout, const Bytes& in) {
  Bytes out;
  for (std::size_t i = 0; i < in.size(); i += BytesOf(layout)) {
    const Pixel pixel = ToWorking(layout, &in[i]);
    out.insert(out.end(), pixel.begin(), pixel.end());
  }
  return out;
}

inline Bytes RowFromWorking(std::uint32_t layout, const Bytes& in) {
  Bytes out;
  for (std::size_t i = 0; i < in.size(); i += 4) {
    const Bytes pixel = FromWorking(layout, {in[i], in[i + 1], in[i + 2], in[i + 3]});
    out.insert(out.end(), pixel.begin(), pixel.end());
  }
  return out;
}

struct Shape {
  std::uint32_t layout = 0;
  int width = 0, height = 0, padding = 0;
};

/// One byte of a pixel of the result at (column, row) of a picture of another size.
template <class At>
unsigned char Blend(int column, int row, const Shape& from, const Shape& to, At at) {
  const float y = static_cast<float>(row) * static_cast<float>(from.height) / static_cast<float>(to.height);
  const float x = static_cast<float>(column) * static_cast<float>(from.width) / static_cast<float>(to.width);
  int y0 = static_cast<int>(y), x0 = static_cast<int>(x);
  int y1 = y0 + 1, x1 = x0 + 1;
  if (y1 >= from.height) {
    y1 = y0--;
  }
  if (x1 >= from.width) {
    x1 = x0--;
  }
  const float up = static_cast<float>(y1) - y, down = y - static_cast<float>(y0);
  const float left = static_cast<float>(x1) - x, right = x - static_cast<float>(x0);
  const auto inside = [](int index) { return index < 0 ? 0 : index; };
  const int r0 = inside(y0), r1 = inside(y1), c0 = inside(x0), c1 = inside(x1);
  return Round(up * left * at(r0, c0) + up * right * at(r0, c1) + down * left * at(r1, c0) + down * right * at(r1, c1));
}

inline Bytes Frame(const Shape& from, const Bytes& in, const Shape& to) {
  const bool isYuv = from.layout == 8 || from.layout == 0x02000000;
  const std::size_t bytes = BytesOf(from.layout);
  const std::size_t stride = static_cast<std::size_t>(from.width) * bytes + static_cast<std::size_t>(from.padding);
  const auto pixelAt = [&](int row, int column) {
    return &in[static_cast<std::size_t>(row) * stride + static_cast<std::size_t>(column) * bytes];
  };
  const bool sameSize = from.width == to.width && from.height == to.height;
  Bytes out;
  for (int row = 0; row < to.height; ++row) {
    for (int column = 0; column < to.width; ++column) {
      Pixel working{};
      if (sameSize) {
        working = ToWorking(from.layout, pixelAt(row, column));
      } else if (isYuv) {
        unsigned char blended[4] = {};  // 3 of them used
        for (std::size_t n = 0; n < 3; ++n) {
          blended[n] = Blend(column, row, from, to, [&](int r, int c) { return static_cast<float>(pixelAt(r, c)[n]); });
        }
        working = ToWorking(from.layout, blended);
      } else {
        for (std::size_t n = 0; n < 4; ++n) {
          working[n] = Blend(column, row, from, to,
                             [&](int r, int c) { return static_cast<float>(ToWorking(from.layout, pixelAt(r, c))[n]); });
        }
      }
      const Bytes pixel = FromWorking(to.layout, working);
      out.insert(out.end(), pixel.begin(), pixel.end());
    }
    out.insert(out.end(), static_cast<std::size_t>(to.padding), 0);
  }
  return out;
}

}  // namespace pixel_oracle
