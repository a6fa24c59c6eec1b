// host_exception_test.cpp - the exceptions of the host classes.

#include "host_test.h"

namespace {

using host_test::Throws;
using support::TextOf;

TEST(HostException, IsCaughtAsItsBase) {
  EXPECT_TRUE(Throws<CInvalidArgException>([] { AfxThrowInvalidArgException(); }));
  EXPECT_TRUE(Throws<CFileException>([] { AfxThrowFileException(CFileException::diskFull); }));
  EXPECT_FALSE(Throws<CFileException>([] { AfxThrowInvalidArgException(); }));
}

TEST(HostException, FileExceptionTellsCauseNumberAndName) {
  try {
    AfxThrowFileException(CFileException::accessDenied, 5, QXT("Z:\\a.txt"));
    FAIL() << "nothing was thrown";
  } catch (CFileException* e) {
    EXPECT_EQ(e->m_cause, 5);
    EXPECT_EQ(e->m_lOsError, 5);
    EXPECT_EQ(e->m_strFileName, QXT("Z:\\a.txt"));
    e->Delete();
  }
  const CFileException plain;
  EXPECT_EQ(plain.m_cause, 0);
  EXPECT_EQ(plain.m_lOsError, -1);
  EXPECT_EQ(plain.m_strFileName, QXT(""));
}

TEST(HostException, SystemErrorsHaveTheirCauses) {
  const struct {
    std::int32_t osError;
    int cause;
  } rows[] = {{0, 0},   {2, 2},   {3, 3},  {4, 4},    {5, 5},   {6, 6},    {16, 7},  {32, 11},
              {33, 12}, {38, 14}, {53, 3}, {112, 13}, {123, 3}, {131, 9},  {145, 7}, {161, 3},
              {183, 5}, {31, 10}, {80, 5}, {206, 3},  {223, 1}, {1006, 1}, {87, 1},  {-1, 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(CFileException::OsErrorToException(row.osError), row.cause) << row.osError;
  }
}

TEST(HostException, ThrowsASystemError) {
  try {
    CFileException::ThrowOsError(32, QXT("x"));
  } catch (CException* e) {
    auto* fileException = dynamic_cast<CFileException*>(e);
    ASSERT_NE(fileException, nullptr);
    EXPECT_EQ(fileException->m_cause, 11);
    EXPECT_EQ(fileException->m_lOsError, 32);
    e->Delete();
  }
}

TEST(HostException, MessageIsCutToTheRoom) {
  const CFileException full(CFileException::diskFull);
  QXChar text[32] = {1, 1, 1, 1, 1, 1};
  unsigned int help = 7;
  EXPECT_EQ(full.GetErrorMessage(text, 32, &help), 1);
  EXPECT_EQ(TextOf(text), QXT("The disk is full."));
  EXPECT_EQ(help, 0u);
  EXPECT_EQ(full.GetErrorMessage(text, 4), 1);
  EXPECT_EQ(TextOf(text), QXT("The"));
  EXPECT_EQ(full.GetErrorMessage(text, 1), 1);
  EXPECT_EQ(TextOf(text), QXT(""));
  EXPECT_EQ(full.GetErrorMessage(text, 0), 0);
  EXPECT_EQ(full.GetErrorMessage(nullptr, 32), 0);
  CFileException strange(99);
  EXPECT_EQ(strange.GetErrorMessage(text, 32), 1);
  EXPECT_EQ(TextOf(text), QXT("An unknown file error occurred."));
  EXPECT_EQ(CInvalidArgException().GetErrorMessage(text, 32), 1);
  EXPECT_EQ(TextOf(text), QXT("An argument is not valid."));
}

}  // namespace
