// native_file.h - a small file of the system read whole, by its native path (Linux only).
#pragma once

#include <cstddef>
#include <string>

namespace qxv::os {

/// Reads a regular file, those of /proc among them. False, with bytes empty, when it is none, cannot be read, or holds more than
/// mostBytes.
[[nodiscard]] bool ReadNativeFile(const std::string& path, std::size_t mostBytes, std::string& bytes);

}  // namespace qxv::os
