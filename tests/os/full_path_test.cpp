// full_path_test.cpp - names made independent of the current folder: the same answers on both systems.

#include "os/full_path.h"

#include "os/file_system.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using qxv::os::GetFullPath;
using support::TempFolder;
using support::Text;

Text FullPath(const Text& name) {
  Text path = QXT("untouched");
  EXPECT_EQ(GetFullPath(name.c_str(), path), 0u);
  return path;
}

TEST(FullPath, KeepsAFullName) {
  const TempFolder folder;
  EXPECT_EQ(FullPath(folder.File(QXT("a.bin"))), folder.File(QXT("a.bin"))) << "nothing needs to exist";
  EXPECT_EQ(FullPath(QXT("Z:\\")), QXT("Z:\\"));
}

TEST(FullPath, ResolvesDotsAndSlashes) {
  const TempFolder folder;
  EXPECT_EQ(FullPath(folder.Path() + QXT(".\\x\\..\\a.bin")), folder.File(QXT("a.bin")));
  EXPECT_EQ(FullPath(folder.Path() + QXT("x/../a.bin")), folder.File(QXT("a.bin")));
  EXPECT_EQ(FullPath(QXT("Z:\\..\\..\\a.bin")), QXT("Z:\\a.bin"));
}

TEST(FullPath, BeginsAtTheCurrentFolder) {
  const TempFolder folder;
  ASSERT_EQ(qxv::os::SetCurrentFolder(folder.Path().c_str()), 0u);
  EXPECT_EQ(FullPath(QXT("a.bin")), folder.File(QXT("a.bin")));
  EXPECT_EQ(FullPath(QXT("sub\\..\\a.bin")), folder.File(QXT("a.bin")));
  EXPECT_EQ(FullPath(QXT("..\\a.bin")),
            folder.Path().substr(0, folder.Path().rfind(QXT('\\'), folder.Path().size() - 2)) + QXT("\\a.bin"));
  ASSERT_EQ(qxv::os::SetCurrentFolder(QXT("Z:\\")), 0u);  // else the folder cannot go
}

TEST(FullPath, RefusesNoNameAtAll) {
  Text path = QXT("untouched");
  EXPECT_EQ(GetFullPath(nullptr, path), 3u);
  EXPECT_EQ(GetFullPath(QXT(""), path), 3u);
  EXPECT_EQ(path, QXT("untouched"));
}

}  // namespace
