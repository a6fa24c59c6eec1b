// file_share_test.cpp - who may have a file open beside whom.

#include "os/c_stream.h"
#include "os/file.h"
#include "os/file_system.h"
#include "support/child_process.h"
#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace qxv::os;
using support::TempFolder;
using support::Text;

constexpr unsigned R = kShareRead;
constexpr unsigned W = kShareWrite;
constexpr unsigned RW = kShareRead | kShareWrite;

struct Row {
  FileAccess first;
  unsigned firstShare;
  FileAccess second;
  unsigned secondShare;
  ErrorCode error;
};

constexpr Row kRows[] = {
    {FileAccess::Read, R, FileAccess::Read, R, 0},
    {FileAccess::Read, R, FileAccess::Read, RW, 0},
    {FileAccess::Read, R, FileAccess::Write, RW, 32},           // the first denies writing
    {FileAccess::Read, RW, FileAccess::Write, R, 0},            // the second admits the reader
    {FileAccess::Read, RW, FileAccess::Write, kShareNone, 32},  // the second denies what the first does
    {FileAccess::Read, kShareNone, FileAccess::Read, RW, 32},
    {FileAccess::Read, W, FileAccess::Read, RW, 32},
    {FileAccess::Write, R, FileAccess::Read, RW, 0},
    {FileAccess::Write, R, FileAccess::Read, R, 32},  // a reader that denies writing cannot join a writer
    {FileAccess::Write, R, FileAccess::Write, RW, 32},
    {FileAccess::Write, W, FileAccess::Write, W, 0},
    {FileAccess::Write, W, FileAccess::Read, RW, 32},
    {FileAccess::Write, RW, FileAccess::Write, RW, 0},
    {FileAccess::ReadWrite, R, FileAccess::Read, RW, 0},
    {FileAccess::ReadWrite, R, FileAccess::Read, R, 32},
    {FileAccess::ReadWrite, R, FileAccess::ReadWrite, RW, 32},
    {FileAccess::ReadWrite, RW, FileAccess::ReadWrite, RW, 0},
    {FileAccess::ReadWrite, kShareNone, FileAccess::Read, RW, 32},
    {FileAccess::Append, RW, FileAccess::Append, RW, 0},
    {FileAccess::Append, R, FileAccess::Append, RW, 32},
    {FileAccess::Append, RW, FileAccess::Read, R, 32},
    {FileAccess::Append, R, FileAccess::Read, RW, 0},
};

TEST(FileShare, ConflictsAre32InEitherOrder) {
  int number = 0;
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "row " << number++);
    const TempFolder folder;
    const Text name = folder.File(QXT("a.bin"));
    ASSERT_TRUE(support::WriteBytes(name, "abc"));
    File first, second;
    ASSERT_EQ(first.Open(name.c_str(), {row.first, FileDisposition::OpenExisting, row.firstShare}), 0u);
    EXPECT_EQ(second.Open(name.c_str(), {row.second, FileDisposition::OpenExisting, row.secondShare}), row.error);
    (void)first.Close();
    (void)second.Close();
    ASSERT_EQ(first.Open(name.c_str(), {row.second, FileDisposition::OpenExisting, row.secondShare}), 0u)
        << "a closed file hinders nobody";
    EXPECT_EQ(second.Open(name.c_str(), {row.first, FileDisposition::OpenExisting, row.firstShare}), row.error) << "turned round";
  }
}

TEST(FileShare, HoldsAcrossProcesses) {
  if (const char* argument = support::ChildArgument()) {
    const std::string ascii(argument);
    const Text name(ascii.begin(), ascii.end());
    File file;
    EXPECT_EQ(file.Open(name.c_str(), {FileAccess::Read, FileDisposition::OpenExisting, R}), 32u);
    EXPECT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::OpenExisting, RW}), 32u);
    EXPECT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::CreateAlways, RW}), 32u);
    EXPECT_EQ(RemoveFile(name.c_str()), 32u);
    EXPECT_EQ(file.Open(name.c_str(), {FileAccess::Read, FileDisposition::OpenExisting, RW}), 0u);
    EXPECT_EQ(support::ReadSome(file.Handle(), 9), "abc") << "a refused CreateAlways has emptied nothing";
    return;
  }
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::ReadWrite, FileDisposition::CreateAlways, R}), 0u);
  ASSERT_EQ(support::WriteAll(file.Handle(), "abc"), 0u);
  support::ChildProcess child(std::string(name.begin(), name.end()));
  EXPECT_EQ(child.Wait(), 0);
}

