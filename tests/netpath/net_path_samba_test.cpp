// net_path_samba_test.cpp - the whole way on Linux: a Samba configuration, user shares, mounts and drive letters given as files.

#include "qxv/net_path.h"

#include "os/network.h"
#include "support/environment.h"
#include "support/private_registry.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using support::ScopedVariable;
using support::Text;
using support::TextOf;

Text HostName() {
  Text name;
  EXPECT_TRUE(qxv::os::SystemNetwork().ComputerName(name));
  return name;
}

class NetPathSamba : public testing::Test {
 protected:
  ~NetPathSamba() override { QXVRefreshNetPathTable(); }

  std::string Native(const char* name) const { return (folder.Native() / name).string(); }
  void Write(const char* name, const std::string& bytes) const {
    ASSERT_TRUE(support::WriteBytes(folder.File(Text(name, name + std::string(name).size())), bytes));
  }
  static Text Converted(int (*convert)(CQXString&, const CQXString&), const Text& path) {
    CQXString out;
    EXPECT_EQ(convert(out, path.c_str()), 0);
    return TextOf(out);
  }

  support::TempFolder folder;
  support::PrivateRegistry registry;
};

TEST_F(NetPathSamba, SharesUserSharesAndMountsFillTheTable) {
  std::filesystem::create_directory(Native("user"));
  std::filesystem::create_directory(Native("mnt"));
  Write("smb.conf", "[global]\n  usershare max shares = 10\n  usershare path = " + Native("user") +
                        "\n[Media]\n  path = /srv/media/\n[hidden$]\n path = /srv/hidden\n");
  Write("user\\clips", "#VERSION 2\npath=/home/ann/clips\ncomment=\nusershare_acl=S-1-1-0:F\nguest_ok=n\nsharename=Clips\n");
  Write("mounts", "/dev/sda1 / ext4 rw 0 0\n//10.1.2.3/share " + Native("mnt") + " cifs rw,vers=3.0 0 0\n");
  const ScopedVariable config("QXV_SAMBA_CONFIG", Native("smb.conf"));
  const ScopedVariable mounts("QXV_MOUNTS", Native("mounts"));
  const ScopedVariable drives("QXV_DRIVES", "D=/srv/media;X=" + Native("mnt"));
  QXVRefreshNetPathTable();

  CQXString table;
  EXPECT_EQ(QXVDumpNetPathTable(table), 3);
  const Text own = QXT("\\\\") + HostName();
  EXPECT_EQ(TextOf(table),
            own + QXT("\\Media\t\tD:\n") + own + QXT("\\Clips\t\tZ:\\home\\ann\\clips\n") + QXT("\t\\\\10.1.2.3\\share\tX:\n"));
  EXPECT_EQ(Converted(QXVUNC2Local, own + QXT("\\media\\a.mxf")), QXT("D:\\a.mxf"));
  EXPECT_EQ(Converted(QXVUNC2Local, QXT("\\\\localhost\\clips\\a.mxf")), QXT("Z:\\home\\ann\\clips\\a.mxf"));
  EXPECT_EQ(Converted(QXVUNC2Local, QXT("\\\\10.1.2.3\\share\\a.mxf")), QXT("X:\\a.mxf"));
  EXPECT_EQ(Converted(QXVLocal2UNC, QXT("X:\\a.mxf")), QXT("\\\\10.1.2.3\\share\\a.mxf"));
  EXPECT_EQ(Converted(QXVLocal2UNC, QXT("Z:\\home\\ann\\clips\\a")), own + QXT("\\Clips\\a"));
  EXPECT_EQ(Converted(QXVLocal2UNC, QXT("Z:\\etc")), QXT("Local\\Z:\\etc"));
}

TEST_F(NetPathSamba, WithoutTheFilesTheTableIsEmpty) {
  const ScopedVariable config("QXV_SAMBA_CONFIG", Native("missing"));
  const ScopedVariable mounts("QXV_MOUNTS", Native("missing"));
  QXVRefreshNetPathTable();
  CQXString table;
  EXPECT_EQ(QXVDumpNetPathTable(table), 0);
}

}  // namespace
