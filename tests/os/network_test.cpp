// network_test.cpp - the system's own network answers, and the replaceable source.

#include "os/network.h"

#include "os/code_page.h"
#include "support/fake_network.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv::os;

TEST(Network, TheComputerHasANameWithoutBlanksAndPoints) {
  Text name;
  ASSERT_TRUE(SystemNetwork().ComputerName(name));
  EXPECT_FALSE(name.empty());
  EXPECT_EQ(name.find_first_of(QXT(" \t.\\")), Text::npos);
}

TEST(Network, SocketsStartInTheVersionsThatAreAskedFor) {
  const SocketsLibrary first(0x0202);
  const SocketsLibrary second(0x0002);
  EXPECT_TRUE(first.IsStarted() && second.IsStarted());
  EXPECT_EQ(first.Granted(), 0x0202);
  EXPECT_EQ(second.Granted(), 0x0002);
}

TEST(Network, LocalHostIsTheLoopbackAddress) {
  const SocketsLibrary sockets(0x0202);
  std::vector<HostAddress> addresses;
  ASSERT_TRUE(SystemNetwork().LookUpHost("localhost", addresses));
  ASSERT_FALSE(addresses.empty());
  EXPECT_EQ(addresses[0], (HostAddress{127, 0, 0, 1}));
}

TEST(Network, AnAddressIsItsOwn) {
  const SocketsLibrary sockets(0x0202);
  std::vector<HostAddress> addresses;
  ASSERT_TRUE(SystemNetwork().LookUpHost("1.2.3.4", addresses));
  ASSERT_EQ(addresses.size(), 1u);
  EXPECT_EQ(addresses[0], (HostAddress{1, 2, 3, 4}));
}

TEST(Network, AnUnknownHostLeavesTheAddresses) {
  const SocketsLibrary sockets(0x0202);
  std::vector<HostAddress> addresses(3);
  for (const std::string& name : {std::string("no-such-host.invalid"), std::string("bad name"), std::string(1000, 'h')}) {
    EXPECT_FALSE(SystemNetwork().LookUpHost(name, addresses)) << name;
    EXPECT_EQ(addresses.size(), 3u);
  }
}

TEST(Network, ConnectedDrivesHaveALetterAndAName) {
  QXChar before = kFirstNetworkDrive - 1;
  for (const ConnectedDrive& drive : SystemNetwork().ConnectedDrives()) {
    EXPECT_GT(drive.letter, before);
    EXPECT_LE(drive.letter, kLastNetworkDrive);
    EXPECT_FALSE(drive.remoteName.empty());
    before = drive.letter;
  }
}

TEST(Network, AContainerThatDoesNotExistIsNoError) {
  std::vector<PublishedShare> shares;
  (void)SystemNetwork().PublishedShares(QXT("\\\\no-such-host.invalid"), shares);
  for (const PublishedShare& share : shares) {
    EXPECT_NE(share.remoteName.rfind(QXT('\\')), Text::npos);
  }
}

TEST(Network, ASourceServesForTheLengthOfABlock) {
  NetworkSource* const system = &SystemNetwork();
  {
    support::FakeNetwork outer;
    const ScopedNetwork outerScope(outer);
    {
      support::FakeNetwork inner;
      const ScopedNetwork innerScope(inner);
      EXPECT_EQ(&Network(), static_cast<NetworkSource*>(&inner));
    }
    EXPECT_EQ(&Network(), static_cast<NetworkSource*>(&outer));
  }
  EXPECT_EQ(&Network(), system);
}

TEST(Network, AddressesAreWrittenWithPoints) {
  support::FakeNetwork network;
  const ScopedNetwork scope(network);
  network.hosts["a"] = {{0, 9, 99, 255}, {1, 2, 3, 4}};
  network.hosts["b"] = {};
  std::vector<Text> addresses = {QXT("before")};
  EXPECT_FALSE(AddressesOfHost(QXT("c"), kCodePageAnsi, addresses));
  EXPECT_EQ(addresses, (std::vector<Text>{QXT("before")}));
  EXPECT_TRUE(AddressesOfHost(QXT("a"), kCodePageAnsi, addresses));
  EXPECT_EQ(addresses, (std::vector<Text>{QXT("0.9.99.255"), QXT("1.2.3.4")}));
  EXPECT_TRUE(AddressesOfHost(QXT("b"), kCodePageAnsi, addresses));
  EXPECT_TRUE(addresses.empty());
}

}  // namespace
