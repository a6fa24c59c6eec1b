// drive_map_test.cpp - drive letters over one root. Linux only.

#include "os/drive_map.h"

#include "support/environment.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace {

using namespace qxv::os;
using support::ScopedVariable;

std::string Native(const Text& name) {
  std::string path;
  const ErrorCode error = NativePathOf(name.c_str(), path);
  return error == 0 ? path : "<error " + std::to_string(error) + ">";
}

std::string Drive(std::string_view path) {
  Text name;
  return DrivePathOf(path, name) ? support::Printable(name) : "<none>";
}

TEST(DriveMap, NamesBecomePaths) {
  const ScopedVariable drives("QXV_DRIVES", "C=/qxv/c;d=/qxv/media/");
  const struct {
    Text name;
    std::string path;
  } rows[] = {
      {QXT("Z:\\"), "/"},
      {QXT("Z:\\a\\b"), "/a/b"},
      {QXT("z:/a/b"), "/a/b"},
      {QXT("Z:\\a\\\\b//c\\"), "/a/b/c/"},
      {QXT("Z:\\qxv-a\\..\\qxv-b"), "/qxv-b"},
      {QXT("Z:\\..\\..\\qxv-b"), "/qxv-b"},
      {QXT("Z:\\.\\qxv-b\\."), "/qxv-b"},
      {QXT("C:\\x.txt"), "/qxv/c/x.txt"},
      {QXT("C:\\"), "/qxv/c"},
      {QXT("c:"), "/qxv/c"},
      {QXT("C:x.txt"), "/qxv/c/x.txt"},
      {QXT("C:\\..\\..\\etc\\passwd"), "/qxv/c/etc/passwd"},
      {QXT("D:\\x"), "/qxv/media/x"},
      {QXT("\\\\?\\D:\\x"), "/qxv/media/x"},
      {QXT("/qxv-a/../b"), "/qxv-a/../b"},
      {QXT("/qxv-a\\b"), "/qxv-a/b"},
      {QXT("\\qxv-a\\b"), "/qxv-a/b"},
      {QXT("qxv-a\\b"), "./qxv-a/b"},
      {QXT("..\\qxv-a"), "./../qxv-a"},
      {QXT("qxv-a\\..\\..\\qxv-b"), "./../qxv-b"},
      {QXT("."), "."},
      {QXT("1:\\x"), "./1:/x"},
      {QXT("E:\\x"), "<error 3>"},
      {QXT(""), "<error 3>"},
      {QXT("\\\\server\\share\\x"), "<error 53>"},
      {QXT("\\\\?\\UNC\\server\\share"), "<error 53>"},
      {QXT("\\\\.\\COM1"), "<error 53>"},
      {QXT("\\\\"), "<error 53>"},
      {QXT("//qxv-a"), "/qxv-a"},
      {QXT("\u4E2D\u6587"), "./\xE4\xB8\xAD\xE6\x96\x87"},
      {Text{QXT('x'), QXChar(0xD800)}, "./x\xED\xA0\x80"},
      {Text{QXChar(0xDCC3), QXChar(0xDCA9)}, "<error 123>"},
      {Text(32768, QXT('a')), "<error 123>"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Native(row.name), row.path) << support::Printable(row.name.substr(0, 100));
  }
  std::string path;
  EXPECT_EQ(NativePathOf(nullptr, path), 3u);
}

TEST(DriveMap, PathsAreHandedOutByTheLongestMapping) {
  const ScopedVariable drives("QXV_DRIVES", "C=/srv;D=/srv/media;E=/srv/media/x");
  EXPECT_EQ(Drive("/srv"), "C:\\");
  EXPECT_EQ(Drive("/srv/a"), "C:\\a");
  EXPECT_EQ(Drive("/srv/media"), "D:\\");
  EXPECT_EQ(Drive("/srv/media/xy/b"), "D:\\xy\\b");
  EXPECT_EQ(Drive("/srv/media/x/b"), "E:\\b");
  EXPECT_EQ(Drive("/srvother"), "Z:\\srvother");
  EXPECT_EQ(Drive("/"), "Z:\\");
  EXPECT_EQ(Drive("/home/x"), "Z:\\home\\x");
  EXPECT_EQ(Drive("/home/caf\xE9"), "Z:\\home\\caf\\uDCE9");
  EXPECT_EQ(Drive("relative"), "<none>");
  EXPECT_EQ(Drive(""), "<none>");
  EXPECT_EQ(Drive("/a\\b"), "<none>") << "its backslash would be read as a separator";
}

