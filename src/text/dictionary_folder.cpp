// dictionary_folder.cpp - the dictionary files below a folder.

#include "text/dictionary_folder.h"

#include "os/file.h"
#include "os/file_system.h"
#include "qxv/path.h"

#include <cstdint>
#include <new>
#include <set>
#include <utility>

namespace qxv {
namespace {

constexpr std::size_t kDeepest = 128;

// One folder, with the entries from next on still to be looked at.
struct Level {
  os::Text path;
  std::vector<os::FoundFile> entries;
  std::size_t next = 0;
};

// What fails for want of memory says nothing about the folder.
bool Succeeds(os::ErrorCode error) {
  if (error == os::kErrorNotEnoughMemory) {
    throw std::bad_alloc();
  }
  return error == os::kErrorNone;
}

// The identities of the folders entered so far.
class EnteredFolders {
 public:
  /// False for a folder that was entered before, or that cannot be opened.
  bool Enter(const os::Text& path) {
    os::OpenOptions options;
    options.share = os::kShareRead | os::kShareWrite | os::kShareDelete;
    options.folder = true;
    os::File folder;
    os::FileInformation information{};
    return Succeeds(folder.Open(path.c_str(), options)) && Succeeds(os::GetFileInformation(folder.Handle(), information)) &&
           m_identities.emplace(information.volume, information.index).second;
  }

 private:
  std::set<std::pair<std::uint64_t, std::uint64_t>> m_identities;
};

// A folder that cannot be listed counts as empty.
Level ListFolder(os::Text path) {
  Level level;
  if (!Succeeds(os::FindFiles((path + QXT("*")).c_str(), level.entries))) {
    level.entries.clear();
  }
  level.path = std::move(path);
  return level;
}

// KEPT: INI in capitals is another extension, although loading such a file would work.
//   Pinned by DictionaryKept.AnExtensionInCapitalsIsNotCollected.
bool IsDictionaryName(const os::Text& name) { return QXVParseExtFileName(name.c_str()) == QXT("ini"); }

}  // namespace

std::vector<os::Text> FindDictionaryFiles(const os::Text& folder) {
  std::vector<os::Text> files;
  std::vector<Level> levels;  // from the folder itself down to the one being listed
  EnteredFolders entered;
  if (entered.Enter(folder)) {
    levels.push_back(ListFolder(folder));
  }
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.entries.size()) {
      levels.pop_back();
      continue;
    }
    const os::FoundFile& entry = level.entries[level.next++];
    os::Text path = level.path + entry.name;
    if (!entry.IsFolder()) {
      if (IsDictionaryName(entry.name)) {
        files.push_back(std::move(path));
      }
    } else if (!entry.IsDots() && levels.size() < kDeepest) {
      path += QXT('\\');
      if (entered.Enter(path)) {
        levels.push_back(ListFolder(std::move(path)));
      }
    }
  }
  return files;
}

}  // namespace qxv
