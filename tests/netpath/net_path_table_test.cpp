// net_path_table_test.cpp - the table as it is built from shares, drives and the registry.

#include "netpath/net_path_exchange.h"

#include "os/registry.h"
#include "support/fake_network.h"
#include "support/guard_new.h"
#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace qxv;
using support::Repeat;
using support::Text;

constexpr const QXChar* kSpecialDrives = QXT("SOFTWARE\\Quelta\\QXSpecialDrivers");

class NetPathTable : public testing::Test {
 protected:
  static void SetValue(const QXChar* name, std::uint32_t type, std::span<const unsigned char> bytes) {
    os::RegistryKey key;
    bool created = false;
    ASSERT_EQ(key.Create(HKEY_LOCAL_MACHINE, kSpecialDrives, os::kRegistryFullAccess, created), 0u);
    ASSERT_EQ(os::SetRegistryValue(key.Key(), name, type, bytes), 0u);
  }
  static void SetNumber(const QXChar* name, unsigned char number) {
    const unsigned char bytes[4] = {number, 0, 0, 0};
    SetValue(name, os::kRegistryNumber, bytes);
  }

  // The table's lines, the addresses left out: "\\VM\media=D:\media".
  std::vector<Text> Built() {
    exchange.Build();
    std::vector<Text> lines;
    for (QXInt64 i = 0; i < exchange.items.GetSize(); ++i) {
      const SNetPathItem& item = exchange.items[i];
      lines.push_back(Text(ViewOf(item.NamePath))
                          .append(QXT("|"))
                          .append(ViewOf(item.IPPath))
                          .append(QXT("|"))
                          .append(ViewOf(item.LocalPath)));
    }
    return lines;
  }
  std::vector<Text> BuiltDrives() {
    exchange.Build();
    std::vector<Text> drives;
    for (QXInt64 i = 0; i < exchange.specialDrives.GetSize(); ++i) {
      drives.emplace_back(ViewOf(exchange.specialDrives[i]));
    }
    return drives;
  }

  using Lines = std::vector<Text>;

  support::PrivateRegistry registry;
  support::FakeNetwork network;
  os::ScopedNetwork scope{network};
  CQXNetPathExchange exchange;
};

using NetPathTableKept = NetPathTable;

TEST_F(NetPathTable, NothingIsAskedBeforeTheTableIsBuilt) {
  EXPECT_EQ(exchange.initialised, 0);
  EXPECT_EQ(exchange.items.GetSize(), 0);
  EXPECT_EQ(exchange.hostPrefix, QXT(""));
  EXPECT_TRUE(network.containers.empty());
}

TEST_F(NetPathTable, AMachineWithoutAnythingHasAnEmptyTable) {
  EXPECT_EQ(Built(), Lines());
  EXPECT_EQ(BuiltDrives(), Lines());
  EXPECT_EQ(exchange.initialised, 1);
}

TEST_F(NetPathTable, TheTableIsBuiltOnce) {
  exchange.Build();
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  EXPECT_EQ(Built(), Lines());
  EXPECT_EQ(network.containers.size(), 1u);
}

TEST_F(NetPathTable, BuiltAgainItHoldsWhatThereIsNow) {
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  SetNumber(QXT("Y"), 1);
  exchange.Build();
  network.shares->clear();
  network.Publish(QXT("\\\\VM\\clips"), QXT("D:\\clips"));
  exchange.Forget();
  EXPECT_EQ(Built(), (Lines{QXT("\\\\VM\\clips||D:\\clips")}));
  EXPECT_EQ(BuiltDrives(), (Lines{QXT("Y:\\")}));
}

TEST_F(NetPathTable, SharesAreAskedForBelowTheComputersName) {
  exchange.Build();
  ASSERT_EQ(network.containers.size(), 1u);
  EXPECT_EQ(network.containers[0], QXT("\\\\VM"));
}

TEST_F(NetPathTable, AComputerNameOf300CharactersIsNone) {
  network.computer = Repeat(QXT('c'), 300);
  exchange.Build();
  network.computer.reset();
  exchange.Forget();
  exchange.Build();
  network.computer = Repeat(QXT('c'), 259);
  exchange.Forget();
  exchange.Build();
  EXPECT_EQ(network.containers, (Lines{QXT("\\\\"), QXT("\\\\"), QXT("\\\\") + Repeat(QXT('c'), 259)}));
}

TEST_F(NetPathTable, AShareHasItsRemoteNameAndItsFolder) {
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  network.Publish(QXT("\\\\VM\\clips"), QXT("E:\\Clips\\2009"));
  EXPECT_EQ(Built(), (Lines{QXT("\\\\VM\\media||D:\\media"), QXT("\\\\VM\\clips||E:\\Clips\\2009")}));
}

