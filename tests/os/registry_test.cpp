// registry_test.cpp - keys and values below the roots, the same on both systems.

#include "os/registry.h"

#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace qxv::os;
using support::Repeat;
using support::StoredImage;
using support::Text;

class Registry : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(m_key.Create(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), kRegistryFullAccess, m_created), 0u);
  }

  ErrorCode Set(const QXChar* name, std::uint32_t type, const std::string& bytes) {
    return SetRegistryValue(m_key.Key(), name, type, {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
  }
  /// "type:bytes", or the error number.
  static std::string Get(HKEY key, const QXChar* name) {
    unsigned char data[64];
    std::uint32_t type = 0;
    std::uint32_t size = 0;
    const ErrorCode error = QueryRegistryValue(key, name, type, data, size);
    return error != 0 ? std::to_string(error) : std::to_string(type) + ":" + std::string(reinterpret_cast<char*>(data), size);
  }
  std::string Get(const QXChar* name) const { return Get(m_key.Key(), name); }

  support::PrivateRegistry m_registry;
  RegistryKey m_key;
  bool m_created = false;
};

ErrorCode OpenError(HKEY parent, const QXChar* subkey) {
  RegistryKey key;
  return key.Open(parent, subkey, kRegistryRead);
}

TEST_F(Registry, AKeyIsCreatedOnceWithAllAboveIt) {
  EXPECT_TRUE(m_created);
  RegistryKey again;
  bool created = true;
  ASSERT_EQ(again.Create(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), kRegistryFullAccess, created), 0u);
  EXPECT_FALSE(created);
  EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, QXT("Software")), 0u);
  EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, QXT("Test")), 2u);
  EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, QXT("Software\\Test\\missing")), 2u);
  EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, QXT("missing\\Test")), 2u);
  EXPECT_EQ(OpenError(HKEY_CURRENT_USER, QXT("Software\\Test")), 2u) << "each root has its own keys";
}

TEST_F(Registry, AKeyIsOpenedBelowAnOpenOne) {
  RegistryKey below;
  bool created = false;
  ASSERT_EQ(below.Create(m_key.Key(), QXT("a\\b"), kRegistryFullAccess, created), 0u);
  EXPECT_TRUE(created);
  EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, QXT("Software\\Test\\a\\b")), 0u);
  EXPECT_EQ(OpenError(m_key.Key(), QXT("a")), 0u);
}

TEST_F(Registry, NamesAreComparedIgnoringCase) {
  EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, QXT("SOFTWARE\\tEST")), 0u);
  ASSERT_EQ(Set(QXT("Value"), kRegistryBinary, "one"), 0u);
  ASSERT_EQ(Set(QXT("VALUE"), kRegistryBinary, "two"), 0u);
  EXPECT_EQ(Get(QXT("value")), "3:two");
  QXChar name[32];
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(EnumRegistryValue(m_key.Key(), 0, name, type, {}, size), 0u);
  EXPECT_EQ(Text(name), QXT("Value")) << "the name stays as it was first given";
  EXPECT_EQ(EnumRegistryValue(m_key.Key(), 1, name, type, {}, size), 259u);
  ASSERT_EQ(Set(QXT("\u00C4\u0416\u03A9"), kRegistryBinary, "x"), 0u);
  EXPECT_EQ(Get(QXT("\u00E4\u0436\u03C9")), "3:x") << "beyond ASCII";
}

TEST_F(Registry, BackslashesSeparateSlashesDoNot) {
  RegistryKey key;
  bool created = false;
  ASSERT_EQ(key.Create(m_key.Key(), QXT("a\\\\b\\"), kRegistryFullAccess, created), 0u);
  EXPECT_EQ(OpenError(m_key.Key(), QXT("a\\b")), 0u) << "several are as one, and none at the end counts";
  ASSERT_EQ(key.Create(m_key.Key(), QXT("x/y"), kRegistryFullAccess, created), 0u);
  EXPECT_EQ(OpenError(m_key.Key(), QXT("x")), 2u);
  EXPECT_EQ(OpenError(m_key.Key(), QXT("x/y")), 0u);
  EXPECT_EQ(OpenError(m_key.Key(), QXT("\\a")), 161u);
  EXPECT_EQ(key.Create(m_key.Key(), QXT("\\a"), kRegistryFullAccess, created), 161u);
}

