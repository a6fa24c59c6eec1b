// dictionary_entries.h - the texts of one dictionary and their translations, found by a hash.
//
//   slots:  [hash, place] ...                                 a power of two of them, at most two thirds taken; place 0 is free
//   units:  [ ][key length][value length][key][value][0] ...     a length is two units, the lower half first
// A look-up touches one slot and one place in the units. A replaced entry's old units stay.
#pragma once

#include "os/utf.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace qxv {

/// Hashes of texts under keys, which nobody can foresee: texts cannot be chosen so that they collide.
class TextHash {
 public:
  /// Keys of its own.
  TextHash() noexcept;

  std::uint32_t Of(os::TextView text) const noexcept;

 private:
  std::uint64_t m_keys[2];
};

/// Every call gets the hash of its key, by one TextHash for all entries.
class DictionaryEntries {
 public:
  /// Adds an entry, or replaces the value of its key. Neither holds a zero; together they all have less than 2^31 units.
  void Set(os::TextView key, std::uint32_t hash, os::TextView value);

  /// The value, ended by a zero, in memory that stays until the next Set; nothing without such a key.
  [[nodiscard]] std::optional<os::TextView> Find(os::TextView key, std::uint32_t hash) const noexcept;

  std::size_t Count() const noexcept { return m_count; }

 private:
  struct Slot {
    std::uint32_t hash;
    std::uint32_t place;
  };

  std::size_t SlotOf(os::TextView key, std::uint32_t hash) const noexcept;
  bool IsKeyAt(std::uint32_t place, os::TextView key) const noexcept;
  void Grow();

  std::vector<Slot> m_slots;
  os::Text m_units;
  std::size_t m_count = 0;
};

}  // namespace qxv
