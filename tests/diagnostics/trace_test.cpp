// trace_test.cpp - tracers, each test in a program of its own: the threshold is read once a process, from beside the program.

#include "qxv/trace.h"

#include "os/debug_output.h"
#include "os/process.h"
#include "support/child_process.h"
#include "support/fake_clock.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/utf16_bytes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <mutex>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace {

using support::Repeat;
using support::Text;
using support::Utf16Le;

struct Recorder : qxv::os::DebugSink {
  std::mutex lock;
  std::vector<Text> lines;
  void Write(const QXChar* text) noexcept override {
    const std::lock_guard guard(lock);
    try {
      lines.emplace_back(text);
    } catch (const std::bad_alloc&) {  // a test that refuses memory: the line is lost here
    }
  }
};

const std::string kNoSettings = "<none>";

// The test once more, as tracer.exe in a folder with the given settings file.
void RunBesideSettings(const std::string& settings) {
  const support::TempFolder folder;
  const std::filesystem::path program = folder.Native() / "tracer.exe";
  support::LinkProgram(program);
  if (settings != kNoSettings) {
    ASSERT_TRUE(support::WriteBytes(folder.File(QXT("QXVTraceLevel.ini")), settings));
  }
  support::ChildProcess child("run", program);
  EXPECT_EQ(child.Wait(), 0);
}

// The child's part: what comes out at a time that stands.
class Trace : public testing::Test {
 protected:
  Trace() { m_clock.local = {2009, 5, 5 /*Friday*/, 1, 18, 5, 7, 45}; }

  static bool IsChild() { return support::ChildArgument() != nullptr; }
  // What a line begins with up to the tracer's name.
  static Text Start() {
    const std::string id = std::to_string(static_cast<int>(qxv::os::CurrentThreadId()));
    return QXT("[Fri May  1 18:05:07 2009][THREAD:") + Text(id.begin(), id.end()) + QXT("][tracer.exe][");
  }
  // Emits at levels -3 to 9 and expects the first that comes through.
  void ExpectThreshold(int level) {
    const CQXVTraceInner trace(QXT("t"), 1);
    for (int i = -3; i < 10; ++i) {
      const std::size_t before = m_sink.lines.size();
      trace(i, QXT("x"));
      EXPECT_EQ(m_sink.lines.size() - before, i >= level ? 1u : 0u) << "level " << i;
    }
    EXPECT_EQ(CQXVTraceInner::m_nLevel, level);
  }

  support::FakeClock m_clock;
  qxv::os::ScopedClock m_scopedClock{m_clock};
  Recorder m_sink;
  qxv::os::ScopedDebugSink m_scopedSink{m_sink};
};
using TraceKept = Trace;

TEST_F(Trace, ALineTellsTimeThreadProgramTracerAndLevel) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  const CQXVTraceInner trace(QXT("reader\u4E2D"), -42);
  trace(7, QXT("%d of %s, %hs"), 3, QXT("four"), "narrow");
  m_clock.local = {2010, 12, 0 /*Sunday*/, 31, 0, 0, 0, 0};
  trace(0, QXT("line\n"));
  ASSERT_EQ(m_sink.lines.size(), 2u);
  EXPECT_EQ(m_sink.lines[0], Start() + QXT("reader\u4E2D][-42][L7]:3 of four, narrow")) << "no line end is added";
  EXPECT_EQ(m_sink.lines[1].substr(0, 26), QXT("[Sun Dec 31 00:00:00 2010]"));
  EXPECT_EQ(m_sink.lines[1].substr(m_sink.lines[1].find(QXT("[L"))), QXT("[L0]:line\n"));
}

TEST_F(Trace, WithoutSettingsLevel0IsTheThreshold) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  ExpectThreshold(0);
}

TEST_F(Trace, ALevelOfTheFileIsTheThreshold) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL = 5");
  }
  ExpectThreshold(5);
}

TEST_F(Trace, AFileWithLineEndsIsRead) {
  if (!IsChild()) {
    return RunBesideSettings("[Trace]\r\nLEVEL=4\r\nNAME=x\r\n");
  }
  ExpectThreshold(4);
}

TEST_F(Trace, ANegativeLevelLetsMoreThrough) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=-2");
  }
  ExpectThreshold(-2);
}

TEST_F(Trace, AKeyInLowerCaseIsNotFound) {
  if (!IsChild()) {
    return RunBesideSettings("level=5");
  }
  ExpectThreshold(0);
}

TEST_F(Trace, Utf16LittleEndianSettingsAreRead) {
  if (!IsChild()) {
    return RunBesideSettings("\xFF\xFE" + Utf16Le(QXT("LEVEL=5\r\n")));
  }
  ExpectThreshold(5);
}

TEST_F(Trace, Utf16BigEndianSettingsAreRead) {
  if (!IsChild()) {
    return RunBesideSettings(std::string("\xFE\xFF\0L\0E\0V\0E\0L\0=\0006", 16));
  }
  ExpectThreshold(6);
}

TEST_F(Trace, Utf8SettingsAreRead) {
  if (!IsChild()) {
    return RunBesideSettings("\xEF\xBB\xBF\xC3\xA9\xFF LEVEL=7");
  }
  ExpectThreshold(7);
}

TEST_F(Trace, SettingsOfMoreThanAMebibyteAreNotRead) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5 " + std::string(1 << 20, 'x'));
  }
  ExpectThreshold(0);
}

TEST_F(Trace, SettingsOfAMebibyteAreRead) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5 " + std::string((1 << 20) - 8, 'x'));
  }
  ExpectThreshold(5);
}

