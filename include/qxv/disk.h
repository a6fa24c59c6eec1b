// disk.h - size, free space and kind of the drive that a path names.
//
// Only the first character of the path counts, as the drive's letter: d, D:\media and Dolby all mean drive D. Linux takes the
// letter through its drive mapping (docs/porting.md). No error is reported: null, empty, a first character that is no letter, a
// drive that is not there or does not answer give 0 and the text 0. A network drive that has gone may take the system's time
// limit to answer. Any thread may call any function.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// Bytes of the drive.
QXV_API QXInt64 QXVGetDiskTotalSpace(const QXChar* path);

/// Free bytes of the drive, also those that this user may not take.
QXV_API QXInt64 QXVGetDiskFreeSpace(const QXChar* path);

// The same as texts, in units of 1024. Up to and including 1024 a plain number of bytes; up to 1 MiB whole units, as in 1023KB;
// above, one digit behind the point and blanks in front up to five characters, as in "  1.5MB", up to 1 GiB, "1024.0GB" up to 1
// TiB, then TB.

QXV_API CQXString QXVGetDiskTotalSpaceString(const QXChar* path);
QXV_API CQXString QXVGetDiskFreeSpaceString(const QXChar* path);

/// What the drive is: 0 unknown, also for a null or empty path; 1 no such drive; 2 removable; 3 fixed; 4 network; 5 CD or DVD;
/// 6 memory.
QXV_API unsigned int QXVGetDriveType(const QXChar* path);
