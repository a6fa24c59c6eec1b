// profile_posix.cpp - initialisation files on Linux, by our own reader.

#include "os/profile.h"

#include "os/file.h"
#include "os/profile_name.h"
#include "os/profile_text.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace qxv::os {
namespace {

constexpr std::int64_t kLargestFile = std::int64_t{64} << 20;

/// An absolute path from the environment; empty when there is none.
std::string FolderFrom(const char* variable, const char* below) {
  const char* folder = std::getenv(variable);
  return folder != nullptr && folder[0] == '/' ? std::string(folder) + below : std::string();
}

/// What stands for the folder of Windows; empty when the environment names none.
std::string SystemFolder() {
  std::string folder = FolderFrom("QXV_WINDIR", "");
  folder = folder.empty() ? FolderFrom("XDG_CONFIG_HOME", "/qxv") : folder;
  return folder.empty() ? FolderFrom("HOME", "/.config/qxv") : folder;
}

/// The whole file; empty when it cannot be read or is larger than any such file.
Text ReadProfile(const QXChar* file) {
  Text name(file);
  if (IsBareProfileName(name)) {
    const std::string folder = SystemFolder();
    if (folder.empty() || IsImpossibleProfileName(name)) {
      return {};
    }
    name = FileNameFromUtf8(folder) + QXT('/') + name;
  }
  OpenOptions options;
  options.share = kShareRead | kShareWrite;
  File opened;
  std::int64_t length = 0;
  if (opened.Open(name.c_str(), options) != kErrorNone || GetFileLength(opened.Handle(), length) != kErrorNone ||
      length > kLargestFile) {
    return {};
  }
  const auto size = static_cast<std::size_t>(length);
  const std::unique_ptr<unsigned char[]> bytes(new unsigned char[size]);
  std::size_t done = 0;
  if (ReadFromFile(opened.Handle(), {bytes.get(), size}, done) != kErrorNone) {
    return {};
  }
  return DecodeProfile({bytes.get(), done});
}

}  // namespace

std::size_t ReadProfileText(const QXChar* file, const QXChar* section, const QXChar* key, std::span<QXChar> out) {
  const Text text = ReadProfile(file);
  const TextView value = FindProfileValue(text, section, key).value_or(TextView());
  const std::size_t length = std::min(value.size(), out.size() - 1);
  std::copy_n(value.data(), length, out.data());
  out[length] = 0;
  return length;
}

std::int32_t ReadProfileInteger(const QXChar* file, const QXChar* section, const QXChar* key) {
  const Text text = ReadProfile(file);
  return ProfileInteger(FindProfileValue(text, section, key).value_or(TextView()));
}

}  // namespace qxv::os
