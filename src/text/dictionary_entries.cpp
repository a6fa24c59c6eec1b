// dictionary_entries.cpp - the texts of one dictionary and their translations, found by a hash.

#include "text/dictionary_entries.h"

#include "os/multiply.h"
#include "os/uuid.h"

#include <cstring>
#include <utility>

namespace qxv {
namespace {

using os::TextView;

constexpr std::size_t kFirstSlots = 64;
constexpr std::size_t kLengthUnits = sizeof(std::uint32_t) / sizeof(QXChar);

constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15;  // half of its bits are ones
constexpr std::size_t kWord = sizeof(std::uint64_t) / sizeof(QXChar);

std::uint64_t Load(const QXChar* units) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, units, sizeof word);
  return word;
}

std::uint32_t LengthAt(const QXChar* units) noexcept {
  std::uint32_t length = 0;
  std::memcpy(&length, units, sizeof length);
  return length;
}

void AppendLength(os::Text& units, std::size_t length) {
  units += static_cast<QXChar>(length & 0xFFFF);
  units += static_cast<QXChar>(length >> 16);
}

}  // namespace

TextHash::TextHash() noexcept : m_keys{kMix, ~kMix} {
  GUID random{};
  if (os::CreateSystemGuid(random)) {
    static_assert(sizeof m_keys == sizeof random);
    std::memcpy(m_keys, &random, sizeof m_keys);
  }
}

// Two words a step. No word is multiplied as it is: who could choose one factor to be zero would choose the hash.
std::uint32_t TextHash::Of(TextView text) const noexcept {
  const QXChar* at = text.data();
  std::size_t left = text.size();
  std::uint64_t hash = m_keys[0];
  for (; left > 2 * kWord; at += 2 * kWord, left -= 2 * kWord) {
    hash = os::MultiplyFolded(Load(at) ^ m_keys[1], Load(at + kWord) ^ hash);
  }
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  if (left >= kWord) {
    first = Load(at);
    last = Load(at + left - kWord);  // may overlap the first
  } else if (left != 0) {
    first = std::uint64_t{at[0]} | std::uint64_t{at[left / 2]} << 16 | std::uint64_t{at[left - 1]} << 32;
  }
  hash = os::MultiplyFolded(first ^ m_keys[1], last ^ hash);
  hash = os::MultiplyFolded(hash ^ text.size(), m_keys[1] ^ kMix);
  return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

bool DictionaryEntries::IsKeyAt(std::uint32_t place, TextView key) const noexcept {
  const QXChar* record = m_units.data() + place;
  return LengthAt(record) == key.size() && std::memcmp(record + 2 * kLengthUnits, key.data(), key.size() * sizeof(QXChar)) == 0;
}

// The slot of a key, or the free one for it.
std::size_t DictionaryEntries::SlotOf(TextView key, std::uint32_t hash) const noexcept {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t at = hash & mask;
  while (m_slots[at].place != 0 && (m_slots[at].hash != hash || !IsKeyAt(m_slots[at].place, key))) {
    at = (at + 1) & mask;
  }
  return at;
}

void DictionaryEntries::Grow() {
  std::vector<Slot> grown(m_slots.empty() ? kFirstSlots : m_slots.size() * 2);
  const std::size_t mask = grown.size() - 1;
  for (const Slot& slot : m_slots) {
    if (slot.place != 0) {
      std::size_t at = slot.hash & mask;
      while (grown[at].place != 0) {
        at = (at + 1) & mask;
      }
      grown[at] = slot;
    }
  }
  m_slots.swap(grown);
}

void DictionaryEntries::Set(TextView key, std::uint32_t hash, TextView value) {
  if ((m_count + 1) * 3 > m_slots.size() * 2) {
    Grow();
  }
  if (m_units.empty()) {
    m_units += QXChar(0);  // place 0 is nobody's
  }
  const std::size_t place = m_units.size();
  AppendLength(m_units, key.size());
  AppendLength(m_units, value.size());
  m_units += key;
  m_units += value;
  m_units += QXChar(0);
  Slot& slot = m_slots[SlotOf(key, hash)];
  m_count += slot.place == 0 ? 1 : 0;
  slot = {hash, static_cast<std::uint32_t>(place)};
}

std::optional<TextView> DictionaryEntries::Find(TextView key, std::uint32_t hash) const noexcept {
  if (m_count == 0) {
    return std::nullopt;
  }
  const std::uint32_t place = m_slots[SlotOf(key, hash)].place;
  if (place == 0) {
    return std::nullopt;
  }
  const QXChar* record = m_units.data() + place;
  return TextView(record + 2 * kLengthUnits + LengthAt(record), LengthAt(record + kLengthUnits));
}

}  // namespace qxv