TEST(DriveMap, BadEntriesAreLeftOut) {
  const ScopedVariable variable("QXV_DRIVES", ";C;C=;=/x;1=/x;CC=/x;D=relative;Z=/elsewhere;E=/one;e=/two;F=/;;G=/g//");
  std::string letters;
  for (const qxv::os::Drive& drive : MappedDrives()) {
    letters += static_cast<char>(drive.letter);
    letters += "=" + drive.root + ";";
  }
  EXPECT_EQ(letters, "E=/one;F=;G=/g;Z=;");
  EXPECT_TRUE(IsDriveRoot("/"));
  EXPECT_TRUE(IsDriveRoot("/one/"));
  EXPECT_FALSE(IsDriveRoot("/one/a"));
}

TEST(DriveMap, OnlyAMissGoesBesideTheGivenCase) {
  const support::TempFolder folder;
  const std::string base = folder.Native().string();
  std::filesystem::create_directories(base + "/Dir/\xC3\x89t\xC3\xA9");
  for (const char* name : {"/Dir/b", "/Dir/B", "/Dir/same", "/Dir/SAME", "/Dir/\xC3\x89t\xC3\xA9/X.txt"}) {
    std::ofstream(base + name) << name;
  }
  EXPECT_EQ(Native(folder.File(QXT("Dir\\b"))), base + "/Dir/b");
  EXPECT_EQ(Native(folder.File(QXT("Dir\\B"))), base + "/Dir/B");
  EXPECT_EQ(Native(folder.File(QXT("dir\\B"))), base + "/Dir/B") << "each component for itself";
  EXPECT_EQ(Native(folder.File(QXT("DIR\\Same"))), base + "/Dir/SAME") << "of several the first in byte order";
  EXPECT_EQ(Native(folder.File(QXT("DIR\\\u00E9T\u00C9\\x.TXT"))), base + "/Dir/\xC3\x89t\xC3\xA9/X.txt");
  EXPECT_EQ(Native(folder.File(QXT("DIR\\New\\File"))), base + "/Dir/New/File") << "what is missing stands as given";
  EXPECT_EQ(Native(Text(QXT("/")) + folder.Path().substr(3) + QXT("DIR/SAME")), base + "/Dir/SAME");
  std::string path;
  ASSERT_EQ(NativePathForNew(folder.File(QXT("DIR\\Same")).c_str(), path), 0u);
  EXPECT_EQ(path, base + "/Dir/Same") << "a new name keeps its case";
}

TEST(DriveMap, AMappedDriveReachesItsFiles) {
  const support::TempFolder folder;
  std::filesystem::create_directory(folder.Native() / "Sub");
  const ScopedVariable drives("QXV_DRIVES", "M=" + folder.Native().string());
  EXPECT_EQ(Native(QXT("M:\\SUB")), folder.Native().string() + "/Sub");
  EXPECT_EQ(Drive((folder.Native() / "Sub").string()), "M:\\Sub");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Native() / "Sub");
  EXPECT_EQ(Native(QXT("M:x")), "./x") << "the current folder lies on that drive";
  EXPECT_EQ(Native(QXT("M:")), ".");
  EXPECT_EQ(Native(QXT("Z:x")), "/x") << "and not on this one";
  std::filesystem::current_path(before);
}

TEST(DriveMap, AMissingFolderIsAnotherErrorThanAMissingFile) {
  const support::TempFolder folder;
  const std::string base = folder.Native().string();
  EXPECT_EQ(ErrorForPath(ENOENT, base + "/none"), 2u);
  EXPECT_EQ(ErrorForPath(ENOENT, base + "/none/"), 2u);
  EXPECT_EQ(ErrorForPath(ENOENT, base + "/none/a"), 3u);
  EXPECT_EQ(ErrorForPath(ENOENT, "qxv-none"), 2u);
  EXPECT_EQ(ErrorForPath(ENOENT, "/qxv-none"), 2u);
  EXPECT_EQ(ErrorForPath(EACCES, base + "/none/a"), 5u);
}

}  // namespace
