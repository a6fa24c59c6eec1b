// registry_malformed_test.cpp - records whose counts lie, that are cut, of other types, or change between two looks.

#include "qxv/registry.h"

#include "os/registry.h"
#include "support/guard_new.h"
#include "support/private_registry.h"
#include "support/text.h"
#include "text/registry_record.h"
#include "text/registry_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>

namespace {

using support::Text;
using support::TextOf;
using TextArray = CQXArray<CQXString, CQXString&>;

constexpr const QXChar* kKey = QXT("Software\\Test");

int Code(unsigned code) { return static_cast<int>(code); }

std::string Count(std::int32_t count) {
  std::string bytes(4, 0);
  std::memcpy(bytes.data(), &count, 4);
  return bytes;
}

class RegistryMalformed : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0); }

  static void Store(const std::string& bytes, std::uint32_t type = qxv::os::kRegistryBinary) {
    qxv::os::RegistryKey key;
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, kKey, qxv::os::kRegistryFullAccess), 0u);
    ASSERT_EQ(qxv::os::SetRegistryValue(key.Key(), QXT("v"), type,
                                        {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}),
              0u);
  }

  /// Reads the value into every type, each holding something first, and expects the code and nothing changed.
  void ExpectAllUnchanged(unsigned code) {
    TextArray texts;
    CQXString old(QXT("old"));
    texts.Add(old);
    EXPECT_EQ(m_register.Read(QXT("v"), texts), Code(code)) << "CQXArray";
    EXPECT_EQ(texts.GetSize(), 1);
    EXPECT_EQ(TextOf(texts[0]), QXT("old"));
    CStringArray array;
    array.Add(QXT("old"));
    EXPECT_EQ(m_register.Read(QXT("v"), array), Code(code)) << "CStringArray";
    ASSERT_EQ(array.GetSize(), 1);
    EXPECT_EQ(TextOf(array[0]), QXT("old"));
    CStringList list;
    list.AddTail(QXT("old"));
    EXPECT_EQ(m_register.Read(QXT("v"), list), Code(code)) << "CStringList";
    ASSERT_EQ(list.GetCount(), 1);
    EXPECT_EQ(TextOf(list.GetHead()), QXT("old"));
    ExpectNumbersUnchanged<CDWordArray>(code, "CDWordArray");
    ExpectNumbersUnchanged<CWordArray>(code, "CWordArray");
    ExpectNumbersUnchanged<CByteArray>(code, "CByteArray");
    ExpectCoordinatesUnchanged(code);
  }

  template <class Numbers>
  void ExpectNumbersUnchanged(unsigned code, const char* type) {
    Numbers numbers;
    numbers.Add(77);
    EXPECT_EQ(m_register.Read(QXT("v"), numbers), Code(code)) << type;
    ASSERT_EQ(numbers.GetSize(), 1) << type;
    EXPECT_EQ(numbers[0], 77) << type;
  }

  void ExpectCoordinatesUnchanged(unsigned code) {
    CPoint point(1, 2);
    EXPECT_EQ(m_register.Read(QXT("v"), point), Code(code)) << "CPoint";
    EXPECT_EQ(point, CPoint(1, 2));
    CRect rectangle(1, 2, 3, 4);
    EXPECT_EQ(m_register.Read(QXT("v"), rectangle), Code(code)) << "CRect";
    EXPECT_EQ(rectangle, CRect(1, 2, 3, 4));
  }

  support::PrivateRegistry m_registry;
  CQXVRegister m_register;
};

TEST_F(RegistryMalformed, APointOfThreeNumbersIsNone) {
  Store(Count(3) + Count(10) + Count(20) + Count(30));
  CPoint point(1, 2);
  EXPECT_EQ(m_register.Read(QXT("v"), point), Code(0x89601A47));
  EXPECT_EQ(point, CPoint(1, 2));
}

