// net_path_convert_test.cpp - both conversions over tables that the test lays down.

#include "netpath/net_path_exchange.h"

#include "support/fake_network.h"
#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv;
using support::Printable;
using support::Repeat;
using support::Text;

class NetPath : public testing::Test {
 protected:
  void SetUp() override { exchange.initialised = 1; }

  void Add(const QXChar* name, const QXChar* address, const QXChar* local) {
    SNetPathItem item;
    item.NamePath = name;
    item.IPPath = address;
    item.LocalPath = local;
    exchange.items.Add(item);
  }
  void AddSpecialDrive(const QXChar* root) {
    CQXString drive(root);
    exchange.specialDrives.Add(drive);
  }

  support::FakeNetwork network;
  os::ScopedNetwork scope{network};
  CQXNetPathExchange exchange;
};

using NetPathKept = NetPath;

TEST_F(NetPath, LocalInAnyCaseConvertsToWhatFollowsIt) {
  EXPECT_EQ(exchange.ToLocal(QXT("LOCAL\\D:\\x")), QXT("D:\\x"));
  EXPECT_EQ(exchange.ToLocal(QXT("local\\D:\\x")), QXT("D:\\x"));
  EXPECT_EQ(exchange.ToLocal(QXT("Local\\")), QXT(""));
  EXPECT_EQ(exchange.ToLocal(QXT("LoCaL\\\\\\srv\\share")), QXT("\\\\srv\\share"));
  EXPECT_TRUE(network.lookUps.empty());
}

TEST_F(NetPath, LocalxIsNoPathOfThatForm) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("LOCALX\\y")), QXT("LOCALX\\y"));
  EXPECT_EQ(exchange.ToLocal(QXT("LOCALX\\\\srv\\share\\y")), QXT("X:\\y")) << "looked up as a network path";
}

TEST_F(NetPath, LocalBeforeAQuestionMarkComesBackUnchanged) {
  for (const QXChar* path : {QXT("LOCAL\\?"), QXT("Local\\?"), QXT("local\\?")}) {
    EXPECT_EQ(exchange.ToLocal(path), path);
  }
  EXPECT_EQ(exchange.ToLocal(QXT("LOCAL\\?x")), QXT("?x"));
}

TEST_F(NetPath, ANetworkPathWithoutMappingComesBackUnchanged) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  for (const QXChar* path : {QXT("\\\\srv\\other\\a"), QXT("\\\\other\\share\\a"), QXT("\\\\srv"), QXT("\\\\"), QXT("\\\\\\"),
                             QXT("\\\\srv\\share2\\a"), QXT("a\\\\"), QXT("\\\\10.0.0.1\\share"), QXT("\\\\?\\D:\\x")}) {
    EXPECT_EQ(exchange.ToLocal(path), path) << Printable(path);
  }
}

TEST_F(NetPath, ALocalPathComesBackUnchangedAsLocal) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  for (const QXChar* path : {QXT("D:\\x"), QXT(""), QXT("x"), QXT("LOCAL"), QXT("\\a"), QXT("?")}) {
    EXPECT_EQ(exchange.ToLocal(path), path) << Printable(path);
  }
}

TEST_F(NetPath, ALocalPathThatNobodyPublishesTakesTheLocalForm) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\x")), QXT("Local\\D:\\x"));
  EXPECT_EQ(exchange.ToLocal(QXT("Local\\D:\\x")), QXT("D:\\x"));
  EXPECT_EQ(exchange.ToNetwork(QXT("?")), QXT("Local\\?"));
}

TEST_F(NetPath, AnEmptyPathStaysEmpty) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  AddSpecialDrive(QXT("Y:\\"));
  EXPECT_EQ(exchange.ToNetwork(QXT("")), QXT(""));
  EXPECT_EQ(exchange.ToLocal(QXT("")), QXT(""));
}

TEST_F(NetPath, ANetworkPathComesBackUnchangedAsNetwork) {
  AddSpecialDrive(QXT("D:\\"));
  for (const QXChar* path : {QXT("\\\\srv\\share"), QXT("LOCAL\\x"), QXT("local\\x"), QXT("D:\\a\\\\b")}) {
    EXPECT_EQ(exchange.ToNetwork(path), path) << Printable(path);
  }
}

