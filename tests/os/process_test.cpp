// process_test.cpp - the running program.

#include "os/process.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

using namespace qxv::os;

TEST(Process, TheExecutableIsThisProgramInDriveForm) {
  const Text path = ExecutablePath();
  ASSERT_GT(path.size(), 10u);
  EXPECT_EQ(path[1], QXT(':'));
  EXPECT_EQ(path[2], QXT('\\'));
  EXPECT_EQ(path.find(QXT('/')), Text::npos);
  EXPECT_TRUE(support::Exists(path)) << support::Printable(path);
  EXPECT_EQ(ExecutableName().substr(0, 12), QXT("qxv_os_tests"));
  EXPECT_EQ(path.substr(path.size() - ExecutableName().size()), ExecutableName());
}

TEST(Process, NumbersTellThreadsApart) {
  const std::uint32_t mine = CurrentThreadId();
  std::uint32_t other = mine;
  std::thread([&] { other = CurrentThreadId(); }).join();
  EXPECT_NE(mine, 0u);
  EXPECT_NE(mine, other);
  EXPECT_EQ(mine, CurrentThreadId());
  EXPECT_NE(CurrentProcessId(), 0u);
  EXPECT_EQ(CurrentProcessId(), CurrentProcessId());
}

TEST(Process, SleepingTakesItsTimeAndYieldingReturns) {
  const auto start = std::chrono::steady_clock::now();
  SleepMilliseconds(30);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(25));
  for (int i = 0; i < 1000; ++i) {
    YieldThread();
  }
  SleepMilliseconds(0);
}

}  // namespace
