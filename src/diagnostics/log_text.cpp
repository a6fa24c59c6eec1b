// log_text.cpp - where a log begins, and the pieces of its names and lines. Numbers are padded with blanks to a fixed width, as
// printf does, and blanks at fixed places become zeros.

#include "diagnostics/log_text.h"

#include "os/c_runtime.h"

#include <initializer_list>

namespace {

using qxv::os::Text;

constexpr std::size_t kDriveRoom = 16;
constexpr std::size_t kFolderRoom = 512;
constexpr std::size_t kNameRoom = 64;
constexpr std::size_t kExtensionRoom = 16;

QXChar* WritePadded(QXChar* out, unsigned value, unsigned width) {
  unsigned count = 1;
  for (unsigned rest = value; rest >= 10; rest /= 10) {
    ++count;
  }
  for (; count < width; --width) {
    *out++ = QXT(' ');
  }
  QXChar* const end = out + count;
  for (QXChar* at = end; at != out; value /= 10) {
    *--at = static_cast<QXChar>(QXT('0') + value % 10);
  }
  return end;
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
  out = WritePadded(out, time.wYear, 4);
  out = WritePadded(out, time.wMonth, 2);
  out = WritePadded(out, time.wDay, 2);
  FillBlanks(text, {4, 6});
  return out;
}

QXChar* WriteLogStamp(QXChar* out, const SYSTEMTIME& time) noexcept {
  QXChar* const text = out;
  *out++ = QXT('[');
  out = WritePadded(out, time.wYear, 4);
  *out++ = QXT('.');
  out = WritePadded(out, time.wMonth, 2);
  *out++ = QXT('.');
  out = WritePadded(out, time.wDay, 2);
  *out++ = QXT(' ');
  out = WritePadded(out, time.wHour, 1);
  *out++ = QXT(':');
  out = WritePadded(out, time.wMinute, 2);
  *out++ = QXT(':');
  out = WritePadded(out, time.wSecond, 2);
  *out++ = QXT('.');
  out = WritePadded(out, time.wMilliseconds, 3);
  *out++ = QXT(']');
  // KEPT: the places are those of a two-digit hour, so before ten o'clock some blanks of minute, second and milliseconds stay
  //   (programs that read the files know both forms). Pinned by LogKept.OneDigitHoursLeaveBlanks.
  FillBlanks(text, {6, 9, 12, 15, 18, 21, 22});
  return out;
}

}  // namespace qxv
