// identity.h - who works here, and where: language, user, domain, workstation, privilege, provider and container of a server.
// All questions go through one replaceable source. docs/porting.md says where Linux takes the answers.
#pragma once

#include "os/utf.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace qxv::os {

/// A user who is logged on to this workstation.
struct LoggedOnUser {
  Text name;
  Text logonDomain;  // the computer's name for a local user
};

inline constexpr std::uint32_t kPrivilegeGuest = 0;
inline constexpr std::uint32_t kPrivilegeUser = 1;
inline constexpr std::uint32_t kPrivilegeAdministrator = 2;

/// Answers what is asked here. A function that gives false leaves its output as it was; any of them may throw std::bad_alloc.
class IdentitySource {
 public:
  /// The system's language identifier: the primary language in the lower ten bits, the sublanguage above them.
  virtual std::uint16_t SystemLanguage() noexcept = 0;

  [[nodiscard]] virtual bool CurrentUserName(Text& name) = 0;

  /// In the order of the system; the one that counts is the last. May be none.
  [[nodiscard]] virtual bool LoggedOnUsers(std::vector<LoggedOnUser>& users) = 0;

  /// This computer's name as the workstation service says it.
  [[nodiscard]] virtual bool WorkstationName(Text& name) = 0;

  /// kPrivilege... of a user; false for one that does not exist.
  [[nodiscard]] virtual bool UserPrivilege(const Text& user, std::uint32_t& privilege) = 0;

  /// The name of the network provider for LAN Manager networks.
  [[nodiscard]] virtual bool LanProviderName(Text& name) = 0;

  /// The network container (domain or workgroup) of a server.
  /// @param server  as \\server
  [[nodiscard]] virtual bool ParentOfServer(const Text& server, const Text& provider, Text& parent) = 0;

 protected:
  ~IdentitySource() = default;  // sources are not owned here; the system's one has nothing to destroy and serves to the very end
};

/// The source in use.
IdentitySource& Identity() noexcept;

/// The system itself.
IdentitySource& SystemIdentity() noexcept;

/// Puts a source in the place of the system for the whole process; the earlier one comes back at the end. For tests: no question
/// of another thread may be under way when it begins or ends.
class ScopedIdentity {
 public:
  explicit ScopedIdentity(IdentitySource& source) noexcept;
  ScopedIdentity(const ScopedIdentity&) = delete;
  ScopedIdentity& operator=(const ScopedIdentity&) = delete;
  ~ScopedIdentity();

 private:
  IdentitySource* m_before;
};

/// Bytes as text by the C run-time's rule for the current locale; on Linux, whose wide characters are others, by the ANSI code
/// page. False for bytes that are no text there.
[[nodiscard]] bool LocaleTextOf(const std::string& bytes, Text& text);

}  // namespace qxv::os
