// buffer_file.h - CQXVBufferFileRW, values in a file, read or written through one block of memory.
// Values are stored as the stream buffers store them: little-endian, no tags, no gaps. Texts and arrays carry a 32-bit count of
// bytes before them. docs/stream-format.md has the tables.
#pragma once

#include "qxv/array.h"
#include "qxv/export.h"
#include "qxv/guid.h"
#include "qxv/host.h"
#include "qxv/module.h"
#include "qxv/string.h"
#include "qxv/types.h"

#include <cstdio>
#include <cstring>

/// A file as a sequence of values. One object is a reader or a writer for the whole time that it is open: a reader refuses
/// writes, a writer reads. Made by QXV_ConstructBufferFileRW, released by QXV_DeleteBufferFileRW, which closes it first.
///
/// Every operation tells of failure only by returning 0. A value is read whole or not at all: one that does not fit into the rest
/// of the file gives 0 and stays untouched. Errors of the system while the block is filled or flushed are not reported: a file
/// that cannot be written loses what was put in, one that shrinks gives bytes of no meaning. Lack of memory throws
/// std::bad_alloc. One object is used by one thread at a time.
///
/// long and unsigned long take 4 bytes on both systems; reading extends them by their sign, respectively by zeros.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): an interface holds nothing that a copy could share
class QXV_API CQXVBufferFileRW : public CQXVObject {
 public:
  /// Closes the file.
  ~CQXVBufferFileRW() override;

  /// Makes the object closed without closing anything: called once before the first Open. On an open object it forgets file and
  /// block. @return 0
  virtual int Reset() = 0;

  /// Opens a file by name, sharing it for reading. A writer empties an existing file.
  /// @param bRead       0 makes a writer, anything else a reader
  /// @param nBufferSize bytes of the block, at least 1024
  /// @return 1, or 0 with nothing changed: when the object is open, the name empty, the size too small, the file not to be had
  virtual int Open(const QXChar* pFileName, int bRead, unsigned int nBufferSize) = 0;
  /// Each of these takes over what somebody else opened, goes to its start, and closes it at the end; a writer does not empty it.
  /// A folder is refused. What is refused stays open and the caller's. A stream of 2 GiB or more has no readable bytes.
  virtual int Open(std::FILE* pStream, int bRead, unsigned int nBufferSize) = 0;
  virtual int Open(HANDLE hFile, int bRead, unsigned int nBufferSize) = 0;
  virtual int Open(CFile* pFile, int bRead, unsigned int nBufferSize) = 0;

  /// Flushes what a writer holds and closes the file, adopted or not. @return 1, also when nothing is open
  virtual int Close() = 0;

  /// Goes to a place inside the block, or makes another place the start of the block. Offsets are bytes of the file.
  /// The system's own position is not moved: reading goes on where the last filling ended, writing where the last flush did. So
  /// callers seek only inside the block, or to the place where the file already stands. A writer that went back writes, at Close,
  /// only what stands before its position: it goes to the end first.
  /// @param nOrigin 0: nOffset from the start, below the length; 1: from the position, the same bounds; 2: nOffset before the
  ///                end, from the length (offset 0) down to the start; anything else: nOffset itself, not checked
  /// @return 1, or 0 for a place outside
  virtual int Seek(QXInt64 nOffset, unsigned int nOrigin) = 0;

  // Reading. The result is the number of bytes that the value takes, 0 on failure. For texts and arrays that is the count before
  // them plus 4, modulo 2^32. What such a count claims beyond the end of the file reads as zeros; an array of more elements than
  // the file can hold (and more than 65,536) is emptied, with the result 0.

