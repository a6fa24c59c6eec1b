// files.h - files by the names that people type, read through the host framework's file. Failures name the file and the reason.
#pragma once

#include "qxv/host.h"
#include "qxv/string.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tool {

/// A file that is read from its start.
class InputFile {
 public:
  /// Opens, or throws a Failure.
  explicit InputFile(const std::string& path);

  std::uint64_t Size() const { return m_size; }
  void Seek(std::uint64_t position);
  /// Bytes read: fewer than there is room for at the end of the file only.
  std::size_t Read(std::span<unsigned char> room);

 private:
  std::string m_path;
  CFile m_file;
  std::uint64_t m_size = 0;
};

/// All bytes of a file of up to 2 GiB.
std::vector<unsigned char> ReadFile(const std::string& path);

/// Whether there is a file or folder of the name.
bool Exists(const std::string& path);
bool IsFolder(const std::string& path);

/// Makes a folder with all that is missing above it, or throws a Failure.
void MakeFolder(const std::string& path);

/// The name with a separator at its end; empty stays empty.
std::string AsFolder(const std::string& path);

/// The part behind the last separator, and that part without its extension.
std::string NameOf(const std::string& path);
std::string StemOf(const std::string& path);

/// Texts that say by their mark that they are UTF-16 or UTF-8, and those without a mark that are UTF-8.
/// @param path  for the failure that others are
CQXString DecodeText(const std::vector<unsigned char>& bytes, const std::string& path);

}  // namespace tool
