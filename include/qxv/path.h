// path.h - texts that name files and folders: what they look like, their parts, and the folders behind them.
//
// A null pointer counts as an empty text everywhere; null and empty give 0 or an empty text. Where a drive letter is named, Linux
// takes it through its drive mapping (docs/porting.md). Which characters separate differs from function to function, as said at
// each. Any thread may call any function; only QXVPathExist with setCurrent changes anything that belongs to the whole process.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

// The form of a name, and whether something of that name exists. 1 or 0.

/// At least 3 characters, a letter a to z or A to Z in front, no backslash at the end, and none of : * ? " < > | from the fourth
/// character on. The second and third character are not looked at: Cxya passes.
QXV_API int QXVIsNormalizedFile(const QXChar* path);

/// The same, with a backslash at the end: C:\ passes.
QXV_API int QXVIsNormalizedPath(const QXChar* path);

/// QXVIsNormalizedFile, a colon as the second character, and a file or folder of that name.
QXV_API int QXVIsFileExist(const QXChar* path);

/// QXVIsNormalizedPath, a colon as the second character, and a folder of that name.
QXV_API int QXVIsPathExist(const QXChar* path);

// Parts of a name, by the text alone. The drive is the first character with a colon behind it; the name begins behind the last
// backslash or slash; the extension begins at the name's last point. A text of 512 characters or more gives an empty text in
// these three.

/// Drive and folder, with the separator at its end.
QXV_API CQXString QXVParsePath(const QXChar* path);

/// The name without extension.
QXV_API CQXString QXVParseMainFileName(const QXChar* path);

/// The extension without its point, in the case given.
QXV_API CQXString QXVParseExtFileName(const QXChar* path);

// The same questions by other rules, for texts of any length.

/// What follows the last backslash. Empty when there is none, or only one as the first character.
QXV_API CQXString QXVParseShortFileName(const QXChar* path);

/// With one backslash appended unless there is one at the end.
QXV_API CQXString QXVNormalizeFilePath(CQXString path);
/// The same function under its second name.
QXV_API CQXString QXVXHNormalizeFilePath(CQXString path);

/// Everything up to and including the last backslash or slash; empty without one.
QXV_API CQXString QXVGetFilePath(CQXString path);

/// Everything behind the last backslash or slash; the whole text without one.
QXV_API CQXString QXVGetFileName(CQXString path);

/// Everything behind the last point of the whole text, wherever it stands: `C:\ver1.2\readme` gives `2\readme`. Empty without
/// one.
QXV_API CQXString QXVGetFileType(const QXChar* path);

// Folders and files.

/// Drive and folder of the running program's file, with a backslash at the end; not the current folder. Empty when the program's
/// path has 512 characters or more.
QXV_API CQXString QXVGetCurrentPath();

/// 1 when the text names a folder that may be entered. If setCurrent is not 0 it becomes the current folder of the process;
/// otherwise, and after a failure, nothing changes.
QXV_API int QXVPathExist(const QXChar* path, int setCurrent);

/// Creates what is missing of a path of folders, relative to the current folder if it names no drive. Only the backslash
/// separates; those at the end do not count. 1 when all exists at the end; 0 when a folder cannot be created or entered: those
/// above it then remain.
QXV_API int QXVCreatePath(const QXChar* path);

/// Bytes of the file, or of the first match of a pattern with * or ? behind the last separator; 0 for a folder and when there is
/// none.
QXV_API QXInt64 QXVXHFileSize(CQXString& path);
