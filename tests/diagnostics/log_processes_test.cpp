// log_processes_test.cpp - one file written by 8 processes with 4 threads each: 10 MB without a torn, lost or doubled line.

#include "qxv/log.h"

#include "support/child_process.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/utf16_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using support::Text;

constexpr int kProcesses = 8;
constexpr int kThreads = 4;
constexpr int kLines = 1024;  // of each thread: 32,768 lines of 321 bytes in the mean

// "p3 t2 000123 " and a tail whose length and letter follow from the numbers, so that a mixed line cannot pass.
std::string MessageOf(int process, int thread, int line) {
  char start[32];
  std::snprintf(start, sizeof start, "p%d t%d %06d ", process, thread, line);
  const int sum = process * 31 + thread * 17 + line;
  return start + std::string(static_cast<std::size_t>(60 + sum % 121), static_cast<char>('a' + sum % 26)) + "#";
}

void WriteLines(int process, int thread) {
  for (int line = 0; line < kLines; ++line) {
    const std::string message = MessageOf(process, thread, line);
    QXVWriteLog(Text(message.begin(), message.end()).c_str(), 100);
  }
}

// The child's part: argument is the number of the process and the folder.
void RunChild(const std::string& argument) {
  const int process = argument[0] - '0';
  QXVLogSetPath(Text(argument.begin() + 1, argument.end()).c_str());
  QXVLogSetMainName(QXT("all"));
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back(WriteLines, process, thread);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

// Units of the file as bytes; every one is ASCII but the mark.
std::string Narrow(const std::string& bytes) {
  EXPECT_EQ(bytes.size() % 2, 0u);
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const bool mark = bytes[i] == '\xFF' && bytes[i + 1] == '\xFE';
    EXPECT_TRUE(mark || bytes[i + 1] == '\0') << "offset " << i;
    text += mark ? '\x01' : bytes[i];
  }
  return text;
}

// Of [2009.05.01 18:05:07.045]: digits or blanks between the marks; the hour has one or two.
bool IsStamp(const std::string& text) {
  int year, month, day, hour, minute, second, milliseconds, length = 0;
  return std::sscanf(text.c_str(), "[%4d.%2d.%2d %2d:%2d:%2d.%3d]%n", &year, &month, &day, &hour, &minute, &second, &milliseconds,
                     &length) == 7 &&
         length == static_cast<int>(text.size()) && year >= 2020 && month <= 12 && day <= 31 && hour <= 23 && minute <= 59 &&
         second <= 59;
}

class Checker {
 public:
  void Take(const std::string& line) {
    const std::size_t end = line.find(']');
    int process = -1, thread = -1, number = -1;
    const bool read = end != std::string::npos && IsStamp(line.substr(0, end + 1)) &&
                      std::sscanf(line.c_str() + end + 1, "p%d t%d %d ", &process, &thread, &number) == 3 && process >= 0 &&
                      process < kProcesses && thread >= 0 && thread < kThreads;
    if (!read || line.substr(end + 1) != MessageOf(process, thread, number)) {
      ++m_torn;
      return;
    }
    int& next = m_next[process][thread];
    m_outOfOrder += number == next ? 0 : 1;
    next = number + 1;
    ++m_lines;
  }
  int m_torn = 0;
  int m_outOfOrder = 0;
  int m_lines = 0;

 private:
  int m_next[kProcesses][kThreads] = {};
};

TEST(LogProcesses, TheCheckerSeesEveryKindOfDamage) {
  const std::string stamp = "[2026.05.01 18:05:07.045]";
  const std::string line = stamp + MessageOf(3, 2, 0);
  Checker checker;
  checker.Take(line);
  EXPECT_EQ(checker.m_lines, 1);
  EXPECT_EQ(checker.m_torn + checker.m_outOfOrder, 0);
  for (const std::string& torn : {line.substr(0, line.size() - 1), line.substr(1), line + line, stamp + line, stamp,
                                  line.substr(0, 40) + stamp + line.substr(40), std::string()}) {
    checker.Take(torn);
  }
  EXPECT_EQ(checker.m_torn, 7);
  EXPECT_EQ(checker.m_lines, 1);
  checker.Take(line);  // once more
  EXPECT_EQ(checker.m_outOfOrder, 1);
}

TEST(LogProcesses, TenMegabytesOf32WritersHaveNoTornLine) {
  if (const char* argument = support::ChildArgument()) {
    RunChild(argument);
    return;
  }
  const support::TempFolder folder;
  const std::string path(folder.Path().begin(), folder.Path().end());
  std::vector<std::unique_ptr<support::ChildProcess>> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.push_back(std::make_unique<support::ChildProcess>(std::to_string(process) + path));
  }
  for (const auto& child : children) {
    EXPECT_EQ(child->Wait(), 0);
  }
  // Two files when midnight came between.
  std::size_t bytes = 0;
  int heads = 0;
  int files = 0;
  Checker checker;
  std::vector<std::filesystem::path> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
    names.push_back(entry.path());
  }
  std::sort(names.begin(), names.end());
  for (const std::filesystem::path& name : names) {
    ++files;
    const std::string ascii = name.filename().string();
    const std::string content = support::ReadBytes(folder.Path() + Text(ascii.begin(), ascii.end()));
    bytes += content.size();
    const std::string text = Narrow(content);
    const std::string head = "\x01version=QXV_20090511\r\n\r\n";
    EXPECT_TRUE(text.starts_with(head));
    for (std::size_t at = 0; at < text.size();) {
      if (text.compare(at, head.size(), head) == 0) {  // two that begin the file together both give it its head
        ++heads;
        at += head.size();
        continue;
      }
      const std::size_t end = text.find("\r\n", at);
      ASSERT_NE(end, std::string::npos) << "the last line has no end";
      checker.Take(text.substr(at, end - at));
      at = end + 2;
    }
  }
  EXPECT_EQ(checker.m_torn, 0);
  EXPECT_EQ(checker.m_outOfOrder, 0) << "a thread's lines follow one another";
  EXPECT_EQ(checker.m_lines, kProcesses * kThreads * kLines) << "nothing is lost";
  EXPECT_GE(bytes, 10'000'000u);
  EXPECT_GE(files, 1);
  EXPECT_LE(files, 2);
  EXPECT_GE(heads, files);
  EXPECT_LE(heads, files * kProcesses);
}

}  // namespace
