// append_posix_test.cpp - blocks for devices, FIFOs and dangling links, and locks around a fork.

#include "os/append.h"
#include "os/fork.h"
#include "support/file_bytes.h"
#include "support/forked.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace {

using namespace qxv::os;
using support::BytesOf;
using support::TempFolder;

ErrorCode AppendBlockTo(const QXChar* name, std::span<const unsigned char> block, std::size_t openingBytes) {
  AppendFile file;
  const ErrorCode error = file.SetName(name);
  return error != 0 ? error : file.Append(block, openingBytes);
}

TEST(PosixAppend, WhatHasNoEndIsRefusedWithoutWaiting) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo((folder.Native() / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(AppendBlockTo(folder.File(QXT("fifo")).c_str(), BytesOf("x"), 0), 5u) << "nobody reads";
  const int reader = ::open((folder.Native() / "fifo").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  EXPECT_EQ(AppendBlockTo(folder.File(QXT("fifo")).c_str(), BytesOf("x"), 0), 5u) << "somebody reads";
  ::close(reader);
}

TEST(PosixAppend, AFullDeviceIsDiskFull) { EXPECT_EQ(AppendBlockTo(QXT("/dev/full"), BytesOf("head:x"), 5), 112u); }

TEST(PosixAppend, ALinkToAMissingFileCreatesIt) {
  const TempFolder folder;
  ASSERT_EQ(::symlink("target.log", (folder.Native() / "link.log").c_str()), 0);
  EXPECT_EQ(AppendBlockTo(folder.File(QXT("link.log")).c_str(), BytesOf("x"), 0), 0u);
  EXPECT_EQ(support::ReadBytes(folder.File(QXT("target.log"))), "x");
}

TEST(PosixAppend, NoDescriptorRemains) {
  const TempFolder folder;
  const int before = ::dup(0);
  ::close(before);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(AppendBlockTo(folder.File(QXT("a.log")).c_str(), BytesOf("x"), 0), 0u);
    EXPECT_EQ(AppendBlockTo(QXT("/dev/full"), BytesOf("x"), 0), 112u);
  }
  const int after = ::dup(0);
  ::close(after);
  EXPECT_EQ(after, before);
}

constinit RecursiveLock heldLocks[9];  // one more than there is room for, without those of the library

TEST(PosixFork, AHeldLockIsFreeInTheChildAndWhatItGuardsIsWhole) {
  ASSERT_TRUE(HoldAcrossFork(heldLocks[0]));
  static int first = 0, second = 0;  // equal whenever the lock is free
  std::atomic<bool> stop{false};
  std::thread writer([&] {
    while (!stop) {
      const LockGuard guard(heldLocks[0]);
      ++first;
      std::this_thread::yield();
      ++second;
    }
  });
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(support::RunForked([] {
                if (!heldLocks[0].TryLock() || first != second) {
                  ::_exit(1);
                }
              }),
              0);
  }
  stop = true;
  writer.join();
  EXPECT_TRUE(heldLocks[0].TryLock()) << "the parent has it back too";
  heldLocks[0].Unlock();
}

TEST(PosixFork, ATableThatIsFullSaysSo) {
  int taken = 0;
  for (RecursiveLock& lock : heldLocks) {
    taken += HoldAcrossFork(lock) ? 1 : 0;
  }
  EXPECT_LT(taken, 9);
  EXPECT_GE(taken, 1);
  EXPECT_EQ(support::RunForked([] {}), 0);
}

}  // namespace
