// registry_test.cpp - CQXVRegister: its key, numbers and texts, and the codes that it gives.

#include "qxv/registry.h"

#include "os/registry.h"
#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace {

using support::StoredImage;
using support::Text;
using support::TextOf;

constexpr const QXChar* kKey = QXT("Software\\Test");

int Code(unsigned code) { return static_cast<int>(code); }

class Register : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0); }

  std::string Image(const QXChar* name) const { return StoredImage(HKEY_LOCAL_MACHINE, kKey, name); }

  /// Stores bytes past the class.
  static void Store(const QXChar* name, std::uint32_t type, const std::string& bytes) {
    qxv::os::RegistryKey key;
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, kKey, qxv::os::kRegistryFullAccess), 0u);
    ASSERT_EQ(
        qxv::os::SetRegistryValue(key.Key(), name, type, {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}),
        0u);
  }

  support::PrivateRegistry m_registry;
  CQXVRegister m_register;
};
using RegisterKept = Register;

TEST_F(RegisterKept, TheRootGivenToCreateIsIgnored) {
  CQXVRegister other;
  ASSERT_EQ(other.Create(HKEY_CURRENT_USER, QXT("Software\\Elsewhere")), 0);
  ASSERT_EQ(other.Write(QXT("v"), 1), 0);
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, QXT("Software\\Elsewhere"), QXT("v")), "REG_DWORD 01000000");
  EXPECT_EQ(StoredImage(HKEY_CURRENT_USER, QXT("Software\\Elsewhere"), QXT("v")), "no key");
  EXPECT_EQ(other.Create(nullptr, QXT("Software\\Nowhere")), 0);
}

TEST_F(RegisterKept, TheRootGivenToOpenIsIgnored) {
  ASSERT_EQ(m_register.Write(QXT("v"), 7), 0);
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY(nullptr)}) {
    CQXVRegister other;
    ASSERT_EQ(other.Open(root, kKey), 0);
    int value = 0;
    EXPECT_EQ(other.Read(QXT("v"), value), 0);
    EXPECT_EQ(value, 7);
  }
}

TEST_F(RegisterKept, ATextIsStoredWithoutItsTerminator) {
  ASSERT_EQ(m_register.Write(QXT("a"), CQXString(QXT("abc"))), 0);
  EXPECT_EQ(Image(QXT("a")), "REG_SZ 610062006300");
  ASSERT_EQ(m_register.Write(QXT("b"), CString(QXT("\u4E2D"))), 0);
  EXPECT_EQ(Image(QXT("b")), "REG_SZ 2D4E");
  ASSERT_EQ(m_register.Write(QXT("c"), CQXString()), 0);
  EXPECT_EQ(Image(QXT("c")), "REG_SZ ");
}

TEST_F(Register, OnlyAKeyThatExistsIsOpened) {
  CQXVRegister other;
  EXPECT_EQ(other.Open(HKEY_LOCAL_MACHINE, QXT("Software\\Missing")), Code(0x89601A45));
  EXPECT_EQ(other.Open(HKEY_LOCAL_MACHINE, kKey), 0);
  EXPECT_EQ(other.Open(HKEY_LOCAL_MACHINE, QXT("Software\\Missing")), Code(0x89601A45));
  int value = 0;
  EXPECT_EQ(other.Read(QXT("v"), value), Code(0x89601A40)) << "the key that was open is closed all the same";
}

TEST_F(Register, AKeyThatCannotBeCreatedIsSaid) {
  const Text tooLong = support::Repeat(QXT('k'), 256);
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, tooLong.c_str()), Code(0x89601A41));
  EXPECT_EQ(m_register.Write(QXT("v"), 1), Code(0x89601A40));
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, nullptr), Code(0x89601A41));
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, QXT("\\a")), Code(0x89601A41));
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0);
}