TEST_F(Trace, AFolderInTheFilesPlaceIsNone) {
  if (!IsChild()) {
    const support::TempFolder folder;
    support::LinkProgram(folder.Native() / "tracer.exe");
    std::filesystem::create_directory(folder.Native() / "QXVTraceLevel.ini");
    support::ChildProcess child("run", folder.Native() / "tracer.exe");
    EXPECT_EQ(child.Wait(), 0);
    return;
  }
  ExpectThreshold(0);
}

TEST_F(Trace, AFileChangedAfterTheFirstCallHasNoEffect) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5");
  }
  const Text program = qxv::os::ExecutablePath();
  const Text settings = program.substr(0, program.rfind(QXT('\\')) + 1) + QXT("QXVTraceLevel.ini");
  ASSERT_EQ(support::ReadBytes(settings), "LEVEL=5");
  const CQXVTraceInner trace(QXT("t"), 1);
  trace(4, QXT("too low"));
  ASSERT_TRUE(support::WriteBytes(settings, "LEVEL=1"));
  ExpectThreshold(5);
  std::filesystem::remove(support::NativePath(settings));
  ExpectThreshold(5);
}

TEST_F(Trace, TheApplicationMaySetTheThresholdAfterTheFirstCall) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5");
  }
  ExpectThreshold(5);
  CQXVTraceInner::m_nLevel = 2;
  ExpectThreshold(2);
}

TEST_F(TraceKept, ALevelSetBeforeTheFirstCallIsReplaced) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5");
  }
  CQXVTraceInner::m_nLevel = 2;
  ExpectThreshold(5);
}

TEST_F(Trace, AMessageIsCutAt2047Characters) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  const CQXVTraceInner trace(QXT("t"), 1);
  trace(0, Repeat(QXT('m'), 3000).c_str());
  trace(0, QXT("%s"), Repeat(QXT('s'), 2047).c_str());
  trace(0, QXT("%s"), Repeat(QXT('s'), 2048).c_str());
  const Text start = Start() + QXT("t][1][L0]:");
  ASSERT_EQ(m_sink.lines.size(), 3u);
  EXPECT_EQ(m_sink.lines[0], start + Repeat(QXT('m'), 2047));
  EXPECT_EQ(m_sink.lines[1], start + Repeat(QXT('s'), 2047));
  EXPECT_EQ(m_sink.lines[2], start + Repeat(QXT('s'), 2047));
}

TEST_F(Trace, NullNamesAndFormatsAreEmpty) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  const CQXVTraceInner trace(nullptr, 0);
  trace(1, nullptr);
  trace(1, QXT(""));
  ASSERT_EQ(m_sink.lines.size(), 2u);
  EXPECT_EQ(m_sink.lines[0], Start() + QXT("][0][L1]:"));
  EXPECT_EQ(m_sink.lines[1], Start() + QXT("][0][L1]:"));
}

TEST_F(Trace, AMessageEndsAtItsFirstZero) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  const CQXVTraceInner trace(QXT("t"), 1);
  trace(0, QXT("a%cb"), 0);
  ASSERT_EQ(m_sink.lines.size(), 1u);
  EXPECT_EQ(m_sink.lines[0], Start() + QXT("t][1][L0]:a"));
}

TEST_F(Trace, ALongNameStandsWhole) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  const CQXVTraceInner trace(Repeat(QXT('n'), 5000).c_str(), 2147483647);
  trace(2147483647, QXT("x"));
  ASSERT_EQ(m_sink.lines.size(), 1u);
  EXPECT_EQ(m_sink.lines[0], Start() + Repeat(QXT('n'), 5000) + QXT("][2147483647][L2147483647]:x"));
}

TEST_F(Trace, CopiesTakeNameAndNumber) {
  if (!IsChild()) {
    return RunBesideSettings(kNoSettings);
  }
  CQXVTraceInner second(QXT("other"), 9);
  {
    const CQXVTraceInner first(QXT("first"), 1);
    const CQXVTraceInner copy(first);
    copy(0, QXT("copy"));
    second = first;
  }
  second = *&second;
  second(0, QXT("assigned"));
  ASSERT_EQ(m_sink.lines.size(), 2u);
  EXPECT_EQ(m_sink.lines[0], Start() + QXT("first][1][L0]:copy"));
  EXPECT_EQ(m_sink.lines[1], Start() + QXT("first][1][L0]:assigned"));
}

TEST_F(Trace, ThreadsMayMakeTheFirstCallTogether) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5");
  }
  constexpr int kThreads = 8;
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      const CQXVTraceInner trace(QXT("t"), t);
      for (++ready; ready != kThreads;) {
      }
      for (int i = 0; i < 100; ++i) {
        trace(4, QXT("low"));
        trace(5, QXT("%d"), i);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(m_sink.lines.size(), 800u);
  for (const Text& line : m_sink.lines) {
    EXPECT_NE(line.find(QXT("][L5]:")), Text::npos);
  }
}

TEST_F(Trace, WithoutMemoryALineIsLost) {
  if (!IsChild()) {
    return RunBesideSettings("LEVEL=5");
  }
  const CQXVTraceInner trace(QXT("t"), 1);
  std::size_t index = 0;
  for (bool refused = true; refused; ++index) {
    const std::size_t before = m_sink.lines.size();
    {
      const support::FailAllocation fail(index);
      trace(4, QXT("low"));
      trace(9, QXT("high"));
      refused = fail.Refused();
    }
    EXPECT_LE(m_sink.lines.size() - before, 1u);
    EXPECT_EQ(refused || m_sink.lines.size() == before + 1, true);
  }
  EXPECT_GT(index, 3u);
  EXPECT_EQ(CQXVTraceInner::m_nLevel, 5);
}

}  // namespace
