// dictionary_folder.h - the dictionary files below a folder.
#pragma once

#include "os/utf.h"

#include <vector>

namespace qxv {

/// The names of all files with the extension ini (in lower case) in a folder and below, each folder in the order of its names
/// without regard to case. Folders are entered once, whatever links lead there, down to 128 levels.
/// @param folder  with a separator at its end
std::vector<os::Text> FindDictionaryFiles(const os::Text& folder);

}  // namespace qxv
