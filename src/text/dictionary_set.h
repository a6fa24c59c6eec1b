// dictionary_set.h - one dictionary file, and the set of all that are loaded.
#pragma once

#include "foundation/status.h"
#include "os/utf.h"
#include "qxv/string.h"
#include "text/dictionary_entries.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

/// One loaded file.
class CQXVDictionary {
 public:
  CQXVDictionary() = default;
  CQXVDictionary(const CQXVDictionary&) = delete;
  CQXVDictionary& operator=(const CQXVDictionary&) = delete;
  virtual ~CQXVDictionary() = default;

  /// Reads the file. Once only: a dictionary that failed is of no use.
  /// @param codePage  for a file without a mark
  /// @param hash      by which Find is asked, too
  [[nodiscard]] qxv::Status Load(const qxv::os::Text& path, unsigned codePage, const qxv::TextHash& hash);

  /// The translation, ended by a zero, in memory of the dictionary.
  [[nodiscard]] std::optional<qxv::os::TextView> Find(qxv::os::TextView text, std::uint32_t hash) const noexcept {
    return m_entries.Find(text, hash);
  }

  unsigned MainId() const noexcept { return m_mainId; }
  const CQXString& Path() const noexcept { return m_path; }
  std::size_t Count() const noexcept { return m_entries.Count(); }

 private:
  unsigned m_mainId = 0;
  CQXString m_path;
  qxv::DictionaryEntries m_entries;
};

/// All dictionaries of a folder, and the texts that were asked for in vain.
class CQXVDictionaryRoot {
 public:
  using MissingTexts = std::set<qxv::os::Text, std::less<>>;

  CQXVDictionaryRoot() = default;
  CQXVDictionaryRoot(const CQXVDictionaryRoot&) = delete;
  CQXVDictionaryRoot& operator=(const CQXVDictionaryRoot&) = delete;
  virtual ~CQXVDictionaryRoot() = default;

  /// Loads what lies below a folder; the empty name stands for the folder beside the program. Once only.
  [[nodiscard]] qxv::Status Load(const CQXString& folder);

  /// The translation, ended by a zero, in memory of the set. A text without one is remembered.
  [[nodiscard]] std::optional<qxv::os::TextView> Translate(qxv::os::TextView text, unsigned mainId);

  const CQXString& Folder() const noexcept { return m_folder; }
  const std::vector<std::unique_ptr<CQXVDictionary>>& Dictionaries() const noexcept { return m_dictionaries; }
  const MissingTexts& Missing() const noexcept { return m_missing; }

 private:
  std::optional<qxv::os::TextView> Find(qxv::os::TextView text, unsigned mainId) const noexcept;

  qxv::TextHash m_hash;
  MissingTexts m_missing;
  CQXString m_folder;
  std::vector<std::unique_ptr<CQXVDictionary>> m_dictionaries;
};