template <class Value>
void ExpectNoKey(CQXVRegister& none, const char* type) {
  Value value{};
  EXPECT_EQ(none.Read(QXT("v"), value), Code(0x89601A40)) << type;
  EXPECT_EQ(none.Write(QXT("v"), value), Code(0x89601A40)) << type;
}

void ExpectNoKeyForAnyType(CQXVRegister& none) {
  ExpectNoKey<int>(none, "int");
  ExpectNoKey<unsigned int>(none, "unsigned int");
  ExpectNoKey<CQXString>(none, "CQXString");
  ExpectNoKey<CString>(none, "CString");
  ExpectNoKey<CQXArray<CQXString, CQXString&>>(none, "CQXArray");
  ExpectNoKey<CStringArray>(none, "CStringArray");
  ExpectNoKey<CStringList>(none, "CStringList");
  ExpectNoKey<CDWordArray>(none, "CDWordArray");
  ExpectNoKey<CWordArray>(none, "CWordArray");
  ExpectNoKey<CByteArray>(none, "CByteArray");
  ExpectNoKey<CPoint>(none, "CPoint");
  ExpectNoKey<CRect>(none, "CRect");
  EXPECT_EQ(none.DeleteValue(QXT("v")), Code(0x89601A40));
}

TEST_F(Register, WithoutAKeyNothingIsReadWrittenOrDeleted) {
  CQXVRegister none;
  ExpectNoKeyForAnyType(none);
  EXPECT_EQ(none.Close(), 0);
}

TEST_F(Register, AClosedKeyIsNoKey) {
  EXPECT_EQ(m_register.Close(), 0);
  EXPECT_EQ(m_register.Close(), 0);
  ExpectNoKeyForAnyType(m_register);
}

TEST_F(Register, CopiesHaveNoKeyAndAssignmentKeepsEachItsOwn) {
  CQXVRegister copy(m_register);
  ExpectNoKeyForAnyType(copy);
  copy = m_register;
  ExpectNoKeyForAnyType(copy);
  m_register = copy;
  EXPECT_EQ(m_register.Write(QXT("v"), 1), 0) << "still its own key";
}

// The key handle stands behind the virtual table.
HKEY& HandleOf(CQXVRegister& subject) {
  return *reinterpret_cast<HKEY*>(reinterpret_cast<unsigned char*>(&subject) + sizeof(void*));
}

TEST_F(Register, AKeyThatCannotBeClosedStaysAndNoOtherIsOpened) {
  const HKEY open = HandleOf(m_register);
  ASSERT_NE(open, nullptr);
  HandleOf(m_register) = reinterpret_cast<HKEY>(std::uintptr_t{0x7FFFFFF0});  // a handle of nothing
  EXPECT_EQ(m_register.Close(), Code(0x89601A40));
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A40));
  EXPECT_EQ(m_register.Open(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A40));
  EXPECT_EQ(HandleOf(m_register), reinterpret_cast<HKEY>(std::uintptr_t{0x7FFFFFF0}));
  int value = 5;
  EXPECT_EQ(m_register.Read(QXT("v"), value), Code(0x89601A43));
  EXPECT_EQ(m_register.Write(QXT("v"), value), Code(0x89601A46));
  EXPECT_EQ(m_register.Write(QXT("v"), CQXString()), Code(0x89601A46));
  EXPECT_EQ(m_register.Write(QXT("v"), CPoint()), Code(0x89601A46));
  EXPECT_EQ(m_register.DeleteValue(QXT("v")), Code(0x89601A42));
  HandleOf(m_register) = open;
}

TEST_F(Register, TheDestructorClosesTheKey) {
  HKEY handle = nullptr;
  {
    CQXVRegister other;
    ASSERT_EQ(other.Create(HKEY_LOCAL_MACHINE, kKey), 0);
    handle = HandleOf(other);
  }
  EXPECT_EQ(qxv::os::CloseRegistryKey(handle), 6u);
}

