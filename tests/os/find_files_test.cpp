// find_files_test.cpp - files by pattern.

#include "os/clock.h"
#include "os/file_system.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

namespace {

using namespace qxv::os;
using support::TempFolder;
using support::Text;

std::vector<std::string> Find(const Text& pattern) {
  std::vector<FoundFile> found;
  const ErrorCode error = FindFiles(pattern.c_str(), found);
  std::vector<std::string> names;
  if (error != 0) {
    names.push_back("<error " + std::to_string(error) + ">");
  }
  for (const FoundFile& file : found) {
    names.push_back(support::Printable(file.name));
  }
  return names;
}

class FindFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"b.txt", "A.TXT", "c.ini", "noext", "t1.abc", "a.b.c"}) {
      ASSERT_TRUE(support::WriteBytes(folder.File(Text(name, name + std::char_traits<char>::length(name))), "12345"));
    }
    ASSERT_EQ(CreateFolder(folder.File(QXT("Dir.txt")).c_str()), 0u);
  }
  const TempFolder folder;
};

using testing::ElementsAre;

TEST_F(FindFilesTest, PatternsMatchAsTheSystemsFinderDoes) {
  EXPECT_THAT(Find(folder.File(QXT("*"))),
              ElementsAre(".", "..", "a.b.c", "A.TXT", "b.txt", "c.ini", "Dir.txt", "noext", "t1.abc"));
  EXPECT_THAT(Find(folder.File(QXT("*.*"))),
              ElementsAre(".", "..", "a.b.c", "A.TXT", "b.txt", "c.ini", "Dir.txt", "noext", "t1.abc"));
  EXPECT_THAT(Find(folder.File(QXT("*.txt"))), ElementsAre("A.TXT", "b.txt", "Dir.txt"));
  EXPECT_THAT(Find(folder.File(QXT("T*.???"))), ElementsAre("t1.abc"));
  EXPECT_THAT(Find(folder.File(QXT("?.TXT"))), ElementsAre("A.TXT", "b.txt"));
  EXPECT_THAT(Find(folder.File(QXT("*.c"))), ElementsAre("a.b.c"));
  EXPECT_THAT(Find(folder.File(QXT("*.zip"))), ElementsAre("<error 2>"));
}

TEST_F(FindFilesTest, AnExactNameGivesTheRealOne) {
  EXPECT_THAT(Find(folder.File(QXT("a.txt"))), ElementsAre("A.TXT"));
  EXPECT_THAT(Find(folder.File(QXT("DIR.TXT"))), ElementsAre("Dir.txt"));
  EXPECT_THAT(Find(folder.Path().substr(0, folder.Path().size() - 1)),
              ElementsAre(support::Printable(folder.Path().substr(folder.Path().rfind(QXT('\\'), folder.Path().size() - 2) + 1,
                                                                  folder.Native().filename().string().size()))));
}

TEST_F(FindFilesTest, WhatIsMissingIsTold) {
  EXPECT_THAT(Find(folder.File(QXT("none"))), ElementsAre("<error 2>"));
  EXPECT_THAT(Find(folder.File(QXT("none\\*"))), ElementsAre("<error 3>"));
  EXPECT_THAT(Find(folder.File(QXT("none\\a"))), ElementsAre("<error 3>"));
  EXPECT_THAT(Find(folder.Path()), ElementsAre("<error 2>")) << "a name that ends in a backslash";
  EXPECT_THAT(Find(QXT("")), ElementsAre("<error 3>"));
  EXPECT_THAT(Find(Text(40000, QXT('*'))), ElementsAre("<error 123>"));
  std::vector<FoundFile> found(1);
  EXPECT_EQ(FindFiles(nullptr, found), 3u);
  EXPECT_TRUE(found.empty());
}

TEST_F(FindFilesTest, RecordsHoldSizeKindAndTimes) {
  FileTimes times{};
  times.created = times.accessed = times.written = FileTimeOf(Moment{951782400, 0});
  ASSERT_EQ(SetFileTimes(folder.File(QXT("b.txt")).c_str(), times), 0u);
  std::vector<FoundFile> found;
  ASSERT_EQ(FindFiles(folder.File(QXT("?*.txt")).c_str(), found), 0u);
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found[1].size, 5u);
  EXPECT_FALSE(found[1].IsFolder());
  EXPECT_EQ(found[1].times.written.dwHighDateTime, 0x01BF8247u);
  EXPECT_EQ(found[1].times.written.dwLowDateTime, 0xEBCC8000u);
  EXPECT_EQ(found[2].name, QXT("Dir.txt"));
  EXPECT_TRUE(found[2].IsFolder());
  EXPECT_EQ(found[2].size, 0u);
}

TEST_F(FindFilesTest, SizesAbove4GiBAreExact) {
  File file;
  const Text name = folder.File(QXT("big.bin"));
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::CreateAlways, kShareNone}), 0u);
  ASSERT_EQ(SeekInFile(file.Handle(), 0x123456789, SeekOrigin::Begin), 0u);
  ASSERT_EQ(CutFile(file.Handle()), 0u);
  (void)file.Close();
  std::vector<FoundFile> found;
  ASSERT_EQ(FindFiles(folder.File(QXT("b*.bin")).c_str(), found), 0u);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].size, 0x123456789u);
}

}  // namespace
