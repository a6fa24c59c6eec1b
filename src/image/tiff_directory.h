// tiff_directory.h - the first directory of a TIFF file (TIFF 6.0): the entries that decoding looks at.
// Count, entries of 12 bytes (tag, type, count, value or its offset), offset of the next directory; numbers of the file's byte
// order.
#pragma once

#include "image/image_probe.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qxv::tiff {

enum Type : std::uint16_t { kByte = 1, kShort = 3, kLong = 4, kRational = 5, kUndefined = 7 };

enum Tag : std::uint16_t {
  kWidth = 256,
  kHeight = 257,
  kBits = 258,
  kCompression = 259,
  kPhotometric = 262,
  kFillOrder = 266,
  kStripOffsets = 273,
  kOrientation = 274,
  kSamples = 277,
  kRowsPerStrip = 278,
  kStripBytes = 279,
  kPlanar = 284,
  kT4Options = 292,
  kT6Options = 293,
  kPredictor = 317,
  kPalette = 320,
  kTileWidth = 322,
  kTileHeight = 323,
  kTileOffsets = 324,
  kTileBytes = 325,
  kInkSet = 332,
  kExtraSamples = 338,
  kSampleFormat = 339,
  kJpegTables = 347,
  kYcbcrCoefficients = 529,
  kYcbcrSubsampling = 530,
  kYcbcrPositioning = 531,
  kReferenceBlackWhite = 532,
};

class ByteOrder {
 public:
  explicit ByteOrder(bool bigEndian) noexcept : m_big(bigEndian) {}

  std::uint32_t Get(const unsigned char* bytes, std::size_t count) const noexcept {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
      value = value << 8 | bytes[m_big ? i : count - 1 - i];
    }
    return value;
  }

  void Put(unsigned char* bytes, std::size_t count, std::uint32_t value) const noexcept {
    for (std::size_t i = 0; i < count; ++i, value >>= 8) {
      bytes[m_big ? count - 1 - i : i] = static_cast<unsigned char>(value);
    }
  }

 private:
  bool m_big;
};

struct Entry {
  std::uint16_t tag;
  std::uint16_t type;
  std::uint32_t count;
  std::uint64_t valueAt;  // in the file; all of its numbers stand inside
};

constexpr std::size_t BytesOfType(std::uint16_t type) noexcept {
  return type == kShort ? 2 : type == kLong ? 4 : type == kRational ? 8 : 1;
}

/// The numbers of one entry, one after another, read in pieces; of a rational the numerator.
class Numbers {
 public:
  Numbers(ByteSource& source, ByteOrder order, const Entry& entry) noexcept : m_source(source), m_order(order), m_entry(entry) {}

  std::uint32_t Next() noexcept {
    const std::size_t size = BytesOfType(m_entry.type);
    if (m_at == m_end) {
      const std::size_t left = (m_entry.count - m_taken) * size;
      m_at = 0;
      m_end = std::min(left, m_piece.size());
      if (!m_source.ReadAt(m_entry.valueAt + std::uint64_t{m_taken} * size, {m_piece.data(), m_end})) {
        m_piece.fill(0);
      }
    }
    const std::uint32_t value = m_order.Get(m_piece.data() + m_at, std::min(size, sizeof value));
    m_at += size;
    ++m_taken;
    return value;
  }

 private:
  ByteSource& m_source;
  ByteOrder m_order;
  const Entry& m_entry;
  std::array<unsigned char, 4096> m_piece{};
  std::size_t m_at = 0;
  std::size_t m_end = 0;
  std::uint32_t m_taken = 0;
};

/// The entries that decoding looks at. Each has a type and a count that the standard gives it, and stands inside the file.
class Directory {
 public:
  Directory(ByteSource& source, ByteOrder order) noexcept : m_source(source), m_order(order) {}

  /// False for a directory that does not stand inside the file, whose tags do not ascend, or of which an entry that decoding
  /// looks at is not as described above.
  /// @param patch  receives a directory for the same place, of those entries and with none behind it
  [[nodiscard]] bool Read(std::uint64_t at, BytePatch& patch);

  /// Whether the patch tells the samples a pixel: the file does, or Read found room to say 1, which is what silence means.
  bool TellsSamples() const noexcept { return m_tellsSamples; }

  const Entry* Find(std::uint16_t tag) const noexcept {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& each) { return each.tag == tag; });
    return found == m_entries.end() ? nullptr : &*found;
  }

  std::uint32_t Value(std::uint16_t tag, std::uint32_t absent) const noexcept {
    const Entry* entry = Find(tag);
    return entry == nullptr ? absent : NumbersOf(*entry).Next();
  }

  /// Calls check(n) for every number of the entry until it is false.
  template <class Check>
  bool All(const Entry& entry, Check check) const noexcept {
    Numbers numbers = NumbersOf(entry);
    for (std::uint32_t i = 0; i < entry.count; ++i) {
      if (!check(numbers.Next())) {
        return false;
      }
    }
    return true;
  }

  Numbers NumbersOf(const Entry& entry) const noexcept { return {m_source, m_order, entry}; }
  std::uint64_t FileLength() const noexcept { return m_source.Length(); }

 private:
  bool SaysNothing(const Entry& entry) const noexcept;
  void TellSamples(std::vector<unsigned char>& kept) const;

  ByteSource& m_source;
  ByteOrder m_order;
  std::vector<Entry> m_entries;
  bool m_tellsSamples = false;
};

}  // namespace qxv::tiff