TEST_F(Register, AnotherKeyTakesThePlaceOfTheFirst) {
  ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, QXT("Second")), 0);
  ASSERT_EQ(m_register.Write(QXT("v"), 2), 0);
  EXPECT_EQ(StoredImage(HKEY_LOCAL_MACHINE, QXT("Second"), QXT("v")), "REG_DWORD 02000000");
  EXPECT_EQ(Image(QXT("v")), "no value");
}

TEST_F(Register, NumbersAreFourBytesLittleEndian) {
  const struct {
    int value;
    const char* image;
  } kRows[] = {{0, "REG_DWORD 00000000"},          {1, "REG_DWORD 01000000"},         {-1, "REG_DWORD FFFFFFFF"},
               {0x12345678, "REG_DWORD 78563412"}, {INT32_MIN, "REG_DWORD 00000080"}, {INT32_MAX, "REG_DWORD FFFFFF7F"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.image);
    ASSERT_EQ(m_register.Write(QXT("v"), row.value), 0);
    EXPECT_EQ(Image(QXT("v")), row.image);
    int value = 99;
    ASSERT_EQ(m_register.Read(QXT("v"), value), 0);
    EXPECT_EQ(value, row.value);
    unsigned int bits = 99;
    ASSERT_EQ(m_register.Read(QXT("v"), bits), 0);
    EXPECT_EQ(bits, static_cast<unsigned int>(row.value));
  }
  ASSERT_EQ(m_register.Write(QXT("v"), 0xFEDCBA98u), 0);
  EXPECT_EQ(Image(QXT("v")), "REG_DWORD 98BADCFE");
}

TEST_F(Register, ANumberMustBeANumber) {
  const struct {
    std::uint32_t type;
    std::string bytes;
    unsigned code;
  } kRows[] = {{qxv::os::kRegistryText, std::string("5\0", 2), 0x89601A44},
               {qxv::os::kRegistryText, std::string("1\0002\0003\0", 6), 0x89601A44},
               {qxv::os::kRegistryBinary, "1234", 0x89601A44},
               {qxv::os::kRegistryNumber64, "12345678", 0x89601A44},
               {qxv::os::kRegistryNumber, "", 0x89601A44},
               {qxv::os::kRegistryNumber, "123", 0x89601A44},
               {qxv::os::kRegistryNumber, "12345", 0x89601A43}};
  for (const auto& row : kRows) {
    Store(QXT("v"), row.type, row.bytes);
    int value = 77;
    unsigned int bits = 78;
    EXPECT_EQ(m_register.Read(QXT("v"), value), Code(row.code)) << row.type << " of " << row.bytes.size();
    EXPECT_EQ(m_register.Read(QXT("v"), bits), Code(row.code)) << row.type << " of " << row.bytes.size();
    EXPECT_EQ(value, 77);
    EXPECT_EQ(bits, 78u);
  }
}

TEST_F(Register, AMissingValueIsNotQueriedNorDeleted) {
  int value = 5;
  CQXString text(QXT("old"));
  CPoint point(1, 2);
  EXPECT_EQ(m_register.Read(QXT("none"), value), Code(0x89601A43));
  EXPECT_EQ(m_register.Read(QXT("none"), text), Code(0x89601A43));
  EXPECT_EQ(m_register.Read(QXT("none"), point), Code(0x89601A43));
  EXPECT_EQ(m_register.DeleteValue(QXT("none")), Code(0x89601A42));
  EXPECT_EQ(value, 5);
  EXPECT_EQ(TextOf(text), QXT("old"));
  EXPECT_EQ(point, CPoint(1, 2));
}

TEST_F(Register, ADeletedValueIsGone) {
  ASSERT_EQ(m_register.Write(QXT("v"), 1), 0);
  EXPECT_EQ(m_register.DeleteValue(QXT("v")), 0);
  EXPECT_EQ(Image(QXT("v")), "no value");
  EXPECT_EQ(m_register.DeleteValue(QXT("v")), Code(0x89601A42));
}

