// posix_files_test.cpp - what only Linux has: FIFOs, devices, links, bytes as names, descriptors over exec and fork.

#include "os/c_stream.h"
#include "os/debug_output.h"
#include "os/file_system.h"
#include "os/lock.h"
#include "os/process.h"
#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using namespace qxv::os;
using support::TempFolder;
using support::Text;

constexpr OpenOptions kReader{FileAccess::Read, FileDisposition::OpenExisting, kShareRead};
constexpr OpenOptions kWriter{FileAccess::ReadWrite, FileDisposition::CreateAlways, kShareRead};

TEST(PosixFiles, FifosAreRefusedWithoutWaiting) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo((folder.Native() / "fifo").c_str(), 0600), 0);
  const Text name = folder.File(QXT("fifo"));
  for (const FileAccess access : {FileAccess::Read, FileAccess::Write, FileAccess::ReadWrite, FileAccess::Append}) {
    File file;
    EXPECT_EQ(file.Open(name.c_str(), {access, FileDisposition::OpenAlways, kShareRead}), 5u) << static_cast<int>(access);
  }
  for (const char* mode : {"rb", "wb", "ab+"}) {
    ErrorCode error = 0;
    EXPECT_EQ(OpenStream(name.c_str(), mode, &error), nullptr) << mode;
    EXPECT_EQ(error, 5u) << mode;
  }
}

TEST(PosixFiles, AFullDeviceIsDiskFull) {
  File file;
  ASSERT_EQ(file.Open(QXT("/dev/full"), kWriter), 0u);
  EXPECT_EQ(support::WriteAll(file.Handle(), "x"), 112u);
  ASSERT_EQ(file.Open(QXT("Z:\\dev\\full"), {FileAccess::Append, FileDisposition::OpenAlways, kShareRead}), 0u);
  EXPECT_EQ(AppendToFile(file.Handle(), support::BytesOf("x")), 112u);
  std::FILE* stream = OpenStream(QXT("/dev/full"), "ab+");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(std::fputc('x', stream), 'x');
  EXPECT_EQ(std::fflush(stream), EOF);
  std::fclose(stream);
  EXPECT_EQ(file.Open(QXT("/dev/full"), kReader), 5u) << "readers take regular files only";
  EXPECT_EQ(OpenStream(QXT("/dev/zero"), "rb"), nullptr);
}

TEST(PosixFiles, DescriptorsAreNotInherited) {
  const TempFolder folder;
  const auto openDescriptors = [] {
    int flagged = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      const int flags = ::fcntl(std::stoi(entry.path().filename()), F_GETFD);
      flagged += flags >= 0 && (flags & FD_CLOEXEC) != 0;
    }
    return flagged;
  };
  const int before = openDescriptors();
  File file;
  ASSERT_EQ(file.Open(folder.File(QXT("a")).c_str(), kWriter), 0u);
  HANDLE copy = nullptr;
  ASSERT_EQ(DuplicateFile(file.Handle(), copy), 0u);
  std::FILE* stream = OpenStream(folder.File(QXT("b")).c_str(), "wb");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(openDescriptors(), before + 3);
  std::fclose(stream);
  EXPECT_EQ(CloseFile(copy), 0u);
  (void)file.Close();
  EXPECT_EQ(openDescriptors(), before) << "nothing leaks";
}

TEST(PosixFiles, AStaleHandleNeverReachesTheNextFile) {
  const TempFolder folder;
  HANDLE stale = nullptr;
  ASSERT_EQ(OpenFileNamed(folder.File(QXT("a")).c_str(), kWriter, stale), 0u);
  ASSERT_EQ(CloseFile(stale), 0u);
  EXPECT_EQ(CloseFile(stale), 6u) << "closing twice";
  EXPECT_EQ(support::ReadSome(stale, 1), "<error 6>");
  File next;
  ASSERT_EQ(next.Open(folder.File(QXT("b")).c_str(), kWriter), 0u);  // takes the same descriptor
  EXPECT_NE(next.Handle(), stale);
  EXPECT_EQ(support::WriteAll(stale, "x"), 6u);
  EXPECT_EQ(CloseFile(stale), 6u);
  EXPECT_EQ(support::WriteAll(next.Handle(), "x"), 0u);
}

