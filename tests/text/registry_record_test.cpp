// registry_record_test.cpp - lists, points and rectangles: the bytes that they are stored as, and their way back.

#include "qxv/registry.h"

#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using support::StoredImage;
using support::Text;
using support::TextOf;
using TextArray = CQXArray<CQXString, CQXString&>;

constexpr const QXChar* kKey = QXT("Software\\Test");

class RegistryRecord : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0); }

  std::string Image() const { return StoredImage(HKEY_LOCAL_MACHINE, kKey, QXT("v")); }

  support::PrivateRegistry m_registry;
  CQXVRegister m_register;
};

std::vector<Text> TextsOf(const TextArray& texts) {
  std::vector<Text> list;
  for (QXInt64 i = 0; i < texts.GetSize(); ++i) {
    list.push_back(TextOf(texts[i]));
  }
  return list;
}

std::vector<Text> TextsOf(const CStringArray& texts) {
  std::vector<Text> list;
  for (QXInt64 i = 0; i < texts.GetSize(); ++i) {
    list.push_back(TextOf(texts[i]));
  }
  return list;
}

std::vector<Text> TextsOf(const CStringList& texts) {
  std::vector<Text> list;
  for (POSITION at = texts.GetHeadPosition(); at != nullptr;) {
    list.push_back(TextOf(texts.GetNext(at)));
  }
  return list;
}

void Add(TextArray& texts, const QXChar* text) {
  CQXString element(text);
  texts.Add(element);
}
void Add(CStringArray& texts, const QXChar* text) { texts.Add(CString(text)); }
void Add(CStringList& texts, const QXChar* text) { texts.AddTail(CString(text)); }

template <class Texts>
class RegistryTexts : public RegistryRecord {};
using AllTexts = testing::Types<TextArray, CStringArray, CStringList>;
TYPED_TEST_SUITE(RegistryTexts, AllTexts);

TYPED_TEST(RegistryTexts, AreTheirNumberThenEachWithItsOwn) {
  TypeParam texts;
  Add(texts, QXT("AB"));
  Add(texts, QXT(""));
  Add(texts, QXT("\u4E2D"));
  ASSERT_EQ(this->m_register.Write(QXT("v"), texts), 0);
  EXPECT_EQ(this->Image(),
            "REG_BINARY "
            "03000000"  // three texts
            "02000000"  // two characters
            "41004200"  // A B
            "00000000"  // none
            "01000000"
            "2D4E");  // one
  TypeParam back;
  Add(back, QXT("old"));
  ASSERT_EQ(this->m_register.Read(QXT("v"), back), 0);
  EXPECT_EQ(TextsOf(back), (std::vector<Text>{QXT("AB"), QXT(""), QXT("\u4E2D")}));
}

TYPED_TEST(RegistryTexts, NoneIsACountOfZeroAndEmptiesTheTarget) {
  TypeParam texts;
  ASSERT_EQ(this->m_register.Write(QXT("v"), texts), 0);
  EXPECT_EQ(this->Image(), "REG_BINARY 00000000");
  Add(texts, QXT("old"));
  ASSERT_EQ(this->m_register.Read(QXT("v"), texts), 0);
  EXPECT_EQ(TextsOf(texts), std::vector<Text>());
}

TYPED_TEST(RegistryTexts, ManyAndLongOnesComeBack) {
  TypeParam texts;
  std::vector<Text> expected;
  for (std::size_t i = 0; i < 300; ++i) {
    expected.push_back(support::Repeat(static_cast<QXChar>('a' + i % 26), i * 7));
    Add(texts, expected.back().c_str());
  }
  ASSERT_EQ(this->m_register.Write(QXT("v"), texts), 0);
  TypeParam back;
  ASSERT_EQ(this->m_register.Read(QXT("v"), back), 0);
  EXPECT_TRUE(TextsOf(back) == expected);
}

TEST_F(RegistryRecord, AnEmptyNumberArrayIsFourBytesAndEmptiesTheTarget) {
  CDWordArray numbers;
  ASSERT_EQ(m_register.Write(QXT("v"), numbers), 0);
  EXPECT_EQ(Image(), "REG_BINARY 00000000");
  numbers.Add(7);
  ASSERT_EQ(m_register.Read(QXT("v"), numbers), 0);
  EXPECT_EQ(numbers.GetSize(), 0);
  CWordArray words;
  words.Add(7);
  ASSERT_EQ(m_register.Read(QXT("v"), words), 0);
  EXPECT_EQ(words.GetSize(), 0);
  CByteArray bytes;
  bytes.Add(7);
  ASSERT_EQ(m_register.Read(QXT("v"), bytes), 0);
  EXPECT_EQ(bytes.GetSize(), 0);
}

