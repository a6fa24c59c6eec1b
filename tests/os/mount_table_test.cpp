// mount_table_test.cpp - mount tables as text, network names by them, and drives on file systems of several kinds.

#include "os/mount_table.h"

#include "support/environment.h"
#include "support/full_disk.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using namespace qxv::os;
namespace fs = std::filesystem;

TEST(MountTable, HasSourceFolderAndType) {
  const auto mounts =
      ParseMounts("/dev/sda1 / ext4 rw,relatime 0 0\n//server/my\\040share /mnt/my\\040media cifs rw,vers=3.0 0 0\n");
  ASSERT_EQ(mounts.size(), 2u);
  EXPECT_EQ(mounts[0].source, "/dev/sda1");
  EXPECT_EQ(mounts[0].folder, "/");
  EXPECT_EQ(mounts[0].type, "ext4");
  EXPECT_EQ(mounts[1].source, "//server/my share");
  EXPECT_EQ(mounts[1].folder, "/mnt/my media");
  EXPECT_EQ(mounts[1].type, "cifs");
}

TEST(MountTable, LongLinesBlankLinesAndCommentsAreRead) {
  const std::string longest(4095, 'd');
  const auto mounts = ParseMounts("\n# a comment\noverlay /" + longest + " overlay lowerdir=" + std::string(100'000, 'l') +
                                  " 0 0\n\n/dev/sdb1 /b xfs rw 0 0");
  ASSERT_EQ(mounts.size(), 2u);
  EXPECT_EQ(mounts[0].folder, "/" + longest);
  EXPECT_EQ(mounts[0].type, "overlay");
  EXPECT_EQ(mounts[1].folder, "/b");
}

TEST(MountTable, AnyTextIsRead) {
  const std::string valid = "//server/a\\040b /mnt/c cifs rw 0 0\n";
  for (std::size_t size = 0; size < valid.size(); ++size) {
    EXPECT_LE(ParseMounts(valid.substr(0, size)).size(), 1u) << size;
  }
  EXPECT_LE(ParseMounts(std::string("\0\0\n\0 \0 \0\n\\ \\4 \\04\n", 19)).size(), 3u);
}

TEST(MountTable, ASourceMayBeginWithTheSignOfACommentWhenItIsWrittenAsAnEscape) {
  const auto mounts = ParseMounts(" \t# no /mount at all\n\\043odd\t \t/mnt/odd\tnfs");
  ASSERT_EQ(mounts.size(), 1u);
  EXPECT_EQ(mounts[0].source, "#odd");
  EXPECT_EQ(mounts[0].folder, "/mnt/odd");
  EXPECT_EQ(mounts[0].type, "nfs");
}

TEST(MountTable, ALineWithoutATypeIsNoMount) { EXPECT_TRUE(ParseMounts("//server/share /mnt\n//server/share\n \n").empty()); }

TEST(MountTable, ATableThatIsMissingIsEmpty) {
  const support::ScopedVariable table("QXV_MOUNTS", "/nonexistent/mounts");
  EXPECT_TRUE(ReadMounts().empty());
  EXPECT_EQ(GetDriveKind(QXT('Z')), DriveKind::Unknown);
}

TEST(MountTable, ThisSystemHasItsRoot) {
  const auto mounts = ReadMounts();
  const Mount* root = MountOf("/", mounts);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->folder, "/");
}

TEST(MountTable, TheLongestFolderHoldsAPathAndTheLastMountCoversTheOthers) {
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

TEST(MountTable, TheKindFollowsFromTypeAndSource) {
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

constexpr const char* kMounts =
    "proc /proc proc rw 0 0\n"
    "/dev/sda1 / ext4 rw,relatime 0 0\n"
    "//srv/share /mnt/share cifs rw,vers=3.0,addr=10.1.2.3 0 0\n"
    "//10.1.2.3/media/deep /mnt/media smb3 rw 0 0\n"
    "//old/share /mnt/old smbfs rw 0 0\n"
    "/dev/sdb1 /mnt/share/local ext4 rw 0 0\n"
    "\\134\\134srv\\134my\\040share /mnt/my\\040folder cifs rw 0 0\n"
    "nfs:/export /mnt/nfs nfs4 rw 0 0\n"
    "//covered/a /mnt/twice cifs rw 0 0\n"
    "//srv/b /mnt/twice cifs rw 0 0\n"
    "srv /mnt/noname cifs rw 0 0\n"
    " #//srv/c /mnt/nfs cifs rw 0 0\n";

TEST(NetworkMounts, AFolderInANetworkMountHasItsName) {
  const struct {
    const char* folder;
    const QXChar* name;
  } rows[] = {
      {"/mnt/share", QXT("\\\\srv\\share")},
      {"/mnt/share/a/B", QXT("\\\\srv\\share\\a\\B")},
      {"/mnt/share2", QXT("")},
      {"/mnt/media", QXT("\\\\10.1.2.3\\media\\deep")},
      {"/mnt/old", QXT("\\\\old\\share")},
      {"/mnt/share/local", QXT("")},
      {"/mnt/share/local/x", QXT("")},
      {"/mnt/share/localx", QXT("\\\\srv\\share\\localx")},
      {"/mnt/my folder/c", QXT("\\\\srv\\my share\\c")},
      {"/mnt/nfs", QXT("")},
      {"/mnt/twice", QXT("\\\\srv\\b")},
      {"/mnt/noname", QXT("")},
      {"/mnt", QXT("")},
      {"/", QXT("")},
      {"", QXT("")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(NetworkNameOfFolder(row.folder, ParseMounts(kMounts)), row.name) << row.folder;
  }
}

TEST(NetworkMounts, ARootThatIsAShareCoversAll) {
  EXPECT_EQ(NetworkNameOfFolder("/", ParseMounts("//srv/root / cifs rw 0 0\n")), QXT("\\\\srv\\root"));
  EXPECT_EQ(NetworkNameOfFolder("/a", ParseMounts("//srv/root / cifs rw 0 0\n")), QXT("\\\\srv\\root\\a"));
}

TEST(NetworkMounts, BrokenTablesAreRead) {
  for (const char* table : {"", "\n\n", " ", "//srv/share", "//srv/share ", "//srv/share /mnt", "//srv/share /mnt ", "  cifs",
                            "//srv/share  cifs", "\\04 \\ \\9 \\777777"}) {
    EXPECT_EQ(NetworkNameOfFolder("/mnt", ParseMounts(table)), QXT("")) << table;
  }
  EXPECT_EQ(NetworkNameOfFolder("/mnt", ParseMounts("//srv/share /mnt cifs")), QXT("\\\\srv\\share"));
}

TEST(NetworkMounts, EveryPrefixOfATableIsRead) {
  const std::string whole = kMounts;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    char* const bytes = new char[length + 1];
    std::copy_n(whole.data(), length, bytes + 1);
    const Text name = NetworkNameOfFolder("/mnt/share/a", ParseMounts(std::string_view(bytes + 1, length)));
    EXPECT_TRUE(name.empty() || name == QXT("\\\\srv\\share\\a")) << length;
    delete[] bytes;
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
