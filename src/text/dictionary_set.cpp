// dictionary_set.cpp - one dictionary file, and the set of all that are loaded.

#include "text/dictionary_set.h"

#include "os/c_runtime.h"
#include "os/code_page.h"
#include "qxv/conversion.h"
#include "qxv/path.h"
#include "streams/encoded_text.h"
#include "text/dictionary_folder.h"
#include "text/dictionary_scanner.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

using qxv::DictionaryStep;
using qxv::os::Text;
using qxv::os::TextView;

constexpr TextView kMainIdKey = QXT("DICTIONARY_MAINID");
constexpr TextView kExtension = QXT(".ini");
constexpr std::size_t kShortestPath = 8;    // C:\x.ini
constexpr std::size_t kShortestFolder = 3;  // C:\.
constexpr std::uint64_t kLargestFile = std::uint64_t{256} << 20;

bool EqualsIgnoringCase(TextView a, TextView b) noexcept {
  return a.size() == b.size() && qxv::os::CompareTextNoCase(a.data(), b.data(), a.size()) == 0;
}

// KEPT: the result of the conversion is not looked at, so the number read in front of what is no digit counts, without its sign.
//   Pinned by DictionaryKept.AMainIdentifierThatIsNoNumberIsWhatWasReadOfIt.
void ReadMainId(TextView value, unsigned& mainId) {
  int number = static_cast<int>(mainId);
  (void)QXVString2Int(CQXString(value.data(), static_cast<int>(value.size())), number);
  mainId = static_cast<unsigned>(number);
}

// By the language number that names the folder of the dictionaries; the last of these characters is the separator.
unsigned CodePageOf(TextView folder) noexcept {
  constexpr std::size_t kNameUnits = 6;
  constexpr std::size_t kShortestNamed = 7;
  if (folder.size() < kShortestNamed) {
    return qxv::os::kCodePageAnsi;
  }
  const TextView name = folder.substr(folder.size() - kNameUnits);
  constexpr unsigned kSimplifiedChinese = 936;
  constexpr unsigned kTraditionalChinese = 950;
  return name.find(QXT("04_02")) != TextView::npos   ? kSimplifiedChinese
         : name.find(QXT("04_01")) != TextView::npos ? kTraditionalChinese
                                                     : qxv::os::kCodePageAnsi;
}

bool IsFolderName(TextView folder) noexcept {
  return folder.size() >= kShortestFolder && (folder.back() == QXT('\\') || folder.back() == QXT('/'));
}

}  // namespace

qxv::Status CQXVDictionary::Load(const Text& path, unsigned codePage, const qxv::TextHash& hash) {
  if (path.size() < kShortestPath || !EqualsIgnoringCase(TextView(path).substr(path.size() - kExtension.size()), kExtension)) {
    return qxv::kStatusDictionaryFailed;
  }
  m_path = path.c_str();
  Text text;
  if (const qxv::os::ErrorCode error = qxv::ReadEncodedText(path.c_str(), kLargestFile, codePage, text);
      error == qxv::os::kErrorNotEnoughMemory) {
    throw std::bad_alloc();
  } else if (error != qxv::os::kErrorNone) {
    return qxv::kStatusDictionaryFailed;
  }
  qxv::DictionaryScanner scanner(text);
  qxv::DictionaryEntry entry;
  for (DictionaryStep step = scanner.Next(entry); step != DictionaryStep::End; step = scanner.Next(entry)) {
    if (step == DictionaryStep::Skip) {
      continue;
    }
    if (EqualsIgnoringCase(entry.key, kMainIdKey)) {
      ReadMainId(entry.value, m_mainId);
    } else {
      m_entries.Set(entry.key, hash.Of(entry.key), entry.value);
    }
  }
  return qxv::kStatusOk;
}

qxv::Status CQXVDictionaryRoot::Load(const CQXString& folder) {
  m_folder = folder.GetLength() != 0 ? folder : QXVGetCurrentPath() + QXT("..\\Sys\\Dictionary\\04_02\\");
  const Text name(static_cast<const QXChar*>(m_folder));
  if (!IsFolderName(name)) {
    return qxv::kStatusDictionaryFailed;
  }
  const std::vector<Text> files = qxv::FindDictionaryFiles(name);
  if (files.empty()) {
    return qxv::kStatusDictionaryFailed;
  }
  const unsigned codePage = CodePageOf(name);
  for (const Text& file : files) {
    auto dictionary = std::make_unique<CQXVDictionary>();
    if (dictionary->Load(file, codePage, m_hash) == qxv::kStatusOk) {
      m_dictionaries.push_back(std::move(dictionary));
    }
  }
  return qxv::kStatusOk;
}

// KEPT: of several dictionaries with one main identifier only the first is asked.
//   Pinned by DictionaryKept.OnlyTheFirstDictionaryOfAnIdentifierIsAsked.
std::optional<TextView> CQXVDictionaryRoot::Find(TextView text, unsigned mainId) const noexcept {
  const std::uint32_t hash = m_hash.Of(text);
  if (mainId != 0) {
    const auto named = std::find_if(m_dictionaries.begin(), m_dictionaries.end(),
                                    [mainId](const auto& dictionary) { return dictionary->MainId() == mainId; });
    return named == m_dictionaries.end() ? std::nullopt : (*named)->Find(text, hash);
  }
  for (const auto& dictionary : m_dictionaries) {
    if (const auto found = dictionary->Find(text, hash)) {
      return found;
    }
  }
  return std::nullopt;
}

std::optional<TextView> CQXVDictionaryRoot::Translate(TextView text, unsigned mainId) {
  const auto found = Find(text, mainId);
  if (!found && !m_missing.contains(text)) {
    m_missing.emplace(text);
  }
  return found;
}