TEST_F(NetPath, AMappedPathConvertsThereAndBack) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\srv\\share\\Clips\\A.mxf")), QXT("X:\\Clips\\A.mxf"));
  EXPECT_EQ(exchange.ToNetwork(QXT("X:\\Clips\\A.mxf")), QXT("\\\\srv\\share\\Clips\\A.mxf"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\srv\\share")), QXT("X:"));
  EXPECT_EQ(exchange.ToNetwork(QXT("X:")), QXT("\\\\srv\\share"));
}

TEST_F(NetPath, CaseMattersNowhereInMatchingAndTheRestKeepsIts) {
  Add(QXT("\\\\S\u00E9rv\\Share"), QXT(""), QXT("D:\\M\u00C9dia"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\s\u00C9RV\\sHARE\\CaSe\\\u00C9\u00E9")), QXT("D:\\M\u00C9dia\\CaSe\\\u00C9\u00E9"));
  EXPECT_EQ(exchange.ToNetwork(QXT("d:\\m\u00E9DIA\\CaSe\\\u00C9\u00E9")), QXT("\\\\S\u00E9rv\\Share\\CaSe\\\u00C9\u00E9"));
}

TEST_F(NetPath, WhatStandsBeforeTheFirstBackslashIsDroppedForMatching) {
  Add(QXT("\\\\srv\\s"), QXT(""), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("file:\\\\srv\\s\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("x\\\\srv\\s")), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("x\\\\srv\\other")), QXT("x\\\\srv\\other")) << "the input, not what was matched";
}

TEST_F(NetPath, EmptyFieldsMatchNothing) {
  Add(QXT("\\\\srv\\a"), QXT(""), QXT(""));
  Add(QXT(""), QXT(""), QXT("X:"));
  Add(QXT(""), QXT(""), QXT(""));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\other\\b\\c")), QXT("\\\\other\\b\\c"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\1.2.3.4\\b\\c")), QXT("\\\\1.2.3.4\\b\\c"));
  EXPECT_EQ(exchange.ToNetwork(QXT("\\c")), QXT("Local\\\\c"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\\\b")), QXT("\\\\\\b"));
}

// Hosts by address.

TEST_F(NetPath, AHostByAddressReachesADriveConnectedByAddress) {
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.4\\share\\a")), QXT("\\\\10.1.2.4\\share\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share2")), QXT("\\\\10.1.2.3\\share2"));
  EXPECT_EQ(exchange.ToNetwork(QXT("X:\\a")), QXT("\\\\10.1.2.3\\share\\a"));
  EXPECT_TRUE(network.lookUps.empty());
}

TEST_F(NetPath, AHostByAddressReachesADriveConnectedByName) {
  Add(QXT("\\\\Srv\\share"), QXT(""), QXT("X:"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.items[0].IPPath, QXT("\\\\10.1.2.3\\share"));
}

TEST_F(NetPath, TheAddressOfAnItemWithoutShareIsItsHostOnly) {
  Add(QXT("\\\\srv"), QXT(""), QXT("X:"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.items[0].IPPath, QXT("\\\\10.1.2.3"));
}

TEST_F(NetPath, AHostByNameReachesADriveConnectedByAddress) {
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("X:"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\SRV\\share\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\SRV\\other\\a")), QXT("\\\\SRV\\other\\a"));
}

TEST_F(NetPath, EachHostIsAskedForOnce) {
  Add(QXT("\\\\srv\\a"), QXT(""), QXT("C:"));
  Add(QXT("\\\\SRV\\b"), QXT(""), QXT("D:"));
  Add(QXT("\\\\gone\\c"), QXT(""), QXT("E:"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\B\\x")), QXT("D:\\x"));
    EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\c\\x")), QXT("\\\\10.1.2.3\\c\\x"));
  }
  EXPECT_EQ(network.lookUps, (std::vector<std::string>{"srv", "gone"}));
}

TEST_F(NetPath, HostsAreAskedForAgainAfterTheTableWasForgotten) {
  network.drives[QXT('X')] = QXT("\\\\srv\\share");
  exchange.Forget();
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("\\\\10.1.2.3\\share\\a"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("\\\\10.1.2.3\\share\\a")) << "failures are remembered";
  exchange.Forget();
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("X:\\a"));
}

TEST_F(NetPath, NobodyIsAskedForAPathThatNamesAHostByNameUnlessADriveHasAnAddress) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\srv\\share\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\other\\share\\a")), QXT("\\\\other\\share\\a"));
  EXPECT_TRUE(network.lookUps.empty());
}

TEST_F(NetPath, AHostWithoutAddressMatchesNothing) {
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("X:"));
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("Y:"));
  network.hosts["srv"] = {};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.4\\share\\a")), QXT("\\\\10.1.2.4\\share\\a"));
  EXPECT_EQ(exchange.items[1].IPPath, QXT(""));
}

TEST_F(NetPath, AnEmptyHostIsNotAskedFor) {
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("X:"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\\\share")), QXT("\\\\\\share"));
  EXPECT_TRUE(network.lookUps.empty());
}

TEST_F(NetPath, AHostOfAMillionCharactersIsJustAnUnknownOne) {
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("X:"));
  const Text path = QXT("\\\\") + Repeat(QXT('h'), 1'000'000) + QXT("\\share");
  EXPECT_EQ(exchange.ToLocal(path), path);
  EXPECT_TRUE(network.lookUps.empty());
}

// Which of several mappings is taken.

TEST_F(NetPathKept, TheEarliestOfSeveralMappingsWins) {
  Add(QXT("\\\\srv\\share\\deep"), QXT(""), QXT("C:"));
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("D:"));
  Add(QXT("\\\\srv\\share\\deep\\er"), QXT(""), QXT("E:"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\srv\\share\\deep\\er\\a")), QXT("C:\\er\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\srv\\share\\a")), QXT("D:\\a"));
}

TEST_F(NetPathKept, ADriveConnectedByAddressWinsOverAllOthers) {
  Add(QXT("\\\\srv\\share"), QXT("\\\\10.1.2.3\\share"), QXT("C:"));
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("D:"));
  Add(QXT(""), QXT("\\\\10.1.2.3\\share"), QXT("E:"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("D:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\srv\\share\\a")), QXT("D:\\a"));
}

TEST_F(NetPath, TheFirstMappingOfALocalPathWins) {
  Add(QXT("\\\\srv\\media"), QXT(""), QXT("D:\\media"));
  Add(QXT("\\\\srv\\all"), QXT(""), QXT("D:"));
  Add(QXT("\\\\srv\\clips"), QXT(""), QXT("D:\\clips"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\media\\a")), QXT("\\\\srv\\media\\a"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\clips\\a")), QXT("\\\\srv\\all\\clips\\a"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\mediax\\a")), QXT("\\\\srv\\all\\mediax\\a"));
}

// This computer.

TEST_F(NetPath, AllNamesOfThisComputerReachItsShares) {
  Add(QXT("\\\\VM\\media"), QXT(""), QXT("D:\\media"));
  network.hosts["vm"] = {{192, 168, 0, 7}};
  for (const QXChar* path : {QXT("\\\\VM\\media\\a"), QXT("\\\\vm\\MEDIA\\a"), QXT("\\\\localhost\\media\\a"),
                             QXT("\\\\LocalHost\\media\\a"), QXT("\\\\192.168.0.7\\media\\a"), QXT("\\\\127.0.0.1\\media\\a")}) {
    EXPECT_EQ(exchange.ToLocal(path), QXT("D:\\media\\a")) << Printable(path);
  }
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\VM2\\media\\a")), QXT("\\\\VM2\\media\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\V\\media\\a")), QXT("\\\\V\\media\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\localhost\\media2\\a")), QXT("\\\\localhost\\media2\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\localhost")), QXT("\\\\localhost"));
}

TEST_F(NetPath, EveryAddressOfThisComputerReachesItsSharesAndOnlyTheFirstOfAnother) {
  Add(QXT("\\\\VM\\media"), QXT(""), QXT("D:\\media"));
  Add(QXT("\\\\localhost\\clips"), QXT(""), QXT("E:"));
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  network.hosts["vm"] = {{192, 168, 0, 7}, {10, 0, 0, 7}};
  network.hosts["srv"] = {{10, 1, 2, 3}, {10, 1, 2, 4}};
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.0.0.7\\media\\a")), QXT("D:\\media\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.0.0.7\\clips\\a")), QXT("E:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.0.0.8\\media\\a")), QXT("\\\\10.0.0.8\\media\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.0.0.7\\share\\a")), QXT("\\\\10.0.0.7\\share\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.3\\share\\a")), QXT("X:\\a"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\10.1.2.4\\share\\a")), QXT("\\\\10.1.2.4\\share\\a"));
  EXPECT_EQ(exchange.items[0].IPPath, QXT("\\\\192.168.0.7\\media"));
}

TEST_F(NetPath, AnItemOfAnotherComputerIsNotReachedByOurName) {
  Add(QXT("\\\\srv\\media"), QXT(""), QXT("X:"));
  for (const QXChar* path : {QXT("\\\\VM\\media\\a"), QXT("\\\\localhost\\media\\a"), QXT("\\\\127.0.0.1\\media\\a")}) {
    EXPECT_EQ(exchange.ToLocal(path), path);
  }
}

TEST_F(NetPath, ThisComputersNameIsHandedOutAsTheSystemWritesIt) {
  Add(QXT("\\\\vm\\media"), QXT(""), QXT("D:\\media"));
  Add(QXT("\\\\localhost\\clips"), QXT(""), QXT("E:"));
  Add(QXT("\\\\vm2\\clips"), QXT(""), QXT("F:"));
  network.computer = QXT(" \tVm ");
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\media\\a")), QXT("\\\\Vm\\media\\a"));
  EXPECT_EQ(exchange.ToNetwork(QXT("E:\\a")), QXT("\\\\Vm\\clips\\a"));
  EXPECT_EQ(exchange.ToNetwork(QXT("F:\\a")), QXT("\\\\vm2\\clips\\a"));
  EXPECT_EQ(exchange.hostPrefix, QXT("Vm"));
}

TEST_F(NetPath, AComputerWithoutANameIsStillLocalHost) {
  Add(QXT("\\\\localhost\\media"), QXT(""), QXT("D:\\media"));
  network.computer.reset();
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\LOCALHOST\\media\\a")), QXT("D:\\media\\a"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\media\\a")), QXT("\\\\localhost\\media\\a"));
}

