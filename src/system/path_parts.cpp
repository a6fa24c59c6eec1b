// path_parts.cpp - parts of names, by their text alone.

#include "qxv/path.h"

#include "os/c_runtime.h"
#include "os/process.h"

#include <optional>

namespace {

using qxv::os::TextView;

constexpr std::size_t kRoom = 512;  // of a name that is split, terminator included

// No part is longer than the whole, so only the whole can be too long.
struct Parts {
  QXChar drive[qxv::os::kDriveRoom];
  QXChar folder[kRoom];
  QXChar name[kRoom];
  QXChar extension[kRoom];
};

std::optional<Parts> Split(const QXChar* path) {
  Parts parts;
  if (path == nullptr || qxv::os::TextLength(path, kRoom) == kRoom ||
      qxv::os::SplitPath(path, {parts.drive, qxv::os::kDriveRoom}, {parts.folder, kRoom}, {parts.name, kRoom},
                         {parts.extension, kRoom}) != 0) {
    return std::nullopt;
  }
  return parts;
}

CQXString FolderOf(const QXChar* path) {
  const std::optional<Parts> parts = Split(path);
  CQXString result;
  if (parts) {
    result = parts->drive;
    result += parts->folder;
  }
  return result;
}

TextView ViewOf(const QXChar* path) { return {path == nullptr ? QXT("") : path, qxv::os::TextLength(path)}; }

// The rest of a text is zero-terminated as the text is.
const QXChar* Behind(TextView text, std::size_t index) { return text.data() + index + 1; }

CQXString WithBackslash(const CQXString& path) {
  const TextView text = ViewOf(path);
  CQXString result(text.data());
  if (!text.empty() && text.back() != QXT('\\')) {
    result += QXT("\\");
  }
  return result;
}

}  // namespace

CQXString QXVGetCurrentPath() { return FolderOf(qxv::os::ExecutablePath().c_str()); }

CQXString QXVParsePath(const QXChar* path) { return FolderOf(path); }

CQXString QXVParseMainFileName(const QXChar* path) {
  const std::optional<Parts> parts = Split(path);
  return parts ? CQXString(parts->name) : CQXString();
}

CQXString QXVParseExtFileName(const QXChar* path) {
  const std::optional<Parts> parts = Split(path);
  return parts && parts->extension[0] != 0 ? CQXString(parts->extension + 1) : CQXString();
}

CQXString QXVParseShortFileName(const QXChar* path) {
  const TextView text = ViewOf(path);
  const std::size_t index = text.rfind(QXT('\\'));
  // KEPT: without a backslash, or with the only one in front, there is no short name, not even the whole text (callers tell
  //   a bare name by that). Pinned by PathPartsKept.ShortNameNeedsABackslashBehindTheFirstCharacter.
  return index == TextView::npos || index == 0 ? CQXString() : CQXString(Behind(text, index));
}

CQXString QXVNormalizeFilePath(CQXString path) { return WithBackslash(path); }

CQXString QXVXHNormalizeFilePath(CQXString path) { return WithBackslash(path); }

CQXString QXVGetFilePath(CQXString path) {
  const TextView text = ViewOf(path);
  const std::size_t index = text.find_last_of(QXT("\\/"));
  return index == TextView::npos ? CQXString() : CQXString(text.data(), static_cast<int>(index + 1));
}

CQXString QXVGetFileName(CQXString path) {
  const TextView text = ViewOf(path);
  const std::size_t index = text.find_last_of(QXT("\\/"));
  return index == TextView::npos ? CQXString(text.data()) : CQXString(Behind(text, index));
}

CQXString QXVGetFileType(const QXChar* path) {
  const TextView text = ViewOf(path);
  const std::size_t index = text.rfind(QXT('.'));
  // KEPT: the search does not stop at separators, so a folder's point counts when the name has none (what callers were given so
  //   far). Pinned by PathPartsKept.TypeBeginsAtTheLastPointEvenOfAFolder.
  return index == TextView::npos ? CQXString() : CQXString(Behind(text, index));
}
