// full_disk.h - files that find no room: a limit on their size, a disk of a few KiB. Linux only.
#pragma once

#include <cstdint>
#include <filesystem>

namespace support {

/// No file of this process grows beyond so many bytes while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(std::uint64_t bytes);
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit();

 private:
  std::uint64_t m_before = 0;
};

/// A disk of its own at a folder, seen by this process only, while it lives.
class SmallDisk {
 public:
  SmallDisk(const std::filesystem::path& folder, unsigned kibibytes);
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk();

  /// False when this user may not mount one.
  bool Mounted() const { return m_mounted; }

 private:
  std::filesystem::path m_folder;
  bool m_mounted = false;
};

}  // namespace support
