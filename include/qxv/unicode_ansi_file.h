// unicode_ansi_file.h - a text file in one of two encodings, converted when it is opened.
#pragma once

#include "qxv/export.h"
#include "qxv/module.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// Encodings of a text file. Any other number counts as EQXV_ENCODING_ANSI.
enum EQXV_TEXTENCODING : int {
  EQXV_ENCODING_UNICODE = 0,  ///< UTF-16 little-endian behind the bytes FF FE
  EQXV_ENCODING_ANSI = 1,     ///< the ANSI code page of the calling thread
};

/// How a text file is opened: the sum of one of the first two and any of the others.
enum EQXV_TEXTFILEFLAG : unsigned int {
  EQXV_TEXTFILE_READ = 1,
  EQXV_TEXTFILE_WRITE = 2,
  EQXV_TEXTFILE_ADOPT = 16,     ///< take the file's own encoding instead of the requested one
  EQXV_TEXTFILE_TRUNCATE = 32,  ///< empty the file first; ignored when reading
};

/// Reads a text file line by line from a copy taken when it is opened, or appends lines to it. A file in another encoding than
/// the requested one is rewritten in the requested one when it is opened, unless EQXV_TEXTFILE_ADOPT is given.
///
/// One object is used by one thread at a time. Allocation failure throws std::bad_alloc.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): an interface holds nothing that a copy could share
class QXV_API CQXVUnicodeAnsiFile : public CQXVObject {
 public:
  /// Closes the file.
  ~CQXVUnicodeAnsiFile() override;

  /// Reset, then Open. Throws the int 1 when Open does not return 0.
  virtual void Create(const QXChar* name, int encoding, unsigned int flags) = 0;

  /// Forgets the file without closing it: an open handle is lost, so close first. Both encodings become Unicode.
  /// @return 0
  virtual int Reset() = 0;

  /// Closes what was open, then opens, in read mode too with read and write access; a missing file is created. Others may read
  /// and write it meanwhile.
  ///
  /// What has fewer than two bytes counts as ANSI when reading, and as being in the requested encoding already when writing: a
  /// new file is therefore written without the mark FF FE unless EQXV_TEXTFILE_TRUNCATE is given. A conversion drops the text
  /// behind the first zero character; one that cannot be written leaves the file's bytes as they were.
  /// @return 0; 0xFFFFFFFF when flags name neither or both of reading and writing; 0xFFFFFFFE when the file could not be read
  ///   for conversion; 223 when more than 4 GiB would have to be held; else the system's error number. Nothing is open then.
  virtual unsigned int Open(const QXChar* name, int encoding, unsigned int flags) = 0;

  /// Writes the text as a line at the position, which starts at the end: line feeds at its end are dropped, one is added, and
  /// each line feed is written as CR LF. So a text that ends in CR LF ends in CR CR LF. Null is empty. Nothing happens unless a
  /// file is open for writing. Errors of writing are not reported.
  virtual void WriteLine(const QXChar* text) = 0;

  /// Reads a line, its end included. A line ends with the first unit whose low byte is 10 or 0: in a Unicode file also with
  /// U+010A or U+0100, which is then its last character; a zero unit or byte is left out. At the end of the file one more, empty,
  /// line is read, unless the file did not end with a line's end.
  /// @return 1, or 0 behind the end and when nothing is open for reading (the line is untouched then, empty behind the end)
  virtual int ReadLine(CQXString& line) = 0;

  /// Writes the file's text in the requested encoding to the target, or into the file itself when that is its name (without
  /// regard to case). After Open both encodings agree, and then there is nothing to do.
  /// @return 0, also when there is nothing to convert; 0xFFFFFFFF when nothing is open and no target given; errors as of Open
  virtual unsigned int Convert(const QXChar* target) = 0;

  /// Gives the copy and the file back. May be called again.
  virtual void Close() = 0;
};

/// A closed object; null when there is no memory. Give it back with QXV_DeleteUnicodeAnsiFile.
QXV_API CQXVUnicodeAnsiFile* QXV_ConstructUnicodeAnsiFile();
