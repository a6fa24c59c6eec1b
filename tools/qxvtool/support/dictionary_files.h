// dictionary_files.h - the files of a dictionary folder as people see them: entries with their lines, and what in them surprises.
// Look-ups go through the library; this only reads what it will read, to tell of it.
#pragma once

#include <string>
#include <vector>

namespace tool {

struct DictionaryEntry {
  int line = 0;  // from 1 on
  std::string key;
  std::string translation;
};

/// Something that the library takes otherwise than it looks. Line 0 is the whole file.
struct DictionaryFinding {
  int line = 0;
  std::string text;
};

struct DictionaryFile {
  std::string path;
  std::string encoding;
  std::string mainId;  ///< as it stands there; empty without one
  std::vector<DictionaryEntry> entries;
  std::vector<DictionaryFinding> findings;
};

/// All files with the extension ini, in any case, below the folder, by their paths. One that cannot be read has a finding.
/// Throws a Failure for a folder that is not there.
std::vector<DictionaryFile> ReadDictionaryFiles(const std::string& folder);

}  // namespace tool
