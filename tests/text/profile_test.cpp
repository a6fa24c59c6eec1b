// profile_test.cpp - one value from an initialisation file, as applications ask for it.

#include "qxv/profile.h"

#include "os/file_system.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using support::Text;
using support::TextOf;

class ProfileValues : public testing::Test {
 protected:
  void Write(const std::string& bytes) { ASSERT_TRUE(support::WriteBytes(m_name, bytes)); }

  int ReadText(const QXChar* section, const QXChar* key) {
    return QXVGetPrivateStringValue(m_name.c_str(), section, key, m_text);
  }
  int ReadInteger(const QXChar* section, const QXChar* key) {
    return QXVGetPrivateIntValue(m_name.c_str(), section, key, m_integer);
  }

  support::TempFolder m_folder;
  Text m_name = m_folder.File(QXT("values.ini"));
  CQXString m_text = QXT("preset");
  int m_integer = 77;
};

using ProfileKept = ProfileValues;

TEST_F(ProfileValues, AreReadAsTextAndAsInteger) {
  Write("[Video]\r\nWidth = 1920\r\nName = \" Main screen \"\r\n");
  EXPECT_EQ(ReadText(QXT("Video"), QXT("Name")), 1);
  EXPECT_EQ(TextOf(m_text), QXT(" Main screen "));
  EXPECT_EQ(ReadText(QXT("video"), QXT("WIDTH")), 1);
  EXPECT_EQ(TextOf(m_text), QXT("1920"));
  EXPECT_EQ(ReadInteger(QXT("Video"), QXT("Width")), 1);
  EXPECT_EQ(m_integer, 1920);
}

TEST_F(ProfileValues, AMissingTextLeavesThePresetOne) {
  Write("[s]\nk=\nq=\"\"\n");
  for (const QXChar* key : {QXT("none"), QXT("k"), QXT("q")}) {
    EXPECT_EQ(ReadText(QXT("s"), key), 0);
    EXPECT_EQ(TextOf(m_text), QXT("preset"));
  }
  EXPECT_EQ(ReadText(QXT("none"), QXT("k")), 0);
  EXPECT_EQ(QXVGetPrivateStringValue(m_folder.File(QXT("none.ini")).c_str(), QXT("s"), QXT("k"), m_text), 0);
  EXPECT_EQ(TextOf(m_text), QXT("preset"));
}

TEST_F(ProfileValues, AnEmptyNameReadsNothing) {
  Write("=5\nk=6\n[s]\n=7\nk=8\n");  // an empty section and an empty key have values
  const Text file = m_name;
  const struct {
    Text file, section, key;
  } rows[] = {{QXT(""), QXT("s"), QXT("k")}, {file, QXT(""), QXT("k")}, {file, QXT("s"), QXT("")}, {QXT(""), QXT(""), QXT("")}};
  for (const auto& row : rows) {
    EXPECT_EQ(QXVGetPrivateStringValue(row.file.c_str(), row.section.c_str(), row.key.c_str(), m_text), 0);
    EXPECT_EQ(QXVGetPrivateIntValue(row.file.c_str(), row.section.c_str(), row.key.c_str(), m_integer), 0);
  }
  EXPECT_EQ(TextOf(m_text), QXT("preset"));
  EXPECT_EQ(m_integer, 77);
}

TEST_F(ProfileValues, ATextOf1023CharactersIsWholeALongerOneIsCut) {
  const std::string text(1023, 'x');
  for (const std::string& value : {text, text + "y", text + std::string(100'000, 'y')}) {
    Write("[s]\nk=" + value + "\n");
    EXPECT_EQ(ReadText(QXT("s"), QXT("k")), 1);
    EXPECT_EQ(TextOf(m_text), support::Repeat('x', 1023)) << value.size();
  }
}

TEST_F(ProfileValues, TheTargetMayBeOneOfTheNames) {
  Write("[s]\nk=value\n");
  CQXString key(QXT("k"));
  EXPECT_EQ(QXVGetPrivateStringValue(m_name.c_str(), QXT("s"), key, key), 1);
  EXPECT_EQ(TextOf(key), QXT("value"));
}

TEST_F(ProfileValues, ABareNameIsNotLookedForInTheCurrentFolder) {
  const Text bare = QXT("qxv-profile-test-values.ini");
  ASSERT_TRUE(support::WriteBytes(m_folder.File(bare), "[s]\nk=5\n"));
  Text before;
  ASSERT_EQ(qxv::os::GetCurrentFolder(before), 0u);
  ASSERT_EQ(qxv::os::SetCurrentFolder(m_folder.Path().c_str()), 0u);
  EXPECT_EQ(QXVGetPrivateStringValue(bare.c_str(), QXT("s"), QXT("k"), m_text), 0);
  EXPECT_EQ(QXVGetPrivateStringValue((QXT(".\\") + bare).c_str(), QXT("s"), QXT("k"), m_text), 1) << "a folder is named";
  EXPECT_EQ(qxv::os::SetCurrentFolder(before.c_str()), 0u);
}

TEST_F(ProfileValues, IntegersFollowTheSystemsRules) {
  const struct {
    const char* value;
    int integer;
  } rows[] = {{"12abc", 12}, {"0x10", 16}, {"0b11", 3}, {"010", 10},        {"+3", 3},
              {"-5", -5},    {"\"8\"", 8}, {"abc", 0},  {"4294967295", -1}, {"99999999999", 1215752191}};
  for (const auto& row : rows) {
    Write(std::string("[s]\nk=") + row.value + "\n");
    EXPECT_EQ(ReadInteger(QXT("s"), QXT("k")), 1) << row.value;
    EXPECT_EQ(m_integer, row.integer) << row.value;
  }
}

TEST_F(ProfileKept, AMissingKeyIsZeroAndSuccess) {
  Write("[s]\nempty=\n");
  for (const QXChar* key : {QXT("none"), QXT("empty")}) {
    m_integer = 77;
    EXPECT_EQ(ReadInteger(QXT("s"), key), 1);
    EXPECT_EQ(m_integer, 0);
  }
  m_integer = 77;
  EXPECT_EQ(QXVGetPrivateIntValue(m_folder.File(QXT("none.ini")).c_str(), QXT("s"), QXT("k"), m_integer), 1);
  EXPECT_EQ(m_integer, 0);
}

TEST_F(ProfileKept, TheMarkOfFailureInTheFileIsFailure) {
  for (const char* value : {"-202182160", "4092785136", "0xF3F2F1F0", "\"-202182160\""}) {
    m_integer = 77;
    Write(std::string("[s]\nk=") + value + "\n");
    EXPECT_EQ(ReadInteger(QXT("s"), QXT("k")), 0) << value;
    EXPECT_EQ(m_integer, -202182160) << value;
  }
  Write("[s]\nk=-202182161\n");
  EXPECT_EQ(ReadInteger(QXT("s"), QXT("k")), 1);
}

}  // namespace
