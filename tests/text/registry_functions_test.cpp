// registry_functions_test.cpp - one value of one key, with a default that is written back.

#include "qxv/registry.h"

#include "os/registry.h"
#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using support::StoredImage;
using support::Text;
using support::TextOf;

constexpr const QXChar* kKey = QXT("Software\\Test");

class RegistryFunctions : public testing::Test {
 protected:
  static void Store(const QXChar* name, std::uint32_t type, const std::string& bytes) {
    qxv::os::RegistryKey key;
    bool created = false;
    ASSERT_EQ(key.Create(HKEY_CURRENT_USER, kKey, qxv::os::kRegistryFullAccess, created), 0u);
    ASSERT_EQ(
        qxv::os::SetRegistryValue(key.Key(), name, type, {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}),
        0u);
  }

  support::PrivateRegistry m_registry;
};
using RegistryFunctionsKept = RegistryFunctions;

TEST_F(RegistryFunctions, AMissingNumberIsStoredAsItsDefault) {
  int value = 5;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("v"), value), 1) << "a new key";
  EXPECT_EQ(value, 5);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("v")), "REG_DWORD 05000000");
  value = -7;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("w"), value), 1) << "a key that exists";
  EXPECT_EQ(value, -7);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("w")), "REG_DWORD F9FFFFFF");
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, kKey, QXT("v")), "no key") << "these functions do look at the root";
}

TEST_F(RegistryFunctions, AMissingTextIsStoredAsItsDefault) {
  CQXString value(QXT("C:\\clips"));
  EXPECT_EQ(QXVGetRegStringValue(HKEY_LOCAL_MACHINE, kKey, QXT("v"), value), 1);
  EXPECT_EQ(TextOf(value), QXT("C:\\clips"));
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, kKey, QXT("v")), "REG_SZ 43003A005C0063006C00690070007300");
  CQXString empty;
  EXPECT_EQ(QXVGetRegStringValue(HKEY_LOCAL_MACHINE, kKey, QXT("e"), empty), 1);
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, kKey, QXT("e")), "REG_SZ ");
}

TEST_F(RegistryFunctions, AValueThatExistsIsRead) {
  ASSERT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("n"), -123456), 1);
  ASSERT_EQ(QXVSetRegStringValue(HKEY_CURRENT_USER, kKey, QXT("t"), QXT("stored")), 1);
  int number = 5;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("n"), number), 1);
  EXPECT_EQ(number, -123456);
  CQXString text(QXT("default"));
  EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, kKey, QXT("t"), text), 1);
  EXPECT_EQ(TextOf(text), QXT("stored"));
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("t")), "REG_SZ 730074006F00720065006400");
}

TEST_F(RegistryFunctions, SettersReplaceAndCreate) {
  EXPECT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("v"), 1), 1);
  EXPECT_EQ(QXVSetRegStringValue(HKEY_CURRENT_USER, kKey, QXT("v"), QXT("a")), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("v")), "REG_SZ 6100");
  EXPECT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("v"), 2), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("v")), "REG_DWORD 02000000");
}

TEST_F(RegistryFunctions, BlanksAroundTheSubkeyDoNotCount) {
  ASSERT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("v"), 9), 1);
  int value = 5;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, QXT("  Software\\Test   "), QXT("v"), value), 1);
  EXPECT_EQ(value, 9);
  CQXString text(QXT("t"));
  EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, QXT(" Software\\Test "), QXT("t"), text), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("t")), "REG_SZ 7400");
  EXPECT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, QXT(" Software\\Test "), QXT("s"), 3), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("s")), "REG_DWORD 03000000");
  EXPECT_EQ(QXVSetRegStringValue(HKEY_CURRENT_USER, QXT(" Software\\Test "), QXT("r"), QXT("x")), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("r")), "REG_SZ 7800");
  value = 5;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, QXT("a b"), QXT("v"), value), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, QXT("a b"), QXT("v")), "REG_DWORD 05000000") << "blanks inside do";
}

TEST_F(RegistryFunctions, AnEmptySubkeyIsTheRootItselfAndStoresNoDefault) {
  for (const QXChar* subkey : {QXT(""), QXT("   ")}) {
    int value = 5;
    CQXString text(QXT("old"));
    EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, subkey, QXT("v"), value), 0);
    EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, subkey, QXT("v"), text), 0);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(TextOf(text), QXT("old"));
  }
  qxv::os::RegistryKey root;
  ASSERT_EQ(root.Open(HKEY_CURRENT_USER, QXT(""), qxv::os::kRegistryRead), 0u);
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  EXPECT_EQ(qxv::os::QueryRegistryValue(root.Key(), QXT("v"), type, {}, size), 2u);

  ASSERT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, QXT(" "), QXT("v"), 8), 1);
  ASSERT_EQ(QXVSetRegStringValue(HKEY_CURRENT_USER, QXT(""), QXT("t"), QXT("ab")), 1);
  for (int i = 0; i < 2; ++i) {  // the root was not closed
    int value = 5;
    CQXString text;
    EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, QXT(" "), QXT("v"), value), 1);
    EXPECT_EQ(value, 8);
    EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, QXT(""), QXT("t"), text), 1);
    EXPECT_EQ(TextOf(text), QXT("ab"));
  }
}

