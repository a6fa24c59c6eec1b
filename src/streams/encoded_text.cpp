// encoded_text.cpp - a whole text in memory, its encoding chosen by its first bytes.

#include "streams/encoded_text.h"

#include "os/code_page.h"
#include "os/file.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <string_view>

namespace qxv {
namespace {

using Bytes = std::span<const unsigned char>;
using Text = std::basic_string<QXChar>;

constexpr QXChar kReplacement = 0xFFFD;

bool IsSurrogate(QXChar unit) noexcept { return (unit & 0xF800) == 0xD800; }
bool IsHigh(QXChar unit) noexcept { return (unit & 0xFC00) == 0xD800; }
bool IsLow(QXChar unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

void ReplaceUnpairedSurrogates(Text& text) noexcept {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsSurrogate(text[i])) {
      continue;
    }
    if (IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1])) {
      ++i;
    } else {
      text[i] = kReplacement;
    }
  }
}

Text DecodeUtf16(Bytes bytes, bool bigEndian) {
  Text text(bytes.size() / sizeof(QXChar), QXChar());
  if (!text.empty()) {
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(QXChar));
  }
  if (bigEndian) {
    for (QXChar& unit : text) {
      unit = static_cast<QXChar>((unit & 0xFF) << 8 | unit >> 8);
    }
  }
  ReplaceUnpairedSurrogates(text);
  if (bytes.size() % sizeof(QXChar) != 0) {
    text += kReplacement;
  }
  return text;
}

bool BeginsWith(Bytes bytes, std::string_view mark) noexcept {
  return bytes.size() >= mark.size() && std::memcmp(bytes.data(), mark.data(), mark.size()) == 0;
}

os::ErrorCode DecodePage(Bytes bytes, unsigned codePage, Text& text) {
  const std::string_view chars(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (os::MultiByteToWide(codePage, chars, text)) {
    return os::kErrorNone;
  }
  return os::CodePageExists(codePage) ? os::kErrorFileTooLarge : os::kErrorInvalidParameter;
}

}  // namespace

os::ErrorCode DecodeText(std::span<const unsigned char> bytes, unsigned codePage, Text& text) {
  if (bytes.size() > std::size_t{INT_MAX}) {
    return os::kErrorFileTooLarge;
  }
  if (BeginsWith(bytes, "\xFF\xFE") || BeginsWith(bytes, "\xFE\xFF")) {
    text = DecodeUtf16(bytes.subspan(2), bytes[0] == 0xFE);
    return os::kErrorNone;
  }
  return BeginsWith(bytes, "\xEF\xBB\xBF") ? DecodePage(bytes.subspan(3), os::kCodePageUtf8, text)
                                           : DecodePage(bytes, codePage, text);
}

os::ErrorCode ReadEncodedText(const QXChar* name, std::uint64_t maxBytes, unsigned codePage, Text& text) {
  os::OpenOptions options;
  options.share = os::kShareRead | os::kShareWrite;
  os::File file;
  if (const os::ErrorCode error = file.Open(name, options); error != os::kErrorNone) {
    return error;
  }
  std::int64_t length = 0;
  if (const os::ErrorCode error = os::GetFileLength(file.Handle(), length); error != os::kErrorNone) {
    return error;
  }
  if (static_cast<std::uint64_t>(length) > std::min<std::uint64_t>(maxBytes, INT_MAX)) {
    return os::kErrorFileTooLarge;
  }
  const std::unique_ptr<unsigned char[]> bytes(new unsigned char[static_cast<std::size_t>(length)]);
  std::size_t done = 0;
  const std::span<unsigned char> all(bytes.get(), static_cast<std::size_t>(length));
  if (const os::ErrorCode error = os::ReadFromFile(file.Handle(), all, done); error != os::kErrorNone) {
    return error;
  }
  return DecodeText(all.first(done), codePage, text);
}

}  // namespace qxv
