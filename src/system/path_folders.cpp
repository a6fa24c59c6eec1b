// path_folders.cpp - folders entered and created, and the size of a file.
// Whether a folder exists is asked by its attributes and the right to enter it: the current folder belongs to all threads, so
// nothing here steps into a folder only to try.

#include "qxv/path.h"

#include "os/file_system.h"

#include <algorithm>
#include <vector>

namespace {

using namespace qxv::os;

// Another thread or process may create the same folder between the two looks.
bool MakeFolder(const QXChar* path) {
  return CheckFolderAccess(path) == kErrorNone || CreateFolder(path) == kErrorNone || CheckFolderAccess(path) == kErrorNone;
}

}  // namespace

int QXVPathExist(const QXChar* path, int setCurrent) {
  if (path == nullptr || *path == 0) {
    return 0;
  }
  const ErrorCode error = setCurrent != 0 ? SetCurrentFolder(path) : CheckFolderAccess(path);
  return error == kErrorNone ? 1 : 0;
}

int QXVCreatePath(const QXChar* path) {
  if (path == nullptr || *path == 0) {
    return 0;
  }
  Text whole(path);
  whole.resize(whole.find_last_not_of(QXT('\\')) + 1);  // npos + 1 is 0
  whole += QXT('\\');
  // KEPT: / does not separate, so of D:/a/b only b is created (names are written with \ by those who call). Pinned by
  //   PathFoldersKept.ASlashDoesNotSeparateWhatIsCreated.
  for (std::size_t end = whole.find(QXT('\\')); end != Text::npos; end = whole.find(QXT('\\'), end + 1)) {
    if (!MakeFolder(whole.substr(0, end + 1).c_str())) {
      return 0;
    }
  }
  return 1;
}

QXInt64 QXVXHFileSize(CQXString& path) {
  std::vector<FoundFile> found;
  if (FindFiles(path, found) != kErrorNone || found.empty() ||
      std::any_of(found.begin(), found.end(), [](const FoundFile& file) { return file.IsDots(); })) {
    return 0;  // the folder's own entries come before all others
  }
  return static_cast<QXInt64>(found.front().size);
}
