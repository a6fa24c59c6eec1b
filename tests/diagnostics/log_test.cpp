// log_test.cpp - the lines of the log, byte by byte, under a clock that stands.

#include "qxv/log.h"

#include "os/c_stream.h"
#include "os/module_entry.h"
#include "support/fake_clock.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/utf16_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using support::ReadBytes;
using support::Text;
using support::Utf16Le;
using namespace std::string_literals;

constexpr SYSTEMTIME At(WORD hour, WORD minute, WORD second, WORD milliseconds) {
  return {2009, 5, 5 /*Friday*/, 1, hour, minute, second, milliseconds};
}

class Log : public testing::Test {
 protected:
  Log() {
    m_clock.local = At(18, 5, 7, 45);
    QXVLogSetPath(m_folder.Path().c_str());
    QXVLogSetMainName(QXT("unit"));
  }

  std::string File(const Text& name) const { return ReadBytes(m_folder.File(name)); }
  std::string TodaysFile() const { return File(QXT("unit_20090501.txt")); }

  // What stands behind the head.
  std::string Lines() const {
    const std::string bytes = TodaysFile();
    EXPECT_EQ(bytes.substr(0, Head().size()), Head());
    return bytes.substr(std::min(Head().size(), bytes.size()));
  }
  static std::string Head() { return "\xFF\xFE" + Utf16Le(QXT("version=QXV_20090511\r\n\r\n")); }

  std::size_t Files() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(m_folder.Native())) {
      ++count;
    }
    return count;
  }

  support::TempFolder m_folder;
  support::FakeClock m_clock;
  qxv::os::ScopedClock m_scoped{m_clock};
};
using LogKept = Log;

TEST_F(Log, ANewFileBeginsWithMarkAndVersion) {
  QXVWriteLog(QXT("ok"), 100);
  const std::string expected =
      "\xFF\xFE"
      "v\0e\0r\0s\0i\0o\0n\0=\0Q\0X\0V\0_\0002\0000\0000\0009\0000\0005\0001\0001\0\r\0\n\0\r\0\n\0"
      "[\0002\0000\0000\0009\0.\0000\0005\0.\0000\0001\0 \0001\0008\0:\0000\0005\0:\0000\0007\0.\0000\0004\0005\0]\0"
      "o\0k\0\r\0\n\0"s;
  EXPECT_EQ(TodaysFile(), expected);
}

TEST_F(Log, ASecondLineDoesNotRepeatTheHead) {
  QXVWriteLog(QXT("one"), 100);
  m_clock.local = At(23, 59, 59, 999);
  QXVWriteLog(QXT("two"), 101);
  EXPECT_EQ(Lines(), Utf16Le(QXT("[2009.05.01 18:05:07.045]one\r\n[2009.05.01 23:59:59.999]two\r\n")));
  EXPECT_EQ(Files(), 1u);
}

TEST_F(Log, LinesBelowTheWriteLevelAreDropped) {
  QXVWriteLog(QXT("low"), 99);
  EXPECT_EQ(Files(), 0u) << "not even a head";
  QXVWriteLog(QXT("enough"), 100);
  QXVLogSetWriteLevel(-5);
  QXVWriteLog(QXT("minus five"), -5);
  QXVWriteLog(QXT("minus six"), -6);
  QXVLogSetWriteLevel(2147483647);
  QXVWriteLog(QXT("almost"), 2147483646);
  QXVWriteLog(QXT("highest"), 2147483647);
  QXVLogSetWriteLevel(-2147483647 - 1);
  QXVWriteLog(QXT("lowest"), -2147483647 - 1);
  const Text stamp = QXT("[2009.05.01 18:05:07.045]");
  EXPECT_EQ(Lines(), Utf16Le(stamp + QXT("enough\r\n") + stamp + QXT("minus five\r\n") + stamp + QXT("highest\r\n") + stamp +
                             QXT("lowest\r\n")));
}

TEST_F(Log, FolderAndMainNameAreJoinedAsTheyAre) {
  const Text folder = m_folder.File(QXT("abc"));
  QXVLogSetPath(folder.c_str());
  QXVWriteLog(QXT("x"), 100);
  EXPECT_EQ(File(QXT("abcunit_20090501.txt")), Head() + Utf16Le(QXT("[2009.05.01 18:05:07.045]x\r\n")));
  QXVLogSetMainName(QXT(""));
  QXVWriteLog(QXT("y"), 100);
  EXPECT_EQ(File(QXT("abc_20090501.txt")), Head() + Utf16Le(QXT("[2009.05.01 18:05:07.045]y\r\n")));
  QXVLogSetPath(m_folder.Path().c_str());
  QXVLogSetMainName(QXT("\u65E5\u5FD7"));
  QXVWriteLog(QXT("z"), 100);
  EXPECT_EQ(File(QXT("\u65E5\u5FD7_20090501.txt")), Head() + Utf16Le(QXT("[2009.05.01 18:05:07.045]z\r\n")));
}

