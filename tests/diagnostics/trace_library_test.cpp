// trace_library_test.cpp - tracers of the shared library itself, as an application links it, heard as a debugger hears them.

#include "qxv/trace.h"

#include "qxv/log.h"
#include "qxv/path.h"
#include "support/debugger_channel.h"

#include <gtest/gtest.h>

#include <cstdio>
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
      trace(0, QXT("destructors run"));
      QXVWriteLog(QXT("destructors run"), 99);  // below the level: nothing is written
      QXVLogSetMainName(QXT("late"));
    }
  }
  bool speak = false;
} lastWords;

TEST(TraceLibrary, DestructorsOfTheApplicationMayCall) {
  lastWords.speak = true;
  QXVLogSetPath(QXVGetCurrentPath());  // so that the log has something to free
}

}  // namespace
