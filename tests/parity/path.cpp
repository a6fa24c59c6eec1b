// path.cpp - names of files, and what can be said of them in a folder of our own; paths across the network.

#include "parity/trial.h"

#include "qxv/net_path.h"
#include "qxv/path.h"

namespace parity {

namespace {

Text PathWord(Trial& t) {
  static const Text kSome = QXT("abC.\\/: 1-_\u00E9");
  static const QXChar* const kStarts[] = {QXT(""), QXT("C:\\"), QXT("\\\\srv\\share\\"), QXT("\\\\10.0.0.1\\x\\"),
                                          QXT("Local\\D:\\")};
  Text word = kStarts[t.Below(5)];
  for (int i = t.Below(30); i > 0; --i) {
    word += kSome[static_cast<std::size_t>(t.Below(static_cast<int>(kSome.size())))];
  }
  return word;
}

void Names(Trial& t) {
  t.Next();
  const Text word = PathWord(t);
  const QXChar* path = word.c_str();
  t << QXVIsNormalizedFile(path) << QXVIsNormalizedPath(path) << QXVParsePath(path) << QXVParseMainFileName(path)
    << QXVParseExtFileName(path) << QXVParseShortFileName(path) << QXVNormalizeFilePath(path) << QXVXHNormalizeFilePath(path)
    << QXVGetFilePath(path) << QXVGetFileName(path) << QXVGetFileType(path);
  t << QXVIsUNCPath(path) << QXVIsLocalPath(path);
}

void Folders(Trial& t) {
  t.Next();
  Text folder = t.Folder();
  for (int i = t.Between(1, 3); i > 0; --i) {
    folder += static_cast<QXChar>(t.Between('a', 'c'));
    folder += QXT('\\');
  }
  t << QXVIsPathExist(folder.c_str()) << QXVIsFileExist(folder.c_str()) << QXVPathExist(folder.c_str(), 0);
  t << QXVCreatePath(folder.c_str()) << QXVPathExist(folder.c_str(), 0) << QXVIsPathExist(folder.c_str());
  CQXString file((folder + QXT("missing.txt")).c_str());
  t << QXVIsFileExist(file) << QXVXHFileSize(file);
}

// Shares and drives are the machine's own, so only paths that no mapping can change are compared.
void Network(Trial& t) {
  t.Next();
  CQXString result;
  t << QXVUNC2Local(result, QXT("relative\\name")) << result << QXVLocal2UNC(result, QXT("")) << result;
  (void)QXVGetLocalPath(result, QXT("\\\\nobody.invalid\\nothing\\x"));
  (void)QXVGetRemotePath(result, QXT("Q:\\nothing"));
  QXVRefreshNetPathTable();
  t << QXVDumpNetPathTable(result);
}

}  // namespace

void RunPath(Trial& t) {
  for (int i = 0; i < 10000; ++i) {
    Names(t);
  }
  for (int i = 0; i < 60; ++i) {
    Folders(t);
  }
  t << (QXVGetCurrentPath().GetLength() > 0);
  Network(t);
}

}  // namespace parity