TEST_F(Registry, AnEmptySubkeyIsTheParent) {
  for (const QXChar* subkey : {static_cast<const QXChar*>(nullptr), QXT("")}) {
    RegistryKey same;
    ASSERT_EQ(same.Open(m_key.Key(), subkey, kRegistryFullAccess), 0u);
    ASSERT_EQ(SetRegistryValue(same.Key(), QXT("v"), kRegistryBinary, {}), 0u);
    EXPECT_EQ(Get(QXT("v")), "3:");
    ASSERT_EQ(DeleteRegistryValue(same.Key(), QXT("v")), 0u);
    EXPECT_EQ(OpenError(HKEY_LOCAL_MACHINE, subkey), 0u);
  }
  RegistryKey same;
  bool created = true;
  EXPECT_EQ(same.Create(m_key.Key(), QXT(""), kRegistryFullAccess, created), 0u);
  EXPECT_FALSE(created);
  EXPECT_EQ(same.Create(m_key.Key(), nullptr, kRegistryFullAccess, created), 1010u);
}

TEST_F(Registry, NamesHaveLimits) {
  const Text longest = Repeat(QXT('k'), 255);
  RegistryKey key;
  bool created = false;
  EXPECT_EQ(key.Create(m_key.Key(), longest.c_str(), kRegistryFullAccess, created), 0u);
  EXPECT_EQ(OpenError(m_key.Key(), longest.c_str()), 0u);
  const Text tooLong = QXT("a\\") + longest + QXT("k");
  EXPECT_EQ(key.Create(m_key.Key(), tooLong.c_str(), kRegistryFullAccess, created), 87u);
  EXPECT_EQ(OpenError(m_key.Key(), tooLong.c_str()), 87u);
  EXPECT_EQ(OpenError(m_key.Key(), QXT("a")), 2u) << "nothing was created on the way";
  Text deep = QXT("d");
  for (int i = 1; i < 512; ++i) {
    deep += QXT("\\d");
  }
  EXPECT_EQ(OpenError(m_key.Key(), deep.c_str()), 2u);
  deep += QXT("\\d");
  EXPECT_EQ(OpenError(m_key.Key(), deep.c_str()), 87u);

  const Text longestValue = Repeat(QXT('v'), 16383);
  EXPECT_EQ(Set(longestValue.c_str(), kRegistryBinary, "x"), 0u);
  EXPECT_EQ(Get(longestValue.c_str()), "3:x");
  const Text tooLongValue = longestValue + QXT("v");
  EXPECT_EQ(Set(tooLongValue.c_str(), kRegistryBinary, "x"), 87u);
  EXPECT_EQ(Get(tooLongValue.c_str()), "87");
  EXPECT_EQ(DeleteRegistryValue(m_key.Key(), tooLongValue.c_str()), 87u);
}

TEST_F(Registry, AValueIsItsTypeAndItsBytes) {
  const struct {
    std::uint32_t type;
    std::string bytes;
    const char* image;
  } kRows[] = {
      {kRegistryBinary, std::string("\x00\x01\xFF", 3), "REG_BINARY 0001FF"},
      {kRegistryNumber, std::string("\x05\x00\x00\x00", 4), "REG_DWORD 05000000"},
      {kRegistryNumber64, "12345678", "11 3132333435363738"},
      {kRegistryMultiText, std::string("a\0\0\0\0\0", 6), "REG_MULTI_SZ 610000000000"},
      {kRegistryNone, "", "0 "},
      {0x80000077, "abc", "2147483767 616263"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.image);
    ASSERT_EQ(Set(QXT("v"), row.type, row.bytes), 0u);
    EXPECT_EQ(Get(QXT("v")), std::to_string(row.type) + ":" + row.bytes);
    EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), QXT("v")), row.image);
  }
}

