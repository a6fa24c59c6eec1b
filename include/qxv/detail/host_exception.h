// host_exception.h - what the host classes throw: a pointer, as the framework does; who catches it calls Delete().
// Included through host.h. Lack of memory is std::bad_alloc.
#pragma once

#include "qxv/detail/host_string.h"
#include "qxv/export.h"
#include "qxv/types.h"

/// Base of the host exceptions: `catch (CException* e) { ...; e->Delete(); }`.
class QXV_API CException {
 public:
  CException(const CException&) = delete;
  CException& operator=(const CException&) = delete;
  virtual ~CException();

  /// Releases an exception that was caught.
  void Delete();

  /// An English sentence, cut to maxLength units with the zero.
  /// @param helpContext set to 0 when given
  /// @return 1, or 0 with an empty text when text is null or maxLength is 0
  virtual int GetErrorMessage(QXChar* text, unsigned int maxLength, unsigned int* helpContext = nullptr) const;

 protected:
  CException();

 private:
  virtual const QXChar* Sentence() const noexcept = 0;
};

/// An index, a position or a count outside what the object holds.
class QXV_API CInvalidArgException : public CException {
 public:
  CInvalidArgException();
  ~CInvalidArgException() override;

 private:
  const QXChar* Sentence() const noexcept override;
};

/// A file operation that failed.
class QXV_API CFileException : public CException {
 public:
  enum : int {
    none = 0,
    genericException = 1,
    fileNotFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidFile = 6,
    removeCurrentDir = 7,
    directoryFull = 8,
    badSeek = 9,
    hardIO = 10,
    sharingViolation = 11,
    lockViolation = 12,
    diskFull = 13,
    endOfFile = 14
  };

  explicit CFileException(int cause = none, std::int32_t osError = -1, const QXChar* fileName = nullptr);
  ~CFileException() override;

  /// The cause of a Windows error number; genericException for one without a row of its own.
  static int OsErrorToException(std::int32_t osError) noexcept;

  /// Throws the exception of a Windows error number.
  [[noreturn]] static void ThrowOsError(std::int32_t osError, const QXChar* fileName = nullptr);

  int m_cause;              ///< one of the enumerators
  std::int32_t m_lOsError;  ///< Windows error number, -1 when there is none
  CString m_strFileName;

 private:
  const QXChar* Sentence() const noexcept override;
};

[[noreturn]] QXV_API void AfxThrowInvalidArgException();
[[noreturn]] QXV_API void AfxThrowFileException(int cause, std::int32_t osError = -1, const QXChar* fileName = nullptr);
