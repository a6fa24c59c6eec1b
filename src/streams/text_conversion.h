// text_conversion.h - a whole text file taken into memory and rewritten in the other encoding.
#pragma once

#include "os/error.h"
#include "qxv/types.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace qxv {

enum class TextEncoding { Unicode, Ansi };  // UTF-16 little-endian behind FF FE; the ANSI code page of the calling thread

inline constexpr unsigned char kUnicodeMark[] = {0xFF, 0xFE};

/// The bytes of a file in memory of our own, so that nobody else can cut them off, with kZerosBehind zero bytes behind them.
struct FileCopy {
  static constexpr std::size_t kZerosBehind = 8;
  std::unique_ptr<unsigned char[]> bytes;
  std::uint32_t size = 0;

  [[nodiscard]] std::span<const unsigned char> Bytes() const noexcept { return {bytes.get(), size}; }
};

/// Reads the whole file, moving its position. 223 above 4 GiB.
[[nodiscard]] os::ErrorCode CopyFileBytes(HANDLE file, FileCopy& copy);

/// The bytes of a file that holds the same text up to its first zero character in the other encoding, mark included. A Unicode
/// text is taken from behind its mark. False when it is too long to be converted.
[[nodiscard]] bool ConvertText(std::span<const unsigned char> bytes, TextEncoding to, std::vector<unsigned char>& converted);

/// Replaces what the file holds. When that fails the file gets the bytes of before back.
[[nodiscard]] os::ErrorCode ReplaceFileBytes(HANDLE file, std::span<const unsigned char> bytes,
                                             std::span<const unsigned char> before);

}  // namespace qxv