  virtual unsigned int Read(CArray<SYSTEMTIME>& values) = 0;
  virtual unsigned int Read(SYSTEMTIME& value) = 0;
  /// The count before them, and with it the result, has 8 bytes a text, however long it is.
  virtual unsigned int Read(CQXArray<CQXString, CQXString&>& values) = 0;
  virtual unsigned int Read(CQXArray<CRect, CRect&>& values) = 0;
  virtual unsigned int Read(CQXArray<FILETIME, FILETIME&>& values) = 0;
  virtual unsigned int Read(CQXArray<CPoint, CPoint&>& values) = 0;
  virtual unsigned int Read(CQXArray<GUID, GUID&>& values) = 0;
  virtual unsigned int Read(CQXArray<QXChar, QXChar&>& values) = 0;
  virtual unsigned int Read(CQXArray<double, double&>& values) = 0;
  virtual unsigned int Read(CQXArray<float, float&>& values) = 0;
  virtual unsigned int Read(CQXArray<QXInt64, QXInt64&>& values) = 0;
  virtual unsigned int Read(CQXArray<QXUInt64, QXUInt64&>& values) = 0;
  virtual unsigned int Read(CQXArray<int, int&>& values) = 0;
  virtual unsigned int Read(CQXArray<unsigned int, unsigned int&>& values) = 0;
  virtual unsigned int Read(CQXArray<short, short&>& values) = 0;
  virtual unsigned int Read(CQXArray<unsigned short, unsigned short&>& values) = 0;
  virtual unsigned int Read(CQXArray<char, char&>& values) = 0;
  virtual unsigned int Read(CQXArray<unsigned char, unsigned char&>& values) = 0;
  /// Bytes without a count before them: 1 to the size of the block, else 0.
  virtual unsigned int Read(unsigned char* pData, unsigned int nCount) = 0;
  /// An odd count leaves its last byte unread. The text ends at its first zero.
  virtual unsigned int Read(CQXString& value) = 0;
  virtual unsigned int Read(CRect& value) = 0;
  virtual unsigned int Read(FILETIME& value) = 0;
  virtual unsigned int Read(CPoint& value) = 0;
  virtual unsigned int Read(GUID& value) = 0;
  virtual unsigned int Read(QXChar& value) = 0;
  virtual unsigned int Read(double& value) = 0;
  virtual unsigned int Read(float& value) = 0;
  virtual unsigned int Read(QXInt64& value) = 0;
  virtual unsigned int Read(QXUInt64& value) = 0;
  virtual unsigned int Read(long& value) = 0;
  virtual unsigned int Read(unsigned long& value) = 0;
  virtual unsigned int Read(int& value) = 0;
  virtual unsigned int Read(unsigned int& value) = 0;
  virtual unsigned int Read(short& value) = 0;
  virtual unsigned int Read(unsigned short& value) = 0;
  virtual unsigned int Read(char& value) = 0;
  virtual unsigned int Read(unsigned char& value) = 0;

  // Writing. The result is as for reading; for an array of texts it is therefore not the number of bytes written.

  virtual unsigned int Write(const CArray<SYSTEMTIME>& values) = 0;
  virtual unsigned int Write(const SYSTEMTIME& value) = 0;
  virtual unsigned int Write(const CQXArray<CQXString, CQXString&>& values) = 0;
  virtual unsigned int Write(const CQXArray<CRect, CRect&>& values) = 0;
  virtual unsigned int Write(const CQXArray<FILETIME, FILETIME&>& values) = 0;
  virtual unsigned int Write(const CQXArray<CPoint, CPoint&>& values) = 0;
  virtual unsigned int Write(const CQXArray<GUID, GUID&>& values) = 0;
  virtual unsigned int Write(const CQXArray<QXChar, QXChar&>& values) = 0;
  virtual unsigned int Write(const CQXArray<double, double&>& values) = 0;
  virtual unsigned int Write(const CQXArray<float, float&>& values) = 0;
  virtual unsigned int Write(const CQXArray<QXInt64, QXInt64&>& values) = 0;
  virtual unsigned int Write(const CQXArray<QXUInt64, QXUInt64&>& values) = 0;
  virtual unsigned int Write(const CQXArray<int, int&>& values) = 0;
  virtual unsigned int Write(const CQXArray<unsigned int, unsigned int&>& values) = 0;
  virtual unsigned int Write(const CQXArray<short, short&>& values) = 0;
  virtual unsigned int Write(const CQXArray<unsigned short, unsigned short&>& values) = 0;
  virtual unsigned int Write(const CQXArray<char, char&>& values) = 0;
  virtual unsigned int Write(const CQXArray<unsigned char, unsigned char&>& values) = 0;
  /// Bytes without a count before them: 1 to the size of the block, else 0.
  virtual unsigned int Write(const unsigned char* pData, unsigned int nCount) = 0;
  virtual unsigned int Write(const CQXString& value) = 0;
  virtual unsigned int Write(const CRect& value) = 0;
  virtual unsigned int Write(const FILETIME& value) = 0;
  virtual unsigned int Write(const CPoint& value) = 0;
  virtual unsigned int Write(const GUID& value) = 0;
  virtual unsigned int Write(const QXChar& value) = 0;
  virtual unsigned int Write(const double& value) = 0;
  virtual unsigned int Write(const float& value) = 0;
  virtual unsigned int Write(const QXInt64& value) = 0;
  virtual unsigned int Write(const QXUInt64& value) = 0;
  virtual unsigned int Write(const long& value) = 0;
  virtual unsigned int Write(const unsigned long& value) = 0;
  virtual unsigned int Write(const int& value) = 0;
  virtual unsigned int Write(const unsigned int& value) = 0;
  virtual unsigned int Write(const short& value) = 0;
  virtual unsigned int Write(const unsigned short& value) = 0;
  virtual unsigned int Write(const char& value) = 0;
  virtual unsigned int Write(const unsigned char& value) = 0;

  /// Through the operations of GUID.
  unsigned int Read(QX_GUID& value) {
    GUID image{};
    const unsigned int bytes = Read(image);
    if (bytes != 0) {
      std::memcpy(&value, &image, sizeof value);
    }
    return bytes;
  }
  unsigned int Write(const QX_GUID& value) {
    GUID image{};
    std::memcpy(&image, &value, sizeof image);
    return Write(image);
  }
};

/// A closed object; Reset comes before the first Open. Null when there is no memory for it.
QXV_API CQXVBufferFileRW* QXV_ConstructBufferFileRW();
