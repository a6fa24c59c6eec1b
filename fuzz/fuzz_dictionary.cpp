// fuzz_dictionary.cpp - a folder of dictionary files of any bytes. First byte: the number of files and their encoding; the rest
// is shared out among them. What must hold: the scanner agrees with the rules written down step by step, and every text has the
// translation that they give.

#include "fuzz/fuzz_input.h"
#include "os/code_page.h"
#include "qxv/conversion.h"
#include "streams/encoded_text.h"
#include "support/temp_folder.h"
#include "text/dictionary_scanner.h"
#include "text/dictionary_set.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace {

using fuzz::Require;
using fuzz::Text;

/// The scanner's rules, a character at a time.
class PlainScanner {
 public:
  explicit PlainScanner(const Text& text) : m_text(text) {}

  qxv::DictionaryStep Next(Text& key, Text& value) {
    while (m_cursor < m_text.size() && m_text[m_cursor] != '[') {
      ++m_cursor;
    }
    if (m_cursor >= m_text.size()) {
      return qxv::DictionaryStep::End;
    }
    const std::size_t begin = m_cursor + 1;
    std::size_t at = begin;
    while (at < m_text.size() && m_text[at] != ']') {
      if (m_text[at] == '\r' || m_text[at] == '\n') {
        m_cursor = at;
        return qxv::DictionaryStep::Skip;
      }
      ++at;
    }
    if (at >= m_text.size()) {
      m_cursor = at;
      return qxv::DictionaryStep::End;
    }
    m_cursor = at;
    key = m_text.substr(begin, at - begin);
    key.erase(0, std::min(key.find_first_not_of(u' '), key.size()));
    key.erase(key.find_last_not_of(u' ') + 1);
    key = key.c_str();
    if (key.empty()) {
      return qxv::DictionaryStep::Skip;
    }
    while (m_text[m_cursor] != '=') {
      const QXChar last = key.back();
      if (last == '[' || last == ']') {
        return qxv::DictionaryStep::Skip;
      }
      if (++m_cursor >= m_text.size()) {
        return qxv::DictionaryStep::End;
      }
    }
    at = m_cursor + 1;
    while (at < m_text.size() && m_text[at] == ' ') {
      ++at;
    }
    const std::size_t first = at;
    if (at < m_text.size()) {
      ++at;
    }
    while (at < m_text.size() && m_text[at] != '\r' && m_text[at] != '\n') {
      ++at;
    }
    m_cursor = at;
    value = m_text.substr(first, at - first).c_str();
    return qxv::DictionaryStep::Entry;
  }

 private:
  Text m_text;
  std::size_t m_cursor = 0;
};

struct PlainDictionary {
  int mainId = 0;
  std::map<Text, Text> entries;
};

bool IsMainIdKey(Text key) {
  for (QXChar& unit : key) {
    unit = unit >= 'a' && unit <= 'z' ? static_cast<QXChar>(unit - 'a' + 'A') : unit;
  }
  return key == u"DICTIONARY_MAINID";
}

PlainDictionary Read(const std::string& bytes) {
  Text text;
  Require(qxv::DecodeText({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}, qxv::os::kCodePageAnsi, text) ==
          0);
  const std::unique_ptr<QXChar[]> exact(new QXChar[text.size()]);
  std::copy(text.begin(), text.end(), exact.get());
  qxv::DictionaryScanner scanner({exact.get(), text.size()});
  PlainScanner plain(text);
  PlainDictionary dictionary;
  for (;;) {
    qxv::DictionaryEntry entry;
    Text key, value;
    const qxv::DictionaryStep step = plain.Next(key, value);
    Require(scanner.Next(entry) == step);
    if (step == qxv::DictionaryStep::End) {
      return dictionary;
    }
    if (step == qxv::DictionaryStep::Entry) {
      Require(entry.key == key && entry.value == value);
      if (IsMainIdKey(key)) {
        (void)QXVString2Int(value.c_str(), dictionary.mainId);
      } else {
        dictionary.entries[key] = value;
      }
    }
  }
}

std::optional<Text> PlainFind(const std::vector<PlainDictionary>& dictionaries, const Text& key, unsigned mainId) {
  for (const PlainDictionary& dictionary : dictionaries) {
    const auto found = dictionary.entries.find(key);
    if (mainId != 0 && static_cast<unsigned>(dictionary.mainId) != mainId) {
      continue;
    }
    if (found != dictionary.entries.end()) {
      return found->second;
    }
    if (mainId != 0) {
      break;
    }
  }
  return std::nullopt;
}

void Compare(CQXVDictionaryRoot& root, const std::vector<PlainDictionary>& dictionaries, const Text& key, unsigned mainId) {
  const auto expected = PlainFind(dictionaries, key, mainId);
  const auto found = root.Translate(key, mainId);
  Require(found.has_value() == expected.has_value() && (!found || *found == *expected));
  Require(found || root.Missing().contains(key));
}

const char* const kMarks[] = {"", "\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const support::TempFolder folder;
  static const Text kNames[] = {folder.File(u"a.ini"), folder.File(u"b.ini"), folder.File(u"c.ini")};
  if (size == 0) {
    return 0;
  }
  fuzz::Input input(data + 1, size - 1);
  const std::size_t count = data[0] % 3 + 1;
  const std::string mark = kMarks[data[0] / 3 % 4];
  std::vector<PlainDictionary> dictionaries;
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    if (i < count) {
      const std::string bytes = mark + input.Bytes(i + 1 == count ? size : (size - 1) / count);
      Require(support::WriteBytes(kNames[i], bytes));
      dictionaries.push_back(Read(bytes));
    } else {
      std::filesystem::remove(support::NativePath(kNames[i]));
    }
  }
  CQXVDictionaryRoot root;
  Require(root.Load(folder.Path().c_str()) == 0 && root.Dictionaries().size() == count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto mainId = static_cast<unsigned>(dictionaries[i].mainId);
    Require(root.Dictionaries()[i]->MainId() == mainId);
    Require(root.Dictionaries()[i]->Count() == dictionaries[i].entries.size());
    for (const auto& [key, value] : dictionaries[i].entries) {
      for (const unsigned id : {0u, mainId, mainId + 1}) {
        Compare(root, dictionaries, key, id);
        Compare(root, dictionaries, value, id);
      }
    }
  }
  return 0;
}