TEST_F(RegistryMalformed, TheNumberOfCoordinatesIsJudgedBeforeTheirBytes) {
  const struct {
    std::string bytes;
    unsigned point, rectangle;
  } kRows[] = {{Count(0), 0x89601A47, 0x89601A47},
               {Count(3), 0x89601A47, 0x89601A47},
               {Count(0x7FFFFFFF), 0x89601A47, 0x89601A47},
               {Count(-1), 0xFFFFFFFF, 0xFFFFFFFF},
               {Count(INT32_MIN), 0xFFFFFFFF, 0xFFFFFFFF},
               {Count(2), 0x89601A44, 0x89601A47},
               {Count(2) + Count(5) + "abc", 0x89601A44, 0x89601A47},
               {Count(4) + Count(5) + Count(6) + Count(7) + "abc", 0x89601A47, 0x89601A44}};
  for (const auto& row : kRows) {
    Store(row.bytes);
    CPoint point(1, 2);
    EXPECT_EQ(m_register.Read(QXT("v"), point), Code(row.point)) << row.bytes.size();
    EXPECT_EQ(point, CPoint(1, 2));
    CRect rectangle(1, 2, 3, 4);
    EXPECT_EQ(m_register.Read(QXT("v"), rectangle), Code(row.rectangle)) << row.bytes.size();
    EXPECT_EQ(rectangle, CRect(1, 2, 3, 4));
  }
}

TEST_F(RegistryMalformed, FewerThanFourBytesAreNoRecord) {
  for (const char* bytes : {"", "1", "12", "123"}) {
    Store(bytes);
    ExpectAllUnchanged(0x89601A44);
  }
}

TEST_F(RegistryMalformed, OnlyBinaryValuesAreRecords) {
  for (const std::uint32_t type : {qxv::os::kRegistryText, qxv::os::kRegistryNumber, qxv::os::kRegistryMultiText, 77u}) {
    Store(Count(0), type);
    ExpectAllUnchanged(0x89601A44);
  }
}

TEST_F(RegistryMalformed, AMissingRecordIsNotQueried) { ExpectAllUnchanged(0x89601A43); }

TEST_F(RegistryMalformed, ANegativeCountIsSaid) {
  for (const std::int32_t count : {-1, INT32_MIN}) {
    Store(Count(count) + std::string(64, 0));
    ExpectAllUnchanged(0xFFFFFFFF);
  }
}

TEST_F(RegistryMalformed, ACountOfMoreThanThereIsReservesNothing) {
  for (const std::int32_t count : {0x7FFFFFFF, 0x40000001, 100'000}) {
    Store(Count(count) + Count(1));
    TextArray texts;
    CStringArray array;
    CStringList list;
    CDWordArray numbers;
    CWordArray words;
    CByteArray bytes;
    EXPECT_EQ(m_register.Read(QXT("v"), texts), Code(0x89601A44));
    EXPECT_EQ(m_register.Read(QXT("v"), array), Code(0x89601A44));
    EXPECT_EQ(m_register.Read(QXT("v"), list), Code(0x89601A44));
    EXPECT_EQ(m_register.Read(QXT("v"), numbers), Code(0x89601A44));
    EXPECT_EQ(m_register.Read(QXT("v"), words), Code(0x89601A44));
    EXPECT_EQ(m_register.Read(QXT("v"), bytes), Code(0x89601A44));
  }
}

template <class Record>
void ExpectEveryPrefixRefused(const std::string& whole, Record& record, const char* type) {
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::unique_ptr<unsigned char[]> exact(new unsigned char[size]);  // ends at a page that cannot be read
    std::memcpy(exact.get(), whole.data(), size);
    EXPECT_EQ(qxv::ReadRecord({exact.get(), size}, record), 0x89601A44u) << type << " " << size;
  }
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[whole.size()]);
  std::memcpy(exact.get(), whole.data(), whole.size());
  EXPECT_EQ(qxv::ReadRecord({exact.get(), whole.size()}, record), 0u) << type;
}

TEST_F(RegistryMalformed, EveryPrefixOfARecordIsRefused) {
  const std::string text = Count(2) + std::string("a\0b\0", 4);
  TextArray texts;
  CStringArray array;
  CStringList list;
  CDWordArray numbers;
  CWordArray words;
  CByteArray bytes;
  CPoint point;
  CRect rectangle;
  ExpectEveryPrefixRefused(Count(2) + text + text, texts, "CQXArray");
  ExpectEveryPrefixRefused(Count(2) + text + text, array, "CStringArray");
  ExpectEveryPrefixRefused(Count(2) + text + text, list, "CStringList");
  ExpectEveryPrefixRefused(Count(3) + "123456789012", numbers, "CDWordArray");
  ExpectEveryPrefixRefused(Count(3) + "123456", words, "CWordArray");
  ExpectEveryPrefixRefused(Count(3) + "123", bytes, "CByteArray");
  ExpectEveryPrefixRefused(Count(2) + "12345678", point, "CPoint");
  ExpectEveryPrefixRefused(Count(4) + "1234567890123456", rectangle, "CRect");
  EXPECT_EQ(texts.GetSize(), 2);
  EXPECT_EQ(list.GetCount(), 2);
}

