// posix_open.h - what the file families of the Linux build share: opening with share modes, handles of descriptors, attributes.
#pragma once

#include "os/file.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>
#include <string>

namespace qxv::os {

/// Opens a native path as OpenFileNamed describes it; descriptor is -1 on failure.
[[nodiscard]] ErrorCode OpenDescriptor(const std::string& path, const OpenOptions& options, int& descriptor) noexcept;

/// Marks an opened regular file with what it does and what it denies to others, and checks the marks of the others: 32 on a
/// conflict. The marks end with the descriptor and its duplicates.
[[nodiscard]] ErrorCode TakeShareMarks(int descriptor, FileAccess access, unsigned share) noexcept;

/// Whether somebody has the file open and does not share its deletion (and renaming).
bool IsDeletionDenied(const std::string& path) noexcept;

/// A handle for a descriptor, which it then owns; INVALID_HANDLE_VALUE (the descriptor stays the caller's) when there are too
/// many.
HANDLE MakeHandle(int descriptor, FileAccess access) noexcept;

/// Holds a handle's descriptor open during one call, whatever other threads close.
class PinnedFile {
 public:
  explicit PinnedFile(HANDLE file) noexcept;
  PinnedFile(const PinnedFile&) = delete;
  PinnedFile& operator=(const PinnedFile&) = delete;
  ~PinnedFile();

  bool IsOpen() const noexcept { return m_descriptor >= 0; }
  int Descriptor() const noexcept { return m_descriptor; }
  FileAccess Access() const noexcept { return m_access; }
  bool MayRead() const noexcept { return m_access == FileAccess::Read || m_access == FileAccess::ReadWrite; }
  bool MayWrite() const noexcept { return m_access == FileAccess::Write || m_access == FileAccess::ReadWrite; }
  bool MayAppend() const noexcept { return m_access != FileAccess::Read; }

 private:
  int m_descriptor = -1;
  FileAccess m_access = FileAccess::Read;
};

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { (void)::closedir(folder); }
};
using FolderStream = std::unique_ptr<DIR, CloseFolder>;

/// Status of a file with the time of its creation, where the system knows it.
struct NativeStatus {
  mode_t mode;
  std::uint64_t size;
  std::uint64_t device;
  std::uint64_t inode;
  FileTimes times;
};

/// As fstatat, links followed unless flags say otherwise; false leaves errno.
[[nodiscard]] bool ReadStatus(int folder, const char* path, int flags, NativeStatus& status) noexcept;

/// The attribute bits of a file; name is its last component, for the hidden bit.
std::uint32_t AttributesOf(const NativeStatus& status, std::string_view name) noexcept;

}  // namespace qxv::os
