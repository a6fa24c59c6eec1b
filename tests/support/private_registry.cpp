// private_registry.cpp - redirected roots on Windows, a store of its own on Linux, and what they hold.

#include "support/private_registry.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

#if defined(_WIN32)
#include "os/win_api.h"
#else
#include <sqlite3.h>

#include <cstdlib>
#endif

namespace support {
namespace {

std::string ImageText(std::uint32_t type, std::span<const unsigned char> bytes) {
  std::string text = type == 1   ? "REG_SZ"
                     : type == 3 ? "REG_BINARY"
                     : type == 4 ? "REG_DWORD"
                     : type == 7 ? "REG_MULTI_SZ"
                                 : std::to_string(type);
  text += ' ';
  for (const unsigned char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", byte);
    text += digits;
  }
  return text;
}

}  // namespace

#if defined(_WIN32)

namespace {

constexpr const wchar_t* kPlace = L"Software\\QXVCommonLibU tests\\";
const struct {
  HKEY root;
  const wchar_t* name;
} kRedirected[] = {{HKEY_LOCAL_MACHINE, L"\\machine"}, {HKEY_CURRENT_USER, L"\\user"}};

HKEY MakeKey(const Text& name) {
  HKEY key = nullptr;
  EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), 0);
  return key;
}

}  // namespace

PrivateRegistry::PrivateRegistry() : m_place(kPlace) {
  static unsigned count = 0;
  m_place += std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
  for (const auto& [root, name] : kRedirected) {  // the user's own root, below which they stand, comes last
    const HKEY key = MakeKey(m_place + name);
    EXPECT_EQ(::RegOverridePredefKey(root, key), 0);
    ::RegCloseKey(key);
  }
}

PrivateRegistry::~PrivateRegistry() {
  for (const auto& [root, name] : kRedirected) {
    ::RegOverridePredefKey(root, nullptr);
  }
  EXPECT_EQ(::RegDeleteTreeW(HKEY_CURRENT_USER, m_place.c_str()), 0);
}

std::string StoredImage(HKEY root, const Text& subkey, const Text& name) {
  HKEY key = nullptr;
  if (::RegOpenKeyExW(root, subkey.c_str(), 0, KEY_READ, &key) != 0) {
    return "no key";
  }
  std::vector<unsigned char> bytes(1 << 20);
  DWORD type = 0;
  auto size = static_cast<DWORD>(bytes.size());
  const LSTATUS status = ::RegQueryValueExW(key, name.c_str(), nullptr, &type, bytes.data(), &size);
  ::RegCloseKey(key);
  return status != 0 ? "no value" : ImageText(type, {bytes.data(), size});
}

#else

namespace {

constexpr const char* kVariable = "QXV_REGISTRY";

std::string Utf8(const Text& text) {
  const std::u8string bytes = std::filesystem::path(text).u8string();
  return {bytes.begin(), bytes.end()};
}

}  // namespace

PrivateRegistry::PrivateRegistry() : m_store(m_folder.Native() / "made" / "by the first write" / "registry.sqlite") {
  if (const char* before = std::getenv(kVariable)) {
    m_before = before;
  }
  ::setenv(kVariable, m_store.c_str(), 1 /*overwrite*/);
}

PrivateRegistry::~PrivateRegistry() {
  if (m_before.empty()) {
    ::unsetenv(kVariable);
  } else {
    ::setenv(kVariable, m_before.c_str(), 1 /*overwrite*/);
  }
}

std::string StoredImage(HKEY root, const Text& subkey, const Text& name) {
  sqlite3* database = nullptr;
  std::string answer = "no store";
  if (sqlite3_open_v2(std::getenv(kVariable), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    const std::string path = root == HKEY_LOCAL_MACHINE  ? "HKEY_LOCAL_MACHINE\\"
                             : root == HKEY_CURRENT_USER ? "HKEY_CURRENT_USER\\"
                                                         : "another root\\";
    const std::string sought = path + Utf8(subkey);
    sqlite3_stmt* query = nullptr;
    EXPECT_EQ(
        sqlite3_prepare_v2(database,
                           "WITH RECURSIVE place (id, path) AS (SELECT id, name FROM key WHERE parent IS NULL UNION ALL"
                           " SELECT key.id, place.path || '\\' || key.name FROM key JOIN place ON key.parent = place.id)"
                           " SELECT place.id, value.type, value.data FROM place"
                           " LEFT JOIN value ON value.key = place.id AND value.name = ?2 WHERE place.path = rtrim(?1, '\\')",
                           -1, &query, nullptr),
        SQLITE_OK);
    const std::string value = Utf8(name);
    sqlite3_bind_text(query, 1, sought.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(query, 2, value.c_str(), -1, SQLITE_STATIC);
    answer = "no key";
    if (sqlite3_step(query) == SQLITE_ROW) {
      const auto* bytes = static_cast<const unsigned char*>(sqlite3_column_blob(query, 2));
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(query, 2));
      const auto type = static_cast<std::uint32_t>(sqlite3_column_int64(query, 1));
      answer = sqlite3_column_type(query, 2) == SQLITE_NULL ? "no value" : ImageText(type, {bytes, size});
    }
    sqlite3_finalize(query);
  }
  sqlite3_close(database);
  return answer;
}

#endif

}  // namespace support
