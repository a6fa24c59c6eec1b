// log_text.h - where a log begins, and the pieces of its names and lines.
#pragma once

#include "os/utf.h"
#include "qxv/types.h"

namespace qxv {

struct LogPlace {
  os::Text folder;
  os::Text mainName;
};

/// The place of a program's log: its folder and name without extension, or the fixed place when the path is empty or a part of it
/// is too long (folder 511, name 63, extension 15 characters).
LogPlace LogPlaceOf(const os::Text& executable);

/// What the first line of a file stands behind: the byte-order mark and the version.
inline constexpr os::TextView kLogHead = QXT("\uFEFFversion=QXV_20090511\r\n\r\n");

inline constexpr std::size_t kLogNumberRoom = 48;  // units that a date or a stamp takes at most

/// Writes the date of a file's name, 20090501. The end of what was written.
QXChar* WriteLogDate(QXChar* out, const SYSTEMTIME& time) noexcept;

/// Writes the stamp of a line, [2009.05.01 18:05:07.045]. The end of what was written.
QXChar* WriteLogStamp(QXChar* out, const SYSTEMTIME& time) noexcept;

}  // namespace qxv
