// utf.cpp - UTF-16 and UTF-8 both ways.

#include "os/utf.h"

#include <cstdint>

namespace qxv::os {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::uint16_t kEscapeBase = 0xDC00;  // + a byte of 0x80 to 0xFF

constexpr bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
constexpr bool IsEscapedByte(char32_t unit) { return unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF; }

constexpr char32_t UnitAt(TextView text, std::size_t at) { return static_cast<std::uint16_t>(text[at]); }
constexpr unsigned ByteAt(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

struct Step {
  char32_t value;
  std::size_t length;  // of an ill-formed piece: the bytes that it takes
  bool valid;
};

Step DecodeStep(std::string_view bytes, std::size_t at, bool takeSurrogates) {
  const unsigned first = ByteAt(bytes, at);
  if (first < 0x80) {
    return {first, 1, true};
  }
  std::size_t length = 0;
  unsigned low = 0x80;  // bounds of the second byte: no overlong form, nothing above U+10FFFF
  unsigned high = 0xBF;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    low = first == 0xE0 ? 0xA0 : low;
    high = first == 0xED && !takeSurrogates ? 0x9F : high;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    low = first == 0xF0 ? 0x90 : low;
    high = first == 0xF4 ? 0x8F : high;
  } else {
    return {kReplacement, 1, false};
  }
  char32_t value = first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (at + i >= bytes.size() || ByteAt(bytes, at + i) < low || ByteAt(bytes, at + i) > high) {
      return {kReplacement, i, false};
    }
    value = value << 6 | (ByteAt(bytes, at + i) & 0x3F);
    low = 0x80;
    high = 0xBF;
  }
  return {value, length, true};
}

Step CodePointAt(TextView text, std::size_t at) {
  const char32_t unit = UnitAt(text, at);
  if (IsHigh(unit) && at + 1 < text.size() && IsLow(UnitAt(text, at + 1))) {
    return {0x10000 + ((unit - 0xD800) << 10) + (UnitAt(text, at + 1) - 0xDC00), 2, true};
  }
  return {unit, 1, !IsHigh(unit) && !IsLow(unit)};
}

void AppendUtf8(std::string& bytes, char32_t value) {
  const auto put = [&bytes](char32_t byte) { bytes.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (value < 0x80) {
    put(value);
  } else if (value < 0x800) {
    put(0xC0 | value >> 6);
    put(0x80 | (value & 0x3F));
  } else if (value < 0x10000) {
    put(0xE0 | value >> 12);
    put(0x80 | (value >> 6 & 0x3F));
    put(0x80 | (value & 0x3F));
  } else {
    put(0xF0 | value >> 18);
    put(0x80 | (value >> 12 & 0x3F));
    put(0x80 | (value >> 6 & 0x3F));
    put(0x80 | (value & 0x3F));
  }
}

void AppendUnits(Text& text, char32_t value) {
  if (value < 0x10000) {
    text.push_back(static_cast<QXChar>(value));
  } else {
    text.push_back(static_cast<QXChar>(0xD800 + ((value - 0x10000) >> 10)));
    text.push_back(static_cast<QXChar>(0xDC00 + ((value - 0x10000) & 0x3FF)));
  }
}

/// True when the name held an unpaired surrogate.
bool EncodeName(TextView name, std::string& bytes) {
  bytes.clear();
  bytes.reserve(name.size());
  bool unpaired = false;
  for (std::size_t at = 0; at < name.size();) {
    const Step step = CodePointAt(name, at);
    at += step.length;
    unpaired = unpaired || !step.valid;
    if (IsEscapedByte(step.value)) {
      bytes.push_back(static_cast<char>(static_cast<unsigned char>(step.value - kEscapeBase)));
    } else {
      AppendUtf8(bytes, step.value);
    }
  }
  return unpaired;
}

/// True when something was not plain UTF-8.
bool DecodeName(std::string_view bytes, bool takeSurrogates, Text& name) {
  name.clear();
  name.reserve(bytes.size());
  bool unusual = false;
  for (std::size_t at = 0; at < bytes.size();) {
    const Step step = DecodeStep(bytes, at, takeSurrogates);
    if (step.valid) {
      AppendUnits(name, step.value);
      unusual = unusual || IsHigh(step.value) || IsLow(step.value);
    } else {
      unusual = true;
      for (std::size_t i = 0; i < step.length; ++i) {
        name.push_back(static_cast<QXChar>(kEscapeBase + ByteAt(bytes, at + i)));
      }
    }
    at += step.length;
  }
  return unusual;
}

}  // namespace

std::string Utf8FromText(TextView text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Step step = CodePointAt(text, at);
    AppendUtf8(bytes, step.valid ? step.value : kReplacement);
    at += step.length;
  }
  return bytes;
}

Text TextFromUtf8(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const Step step = DecodeStep(bytes, at, false /*takeSurrogates*/);
    AppendUnits(text, step.value);
    at += step.length;
  }
  return text;
}

bool FileNameToUtf8(TextView name, std::string& bytes) {
  if (name.find(QXChar(0)) != TextView::npos) {
    return false;
  }
  return !EncodeName(name, bytes) || FileNameFromUtf8(bytes) == name;
}

Text FileNameFromUtf8(std::string_view bytes) {
  Text name;
  if (DecodeName(bytes, true /*takeSurrogates*/, name)) {
    // Three-byte surrogates beside each other, or beside an escaped byte, would pair up; then every odd byte is escaped.
    std::string again;
    (void)EncodeName(name, again);
    if (again != bytes) {
      (void)DecodeName(bytes, false /*takeSurrogates*/, name);
    }
  }
  return name;
}

}  // namespace qxv::os
