// registry_store_test.cpp - the store that stands for the registry: where it lies, several processes, writers that are killed,
// stores that may not be written, are missing or damaged.

#include "os/registry_store.h"
#include "os/registry.h"

#include "support/child_process.h"
#include "support/environment.h"
#include "support/forked.h"
#include "support/full_disk.h"
#include "support/guard_new.h"
#include "support/private_registry.h"
#include "support/unprivileged.h"

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace qxv::os;
namespace fs = std::filesystem;

std::span<const unsigned char> BytesOf(const std::string& text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

ErrorCode Write(const QXChar* subkey, const QXChar* name, const std::string& bytes) {
  RegistryKey key;
  bool created = false;
  const ErrorCode error = key.Create(HKEY_LOCAL_MACHINE, subkey, kRegistryFullAccess, created);
  return error != 0 ? error : SetRegistryValue(key.Key(), name, kRegistryBinary, BytesOf(bytes));
}

/// The bytes, or "error " and the number.
std::string Read(const QXChar* subkey, const QXChar* name) {
  RegistryKey key;
  std::vector<unsigned char> data(100'000);
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  ErrorCode error = key.Open(HKEY_LOCAL_MACHINE, subkey, kRegistryRead);
  if (error == 0) {
    error = QueryRegistryValue(key.Key(), name, type, data, size);
  }
  return error != 0 ? "error " + std::to_string(error) : std::string(reinterpret_cast<char*>(data.data()), size);
}

/// What the database library itself says about the file: "ok" for a whole one.
std::string IntegrityOf(const fs::path& store) {
  sqlite3* database = nullptr;
  sqlite3_stmt* check = nullptr;
  std::string answer = "cannot be opened";
  if (sqlite3_open_v2(store.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
    sqlite3_busy_timeout(database, 10'000);
    if (sqlite3_prepare_v2(database, "PRAGMA integrity_check", -1, &check, nullptr) == SQLITE_OK &&
        sqlite3_step(check) == SQLITE_ROW) {
      answer = reinterpret_cast<const char*>(sqlite3_column_text(check, 0));
    }
  }
  sqlite3_finalize(check);
  sqlite3_close(database);
  return answer;
}

class RegistryStore : public testing::Test {
 protected:
  support::PrivateRegistry m_registry;
};

TEST_F(RegistryStore, ReadingDoesNotCreateItWritingDoesWithItsFolder) {
  EXPECT_EQ(Read(QXT(""), QXT("v")), "error 2");
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 2");
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  QXChar name[8];
  EXPECT_EQ(EnumRegistryValue(HKEY_LOCAL_MACHINE, 0, name, type, {}, size), 259u);
  EXPECT_EQ(EnumRegistryKey(HKEY_LOCAL_MACHINE, 0, name), 259u);
  EXPECT_EQ(DeleteRegistryValue(HKEY_LOCAL_MACHINE, QXT("v")), 2u);
  EXPECT_FALSE(fs::exists(m_registry.Store().parent_path()));
  EXPECT_EQ(Write(QXT("a"), QXT("v"), "1"), 0u);
  EXPECT_TRUE(fs::exists(m_registry.Store()));
  EXPECT_EQ(fs::status(m_registry.Store().parent_path()).permissions(), fs::perms::owner_all) << "for nobody else";
  EXPECT_EQ(IntegrityOf(m_registry.Store()), "ok");
}

TEST_F(RegistryStore, ItsPlaceIsChosenByTheEnvironment) {
  std::string store;
  ASSERT_EQ(FindRegistryStore(store), 0u);
  EXPECT_EQ(store, m_registry.Store().string());
  {
    const support::ScopedVariable relative("QXV_REGISTRY", "registry.sqlite");
    EXPECT_EQ(FindRegistryStore(store), 161u);
    EXPECT_EQ(Write(QXT("a"), QXT("v"), "1"), 161u);
  }
  const support::ScopedVariable none("QXV_REGISTRY", "");
  const support::ScopedVariable home("HOME", "/home/of");
  {
    const support::ScopedVariable data("XDG_DATA_HOME", "/some/data");
    ASSERT_EQ(FindRegistryStore(store), 0u);
    EXPECT_EQ(store, "/some/data/qxv/registry.sqlite");
  }
  for (const char* data : {"", "relative"}) {
    const support::ScopedVariable ignored("XDG_DATA_HOME", data);
    ASSERT_EQ(FindRegistryStore(store), 0u);
    EXPECT_EQ(store, "/home/of/.local/share/qxv/registry.sqlite");
  }
  const support::ScopedVariable data("XDG_DATA_HOME", "");
  const support::ScopedVariable homeless("HOME", "");
  ASSERT_EQ(FindRegistryStore(store), 0u);
  EXPECT_TRUE(store.starts_with("/") && store.ends_with("/.local/share/qxv/registry.sqlite")) << store;
}

TEST_F(RegistryStore, AHandleStaysWithTheStoreThatItWasOpenedIn) {
  ASSERT_EQ(Write(QXT("a"), QXT("v"), "first"), 0u);
  RegistryKey key;
  ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, QXT("a"), kRegistryRead), 0u);
  const support::PrivateRegistry other;
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 2");
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(QueryRegistryValue(key.Key(), QXT("v"), type, {}, size), 0u);
  EXPECT_EQ(size, 5u);
}

TEST_F(RegistryStore, AHandleOfADeletedKeyIsToldSo) {
  RegistryKey key;
  bool created = false;
  ASSERT_EQ(key.Create(HKEY_LOCAL_MACHINE, QXT("a"), kRegistryFullAccess, created), 0u);
  fs::remove(m_registry.Store());
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  QXChar name[8];
  EXPECT_EQ(QueryRegistryValue(key.Key(), QXT("v"), type, {}, size), 1018u);
  EXPECT_EQ(SetRegistryValue(key.Key(), QXT("v"), kRegistryBinary, {}), 1018u);
  EXPECT_EQ(DeleteRegistryValue(key.Key(), QXT("v")), 1018u);
  EXPECT_EQ(EnumRegistryValue(key.Key(), 0, name, type, {}, size), 1018u);
  EXPECT_EQ(EnumRegistryKey(key.Key(), 0, name), 1018u);
  EXPECT_EQ(key.Close(), 0u);
}

TEST_F(RegistryStore, ProcessesWriteAtOnceAndNothingIsLost) {
  constexpr int kWrites = 15;
  if (const char* writer = support::ChildArgument()) {
    const support::ScopedVariable shared("QXV_REGISTRY", std::string(writer).substr(1));
    for (int i = 0; i < kWrites; ++i) {
      const QXChar name[] = {static_cast<QXChar>(writer[0]), static_cast<QXChar>('a' + i), 0};
      ASSERT_EQ(Write(QXT("shared\\key"), name, std::string(1, static_cast<char>('a' + i))), 0u);
    }
    return;
  }
  const std::string store = m_registry.Store().string();
  {
    std::vector<std::unique_ptr<support::ChildProcess>> writers;
    for (const char writer : {'1', '2', '3', '4'}) {  // the store itself is created by whoever comes first
      writers.push_back(std::make_unique<support::ChildProcess>(writer + store));
    }
    for (auto& writer : writers) {
      EXPECT_EQ(writer->Wait(), 0);
    }
  }
  for (const char writer : {'1', '2', '3', '4'}) {
    for (int i = 0; i < kWrites; ++i) {
      const QXChar name[] = {static_cast<QXChar>(writer), static_cast<QXChar>('a' + i), 0};
      EXPECT_EQ(Read(QXT("shared\\key"), name), std::string(1, static_cast<char>('a' + i))) << writer << i;
    }
  }
  EXPECT_EQ(IntegrityOf(m_registry.Store()), "ok");
}

// Two values that a writer sets by turns, each a byte repeated over many pages: a torn one would hold two bytes.
constexpr std::size_t kTearable = 60'000;

bool IsWhole(const std::string& value) {
  return value.size() == kTearable && value.find_first_not_of(value[0]) == std::string::npos;
}

TEST_F(RegistryStore, AKilledWriterLeavesTheLastCompleteState) {
  const std::string first(kTearable, '0');
  ASSERT_EQ(Write(QXT("a"), QXT("v"), first), 0u);
  std::optional<char> progress;
  int changes = 0;
  for (int round = 0; round < 40; ++round) {
    const pid_t writer = ::fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
      ::alarm(30);
      for (unsigned i = 1;; ++i) {
        (void)Write(QXT("a"), QXT("v"), std::string(kTearable, static_cast<char>('A' + i % 26)));
        (void)Write(QXT("a\\b\\c"), QXT("w"), std::string(kTearable, static_cast<char>('a' + i % 26)));
      }
    }
    std::this_thread::sleep_for(std::chrono::microseconds(15'000 + 997 * round));
    ASSERT_EQ(::kill(writer, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    const std::string value = Read(QXT("a"), QXT("v"));
    ASSERT_TRUE(IsWhole(value)) << "round " << round << ": " << value.substr(0, 40);
    const std::string below = Read(QXT("a\\b\\c"), QXT("w"));
    ASSERT_TRUE(IsWhole(below) || below == "error 2") << "round " << round << ": " << below.substr(0, 40);
    ASSERT_EQ(IntegrityOf(m_registry.Store()), "ok") << "round " << round;
    changes += progress != value[0] ? 1 : 0;
    progress = value[0];
  }
  EXPECT_GT(changes, 3) << "the writers were killed before they wrote anything";
  EXPECT_EQ(Write(QXT("a"), QXT("v"), "done"), 0u);
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "done");
}

TEST_F(RegistryStore, AWriterKilledInsideATransactionIsRolledBackByTheNextReader) {
  const std::string first(kTearable, '0');
  ASSERT_EQ(Write(QXT("a"), QXT("v"), first), 0u);
  // A transaction so large that its pages reach the file before the end, then death.
  const int code = support::RunForked([&] {
    sqlite3* database = nullptr;
    sqlite3_open_v2(m_registry.Store().c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_exec(database,
                 "PRAGMA cache_size = 1; BEGIN IMMEDIATE; UPDATE value SET data = zeroblob(60000); DELETE FROM key WHERE id > 4;"
                 " UPDATE value SET data = zeroblob(900000);",
                 nullptr, nullptr, nullptr);
    ::kill(::getpid(), SIGKILL);
  });
  ASSERT_EQ(code, 98);
  ASSERT_TRUE(fs::exists(m_registry.Store().string() + "-journal")) << "the transaction never reached the file";
  EXPECT_EQ(Read(QXT("a"), QXT("v")), first);
  EXPECT_FALSE(fs::exists(m_registry.Store().string() + "-journal"));
  EXPECT_EQ(IntegrityOf(m_registry.Store()), "ok");
}

TEST_F(RegistryStore, AStoreCutAtItsBirthIsAnEmptyOne) {
  fs::create_directories(m_registry.Store().parent_path());
  std::ofstream(m_registry.Store()).flush();
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 2");
  EXPECT_EQ(Write(QXT("a"), QXT("v"), "1"), 0u);
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "1");
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QXV_TEST_UNDER_ASAN
#endif
#endif

TEST_F(RegistryStore, ThreadsAndForksShareIt) {
#if defined(QXV_TEST_UNDER_ASAN)
  GTEST_SKIP() << "AddressSanitizer's allocator keeps its locks over a fork: a child of a busy process hangs in it";
#endif
  ASSERT_EQ(Write(QXT("a"), QXT("v"), "1"), 0u);
  std::atomic<bool> stop{false};
  std::thread other([&] {
    while (!stop) {
      (void)Read(QXT("a"), QXT("v"));
    }
  });
  for (int i = 0; i < 20; ++i) {
    const int code = support::RunForked([] {
      if (Read(QXT("a"), QXT("v")) != "1" || Write(QXT("a"), QXT("w"), "2") != 0) {
        ::_exit(1);
      }
    });
    EXPECT_EQ(code, 0);
  }
  stop = true;
  other.join();
  EXPECT_EQ(Read(QXT("a"), QXT("w")), "2");
}

TEST_F(RegistryStore, AStoreThatMayNotBeWrittenIsRead) {
  ASSERT_EQ(Write(QXT("a"), QXT("v"), "1"), 0u);
  const fs::path folder = m_registry.Store().parent_path();
  for (fs::path above = folder; above != "/tmp" && above.has_relative_path(); above = above.parent_path()) {
    fs::permissions(above, fs::perms(0755));
  }
  fs::permissions(m_registry.Store(), fs::perms(0444));
  const support::Unprivileged nobody;
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "1");
  RegistryKey key;
  bool created = false;
  EXPECT_EQ(key.Open(HKEY_LOCAL_MACHINE, QXT("a"), kRegistryFullAccess), 5u);
  EXPECT_EQ(key.Create(HKEY_LOCAL_MACHINE, QXT("a"), kRegistryFullAccess, created), 5u);
  EXPECT_EQ(key.Create(HKEY_LOCAL_MACHINE, QXT("new"), kRegistryRead, created), 5u);
  EXPECT_EQ(SetRegistryValue(HKEY_LOCAL_MACHINE, QXT("v"), kRegistryBinary, {}), 5u);
  EXPECT_EQ(key.Create(HKEY_LOCAL_MACHINE, QXT("a"), kRegistryRead, created), 0u) << "it exists: nothing to write";
}

TEST_F(RegistryStore, APlaceThatMayNotBeReadOrMadeIsRefused) {
  fs::create_directories(m_registry.Store());  // a folder in its place
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 5");
  EXPECT_EQ(Write(QXT("a"), QXT("v"), "1"), 5u);
  const support::ScopedVariable below("QXV_REGISTRY", "/proc/none/registry.sqlite");
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 2");
  EXPECT_NE(Write(QXT("a"), QXT("v"), "1"), 0u);
  const support::ScopedVariable device("QXV_REGISTRY", "/dev/null");
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 5");
}

TEST_F(RegistryStore, AFileThatIsNoStoreIsDamagedAndNeverWritten) {
  fs::create_directories(m_registry.Store().parent_path());
  const std::string text(5000, 'x');
  std::ofstream(m_registry.Store()) << text;
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 1015");
  EXPECT_EQ(Write(QXT("a"), QXT("v"), "1"), 1015u);
  std::ifstream file(m_registry.Store());
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), text);
}

TEST_F(RegistryStore, ADatabaseOfSomebodyElseIsDamagedAndNeverWritten) {
  for (const char* schema :
       {"CREATE TABLE other (a)", "PRAGMA user_version = 7", "PRAGMA application_id = 0x51585652; PRAGMA user_version = 2",
        "PRAGMA application_id = 0x51585652; PRAGMA user_version = 1"}) {
    SCOPED_TRACE(schema);
    fs::remove(m_registry.Store());
    fs::create_directories(m_registry.Store().parent_path());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(m_registry.Store().c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, schema, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
    EXPECT_EQ(Read(QXT("a"), QXT("v")), "error 1015");
    EXPECT_EQ(Write(QXT("a"), QXT("v"), "1"), 1015u);
  }
}

TEST_F(RegistryStore, EveryTruncationIsRefusedOrGivesWhatWasStored) {
  ASSERT_EQ(Write(QXT("a"), QXT("v"), "value"), 0u);
  std::string whole;
  {
    std::ifstream file(m_registry.Store());
    whole.assign(std::istreambuf_iterator<char>(file), {});
  }
  for (std::size_t length = 0; length < whole.size(); length += length < 200 ? 7 : 1021) {
    std::ofstream(m_registry.Store()) << whole.substr(0, length);
    const std::string value = Read(QXT("a"), QXT("v"));
    EXPECT_TRUE(value == "value" || value == "error 1015" || (length == 0 && value == "error 2")) << length << ": " << value;
  }
}

TEST_F(RegistryStore, AFullDiskIsToldAndTheOldStateStays) {
  const support::TempFolder mounted;
  const support::SmallDisk disk(mounted.Native(), 64);
  if (!disk.Mounted()) {
    GTEST_SKIP() << "this user may not mount a disk";
  }
  const support::ScopedVariable place("QXV_REGISTRY", (mounted.Native() / "registry.sqlite").string());
  ASSERT_EQ(Write(QXT("a"), QXT("v"), "small"), 0u);
  EXPECT_EQ(Write(QXT("a"), QXT("v"), std::string(200'000, 'x')), 112u);
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "small");
  EXPECT_EQ(Write(QXT("a"), QXT("v"), "again"), 0u);
}

TEST_F(RegistryStore, LackOfMemoryThrowsAndTheNextCallWorks) {
  ASSERT_EQ(Write(QXT("a"), QXT("v"), "1"), 0u);
  std::size_t refused = 0;
  for (std::size_t index = 0; index < 40; ++index) {
    const support::FailAllocation fail(index);
    try {
      (void)Write(QXT("a\\b"), QXT("w"), "2");
    } catch (const std::bad_alloc&) {
    }
    refused += fail.Refused() ? 1 : 0;
  }
  EXPECT_GT(refused, 3u);
  EXPECT_EQ(Read(QXT("a"), QXT("v")), "1");
  EXPECT_EQ(Write(QXT("a\\b"), QXT("w"), "3"), 0u);
}

}  // namespace