TEST_F(RegistryRecord, NumbersAreTheirCountThenTheNumbers) {
  CDWordArray numbers;
  numbers.Add(1);
  numbers.Add(0xFEDCBA98);
  ASSERT_EQ(m_register.Write(QXT("v"), numbers), 0);
  EXPECT_EQ(Image(),
            "REG_BINARY 02000000"
            "01000000"
            "98BADCFE");
  CDWordArray back;
  back.SetSize(5);
  ASSERT_EQ(m_register.Read(QXT("v"), back), 0);
  ASSERT_EQ(back.GetSize(), 2);
  EXPECT_EQ(back[0], 1u);
  EXPECT_EQ(back[1], 0xFEDCBA98u);
}

TEST_F(RegistryRecord, WordsTakeTwoBytesEach) {
  CWordArray words;
  words.Add(0x1234);
  words.Add(0xFFFF);
  words.Add(0);
  ASSERT_EQ(m_register.Write(QXT("v"), words), 0);
  EXPECT_EQ(Image(),
            "REG_BINARY 03000000"
            "3412"
            "FFFF"
            "0000");
  CWordArray back;
  ASSERT_EQ(m_register.Read(QXT("v"), back), 0);
  ASSERT_EQ(back.GetSize(), 3);
  EXPECT_EQ(back[0], 0x1234);
  EXPECT_EQ(back[1], 0xFFFF);
  EXPECT_EQ(back[2], 0);
}

TEST_F(RegistryRecord, BytesTakeOneEach) {
  CByteArray bytes;
  for (int i = 0; i < 5; ++i) {
    bytes.Add(static_cast<BYTE>(0xFB + i));
  }
  ASSERT_EQ(m_register.Write(QXT("v"), bytes), 0);
  EXPECT_EQ(Image(),
            "REG_BINARY 05000000"
            "FBFCFDFEFF");
  CByteArray back;
  ASSERT_EQ(m_register.Read(QXT("v"), back), 0);
  ASSERT_EQ(back.GetSize(), 5);
  EXPECT_EQ(std::memcmp(back.GetData(), "\xFB\xFC\xFD\xFE\xFF", 5), 0);
}

TEST_F(RegistryRecord, AMillionBytesComeBack) {
  CByteArray bytes;
  bytes.SetSize(1'000'003);
  for (QXInt64 i = 0; i < bytes.GetSize(); ++i) {
    bytes[i] = static_cast<BYTE>(i * 31 >> 4);
  }
  ASSERT_EQ(m_register.Write(QXT("v"), bytes), 0);
  CByteArray back;
  ASSERT_EQ(m_register.Read(QXT("v"), back), 0);
  ASSERT_EQ(back.GetSize(), bytes.GetSize());
  EXPECT_EQ(std::memcmp(back.GetData(), bytes.GetData(), 1'000'003), 0);
}

TEST_F(RegistryRecord, APointIsTwoThenItsCoordinates) {
  ASSERT_EQ(m_register.Write(QXT("v"), CPoint(-1, 0x01020304)), 0);
  EXPECT_EQ(Image(),
            "REG_BINARY 02000000"
            "FFFFFFFF"
            "04030201");
  CPoint back(7, 8);
  ASSERT_EQ(m_register.Read(QXT("v"), back), 0);
  EXPECT_EQ(back, CPoint(-1, 0x01020304));
}

TEST_F(RegistryRecord, ARectangleIsFourThenItsSides) {
  ASSERT_EQ(m_register.Write(QXT("v"), CRect(1, -2, 3, 4)), 0);
  EXPECT_EQ(Image(),
            "REG_BINARY 04000000"
            "01000000"
            "FEFFFFFF"
            "03000000"
            "04000000");
  CRect back(7, 8, 9, 10);
  ASSERT_EQ(m_register.Read(QXT("v"), back), 0);
  EXPECT_EQ(back, CRect(1, -2, 3, 4)) << "left, top, right, bottom";
}

}  // namespace
