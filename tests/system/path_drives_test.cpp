// path_drives_test.cpp - names with drive letters on Linux.

#include "qxv/path.h"

#include "support/environment.h"
#include "support/limited_user.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using support::TempFolder;

class PathDrives : public testing::Test {
 protected:
  TempFolder m_folder;
  support::ScopedVariable m_drives{"QXV_DRIVES", "D=" + m_folder.Native().string()};
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
  std::filesystem::permissions(m_folder.Native() / "closed", std::filesystem::perms::owner_read);
  const support::LimitedUser limited;
  EXPECT_EQ(QXVPathExist(QXT("D:\\closed"), 0), 0);
  EXPECT_EQ(QXVPathExist(QXT("D:\\closed\\in"), 0), 0);
  EXPECT_EQ(QXVCreatePath(QXT("D:\\closed\\in")), 0);
}

}  // namespace
