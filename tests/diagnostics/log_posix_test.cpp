// log_posix_test.cpp - the log around forks, and of a program whose name is too long, on Linux.

#include "qxv/log.h"

#include "support/child_process.h"
#include "support/forked.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/utf16_bytes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using support::TempFolder;
using support::Utf16Le;

TEST(LogPosix, TheChildOfAForkFindsTheLockFree) {
  const TempFolder folder;
  QXVLogSetPath(folder.Path().c_str());
  QXVLogSetMainName(QXT("fork"));
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      while (!stop) {
        QXVWriteLog(QXT("parent"), 100);
      }
    });
  }
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(support::RunForked([] { QXVWriteLog(QXT("child"), 100); }), 0);
  }
  stop = true;
  for (std::thread& thread : threads) {
    thread.join();
  }
  std::string bytes;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
    bytes += support::ReadBytes(folder.Path() + entry.path().filename().u16string());
  }
  int children = 0;
  const std::string line = Utf16Le(QXT("]child\r\n"));
  for (std::size_t at = bytes.find(line); at != std::string::npos; at = bytes.find(line, at + 1)) {
    ++children;
  }
  EXPECT_EQ(children, 30);
}

// Runs this test once more under another program name.
int RunAs(const TempFolder& folder, const std::string& name) {
  const std::filesystem::path program = folder.Native() / "program" / name;
  std::filesystem::create_directory(program.parent_path());
  std::filesystem::copy_file("/proc/self/exe", program);
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string command = "QXV_DRIVES='E=" + folder.Native().string() + "/e' QXV_TEST_CHILD=x '" + program.string() +
                              "' --gtest_brief=1 --gtest_filter=" + test->test_suite_name() + "." + test->name();
  return std::system(command.c_str());
}

TEST(LogPosix, TheLogBeginsBesideTheProgram) {
  if (support::ChildArgument() != nullptr) {
    QXVWriteLog(QXT("x"), 100);
    return;
  }
  const TempFolder folder;
  std::filesystem::create_directory(folder.Native() / "e");
  ASSERT_EQ(RunAs(folder, "Ingest.bin"), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Native() / "e"));
  std::filesystem::remove(folder.Native() / "program" / "Ingest.bin");
  const auto log = std::filesystem::directory_iterator(folder.Native() / "program");
  ASSERT_NE(log, std::filesystem::directory_iterator());
  const std::string name = log->path().filename().string();
  EXPECT_EQ(name.size(), 19u) << name;
  EXPECT_EQ(name.substr(0, 9), "Ingest_20");
  EXPECT_EQ(name.substr(15), ".txt");
}

TEST(LogPosix, AProgramWithATooLongNameLogsToTheFixedPlace) {
  if (support::ChildArgument() != nullptr) {
    QXVWriteLog(QXT("x"), 100);
    return;
  }
  const TempFolder folder;
  std::filesystem::create_directory(folder.Native() / "e");
  ASSERT_EQ(RunAs(folder, std::string(64, 'n')), 0);
  const auto log = std::filesystem::directory_iterator(folder.Native() / "e");
  ASSERT_NE(log, std::filesystem::directory_iterator()) << "nothing on drive e:";
  EXPECT_EQ(log->path().filename().string().substr(0, 9), "quelta_20");
}

}  // namespace
