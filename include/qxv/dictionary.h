// dictionary.h - interface texts translated at run time, from dictionary files that are loaded once.
//
// A dictionary is a file with the extension ini (lower case) anywhere below the dictionary folder. Its entries read
// [text]=translation, the translation running to the end of the line; [DICTIONARY_MAINID]=7 gives the file its main identifier,
// else that is 0. docs/dictionary.md has the rules and an example.
//
// There is one set of dictionaries for the whole process, without a lock: no call may run beside another one.
#pragma once

#include "qxv/array.h"
#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// Replaces the set by the dictionaries below a folder, in a stable order: that of the names without regard to case, the files of
/// a subfolder in the place of that subfolder. A file is UTF-16 or UTF-8 by its mark; without one it is read in code page 936
/// from a folder named 04_02, in 950 from one named 04_01, else in the system's. A file that cannot be read, or of more than 256
/// MiB, is left out; so are folders more than 128 levels deep, and a folder is entered once however many links lead to it.
/// @param folder  at least 3 characters, the last of them a backslash or slash; empty: `..\Sys\Dictionary\04_02` and a backslash,
///   beside the folder of the running program
/// @return 0; (int)0x89601A70 for another folder, or one without such a file: then nothing is loaded, what was is gone.
QXV_API int QXVLoadDictionarys(const CQXString& folder);

/// Forgets the dictionaries and the missing texts.
QXV_API void QXVReleaseDictionarys();

/// The translation of a text; the text itself when there is none.
/// @param mainId  0: the first dictionary that holds the text counts. Else only the first one with this main identifier does.
QXV_API CQXString QXVTranslate(const CQXString& text, unsigned int mainId);

/// The same with another answer for a text without translation. Such a text is remembered as missing while dictionaries are
/// loaded.
QXV_API CQXString QXVTranslate(const CQXString& text, const CQXString& defaultText, unsigned int mainId);

/// Replaces texts by those that were found missing since the dictionaries were loaded, each once, by the values of their
/// characters.
/// @return 1; 0, and no texts, when nothing is loaded
QXV_API int QXVGetMissingTexts(CQXArray<CQXString, CQXString&>& texts);
