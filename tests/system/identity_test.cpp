// identity_test.cpp - user, domain and computer over answers of every kind.

#include "qxv/identity.h"

#include "support/fake_identity.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qxv::os::ScopedIdentity;
using support::FakeIdentity;
using support::Repeat;
using support::Text;
using support::TextOf;

class Identity : public testing::Test {
 protected:
  FakeIdentity fake;
  ScopedIdentity scope{fake};
  CQXString domain = QXT("before");
  CQXString computer = QXT("before");
};

using IdentityKept = Identity;

TEST_F(Identity, LanguageIdentifier0804IsLanguage4AndSublanguage2) {
  fake.language = 0x0804;
  EXPECT_EQ(QXVGetThisPrimaryLangID(), 4u);
  EXPECT_EQ(QXVGetThisSubLangID(), 2u);
}

TEST_F(Identity, TheLanguageTakesTenBitsAndTheSublanguageTheOtherSix) {
  fake.language = 0xFFFF;
  EXPECT_EQ(QXVGetThisPrimaryLangID(), 0x3FFu);
  EXPECT_EQ(QXVGetThisSubLangID(), 0x3Fu);
  fake.language = 0x0400;
  EXPECT_EQ(QXVGetThisPrimaryLangID(), 0u);
  EXPECT_EQ(QXVGetThisSubLangID(), 1u);
}

TEST_F(Identity, TheUserNameIsHandedOutAsItIs) {
  fake.user = QXT("Zo\u00EB \u4E2D");
  EXPECT_EQ(QXVGetLogInUserName(), QXT("Zo\u00EB \u4E2D"));
}

TEST_F(Identity, AUserNameOf255CharactersIsTheLongest) {
  fake.user = Repeat(QXT('u'), 255);
  EXPECT_EQ(QXVGetLogInUserName().GetLength(), 255);
  fake.user = Repeat(QXT('u'), 256);
  EXPECT_EQ(QXVGetLogInUserName(), QXT(""));
  fake.user = Repeat(QXT('u'), 300);
  EXPECT_EQ(QXVGetLogInUserName(), QXT(""));
}

TEST_F(Identity, AUserThatCannotBeToldIsEmpty) { EXPECT_EQ(QXVGetLogInUserName(), QXT("")); }

TEST_F(Identity, ALocalLogonGivesTheComputerAsDomainAndZeroWhateverTheCase) {
  fake.workstation = QXT("EDIT-01");
  fake.users = {{{QXT("ann"), QXT("edit-01")}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 0);
  EXPECT_EQ(domain, QXT("edit-01"));
  EXPECT_EQ(computer, QXT("EDIT-01"));
}

TEST_F(Identity, ALogonToADomainGivesOne) {
  fake.workstation = QXT("EDIT-01");
  fake.users = {{{QXT("ann"), QXT("STUDIO")}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 1);
  EXPECT_EQ(domain, QXT("STUDIO"));
}

TEST_F(Identity, ADomainOfTheSameLengthAsTheComputerIsStillAnother) {
  fake.workstation = QXT("EDIT-01");
  fake.users = {{{QXT("ann"), QXT("EDIT-02")}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 1);
}

TEST_F(Identity, TheLastOfSeveralUsersDecidesTheDomain) {
  fake.workstation = QXT("EDIT-01");
  fake.users = {{{QXT("ann"), QXT("STUDIO")}, {QXT("bob"), QXT("NEWS")}, {QXT("eve"), QXT("EDIT-01")}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 0);
  EXPECT_EQ(domain, QXT("EDIT-01"));
}

TEST_F(Identity, NobodyLoggedOnGivesAnEmptyDomain) {
  fake.workstation = QXT("EDIT-01");
  fake.users.emplace();
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 1);
  EXPECT_EQ(domain, QXT(""));
  EXPECT_EQ(computer, QXT("EDIT-01"));
  EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), 0);
}

TEST_F(Identity, UsersThatCannotBeListedGiveAnEmptyDomain) {
  fake.workstation = QXT("EDIT-01");
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 1);
  EXPECT_EQ(domain, QXT(""));
}

