// identity_posix_test.cpp - users, groups, login records and the Samba server's words on Linux.

#include "os/identity.h"
#include "os/logon_records.h"
#include "os/network.h"

#include "support/environment.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>
#include <utmpx.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

using namespace qxv::os;
using support::ScopedVariable;

std::string Record(short type, const std::string& user) {
  utmpx record{};
  record.ut_type = type;
  std::memcpy(record.ut_user, user.data(), std::min(user.size(), sizeof record.ut_user));
  return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}

Text OwnName() {
  const passwd* const entry = ::getpwuid(::geteuid());
  const std::string name = entry != nullptr ? entry->pw_name : "";
  return Text(name.begin(), name.end());
}

class PosixIdentity : public testing::Test {
 protected:
  std::string Native(const char* name) const { return (folder.Native() / name).string(); }
  void Write(const char* name, const std::string& bytes) const {
    ASSERT_TRUE(support::WriteBytes(folder.File(Text(name, name + std::string(name).size())), bytes));
  }

  support::TempFolder folder;
  IdentitySource& system = SystemIdentity();
};

TEST_F(PosixIdentity, LoginRecordsOfUserProcessesAreUsers) {
  const std::string records = Record(BOOT_TIME, "reboot") + Record(USER_PROCESS, "ann") + Record(DEAD_PROCESS, "bob") +
                              Record(USER_PROCESS, "") + Record(LOGIN_PROCESS, "LOGIN") +
                              Record(USER_PROCESS, std::string(40, 'u')) + Record(USER_PROCESS, "eve").substr(0, 100);
  EXPECT_EQ(LoggedOnNames(records), (std::vector<std::string>{"ann", std::string(32, 'u')}));
}

TEST_F(PosixIdentity, EveryPrefixOfTheRecordsIsRead) {
  const std::string records = Record(USER_PROCESS, "ann") + Record(USER_PROCESS, "bob");
  for (std::size_t length = 0; length <= records.size(); ++length) {
    EXPECT_EQ(LoggedOnNames(std::string_view(records).substr(0, length)).size(), length / sizeof(utmpx)) << length;
  }
}

TEST_F(PosixIdentity, TheUserOfTheProcessIsLoggedOnWhateverTheRecordsSay) {
  Text computer;
  ASSERT_TRUE(system.WorkstationName(computer));
  const ScopedVariable missing("QXV_UTMP", Native("missing"));
  std::vector<LoggedOnUser> users;
  ASSERT_TRUE(system.LoggedOnUsers(users));
  ASSERT_EQ(users.size(), 1u);
  EXPECT_EQ(users[0].name, OwnName());
  EXPECT_EQ(users[0].logonDomain, computer);
}

TEST_F(PosixIdentity, ADomainStandsBeforeTheBackslashOfAUser) {
  Write("utmp", Record(USER_PROCESS, "STUDIO\\ann") + Record(USER_PROCESS, "bob"));
  const ScopedVariable records("QXV_UTMP", Native("utmp"));
  std::vector<LoggedOnUser> users;
  ASSERT_TRUE(system.LoggedOnUsers(users));
  ASSERT_EQ(users.size(), 3u);
  EXPECT_EQ(users[0].name, QXT("STUDIO\\ann"));
  EXPECT_EQ(users[0].logonDomain, QXT("STUDIO"));
  EXPECT_EQ(users[1].name, QXT("bob"));
  EXPECT_EQ(users[2].name, OwnName());
}

TEST_F(PosixIdentity, TheCurrentUserIsTheEffectiveOne) {
  Text name;
  ASSERT_TRUE(system.CurrentUserName(name));
  EXPECT_EQ(name, OwnName());
}

