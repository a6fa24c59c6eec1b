// c_stream.h - streams of the C run-time, by QXChar name and with 64-bit positions.
#pragma once

#include "os/error.h"
#include "os/file.h"
#include "qxv/types.h"

#include <cstdint>
#include <cstdio>

namespace qxv::os {

/// Opens a stream; null on failure, with the reason in error. mode is "r", "w" or "a" with "b" and perhaps "+"; anything else is
/// 87, since text mode means something else on each system. Others may read and write the file meanwhile, not delete it. Linux:
/// readers ("rb") refuse folders, FIFOs and devices; closed on exec.
std::FILE* OpenStream(const QXChar* name, const char* mode, ErrorCode* error = nullptr) noexcept;

/// As fseek, in 64 bits; false on failure.
[[nodiscard]] bool SeekStream(std::FILE* stream, std::int64_t offset, SeekOrigin origin) noexcept;

/// The position, -1 on failure.
std::int64_t TellStream(std::FILE* stream) noexcept;

/// The length, what is still buffered included; the position stays. -1 on failure.
std::int64_t StreamLength(std::FILE* stream) noexcept;

/// Whether the stream was opened on a folder, which fopen allows for reading on Linux.
[[nodiscard]] bool StreamIsFolder(std::FILE* stream) noexcept;

/// A mode taken apart; false for one that OpenStream refuses.
struct StreamMode {
  char kind;    // 'r', 'w' or 'a'
  bool update;  // "+"
};
[[nodiscard]] bool ParseStreamMode(const char* mode, StreamMode& parsed) noexcept;

}  // namespace qxv::os
