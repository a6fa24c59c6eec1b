// identity.cpp - the user, the domain and the computer.

#include "qxv/identity.h"

#include "os/code_page.h"
#include "os/identity.h"

#include <string>
#include <vector>

namespace {

using namespace qxv::os;

constexpr unsigned kPrimaryLanguageMask = 0x3FF;
constexpr unsigned kSubLanguageShift = 10;
constexpr std::size_t kLongestUserName = 255;
constexpr std::size_t kAnsiBytes = 255;  // and a terminator

bool LastLoggedOnUser(LoggedOnUser& user) {
  std::vector<LoggedOnUser> users;
  if (!Identity().LoggedOnUsers(users) || users.empty()) {
    return false;
  }
  user = users.back();
  return true;
}

// The bytes of as many whole characters as fit.
std::string AnsiBytesOf(TextView text) {
  std::string bytes;
  std::string character;
  for (std::size_t at = 0; at < text.size();) {
    const bool isPair = (text[at] & 0xFC00) == 0xD800 && at + 1 < text.size() && (text[at + 1] & 0xFC00) == 0xDC00;
    const std::size_t units = isPair ? 2 : 1;
    if (!WideToMultiByte(kCodePageAnsi, text.substr(at, units), character) || bytes.size() + character.size() > kAnsiBytes) {
      break;
    }
    bytes += character;
    at += units;
  }
  return bytes;
}

// KEPT: names go through the ANSI code page, so characters outside it do not survive (both names of a comparison lose the same).
//   Pinned by IdentityKept.CharactersOutsideTheAnsiPageDoNotSurvive.
void StoreThroughAnsi(const Text& name, CQXString& out) {
  Text text;
  if (!LocaleTextOf(AnsiBytesOf(name), text)) {
    text.clear();
  }
  out = text.c_str();
}

}  // namespace

unsigned int QXVGetThisPrimaryLangID() { return Identity().SystemLanguage() & kPrimaryLanguageMask; }

unsigned int QXVGetThisSubLangID() { return static_cast<unsigned>(Identity().SystemLanguage()) >> kSubLanguageShift; }

CQXString QXVGetLogInUserName() {
  Text name;
  if (!Identity().CurrentUserName(name) || name.size() > kLongestUserName) {
    return {};
  }
  return name.c_str();
}

int QXVGetLogInDoMain(CQXString& logonDomain, CQXString& computerName) {
  LoggedOnUser user;
  (void)LastLoggedOnUser(user);  // nobody leaves the domain empty
  CQXString domain;
  CQXString computer;
  StoreThroughAnsi(user.logonDomain, domain);
  QXVGetLogInComputer(computer);
  logonDomain = domain;
  computerName = computer;
  return domain.CompareNoCase(computer) != 0 ? 1 : 0;
}

void QXVGetLogInComputer(CQXString& computerName) {
  Text name;
  (void)Identity().WorkstationName(name);  // a failure leaves it empty
  StoreThroughAnsi(name, computerName);
}

int QXVGetUserIsHaveRight_ADMINISTRATOR() {
  LoggedOnUser user;
  std::uint32_t privilege = 0;
  return LastLoggedOnUser(user) && Identity().UserPrivilege(user.name, privilege) && privilege == kPrivilegeAdministrator ? 1 : 0;
}
