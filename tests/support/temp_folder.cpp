// temp_folder.cpp - folders and files for tests, by the standard library.

#include "support/temp_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>

namespace support {
namespace {

std::filesystem::path MakeFolder() {
  std::random_device random;
  for (int i = 0; i < 100; ++i) {
    const std::string name = "qxv-test-" + std::to_string(random()) + "-" + std::to_string(random());
    std::filesystem::path folder = std::filesystem::canonical(std::filesystem::temp_directory_path()) / name;
    if (std::filesystem::create_directory(folder)) {
      return folder;
    }
  }
  throw std::runtime_error("no temporary folder");
}

Text DriveForm(const std::filesystem::path& folder) {
#if defined(_WIN32)
  Text text = folder.wstring();
#else
  Text text = QXT("Z:") + folder.u16string();
#endif
  std::replace(text.begin(), text.end(), QXT('/'), QXT('\\'));
  if (text.back() != QXT('\\')) {
    text += QXT('\\');
  }
  return text;
}

}  // namespace

TempFolder::TempFolder() : m_native(MakeFolder()), m_path(DriveForm(m_native)) {}

TempFolder::~TempFolder() {
  std::error_code ignored;
  for (auto entry = std::filesystem::recursive_directory_iterator(m_native, ignored);
       !ignored && entry != std::filesystem::recursive_directory_iterator(); entry.increment(ignored)) {
    std::error_code none;
    if (!entry->is_symlink(none)) {  // what a test made read-only must go too
      std::filesystem::permissions(entry->path(), std::filesystem::perms::owner_all, std::filesystem::perm_options::add, none);
    }
  }
  std::filesystem::remove_all(m_native, ignored);
}

std::filesystem::path NativePath(const Text& name) {
#if defined(_WIN32)
  return std::filesystem::path(name);
#else
  Text text = name.substr(name.starts_with(QXT("Z:")) ? 2 : 0);
  std::replace(text.begin(), text.end(), QXT('\\'), QXT('/'));
  return std::filesystem::path(text);
#endif
}

bool WriteBytes(const Text& name, std::string_view bytes) {
  std::ofstream file(NativePath(name), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return static_cast<bool>(file);
}

std::string ReadBytes(const Text& name) {
  std::ifstream file(NativePath(name), std::ios::binary);
  if (!file) {
    return "<cannot be read>";
  }
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool Exists(const Text& name) {
  std::error_code ignored;
  return std::filesystem::exists(NativePath(name), ignored);
}

}  // namespace support
