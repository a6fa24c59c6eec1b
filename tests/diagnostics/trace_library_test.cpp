// trace_library_test.cpp - tracers of the shared library itself, as an application links it, heard as a debugger hears them.

#include "qxv/trace.h"

#include "qxv/log.h"
#include "qxv/path.h"
#include "support/debugger_channel.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

// A line's part behind the program's name.
std::string Tail(const std::string& line) {
  const std::size_t name = line.find("qxv_trace_library_tests");
  return name == std::string::npos ? "<no program in: " + line + ">" : line.substr(line.find(']', name));
}

TEST(TraceLibrary, LinesReachTheDebugger) {
  support::DebuggerChannel channel;
  const CQXVTraceInner trace(QXT("app"), 3);
  trace(0, QXT("zero %d"), 12);
  trace(-1, QXT("below"));
  trace(5, QXT("%s"), QXT("five"));
  const std::vector<std::string> lines = channel.Stop();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Tail(lines[0]), "][app][3][L0]:zero 12");
  EXPECT_EQ(Tail(lines[1]), "][app][3][L5]:five");
  int day, hour, minute, second, year, thread, length = 0;
  char week[4], month[4];
  EXPECT_EQ(std::sscanf(lines[0].c_str(), "[%3s %3s %d %2d:%2d:%2d %4d][THREAD:%d][%n", week, month, &day, &hour, &minute,
                        &second, &year, &thread, &length),
            8)
      << lines[0];
  EXPECT_GE(year, 2020);
  EXPECT_GT(length, 0);
}

TEST(TraceLibrary, TheThresholdIsSharedWithTheApplication) {
  support::DebuggerChannel channel;
  const CQXVTraceInner trace(QXT("app"), 3);
  trace(0, QXT("read first"));
  EXPECT_EQ(CQXVTraceInner::m_nLevel, 0);
  CQXVTraceInner::m_nLevel = 4;
  trace(3, QXT("now too low"));
  trace(4, QXT("enough"));
  CQXVTraceInner::m_nLevel = -1;
  trace(-1, QXT("lower"));
  const std::vector<std::string> lines = channel.Stop();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(Tail(lines[0]), "][app][3][L0]:read first");
  EXPECT_EQ(Tail(lines[1]), "][app][3][L4]:enough");
  EXPECT_EQ(Tail(lines[2]), "][app][3][L-1]:lower");
}

TEST(TraceLibrary, ALongLineArrivesWhole) {
  support::DebuggerChannel channel;
  const CQXVTraceInner trace(QXT("app"), 3);
  trace(0, QXT("%s"), std::basic_string<QXChar>(2047, QXT('m')).c_str());
  const std::vector<std::string> lines = channel.Stop();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(Tail(lines[0]), "][app][3][L0]:" + std::string(2047, 'm'));
}

// An object of the application that lives longer than main.
struct LastWords {
  ~LastWords() {
    if (speak) {
      const CQXVTraceInner trace(QXT("late"), 1);
      trace(0, QXT("traced by a destructor"));
      QXVWriteLog(QXT("logged by a destructor"), 100);
      QXVLogSetMainName(QXT("later"));
      std::fputs("the destructor came to its end\n", stderr);
    }
  }
  bool speak = false;
} lastWords;

// Files beside the program whose name begins so.
std::vector<std::filesystem::path> LogsNamed(const std::string& mainName) {
  std::vector<std::filesystem::path> logs;
  const std::basic_string<QXChar> folder = static_cast<const QXChar*>(QXVGetCurrentPath());
  for (const auto& entry : std::filesystem::directory_iterator(support::NativePath(folder))) {
    if (entry.path().filename().string().starts_with(mainName)) {
      logs.push_back(entry.path());
    }
  }
  return logs;
}

TEST(TraceLibrary, DestructorsOfTheApplicationMayCall) {
  for (const auto& log : LogsNamed("late_words_")) {
    std::filesystem::remove(log);
  }
  EXPECT_EXIT(
      {
        QXVLogSetMainName(QXT("late_words"));
        lastWords.speak = true;
        std::exit(0);
      },
      testing::ExitedWithCode(0), "the destructor came to its end");
  const auto logs = LogsNamed("late_words_");
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_EQ(std::filesystem::file_size(logs[0]) / 100, 1u) << "head, stamp and message";  // 50 + 2 * (23 to 25) + 44 + 4 bytes
  std::filesystem::remove(logs[0]);
}

}  // namespace