TEST(FileShare, MarksLastUntilTheLastDuplicateIsClosed) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  File first, second;
  ASSERT_EQ(first.Open(name.c_str(), {FileAccess::ReadWrite, FileDisposition::CreateAlways, kShareNone}), 0u);
  HANDLE handle = nullptr;
  ASSERT_EQ(DuplicateFile(first.Handle(), handle), 0u);
  File copy(handle);
  (void)first.Close();
  const OpenOptions reader{FileAccess::Read, FileDisposition::OpenExisting, RW};
  EXPECT_EQ(second.Open(name.c_str(), reader), 32u);
  (void)copy.Close();
  EXPECT_EQ(second.Open(name.c_str(), reader), 0u);
}

TEST(FileShare, StreamsTakePart) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  File file;
  ErrorCode error = 0;
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::ReadWrite, FileDisposition::CreateAlways, R}), 0u);
  std::FILE* stream = OpenStream(name.c_str(), "rb", &error);
  EXPECT_NE(stream, nullptr);
  if (stream != nullptr) {
    std::fclose(stream);
  }
  EXPECT_EQ(OpenStream(name.c_str(), "ab", &error), nullptr);
  EXPECT_EQ(error, 32u);
  EXPECT_EQ(OpenStream(name.c_str(), "wb", &error), nullptr);
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::CreateAlways, kShareNone}), 0u);
  EXPECT_EQ(OpenStream(name.c_str(), "rb", &error), nullptr);
  EXPECT_EQ(error, 32u);
  (void)file.Close();
  stream = OpenStream(name.c_str(), "wb", &error);
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(file.Open(name.c_str(), {FileAccess::Read, FileDisposition::OpenExisting, R}), 32u) << "a stream that writes";
  EXPECT_EQ(file.Open(name.c_str(), {FileAccess::Read, FileDisposition::OpenExisting, RW}), 0u);
  std::fclose(stream);
}

TEST(FileShare, DeletionAndRenamingAskToo) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  const Text other = folder.File(QXT("b.bin"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Read, FileDisposition::OpenAlways, RW}), 0u);
  EXPECT_EQ(RemoveFile(name.c_str()), 32u);
  EXPECT_EQ(RenameFile(name.c_str(), other.c_str(), false), 32u);
  EXPECT_TRUE(support::Exists(name));
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Read, FileDisposition::OpenAlways, RW | kShareDelete}), 0u);
  EXPECT_EQ(RenameFile(name.c_str(), other.c_str(), false), 0u);
  EXPECT_EQ(RemoveFile(other.c_str()), 0u);
  (void)file.Close();
  EXPECT_FALSE(support::Exists(other));
}

TEST(FileShare, OfTwoThreadsAtOnceExactlyOneIsTheOnlyWriter) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  constexpr int kRounds = 2000;
  std::atomic<int> arrived{0}, winners{0}, refused{0};
  const auto meet = [&arrived](int count) {  // spins: the two leave within a microsecond, in the middle of each other's opening
    ++arrived;
    for (int i = 0; arrived < count; ++i) {
      if (i > 10000) {
        std::this_thread::yield();
      }
    }
  };
  const auto compete = [&] {
    for (int round = 0; round < kRounds; ++round) {
      File file;
      meet(round * 4 + 2);
      const ErrorCode error = file.Open(name.c_str(), {FileAccess::Write, FileDisposition::OpenAlways, kShareNone});
      winners += error == 0;
      refused += error == 32;
      meet(round * 4 + 4);  // the winner keeps it until both have tried
    }
  };
  std::thread first(compete), second(compete);
  first.join();
  second.join();
  EXPECT_EQ(winners, kRounds);
  EXPECT_EQ(refused, kRounds);
}

}  // namespace