TEST_F(NetPath, ANameThatIsKnownIsNotReadAgain) {
  Add(QXT("\\\\VM\\media"), QXT(""), QXT("D:\\media"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\media")), QXT("\\\\VM\\media"));
  network.computer = QXT("OTHER");
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\media")), QXT("\\\\VM\\media"));
}

// Special drives.

TEST_F(NetPath, APathOnASpecialDriveTakesTheLocalFormBeforeAllMappings) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("X:"));
  AddSpecialDrive(QXT("X:\\"));
  EXPECT_EQ(exchange.ToNetwork(QXT("x:\\clips\\a.mxf")), QXT("Local\\x:\\clips\\a.mxf"));
  EXPECT_EQ(exchange.ToNetwork(QXT("X:\\")), QXT("Local\\X:\\"));
  EXPECT_EQ(exchange.ToNetwork(QXT("X:")), QXT("\\\\srv\\share")) << "the root has a backslash";
  EXPECT_EQ(exchange.ToNetwork(QXT("Y:\\clips")), QXT("Local\\Y:\\clips"));
}

TEST_F(NetPath, ASpecialDriveIsRecognisedInAnyCaseBelow256) {
  Add(QXT("\\\\srv\\share"), QXT(""), QXT("\u00E9:"));
  AddSpecialDrive(QXT("\u00C9:\\"));
  EXPECT_EQ(exchange.ToNetwork(QXT("\u00E9:\\a")), QXT("Local\\\u00E9:\\a"));
}

}  // namespace