TEST(PosixFiles, NamesThatAreNotUtf8AreFoundAndOpened) {
  const TempFolder folder;
  std::ofstream(folder.Native() / "caf\xE9.txt") << "latin";
  std::ofstream(folder.Native() / "back\\slash.txt") << "hidden";
  std::vector<FoundFile> found;
  ASSERT_EQ(FindFiles(folder.File(QXT("*.txt")).c_str(), found), 0u);
  ASSERT_EQ(found.size(), 1u) << "a name with a backslash cannot be handed out";
  File file;
  ASSERT_EQ(file.Open(folder.File(found[0].name).c_str(), kReader), 0u);
  EXPECT_EQ(support::ReadSome(file.Handle(), 9), "latin");
  (void)file.Close();
  const Text unpaired = folder.File(Text{QXT('x'), QXChar(0xD83C)});
  ASSERT_EQ(file.Open(unpaired.c_str(), kWriter), 0u);
  (void)file.Close();
  ASSERT_EQ(FindFiles(folder.File(QXT("x*")).c_str(), found), 0u);
  EXPECT_EQ(folder.File(found[0].name), unpaired) << "an unpaired surrogate comes back";
  EXPECT_EQ(file.Open(folder.File(Text{QXChar(0xDCC3), QXChar(0xDCA9)}).c_str(), kWriter), 123u);
}

TEST(PosixFiles, RenamingChangesTheCaseAlone) {
  const TempFolder folder;
  std::ofstream(folder.Native() / "name.txt") << "x";
  EXPECT_EQ(RenameFile(folder.File(QXT("NAME.TXT")).c_str(), folder.File(QXT("Name.TXT")).c_str(), false), 0u);
  EXPECT_TRUE(std::filesystem::exists(folder.Native() / "Name.TXT"));
  EXPECT_FALSE(std::filesystem::exists(folder.Native() / "name.txt"));
}

TEST(PosixFiles, LinksAreFollowedAndRemovedThemselves) {
  const TempFolder folder;
  std::ofstream(folder.Native() / "a.txt") << "target";
  std::filesystem::create_symlink("a.txt", folder.Native() / "link.txt");
  std::filesystem::create_symlink("nowhere", folder.Native() / "broken.txt");
  std::filesystem::create_symlink("loop", folder.Native() / "loop");
  std::vector<FoundFile> found;
  ASSERT_EQ(FindFiles(folder.File(QXT("*.txt")).c_str(), found), 0u);
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found[2].size, 6u);
  File file;
  EXPECT_EQ(file.Open(folder.File(QXT("broken.txt")).c_str(), kReader), 2u);
  EXPECT_EQ(file.Open(folder.File(QXT("loop")).c_str(), kReader), 123u);
  EXPECT_EQ(RemoveFile(folder.File(QXT("link.txt")).c_str()), 0u);
  EXPECT_EQ(RemoveFile(folder.File(QXT("broken.txt")).c_str()), 0u);
  EXPECT_TRUE(std::filesystem::exists(folder.Native() / "a.txt"));
}

TEST(PosixFiles, ADotHidesAndADotFileIsFound) {
  const TempFolder folder;
  std::ofstream(folder.Native() / ".hidden") << "x";
  std::uint32_t attributes = 0;
  ASSERT_EQ(GetPathAttributes(folder.File(QXT(".hidden")).c_str(), attributes), 0u);
  EXPECT_EQ(attributes & kAttributeHidden, kAttributeHidden);
  File file;
  ASSERT_EQ(file.Open(folder.File(QXT(".hidden")).c_str(), kReader), 0u);
  FileInformation information;
  ASSERT_EQ(GetFileInformation(file.Handle(), information), 0u);
  EXPECT_EQ(information.attributes & kAttributeHidden, kAttributeHidden) << "the open handle says the same";
  std::vector<FoundFile> found;
  ASSERT_EQ(FindFiles(folder.File(QXT("*")).c_str(), found), 0u);
  EXPECT_EQ(found[0].attributes & kAttributeHidden, 0u) << "the folder itself is not hidden";
  EXPECT_EQ(found[2].attributes & kAttributeHidden, kAttributeHidden);
}

