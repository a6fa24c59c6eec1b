// fake_identity.h - a workstation as the test wants it. What is not set fails.
#pragma once

#include "os/identity.h"

#include <map>
#include <optional>
#include <vector>

namespace support {

struct FakeIdentity : qxv::os::IdentitySource {
  using Text = qxv::os::Text;

  std::uint16_t language = 0x0409;
  std::optional<Text> user;
  std::optional<std::vector<qxv::os::LoggedOnUser>> users;
  std::optional<Text> workstation;
  std::map<Text, std::uint32_t> privileges;
  std::optional<Text> provider;
  std::map<Text, Text> parents;  // by \\server

  std::vector<Text> askedProviders;  // by which a server's parent was asked for

  std::uint16_t SystemLanguage() noexcept override { return language; }
  bool CurrentUserName(Text& name) override { return Answer(user, name); }
  bool LoggedOnUsers(std::vector<qxv::os::LoggedOnUser>& found) override { return Answer(users, found); }
  bool WorkstationName(Text& name) override { return Answer(workstation, name); }
  bool UserPrivilege(const Text& name, std::uint32_t& privilege) override { return Find(privileges, name, privilege); }
  bool LanProviderName(Text& name) override { return Answer(provider, name); }
  bool ParentOfServer(const Text& server, const Text& by, Text& parent) override {
    askedProviders.push_back(by);
    return Find(parents, server, parent);
  }

 private:
  template <typename Value>
  static bool Answer(const std::optional<Value>& answer, Value& out) {
    out = answer.value_or(out);
    return answer.has_value();
  }
  template <typename Value>
  static bool Find(const std::map<Text, Value>& answers, const Text& key, Value& out) {
    const auto answer = answers.find(key);
    out = answer != answers.end() ? answer->second : out;
    return answer != answers.end();
  }
};

}  // namespace support
