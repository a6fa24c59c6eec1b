// c_runtime.cpp - lengths, comparisons, path parts and the clock's text. Numbers stand in number_text.cpp.

#include "os/c_runtime.h"

#include "os/wide_format.h"

#include <algorithm>
#include <initializer_list>

namespace qxv::os {

namespace {

constexpr int kInvalid = 22;  // EINVAL and ERANGE as Windows numbers them
constexpr int kTooSmall = 34;

constexpr unsigned Folded(QXChar unit) noexcept { return unit >= QXT('A') && unit <= QXT('Z') ? unit + 32u : unit; }

template <typename Fold>
int Compare(const QXChar* left, const QXChar* right, std::size_t count, Fold fold) noexcept {
  static constexpr QXChar kEmpty[] = {0};
  left = left == nullptr ? kEmpty : left;
  right = right == nullptr ? kEmpty : right;
  for (std::size_t i = 0; i < count; ++i) {
    const int difference = static_cast<int>(fold(left[i])) - static_cast<int>(fold(right[i]));
    if (difference != 0 || left[i] == 0) {
      return difference;
    }
  }
  return 0;
}

bool HalfGiven(const PathPart& part) noexcept { return (part.text == nullptr) != (part.room == 0); }

bool Fits(const PathPart& part, std::size_t count) noexcept { return part.text == nullptr || count < part.room; }

void Assign(const PathPart& part, const QXChar* first, std::size_t count) noexcept {
  if (part.text != nullptr) {
    *std::copy_n(first, count, part.text) = 0;
  }
}

}  // namespace

std::size_t TextLength(const QXChar* text) noexcept { return TextLength(text, SIZE_MAX); }

std::size_t TextLength(const QXChar* text, std::size_t limit) noexcept {
  std::size_t length = 0;
  if (text != nullptr) {
    while (length < limit && text[length] != 0) {
      ++length;
    }
  }
  return length;
}

int CompareText(const QXChar* left, const QXChar* right, std::size_t count) noexcept {
  return Compare(left, right, count, [](QXChar unit) { return static_cast<unsigned>(unit); });
}

int CompareTextNoCase(const QXChar* left, const QXChar* right, std::size_t count) noexcept {
  return Compare(left, right, count, Folded);
}

int SplitPath(const QXChar* path, PathPart drive, PathPart folder, PathPart name, PathPart extension) noexcept {
  if (path == nullptr || HalfGiven(drive) || HalfGiven(folder) || HalfGiven(name) || HalfGiven(extension)) {
    for (const PathPart& part : {drive, folder, name, extension}) {
      if (part.text != nullptr && part.room != 0) {
        *part.text = 0;
      }
    }
    return kInvalid;
  }
  const QXChar* const folderStart = path[0] != 0 && path[1] == QXT(':') ? path + 2 : path;
  const QXChar* nameStart = folderStart;
  const QXChar* end = folderStart;
  for (; *end != 0; ++end) {
    if (*end == QXT('\\') || *end == QXT('/')) {
      nameStart = end + 1;
    }
  }
  const QXChar* extensionStart = end;
  for (const QXChar* at = end; at != nameStart;) {
    if (*--at == QXT('.')) {
      extensionStart = at;
      break;
    }
  }
  const auto driveCount = static_cast<std::size_t>(folderStart - path);
  const auto folderCount = static_cast<std::size_t>(nameStart - folderStart);
  const auto nameCount = static_cast<std::size_t>(extensionStart - nameStart);
  const auto extensionCount = static_cast<std::size_t>(end - extensionStart);
  if (!Fits(drive, driveCount) || !Fits(folder, folderCount) || !Fits(name, nameCount) || !Fits(extension, extensionCount)) {
    for (const PathPart& part : {drive, folder, name, extension}) {
      Assign(part, path, 0);
    }
    return kTooSmall;
  }
  Assign(drive, path, driveCount);
  Assign(folder, folderStart, folderCount);
  Assign(name, nameStart, nameCount);
  Assign(extension, extensionStart, extensionCount);
  return 0;
}

int ClockText(const SYSTEMTIME& time, QXChar* out, std::size_t capacity) noexcept {
  static constexpr QXChar kDays[] = QXT("SunMonTueWedThuFriSat???");
  static constexpr QXChar kMonths[] = QXT("JanFebMarAprMayJunJulAugSepOctNovDec???");
  const std::size_t day = std::min<std::size_t>(time.wDayOfWeek, 7);
  const std::size_t month = time.wMonth >= 1 && time.wMonth <= 12 ? time.wMonth - 1u : 12;
  return FormatTextWith(out, capacity, QXT("%.3s %.3s%3d %.2d:%.2d:%.2d %d"), kDays + day * 3, kMonths + month * 3, time.wDay,
                        time.wHour, time.wMinute, time.wSecond, time.wYear);
}

}  // namespace qxv::os
