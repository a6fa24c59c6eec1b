// tiff_directory.cpp - the first directory of a TIFF file (TIFF 6.0): the entries that decoding looks at.

#include "image/tiff_directory.h"

#include <cstring>
#include <utility>

namespace qxv::tiff {
namespace {

constexpr std::size_t kEntry = 2 + 2 + 4 + 4;
constexpr std::size_t kInPlace = 4;  // a value of at most so many bytes stands in its entry
constexpr unsigned kAnyCount = 0;

// A tag that decoding looks at, with the types of numbers that it may have.
struct Rule {
  std::uint16_t tag;
  std::uint16_t types;  // bits
  std::uint32_t count;  // kAnyCount: checked where the value is used
};

constexpr std::uint16_t Bit(Type type) { return static_cast<std::uint16_t>(1U << type); }
constexpr std::uint16_t kWhole = Bit(kShort) | Bit(kLong);

constexpr std::array kRules = {
    Rule{kWidth, kWhole, 1},
    Rule{kHeight, kWhole, 1},
    Rule{kBits, Bit(kShort), kAnyCount},
    Rule{kCompression, Bit(kShort), 1},
    Rule{kPhotometric, Bit(kShort), 1},
    Rule{kFillOrder, Bit(kShort), 1},
    Rule{kStripOffsets, kWhole, kAnyCount},
    Rule{kOrientation, Bit(kShort), 1},
    Rule{kSamples, Bit(kShort), 1},
    Rule{kRowsPerStrip, kWhole, 1},
    Rule{kStripBytes, kWhole, kAnyCount},
    Rule{kPlanar, Bit(kShort), 1},
    Rule{kT4Options, Bit(kLong), 1},
    Rule{kT6Options, Bit(kLong), 1},
    Rule{kPredictor, Bit(kShort), 1},
    Rule{kPalette, Bit(kShort), kAnyCount},
    Rule{kTileWidth, kWhole, 1},
    Rule{kTileHeight, kWhole, 1},
    Rule{kTileOffsets, kWhole, kAnyCount},
    Rule{kTileBytes, kWhole, kAnyCount},
    Rule{kInkSet, Bit(kShort), 1},
    Rule{kExtraSamples, static_cast<std::uint16_t>(Bit(kByte) | Bit(kShort)), kAnyCount},
    Rule{kSampleFormat, Bit(kShort), kAnyCount},
    Rule{kJpegTables, static_cast<std::uint16_t>(Bit(kByte) | Bit(kUndefined)), kAnyCount},
    Rule{kYcbcrCoefficients, Bit(kRational), 3},
    Rule{kYcbcrSubsampling, Bit(kShort), 2},
    Rule{kYcbcrPositioning, Bit(kShort), 1},
    Rule{kReferenceBlackWhite, Bit(kRational), 6},
};

Entry ReadEntry(ByteOrder order, const unsigned char* bytes, std::uint64_t inPlaceAt) noexcept {
  Entry entry{};
  entry.tag = static_cast<std::uint16_t>(order.Get(bytes, 2));
  entry.type = static_cast<std::uint16_t>(order.Get(bytes + 2, 2));
  entry.count = order.Get(bytes + 4, 4);
  const bool inPlace = std::uint64_t{entry.count} * BytesOfType(entry.type) <= kInPlace;
  entry.valueAt = inPlace ? inPlaceAt : order.Get(bytes + 8, 4);
  return entry;
}

bool Holds(const Entry& entry, const Rule& rule, std::uint64_t length) noexcept {
  return entry.type < 16 && (rule.types >> entry.type & 1) != 0 && entry.count != 0 &&
         (rule.count == kAnyCount || rule.count == entry.count) && entry.valueAt <= length &&
         std::uint64_t{entry.count} * BytesOfType(entry.type) <= length - entry.valueAt;
}

}  // namespace

// Entries whose only value is the one that holds without them.
bool Directory::SaysNothing(const Entry& entry) const noexcept {
  return (entry.tag == kFillOrder || entry.tag == kOrientation || entry.tag == kPlanar) && NumbersOf(entry).Next() == 1;
}

// kept: entries, from the first one on. Another one comes in its order.
void Directory::TellSamples(std::vector<unsigned char>& kept) const {
  std::size_t at = 0;
  while (at < kept.size() && m_order.Get(&kept[at], 2) < kSamples) {
    at += kEntry;
  }
  std::array<unsigned char, kEntry> entry{};
  m_order.Put(&entry[0], 2, kSamples);
  m_order.Put(&entry[2], 2, kShort);
  m_order.Put(&entry[4], 4, 1);
  m_order.Put(&entry[8], 2, 1);
  kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(at), entry.begin(), entry.end());
}

bool Directory::Read(std::uint64_t at, BytePatch& patch) {
  std::array<unsigned char, 2> countBytes{};
  if (!m_source.ReadAt(at, countBytes)) {
    return false;
  }
  const std::size_t count = m_order.Get(countBytes.data(), 2);
  const std::uint64_t size = 2 + count * kEntry + 4;
  if (count == 0 || size > m_source.Length() - at) {
    return false;
  }
  std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
  if (!m_source.ReadAt(at, bytes)) {
    return false;
  }
  std::vector<unsigned char> kept;
  std::uint32_t previous = 0;
  for (std::size_t i = 2; i < 2 + count * kEntry; i += kEntry) {
    const Entry entry = ReadEntry(m_order, &bytes[i], at + i + 8);
    if (i > 2 && entry.tag <= previous) {
      return false;
    }
    previous = entry.tag;
    const auto* rule = std::find_if(kRules.begin(), kRules.end(), [&](const Rule& each) { return each.tag == entry.tag; });
    if (rule == kRules.end()) {
      continue;
    }
    if (!Holds(entry, *rule, m_source.Length())) {
      return false;
    }
    m_entries.push_back(entry);
    if (!SaysNothing(entry)) {
      kept.insert(kept.end(), &bytes[i], &bytes[i] + kEntry);
    }
  }
  m_tellsSamples = Find(kSamples) != nullptr;
  if (!m_tellsSamples && kept.size() < count * kEntry) {
    TellSamples(kept);
    m_tellsSamples = true;
  }
  patch.at = at;
  patch.bytes.resize(2);
  m_order.Put(patch.bytes.data(), 2, static_cast<std::uint32_t>(kept.size() / kEntry));
  patch.bytes.insert(patch.bytes.end(), kept.begin(), kept.end());
  patch.bytes.resize(patch.bytes.size() + 4);  // no next directory
  return true;
}

}  // namespace qxv::tiff
