// log.h - the process's daily log: dated lines in one text file a day. docs/log.md shows the file.
//
// The log begins beside the running program: its folder is the program's, its main name the program's without extension. (When
// the program's path cannot be told, or has a folder of more than 511, a name of more than 63 or an extension of more than 15
// characters, they are e:\ and quelta.) Any thread may call any of these at any time, also while the process ends: calls behind
// the library's own end do nothing. They report nothing and throw nothing.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// The folder of the files to come, used exactly as given: without a separator at its end it becomes the start of the name.
QXV_API void QXVLogSetPath(const CQXString& folder) noexcept;

/// The main name of the files to come: folder, main name, "_", the date as 20090501, ".txt".
QXV_API void QXVLogSetMainName(const CQXString& name) noexcept;

/// Lines of this level and above are written; 100 at the start.
QXV_API void QXVLogSetWriteLevel(int level) noexcept;

/// Adds one line with the local time to the day's file, which is created with its head when missing and is open only meanwhile.
/// Lines of all threads and processes stay whole: each is one write to the end of the file. A line that cannot be written, and
/// one for which there is no memory, is lost.
/// @param message  null is an empty one; a line feed in it begins a new line without time
QXV_API void QXVWriteLog(const QXChar* message, int level) noexcept;
