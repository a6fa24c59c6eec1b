// path_folders_test.cpp - folders entered and created, and the size of a file.

#include "qxv/path.h"

#include "os/file_system.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

namespace {

using support::Exists;
using support::TempFolder;
using support::Text;

Text CurrentFolder() {
  Text folder;
  return qxv::os::GetCurrentFolder(folder) == 0 ? folder : Text(QXT("<unknown>"));
}

// Puts the current folder back: a folder that is the current one cannot be removed on Windows.
class InFolder {
 public:
  explicit InFolder(const Text& folder) : m_before(CurrentFolder()) { EXPECT_EQ(qxv::os::SetCurrentFolder(folder.c_str()), 0u); }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;
  ~InFolder() { EXPECT_EQ(qxv::os::SetCurrentFolder(m_before.c_str()), 0u); }

 private:
  Text m_before;
};

QXInt64 SizeOf(const Text& name) {
  CQXString path(name.c_str());
  return QXVXHFileSize(path);
}

std::size_t EntriesOf(const Text& folder) {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::recursive_directory_iterator(support::NativePath(folder))) {
    ++count;
  }
  return count;
}

TEST(PathFolders, AFolderExistsWithAndWithoutBackslash) {
  const TempFolder folder;
  const Text path = folder.Path();
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("a.txt")), "x"));
  const Text before = CurrentFolder();
  EXPECT_EQ(QXVPathExist(path.c_str(), 0), 1);
  EXPECT_EQ(QXVPathExist(path.substr(0, path.size() - 1).c_str(), 0), 1);
  EXPECT_EQ(QXVPathExist(folder.File(QXT("a.txt")).c_str(), 0), 0);
  EXPECT_EQ(QXVPathExist(folder.File(QXT("none")).c_str(), 0), 0);
  EXPECT_EQ(QXVPathExist(nullptr, 0), 0);
  EXPECT_EQ(QXVPathExist(QXT(""), 0), 0);
  EXPECT_EQ(CurrentFolder(), before);
}

TEST(PathFolders, SettingTheCurrentFolderStaysAfterSuccessOnly) {
  const TempFolder folder;
  ASSERT_EQ(qxv::os::CreateFolder(folder.File(QXT("sub")).c_str()), 0u);
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("a.txt")), "x"));
  const InFolder in(folder.Path());
  const Text start = CurrentFolder();
  EXPECT_EQ(QXVPathExist(folder.File(QXT("none")).c_str(), 1), 0);
  EXPECT_EQ(QXVPathExist(folder.File(QXT("a.txt")).c_str(), 1), 0);
  EXPECT_EQ(QXVPathExist(nullptr, 1), 0);
  EXPECT_EQ(QXVPathExist(QXT(""), 1), 0);
  EXPECT_EQ(CurrentFolder(), start);
  EXPECT_EQ(QXVPathExist(QXT("sub"), 0), 1) << "a relative name";
  EXPECT_EQ(CurrentFolder(), start);
  EXPECT_EQ(QXVPathExist(QXT("sub"), -7), 1) << "anything but 0 sets";
  EXPECT_EQ(CurrentFolder(), start + (start.back() == QXT('\\') ? QXT("sub") : QXT("\\sub")));
  EXPECT_EQ(QXVPathExist(QXT("sub"), 0), 0) << "not below itself";
}

TEST(PathFolders, AskingDisturbsNoOtherThread) {
  const TempFolder folder;
  ASSERT_EQ(qxv::os::CreateFolder(folder.File(QXT("sub")).c_str()), 0u);
  const InFolder in(folder.Path());
  const Text start = CurrentFolder();
  std::atomic<bool> stop{false};
  std::thread asker([&] {
    for (int i = 0; i < 300; ++i) {
      EXPECT_EQ(QXVPathExist(folder.File(QXT("sub")).c_str(), 0), 1);
      EXPECT_EQ(QXVCreatePath(folder.File(QXT("sub")).c_str()), 1);
    }
    stop = true;
  });
  int moved = 0;
  while (!stop) {
    moved += CurrentFolder() != start ? 1 : 0;
  }
  asker.join();
  EXPECT_EQ(moved, 0);
}

TEST(PathFolders, EveryMissingFolderIsCreatedOnce) {
  const TempFolder folder;
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("a\\b\\\\")).c_str()), 1);
  EXPECT_TRUE(Exists(folder.File(QXT("a\\b"))));
  EXPECT_EQ(EntriesOf(folder.Path()), 2u);
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("a\\b")).c_str()), 1) << "nothing is missing";
  EXPECT_EQ(EntriesOf(folder.Path()), 2u);
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("a\\c\\\u4E2D\u6587\\e")).c_str()), 1);
  EXPECT_TRUE(Exists(folder.File(QXT("a\\c\\\u4E2D\u6587\\e"))));
  EXPECT_EQ(EntriesOf(folder.Path()), 5u);
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("a\\\\d\\\\\\f")).c_str()), 1) << "separators in a row";
  EXPECT_TRUE(Exists(folder.File(QXT("a\\d\\f"))));
  EXPECT_EQ(EntriesOf(folder.Path()), 7u);
  EXPECT_EQ(QXVCreatePath(QXT("Z:\\")), 1);
}

