// host_file.cpp - CFile over the files of the system.

#include "qxv/host.h"

#include "os/clock.h"
#include "os/file.h"
#include "os/file_system.h"
#include "os/full_path.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace os = qxv::os;

namespace {

constexpr unsigned int kModeBits = CFile::modeWrite | CFile::modeReadWrite;
constexpr unsigned int kShareBits = 0x70;

bool AccessOf(unsigned int flags, os::FileAccess& access) noexcept {
  switch (flags & kModeBits) {
    case CFile::modeRead:
      access = os::FileAccess::Read;
      return true;
    case CFile::modeWrite:
      access = os::FileAccess::Write;
      return true;
    case CFile::modeReadWrite:
      access = os::FileAccess::ReadWrite;
      return true;
    default:
      return false;
  }
}

bool ShareOf(unsigned int flags, unsigned& share) noexcept {
  switch (flags & kShareBits) {
    case CFile::shareCompat:
    case CFile::shareExclusive:
      share = os::kShareNone;
      return true;
    case CFile::shareDenyWrite:
      share = os::kShareRead;
      return true;
    case CFile::shareDenyRead:
      share = os::kShareWrite;
      return true;
    case CFile::shareDenyNone:
      share = os::kShareRead | os::kShareWrite;
      return true;
    default:
      return false;
  }
}

os::FileDisposition DispositionOf(unsigned int flags) noexcept {
  if ((flags & CFile::modeCreate) == 0) {
    return os::FileDisposition::OpenExisting;
  }
  return (flags & CFile::modeNoTruncate) != 0 ? os::FileDisposition::OpenAlways : os::FileDisposition::CreateAlways;
}

os::ErrorCode OpenWithFlags(const QXChar* name, unsigned int flags, os::File& file) noexcept {
  os::OpenOptions options;
  if (!AccessOf(flags, options.access) || !ShareOf(flags, options.share)) {
    return os::kErrorInvalidParameter;
  }
  options.disposition = DispositionOf(flags);
  return file.Open(name, options);
}

[[noreturn]] void Throw(os::ErrorCode error, const CString& name) {
  CFileException::ThrowOsError(static_cast<std::int32_t>(error), name);
}

CString TextOf(const os::Text& text) {
  return CString(text.data(), static_cast<int>(std::min<std::size_t>(text.size(), std::numeric_limits<int>::max())));
}

CTime TimeOf(const FILETIME& time) noexcept {
  const bool unknown = time.dwLowDateTime == 0 && time.dwHighDateTime == 0;
  return unknown ? CTime() : CTime(os::MomentOf(time).seconds);
}

void Fill(CFileStatus& status, const os::FileTimes& times, std::uint64_t size, std::uint32_t attributes, const CString& name) {
  status.m_ctime = TimeOf(times.created);
  status.m_mtime = TimeOf(times.written);
  status.m_atime = TimeOf(times.accessed);
  status.m_size = size;
  status.m_attribute = static_cast<BYTE>(attributes & 0xFF & ~os::kAttributeNormal);
  constexpr std::size_t kRoom = sizeof status.m_szFullName / sizeof *status.m_szFullName;
  const auto length = std::min(static_cast<std::size_t>(name.GetLength()), kRoom - 1);
  std::fill(std::copy_n(name.GetString(), length, status.m_szFullName), status.m_szFullName + kRoom, QXChar{0});
}

bool HasWildcard(const QXChar* name) noexcept {
  const os::TextView view(name);
  return view.find_first_of(QXT("*?")) != os::TextView::npos;
}

}  // namespace

CFile::CFile() noexcept : m_hFile(INVALID_HANDLE_VALUE) {}

CFile::CFile(HANDLE file) noexcept : m_hFile(file) {}

CFile::CFile(const QXChar* fileName, unsigned int openFlags) : m_hFile(INVALID_HANDLE_VALUE) {
  CFileException error;
  if (!CFile::Open(fileName, openFlags, &error)) {
    AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
  }
}

CFile::~CFile() { CFile::Abort(); }

int CFile::Open(const QXChar* fileName, unsigned int openFlags, CFileException* error) {
  Abort();
  os::Text path;
  os::File file;
  os::ErrorCode code = os::GetFullPath(fileName, path);
  if (code == os::kErrorNone) {
    code = OpenWithFlags(fileName, openFlags, file);
  }
  if (code != os::kErrorNone) {
    if (error != nullptr) {
      error->m_lOsError = static_cast<std::int32_t>(code);
      error->m_cause = CFileException::OsErrorToException(error->m_lOsError);
      error->m_strFileName = fileName;
    }
    return 0;
  }
  m_strFileName = TextOf(path);
  m_hFile = file.Release();
  return 1;
}

unsigned int CFile::Read(void* buffer, unsigned int count) {
  if (count == 0) {
    return 0;
  }
  if (buffer == nullptr) {
    AfxThrowInvalidArgException();
  }
  std::size_t done = 0;
  if (const auto error = os::ReadFromFile(m_hFile, {static_cast<unsigned char*>(buffer), count}, done); error != os::kErrorNone) {
    Throw(error, m_strFileName);
  }
  return static_cast<unsigned int>(done);
}

