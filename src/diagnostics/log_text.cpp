// log_text.cpp - where a log begins, and the pieces of its names and lines. Numbers are padded with blanks to a fixed width, as
// printf does, and blanks at fixed places become zeros.

#include "diagnostics/log_text.h"

#include "os/c_runtime.h"

#include <cstddef>
#include <initializer_list>

namespace {

using qxv::os::Text;

constexpr std::size_t kDriveRoom = 16;
constexpr std::size_t kFolderRoom = 512;
constexpr std::size_t kNameRoom = 64;
constexpr std::size_t kExtensionRoom = 16;

// As printf writes "%<kWidth>d".
template <std::size_t kWidth>
QXChar* WritePadded(QXChar* out, unsigned value) {
  constexpr unsigned kTooWide[] = {1, 10, 100, 1000, 10000};
  std::size_t width = kWidth;
  for (unsigned rest = value / kTooWide[kWidth]; rest != 0; rest /= 10) {
    ++width;
  }
  QXChar* at = out + width;
  do {
    *--at = static_cast<QXChar>(QXT('0') + value % 10);
    value /= 10;
  } while (value != 0);
  while (at != out) {
    *--at = QXT(' ');
  }
  return out + width;
}

void FillBlanks(QXChar* text, std::initializer_list<std::size_t> places) {
  for (const std::size_t place : places) {
    if (text[place] == QXT(' ')) {
      text[place] = QXT('0');
    }
  }
}

}  // namespace

namespace qxv {

LogPlace LogPlaceOf(const os::Text& executable) {
  QXChar drive[kDriveRoom], folder[kFolderRoom], name[kNameRoom], extension[kExtensionRoom];
  if (executable.empty() || os::SplitPath(executable.c_str(), {drive, kDriveRoom}, {folder, kFolderRoom}, {name, kNameRoom},
                                          {extension, kExtensionRoom}) != 0) {
    // KEPT: a program whose path has a part too long logs to this place, as one whose path is unknown does (where such logs are
    //   looked for). Pinned by LogPlaceKept.APartTooLongGivesTheFixedPlace.
    return {QXT("e:\\"), QXT("quelta")};
  }
  return {Text(drive) + folder, name};
}

QXChar* WriteLogDate(QXChar* out, const SYSTEMTIME& time) noexcept {
  QXChar* const text = out;
  out = WritePadded<4>(out, time.wYear);
  out = WritePadded<2>(out, time.wMonth);
  out = WritePadded<2>(out, time.wDay);
  FillBlanks(text, {4, 6});
  return out;
}

QXChar* WriteLogStamp(QXChar* out, const SYSTEMTIME& time) noexcept {
  QXChar* const text = out;
  *out++ = QXT('[');
  out = WritePadded<4>(out, time.wYear);
  *out++ = QXT('.');
  out = WritePadded<2>(out, time.wMonth);
  *out++ = QXT('.');
  out = WritePadded<2>(out, time.wDay);
  *out++ = QXT(' ');
  out = WritePadded<1>(out, time.wHour);
  *out++ = QXT(':');
  out = WritePadded<2>(out, time.wMinute);
  *out++ = QXT(':');
  out = WritePadded<2>(out, time.wSecond);
  *out++ = QXT('.');
  out = WritePadded<3>(out, time.wMilliseconds);
  *out++ = QXT(']');
  // KEPT: the places are those of a two-digit hour, so before ten o'clock some blanks of minute, second and milliseconds stay
  //   (programs that read the files know both forms). Pinned by LogKept.OneDigitHoursLeaveBlanks.
  FillBlanks(text, {6, 9, 12, 15, 18, 21, 22});
  return out;
}

}  // namespace qxv
