// identity_win.cpp - the workstation service and the network provider library.

#include "os/identity.h"

#include "os/c_runtime.h"
#include "os/provider_library_win.h"
#include "os/win_api.h"

#include <lm.h>
#include <winnetwk.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace qxv::os {
namespace {

constexpr DWORD kUserNameRoom = 256;
constexpr DWORD kEnumerationBytes = 16384;
constexpr DWORD kProviderRoom = 512;  // units: the call counts units, not bytes
constexpr DWORD kParentBytes = 2080;

struct FreeNetApi {
  void operator()(void* buffer) const noexcept { (void)::NetApiBufferFree(buffer); }
};
using NetApiBuffer = std::unique_ptr<BYTE, FreeNetApi>;

Text TextOrNothing(const QXChar* text) { return text == nullptr ? Text() : Text(text); }

// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): sources are not destroyed through their base
class WindowsIdentity final : public IdentitySource {
 public:
  std::uint16_t SystemLanguage() noexcept override { return ::GetSystemDefaultLangID(); }

  bool CurrentUserName(Text& name) override {
    QXChar units[kUserNameRoom] = {};
    DWORD room = kUserNameRoom;
    if (::GetUserNameW(units, &room) == 0) {
      return false;
    }
    name.assign(units, TextLength(units, kUserNameRoom));
    return true;
  }

  bool LoggedOnUsers(std::vector<LoggedOnUser>& users) override {
    BYTE* raw = nullptr;
    DWORD count = 0;
    DWORD total = 0;
    DWORD resume = 0;
    const NET_API_STATUS status =
        ::NetWkstaUserEnum(nullptr /*server*/, 1 /*level*/, &raw, kEnumerationBytes, &count, &total, &resume);
    const NetApiBuffer buffer(raw);
    if (status != NERR_Success || buffer == nullptr) {
      return false;
    }
    const auto* const entries = reinterpret_cast<const WKSTA_USER_INFO_1*>(buffer.get());
    std::vector<LoggedOnUser> found;
    for (DWORD i = 0; i < count; ++i) {
      found.push_back({TextOrNothing(entries[i].wkui1_username), TextOrNothing(entries[i].wkui1_logon_domain)});
    }
    users = std::move(found);
    return true;
  }

  bool WorkstationName(Text& name) override {
    BYTE* raw = nullptr;
    const NET_API_STATUS status = ::NetWkstaGetInfo(nullptr /*server*/, 100 /*level*/, &raw);
    const NetApiBuffer buffer(raw);
    if (status != NERR_Success || buffer == nullptr) {
      return false;
    }
    name = TextOrNothing(reinterpret_cast<const WKSTA_INFO_100*>(buffer.get())->wki100_computername);
    return true;
  }

  bool UserPrivilege(const Text& user, std::uint32_t& privilege) override {
    BYTE* raw = nullptr;
    const NET_API_STATUS status = ::NetUserGetInfo(nullptr /*server*/, user.c_str(), 1 /*level*/, &raw);
    const NetApiBuffer buffer(raw);
    if (status != NERR_Success || buffer == nullptr) {
      return false;
    }
    privilege = reinterpret_cast<const USER_INFO_1*>(buffer.get())->usri1_priv;
    return true;
  }

  bool LanProviderName(Text& name) override {
    const ProviderLibrary library;
    const auto ask = library.Find<decltype(::WNetGetProviderNameW)>("WNetGetProviderNameW");
    QXChar units[kProviderRoom] = {};
    DWORD room = kProviderRoom;
    if (ask == nullptr || ask(WNNC_NET_LANMAN, units, &room) != NO_ERROR) {
      return false;
    }
    name.assign(units, TextLength(units, kProviderRoom));
    return true;
  }

  bool ParentOfServer(const Text& server, const Text& provider, Text& parent) override {
    const ProviderLibrary library;
    const auto ask = library.Find<decltype(::WNetGetResourceParentW)>("WNetGetResourceParentW");
    if (ask == nullptr) {
      return false;
    }
    Text remoteName = server;
    Text providerName = provider;
    NETRESOURCEW record{};
    record.dwScope = RESOURCE_GLOBALNET;
    record.dwDisplayType = RESOURCEDISPLAYTYPE_SERVER;
    record.dwUsage = RESOURCEUSAGE_CONTAINER;
    record.lpRemoteName = remoteName.data();
    record.lpProvider = providerName.data();
    alignas(NETRESOURCEW) BYTE result[kParentBytes] = {};
    DWORD size = sizeof result;
    if (ask(&record, result, &size) != NO_ERROR) {
      return false;
    }
    parent = TextOrNothing(reinterpret_cast<const NETRESOURCEW*>(result)->lpRemoteName);
    return true;
  }
};

constinit WindowsIdentity systemIdentity;

}  // namespace

IdentitySource& SystemIdentity() noexcept { return systemIdentity; }

bool LocaleTextOf(const std::string& bytes, Text& text) {
  Text units(bytes.size() + 1, QXT('\0'));
  const std::size_t count = std::mbstowcs(units.data(), bytes.c_str(), units.size());
  if (count == static_cast<std::size_t>(-1)) {
    return false;
  }
  units.resize(std::min(count, bytes.size()));
  text = std::move(units);
  return true;
}

}  // namespace qxv::os
