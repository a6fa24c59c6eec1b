// text_conversion.cpp - a whole text file taken into memory and rewritten in the other encoding.

#include "streams/text_conversion.h"

#include "os/code_page.h"
#include "os/file.h"
#include "os/memory.h"
#include "streams/line_scan.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

namespace qxv {
namespace {

using Bytes = std::span<const unsigned char>;

os::ErrorCode Rewrite(HANDLE file, Bytes bytes) {
  if (const os::ErrorCode error = os::SeekInFile(file, 0, os::SeekOrigin::Begin); error != os::kErrorNone) {
    return error;
  }
  std::size_t written = 0;
  if (const os::ErrorCode error = os::WriteToFile(file, bytes, written); error != os::kErrorNone) {
    return error;
  }
  return os::CutFile(file);
}

bool ToUnicode(Bytes ansi, std::vector<unsigned char>& converted) {
  const std::string_view bytes(reinterpret_cast<const char*>(ansi.data()), FindByte(ansi.data(), ansi.size(), 0, 0));
  std::basic_string<QXChar> units;
  if (!os::MultiByteToWide(os::kCodePageThreadAnsi, bytes, units)) {
    return false;
  }
  const auto* first = reinterpret_cast<const unsigned char*>(units.data());
  converted.assign(std::begin(kUnicodeMark), std::end(kUnicodeMark));
  converted.insert(converted.end(), first, first + units.size() * sizeof(QXChar));
  return true;
}

bool ToAnsi(Bytes unicode, std::vector<unsigned char>& converted) {
  const Bytes text = unicode.subspan(std::min(unicode.size(), sizeof kUnicodeMark));
  std::basic_string<QXChar> units(text.size() / sizeof(QXChar), QXChar());
  if (!units.empty()) {
    std::memcpy(units.data(), text.data(), units.size() * sizeof(QXChar));
  }
  units.resize(FindUnit(units.data(), units.size(), 0, 0));
  std::string bytes;
  if (!os::WideToMultiByte(os::kCodePageThreadAnsi, units, bytes)) {
    return false;
  }
  converted.assign(bytes.begin(), bytes.end());
  return true;
}

}  // namespace

os::ErrorCode CopyFileBytes(HANDLE file, FileCopy& copy) {
  std::int64_t length = 0;
  if (const os::ErrorCode error = os::GetFileLength(file, length); error != os::kErrorNone) {
    return error;
  }
  if (length > 0xFFFFFFFF) {
    return os::kErrorFileTooLarge;
  }
  const auto size = static_cast<std::size_t>(length);
  std::unique_ptr<unsigned char[]> bytes(new unsigned char[size + FileCopy::kZerosBehind]);
  os::PreferLargePages(bytes.get(), size);
  std::size_t done = 0;
  if (const os::ErrorCode error = os::SeekInFile(file, 0, os::SeekOrigin::Begin); error != os::kErrorNone) {
    return error;
  }
  if (const os::ErrorCode error = os::ReadFromFile(file, {bytes.get(), size}, done); error != os::kErrorNone) {
    return error;
  }
  std::memset(bytes.get() + done, 0, size + FileCopy::kZerosBehind - done);
  copy.bytes = std::move(bytes);
  copy.size = static_cast<std::uint32_t>(done);
  return os::kErrorNone;
}

// KEPT: text behind the first zero character is dropped.
//   Pinned by UnicodeAnsiFileConvertKept.ConvertingDropsWhatFollowsAZeroCharacter.
bool ConvertText(std::span<const unsigned char> bytes, TextEncoding to, std::vector<unsigned char>& converted) {
  return to == TextEncoding::Unicode ? ToUnicode(bytes, converted) : ToAnsi(bytes, converted);
}

os::ErrorCode ReplaceFileBytes(HANDLE file, std::span<const unsigned char> bytes, std::span<const unsigned char> before) {
  const os::ErrorCode error = Rewrite(file, bytes);
  if (error != os::kErrorNone) {
    (void)Rewrite(file, before);  // room for them there was; the first failure is the one to tell
  }
  return error;
}

}  // namespace qxv