TEST_F(Log, EachDayHasItsFile) {
  QXVWriteLog(QXT("one"), 100);
  m_clock.local = {2009, 12, 5, 31, 23, 59, 59, 999};
  QXVWriteLog(QXT("two"), 100);
  m_clock.local = {2010, 1, 5, 1, 10, 0, 0, 0};
  QXVWriteLog(QXT("three"), 100);
  EXPECT_EQ(Lines(), Utf16Le(QXT("[2009.05.01 18:05:07.045]one\r\n")));
  EXPECT_EQ(File(QXT("unit_20091231.txt")), Head() + Utf16Le(QXT("[2009.12.31 23:59:59.999]two\r\n")));
  EXPECT_EQ(File(QXT("unit_20100101.txt")), Head() + Utf16Le(QXT("[2010.01.01 10:00:00.000]three\r\n")));
  EXPECT_EQ(Files(), 3u);
}

TEST_F(LogKept, OneDigitHoursLeaveBlanks) {
  struct Row {
    SYSTEMTIME time;
    Text stamp;
  };
  const Row rows[] = {
      {At(8, 5, 7, 45), QXT("[2009.05.01 8: 5: 7. 45]")},   {At(8, 5, 7, 7), QXT("[2009.05.01 8: 5: 7. 07]")},
      {At(0, 0, 0, 0), QXT("[2009.05.01 0: 0: 0. 00]")},    {At(9, 59, 59, 999), QXT("[2009.05.01 9:59:59.999]")},
      {At(9, 10, 9, 100), QXT("[2009.05.01 9:10: 9.100]")}, {At(10, 5, 7, 7), QXT("[2009.05.01 10:05:07.007]")},
      {At(10, 0, 0, 0), QXT("[2009.05.01 10:00:00.000]")},
  };
  std::string expected;
  for (const Row& row : rows) {
    m_clock.local = row.time;
    QXVWriteLog(nullptr, 100);
    expected += Utf16Le(row.stamp + QXT("\r\n"));
  }
  EXPECT_EQ(Lines(), expected);
}

TEST_F(Log, AnyMessageIsWrittenAsItStands) {
  const Text stamp = QXT("[2009.05.01 18:05:07.045]");
  const Text large = support::Repeat(QXT('m'), 300000);
  QXVWriteLog(nullptr, 100);
  QXVWriteLog(QXT(""), 100);
  QXVWriteLog(QXT("a\r\nb%s%n\t"), 100);
  QXVWriteLog(Text({QXT('u'), static_cast<QXChar>(0xD800), QXT('!')}).c_str(), 100);
  QXVWriteLog(large.c_str(), 100);
  EXPECT_EQ(Lines(), Utf16Le(stamp + QXT("\r\n") + stamp + QXT("\r\n") + stamp + QXT("a\r\nb%s%n\t\r\n") + stamp + QXT("u") +
                             static_cast<QXChar>(0xD800) + QXT("!\r\n") + stamp + large + QXT("\r\n")));
}

TEST_F(Log, AnEmptyFileOfTheDayGetsTheHead) {
  ASSERT_TRUE(support::WriteBytes(m_folder.File(QXT("unit_20090501.txt")), ""));
  QXVWriteLog(QXT("x"), 100);
  EXPECT_EQ(Lines(), Utf16Le(QXT("[2009.05.01 18:05:07.045]x\r\n")));
}

TEST_F(Log, AFileThatHoldsSomethingOnlyGetsTheLine) {
  ASSERT_TRUE(support::WriteBytes(m_folder.File(QXT("unit_20090501.txt")), "#"));
  QXVWriteLog(QXT("x"), 100);
  EXPECT_EQ(TodaysFile(), "#" + Utf16Le(QXT("[2009.05.01 18:05:07.045]x\r\n")));
}

