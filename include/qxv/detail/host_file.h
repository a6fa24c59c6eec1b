// host_file.h - CFile and CFileStatus, the host framework's file. Included through host.h.
#pragma once

#include "qxv/detail/host_exception.h"
#include "qxv/detail/host_string.h"
#include "qxv/export.h"
#include "qxv/types.h"

/// A moment as seconds since 1970-01-01 UTC.
class CTime {
 public:
  constexpr CTime() noexcept = default;
  constexpr explicit CTime(std::int64_t seconds) noexcept : m_seconds(seconds) {}

  constexpr std::int64_t GetTime() const noexcept { return m_seconds; }

  constexpr bool operator==(const CTime& other) const noexcept { return m_seconds == other.m_seconds; }
  constexpr bool operator!=(const CTime& other) const noexcept { return m_seconds != other.m_seconds; }
  constexpr bool operator<(const CTime& other) const noexcept { return m_seconds < other.m_seconds; }
  constexpr bool operator>(const CTime& other) const noexcept { return m_seconds > other.m_seconds; }
  constexpr bool operator<=(const CTime& other) const noexcept { return m_seconds <= other.m_seconds; }
  constexpr bool operator>=(const CTime& other) const noexcept { return m_seconds >= other.m_seconds; }

 private:
  std::int64_t m_seconds = 0;
};

struct CFileStatus {
  CTime m_ctime;  ///< created
  CTime m_mtime;  ///< last written
  CTime m_atime;  ///< last read
  QXUInt64 m_size = 0;
  BYTE m_attribute = 0;           ///< bits of CFile::Attribute
  QXChar m_szFullName[260] = {};  ///< the full path, cut to 259 units
};

/// An opened file, unbuffered: every read and write is one request to the system.
/// Failures throw CFileException*, except where a result says so; an object that is not open, with the cause invalidFile. A null
/// buffer throws CInvalidArgException*.
class QXV_API CFile {
 public:
  /// One mode, one share mode, and options.
  enum OpenFlags : unsigned int {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareCompat = 0x0000,       ///< as shareExclusive
    shareExclusive = 0x0010,    ///< no other opening
    shareDenyWrite = 0x0020,    ///< others may read
    shareDenyRead = 0x0030,     ///< others may write
    shareDenyNone = 0x0040,     ///< others may read and write
    modeNoInherit = 0x0080,     ///< always so
    modeCreate = 0x1000,        ///< make the file, or empty it
    modeNoTruncate = 0x2000,    ///< with modeCreate: keep what a file holds
    typeText = 0x4000,          ///< for derived classes
    typeBinary = 0x8000,        ///< for derived classes
    osNoBuffer = 0x10000,       ///< a hint, not used
    osWriteThrough = 0x20000,   ///< a hint, not used
    osRandomAccess = 0x40000,   ///< a hint, not used
    osSequentialScan = 0x80000  ///< a hint, not used
  };
  /// 4 marks a system file.
  enum Attribute : unsigned int { normal = 0, readOnly = 1, hidden = 2, volume = 8, directory = 0x10, archive = 0x20 };
  enum SeekPosition : unsigned int { begin = 0, current = 1, end = 2 };

  CFile() noexcept;
  /// Takes the handle over: it is closed with the object.
  explicit CFile(HANDLE file) noexcept;
  /// Opens, or throws.
  CFile(const QXChar* fileName, unsigned int openFlags);
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  /// Closes what is open.
  virtual ~CFile();

  /// Closes what is open, then opens.
  /// @param error receives cause, error number and name of a failure when given
  /// @return 1, or 0 with nothing open
  virtual int Open(const QXChar* fileName, unsigned int openFlags, CFileException* error = nullptr);

  /// @return bytes read: fewer than count at the end of the file only
  virtual unsigned int Read(void* buffer, unsigned int count);
  /// Writes all of it, or throws.
  virtual void Write(const void* buffer, unsigned int count);

  /// @return the new position, which may lie behind the end; one before the start throws with the cause badSeek
  virtual QXUInt64 Seek(QXInt64 offset, unsigned int from);
  QXUInt64 SeekToEnd();
  void SeekToBegin();
  virtual QXUInt64 GetPosition() const;

  virtual QXUInt64 GetLength() const;
  /// Cuts the file or extends it with zeros; the position becomes the new end.
  virtual void SetLength(QXUInt64 newLength);

  /// Nothing is buffered here: what was written is with the system already.
  virtual void Flush();
  /// Nothing happens when nothing is open.
  virtual void Close();
  /// Close that never throws.
  virtual void Abort() noexcept;
  /// A second object on the same opened file, with the position in common; the caller deletes it.
  virtual CFile* Duplicate() const;

  /// The full path given at Open; empty for an adopted handle.
  virtual CString GetFilePath() const;
  /// Its last part.
  virtual CString GetFileName() const;
  virtual void SetFilePath(const QXChar* path);

  /// @return 1, or 0 with the record untouched when nothing is open or the system tells nothing
  int GetStatus(CFileStatus& status) const;
  /// Of a file or folder by name, whether or not somebody uses it.
  static int GetStatus(const QXChar* fileName, CFileStatus& status);

  static void Remove(const QXChar* fileName);
  static void Rename(const QXChar* oldName, const QXChar* newName);

  HANDLE m_hFile;  ///< INVALID_HANDLE_VALUE while nothing is open

 protected:
  CString m_strFileName;  ///< the full path
};
