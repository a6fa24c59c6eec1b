// net_path_test.cpp - the exported functions and the process's one table.

#include "qxv/net_path.h"

#include "support/fake_network.h"
#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

using support::Text;
using support::TextOf;

class NetPathFunctions : public testing::Test {
 protected:
  NetPathFunctions() {
    network.Publish(QXT("\\\\VM\\media"), QXT("D:\\media"));
    network.drives[QXT('X')] = QXT("\\\\srv\\share");
    QXVRefreshNetPathTable();
  }
  ~NetPathFunctions() override { QXVRefreshNetPathTable(); }

  support::PrivateRegistry registry;
  support::FakeNetwork network;
  qxv::os::ScopedNetwork scope{network};
  CQXString out = QXT("before");
};

TEST_F(NetPathFunctions, APathIsOfOneFormOrTheOther) {
  const struct {
    const QXChar* path;
    int isNetwork;
  } rows[] = {{QXT("\\\\srv\\a"), 1}, {QXT("LOCAL\\a"), 1}, {QXT("local\\a"), 1}, {QXT("D:\\a\\\\b"), 1},
              {QXT("D:\\a"), 0},      {QXT("LOCAL"), 0},    {QXT(""), 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(QXVIsUNCPath(row.path), row.isNetwork) << support::Printable(row.path);
    EXPECT_EQ(QXVIsLocalPath(row.path), 1 - row.isNetwork) << support::Printable(row.path);
  }
  EXPECT_TRUE(network.containers.empty()) << "the text alone decides";
}

TEST_F(NetPathFunctions, BothNamesConvert) {
  EXPECT_EQ(QXVUNC2Local(out, QXT("\\\\srv\\share\\a")), 0);
  EXPECT_EQ(out, QXT("X:\\a"));
  EXPECT_EQ(QXVGetLocalPath(out, QXT("\\\\vm\\media\\a")), 0);
  EXPECT_EQ(out, QXT("D:\\media\\a"));
  EXPECT_EQ(QXVLocal2UNC(out, QXT("X:\\a")), 0);
  EXPECT_EQ(out, QXT("\\\\srv\\share\\a"));
  EXPECT_EQ(QXVGetRemotePath(out, QXT("D:\\media\\a")), 0);
  EXPECT_EQ(out, QXT("\\\\VM\\media\\a"));
}

TEST_F(NetPathFunctions, OutputAndInputMayBeOneObject) {
  out = QXT("\\\\srv\\share\\a");
  EXPECT_EQ(QXVUNC2Local(out, out), 0);
  EXPECT_EQ(out, QXT("X:\\a"));
  EXPECT_EQ(QXVLocal2UNC(out, out), 0);
  EXPECT_EQ(out, QXT("\\\\srv\\share\\a"));
}

TEST(NetPathFunctionsKept, TheResultIsAlwaysZero) {
  CQXString out;
  for (const QXChar* path : {QXT(""), QXT("\\\\nobody\\x"), QXT("Q:\\x"), QXT("LOCAL\\?"), QXT("LOCAL\\Q:\\x")}) {
    EXPECT_EQ(QXVUNC2Local(out, path), 0);
    EXPECT_EQ(QXVLocal2UNC(out, path), 0);
    EXPECT_EQ(QXVGetLocalPath(out, path), 0);
    EXPECT_EQ(QXVGetRemotePath(out, path), 0);
  }
}

TEST_F(NetPathFunctions, TheTableIsBuiltAtTheFirstConversionAndNeverAgain) {
  EXPECT_TRUE(network.containers.empty());
  QXVLocal2UNC(out, QXT("Q:\\x"));
  EXPECT_EQ(network.containers.size(), 1u);
  network.drives[QXT('Q')] = QXT("\\\\srv\\late");
  QXVLocal2UNC(out, QXT("Q:\\x"));
  EXPECT_EQ(out, QXT("Local\\Q:\\x"));
  EXPECT_EQ(network.containers.size(), 1u);
}

TEST_F(NetPathFunctions, ARefreshedTableIsBuiltAgainAtTheNextConversion) {
  QXVLocal2UNC(out, QXT("Q:\\x"));
  network.drives[QXT('Q')] = QXT("\\\\srv\\late");
  QXVRefreshNetPathTable();
  EXPECT_EQ(network.containers.size(), 1u);
  QXVLocal2UNC(out, QXT("Q:\\x"));
  EXPECT_EQ(out, QXT("\\\\srv\\late\\x"));
  EXPECT_EQ(network.containers.size(), 2u);
}

TEST_F(NetPathFunctions, TheTableIsDumped) {
  EXPECT_EQ(QXVDumpNetPathTable(out), 2);
  EXPECT_EQ(out, QXT("\\\\VM\\media\t\tD:\\media\n\\\\srv\\share\t\tX:\n"));
  network.hosts["srv"] = {{10, 1, 2, 3}};
  QXVUNC2Local(out, QXT("\\\\10.1.2.3\\share"));
  EXPECT_EQ(QXVDumpNetPathTable(out), 2);
  EXPECT_EQ(out, QXT("\\\\VM\\media\t\tD:\\media\n\\\\srv\\share\t\\\\10.1.2.3\\share\tX:\n"));
}

TEST_F(NetPathFunctions, AnEmptyTableIsAnEmptyText) {
  network.shares->clear();
  network.drives.clear();
  EXPECT_EQ(QXVDumpNetPathTable(out), 0);
  EXPECT_EQ(out, QXT(""));
}

TEST_F(NetPathFunctions, ManyThreadsMayBeTheFirst) {
  network.hosts["srv"] = {{10, 1, 2, 3}};
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      for (int turn = 0; turn < 200; ++turn) {
        CQXString path;
        QXVUNC2Local(path, QXT("\\\\10.1.2.3\\share\\a"));
        wrong += path != QXT("X:\\a") ? 1 : 0;
        QXVLocal2UNC(path, QXT("D:\\media\\a"));
        wrong += path != QXT("\\\\VM\\media\\a") ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wrong.load(), 0);
  EXPECT_EQ(network.containers.size(), 1u);
  EXPECT_EQ(network.lookUps.size(), 2u);
}

// Without fakes: whatever the machine publishes, a path that it knows nothing of has its stated answers.
TEST(NetPathSystem, UnknownPathsComeBackOnTheRealMachine) {
  QXVRefreshNetPathTable();
  CQXString out;
  QXVUNC2Local(out, QXT("\\\\no-such-host.invalid\\no-such-share\\a"));
  EXPECT_EQ(out, QXT("\\\\no-such-host.invalid\\no-such-share\\a"));
  QXVLocal2UNC(out, QXT("1:\\a"));
  EXPECT_EQ(out, QXT("Local\\1:\\a"));
}

}  // namespace