TEST_F(Registry, ATextIsStoredWithExactlyItsBytes) {
  const QXChar ended[] = QXT("abc");  // a zero stands behind the three units
  const auto* bytes = reinterpret_cast<const unsigned char*>(ended);
  for (const std::uint32_t type : {kRegistryText, kRegistryExpandText, kRegistryMultiText}) {
    ASSERT_EQ(SetRegistryValue(m_key.Key(), QXT("t"), type, {bytes, 6}), 0u);
    std::uint32_t found = 0;
    std::uint32_t size = 0;
    EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("t"), found, {}, size), 0u);
    EXPECT_EQ(found, type);
    EXPECT_EQ(size, 6u);
  }
  ASSERT_EQ(SetRegistryValue(m_key.Key(), QXT("t"), kRegistryText, {bytes, 8}), 0u);
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), QXT("t")), "REG_SZ 6100620063000000");
  ASSERT_EQ(SetRegistryValue(m_key.Key(), QXT("t"), kRegistryText, {bytes, 5}), 0u);
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), QXT("t")), "REG_SZ 6100620063");
  ASSERT_EQ(SetRegistryValue(m_key.Key(), QXT("t"), kRegistryText, {}), 0u);
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), QXT("t")), "REG_SZ ");
}

TEST_F(Registry, TheUnnamedValueIsOneOfItsOwn) {
  EXPECT_EQ(Get(nullptr), "2");
  ASSERT_EQ(Set(nullptr, kRegistryBinary, "u"), 0u);
  EXPECT_EQ(Get(QXT("")), "3:u");
  EXPECT_EQ(DeleteRegistryValue(m_key.Key(), QXT("")), 0u);
  EXPECT_EQ(Get(nullptr), "2");
}

TEST_F(Registry, AMissingValueIsNotFoundAndLeavesTheOutputs) {
  std::uint32_t type = 77;
  std::uint32_t size = 78;
  unsigned char data[2] = {1, 2};
  EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("none"), type, data, size), 2u);
  EXPECT_EQ(type, 77u);
  EXPECT_EQ(size, 78u);
  EXPECT_EQ(data[0], 1);
  EXPECT_EQ(DeleteRegistryValue(m_key.Key(), QXT("none")), 2u);
}

TEST_F(Registry, ASmallBufferIsToldTheSize) {
  ASSERT_EQ(Set(QXT("v"), kRegistryBinary, "12345"), 0u);
  unsigned char data[5];
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("v"), type, {data, 4}, size), 234u);
  EXPECT_EQ(type, 3u);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("v"), type, {data, 0}, size), 234u) << "a buffer without room is a buffer";
  EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("v"), type, {}, size), 0u);
  EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("v"), type, data, size), 0u);
  EXPECT_EQ(std::memcmp(data, "12345", 5), 0);
}

TEST_F(Registry, NothingIsWrittenBehindTheBuffer) {
  for (const std::uint32_t type : {kRegistryText, kRegistryExpandText, kRegistryMultiText, kRegistryBinary}) {
    for (std::size_t size = 0; size < 10; ++size) {
      ASSERT_EQ(Set(QXT("v"), type, std::string("abcdefghi").substr(0, size)), 0u);
      const std::unique_ptr<unsigned char[]> exact(new unsigned char[size]);  // ends at a page that cannot be written
      std::uint32_t foundType = 0;
      std::uint32_t foundSize = 99;
      EXPECT_EQ(QueryRegistryValue(m_key.Key(), QXT("v"), foundType, {exact.get(), size}, foundSize), 0u);
      EXPECT_EQ(foundSize, size);
      EXPECT_EQ(std::memcmp(exact.get(), "abcdefghi", size), 0) << type << " of " << size;
      std::memset(exact.get(), 'x', size);
      QXChar name[8];
      EXPECT_EQ(EnumRegistryValue(m_key.Key(), 0, name, foundType, {exact.get(), size}, foundSize), 0u);
      EXPECT_EQ(foundSize, size);
      EXPECT_EQ(std::memcmp(exact.get(), "abcdefghi", size), 0) << type << " of " << size;
    }
  }
}

