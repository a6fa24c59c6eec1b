// path_names.cpp - the form of names, and whether they stand for something.

#include "qxv/path.h"

#include "os/c_runtime.h"
#include "os/file_system.h"

namespace {

constexpr std::size_t kShortest = 3;  // C:\ or a letter with two more

constexpr bool IsLetter(QXChar unit) { return (unit >= QXT('a') && unit <= QXT('z')) || (unit >= QXT('A') && unit <= QXT('Z')); }

constexpr bool IsForbidden(QXChar unit) {
  switch (unit) {
    case QXT(':'):
    case QXT('*'):
    case QXT('?'):
    case QXT('"'):
    case QXT('<'):
    case QXT('>'):
    case QXT('|'):
      return true;
    default:
      return false;
  }
}

bool IsNormalized(const QXChar* path, bool folder) {
  const std::size_t length = qxv::os::TextLength(path);
  if (length < kShortest || !IsLetter(path[0]) || (path[length - 1] == QXT('\\')) != folder) {
    return false;
  }
  // KEPT: the second and third character are not looked at, so a letter with any two behind it will do (callers pass such names).
  //   Pinned by PathNamesKept.SecondAndThirdCharacterAreNotLookedAt.
  for (std::size_t i = kShortest; i < length; ++i) {
    if (IsForbidden(path[i])) {
      return false;
    }
  }
  return true;
}

// Only a name with a drive says the same thing wherever the process stands.
bool Exists(const QXChar* path) {
  std::uint32_t attributes = 0;
  return path[1] == QXT(':') && qxv::os::GetPathAttributes(path, attributes) == qxv::os::kErrorNone;
}

}  // namespace

int QXVIsNormalizedFile(const QXChar* path) { return IsNormalized(path, false /*folder*/) ? 1 : 0; }

int QXVIsNormalizedPath(const QXChar* path) { return IsNormalized(path, true /*folder*/) ? 1 : 0; }

int QXVIsFileExist(const QXChar* path) { return IsNormalized(path, false /*folder*/) && Exists(path) ? 1 : 0; }

int QXVIsPathExist(const QXChar* path) { return IsNormalized(path, true /*folder*/) && Exists(path) ? 1 : 0; }
