// fuzz_path.cpp - the functions on names over texts of any units. Only those that change nothing on the disk run on the raw text;
// folders are created below a temporary folder, by names made of a few characters.
// What must hold: the parts joined are the text again, and the two pairs of functions agree where their rules say so.

#include "qxv/path.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>

namespace {

using Text = std::basic_string<QXChar>;

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

Text Of(const CQXString& text) { return static_cast<const QXChar*>(text); }

void Parts(const Text& text) {
  const QXChar* path = text.c_str();
  const Text folder = Of(QXVParsePath(path));
  const Text name = Of(QXVParseMainFileName(path));
  const Text extension = Of(QXVParseExtFileName(path));
  if (text.size() < 512) {
    Require(text == folder + name + extension || text == folder + name + QXT(".") + extension);
  } else {
    Require(folder.empty() && name.empty() && extension.empty());
  }
  Require(Of(QXVGetFilePath(path)) + Of(QXVGetFileName(path)) == text);
  Require(text.ends_with(Of(QXVGetFileType(path))));
  Require(text.ends_with(Of(QXVParseShortFileName(path))));
  const Text normalized = Of(QXVNormalizeFilePath(path));
  Require(normalized == text || normalized == text + QXT("\\"));
  Require(normalized.empty() == text.empty() && Of(QXVXHNormalizeFilePath(normalized.c_str())) == normalized);
  Require(QXVIsNormalizedFile(path) + QXVIsNormalizedPath(path) <= 1);
}

void Existence(const Text& text) {
  const QXChar* path = text.c_str();
  Require(QXVIsFileExist(path) <= QXVIsNormalizedFile(path));
  Require(QXVIsPathExist(path) <= QXVIsNormalizedPath(path));
  CQXString string(path);
  Require(QXVXHFileSize(string) >= 0);
}

// A folder of this run's own, in drive form with a backslash at its end.
struct OwnFolder {
  OwnFolder() { std::filesystem::create_directories(native); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;
  ~OwnFolder() { std::filesystem::remove_all(native); }

  std::filesystem::path native =
      std::filesystem::temp_directory_path() / ("qxv-fuzz-path-" + std::to_string(std::random_device()()));
  Text name = QXT("Z:") + native.u16string() + QXT("\\");
};

// Folders below the temporary one: four characters of the alphabet stand in two bits each.
void Folders(const Text& start, const std::uint8_t* data, std::size_t size) {
  static constexpr QXChar kAlphabet[] = QXT("ab\\/");
  Text path = start;
  for (std::size_t i = 0; i < size && i < 8; ++i) {
    path += kAlphabet[data[i] & 3];
  }
  if (QXVCreatePath(path.c_str()) == 1) {
    Require(QXVPathExist(path.c_str(), 0) == 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const OwnFolder folder;
  Text units(size / sizeof(QXChar), 0);
  std::memcpy(units.data(), data, units.size() * sizeof(QXChar));
  const Text text(units.c_str());
  Parts(text);
  Existence(text);
  const Text narrow = Text(data, data + size).c_str();
  Parts(narrow);
  Existence(narrow);
  Folders(folder.name, data, size);
  return 0;
}
