// identity_posix.cpp - the login records, the user and group tables, the host's name and the Samba server's workgroup.

#include "os/identity.h"

#include "os/code_page.h"
#include "os/language.h"
#include "os/logon_records.h"
#include "os/name_match.h"
#include "os/native_file.h"
#include "os/network.h"
#include "os/network_places.h"
#include "os/samba.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace qxv::os {
namespace {

constexpr std::size_t kLargestLogonRecords = 16 << 20;
constexpr std::size_t kLargestTableEntry = 1 << 20;
constexpr const char* kAdministrators[] = {"sudo", "wheel", "admin"};

struct User {
  std::string name;
  uid_t number;
  gid_t group;
};

// Calls a reentrant look-up with as much room as its entry takes.
template <typename Entry, typename Call>
bool ReadEntry(Entry& entry, std::vector<char>& room, Call call) {
  for (room.resize(1024); room.size() <= kLargestTableEntry; room.resize(room.size() * 4)) {
    Entry* found = nullptr;
    const int error = call(&entry, room.data(), room.size(), &found);
    if (error != ERANGE) {
      return error == 0 && found != nullptr;
    }
  }
  return false;
}

template <typename Call>
std::optional<User> FindUser(Call call) {
  passwd entry{};
  std::vector<char> room;
  if (!ReadEntry(entry, room, call)) {
    return std::nullopt;
  }
  return User{entry.pw_name, entry.pw_uid, entry.pw_gid};
}

std::optional<User> UserOf(uid_t number) {
  return FindUser([&](passwd* entry, char* room, std::size_t size, passwd** found) {
    return ::getpwuid_r(number, entry, room, size, found);
  });
}

std::optional<User> UserNamed(const std::string& name) {
  return FindUser([&](passwd* entry, char* room, std::size_t size, passwd** found) {
    return ::getpwnam_r(name.c_str(), entry, room, size, found);
  });
}

std::vector<gid_t> GroupsOf(const User& user) {
  constexpr std::size_t kMostGroups = 65536;  // the kernel's own limit
  std::vector<gid_t> groups(64);
  for (;;) {
    int count = static_cast<int>(groups.size());
    if (::getgrouplist(user.name.c_str(), user.group, groups.data(), &count) >= 0) {
      groups.resize(static_cast<std::size_t>(count));
      return groups;
    }
    if (groups.size() > kMostGroups) {
      return {};
    }
    groups.resize(groups.size() * 4);
  }
}

bool IsAdministrator(const User& user) {
  if (user.number == 0) {
    return true;
  }
  const std::vector<gid_t> groups = GroupsOf(user);
  return std::any_of(std::begin(kAdministrators), std::end(kAdministrators), [&](const char* name) {
    group entry{};
    std::vector<char> room;
    return ReadEntry(entry, room,
                     [&](group* out, char* bytes, std::size_t size, group** found) {
                       return ::getgrnam_r(name, out, bytes, size, found);
                     }) &&
           std::find(groups.begin(), groups.end(), entry.gr_gid) != groups.end();
  });
}

// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): sources are not destroyed through their base
class LinuxIdentity final : public IdentitySource {
 public:
  std::uint16_t SystemLanguage() noexcept override { return LanguageOfLocale(EnvironmentLocale()); }

  bool CurrentUserName(Text& name) override {
    const std::optional<User> user = UserOf(::geteuid());
    if (!user) {
      return false;
    }
    name = TextFromUtf8(user->name);
    return true;
  }

  // The user of this process counts as logged on: services and containers have no login records.
  bool LoggedOnUsers(std::vector<LoggedOnUser>& users) override {
    std::string records;
    (void)ReadNativeFile(LogonRecordPath(), kLargestLogonRecords, records);  // without it nobody has logged in
    std::vector<std::string> names = LoggedOnNames(records);
    const std::optional<User> own = UserOf(::geteuid());
    if (own && std::find(names.begin(), names.end(), own->name) == names.end()) {
      names.push_back(own->name);
    }
    Text computer;
    (void)WorkstationName(computer);
    std::vector<LoggedOnUser> found;
    for (const std::string& name : names) {
      const std::size_t separator = name.find('\\');  // DOMAIN\user, as domain members name their users
      found.push_back({TextFromUtf8(name), separator == std::string::npos ? computer : TextFromUtf8(name.substr(0, separator))});
    }
    users = std::move(found);
    return true;
  }

  bool WorkstationName(Text& name) override { return SystemNetwork().ComputerName(name); }

  bool UserPrivilege(const Text& user, std::uint32_t& privilege) override {
    const std::optional<User> found = UserNamed(Utf8FromText(user));
    if (!found) {
      return false;
    }
    privilege = IsAdministrator(*found) ? kPrivilegeAdministrator : kPrivilegeUser;
    return true;
  }

  bool LanProviderName(Text& name) override {
    if (!ReadSambaServer(SambaConfigurationPath())) {
      return false;
    }
    name = QXT("Samba");
    return true;
  }

  // What this computer is a member of is known, other servers are not asked.
  bool ParentOfServer(const Text& server, const Text&, Text& parent) override {
    const std::optional<SambaServer> samba = ReadSambaServer(SambaConfigurationPath());
    Text computer;
    if (!samba || !WorkstationName(computer) ||
        (!EqualsIgnoringCase(server, QXT("\\\\") + computer) && !EqualsIgnoringCase(server, QXT("\\\\localhost")))) {
      return false;
    }
    parent = TextFromUtf8(samba->workgroup);
    return true;
  }
};

constinit LinuxIdentity systemIdentity;

}  // namespace

IdentitySource& SystemIdentity() noexcept { return systemIdentity; }

bool LocaleTextOf(const std::string& bytes, Text& text) { return MultiByteToWide(kCodePageAnsi, bytes, text); }

}  // namespace qxv::os
