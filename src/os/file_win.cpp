// file_win.cpp - files as the system's own handles.

#include "os/file.h"

#include "os/win_api.h"
#include "os/win_name.h"

#include <algorithm>

namespace qxv::os {
namespace {

constexpr std::size_t kLargestTransfer = 0x40000000;

DWORD AccessOf(const OpenOptions& options) {
  switch (options.access) {
    case FileAccess::Read:
      return GENERIC_READ;
    case FileAccess::Write:
      return GENERIC_WRITE;
    case FileAccess::ReadWrite:
      return GENERIC_READ | GENERIC_WRITE;
    case FileAccess::Append:
      break;
  }
  return FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
}

DWORD DispositionOf(FileDisposition disposition) {
  switch (disposition) {
    case FileDisposition::OpenExisting:
      return OPEN_EXISTING;
    case FileDisposition::OpenAlways:
      return OPEN_ALWAYS;
    case FileDisposition::CreateAlways:
      return CREATE_ALWAYS;
    case FileDisposition::CreateNew:
      break;
  }
  return CREATE_NEW;
}

/// The pseudo handles of the current process and thread pass for files in some calls.
bool MayBeFile(HANDLE file) { return reinterpret_cast<std::intptr_t>(file) > 0; }

OVERLAPPED LastByte() {  // behind any possible end, so that it locks no data
  OVERLAPPED place{};
  place.Offset = 0xFFFFFF00;
  place.OffsetHigh = 0x7FFFFFFF;
  return place;
}

}  // namespace

ErrorCode OpenFileNamed(const QXChar* name, const OpenOptions& options, HANDLE& file) noexcept {
  file = INVALID_HANDLE_VALUE;
  if (const ErrorCode error = CheckName(name); error != kErrorNone) {
    return error;
  }
  const DWORD flags = (options.attribute == NewFileAttribute::Hidden ? FILE_ATTRIBUTE_HIDDEN : FILE_ATTRIBUTE_NORMAL) |
                      (options.folder ? FILE_FLAG_BACKUP_SEMANTICS : 0);
  const HANDLE opened = ::CreateFileW(name, AccessOf(options), options.share, nullptr /*security*/,
                                      DispositionOf(options.disposition), flags, nullptr /*template*/);
  if (opened == INVALID_HANDLE_VALUE) {
    return LastError();
  }
  file = opened;
  return kErrorNone;
}

ErrorCode CloseFile(HANDLE file) noexcept {
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  return ::CloseHandle(file) ? kErrorNone : LastError();
}

ErrorCode DuplicateFile(HANDLE file, HANDLE& copy) noexcept {
  copy = INVALID_HANDLE_VALUE;
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  HANDLE made = nullptr;
  if (!::DuplicateHandle(::GetCurrentProcess(), file, ::GetCurrentProcess(), &made, 0, FALSE, DUPLICATE_SAME_ACCESS)) {
    return LastError();
  }
  copy = made;
  return kErrorNone;
}

ErrorCode ReadFromFile(HANDLE file, std::span<unsigned char> bytes, std::size_t& done) noexcept {
  done = 0;
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if (bytes.data() == nullptr && !bytes.empty()) {
    return kErrorInvalidParameter;
  }
  while (done < bytes.size()) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kLargestTransfer));
    if (!::ReadFile(file, bytes.data() + done, wanted, &count, nullptr /*overlapped*/)) {
      return LastError();
    }
    if (count == 0) {
      break;
    }
    done += count;
  }
  return kErrorNone;
}

ErrorCode WriteToFile(HANDLE file, std::span<const unsigned char> bytes, std::size_t& done) noexcept {
  done = 0;
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if (bytes.data() == nullptr && !bytes.empty()) {
    return kErrorInvalidParameter;
  }
  while (done < bytes.size()) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kLargestTransfer));
    const bool written = ::WriteFile(file, bytes.data() + done, wanted, &count, nullptr /*overlapped*/);
    done += count;
    if (!written) {
      return LastError();
    }
    if (count == 0) {
      return kErrorDiskFull;
    }
  }
  return kErrorNone;
}

