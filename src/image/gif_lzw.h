// gif_lzw.h - the string coder (LZW) of GIF frames.
#pragma once

#include "foundation/status.h"
#include "streams/file_pieces.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace qxv {

/// A string of the table: another string of it, and one byte more.
struct CTableItem {
  std::uint32_t keyAndCode;  // the other string's code and the byte above (20 bits), this one's code below (12 bits)
};

/// The strings and their codes. Those of single bytes are there from the start, with the byte as their code.
/// Every string that was looked for byte by byte so far stands in the table, so one look-up of (its code, next byte) finds the
/// same code as a search through all strings for the whole one; no string stands there twice.
class CTable {
 public:
  static constexpr unsigned kCodes = 4096;
  static constexpr unsigned kClear = 256;
  static constexpr unsigned kEnd = 257;
  static constexpr unsigned kFirstCode = 258;
  static constexpr unsigned kNoCode = kClear;  // no string has it

  CTable() noexcept { Clear(); }

  /// Takes all strings out but the single bytes.
  void Clear() noexcept;

  unsigned FirstFree() const noexcept { return m_firstFree; }

  /// Where a string with a byte added stands, or would: its code is kNoCode when it is not in the table.
  struct Place {
    std::size_t index;
    unsigned code;
  };
  Place Find(unsigned code, unsigned char byte) const noexcept {
    const std::uint32_t key = Key(code, byte);
    std::size_t index = FirstPlace(code, byte);
    std::uint32_t item = m_items[index].keyAndCode;
    while (item >> kCodeBits != key && item != kEmpty) {
      index = (index + 1) % kPlaces;
      item = m_items[index].keyAndCode;
    }
    return {index, item % kCodes};
  }

  /// Adds what Find has not found, there, at the first free code; there must be one.
  void Add(unsigned code, unsigned char byte, std::size_t index) noexcept {
    m_items[index].keyAndCode = Key(code, byte) << kCodeBits | m_firstFree;
    if (Run& run = m_runs[byte]; run.code == code) {
      run = {m_firstFree, run.length + 1};
    }
    ++m_firstFree;
  }

  /// Of the strings that repeat one byte, the longest in the table.
  struct Run {
    unsigned code;
    unsigned length;
  };
  Run LongestRun(unsigned char byte) const noexcept { return m_runs[byte]; }

 private:
  static constexpr unsigned kCodeBits = 12;
  static constexpr std::uint32_t kEmpty = kNoCode;  // if taken for an item, one that gives the right answer
  static constexpr unsigned kPlaceBits = 14;        // less than half of the places are taken
  static constexpr std::size_t kPlaces = std::size_t{1} << kPlaceBits;

  static std::uint32_t Key(unsigned code, unsigned char byte) noexcept { return code << 8 | byte; }
  // Of the two the byte is known long before, so the code goes in by the quickest operation there is.
  static std::size_t FirstPlace(unsigned code, unsigned char byte) noexcept {
    return code * 4 ^ (byte * 0x9E3779B1u >> (32 - kPlaceBits));
  }

  std::array<CTableItem, kPlaces> m_items;
  std::array<Run, 256> m_runs;
  unsigned m_firstFree;
};

/// Codes of 1 to 12 bits, packed from the lowest bit up, in sub-blocks: a byte that tells the length, up to 255, and so
/// many bytes.
class CodeOutput {
 public:
  explicit CodeOutput(FileWriter& out) noexcept : m_out(&out) {}

  /// 0x89601A18 for another width.
  [[nodiscard]] Status Put(unsigned width, unsigned code) noexcept {
    if (width < 1 || width > kGreatestWidth) {
      return kStatusImageBadCode;
    }
    m_bits |= std::uint64_t{code} << m_bitCount;
    m_bitCount += width;
    if (m_bitCount >= 32) {
      MoveBits();
    }
    return kStatusOk;
  }

  /// The last bits, filled up with zeros, and the sub-block of length 0 that ends them.
  void Finish() noexcept;

 private:
  static constexpr unsigned kGreatestWidth = 12;
  static constexpr std::size_t kBlock = 255;
  static constexpr std::size_t kBlocks = 128;

  void MoveBits() noexcept {
    const auto bits = static_cast<std::uint32_t>(m_bits);
    std::memcpy(m_bytes + m_size, &bits, sizeof bits);  // lowest byte first, as this processor has it
    m_size += sizeof bits;
    m_bits >>= 32;
    m_bitCount -= 32;
    if (m_size >= kBlock * kBlocks) {
      WriteBlocks();
    }
  }
  void WriteBlocks() noexcept;

  FileWriter* m_out;
  std::uint64_t m_bits = 0;
  unsigned m_bitCount = 0;
  std::size_t m_size = 0;
  unsigned char m_bytes[kBlock * kBlocks + sizeof(std::uint32_t)];
};

/// One frame's palette indices, coded as they come.
class CFrame {
 public:
  explicit CFrame(FileWriter& out) noexcept : m_output(out) {}

  /// The next indices in row order; a frame may be given in any number of parts.
  [[nodiscard]] Status Encode(std::span<const unsigned char> indices) noexcept;

  /// Ends the frame. Another one may follow.
  [[nodiscard]] Status Finish() noexcept;

  /// Ends a frame without pixels, which has no codes at all.
  void FinishEmpty() noexcept { m_output.Finish(); }

 private:
  static constexpr unsigned kFirstWidth = 9;

  void Put(unsigned code) noexcept { m_status |= m_output.Put(m_codeWidth, code); }
  void Restart() noexcept;

  CTable m_table;
  CodeOutput m_output;
  unsigned m_codeWidth = kFirstWidth;
  unsigned m_limit = 1u << kFirstWidth;  // the first free code at which codes grow by a bit
  unsigned m_string = CTable::kNoCode;   // the current string; none when empty
  Status m_status = kStatusOk;
};

}  // namespace qxv
