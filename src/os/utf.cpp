// utf.cpp - UTF-16 and UTF-8 both ways.

#include "os/utf.h"

#include "os/utf_step.h"

#include <cstdint>

namespace qxv::os {
namespace {

constexpr std::uint16_t kEscapeBase = 0xDC00;  // + a byte of 0x80 to 0xFF

constexpr bool IsEscapedByte(char32_t unit) { return unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF; }

void AppendUtf8(std::string& bytes, char32_t value) {
  EncodeUtf8Step(value, [&bytes](char byte) { bytes.push_back(byte); });
}

void AppendUnits(Text& text, char32_t value) {
  EncodeUtf16Step(value, [&text](QXChar unit) { text.push_back(unit); });
}

/// True when the name held an unpaired surrogate.
bool EncodeName(TextView name, std::string& bytes) {
  bytes.clear();
  bytes.reserve(name.size());
  bool unpaired = false;
  for (std::size_t at = 0; at < name.size();) {
    const UtfStep step = DecodeUtf16Step(name, at);
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
    const UtfStep step = DecodeUtf8Step(bytes, at, takeSurrogates);
    if (step.valid) {
      AppendUnits(name, step.value);
      unusual = unusual || IsHighSurrogate(step.value) || IsLowSurrogate(step.value);
    } else {
      unusual = true;
      for (std::size_t i = 0; i < step.length; ++i) {
        name.push_back(static_cast<QXChar>(kEscapeBase + static_cast<unsigned char>(bytes[at + i])));
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
    const UtfStep step = DecodeUtf16Step(text, at);
    AppendUtf8(bytes, step.valid ? step.value : kReplacementCharacter);
    at += step.length;
  }
  return bytes;
}

Text TextFromUtf8(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const UtfStep step = DecodeUtf8Step(bytes, at, false /*takeSurrogates*/);
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
