// path_drives_test.cpp - names with drive letters on Linux.

#include "qxv/path.h"

#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace {

using support::TempFolder;
using support::TextOf;

class PathDrives : public testing::Test {
 protected:
  PathDrives() {
    ::setenv("QXV_DRIVES", ("D=" + m_folder.Native().string()).c_str(), 1);  // this process holds no other test
  }
  ~PathDrives() override { ::unsetenv("QXV_DRIVES"); }

  TempFolder m_folder;
};

TEST_F(PathDrives, FoldersAndFilesAreFoundOnAMappedDrive) {
  EXPECT_EQ(QXVCreatePath(QXT("D:\\a\\b\\\\")), 1);
  EXPECT_TRUE(std::filesystem::is_directory(m_folder.Native() / "a" / "b"));
  ASSERT_TRUE(support::WriteBytes(m_folder.File(QXT("a\\File.TXT")), "12345"));
  EXPECT_EQ(QXVIsFileExist(QXT("D:\\a\\File.TXT")), 1);
  EXPECT_EQ(QXVIsFileExist(QXT("d:\\A\\file.txt")), 1) << "whatever the case";
  EXPECT_EQ(QXVIsPathExist(QXT("D:\\A\\B\\")), 1);
  EXPECT_EQ(QXVPathExist(QXT("D:\\A"), 0), 1);
  CQXString name(QXT("D:\\a\\fi*.t?t"));
  EXPECT_EQ(QXVXHFileSize(name), 5);
  EXPECT_EQ(QXVIsPathExist(QXT("E:\\")), 0);
  EXPECT_EQ(QXVPathExist(QXT("E:\\"), 1), 0);
  EXPECT_EQ(QXVCreatePath(QXT("E:\\a")), 0);
}

TEST_F(PathDrives, AMissingFolderBelowOneOfAnotherCaseIsCreatedInside) {
  ASSERT_EQ(QXVCreatePath(QXT("D:\\Media")), 1);
  EXPECT_EQ(QXVCreatePath(QXT("D:\\MEDIA\\Clips")), 1);
  EXPECT_TRUE(std::filesystem::is_directory(m_folder.Native() / "Media" / "Clips"));
  EXPECT_FALSE(std::filesystem::exists(m_folder.Native() / "MEDIA"));
}

TEST_F(PathDrives, NamesWithoutALetterHaveNoNormalizedForm) {
  EXPECT_EQ(QXVIsPathExist(QXT("/tmp\\")), 0);
  EXPECT_EQ(QXVIsFileExist(QXT("/tmp")), 0);
  EXPECT_EQ(QXVPathExist(QXT("/tmp"), 0), 1) << "the system takes them";
}

TEST_F(PathDrives, AFolderThatMayNotBeEnteredDoesNotExist) {
  ASSERT_EQ(QXVCreatePath(QXT("D:\\closed\\in")), 1);
  const bool superuser = ::geteuid() == 0;  // who enters every folder
  ASSERT_EQ(::chmod((m_folder.Native() / "closed").c_str(), superuser ? 0700 : 0600), 0);
  constexpr uid_t kNobody = 65534;
  if (superuser) {
    ASSERT_EQ(::seteuid(kNobody), 0);
  }
  EXPECT_EQ(QXVPathExist(QXT("D:\\closed"), 0), 0);
  EXPECT_EQ(QXVPathExist(QXT("D:\\closed\\in"), 0), 0);
  EXPECT_EQ(QXVCreatePath(QXT("D:\\closed\\in")), 0);
  if (superuser) {
    ASSERT_EQ(::seteuid(0), 0);
  }
}

}  // namespace
