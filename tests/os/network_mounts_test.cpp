// network_mounts_test.cpp - network names of folders by a table of mounts. Linux only.

#include "os/network_mounts.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv::os;

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
    "srv /mnt/noname cifs rw 0 0\n";

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
    EXPECT_EQ(NetworkNameOfFolder(kMounts, row.folder), row.name) << row.folder;
  }
}

TEST(NetworkMounts, ARootThatIsAShareCoversAll) {
  EXPECT_EQ(NetworkNameOfFolder("//srv/root / cifs rw 0 0\n", "/"), QXT("\\\\srv\\root"));
  EXPECT_EQ(NetworkNameOfFolder("//srv/root / cifs rw 0 0\n", "/a"), QXT("\\\\srv\\root\\a"));
}

TEST(NetworkMounts, BrokenTablesAreRead) {
  for (const char* table : {"", "\n\n", " ", "//srv/share", "//srv/share ", "//srv/share /mnt", "//srv/share /mnt ", "  cifs",
                            "//srv/share  cifs", "\\04 \\ \\9 \\777777"}) {
    EXPECT_EQ(NetworkNameOfFolder(table, "/mnt"), QXT("")) << table;
  }
  EXPECT_EQ(NetworkNameOfFolder("//srv/share /mnt cifs", "/mnt"), QXT("\\\\srv\\share"));
}

TEST(NetworkMounts, EveryPrefixOfATableIsRead) {
  const std::string whole = kMounts;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    char* const bytes = new char[length + 1];
    std::copy_n(whole.data(), length, bytes + 1);
    const Text name = NetworkNameOfFolder(std::string_view(bytes + 1, length), "/mnt/share/a");
    EXPECT_TRUE(name.empty() || name == QXT("\\\\srv\\share\\a")) << length;
    delete[] bytes;
  }
}

}  // namespace
