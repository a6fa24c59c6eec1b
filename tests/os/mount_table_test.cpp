// mount_table_test.cpp - mount tables as text, and drives on file systems of several kinds.

#include "os/mount_table.h"

#include "support/environment.h"
#include "support/full_disk.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using namespace qxv::os;
namespace fs = std::filesystem;

class MountTable : public testing::Test {
 protected:
  std::vector<Mount> Read(const std::string& text) {
    EXPECT_TRUE(support::WriteBytes(m_folder.File(QXT("mounts")), text));
    return ReadMounts((m_folder.Native() / "mounts").c_str());
  }

  support::TempFolder m_folder;
};

TEST_F(MountTable, HasSourceFolderAndType) {
  const auto mounts = Read("/dev/sda1 / ext4 rw,relatime 0 0\n//server/my\\040share /mnt/my\\040media cifs rw,vers=3.0 0 0\n");
  ASSERT_EQ(mounts.size(), 2u);
  EXPECT_EQ(mounts[0].source, "/dev/sda1");
  EXPECT_EQ(mounts[0].folder, "/");
  EXPECT_EQ(mounts[0].type, "ext4");
  EXPECT_EQ(mounts[1].source, "//server/my share");
  EXPECT_EQ(mounts[1].folder, "/mnt/my media");
  EXPECT_EQ(mounts[1].type, "cifs");
}

TEST_F(MountTable, LongLinesBlankLinesAndCommentsAreRead) {
  const std::string longest(4095, 'd');
  const auto mounts = Read("\n# a comment\noverlay /" + longest + " overlay lowerdir=" + std::string(100'000, 'l') +
                           " 0 0\n\n/dev/sdb1 /b xfs rw 0 0");
  ASSERT_EQ(mounts.size(), 2u);
  EXPECT_EQ(mounts[0].folder, "/" + longest);
  EXPECT_EQ(mounts[0].type, "overlay");
  EXPECT_EQ(mounts[1].folder, "/b");
}

TEST_F(MountTable, AnyTextIsRead) {
  const std::string valid = "//server/a\\040b /mnt/c cifs rw 0 0\n";
  for (std::size_t size = 0; size < valid.size(); ++size) {
    EXPECT_LE(Read(valid.substr(0, size)).size(), 1u) << size;
  }
  EXPECT_LE(Read(std::string("\0\0\n\0 \0 \0\n\\ \\4 \\04\n", 19)).size(), 3u);
  EXPECT_TRUE(ReadMounts("/nonexistent/mounts").empty());
}

TEST_F(MountTable, ThisSystemHasItsRoot) {
  const auto mounts = ReadMounts();
  const Mount* root = MountOf("/", mounts);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->folder, "/");
}

TEST_F(MountTable, TheLongestFolderHoldsAPathAndTheLastMountCoversTheOthers) {
  const std::vector<Mount> mounts = {{"a", "/", "ext4"}, {"b", "/mnt", "xfs"}, {"c", "/mnt/x", "nfs"}, {"d", "/mnt", "cifs"}};
  const struct {
    const char* path;
    const char* source;
  } rows[] = {{"/", "a"},      {"/home", "a"},    {"/mnt", "d"},    {"/mnt/y", "d"},
              {"/mnt/x", "c"}, {"/mnt/x/z", "c"}, {"/mnt/xy", "d"}, {"/mnty", "a"}};
  for (const auto& row : rows) {
    const Mount* mount = MountOf(row.path, mounts);
    ASSERT_NE(mount, nullptr) << row.path;
    EXPECT_EQ(mount->source, row.source) << row.path;
  }
  EXPECT_EQ(MountOf("/a", {}), nullptr);
  EXPECT_EQ(MountOf("/a", {{"b", "/mnt", "xfs"}}), nullptr);
}

TEST_F(MountTable, TheKindFollowsFromTypeAndSource) {
  const struct {
    Mount mount;
    DriveKind kind;
  } rows[] = {
      {{"//server/share", "/m", "cifs"}, DriveKind::Network}, {{"//server/share", "/m", "smb3"}, DriveKind::Network},
      {{"server:/export", "/m", "nfs4"}, DriveKind::Network}, {{"user@host:", "/m", "fuse.sshfs"}, DriveKind::Network},
      {{"/dev/sr0", "/m", "iso9660"}, DriveKind::Disc},       {{"/dev/sr0", "/m", "udf"}, DriveKind::Disc},
      {{"/dev/loop0", "/m", "iso9660"}, DriveKind::Disc},     {{"tmpfs", "/m", "tmpfs"}, DriveKind::Memory},
      {{"none", "/m", "ramfs"}, DriveKind::Memory},           {{"/dev/ram0", "/m", "ext2"}, DriveKind::Memory},
      {{"/dev/zram1", "/m", "ext4"}, DriveKind::Memory},      {{"/dev/sda1", "/m", "ext4"}, DriveKind::Fixed},
      {{"/dev/sdb1", "/m", "udf"}, DriveKind::Fixed},         {{"overlay", "/m", "overlay"}, DriveKind::Fixed},
      {{"/dev/nvme0n1p2", "/m", "btrfs"}, DriveKind::Fixed},  {{"pool/media", "/m", "zfs"}, DriveKind::Fixed},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(KindOfMount(row.mount), row.kind) << row.mount.source << " " << row.mount.type;
  }
}

TEST(MappedDisk, TheLetterStandsForTheFileSystemOfItsFolder) {
  const support::TempFolder folder;
  fs::create_directory(folder.Native() / "small disk");
  const support::SmallDisk disk(folder.Native() / "small disk", 512);
  if (!disk.Mounted()) {
    GTEST_SKIP() << "this user may not mount a disk";
  }
  fs::create_directory(folder.Native() / "small disk" / "sub");
  fs::create_symlink(folder.Native() / "small disk" / "sub", folder.Native() / "link");
  for (const char* place : {"small disk", "small disk/sub", "link"}) {
    const support::ScopedVariable drives("QXV_DRIVES", "D=" + (folder.Native() / place).string());
    DiskSpace space{};
    ASSERT_EQ(GetDiskSpace(QXT('d'), space), kErrorNone) << place;
    EXPECT_EQ(space.total, 512 * 1024) << place;
    EXPECT_LE(space.free, space.total) << place;
    EXPECT_EQ(GetDriveKind(QXT('D')), DriveKind::Memory) << place;
  }
  const support::ScopedVariable drives("QXV_DRIVES", "D=" + (folder.Native() / "small disk").string());
  DiskSpace before{};
  DiskSpace after{};
  ASSERT_EQ(GetDiskSpace(QXT('D'), before), kErrorNone);
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("small disk\\file")), std::string(100 * 1024, 'x')));
  ASSERT_EQ(GetDiskSpace(QXT('D'), after), kErrorNone);
  EXPECT_EQ(before.free - after.free, 100 * 1024);
}

TEST(MappedDisk, AFolderThatIsGoneAndAFileAreNoDrives) {
  const support::TempFolder folder;
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("file")), "x"));
  for (const char* place : {"gone", "file", "file/sub"}) {
    const support::ScopedVariable drives("QXV_DRIVES", "D=" + (folder.Native() / place).string());
    DiskSpace space{1, 1};
    EXPECT_NE(GetDiskSpace(QXT('D'), space), kErrorNone) << place;
    EXPECT_EQ(space.total, 0) << place;
    EXPECT_EQ(GetDriveKind(QXT('D')), DriveKind::None) << place;
  }
}

}  // namespace