TEST_F(RegistryMalformed, ATextLongerThanItsRecordIsRefused) {
  for (const std::int32_t count : {2, 3, 0x3FFFFFFF, 0x7FFFFFFF}) {
    Store(Count(1) + Count(count) + std::string("ab", 2));
    TextArray texts;
    CStringArray array;
    CStringList list;
    EXPECT_EQ(m_register.Read(QXT("v"), texts), Code(0x89601A44)) << count;
    EXPECT_EQ(m_register.Read(QXT("v"), array), Code(0x89601A44)) << count;
    EXPECT_EQ(m_register.Read(QXT("v"), list), Code(0x89601A44)) << count;
  }
}

TEST_F(RegistryMalformed, ATextOfLessThanNothingIsEmptyAndOneEndsAtItsFirstZero) {
  Store(Count(2) + Count(-1) + Count(3) + std::string("a\0\0\0b\0", 6) + "left over");
  TextArray texts;
  ASSERT_EQ(m_register.Read(QXT("v"), texts), 0);
  ASSERT_EQ(texts.GetSize(), 2);
  EXPECT_EQ(TextOf(texts[0]), QXT(""));
  EXPECT_EQ(TextOf(texts[1]), QXT("a"));
  CStringList list;
  ASSERT_EQ(m_register.Read(QXT("v"), list), 0);
  ASSERT_EQ(list.GetCount(), 2);
  EXPECT_EQ(TextOf(list.GetTail()), QXT("a"));
}

TEST_F(RegistryMalformed, AValueThatGrowsBetweenTheTwoLooksIsNotRead) {
  qxv::os::RegistryKey key;
  ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, kKey, qxv::os::kRegistryFullAccess), 0u);
  for (const char* before : {"", "1234"}) {
    Store(before);
    qxv::RegistryValue value;
    ASSERT_EQ(qxv::QueryValue(key.Key(), QXT("v"), value), 0u);
    Store("12345");
    EXPECT_EQ(qxv::ReadValue(key.Key(), QXT("v"), value), 234u);
  }
}

TEST_F(RegistryMalformed, AValueThatShrinksBetweenTheTwoLooksIsReadAsItIs) {
  qxv::os::RegistryKey key;
  ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, kKey, qxv::os::kRegistryFullAccess), 0u);
  Store("12345678");
  qxv::RegistryValue value;
  ASSERT_EQ(qxv::QueryValue(key.Key(), QXT("v"), value), 0u);
  Store(std::string("a\0b\0", 4), qxv::os::kRegistryText);
  ASSERT_EQ(qxv::ReadValue(key.Key(), QXT("v"), value), 0u);
  EXPECT_EQ(value.size, 4u);
  EXPECT_EQ(value.type, qxv::os::kRegistryText) << "the type is asked for anew";
  EXPECT_EQ(TextOf(value.EndText()), QXT("ab"));
}

template <class Texts>
void ExpectOldTextsWhenMemoryEnds(Texts& texts, QXInt64 (*count)(const Texts&)) {
  std::string bytes = Count(20);
  for (int i = 0; i < 20; ++i) {
    bytes += Count(3) + std::string("a\0b\0c\0", 6);
  }
  std::size_t refused = 0;
  for (std::size_t index = 0;; ++index) {
    const support::FailAllocation fail(index);
    try {
      ASSERT_EQ(qxv::ReadRecord({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}, texts), 0u);
    } catch (const std::bad_alloc&) {
      ASSERT_EQ(count(texts), 1) << "allocation " << index;
    }
    if (!fail.Refused()) {
      break;
    }
    ++refused;
  }
  EXPECT_GT(refused, 20u);
  EXPECT_EQ(count(texts), 20);
}

TEST_F(RegistryMalformed, LackOfMemoryLeavesTheTargetAsItWas) {
  TextArray texts;
  CQXString old(QXT("old"));
  texts.Add(old);
  ExpectOldTextsWhenMemoryEnds<TextArray>(texts, [](const TextArray& t) { return t.GetSize(); });
  CStringArray array;
  array.Add(QXT("old"));
  ExpectOldTextsWhenMemoryEnds<CStringArray>(array, [](const CStringArray& t) { return t.GetSize(); });
  CStringList list;
  list.AddTail(QXT("old"));
  ExpectOldTextsWhenMemoryEnds<CStringList>(list, [](const CStringList& t) { return t.GetCount(); });
}

}  // namespace