TEST_F(Log, WhatCannotBeWrittenIsLostInSilence) {
  testing::internal::CaptureStderr();
  QXVLogSetPath(m_folder.File(QXT("none\\")).c_str());
  QXVWriteLog(QXT("a missing folder"), 100);
  QXVLogSetPath(QXT("Q:\\"));
  QXVWriteLog(QXT("a missing drive"), 100);
  QXVLogSetPath(m_folder.File(QXT("sub")).c_str());
  std::filesystem::create_directory(m_folder.Native() / "subunit_20090501.txt");
  QXVWriteLog(QXT("a folder in its place"), 100);
  QXVLogSetPath(support::Repeat(QXT('f'), 40000).c_str());
  QXVWriteLog(QXT("a name too long"), 100);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(Files(), 1u);
  QXVLogSetPath(m_folder.Path().c_str());
  QXVWriteLog(QXT("and it goes on"), 100);
  EXPECT_EQ(Lines(), Utf16Le(QXT("[2009.05.01 18:05:07.045]and it goes on\r\n")));
}

TEST_F(Log, ReadersMayLookOnAndAnotherWriterMayHoldItOpen) {
  QXVWriteLog(QXT("one"), 100);
  std::FILE* reader = qxv::os::OpenStream(m_folder.File(QXT("unit_20090501.txt")).c_str(), "rb");
  std::FILE* writer = qxv::os::OpenStream(m_folder.File(QXT("unit_20090501.txt")).c_str(), "ab");
  ASSERT_TRUE(reader != nullptr && writer != nullptr);
  QXVWriteLog(QXT("two"), 100);
  std::fclose(writer);
  std::fclose(reader);
  EXPECT_EQ(Lines(), Utf16Le(QXT("[2009.05.01 18:05:07.045]one\r\n[2009.05.01 18:05:07.045]two\r\n")));
}

TEST_F(Log, LinesOfThreadsStayWholeWhileSettingsChange) {
  QXVLogSetWriteLevel(0);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([this, t] {
      for (int i = 0; i < 200; ++i) {
        QXVWriteLog(support::Repeat(static_cast<QXChar>(QXT('a') + t), 50).c_str(), 0);
        QXVLogSetMainName(QXT("unit"));
        QXVLogSetPath(m_folder.Path().c_str());
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  std::string rest = Lines();
  int seen[4] = {};
  const std::string stamp = Utf16Le(QXT("[2009.05.01 18:05:07.045]"));
  while (!rest.empty()) {
    bool found = false;
    for (int t = 0; t < 4 && !found; ++t) {
      const std::string line = stamp + Utf16Le(support::Repeat(static_cast<QXChar>(QXT('a') + t), 50) + QXT("\r\n"));
      found = rest.starts_with(line);
      if (found) {
        ++seen[t];
        rest.erase(0, line.size());
      }
    }
    ASSERT_TRUE(found) << "a torn line";
  }
  for (const int count : seen) {
    EXPECT_EQ(count, 200);
  }
}

TEST_F(Log, WithoutMemoryTheLineIsLostAndNothingElse) {
  const Text large = support::Repeat(QXT('m'), 100000);
  QXVWriteLog(QXT("first"), 100);
  std::size_t refusals = 0;
  for (bool refused = true; refused; refusals += refused ? 1 : 0) {
    QXVLogSetMainName(QXT("unit"));  // so that the file's name, too, is built anew
    const support::FailAllocation fail(refusals);
    QXVWriteLog(large.c_str(), 100);
    refused = fail.Refused();
  }
  EXPECT_GE(refusals, 2u);
  const CQXString folder(m_folder.File(QXT("a folder whose text is longer than what a text holds in itself\\")).c_str());
  {
    const support::FailAllocation fail(0);
    QXVLogSetPath(folder);
    EXPECT_TRUE(fail.Refused());
  }
  std::thread other([] { QXVWriteLog(QXT("last"), 100); });  // which would wait for ever for a lock that was not given back
  other.join();
  const Text stamp = QXT("[2009.05.01 18:05:07.045]");
  EXPECT_EQ(Lines(), Utf16Le(stamp + QXT("first\r\n") + stamp + large + QXT("\r\n") + stamp + QXT("last\r\n")));
}

TEST_F(Log, NothingIsWrittenBehindTheModulesEnd) {
  qxv::os::OnModuleUnload();
  QXVLogSetMainName(QXT("other"));
  QXVWriteLog(QXT("late"), 100);
  EXPECT_EQ(Files(), 0u);
  ASSERT_TRUE(qxv::os::OnModuleLoad());
  QXVWriteLog(QXT("again"), 100);
  EXPECT_EQ(Lines(), Utf16Le(QXT("[2009.05.01 18:05:07.045]again\r\n")));
}

}  // namespace