TEST_F(Registry, ALargeValueComesBackWhole) {
  std::string bytes(3'000'000, 0);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(i * 7 >> 3);
  }
  ASSERT_EQ(Set(QXT("v"), kRegistryBinary, bytes), 0u);
  std::vector<unsigned char> data(bytes.size());
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  ASSERT_EQ(QueryRegistryValue(m_key.Key(), QXT("v"), type, data, size), 0u);
  ASSERT_EQ(size, bytes.size());
  EXPECT_EQ(std::memcmp(data.data(), bytes.data(), size), 0);
}

TEST_F(Registry, ValuesAreEnumeratedUntilThereAreNoMore) {
  ASSERT_EQ(Set(QXT("X"), kRegistryNumber, std::string("\x01\x00\x00\x00", 4)), 0u);
  ASSERT_EQ(Set(QXT("Y:"), kRegistryText, "ab"), 0u);
  ASSERT_EQ(Set(nullptr, kRegistryBinary, ""), 0u);
  std::set<std::string> found;
  for (std::uint32_t index = 0;; ++index) {
    QXChar name[260];
    unsigned char data[16];
    std::uint32_t type = 0;
    std::uint32_t size = 0;
    const ErrorCode error = EnumRegistryValue(m_key.Key(), index, name, type, data, size);
    if (error != 0) {
      EXPECT_EQ(error, 259u);
      break;
    }
    found.insert(support::Printable(name) + "=" + std::to_string(type) + ":" + std::string(reinterpret_cast<char*>(data), size));
  }
  EXPECT_EQ(found, (std::set<std::string>{"=3:", "X=4:" + std::string("\x01\x00\x00\x00", 4), "Y:=1:ab"}));
}

TEST_F(Registry, EnumeratingNeedsRoomForNameAndData) {
  ASSERT_EQ(Set(QXT("four"), kRegistryBinary, "12345"), 0u);
  QXChar name[8];
  unsigned char data[8];
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(EnumRegistryValue(m_key.Key(), 0, {name, 4}, type, data, size), 234u);
  EXPECT_EQ(EnumRegistryValue(m_key.Key(), 0, name, type, {data, 4}, size), 234u);
  EXPECT_EQ(EnumRegistryValue(m_key.Key(), 0, {name, 5}, type, data, size), 0u);
  EXPECT_EQ(Text(name), QXT("four"));
  EXPECT_EQ(EnumRegistryValue(m_key.Key(), 0, name, type, {}, size), 0u);
  EXPECT_EQ(size, 5u);
}

TEST_F(Registry, SubkeysAreEnumerated) {
  bool created = false;
  for (const QXChar* name : {QXT("beta"), QXT("Alpha"), QXT("beta\\below")}) {
    RegistryKey key;
    ASSERT_EQ(key.Create(m_key.Key(), name, kRegistryRead, created), 0u);
  }
  QXChar name[8];
  ASSERT_EQ(EnumRegistryKey(m_key.Key(), 0, name), 0u);
  EXPECT_EQ(Text(name), QXT("Alpha"));
  EXPECT_EQ(EnumRegistryKey(m_key.Key(), 0, {name, 5}), 234u);
  ASSERT_EQ(EnumRegistryKey(m_key.Key(), 1, {name, 5}), 0u);
  EXPECT_EQ(Text(name), QXT("beta"));
  EXPECT_EQ(EnumRegistryKey(m_key.Key(), 2, name), 259u);
}

