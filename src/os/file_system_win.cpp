// file_system_win.cpp - files and folders by name through the system's calls.

#include "os/file_system.h"

#include "os/win_api.h"
#include "os/win_name.h"

#include <algorithm>

namespace qxv::os {
namespace {

constexpr unsigned kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

ErrorCode Result(BOOL done) { return done ? kErrorNone : LastError(); }

/// Opens a file or folder for its records only.
ErrorCode OpenForRecords(const QXChar* path, DWORD access, File& file) {
  if (const ErrorCode error = CheckName(path); error != kErrorNone) {
    return error;
  }
  const HANDLE handle = ::CreateFileW(path, access, kShareAll, nullptr /*security*/, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                      nullptr /*template*/);
  if (handle == INVALID_HANDLE_VALUE) {
    return LastError();
  }
  file = File(handle);
  return kErrorNone;
}

/// Calls of the kind "give a buffer, get the length or the size that would do".
template <typename Call>
ErrorCode TextOf(Call call, Text& text) {
  text.resize(MAX_PATH);
  for (;;) {
    const DWORD length = call(static_cast<DWORD>(text.size()), text.data());
    if (length == 0) {
      text.clear();
      return LastError();
    }
    const bool fits = length < text.size();
    text.resize(length);
    if (fits) {
      return kErrorNone;
    }
  }
}

bool LessIgnoringCase(const FoundFile& a, const FoundFile& b) {
  const auto order = [](const Text& x, const Text& y) {
    return ::CompareStringOrdinal(x.c_str(), static_cast<int>(x.size()), y.c_str(), static_cast<int>(y.size()), TRUE);
  };
  const int result = order(a.name, b.name);
  return result == CSTR_EQUAL ? a.name < b.name : result == CSTR_LESS_THAN;
}

}  // namespace

ErrorCode GetPathAttributes(const QXChar* path, std::uint32_t& attributes) noexcept {
  attributes = 0;
  if (const ErrorCode error = CheckName(path); error != kErrorNone) {
    return error;
  }
  const DWORD found = ::GetFileAttributesW(path);
  if (found == INVALID_FILE_ATTRIBUTES) {
    return LastError();
  }
  attributes = found;
  return kErrorNone;
}

ErrorCode SetReadOnly(const QXChar* path, bool readOnly) noexcept {
  std::uint32_t attributes = 0;
  if (const ErrorCode error = GetPathAttributes(path, attributes); error != kErrorNone) {
    return error;
  }
  attributes &= ~(kAttributeReadOnly | kAttributeNormal);
  attributes |= readOnly ? kAttributeReadOnly : 0;
  return Result(::SetFileAttributesW(path, attributes == 0 ? kAttributeNormal : attributes));
}

ErrorCode CheckFolderAccess(const QXChar* path) noexcept {
  std::uint32_t attributes = 0;
  if (const ErrorCode error = GetPathAttributes(path, attributes); error != kErrorNone) {
    return error;
  }
  if ((attributes & kAttributeFolder) == 0) {
    return kErrorNotAFolder;
  }
  File folder;
  return OpenForRecords(path, FILE_TRAVERSE | SYNCHRONIZE, folder);
}

ErrorCode GetCurrentFolder(Text& folder) { return TextOf(::GetCurrentDirectoryW, folder); }

ErrorCode SetCurrentFolder(const QXChar* path) noexcept {
  const ErrorCode error = CheckName(path);
  return error != kErrorNone ? error : Result(::SetCurrentDirectoryW(path));
}

ErrorCode GetTemporaryFolder(Text& folder) { return TextOf(::GetTempPathW, folder); }

ErrorCode CreateFolder(const QXChar* path) noexcept {
  const ErrorCode error = CheckName(path);
  return error != kErrorNone ? error : Result(::CreateDirectoryW(path, nullptr /*security*/));
}

ErrorCode RemoveFile(const QXChar* path) noexcept {
  const ErrorCode error = CheckName(path);
  return error != kErrorNone ? error : Result(::DeleteFileW(path));
}

ErrorCode RemoveFolder(const QXChar* path) noexcept {
  const ErrorCode error = CheckName(path);
  return error != kErrorNone ? error : Result(::RemoveDirectoryW(path));
}

ErrorCode RenameFile(const QXChar* from, const QXChar* to, bool replace) noexcept {
  if (const ErrorCode error = CheckName(from); error != kErrorNone) {
    return error;
  }
  if (const ErrorCode error = CheckName(to); error != kErrorNone) {
    return error;
  }
  return Result(::MoveFileExW(from, to, replace ? MOVEFILE_REPLACE_EXISTING : 0));
}

ErrorCode GetFileTimes(const QXChar* path, FileTimes& times) noexcept {
  times = {};
  File file;
  if (const ErrorCode error = OpenForRecords(path, FILE_READ_ATTRIBUTES, file); error != kErrorNone) {
    return error;
  }
  return Result(::GetFileTime(file.Handle(), &times.created, &times.accessed, &times.written));
}

ErrorCode SetFileTimes(const QXChar* path, const FileTimes& times) noexcept {
  File file;
  if (const ErrorCode error = OpenForRecords(path, FILE_WRITE_ATTRIBUTES, file); error != kErrorNone) {
    return error;
  }
  return Result(::SetFileTime(file.Handle(), &times.created, &times.accessed, &times.written));
}

ErrorCode FindFiles(const QXChar* pattern, std::vector<FoundFile>& found) {
  found.clear();
  if (const ErrorCode error = CheckName(pattern); error != kErrorNone) {
    return error;
  }
  struct Search {  // ends it on every path
    explicit Search(HANDLE value) : handle(value) {}
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;
    ~Search() {
      if (handle != INVALID_HANDLE_VALUE) {
        ::FindClose(handle);
      }
    }
    HANDLE handle;
  };
  WIN32_FIND_DATAW data;
  const Search search(::FindFirstFileW(pattern, &data));
  if (search.handle == INVALID_HANDLE_VALUE) {
    return LastError();
  }
  do {
    FoundFile file;
    file.name = data.cFileName;
    file.attributes = data.dwFileAttributes;
    file.size = file.IsFolder() ? 0 : static_cast<std::uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    file.times = {data.ftCreationTime, data.ftLastAccessTime, data.ftLastWriteTime};
    found.push_back(std::move(file));
  } while (::FindNextFileW(search.handle, &data));
  const ErrorCode error = LastError();
  if (error != ERROR_NO_MORE_FILES) {
    found.clear();
    return error;
  }
  std::sort(found.begin(), found.end(), LessIgnoringCase);
  return kErrorNone;
}

}  // namespace qxv::os
