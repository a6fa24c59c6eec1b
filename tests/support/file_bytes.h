// file_bytes.h - texts of bytes as the spans that the file functions take.
#pragma once

#include "os/file.h"

#include <span>
#include <string>
#include <string_view>

namespace support {

inline std::span<const unsigned char> BytesOf(std::string_view text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

/// Up to count bytes at the position; "<error n>" when reading fails.
inline std::string ReadSome(HANDLE file, std::size_t count) {
  std::string text(count, '?');
  std::size_t done = 0;
  const auto error = qxv::os::ReadFromFile(file, {reinterpret_cast<unsigned char*>(text.data()), text.size()}, done);
  text.resize(done);
  return error == 0 ? text : "<error " + std::to_string(error) + ">";
}

/// 0 when all was written.
inline qxv::os::ErrorCode WriteAll(HANDLE file, std::string_view text) {
  std::size_t done = 0;
  const auto error = qxv::os::WriteToFile(file, BytesOf(text), done);
  return error == 0 && done != text.size() ? 0xFFFFFFFF : error;
}

}  // namespace support
