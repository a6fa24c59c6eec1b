// dictionary_files.cpp - dictionary files line by line; docs/dictionary.md has the rules.

#include "qxvtool/support/dictionary_files.h"

#include "qxv/interop.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>

namespace tool {

namespace {

using Bytes = std::vector<unsigned char>;

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

// Without a mark the folder's name decides; whether pages other than UTF-8 have their characters is of no matter here. A pair of
// bytes becomes one character of a private plane, so that a second byte is not taken for a bracket.
std::string FromPairs(const Bytes& bytes) {
  std::string out;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (bytes[at] < 0x81 || at + 1 == bytes.size()) {
      out += static_cast<char>(bytes[at] & 0x7Fu);
      continue;
    }
    const unsigned code = 0xF0000u + (static_cast<unsigned>(bytes[at]) << 8 | bytes[at + 1]);
    ++at;
    for (const unsigned part :
         {0xF0u | code >> 18, 0x80u | (code >> 12 & 0x3Fu), 0x80u | (code >> 6 & 0x3Fu), 0x80u | (code & 0x3Fu)}) {
      out += static_cast<char>(part);
    }
  }
  return out;
}

std::string FromSingles(const Bytes& bytes) {
  std::basic_string<QXChar> units(bytes.begin(), bytes.end());
  return qxv::ToUtf8(units);
}

std::string Decode(const Bytes& bytes, const std::string& folder, DictionaryFile& file) {
  const std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const bool isUtf8 = view.starts_with("\xEF\xBB\xBF");
  if (isUtf8 || view.starts_with("\xFF\xFE") || view.starts_with("\xFE\xFF")) {
    file.encoding = isUtf8 ? "UTF-8" : "UTF-16";
    return Narrow(DecodeText(bytes, file.path));
  }
  const std::string end = folder.size() < 7 ? "" : folder.substr(folder.size() - 6);
  const bool isSimplified = end.find("04_02") != std::string::npos, isTraditional = end.find("04_01") != std::string::npos;
  file.encoding = isSimplified ? "936" : isTraditional ? "950" : "ANSI";
  const bool isAscii = std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte < 0x80; });
  if (!isAscii && IsUtf8(view)) {
    file.findings.push_back({0, "is UTF-8 without its mark EF BB BF, so it is read in code page " + file.encoding});
  }
  return isSimplified || isTraditional ? FromPairs(bytes) : FromSingles(bytes);
}

void ReadEntry(int line, const std::string& key, const std::string& rest, DictionaryFile& file) {
  const auto tell = [&](const std::string& text) { file.findings.push_back({line, text}); };
  if (key.empty() || key.back() == '[') {
    tell(key.empty() ? "an empty key is none" : "a key that ends in [ is none");
    return;
  }
  const std::size_t equals = rest.find('=');
  if (equals == std::string::npos) {
    tell("no equals sign: the key takes the translation of a line that follows, whose own key is lost");
    return;
  }
  if (!Trimmed(rest.substr(0, equals)).empty()) {
    tell("what stands between the key and the equals sign is read over");
  }
  const std::size_t start = rest.find_first_not_of(' ', equals + 1);
  if (start == std::string::npos) {
    tell("no translation: the key gets the end of the line for one");
    return;
  }
  const std::string translation = rest.substr(start);
  if (LowerCase(key) == "dictionary_mainid") {
    file.mainId = Trimmed(translation);
    if (file.mainId.empty() || file.mainId.find_first_not_of("0123456789") != std::string::npos) {
      tell("the main identifier is no decimal number");
    }
    return;
  }
  if (translation.back() == ' ') {
    tell("the blanks at the end belong to the translation");
  }
  const auto earlier =
      std::find_if(file.entries.begin(), file.entries.end(), [&](const DictionaryEntry& entry) { return entry.key == key; });
  if (earlier != file.entries.end()) {
    tell("the key stands in line " + std::to_string(earlier->line) + " already; the last one counts");
    earlier->translation = translation;
    earlier->line = line;
    return;
  }
  file.entries.push_back({line, key, translation});
}

void ReadLine(int line, const std::string& text, DictionaryFile& file) {
  const std::size_t open = text.find('[');
  if (open == std::string::npos) {
    return;  // text outside of brackets is read over
  }
  const std::size_t close = text.find(']', open + 1);
  if (close == std::string::npos) {
    file.findings.push_back({line, "the bracket is not closed on its line, so there is no key"});
    return;
  }
  std::string key = text.substr(open + 1, close - open - 1);
  key.erase(0, std::min(key.find_first_not_of(' '), key.size()));
  key.erase(key.find_last_not_of(' ') + 1);
  ReadEntry(line, key, text.substr(close + 1), file);
}

DictionaryFile ReadDictionaryFile(const std::string& path, const std::string& folder) {
  DictionaryFile file;
  file.path = path;
  try {
    const std::string text = Decode(ReadFile(path), folder, file);
    int line = 1;
    for (std::size_t start = 0; start < text.size(); ++line) {
      const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
      ReadLine(line, text.substr(start, end - start), file);
      start = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
    }
  } catch (const Failure& failure) {
    file.findings.push_back({0, failure.what()});
  }
  if (!path.ends_with(".ini")) {
    file.findings.push_back({0, "is not loaded: the extension must be ini in lower case"});
    file.entries.clear();
  }
  return file;
}

// Keys that two files translate differently: a look-up without an identifier finds the one that is loaded first.
void CompareFiles(std::vector<DictionaryFile>& files) {
  std::map<std::string, std::pair<const DictionaryFile*, DictionaryEntry>> seen;
  for (DictionaryFile& file : files) {
    for (const DictionaryEntry& entry : file.entries) {
      const auto [place, isNew] = seen.try_emplace(entry.key, &file, entry);
      const auto& [other, theirs] = place->second;
      if (!isNew && theirs.translation != entry.translation) {
        file.findings.push_back(
            {entry.line, "the key has another translation in " + other->path + ", line " + std::to_string(theirs.line)});
      }
    }
  }
}

}  // namespace

std::vector<DictionaryFile> ReadDictionaryFiles(const std::string& folder) {
  if (!IsFolder(folder)) {
    throw Failure(folder, Exists(folder) ? "is no folder" : "no such folder");
  }
  namespace fs = std::filesystem;
  std::vector<std::string> paths;
  std::error_code error;
  const fs::path root(std::u8string(folder.begin(), folder.end()));
  for (fs::recursive_directory_iterator at(root, fs::directory_options::skip_permission_denied, error), end; !error && at != end;
       at.increment(error)) {
    const std::u8string name = at->path().u8string();
    if (name.size() > 4 && LowerCase(std::string(name.end() - 4, name.end())) == ".ini" && at->is_regular_file(error)) {
      paths.emplace_back(name.begin(), name.end());
    }
  }
  std::sort(paths.begin(), paths.end());
  std::vector<DictionaryFile> files;
  for (const std::string& path : paths) {
    files.push_back(ReadDictionaryFile(path, folder));
  }
  CompareFiles(files);
  for (DictionaryFile& file : files) {
    std::stable_sort(file.findings.begin(), file.findings.end(), [](const auto& a, const auto& b) { return a.line < b.line; });
  }
  return files;
}

}  // namespace tool
