// samba.cpp - smb.conf and the files of user shares, as far as they say which folder another computer sees under which name.

#include "os/samba.h"

#include "os/native_file.h"
#include "os/posix_open.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace qxv::os {
namespace {

constexpr std::size_t kLargestFile = 1 << 20;
constexpr int kDeepestInclude = 8;
constexpr int kMostIncludes = 64;

constexpr bool IsBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\v' || byte == '\f'; }
constexpr char Lower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 0x20) : byte; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string_view Unquoted(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"' ? text.substr(1, text.size() - 2) : text;
}

// Lower case; the blanks of a parameter's name go.
std::string Folded(std::string_view text, bool withoutBlanks) {
  std::string folded;
  for (const char byte : text) {
    if (!withoutBlanks || !IsBlank(byte)) {
      folded += Lower(byte);
    }
  }
  return folded;
}

bool IsTrue(std::string_view value) {
  const std::string word = Folded(value, false /*withoutBlanks*/);
  return word == "yes" || word == "true" || word == "on" || word == "1";
}

struct Section {
  std::string name;
  std::string folder;
  bool available = true;
  bool browseable = true;
  bool isPrinter = false;
};

bool IsSeen(const Section& section) {
  const std::string name = Folded(section.name, false /*withoutBlanks*/);
  return name != "homes" && name != "printers" && !name.ends_with('$') && name.find('\\') == std::string::npos &&
         name.find('/') == std::string::npos && section.available && section.browseable && !section.isPrinter &&
         section.folder.starts_with('/') && section.folder.find('%') == std::string::npos;
}

class Reader {
 public:
  explicit Reader(const ReadIncluded& read) : m_read(read) {}

  void Read(std::string_view bytes) {
    std::string joined;
    while (!bytes.empty()) {
      const std::size_t end = bytes.find('\n');
      std::string_view line = Trimmed(bytes.substr(0, end));
      bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
      const bool isComment = joined.empty() && (line.starts_with('#') || line.starts_with(';'));
      const bool continues = !isComment && line.ends_with('\\') && !bytes.empty();
      if (continues) {
        line.remove_suffix(1);
      }
      joined += line;
      if (!continues) {
        if (!isComment) {
          ReadLine(Trimmed(joined));
        }
        joined.clear();
      }
    }
  }

  SambaConfiguration Result() {
    for (Section& section : m_sections) {
      if (IsSeen(section)) {
        m_result.server.shares.push_back({std::move(section.name), std::move(section.folder)});
      }
    }
    return std::move(m_result);
  }

 private:
  void ReadLine(std::string_view line) {
    if (line.starts_with('[')) {
      if (const std::size_t end = line.find(']'); end != std::string_view::npos) {
        EnterSection(Trimmed(line.substr(1, end - 1)));
      }
      return;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
      return;
    }
    const std::string name = Folded(line.substr(0, equals), true /*withoutBlanks*/);
    const std::string_view value = Unquoted(Trimmed(line.substr(equals + 1)));
    if (name == "include") {
      Include(std::string(value));
    } else if (m_current == kGlobal) {
      SetGlobal(name, value);
    } else {
      SetParameter(m_sections[m_current], name, value);
    }
  }

  // A section's parts may stand apart; parameters before any section are global ones.
  void EnterSection(std::string_view name) {
    const std::string folded = Folded(name, false /*withoutBlanks*/);
    if (folded == "global" || folded.empty()) {
      m_current = kGlobal;
      return;
    }
    const auto [place, isNew] = m_places.try_emplace(folded, m_sections.size());
    if (isNew) {
      m_sections.push_back(m_defaults);
      m_sections.back().name = name;
    }
    m_current = place->second;
  }

  void SetGlobal(const std::string& name, std::string_view value) {
    if (name == "workgroup") {
      m_result.server.workgroup = value;
    } else if (name == "usersharepath") {
      m_result.userShares = value;
    } else if (name == "usersharemaxshares") {
      m_result.hasUserShares = std::strtol(std::string(value).c_str(), nullptr, 10) > 0;
    } else if (name != "path" && name != "directory") {
      SetParameter(m_defaults, name, value);  // the default of the sections behind it
    }
  }

  static void SetParameter(Section& section, const std::string& name, std::string_view value) {
    if (name == "path" || name == "directory") {
      section.folder = value;
    } else if (name == "available") {
      section.available = IsTrue(value);
    } else if (name == "browseable" || name == "browsable") {
      section.browseable = IsTrue(value);
    } else if (name == "printable" || name == "printok") {
      section.isPrinter = IsTrue(value);
    }
  }

  void Include(const std::string& path) {
    if (!m_read || m_depth == kDeepestInclude || m_includes == kMostIncludes) {
      return;
    }
    ++m_includes;
    ++m_depth;
    Read(m_read(path));
    --m_depth;
  }

  static constexpr std::size_t kGlobal = static_cast<std::size_t>(-1);

  const ReadIncluded& m_read;
  SambaConfiguration m_result;
  Section m_defaults;
  std::vector<Section> m_sections;
  std::map<std::string, std::size_t> m_places;  // of the sections, by lower-case name
  std::size_t m_current = kGlobal;
  int m_depth = 0;
  int m_includes = 0;
};

std::vector<std::string> FileNamesIn(const std::string& folder) {
  std::vector<std::string> names;
  if (const FolderStream entries(::opendir(folder.c_str())); entries != nullptr) {
    while (const dirent* entry = ::readdir(entries.get())) {
      if (entry->d_name[0] != '.') {
        names.emplace_back(entry->d_name);
      }
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

SambaConfiguration ParseSambaConfiguration(std::string_view bytes, const ReadIncluded& read) {
  Reader reader(read);
  reader.Read(bytes);
  return reader.Result();
}

std::optional<SambaShare> ParseUserShare(std::string_view bytes, const std::string& fileName) {
  Section section;
  section.name = fileName;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = Trimmed(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.starts_with("path=")) {
      section.folder = line.substr(5);
    } else if (line.starts_with("sharename=")) {
      section.name = line.substr(10);
    }
  }
  if (section.name.empty() || !IsSeen(section)) {
    return std::nullopt;
  }
  return SambaShare{section.name, section.folder};
}

std::optional<SambaServer> ReadSambaServer(const std::string& configurationPath) {
  std::string bytes;
  if (!ReadNativeFile(configurationPath, kLargestFile, bytes)) {
    return std::nullopt;
  }
  const ReadIncluded read = [](const std::string& path) {
    std::string included;
    (void)ReadNativeFile(path, kLargestFile, included);  // what is missing says nothing
    return included;
  };
  SambaConfiguration configuration = ParseSambaConfiguration(bytes, read);
  if (configuration.hasUserShares) {
    for (const std::string& name : FileNamesIn(configuration.userShares)) {
      if (!ReadNativeFile(configuration.userShares + '/' + name, kLargestFile, bytes)) {
        continue;
      }
      if (std::optional<SambaShare> share = ParseUserShare(bytes, name)) {
        configuration.server.shares.push_back(std::move(*share));
      }
    }
  }
  return std::move(configuration.server);
}

}  // namespace qxv::os
