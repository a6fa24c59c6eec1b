// temp_folder.h - a fresh folder for one test, and files in it as bytes. Works with the standard library only, so that it can
// judge the code under test.
#pragma once

#include "support/text.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// Made empty, removed with all that is in it at the end.
class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  /// In drive form with a trailing backslash.
  const Text& Path() const { return m_path; }

  /// The name of something in it: folder.File(QXT("a.txt")) or folder.File(QXT("sub\\a.txt")).
  Text File(const Text& name) const { return m_path + name; }

  const std::filesystem::path& Native() const { return m_native; }

 private:
  std::filesystem::path m_native;
  Text m_path;
};

/// The standard library's path of an absolute name in drive form (on Linux Z: only).
std::filesystem::path NativePath(const Text& name);

/// Replaces a file's bytes. False when that fails.
[[nodiscard]] bool WriteBytes(const Text& name, std::string_view bytes);

/// A file's bytes; "<cannot be read>" when there are none to be had.
std::string ReadBytes(const Text& name);

bool Exists(const Text& name);

}  // namespace support
