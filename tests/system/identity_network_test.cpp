// identity_network_test.cpp - provider, server and host over answers of every kind.

#include "qxv/identity.h"

#include "support/fake_identity.h"
#include "support/fake_network.h"
#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using support::Repeat;
using support::Text;
using support::TextOf;

constexpr const QXChar* kChineseProvider = QXT("Microsoft Windows \u7F51\u7EDC");

class NetworkIdentity : public testing::Test {
 protected:
  support::FakeIdentity fake;
  support::FakeNetwork network;
  qxv::os::ScopedIdentity identityScope{fake};
  qxv::os::ScopedNetwork networkScope{network};
  CQXString text = QXT("before");
  CQXString server = QXT("STORE");
};

TEST_F(NetworkIdentity, TheProviderIsNamed) {
  fake.provider = QXT("Some Network");
  EXPECT_EQ(QXVGetNetProviderName(text), 1);
  EXPECT_EQ(text, QXT("Some Network"));
}

TEST_F(NetworkIdentity, WithoutAProviderTheTextStays) {
  EXPECT_EQ(QXVGetNetProviderName(text), 0);
  EXPECT_EQ(text, QXT("before"));
  fake.provider = QXT("");
  EXPECT_EQ(QXVGetNetProviderName(text), 0);
  EXPECT_EQ(text, QXT("before"));
}

TEST_F(NetworkIdentity, AProviderOf300CharactersIsHandedOutWhole) {
  fake.provider = Repeat(QXT('p'), 300);
  EXPECT_EQ(QXVGetNetProviderName(text), 1);
  EXPECT_EQ(text.GetLength(), 300);
}

TEST_F(NetworkIdentity, TheDomainOfAServerIsItsParent) {
  fake.provider = QXT("Some Network");
  fake.parents[QXT("\\\\STORE")] = QXT("STUDIO");
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 1);
  EXPECT_EQ(text, QXT("STUDIO"));
  EXPECT_EQ(server, QXT("STORE"));
  ASSERT_EQ(fake.askedProviders.size(), 1u);
  EXPECT_EQ(fake.askedProviders[0], QXT("Some Network"));
}

TEST_F(NetworkIdentity, WithoutAProviderTheUsualOneIsAsked) {
  fake.parents[QXT("\\\\STORE")] = QXT("STUDIO");
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 1);
  fake.provider = QXT("");
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 1);
  ASSERT_EQ(fake.askedProviders.size(), 2u);
  EXPECT_EQ(fake.askedProviders[0], kChineseProvider);
  EXPECT_EQ(fake.askedProviders[1], kChineseProvider);
}

TEST_F(NetworkIdentity, AServerWithoutAParentLeavesTheDomain) {
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 0);
  fake.parents[QXT("\\\\STORE")] = QXT("");
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 0);
  EXPECT_EQ(text, QXT("before"));
}

TEST_F(NetworkIdentity, AServerNameOf300CharactersAndNoneAreAskedAsTheyAre) {
  fake.parents[QXT("\\\\") + Repeat(QXT('s'), 300)] = QXT("STUDIO");
  server = Repeat(QXT('s'), 300).c_str();
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 1);
  fake.parents[QXT("\\\\")] = QXT("NOWHERE");
  server.Empty();
  EXPECT_EQ(QXVGetServerLocateDoMain(text, server), 1);
  EXPECT_EQ(text, QXT("NOWHERE"));
}

TEST_F(NetworkIdentity, TheDomainMayReplaceTheServerInOneText) {
  fake.parents[QXT("\\\\STORE")] = QXT("STUDIO");
  EXPECT_EQ(QXVGetServerLocateDoMain(server, server), 1);
  EXPECT_EQ(server, QXT("STUDIO"));
}

TEST_F(NetworkIdentity, AHostHasTheFirstOfItsAddresses) {
  network.hosts["store"] = {{192, 168, 0, 255}, {10, 0, 0, 1}};
  EXPECT_EQ(QXVGetIPAddr(QXT("store"), text), 1);
  EXPECT_EQ(text, QXT("192.168.0.255"));
}

TEST_F(NetworkIdentity, AnAddressOfZerosIsAnAddress) {
  network.hosts["store"] = {{0, 0, 0, 0}};
  EXPECT_EQ(QXVGetIPAddr(QXT("store"), text), 1);
  EXPECT_EQ(text, QXT("0.0.0.0"));
}

TEST_F(NetworkIdentity, AHostWithoutAddressIsResolvedAndEmpty) {
  network.hosts["store"] = {};
  EXPECT_EQ(QXVGetIPAddr(QXT("store"), text), 1);
  EXPECT_EQ(text, QXT(""));
}

TEST_F(NetworkIdentity, AnUnknownHostIsZeroAndEmpty) {
  EXPECT_EQ(QXVGetIPAddr(QXT("store"), text), 0);
  EXPECT_EQ(text, QXT(""));
}

TEST_F(NetworkIdentity, NoHostIsZeroAndEmptyWithoutAskingAnybody) {
  EXPECT_EQ(QXVGetIPAddr(nullptr, text), 0);
  EXPECT_EQ(text, QXT(""));
  EXPECT_TRUE(network.versions.empty());
}

TEST_F(NetworkIdentity, SocketsOfVersion20AreStartedAndStoppedOnEveryWay) {
  network.hosts["store"] = {{1, 2, 3, 4}};
  EXPECT_EQ(QXVGetIPAddr(QXT("store"), text), 1);
  EXPECT_EQ(QXVGetIPAddr(QXT("nobody"), text), 0);
  EXPECT_EQ(network.running, 0);
  EXPECT_EQ(network.versions, (std::vector<std::uint16_t>{0x0002, 0x0002}));
}

TEST_F(NetworkIdentity, WithoutSocketsNobodyIsAskedAndNothingIsStopped) {
  network.socketsStart = false;
  network.hosts["store"] = {{1, 2, 3, 4}};
  EXPECT_EQ(QXVGetIPAddr(QXT("store"), text), 0);
  EXPECT_EQ(text, QXT(""));
  EXPECT_TRUE(network.lookUps.empty());
  EXPECT_EQ(network.running, 0);
}

TEST_F(NetworkIdentity, TheHostIsAskedForInTheAnsiPage) {
  EXPECT_EQ(QXVGetIPAddr(QXT("caf\u00E9\u4E2D"), text), 0);
  ASSERT_EQ(network.lookUps.size(), 1u);
  EXPECT_EQ(network.lookUps[0], "caf\xE9?");
}

TEST_F(NetworkIdentity, TheHostMayStandInTheTextThatTakesTheAddress) {
  network.hosts["store"] = {{1, 2, 3, 4}};
  text = QXT("store");
  EXPECT_EQ(QXVGetIPAddr(text, text), 1);
  EXPECT_EQ(text, QXT("1.2.3.4"));
}

TEST_F(NetworkIdentity, AHostOfAMillionCharactersIsNotAskedFor) {
  EXPECT_EQ(QXVGetIPAddr(Repeat(QXT('h'), 1'000'000).c_str(), text), 0);
  EXPECT_EQ(text, QXT(""));
  EXPECT_TRUE(network.lookUps.empty());
  EXPECT_EQ(network.running, 0);
}

}  // namespace