TEST_F(Identity, AComputerThatCannotBeToldIsEmptyToo) {
  fake.users = {{{QXT("ann"), QXT("STUDIO")}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 1);
  EXPECT_EQ(domain, QXT("STUDIO"));
  EXPECT_EQ(computer, QXT(""));
}

TEST_F(Identity, TwoFailuresAreTwoEmptyTextsThatDoNotDiffer) {
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 0);
  EXPECT_EQ(domain, QXT(""));
  EXPECT_EQ(computer, QXT(""));
}

TEST_F(Identity, TheDomainAndTheComputerMayBeStoredInOneText) {
  fake.workstation = QXT("EDIT-01");
  fake.users = {{{QXT("ann"), QXT("STUDIO")}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, domain), 1);
  EXPECT_EQ(domain, QXT("EDIT-01"));
}

TEST_F(Identity, TheComputerAloneIsStoredAlsoAfterAFailure) {
  fake.workstation = QXT("EDIT-01");
  QXVGetLogInComputer(computer);
  EXPECT_EQ(computer, QXT("EDIT-01"));
  fake.workstation.reset();
  QXVGetLogInComputer(computer);
  EXPECT_EQ(computer, QXT(""));
}

TEST_F(Identity, NamesOf300CharactersAreCutTo255Bytes) {
  fake.workstation = Repeat(QXT('c'), 300);
  fake.users = {{{QXT("ann"), Repeat(QXT('c'), 256)}}};
  EXPECT_EQ(QXVGetLogInDoMain(domain, computer), 0) << "behind the cut they are one";
  EXPECT_EQ(TextOf(computer), Repeat(QXT('c'), 255));
  EXPECT_EQ(TextOf(domain), Repeat(QXT('c'), 255));
}

TEST_F(Identity, ANameOf255BytesIsNotCut) {
  fake.workstation = Repeat(QXT('c'), 254) + QXT("d");
  QXVGetLogInComputer(computer);
  EXPECT_EQ(TextOf(computer), Repeat(QXT('c'), 254) + QXT("d"));
}

TEST_F(IdentityKept, CharactersOutsideTheAnsiPageDoNotSurvive) {
  fake.workstation = QXT("caf\u00E9 \u4E2D\U0001F3B5 x");  // the page of the tests is 1252
  QXVGetLogInComputer(computer);
  EXPECT_EQ(computer, QXT("caf\u00E9 ??? x"));
}

TEST_F(Identity, TheLastOfSeveralUsersDecidesThePrivilege) {
  fake.users = {{{QXT("ann"), QXT("A")}, {QXT("bob"), QXT("A")}}};
  fake.privileges = {{QXT("ann"), 2}, {QXT("bob"), 1}};
  EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), 0);
  fake.privileges = {{QXT("ann"), 0}, {QXT("bob"), 2}};
  EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), 1);
}

TEST_F(Identity, OnlyPrivilege2IsAnAdministrator) {
  fake.users = {{{QXT("ann"), QXT("A")}}};
  for (const std::uint32_t privilege : {0u, 1u, 2u, 3u, 0xFFFFFFFFu}) {
    fake.privileges[QXT("ann")] = privilege;
    EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), privilege == 2 ? 1 : 0) << privilege;
  }
}

TEST_F(Identity, NoUsersOrAnUnknownUserIsNoAdministrator) {
  EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), 0) << "not listed";
  fake.users = {{{QXT("ann"), QXT("A")}}};
  EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), 0) << "not known";
}

TEST_F(Identity, AUserNameOf300CharactersIsAskedForWhole) {
  fake.users = {{{Repeat(QXT('u'), 300), QXT("A")}}};
  fake.privileges[Repeat(QXT('u'), 300)] = 2;
  EXPECT_EQ(QXVGetUserIsHaveRight_ADMINISTRATOR(), 1);
}

}  // namespace