TEST_F(Register, TextsComeBack) {
  const Text rows[] = {QXT(""), QXT("a"), QXT("C:\\clips\\\u4E2D\u56FD"), QXT("\U0001F3B5"), support::Repeat(QXT('x'), 70'000)};
  for (const Text& row : rows) {
    CQXString text(QXT("old"));
    CString host(QXT("old"));
    ASSERT_EQ(m_register.Write(QXT("v"), CQXString(row.c_str())), 0);
    EXPECT_EQ(m_register.Read(QXT("v"), text), 0);
    EXPECT_TRUE(TextOf(text) == row) << row.size();
    EXPECT_EQ(m_register.Read(QXT("v"), host), 0);
    EXPECT_TRUE(TextOf(host) == row) << row.size();
    ASSERT_EQ(m_register.Write(QXT("h"), CString(row.c_str())), 0);
    EXPECT_EQ(Image(QXT("h")), Image(QXT("v")));
  }
}

TEST_F(Register, ATextMayHaveBeenStoredInAnyWay) {
  const struct {
    std::string bytes;
    Text text;
  } kRows[] = {{std::string("a\0b\0\0\0", 6), QXT("ab")},     {std::string("a\0b\0", 4), QXT("ab")},
               {std::string("a\0b\0c", 5), QXT("ab")},        {std::string("a", 1), QXT("")},
               {std::string("a\0\0\0b\0", 6), QXT("a")},      {std::string("\0\0", 2), QXT("")},
               {std::string("a\0b\0\0\0\0\0", 8), QXT("ab")}, {std::string(), QXT("")}};
  for (const auto& row : kRows) {
    Store(QXT("v"), qxv::os::kRegistryText, row.bytes);
    CQXString text(QXT("old"));
    EXPECT_EQ(m_register.Read(QXT("v"), text), 0) << row.bytes.size();
    EXPECT_EQ(TextOf(text), row.text) << row.bytes.size();
    CString host(QXT("old"));
    EXPECT_EQ(m_register.Read(QXT("v"), host), 0) << row.bytes.size();
    EXPECT_EQ(TextOf(host), row.text) << row.bytes.size();
  }
}

TEST_F(Register, ATextMustBeAText) {
  for (const std::uint32_t type : {qxv::os::kRegistryExpandText, qxv::os::kRegistryMultiText, qxv::os::kRegistryBinary,
                                   qxv::os::kRegistryNumber, qxv::os::kRegistryNone}) {
    Store(QXT("v"), type, std::string("a\0b\0", 4));
    CQXString text(QXT("old"));
    CString host(QXT("old"));
    EXPECT_EQ(m_register.Read(QXT("v"), text), Code(0x89601A44)) << type;
    EXPECT_EQ(m_register.Read(QXT("v"), host), Code(0x89601A44)) << type;
    EXPECT_EQ(TextOf(text), QXT("old")) << type;
    EXPECT_EQ(TextOf(host), QXT("old")) << type;
  }
}

TEST_F(Register, TheUnnamedValueHasNoName) {
  ASSERT_EQ(m_register.Write(nullptr, 3), 0);
  int value = 0;
  EXPECT_EQ(m_register.Read(QXT(""), value), 0);
  EXPECT_EQ(value, 3);
  EXPECT_EQ(m_register.DeleteValue(nullptr), 0);
}

TEST_F(Register, ANameThatNoValueCanHaveIsRefused) {
  const Text tooLong = support::Repeat(QXT('v'), 16'384);
  int value = 5;
  EXPECT_EQ(m_register.Write(tooLong.c_str(), value), Code(0x89601A46));
  EXPECT_EQ(m_register.Write(tooLong.c_str(), CQXString(QXT("a"))), Code(0x89601A46));
  EXPECT_EQ(m_register.Write(tooLong.c_str(), CRect()), Code(0x89601A46));
  EXPECT_EQ(m_register.Read(tooLong.c_str(), value), Code(0x89601A43));
  EXPECT_EQ(m_register.DeleteValue(tooLong.c_str()), Code(0x89601A42));
}

}  // namespace