ErrorCode AppendToFile(HANDLE file, std::span<const unsigned char> block) noexcept {
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if ((block.data() == nullptr && !block.empty()) || block.size() > kLargestTransfer) {
    return kErrorInvalidParameter;
  }
  if (block.empty()) {
    return kErrorNone;
  }
  // Finding the end and writing there is one step on a local disk; a redirected or emulated one needs the lock. Where locks are
  // refused the write itself still goes to the end.
  OVERLAPPED place = LastByte();
  const bool locked = ::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0 /*reserved*/, 1, 0, &place);
  DWORD count = 0;
  const bool written = ::WriteFile(file, block.data(), static_cast<DWORD>(block.size()), &count, nullptr /*overlapped*/);
  const ErrorCode error = written ? kErrorNone : LastError();
  if (locked) {
    place = LastByte();
    (void)::UnlockFileEx(file, 0 /*reserved*/, 1, 0, &place);
  }
  return error != kErrorNone ? error : count == block.size() ? kErrorNone : kErrorDiskFull;
}

ErrorCode SeekInFile(HANDLE file, std::int64_t offset, SeekOrigin origin, std::int64_t* position) noexcept {
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  const DWORD method = origin == SeekOrigin::Begin ? FILE_BEGIN : origin == SeekOrigin::Current ? FILE_CURRENT : FILE_END;
  LARGE_INTEGER distance;
  LARGE_INTEGER reached;
  distance.QuadPart = offset;
  if (!::SetFilePointerEx(file, distance, &reached, method)) {
    return LastError();
  }
  if (position != nullptr) {
    *position = reached.QuadPart;
  }
  return kErrorNone;
}

ErrorCode GetFileLength(HANDLE file, std::int64_t& length) noexcept {
  length = 0;
  LARGE_INTEGER size;
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if (!::GetFileSizeEx(file, &size)) {
    return LastError();
  }
  length = size.QuadPart;
  return kErrorNone;
}

ErrorCode CutFile(HANDLE file) noexcept {
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if (::SetEndOfFile(file)) {
    return kErrorNone;
  }
  const ErrorCode error = LastError();
  return error == kErrorInvalidParameter ? kErrorAccessDenied : error;  // Wine's word for a handle that may not write
}

ErrorCode GetFileInformation(HANDLE file, FileInformation& information) noexcept {
  information = {};
  BY_HANDLE_FILE_INFORMATION record;
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if (!::GetFileInformationByHandle(file, &record)) {
    return LastError();
  }
  information.attributes = record.dwFileAttributes;
  information.size = static_cast<std::uint64_t>(record.nFileSizeHigh) << 32 | record.nFileSizeLow;
  information.times = {record.ftCreationTime, record.ftLastAccessTime, record.ftLastWriteTime};
  information.volume = record.dwVolumeSerialNumber;
  information.index = static_cast<std::uint64_t>(record.nFileIndexHigh) << 32 | record.nFileIndexLow;
  return kErrorNone;
}

ErrorCode FileView::Map(HANDLE file) noexcept {
  Unmap();
  LARGE_INTEGER size;
  if (!MayBeFile(file)) {
    return kErrorInvalidHandle;
  }
  if (!::GetFileSizeEx(file, &size)) {
    return LastError();
  }
  // An empty file fails here with 1006, one that just shrank with another number: the view never claims more than it has.
  const HANDLE mapping = ::CreateFileMappingW(file, nullptr /*security*/, PAGE_READONLY, static_cast<DWORD>(size.HighPart),
                                              size.LowPart, nullptr /*name*/);
  if (mapping == nullptr) {
    return LastError();
  }
  const void* view = ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
  const ErrorCode error = view == nullptr ? LastError() : kErrorNone;
  (void)::CloseHandle(mapping);  // the view holds it
  if (error == kErrorNone) {
    m_data = static_cast<const unsigned char*>(view);
    m_size = static_cast<std::size_t>(size.QuadPart);
  }
  return error;
}

void FileView::Unmap() noexcept {
  if (m_data != nullptr) {
    (void)::UnmapViewOfFile(m_data);
  }
  m_data = nullptr;
  m_size = 0;
}

}  // namespace qxv::os