void CFile::Write(const void* buffer, unsigned int count) {
  if (count == 0) {
    return;
  }
  if (buffer == nullptr) {
    AfxThrowInvalidArgException();
  }
  std::size_t done = 0;
  const auto error = os::WriteToFile(m_hFile, {static_cast<const unsigned char*>(buffer), count}, done);
  if (error != os::kErrorNone || done != count) {
    Throw(error == os::kErrorNone ? os::kErrorDiskFull : error, m_strFileName);
  }
}

QXUInt64 CFile::Seek(QXInt64 offset, unsigned int from) {
  if (from > end) {
    AfxThrowInvalidArgException();
  }
  const auto origin = from == begin ? os::SeekOrigin::Begin : from == current ? os::SeekOrigin::Current : os::SeekOrigin::End;
  std::int64_t position = 0;
  if (const auto error = os::SeekInFile(m_hFile, offset, origin, &position); error != os::kErrorNone) {
    Throw(error, m_strFileName);
  }
  return static_cast<QXUInt64>(position);
}

QXUInt64 CFile::SeekToEnd() { return Seek(0, end); }

void CFile::SeekToBegin() { Seek(0, begin); }

QXUInt64 CFile::GetPosition() const {
  std::int64_t position = 0;
  if (const auto error = os::SeekInFile(m_hFile, 0, os::SeekOrigin::Current, &position); error != os::kErrorNone) {
    Throw(error, m_strFileName);
  }
  return static_cast<QXUInt64>(position);
}

QXUInt64 CFile::GetLength() const {
  std::int64_t length = 0;
  if (const auto error = os::GetFileLength(m_hFile, length); error != os::kErrorNone) {
    Throw(error, m_strFileName);
  }
  return static_cast<QXUInt64>(length);
}

void CFile::SetLength(QXUInt64 newLength) {
  if (newLength > static_cast<QXUInt64>(std::numeric_limits<QXInt64>::max())) {
    Throw(os::kErrorNegativeSeek, m_strFileName);
  }
  Seek(static_cast<QXInt64>(newLength), begin);
  if (const auto error = os::CutFile(m_hFile); error != os::kErrorNone) {
    Throw(error, m_strFileName);
  }
}

void CFile::Flush() {}

void CFile::Close() {
  if (m_hFile == INVALID_HANDLE_VALUE) {
    return;
  }
  const auto error = os::CloseFile(std::exchange(m_hFile, INVALID_HANDLE_VALUE));
  const CString name = std::move(m_strFileName);
  if (error != os::kErrorNone) {
    Throw(error, name);
  }
}

void CFile::Abort() noexcept {
  if (m_hFile != INVALID_HANDLE_VALUE) {
    os::CloseFile(std::exchange(m_hFile, INVALID_HANDLE_VALUE));
  }
  m_strFileName.Empty();
}

CFile* CFile::Duplicate() const {
  HANDLE copy = INVALID_HANDLE_VALUE;
  if (const auto error = os::DuplicateFile(m_hFile, copy); error != os::kErrorNone) {
    Throw(error, m_strFileName);
  }
  os::File owner(copy);
  auto file = std::make_unique<CFile>();
  file->m_strFileName = m_strFileName;
  file->m_hFile = owner.Release();
  return file.release();
}

CString CFile::GetFilePath() const { return m_strFileName; }

CString CFile::GetFileName() const {
  const os::TextView path(m_strFileName.GetString(), static_cast<std::size_t>(m_strFileName.GetLength()));
  const std::size_t separator = path.find_last_of(QXT("\\/:"));
  return separator == os::TextView::npos ? m_strFileName : m_strFileName.Mid(static_cast<int>(separator) + 1);
}

void CFile::SetFilePath(const QXChar* path) { m_strFileName = path; }

int CFile::GetStatus(CFileStatus& status) const {
  os::FileInformation information;
  if (m_hFile == INVALID_HANDLE_VALUE || os::GetFileInformation(m_hFile, information) != os::kErrorNone) {
    return 0;
  }
  Fill(status, information.times, information.size, information.attributes, m_strFileName);
  return 1;
}

int CFile::GetStatus(const QXChar* fileName, CFileStatus& status) {
  os::Text path;
  std::uint32_t attributes = 0;
  os::FileTimes times{};
  std::uint64_t size = 0;
  if (os::GetFullPath(fileName, path) != os::kErrorNone || HasWildcard(fileName) ||
      os::GetPathAttributes(fileName, attributes) != os::kErrorNone || os::GetFileTimes(fileName, times) != os::kErrorNone) {
    return 0;
  }
  if ((attributes & os::kAttributeFolder) == 0) {
    std::vector<os::FoundFile> found;
    if (os::FindFiles(fileName, found) != os::kErrorNone || found.size() != 1) {
      return 0;
    }
    size = found.front().size;
  }
  Fill(status, times, size, attributes, TextOf(path));
  return 1;
}

void CFile::Remove(const QXChar* fileName) {
  if (const auto error = os::RemoveFile(fileName); error != os::kErrorNone) {
    Throw(error, fileName);
  }
}

void CFile::Rename(const QXChar* oldName, const QXChar* newName) {
  if (const auto error = os::RenameFile(oldName, newName, false /*replace*/); error != os::kErrorNone) {
    Throw(error, oldName);
  }
}