TEST_F(PosixIdentity, RootIsAnAdministratorAndNobodyIsNot) {
  std::uint32_t privilege = 77;
  ASSERT_TRUE(system.UserPrivilege(QXT("root"), privilege));
  EXPECT_EQ(privilege, 2u);
  ASSERT_TRUE(system.UserPrivilege(QXT("nobody"), privilege));
  EXPECT_EQ(privilege, 1u);
  privilege = 77;
  EXPECT_FALSE(system.UserPrivilege(QXT("no such user"), privilege));
  EXPECT_FALSE(system.UserPrivilege(QXT(""), privilege));
  EXPECT_EQ(privilege, 77u);
}

TEST_F(PosixIdentity, ProviderAndWorkgroupAreThoseOfTheSambaServer) {
  Write("smb.conf", "[global]\nworkgroup = STUDIO\n");
  const ScopedVariable config("QXV_SAMBA_CONFIG", Native("smb.conf"));
  Text computer;
  ASSERT_TRUE(system.WorkstationName(computer));
  Text name;
  EXPECT_TRUE(system.LanProviderName(name));
  EXPECT_EQ(name, QXT("Samba"));
  for (const Text& server : {QXT("\\\\") + computer, Text(QXT("\\\\LOCALHOST"))}) {
    Text parent;
    EXPECT_TRUE(system.ParentOfServer(server, name, parent));
    EXPECT_EQ(parent, QXT("STUDIO"));
  }
  Text parent = QXT("before");
  EXPECT_FALSE(system.ParentOfServer(QXT("\\\\other"), name, parent));
  EXPECT_EQ(parent, QXT("before"));
}

TEST_F(PosixIdentity, WithoutASambaServerThereIsNeither) {
  const ScopedVariable config("QXV_SAMBA_CONFIG", Native("missing"));
  Text text = QXT("before");
  EXPECT_FALSE(system.LanProviderName(text));
  EXPECT_FALSE(system.ParentOfServer(QXT("\\\\localhost"), QXT("Samba"), text));
  EXPECT_EQ(text, QXT("before"));
}

TEST_F(PosixIdentity, TheLanguageIsThatOfTheEnvironment) {
  const ScopedVariable all("LC_ALL", "zh_CN.UTF-8");
  EXPECT_EQ(system.SystemLanguage(), 0x0804);
}

TEST_F(PosixIdentity, DrivesOverANetworkMountAreConnected) {
  std::filesystem::create_directories(Native("mnt/deep"));
  std::filesystem::create_directory_symlink(Native("mnt/deep"), Native("link"));
  Write("mounts", "//srv/share " + Native("mnt") + " cifs rw 0 0\n");
  const ScopedVariable mounts("QXV_MOUNTS", Native("mounts"));
  const ScopedVariable drives("QXV_DRIVES", "X=" + Native("mnt") + ";Y=" + Native("link") + ";W=" + folder.Native().string() +
                                                ";A=" + Native("mnt") + ";B=" + Native("mnt") + ";C=" + Native("mnt"));
  std::vector<Text> connected;
  for (const ConnectedDrive& drive : SystemNetwork().ConnectedDrives()) {
    connected.push_back(Text(1, drive.letter) + QXT('=') + drive.remoteName);
  }
  EXPECT_EQ(connected, (std::vector<Text>{QXT("C=\\\\srv\\share"), QXT("X=\\\\srv\\share"), QXT("Y=\\\\srv\\share\\deep")}))
      << "Y through the link; A and B are no network drives";
}

TEST_F(PosixIdentity, AConnectionOf1023CharactersIsTheLongest) {
  std::string deep(1023 - std::string("//srv/").size(), 's');
  const ScopedVariable mounts("QXV_MOUNTS", Native("mounts"));
  const ScopedVariable drives("QXV_DRIVES", "X=/mnt");
  Write("mounts", "//srv/" + deep + " /mnt cifs rw 0 0\n");
  EXPECT_EQ(SystemNetwork().ConnectedDrives().size(), 1u);
  Write("mounts", "//srv/" + deep + "s /mnt cifs rw 0 0\n");
  EXPECT_EQ(SystemNetwork().ConnectedDrives().size(), 0u);
}

}  // namespace
