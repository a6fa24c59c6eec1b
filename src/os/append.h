// append.h - blocks added to a file by name: opened, written and closed in as few steps as the system has.
#pragma once

#include "os/error.h"
#include "os/utf.h"

#include <span>
#include <string>

namespace qxv::os {

/// A file by its name, made ready for many blocks. Linux: the drive mapping and the folder of a relative drive name are looked up
/// when the name is given, case at each block that does not find the file; share modes are not asked.
class AppendFile {
 public:
  /// Takes a name. 3 for an empty one, 123 for one too long; no file then. May throw std::bad_alloc, and has no name then.
  [[nodiscard]] ErrorCode SetName(const QXChar* name);

  /// Adds a block at the end of the file, which is created when missing, by one system write: blocks of several processes and
  /// threads never interleave. The first openingBytes of the block are left out when the file holds something already; two
  /// writers may both find it empty. 3 without a name; 5 for what has no end to write at, such as folders and FIFOs.
  [[nodiscard]] ErrorCode Append(std::span<const unsigned char> block, std::size_t openingBytes) const noexcept;

 private:
  Text m_name;
#if !defined(_WIN32)
  std::string m_path;  // as given; empty without a name
#endif
};

}  // namespace qxv::os