TEST(PathFolders, ARelativePathBeginsAtTheCurrentFolder) {
  const TempFolder folder;
  const InFolder in(folder.Path());
  EXPECT_EQ(QXVCreatePath(QXT("r\\s")), 1);
  EXPECT_TRUE(Exists(folder.File(QXT("r\\s"))));
  EXPECT_EQ(QXVCreatePath(QXT("t")), 1);
  EXPECT_TRUE(Exists(folder.File(QXT("t"))));
  EXPECT_EQ(EntriesOf(folder.Path()), 3u);
}

TEST(PathFolders, BackslashesAloneAreTheRoot) {
  EXPECT_EQ(QXVCreatePath(QXT("\\")), 1);
  EXPECT_EQ(QXVCreatePath(QXT("\\\\")), 1);
  EXPECT_EQ(QXVCreatePath(QXT("\\\\\\\\")), 1);
}

TEST(PathFolders, WhatCannotBeCreatedFails) {
  const TempFolder folder;
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("file")), "x"));
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("file")).c_str()), 0);
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("file\\a")).c_str()), 0);
  EXPECT_EQ(QXVCreatePath(folder.File(QXT("made\\file\\a")).c_str()), 1) << "another folder's name";
  EXPECT_EQ(QXVCreatePath(QXT("\\\\server\\share\\a")), 0) << "two backslashes in front";
  EXPECT_EQ(QXVCreatePath(QXT("Q:\\a")), 0) << "no such drive";
  EXPECT_EQ(QXVCreatePath((folder.Path() + support::Repeat(QXT('n'), 300) + QXT("\\a")).c_str()), 0) << "a name too long";
  EXPECT_EQ(QXVCreatePath(nullptr), 0);
  EXPECT_EQ(QXVCreatePath(QXT("")), 0);
}

TEST(PathFoldersKept, ASlashDoesNotSeparateWhatIsCreated) {
  const TempFolder folder;
  Text slashes = folder.Path() + QXT("a/b");
  EXPECT_EQ(QXVCreatePath(slashes.c_str()), 0) << "a is missing and is not created";
  EXPECT_EQ(EntriesOf(folder.Path()), 0u);
  ASSERT_EQ(qxv::os::CreateFolder(folder.File(QXT("a")).c_str()), 0u);
  EXPECT_EQ(QXVCreatePath(slashes.c_str()), 1);
  EXPECT_TRUE(Exists(folder.File(QXT("a\\b"))));
}

TEST(PathFolders, ThreadsMayCreateTheSamePathAtOnce) {
  const TempFolder folder;
  for (int round = 0; round < 20; ++round) {
    Text path = folder.Path();
    path += static_cast<QXChar>(QXT('a') + round);
    path += QXT("\\b\\c\\d\\e");
    std::atomic<int> made{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] { made += QXVCreatePath(path.c_str()); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    EXPECT_EQ(made, 4) << "round " << round;
  }
}

TEST(PathFolders, TheSizeOfAFileHas64Bits) {
  const TempFolder folder;
  const Text name = folder.File(QXT("large.bin"));
  ASSERT_TRUE(support::WriteBytes(name, ""));
  EXPECT_EQ(SizeOf(name), 0);
  ASSERT_TRUE(support::WriteBytes(name, "12345"));
  EXPECT_EQ(SizeOf(name), 5);
  std::filesystem::resize_file(support::NativePath(name), 0xFFFFFFFF);  // holes: no space is taken
  EXPECT_EQ(SizeOf(name), 4294967295);
  std::filesystem::resize_file(support::NativePath(name), 5368709123);
  EXPECT_EQ(SizeOf(name), 5368709123);
}

TEST(PathFolders, TheSizeOfAPatternIsThatOfItsFirstMatch) {
  const TempFolder folder;
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("b.txt")), "22"));
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("a.txt")), "1"));
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("c.dat")), "333"));
  EXPECT_EQ(SizeOf(folder.File(QXT("*.txt"))), 1);
  EXPECT_EQ(SizeOf(folder.File(QXT("?.dat"))), 3);
  EXPECT_EQ(SizeOf(folder.File(QXT("B.T?T"))), 2);
  EXPECT_EQ(SizeOf(folder.File(QXT("*.none"))), 0);
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("!")), "4444"));
  EXPECT_EQ(SizeOf(folder.File(QXT("*"))), 0) << "the folder itself comes first";
}

TEST(PathFolders, FoldersAndMissingFilesHaveNoSize) {
  const TempFolder folder;
  ASSERT_EQ(qxv::os::CreateFolder(folder.File(QXT("sub")).c_str()), 0u);
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("sub\\a.txt")), "1"));
  EXPECT_EQ(SizeOf(folder.File(QXT("sub"))), 0);
  EXPECT_EQ(SizeOf(folder.File(QXT("sub\\"))), 0);
  EXPECT_EQ(SizeOf(folder.File(QXT("none"))), 0);
  EXPECT_EQ(SizeOf(folder.File(QXT("none\\a.txt"))), 0);
  EXPECT_EQ(SizeOf(QXT("")), 0);
  EXPECT_EQ(SizeOf(QXT("Z:\\")), 0);
  const InFolder in(folder.File(QXT("sub")));
  EXPECT_EQ(SizeOf(QXT("a.txt")), 1) << "a relative name";
}

}  // namespace
