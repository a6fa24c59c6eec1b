// text.cpp - UTF-8 and UTF-16, and columns on a terminal.

#include "qxvtool/support/text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace tool {

namespace {

struct Point {
  char32_t value;
  std::size_t bytes;  // 0: the first byte begins no character
};

// The shortest form only, no surrogates, nothing above U+10FFFF.
Point PointAt(std::string_view utf8, std::size_t at) {
  const auto first = static_cast<unsigned char>(utf8[at]);
  if (first < 0x80) {
    return {first, 1};
  }
  const std::size_t bytes = first >= 0xC2 && first < 0xE0   ? 2
                            : first >= 0xE0 && first < 0xF0 ? 3
                            : first >= 0xF0 && first < 0xF5 ? 4
                                                            : 0;
  if (bytes == 0 || utf8.size() - at < bytes) {
    return {first, 0};
  }
  char32_t value = first & (0x7Fu >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    const auto next = static_cast<unsigned char>(utf8[at + i]);
    if ((next & 0xC0u) != 0x80) {
      return {first, 0};
    }
    value = value << 6 | (next & 0x3Fu);
  }
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool good = value >= kSmallest.at(bytes) && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
  return {good ? value : first, good ? bytes : 0};
}

struct Range {
  char32_t first;
  char32_t last;
};

bool IsIn(char32_t point, const Range* begin, const Range* end) {
  return std::any_of(begin, end, [point](const Range& range) { return point >= range.first && point <= range.last; });
}

std::size_t ColumnsOfPoint(char32_t point) {
  static constexpr Range kWide[] = {{0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
                                    {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x20000, 0x3FFFD}};
  static constexpr Range kNone[] = {{0x300, 0x36F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};
  return IsIn(point, std::begin(kNone), std::end(kNone)) ? 0 : IsIn(point, std::begin(kWide), std::end(kWide)) ? 2 : 1;
}

}  // namespace

CQXString Wide(std::string_view utf8) {
  std::basic_string<QXChar> units;
  units.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const Point point = PointAt(utf8, at);
    if (point.bytes == 0) {
      units += static_cast<QXChar>(0xDC00 + point.value);
    } else if (point.value < 0x10000) {
      units += static_cast<QXChar>(point.value);
    } else {
      units += static_cast<QXChar>(0xD800 + ((point.value - 0x10000) >> 10));
      units += static_cast<QXChar>(0xDC00 + ((point.value - 0x10000) & 0x3FF));
    }
    at += std::max<std::size_t>(point.bytes, 1);
  }
  return qxv::ToString(units);
}

std::string Narrow(const CQXString& text) { return qxv::ToUtf8(qxv::ToView(text)); }

bool IsUtf8(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const Point point = PointAt(bytes, at);
    if (point.bytes == 0) {
      return false;
    }
    at += point.bytes;
  }
  return true;
}

std::size_t ColumnsOf(std::string_view utf8) {
  std::size_t columns = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const Point point = PointAt(utf8, at);
    columns += ColumnsOfPoint(point.value);
    at += std::max<std::size_t>(point.bytes, 1);
  }
  return columns;
}

std::string PadRight(std::string_view utf8, std::size_t columns) {
  const std::size_t taken = ColumnsOf(utf8);
  return std::string(utf8) + std::string(columns > taken ? columns - taken : 0, ' ');
}

std::string PadLeft(std::string_view utf8, std::size_t columns) {
  const std::size_t taken = ColumnsOf(utf8);
  return std::string(columns > taken ? columns - taken : 0, ' ') + std::string(utf8);
}

std::string Shorten(std::string_view utf8, std::size_t columns) {
  if (ColumnsOf(utf8) <= columns) {
    return std::string(utf8);
  }
  std::string kept;
  std::size_t taken = 3;
  for (std::size_t at = 0; at < utf8.size();) {
    const Point point = PointAt(utf8, at);
    const std::size_t bytes = std::max<std::size_t>(point.bytes, 1);
    taken += ColumnsOfPoint(point.value);
    if (taken > columns) {
      break;
    }
    kept += utf8.substr(at, bytes);
    at += bytes;
  }
  return kept + "...";
}

std::string SizeText(double bytes) {
  static constexpr const char* kUnits[] = {"bytes", "KiB", "MiB", "GiB", "TiB", "PiB"};
  std::size_t unit = 0;
  while (bytes >= 1024 && unit + 1 < std::size(kUnits)) {
    bytes /= 1024;
    ++unit;
  }
  char text[64];
  (void)std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, kUnits[unit]);
  return text;
}

std::string Trimmed(std::string_view utf8) {
  const std::size_t first = utf8.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos ? std::string()
                                         : std::string(utf8.substr(first, utf8.find_last_not_of(" \t\r\n") - first + 1));
}

}  // namespace tool
