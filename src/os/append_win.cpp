// append_win.cpp - a block added through the file family.

#include "os/append.h"

#include "os/file.h"
#include "os/win_name.h"

namespace qxv::os {

ErrorCode AppendFile::SetName(const QXChar* name) {
  m_name.clear();
  if (const ErrorCode error = CheckName(name); error != kErrorNone) {
    return error;
  }
  m_name = name;
  return kErrorNone;
}

ErrorCode AppendFile::Append(std::span<const unsigned char> block, std::size_t openingBytes) const noexcept {
  File file;
  const OpenOptions options{FileAccess::Append, FileDisposition::OpenAlways, kShareRead | kShareWrite};
  if (const ErrorCode error = file.Open(m_name.c_str(), options); error != kErrorNone) {
    return error;
  }
  std::int64_t length = 0;
  if (const ErrorCode error = GetFileLength(file.Handle(), length); error != kErrorNone) {
    return error;
  }
  return AppendToFile(file.Handle(), length == 0 ? block : block.subspan(openingBytes));
}

}  // namespace qxv::os