class StandardError {  // caught in a pipe
 public:
  StandardError() : m_before(::dup(STDERR_FILENO)) {
    EXPECT_EQ(::pipe(m_ends), 0);
    ::dup2(m_ends[1], STDERR_FILENO);
    ::close(m_ends[1]);
  }
  ~StandardError() {
    Restore();
    if (m_ends[0] >= 0) {
      ::close(m_ends[0]);
    }
  }
  void CloseReader() {
    ::close(m_ends[0]);
    m_ends[0] = -1;
  }
  std::string Take() {
    Restore();
    std::string text;
    char buffer[4096];
    for (ssize_t count; (count = ::read(m_ends[0], buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  void Restore() {
    if (m_before >= 0) {
      ::dup2(m_before, STDERR_FILENO);
      ::close(m_before);
      m_before = -1;
    }
  }
  int m_before;
  int m_ends[2] = {-1, -1};
};

TEST(PosixDebugOutput, LinesGoToStandardErrorInUtf8) {
  StandardError captured;
  WriteDebugText(QXT("one \u4E2D\u6587"));
  WriteDebugText(QXT("\ntwo\n"));
  WriteDebugText(nullptr);
  WriteDebugText(Text{QXT('x'), QXChar(0xD800)}.c_str());
  EXPECT_EQ(captured.Take(), "one \xE4\xB8\xAD\xE6\x96\x87\n\ntwo\n\nx\xEF\xBF\xBD\n");
}

TEST(PosixDebugOutput, AClosedPipeEndsNothing) {
  StandardError captured;
  captured.CloseReader();
  WriteDebugText(QXT("lost"));
  sigset_t pending;
  ASSERT_EQ(::sigpending(&pending), 0);
  EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

RecursiveLock forkedLock;

TEST(PosixLock, AForkWhileAnotherThreadHoldsItLeavesTheChildAFreeLock) {
  ASSERT_EQ(::pthread_atfork([] { forkedLock.Lock(); }, [] { forkedLock.Unlock(); }, [] { forkedLock.Unlock(); }), 0);
  std::atomic<bool> done{false};
  std::thread holder([&] {
    while (!done) {
      const LockGuard guard(forkedLock);
      ::usleep(200);
    }
  });
  for (int i = 0; i < 20; ++i) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::alarm(20);  // a lock that stays held ends the child
      forkedLock.Lock();
      forkedLock.Unlock();
      ::_exit(0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  done = true;
  holder.join();
  EXPECT_TRUE(forkedLock.TryLock());
  forkedLock.Unlock();
}

TEST(PosixLock, AResetInTheChildFreesWhatAnotherThreadHeld) {
  static constinit RecursiveLock lock;
  std::atomic<bool> held{false}, done{false};
  std::thread holder([&] {
    const LockGuard guard(lock);
    held = true;
    while (!done) {
      ::usleep(200);
    }
  });
  while (!held) {
    ::usleep(200);
  }
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const bool before = lock.TryLock();
    lock.ResetAfterFork();
    ::_exit(!before && lock.TryLock() ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  done = true;
  holder.join();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(PosixProcess, TheExecutableIsTheLinkOfTheSystem) {
  const std::string path = std::filesystem::read_symlink("/proc/self/exe").string();
  EXPECT_EQ(support::NativePath(ExecutablePath()).string(), path);
  EXPECT_EQ(CurrentProcessId(), static_cast<std::uint32_t>(::getpid()));
  EXPECT_EQ(CurrentThreadId(), static_cast<std::uint32_t>(::getpid())) << "of the first thread";
}

}  // namespace
