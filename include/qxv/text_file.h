// text_file.h - one text file, read line by line and written at its end.
#pragma once

#include "qxv/array.h"
#include "qxv/export.h"
#include "qxv/module.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// A text file that stays open for reading lines and appending lines. The file decides the encoding when it is opened: UTF-16
/// little-endian when it begins with the bytes FF FE, else single bytes or byte groups in the system's ANSI code page; a new file
/// is ANSI.
///
/// A line ends at a CR; the unit after it, whatever it is, is dropped. A lone LF is part of the line. The last line may lack
/// its end. There is one position, which reading moves; every write goes to the end of the file and leaves the position there.
/// The line index counts the ended lines read since Open, the line count those of the whole file; both are -1 until something
/// sets them, so the index is the number in the file of the line just read only when reading began at the start.
///
/// Only Open tells of failure. When it fails, and after Close, reads give 0, FindLine and GetLineCount -1, writes 0, and Clear
/// does nothing. A read error ends the line as the end of the file does. Others may read and write the file meanwhile. Allocation
/// failure throws std::bad_alloc. One object is used by one thread at a time.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): an interface holds nothing that a copy could share
class QXV_API CQXVtxtRW : public CQXVObject {
 public:
  /// Closes the file.
  ~CQXVtxtRW() override;

  /// Opens the file for reading and appending, created when missing, and goes to its first character. A file that was open is
  /// closed; line index and line count stay.
  /// @return 0, or -1 when it cannot be opened for both
  virtual int Open(const CQXString& path) = 0;

  /// Reads the line that FindLine finds; when there is none, the next line.
  /// @return what ReadLine returns; 0 for an empty text, with the line untouched
  virtual int FindAndReadLine(const CQXString& text, CQXString& line) = 0;

  /// Reads a line, splits it at the separator and appends the parts to the fields, which keep what they hold.
  /// @return what ReadLine returns; 0 also for an empty line, which is then read but appends nothing
  virtual int ReadFields(CQXArray<CQXString, CQXString&>& fields, QXChar separator) = 0;

  /// Reads up to the end of the line or of the file.
  /// @param line  the text without the line's end. UTF-16: zero units are left out. ANSI: it ends at the first zero byte.
  /// @return characters (UTF-16) or bytes (ANSI) of the line in the file; 0 for an empty line and at the end of the file
  virtual int ReadLine(CQXString& line) = 0;

  /// The known line count, else the lines of the whole file, counting what follows the last end, even when that is nothing. The
  /// position stays.
  /// @return at least 1; -1 when no file is open
  virtual int GetLineCount() = 0;

  /// Goes to the next line that holds the text, case included: from the position to the end, then from the start to the
  /// position. Without one, position and line index stay.
  /// @return ended lines read by the search, the matching one included; -1 without one and for an empty or null text. A last
  ///   line without an end is not counted, so a match there gives one less.
  virtual int FindLine(const QXChar* text) = 0;

  /// Writes the two texts, joined, as one line. Null is empty. @return as of the last WriteLine
  virtual int WriteLine(const QXChar* first, const QXChar* second) = 0;

  /// Writes the fields with a separator between each two as one line. @return as of the last WriteLine; without fields nothing is
  /// written and the result is 0
  virtual int WriteLine(const CQXArray<CQXString, CQXString&>& fields, QXChar separator) = 0;

  /// Writes the text and CR LF at the end of the file. ANSI: a character that the code page lacks becomes "?". The line count
  /// grows by one, whether it was known or not and whatever line ends the text holds, and the line index becomes one less.
  /// @return characters (UTF-16) or bytes (ANSI) of the text that were written
  virtual int WriteLine(const QXChar* text) = 0;

  /// Empties the file, but for the mark of a UTF-16 file, goes to its first character and sets the line count to 1. The encoding
  /// and the line index stay. A file that cannot be emptied stays as it is; one that cannot be opened again is closed.
  virtual void Clear() = 0;

  /// Forgets path, line index and line count. May be called again.
  virtual void Close() = 0;
};

/// A closed object; null when there is no memory. Give it back with QXV_DeleteTxtRW.
QXV_API CQXVtxtRW* QXV_ConstructTxtRW();