TEST_F(NetPathTable, AFolderLosesTheBackslashAtItsEndButTheRootOfADriveKeepsIt) {
  network.Publish(QXT("\\\\VM\\a"), QXT("D:\\media\\"));
  network.Publish(QXT("\\\\VM\\b"), QXT("D:\\"));
  network.Publish(QXT("\\\\VM\\c"), QXT("D:\\m\\\\"));
  network.Publish(QXT("\\\\VM\\d"), QXT("D:"));
  EXPECT_EQ(Built(),
            (Lines{QXT("\\\\VM\\a||D:\\media"), QXT("\\\\VM\\b||D:\\"), QXT("\\\\VM\\c||D:\\m\\"), QXT("\\\\VM\\d||D:")}));
}

TEST_F(NetPathTableKept, AShareOfADriveRootMatchesTheRootOnly) {
  network.Publish(QXT("\\\\VM\\d"), QXT("D:\\"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\")), QXT("\\\\VM\\d"));
  EXPECT_EQ(exchange.ToNetwork(QXT("D:\\x")), QXT("Local\\D:\\x"));
  EXPECT_EQ(exchange.ToLocal(QXT("\\\\VM\\d\\x")), QXT("D:\\\\x"));
}

TEST_F(NetPathTable, SettingsWithoutAFolderAddNothing) {
  const Text settings[] = {
      Text(),
      Text(1, QXT('\0')),
      Text(QXT("CSCFlags=0")),
      Text(QXT("Path")),
      Text(QXT("Path=")),
      Text(QXT("Path=;Type=0")),
      Text(QXT("path=D:\\x")),  // the setting's name is looked for as it is written
      Repeat(QXT('\0'), 1024),
  };
  for (const Text& each : settings) {
    network.shares->push_back({QXT("\\\\VM\\media"), each});
  }
  EXPECT_EQ(Built(), Lines());
}

TEST_F(NetPathTable, SettingsWithoutATerminatorEndWithTheirBytes) {
  network.shares->push_back({QXT("\\\\VM\\media"), Text(QXT("Path=D:\\media"))});
  EXPECT_EQ(Built(), (Lines{QXT("\\\\VM\\media||D:\\media")}));
}

TEST_F(NetPathTable, EveryPrefixOfTheSettingsIsRead) {
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  const Text whole = network.shares->front().settings;
  const std::size_t pathAt = whole.find(QXT("Path="));
  ASSERT_NE(pathAt, Text::npos);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    network.shares->front().settings = whole.substr(0, length);
    exchange.Forget();
    const Text folder = length <= pathAt + 5 ? Text() : Text(QXT("D:\\media")).substr(0, length - pathAt - 5);
    const Text stored = folder.size() > 3 && folder.back() == QXT('\\') ? folder.substr(0, folder.size() - 1) : folder;
    EXPECT_EQ(Built(), stored.empty() ? Lines() : Lines{QXT("\\\\VM\\media||") + stored}) << length;
  }
}

TEST_F(NetPathTable, SharesThatCannotBeListedLeaveTheOtherSources) {
  network.shares.reset();
  network.drives[QXT('X')] = QXT("\\\\srv\\share");
  SetNumber(QXT("Y"), 1);
  EXPECT_EQ(Built(), (Lines{QXT("\\\\srv\\share||X:")}));
  EXPECT_EQ(BuiltDrives(), (Lines{QXT("Y:\\")}));
}

TEST_F(NetPathTable, ADriveIsConnectedByNameOrByAddress) {
  network.drives = {{QXT('Z'), QXT("\\\\10.1.2.3\\share")}, {QXT('C'), QXT("\\\\srv\\share")}, {QXT('M'), QXT("\\\\10.1.2\\s")}};
  EXPECT_EQ(Built(), (Lines{QXT("\\\\srv\\share||C:"), QXT("\\\\10.1.2\\s||M:"), QXT("|\\\\10.1.2.3\\share|Z:")}));
}

TEST_F(NetPathTable, AHostMayBeTheWholeRest) {
  network.drives = {{QXT('X'), QXT("\\\\10.1.2.3")}, {QXT('Y'), QXT("\\\\srv")}, {QXT('Z'), QXT("a")}};
  EXPECT_EQ(Built(), (Lines{QXT("|\\\\10.1.2.3|X:"), QXT("\\\\srv||Y:"), QXT("a||Z:")}));
}

TEST_F(NetPathTable, AConnectionOf1023CharactersIsTakenWhole) {
  const Text name = QXT("\\\\srv\\") + Repeat(QXT('s'), 1017);
  network.drives[QXT('D')] = name;
  EXPECT_EQ(Built(), (Lines{name + QXT("||D:")}));
}

TEST_F(NetPathTable, SharesComeBeforeDrives) {
  network.drives[QXT('C')] = QXT("\\\\srv\\share");
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  EXPECT_EQ(Built(), (Lines{QXT("\\\\VM\\media||D:\\media"), QXT("\\\\srv\\share||C:")}));
}

TEST_F(NetPathTable, ASpecialDriveIsANumberOtherThanZeroUnderItsLetter) {
  SetNumber(QXT("Y"), 1);
  SetNumber(QXT("V"), 0);
  const unsigned char text[] = {'1', 0, 0, 0};
  SetValue(QXT("W"), os::kRegistryText, text);
  SetNumber(QXT("YY"), 1);
  EXPECT_EQ(BuiltDrives(), (Lines{QXT("Y:\\")}));
}

TEST_F(NetPathTable, SpecialDrivesAreNamedInThreeWaysAndInAnyCase) {
  SetNumber(QXT("x"), 255);
  SetNumber(QXT("y:"), 2);
  SetNumber(QXT("z:\\"), 3);
  SetNumber(QXT("\u00E9"), 1);
  SetNumber(QXT("w:\\a"), 1);
  SetNumber(QXT("v\\"), 1);
  SetNumber(QXT(""), 1);
  Lines drives = BuiltDrives();
  std::sort(drives.begin(), drives.end());
  EXPECT_EQ(drives, (Lines{QXT("X:\\"), QXT("Y:\\"), QXT("Z:\\"), QXT("\u00C9:\\")}));
}

TEST_F(NetPathTable, OnlyNumbersOfFourBytesCount) {
  const unsigned char bytes[] = {1, 1, 1, 1, 1, 1, 1, 1};
  SetValue(QXT("A"), os::kRegistryNumber, std::span(bytes).first(2));
  SetValue(QXT("B"), os::kRegistryNumber, bytes);
  SetValue(QXT("C"), os::kRegistryBinary, std::span(bytes).first(4));
  SetValue(QXT("D"), os::kRegistryNumber64, bytes);
  SetValue(QXT("E"), os::kRegistryNumber, {});
  const unsigned char high[] = {0, 0, 0, 0x80};
  SetValue(QXT("F"), os::kRegistryNumber, high);
  EXPECT_EQ(BuiltDrives(), (Lines{QXT("F:\\")}));
}

TEST_F(NetPathTable, LongValuesDoNotEndTheList) {
  const std::vector<unsigned char> large(100'000, 'x');
  SetValue(QXT("A"), os::kRegistryBinary, large);
  SetNumber(QXT("B"), 1);
  EXPECT_EQ(BuiltDrives(), (Lines{QXT("B:\\")}));
}

TEST_F(NetPathTable, TheTableIsDescribedLineByLine) {
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  network.drives = {{QXT('X'), QXT("\\\\10.1.2.3\\share")}};
  SetNumber(QXT("Y"), 1);
  int lines = 0;
  EXPECT_EQ(exchange.Describe(lines), QXT("\\\\VM\\media\t\tD:\\media\n\t\\\\10.1.2.3\\share\tX:\nLocal\\Y:\\\t\tY:\\\n"));
  EXPECT_EQ(lines, 3);
}

TEST_F(NetPathTable, SocketsRunAsLongAsTheTable) {
  EXPECT_EQ(network.versions, (std::vector<std::uint16_t>{0x0202}));
  {
    const CQXNetPathExchange second;
    EXPECT_EQ(network.running, 2);
  }
  EXPECT_EQ(network.running, 1);
}

TEST_F(NetPathTable, SocketsOfAnotherVersionAreGivenBackAtOnceAndOnlyOnce) {
  network.grantedVersion = 0x0101;
  {
    const CQXNetPathExchange second;
    EXPECT_EQ(network.running, 1);
  }
  EXPECT_EQ(network.running, 1);
}

TEST_F(NetPathTable, SocketsThatDoNotStartAreNotStopped) {
  network.socketsStart = false;
  {
    CQXNetPathExchange second;
    EXPECT_EQ(second.ToNetwork(QXT("D:\\x")), QXT("Local\\D:\\x"));
  }
  EXPECT_EQ(network.running, 1);
}

TEST_F(NetPathTable, AnIndexOutsideThrows) {
  exchange.Build();
  for (const QXInt64 index : {-1, 0, 1}) {
    try {
      (void)exchange.items[index];
      ADD_FAILURE() << index;
    } catch (CInvalidArgException* error) {
      error->Delete();
    }
  }
}

TEST_F(NetPathTable, ATableWithoutMemoryIsBuiltWholeTheNextTime) {
  network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
  network.drives[QXT('X')] = QXT("\\\\srv\\share");
  SetNumber(QXT("Y"), 1);
  const Text path = QXT("\\\\vm\\media\\a");
  bool refused = true;
  std::size_t index = 0;
  for (; refused && index < 10'000; ++index) {
    CQXNetPathExchange fresh;
    try {
      const support::FailAllocation fail(index);
      (void)fresh.ToLocal(path);
      refused = fail.Refused();
    } catch (const std::bad_alloc&) {
    }
    EXPECT_EQ(fresh.ToLocal(path), QXT("D:\\media\\a")) << index;
    EXPECT_EQ(fresh.items.GetSize(), 2) << index;
    EXPECT_EQ(fresh.specialDrives.GetSize(), 1) << index;
  }
  EXPECT_GT(index, 10u);
  EXPECT_FALSE(refused);
}

}  // namespace