TEST_F(Registry, AHandleMayWhatItWasOpenedFor) {
  ASSERT_EQ(Set(QXT("v"), kRegistryBinary, "x"), 0u);
  const struct {
    std::uint32_t access;
    ErrorCode query, set, listKeys;
  } kRows[] = {{kRegistryQueryValues, 0, 5, 5},
               {kRegistrySetValues, 5, 0, 5},
               {kRegistryListKeys, 5, 5, 259},
               {kRegistryRead, 0, 5, 259},
               {kRegistryFullAccess, 0, 0, 259}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.access);
    RegistryKey key;
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, QXT("Software\\Test"), row.access), 0u);
    QXChar name[260];
    std::uint32_t type = 0;
    std::uint32_t size = 0;
    EXPECT_EQ(QueryRegistryValue(key.Key(), QXT("v"), type, {}, size), row.query);
    EXPECT_EQ(EnumRegistryValue(key.Key(), 0, name, type, {}, size), row.query);
    EXPECT_EQ(SetRegistryValue(key.Key(), QXT("v"), kRegistryBinary, {}), row.set);
    EXPECT_EQ(DeleteRegistryValue(key.Key(), QXT("none")), row.set == 0 ? 2u : 5u);
    EXPECT_EQ(EnumRegistryKey(key.Key(), 0, name), row.listKeys);
  }
}

TEST_F(Registry, AClosedHandleIsRefused) {
  const HKEY closed = m_key.Key();
  EXPECT_EQ(m_key.Close(), 0u);
  EXPECT_EQ(m_key.Close(), 0u) << "nothing is open";
  for (const HKEY key : {closed, HKEY(nullptr)}) {
    std::uint32_t type = 0;
    std::uint32_t size = 0;
    QXChar name[8];
    EXPECT_EQ(QueryRegistryValue(key, QXT("v"), type, {}, size), 6u);
    EXPECT_EQ(SetRegistryValue(key, QXT("v"), kRegistryBinary, {}), 6u);
    EXPECT_EQ(DeleteRegistryValue(key, QXT("v")), 6u);
    EXPECT_EQ(EnumRegistryValue(key, 0, name, type, {}, size), 6u);
    EXPECT_EQ(EnumRegistryKey(key, 0, name), 6u);
    EXPECT_EQ(OpenError(key, QXT("a")), 6u);
    RegistryKey created;
    bool isNew = false;
    EXPECT_EQ(created.Create(key, QXT("a"), kRegistryRead, isNew), 6u);
    EXPECT_EQ(CloseRegistryKey(key), 6u);
  }
}

TEST_F(Registry, ARootHasValuesAndIsNeverClosed) {
  EXPECT_EQ(CloseRegistryKey(HKEY_LOCAL_MACHINE), 0u);
  ASSERT_EQ(SetRegistryValue(HKEY_LOCAL_MACHINE, QXT("v"), kRegistryBinary, {}), 0u);
  EXPECT_EQ(Get(HKEY_LOCAL_MACHINE, QXT("v")), "3:");
  EXPECT_EQ(Get(HKEY_CURRENT_USER, QXT("v")), "2");
}

TEST_F(Registry, AHandleMovesWithItsOwner) {
  const HKEY handle = m_key.Key();
  RegistryKey other(std::move(m_key));
  EXPECT_EQ(other.Key(), handle);
  EXPECT_FALSE(m_key.IsOpen());  // NOLINT(bugprone-use-after-move): that is what is tested
  m_key = std::move(other);
  EXPECT_EQ(Set(QXT("v"), kRegistryBinary, ""), 0u);
  EXPECT_FALSE(other.IsOpen());  // NOLINT(bugprone-use-after-move)
}

TEST_F(Registry, NamesThatAreNoUnicodeComeBack) {
  const QXChar half[] = {0xD801, QXT('a'), 0};
  ASSERT_EQ(Set(half, kRegistryBinary, "x"), 0u);
  EXPECT_EQ(Get(half), "3:x");
  QXChar name[8];
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  ASSERT_EQ(EnumRegistryValue(m_key.Key(), 0, name, type, {}, size), 0u);
  EXPECT_EQ(Text(name), Text(half));
}

}  // namespace
