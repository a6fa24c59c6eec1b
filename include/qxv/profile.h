// profile.h - one value from an initialisation file: sections in brackets, key=value lines.
//
// On Windows the system's private-profile service reads, on Linux a reader of ours with the same rules (docs/porting.md):
// sections and keys are found without regard to the case of A to Z; only the first section of a name counts, and in it the first
// key. Blanks around names and values are dropped, then one pair of quotation marks or apostrophes around the value. A line that
// begins with a semicolon is a comment because nobody asks for a key of such a name; behind a value a semicolon belongs to it.
// The file is in the ANSI code page, or UTF-16 or UTF-8 by its mark.
//
// A file name without a drive and without \ and / is looked for in the system's own folder, not in the current one: on Linux that
// is QXV_WINDIR, else qxv in the user's configuration folder.
//
// An empty file name, section or key gives 0 and leaves the value as it was.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// Reads a text, of which 1023 characters count.
/// @return 1; 0 when there is no such value, or an empty one: value is then as it was
QXV_API int QXVGetPrivateStringValue(CQXString file, CQXString section, CQXString key, CQXString& value);

/// Reads the integer at the start of a value, modulo 2^32: an optional sign, then decimal digits, or 0x, 0o or 0b (small letters)
/// with digits of that radix. 0 for a value without a number, and when there is no such value.
/// @return 1; 0 when the number read is -202182160 (0xF3F2F1F0), which value then has too
QXV_API int QXVGetPrivateIntValue(CQXString file, CQXString section, CQXString key, int& value);
