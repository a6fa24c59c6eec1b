// file.h - opened files as system handles: no buffer, no policy.
// On Linux a HANDLE is a number that only these functions understand; a closed or foreign one is answered with 6 for good, never
// followed. Windows may give the number of a closed handle to the next object at once, so close once: File does.
// Every function gives 0 or a Windows error number (os/error.h).
#pragma once

#include "os/error.h"
#include "qxv/types.h"

#include <cstdint>
#include <span>
#include <utility>

namespace qxv::os {

enum class FileAccess {
  Read,
  Write,
  ReadWrite,
  Append,  // every write goes to the end, see AppendToFile
};

enum class FileDisposition {
  OpenExisting,
  OpenAlways,    // created empty when missing
  CreateAlways,  // created, or emptied
  CreateNew,     // 80 when it exists
};

/// What others may do with the file while this one is open; the sum of these. A conflict, in either order, is 32.
inline constexpr unsigned kShareNone = 0;
inline constexpr unsigned kShareRead = 1;
inline constexpr unsigned kShareWrite = 2;
inline constexpr unsigned kShareDelete = 4;

enum class NewFileAttribute {
  Normal,
  Hidden,  // no meaning on Linux, where a leading dot in the name hides a file
};

struct OpenOptions {
  FileAccess access = FileAccess::Read;
  FileDisposition disposition = FileDisposition::OpenExisting;
  unsigned share = kShareRead;
  NewFileAttribute attribute = NewFileAttribute::Normal;  // of a file that is created
  bool folder = false;                                    // also folders, for GetFileInformation: read, open existing
};

enum class SeekOrigin { Begin, Current, End };

/// Attribute bits, as Windows numbers them.
inline constexpr std::uint32_t kAttributeReadOnly = 0x01;
inline constexpr std::uint32_t kAttributeHidden = 0x02;
inline constexpr std::uint32_t kAttributeSystem = 0x04;
inline constexpr std::uint32_t kAttributeFolder = 0x10;
inline constexpr std::uint32_t kAttributeArchive = 0x20;
inline constexpr std::uint32_t kAttributeNormal = 0x80;

struct FileTimes {
  FILETIME created;
  FILETIME accessed;
  FILETIME written;
};

struct FileInformation {
  std::uint32_t attributes;  // kAttribute... bits
  std::uint64_t size;        // 0 for a folder
  FileTimes times;
  std::uint64_t volume;  // with index: equal for two handles of one file
  std::uint64_t index;
};

/// Opens a file; on failure file is INVALID_HANDLE_VALUE. A folder is 5 unless asked for. Linux: readers refuse everything that
/// is not a regular file with 5, writers take character devices too; share modes hold between users of this library only, and not
/// where the file system has no locks.
[[nodiscard]] ErrorCode OpenFileNamed(const QXChar* name, const OpenOptions& options, HANDLE& file) noexcept;

/// Closes; 6 for a handle that is not open.
ErrorCode CloseFile(HANDLE file) noexcept;

/// A second handle of the same opened file: one position, one set of share marks, released with the last of them.
[[nodiscard]] ErrorCode DuplicateFile(HANDLE file, HANDLE& copy) noexcept;

/// Reads at the position until the span is full or the file ends; done is what was read, also beside an error.
[[nodiscard]] ErrorCode ReadFromFile(HANDLE file, std::span<unsigned char> bytes, std::size_t& done) noexcept;

/// Writes at the position until all is written or an error comes; done is what was written.
[[nodiscard]] ErrorCode WriteToFile(HANDLE file, std::span<const unsigned char> bytes, std::size_t& done) noexcept;

/// Adds one block at the end of a file opened with FileAccess::Append by one system write: blocks of several processes and
/// threads never interleave. 112 when only a part found room.
[[nodiscard]] ErrorCode AppendToFile(HANDLE file, std::span<const unsigned char> block) noexcept;

/// Moves the position, also behind the end; 131 for a place before the start. position receives the new one.
[[nodiscard]] ErrorCode SeekInFile(HANDLE file, std::int64_t offset, SeekOrigin origin,
                                   std::int64_t* position = nullptr) noexcept;

[[nodiscard]] ErrorCode GetFileLength(HANDLE file, std::int64_t& length) noexcept;

/// Makes the position the end of the file: cuts it, or extends it with zeros.
[[nodiscard]] ErrorCode CutFile(HANDLE file) noexcept;

[[nodiscard]] ErrorCode GetFileInformation(HANDLE file, FileInformation& information) noexcept;

/// The bytes of a whole file, mapped for reading; they stay when the handle is closed. If another process cuts the file while it
/// is mapped on Linux, touching what was cut off ends the program: copy what others may cut.
class FileView {
 public:
  FileView() noexcept = default;
  FileView(const FileView&) = delete;
  FileView& operator=(const FileView&) = delete;
  FileView(FileView&& other) noexcept : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)) {}
  FileView& operator=(FileView&& other) noexcept {
    if (this != &other) {
      Unmap();
      m_data = std::exchange(other.m_data, nullptr);
      m_size = std::exchange(other.m_size, 0);
    }
    return *this;
  }
  ~FileView() { Unmap(); }

  /// Replaces what was mapped. 1006 for an empty file, 5 for a handle that may not read.
  [[nodiscard]] ErrorCode Map(HANDLE file) noexcept;
  void Unmap() noexcept;

  std::span<const unsigned char> Bytes() const noexcept { return {m_data, m_size}; }

 private:
  const unsigned char* m_data = nullptr;
  std::size_t m_size = 0;
};

/// Owns a handle.
class File {
 public:
  File() noexcept = default;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  explicit File(HANDLE adopted) noexcept : m_handle(adopted) {}
  File(File&& other) noexcept : m_handle(other.Release()) {}
  File& operator=(File&& other) noexcept {
    if (this != &other) {
      (void)Close();
      m_handle = other.Release();
    }
    return *this;
  }
  ~File() { (void)Close(); }

  /// Closes what was open, then opens.
  [[nodiscard]] ErrorCode Open(const QXChar* name, const OpenOptions& options) noexcept {
    (void)Close();
    return OpenFileNamed(name, options, m_handle);
  }

  /// 0 too when nothing is open.
  ErrorCode Close() noexcept { return IsOpen() ? CloseFile(Release()) : kErrorNone; }

  bool IsOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }
  HANDLE Handle() const noexcept { return m_handle; }

  /// Gives the handle away without closing it.
  HANDLE Release() noexcept { return std::exchange(m_handle, INVALID_HANDLE_VALUE); }

 private:
  HANDLE m_handle = INVALID_HANDLE_VALUE;
};

}  // namespace qxv::os