TEST_F(RegistryFunctions, ARootMustBeOne) {
  int value = 5;
  CQXString text(QXT("old"));
  const HKEY none = reinterpret_cast<HKEY>(std::uintptr_t{0x7FFFFFF0});
  for (const HKEY root : {HKEY(nullptr), none}) {
    EXPECT_EQ(QXVGetRegIntValue(root, kKey, QXT("v"), value), 0);
    EXPECT_EQ(QXVGetRegIntValue(root, QXT(""), QXT("v"), value), 0);
    EXPECT_EQ(QXVGetRegStringValue(root, kKey, QXT("v"), text), 0);
    EXPECT_EQ(QXVGetRegStringValue(root, QXT(""), QXT("v"), text), 0);
    EXPECT_EQ(QXVSetRegIntValue(root, kKey, QXT("v"), 1), 0);
    EXPECT_EQ(QXVSetRegStringValue(root, kKey, QXT("v"), QXT("a")), 0);
  }
  EXPECT_EQ(value, 5);
  EXPECT_EQ(TextOf(text), QXT("old"));
}

TEST_F(RegistryFunctions, AKeyThatCannotBeCreatedGivesNothing) {
  int value = 5;
  CQXString text(QXT("old"));
  const Text tooLong = support::Repeat(QXT('k'), 256);
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, tooLong.c_str(), QXT("v"), value), 0);
  EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, tooLong.c_str(), QXT("v"), text), 0);
  EXPECT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, tooLong.c_str(), QXT("v"), 1), 0);
  EXPECT_EQ(QXVSetRegStringValue(HKEY_CURRENT_USER, tooLong.c_str(), QXT("v"), QXT("a")), 0);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(TextOf(text), QXT("old"));
}

TEST_F(RegistryFunctions, ADefaultThatCannotBeStoredGivesNothing) {
  const Text tooLong = support::Repeat(QXT('v'), 16'384);
  int value = 5;
  CQXString text(QXT("old"));
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, QXT("new"), tooLong.c_str(), value), 0);
  EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, QXT("newer"), tooLong.c_str(), text), 0);
}

TEST_F(RegistryFunctionsKept, ASetterTellsWhetherTheKeyClosedNotWhetherItStored) {
  const Text tooLong = support::Repeat(QXT('v'), 16'384);
  EXPECT_EQ(QXVSetRegIntValue(HKEY_CURRENT_USER, kKey, tooLong.c_str(), 1), 1);
  EXPECT_EQ(QXVSetRegStringValue(HKEY_CURRENT_USER, kKey, tooLong.c_str(), QXT("a")), 1);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("")), "no value") << "the key was created, nothing is in it";
}

TEST_F(RegistryFunctionsKept, ATextReadsAsTheNumberThatItsBytesAre) {
  const struct {
    std::uint32_t type;
    std::string bytes;
    int value;
  } kRows[] = {{qxv::os::kRegistryText, std::string("1\0\0\0", 4), 49},
               {qxv::os::kRegistryText, std::string("1\0", 2), 49},
               {qxv::os::kRegistryBinary, "\x01\x02\x03", 0x030201},
               {qxv::os::kRegistryBinary, "", 0},
               {qxv::os::kRegistryNone, "\xFF\xFF\xFF\xFF", -1}};
  for (const auto& row : kRows) {
    Store(QXT("v"), row.type, row.bytes);
    int value = 5;
    EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("v"), value), 1) << row.value;
    EXPECT_EQ(value, row.value);
  }
}

TEST_F(RegistryFunctions, MoreThanFourBytesAreNoNumber) {
  Store(QXT("v"), qxv::os::kRegistryBinary, "12345");
  int value = 5;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_CURRENT_USER, kKey, QXT("v"), value), 0);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, kKey, QXT("v")), "REG_BINARY 3132333435") << "no default takes its place";
}

TEST_F(RegistryFunctions, ATextMayHaveBeenStoredInAnyWay) {
  const struct {
    std::uint32_t type;
    std::string bytes;
    Text text;
  } kRows[] = {{qxv::os::kRegistryText, std::string("a\0b\0\0\0", 6), QXT("ab")},
               {qxv::os::kRegistryText, std::string("a\0b\0", 4), QXT("ab")},
               {qxv::os::kRegistryText, std::string("a\0b", 3), QXT("a")},
               {qxv::os::kRegistryText, "", QXT("")},
               {qxv::os::kRegistryExpandText, std::string("%\0", 2), QXT("%")},
               {qxv::os::kRegistryNumber, std::string("A\0B\0", 4), QXT("AB")}};
  for (const auto& row : kRows) {
    Store(QXT("v"), row.type, row.bytes);
    CQXString text(QXT("old"));
    EXPECT_EQ(QXVGetRegStringValue(HKEY_CURRENT_USER, kKey, QXT("v"), text), 1) << row.bytes.size();
    EXPECT_EQ(TextOf(text), row.text) << row.bytes.size();
  }
}

}  // namespace
