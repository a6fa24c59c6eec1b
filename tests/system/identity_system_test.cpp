// identity_system_test.cpp - what the system that the tests run on says of itself.

#include "qxv/identity.h"

#include "os/network.h"
#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using support::TextOf;

TEST(IdentitySystem, TheLanguageIsOneThatWindowsKnows) {
  EXPECT_GE(QXVGetThisPrimaryLangID(), 1u);
  EXPECT_LE(QXVGetThisPrimaryLangID(), 0x3FFu);
  EXPECT_LE(QXVGetThisSubLangID(), 0x3Fu);
}

TEST(IdentitySystem, ThereIsAUser) { EXPECT_GT(QXVGetLogInUserName().GetLength(), 0); }

TEST(IdentitySystem, TheComputerIsTheOneThatTheNetworkKnows) {
  support::Text known;
  ASSERT_TRUE(qxv::os::SystemNetwork().ComputerName(known));
  CQXString computer;
  QXVGetLogInComputer(computer);
  EXPECT_GT(computer.GetLength(), 0);
  EXPECT_EQ(computer.CompareNoCase(known.c_str()), 0);
}

TEST(IdentitySystem, TheDomainIsComparedWithTheComputer) {
  CQXString domain(QXT("before"));
  CQXString computer(QXT("before"));
  const int differs = QXVGetLogInDoMain(domain, computer);
  EXPECT_EQ(differs, domain.CompareNoCase(computer) != 0 ? 1 : 0);
  EXPECT_NE(domain, QXT("before"));
  EXPECT_NE(computer, QXT("before"));
}

TEST(IdentitySystem, AServerThatDoesNotExistHasNoDomain) {
  CQXString domain(QXT("before"));
  CQXString server(QXT("no-such-server.invalid"));
  EXPECT_EQ(QXVGetServerLocateDoMain(domain, server), 0);
  EXPECT_EQ(domain, QXT("before"));
}

TEST(IdentitySystem, LocalHostIsTheLoopbackAddress) {
  CQXString address;
  EXPECT_EQ(QXVGetIPAddr(QXT("localhost"), address), 1);
  EXPECT_EQ(address, QXT("127.0.0.1"));
}

TEST(IdentitySystem, AnAddressIsItsOwnAddress) {
  CQXString address;
  EXPECT_EQ(QXVGetIPAddr(QXT("10.1.2.3"), address), 1);
  EXPECT_EQ(address, QXT("10.1.2.3"));
}

TEST(IdentitySystem, AnUnknownHostHasNone) {
  CQXString address(QXT("before"));
  EXPECT_EQ(QXVGetIPAddr(QXT("no-such-host.invalid"), address), 0);
  EXPECT_EQ(address, QXT(""));
}

}  // namespace
