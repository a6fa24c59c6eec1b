// file_system_test.cpp - files and folders by name.

#include "os/file_system.h"

#include "os/clock.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv::os;
using support::Exists;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::WriteBytes;

std::uint32_t AttributesOf(const Text& path) {
  std::uint32_t attributes = 99;
  const ErrorCode error = GetPathAttributes(path.c_str(), attributes);
  return error == 0 ? attributes : 0xE0000000 + error;
}

TEST(FileSystem, AttributesTellFoldersAndFiles) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(WriteBytes(name, "x"));
  EXPECT_EQ(AttributesOf(name) & (kAttributeFolder | kAttributeReadOnly | kAttributeHidden), 0u);
  EXPECT_EQ(AttributesOf(folder.Path()) & kAttributeFolder, kAttributeFolder) << "with its backslash";
  EXPECT_EQ(AttributesOf(folder.Path().substr(0, folder.Path().size() - 1)) & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(AttributesOf(folder.File(QXT("none.txt"))), 0xE0000000u + 2);
  EXPECT_EQ(AttributesOf(folder.File(QXT("none\\a.txt"))), 0xE0000000u + 3);
  EXPECT_EQ(AttributesOf(QXT("Z:\\")) & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(AttributesOf(QXT("Z:")) & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(AttributesOf(QXT("")), 0xE0000000u + 3);
  std::uint32_t attributes = 99;
  EXPECT_EQ(GetPathAttributes(nullptr, attributes), 3u);
  EXPECT_EQ(attributes, 0u);
}

TEST(FileSystem, ReadOnlyFilesAreToldAndNotRemoved) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(WriteBytes(name, "x"));
  ASSERT_EQ(SetReadOnly(name.c_str(), true), 0u);
  EXPECT_EQ(AttributesOf(name) & kAttributeReadOnly, kAttributeReadOnly);
  EXPECT_EQ(RemoveFile(name.c_str()), 5u);
  EXPECT_TRUE(Exists(name));
  ASSERT_EQ(SetReadOnly(name.c_str(), false), 0u);
  EXPECT_EQ(AttributesOf(name) & kAttributeReadOnly, 0u);
  EXPECT_EQ(RemoveFile(name.c_str()), 0u);
  EXPECT_FALSE(Exists(name));
}

TEST(FileSystem, NamesAreFoundWhateverTheirCase) {
  const TempFolder folder;
  ASSERT_EQ(CreateFolder(folder.File(QXT("Sub\u00C9")).c_str()), 0u);
  ASSERT_TRUE(WriteBytes(folder.File(QXT("Sub\u00C9\\File.TXT")), "x"));
  EXPECT_EQ(AttributesOf(folder.File(QXT("sUB\u00E9\\fILE.txt"))) & kAttributeFolder, 0u);
  EXPECT_EQ(AttributesOf(folder.File(QXT("SUB\u00C9"))) & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(RemoveFile(folder.File(QXT("sub\u00E9/FILE.TXT")).c_str()), 0u);
  EXPECT_FALSE(Exists(folder.File(QXT("Sub\u00C9\\File.TXT"))));
}

TEST(FileSystem, FolderAccessChangesNothing) {
  const TempFolder folder;
  ASSERT_TRUE(WriteBytes(folder.File(QXT("a.txt")), "x"));
  Text before, after;
  ASSERT_EQ(GetCurrentFolder(before), 0u);
  EXPECT_EQ(CheckFolderAccess(folder.Path().c_str()), 0u);
  EXPECT_EQ(CheckFolderAccess(folder.File(QXT("a.txt")).c_str()), 267u);
  EXPECT_EQ(CheckFolderAccess(folder.File(QXT("none")).c_str()), 2u);
  EXPECT_EQ(CheckFolderAccess(folder.File(QXT("none\\none")).c_str()), 3u);
  EXPECT_EQ(CheckFolderAccess(QXT("")), 3u);
  EXPECT_EQ(CheckFolderAccess(nullptr), 3u);
  EXPECT_NE(CheckFolderAccess(QXT("Q:\\")), 0u);
  EXPECT_NE(CheckFolderAccess(QXT("\\\\")), 0u);
  ASSERT_EQ(GetCurrentFolder(after), 0u);
  EXPECT_EQ(before, after);
}

TEST(FileSystem, TheCurrentFolderIsTheStartOfRelativeNames) {
  Text before, now;
  ASSERT_EQ(GetCurrentFolder(before), 0u);
  {
    const TempFolder folder;
    ASSERT_TRUE(WriteBytes(folder.File(QXT("a.txt")), "x"));
    ASSERT_EQ(CreateFolder(folder.File(QXT("sub")).c_str()), 0u);
    ASSERT_EQ(SetCurrentFolder(folder.File(QXT("SUB")).c_str()), 0u);
    ASSERT_EQ(GetCurrentFolder(now), 0u);
    EXPECT_EQ(now.substr(now.rfind(QXT('\\')) - 10, 10), folder.Path().substr(folder.Path().size() - 11, 10));
    EXPECT_EQ(AttributesOf(QXT("..\\a.txt")) & kAttributeFolder, 0u);
    EXPECT_EQ(AttributesOf(QXT("a.txt")), 0xE0000000u + 2);
    EXPECT_EQ(AttributesOf(now.substr(0, 2) + QXT("..\\a.txt")) & kAttributeFolder, 0u) << "the drive's current folder";
    EXPECT_NE(SetCurrentFolder(folder.File(QXT("a.txt")).c_str()), 0u);
    EXPECT_NE(SetCurrentFolder(nullptr), 0u);
    Text unchanged;
    ASSERT_EQ(GetCurrentFolder(unchanged), 0u);
    EXPECT_EQ(unchanged, now) << "a failure changes nothing";
    ASSERT_EQ(SetCurrentFolder(before.c_str()), 0u);
  }
  ASSERT_EQ(SetCurrentFolder(QXT("Z:\\")), 0u);
  ASSERT_EQ(GetCurrentFolder(now), 0u);
  EXPECT_EQ(now, QXT("Z:\\"));
  ASSERT_EQ(SetCurrentFolder(before.c_str()), 0u);
}

TEST(FileSystem, FoldersAreMadeOnce) {
  const TempFolder folder;
  const Text name = folder.File(QXT("new"));
  EXPECT_EQ(CreateFolder(name.c_str()), 0u);
  EXPECT_EQ(CreateFolder(name.c_str()), 183u);
  EXPECT_EQ(CreateFolder((name + QXT("\\")).c_str()), 183u);
  EXPECT_EQ(CreateFolder((name + QXT("\\a\\b")).c_str()), 3u);
  EXPECT_EQ(CreateFolder((name + QXT("\\c\\")).c_str()), 0u) << "with a backslash at its end";
  ASSERT_TRUE(WriteBytes(folder.File(QXT("file")), "x"));
  EXPECT_EQ(CreateFolder(folder.File(QXT("file")).c_str()), 183u);
  EXPECT_EQ(CreateFolder(folder.File(QXT("FILE")).c_str()), 183u);
  EXPECT_EQ(CreateFolder(QXT("")), 3u);
  EXPECT_EQ(CreateFolder(nullptr), 3u);
}

TEST(FileSystem, CreateFoldersMakesAllThatIsMissing) {
  const TempFolder folder;
  EXPECT_EQ(CreateFolders(folder.File(QXT("a\\b/c\\\\d\\")).c_str()), 0u);
  EXPECT_TRUE(Exists(folder.File(QXT("a\\b\\c\\d"))));
  EXPECT_EQ(CreateFolders(folder.File(QXT("a\\b\\c\\d")).c_str()), 183u);
  EXPECT_EQ(CreateFolders(folder.File(QXT("a\\b\\x\\..\\e")).c_str()), 0u);
  EXPECT_TRUE(Exists(folder.File(QXT("a\\b\\e"))));
  ASSERT_TRUE(WriteBytes(folder.File(QXT("file")), "x"));
  EXPECT_EQ(CreateFolders(folder.File(QXT("file")).c_str()), 183u);
  EXPECT_EQ(CreateFolders(folder.File(QXT("file\\a\\b")).c_str()), 3u);
  EXPECT_EQ(CreateFolders(QXT("a\\b")), 161u);
  EXPECT_EQ(CreateFolders(QXT("Z:a")), 161u);
  EXPECT_EQ(CreateFolders(QXT("")), 3u);
  EXPECT_EQ(CreateFolders(nullptr), 3u);
}

TEST(FileSystem, RemovingTellsWhyNot) {
  const TempFolder folder;
  const Text file = folder.File(QXT("sub\\a.txt"));
  ASSERT_EQ(CreateFolder(folder.File(QXT("sub")).c_str()), 0u);
  ASSERT_TRUE(WriteBytes(file, "x"));
  EXPECT_EQ(RemoveFile(folder.File(QXT("sub")).c_str()), 5u);
  EXPECT_EQ(RemoveFile(folder.File(QXT("none")).c_str()), 2u);
  EXPECT_EQ(RemoveFile(folder.File(QXT("none\\none")).c_str()), 3u);
  EXPECT_EQ(RemoveFile(nullptr), 3u);
  EXPECT_EQ(RemoveFolder(folder.File(QXT("sub")).c_str()), 145u);
  EXPECT_EQ(RemoveFolder(file.c_str()), 267u);
  EXPECT_EQ(RemoveFile(file.c_str()), 0u);
  EXPECT_EQ(RemoveFolder(folder.File(QXT("sub\\")).c_str()), 0u);
  EXPECT_EQ(RemoveFolder(folder.File(QXT("sub")).c_str()), 2u);
}

TEST(FileSystem, RenamingReplacesOnlyWhenAsked) {
  const TempFolder folder;
  const Text a = folder.File(QXT("a.txt"));
  const Text b = folder.File(QXT("b.txt"));
  ASSERT_TRUE(WriteBytes(a, "A"));
  ASSERT_TRUE(WriteBytes(b, "B"));
  EXPECT_EQ(RenameFile(a.c_str(), b.c_str(), false), 183u);
  EXPECT_EQ(ReadBytes(b), "B");
  EXPECT_EQ(RenameFile(a.c_str(), b.c_str(), true), 0u);
  EXPECT_EQ(ReadBytes(b), "A");
  EXPECT_FALSE(Exists(a));
  EXPECT_EQ(RenameFile(a.c_str(), b.c_str(), true), 2u);
  EXPECT_EQ(RenameFile(b.c_str(), folder.File(QXT("none\\c.txt")).c_str(), true), 3u);
  EXPECT_EQ(RenameFile(nullptr, b.c_str(), true), 3u);
  EXPECT_EQ(RenameFile(b.c_str(), nullptr, true), 3u);
  ASSERT_EQ(CreateFolder(folder.File(QXT("sub")).c_str()), 0u);
  EXPECT_EQ(RenameFile(b.c_str(), folder.File(QXT("sub")).c_str(), true), 5u);
  EXPECT_EQ(RenameFile(folder.File(QXT("sub")).c_str(), folder.File(QXT("other")).c_str(), false), 0u);
}

TEST(FileSystem, TimesComeBackAsSet) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(WriteBytes(name, "x"));
  FileTimes times;
  ASSERT_EQ(GetFileTimes(name.c_str(), times), 0u);
  times.accessed = FileTimeOf(Moment{1241165107, 45});  // 2009-05-01 08:05:07.045
  times.written = FileTimeOf(Moment{951782400, 0});     // 2000-02-29
  ASSERT_EQ(SetFileTimes(name.c_str(), times), 0u);
  FileTimes read;
  ASSERT_EQ(GetFileTimes(name.c_str(), read), 0u);
  EXPECT_EQ(read.written.dwLowDateTime, 0xEBCC8000u);
  EXPECT_EQ(read.written.dwHighDateTime, 0x01BF8247u);
  EXPECT_EQ(read.accessed.dwLowDateTime, times.accessed.dwLowDateTime);
  EXPECT_EQ(read.accessed.dwHighDateTime, times.accessed.dwHighDateTime);
  EXPECT_EQ(GetFileTimes(folder.File(QXT("none")).c_str(), read), 2u);
  EXPECT_EQ(SetFileTimes(folder.File(QXT("none")).c_str(), read), 2u);
}

TEST(FileSystem, TheTemporaryFolderExists) {
  Text folder;
  ASSERT_EQ(GetTemporaryFolder(folder), 0u);
  EXPECT_EQ(folder.back(), QXT('\\'));
  EXPECT_EQ(folder[1], QXT(':'));
  EXPECT_EQ(CheckFolderAccess(folder.c_str()), 0u);
}

}  // namespace
