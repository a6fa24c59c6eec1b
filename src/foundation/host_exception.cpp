// host_exception.cpp - the exceptions of the host classes and the Windows error numbers behind the causes of file errors.

#include "qxv/host.h"

#include <cstddef>

namespace {

struct CauseOfError {
  std::int32_t osError;
  int cause;
};

// Windows error numbers; what is not listed is genericException.
constexpr CauseOfError kCauses[] = {
    {0, CFileException::none},
    {1, CFileException::genericException},    // invalid function
    {2, CFileException::fileNotFound},        // file not found
    {3, CFileException::badPath},             // path not found
    {4, CFileException::tooManyOpenFiles},    // too many open files
    {5, CFileException::accessDenied},        // access denied
    {6, CFileException::invalidFile},         // invalid handle
    {12, CFileException::accessDenied},       // invalid access
    {15, CFileException::badPath},            // invalid drive
    {16, CFileException::removeCurrentDir},   // current directory
    {17, CFileException::badPath},            // not the same device
    {18, CFileException::fileNotFound},       // no more files
    {19, CFileException::accessDenied},       // write-protected
    {25, CFileException::badSeek},            // seek
    {29, CFileException::hardIO},             // write fault
    {30, CFileException::hardIO},             // read fault
    {31, CFileException::hardIO},             // general failure
    {32, CFileException::sharingViolation},   // sharing violation
    {33, CFileException::lockViolation},      // lock violation
    {36, CFileException::sharingViolation},   // sharing buffer exceeded
    {38, CFileException::endOfFile},          // end of file
    {39, CFileException::diskFull},           // disk full (handle)
    {53, CFileException::badPath},            // bad network path
    {65, CFileException::accessDenied},       // network access denied
    {80, CFileException::accessDenied},       // file exists
    {82, CFileException::accessDenied},       // cannot make
    {110, CFileException::accessDenied},      // open failed
    {112, CFileException::diskFull},          // disk full
    {123, CFileException::badPath},           // invalid name
    {131, CFileException::badSeek},           // negative seek
    {132, CFileException::badSeek},           // seek on device
    {145, CFileException::removeCurrentDir},  // directory not empty
    {148, CFileException::badPath},           // path busy
    {161, CFileException::badPath},           // bad path name
    {183, CFileException::accessDenied},      // already exists
    {206, CFileException::badPath},           // name too long
};

// By cause.
constexpr const QXChar* kFileSentences[] = {
    QXT("No error occurred."),
    QXT("An unknown file error occurred."),
    QXT("The file was not found."),
    QXT("The path is not valid."),
    QXT("Too many files are open."),
    QXT("Access to the file was denied."),
    QXT("The file is not open."),
    QXT("The current folder cannot be removed."),
    QXT("The folder is full."),
    QXT("The position is outside the file."),
    QXT("The device reported an error."),
    QXT("Another program uses the file."),
    QXT("Another program has locked a part of the file."),
    QXT("The disk is full."),
    QXT("The end of the file was reached."),
};
static_assert(sizeof kFileSentences / sizeof *kFileSentences == CFileException::endOfFile + 1);

}  // namespace

CException::CException() = default;

CException::~CException() = default;

void CException::Delete() { delete this; }

int CException::GetErrorMessage(QXChar* text, unsigned int maxLength, unsigned int* helpContext) const {
  if (helpContext != nullptr) {
    *helpContext = 0;
  }
  if (text == nullptr || maxLength == 0) {
    return 0;
  }
  const QXChar* sentence = Sentence();
  std::size_t length = 0;
  while (sentence[length] != 0 && length + 1 < maxLength) {
    text[length] = sentence[length];
    ++length;
  }
  text[length] = 0;
  return 1;
}

CInvalidArgException::CInvalidArgException() = default;

CInvalidArgException::~CInvalidArgException() = default;

const QXChar* CInvalidArgException::Sentence() const noexcept { return QXT("An argument is not valid."); }

CFileException::CFileException(int cause, std::int32_t osError, const QXChar* fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

CFileException::~CFileException() = default;

const QXChar* CFileException::Sentence() const noexcept {
  return kFileSentences[m_cause >= none && m_cause <= endOfFile ? m_cause : genericException];
}

int CFileException::OsErrorToException(std::int32_t osError) noexcept {
  for (const CauseOfError& row : kCauses) {
    if (row.osError == osError) {
      return row.cause;
    }
  }
  return genericException;
}

void CFileException::ThrowOsError(std::int32_t osError, const QXChar* fileName) {
  AfxThrowFileException(OsErrorToException(osError), osError, fileName);
}

void AfxThrowInvalidArgException() { throw new CInvalidArgException; }

void AfxThrowFileException(int cause, std::int32_t osError, const QXChar* fileName) {
  throw new CFileException(cause, osError, fileName);
}
