// network_win.cpp - the workstation's own answers: the provider library for shares and drives, the registry for the folders of
// shares, the sockets library for addresses.

#include "os/network.h"

#include "os/c_runtime.h"
#include "os/host_lookup.h"
#include "os/provider_library_win.h"
#include "os/registry.h"
#include "os/win_api.h"

#include <winnetwk.h>
#include <winsock2.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

namespace qxv::os {
namespace {

constexpr DWORD kNameRoom = 260;
constexpr DWORD kConnectionRoom = 1024;
constexpr std::size_t kEnumerationBytes = 16384;
constexpr std::size_t kSettingsBytes = 2048;
constexpr const QXChar* kShareSettings = QXT("SYSTEM\\CurrentControlSet\\Services\\LanmanServer\\Shares");

struct FreeGlobal {
  void operator()(void* block) const noexcept { ::GlobalFree(block); }
};
using GlobalBlock = std::unique_ptr<void, FreeGlobal>;

GlobalBlock ZeroedBlock() noexcept { return GlobalBlock(::GlobalAlloc(GPTR, kEnumerationBytes)); }

// A text that an entry points to, which ends inside the block whatever the block holds.
Text TextInside(const void* block, const QXChar* text) {
  const auto begin = reinterpret_cast<std::uintptr_t>(block);
  const auto at = reinterpret_cast<std::uintptr_t>(text);
  if (at < begin || at - begin >= kEnumerationBytes) {
    return {};
  }
  return Text(text, TextLength(text, (kEnumerationBytes - (at - begin)) / sizeof(QXChar)));
}

// An enumeration of a container's shares.
class ShareEnumeration {
 public:
  explicit ShareEnumeration(const Text& container) {
    GlobalBlock block = ZeroedBlock();
    const auto open = m_library.Find<decltype(::WNetOpenEnumW)>("WNetOpenEnumW");
    if (block == nullptr || open == nullptr) {
      return;
    }
    auto* const record = static_cast<NETRESOURCEW*>(block.get());
    Text remoteName = container;
    record->dwScope = RESOURCE_GLOBALNET;
    record->dwDisplayType = RESOURCEDISPLAYTYPE_SHARE;
    record->dwUsage = RESOURCEUSAGE_CONTAINER;
    record->lpRemoteName = remoteName.data();
    m_open = open(RESOURCE_GLOBALNET, RESOURCETYPE_ANY, 0 /*usage*/, record, &m_handle) == NO_ERROR;
  }
  ShareEnumeration(const ShareEnumeration&) = delete;
  ShareEnumeration& operator=(const ShareEnumeration&) = delete;
  ~ShareEnumeration() {
    const auto close = m_library.Find<decltype(::WNetCloseEnum)>("WNetCloseEnum");
    if (m_open && close != nullptr) {
      (void)close(m_handle);
    }
  }

  [[nodiscard]] bool ReadNames(std::vector<Text>& names) {
    const GlobalBlock block = ZeroedBlock();
    const auto next = m_library.Find<decltype(::WNetEnumResourceW)>("WNetEnumResourceW");
    if (!m_open || block == nullptr || next == nullptr) {
      return false;
    }
    DWORD count = 0xFFFFFFFF;
    DWORD bytes = kEnumerationBytes;
    // KEPT: asked once, so what does not fit into the block is not seen (the table stays small and is built in one turn). Pinned
    //   by NetworkProviderKept.SharesBehindTheFirstBlockAreNotSeen.
    if (next(m_handle, &count, block.get(), &bytes) != NO_ERROR) {
      return false;
    }
    const auto* const entries = static_cast<const NETRESOURCEW*>(block.get());
    for (std::size_t i = 0; i < std::min<std::size_t>(count, kEnumerationBytes / sizeof *entries); ++i) {
      if (Text name = TextInside(block.get(), entries[i].lpRemoteName); !name.empty()) {
        names.push_back(std::move(name));
      }
    }
    return true;
  }

 private:
  ProviderLibrary m_library;
  HANDLE m_handle = nullptr;
  bool m_open = false;
};

bool ReadSettings(HKEY key, const QXChar* share, Text& settings) {
  unsigned char bytes[kSettingsBytes] = {};
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  if (QueryRegistryValue(key, share, type, bytes, size) != kErrorNone) {
    return false;
  }
  settings.assign(std::min<std::size_t>(size, sizeof bytes) / sizeof(QXChar), QXT('\0'));
  std::memcpy(settings.data(), bytes, settings.size() * sizeof(QXChar));
  return true;
}

// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): sources are not destroyed through their base
class WindowsNetwork final : public NetworkSource {
 public:
  bool StartSockets(std::uint16_t version, std::uint16_t& granted) noexcept override {
    WSADATA data{};
    if (::WSAStartup(version, &data) != 0) {
      return false;
    }
    granted = data.wVersion;
    return true;
  }

  void StopSockets() noexcept override { (void)::WSACleanup(); }

  bool ComputerName(Text& name) override {
    QXChar units[kNameRoom] = {};
    DWORD room = kNameRoom;
    if (::GetComputerNameW(units, &room) == 0) {
      return false;
    }
    name.assign(units, TextLength(units, kNameRoom));
    return true;
  }

  bool PublishedShares(const Text& container, std::vector<PublishedShare>& shares) override {
    std::vector<Text> names;
    RegistryKey key;
    if (!ShareEnumeration(container).ReadNames(names) || names.empty() ||
        key.Open(HKEY_LOCAL_MACHINE, kShareSettings, kRegistryQueryValues) != kErrorNone) {
      return false;
    }
    std::vector<PublishedShare> found;
    for (Text& name : names) {
      const Text share = name.substr(name.rfind(QXT('\\')) + 1);  // npos + 1 is 0
      Text settings;
      if (ReadSettings(key.Key(), share.c_str(), settings)) {
        found.push_back({std::move(name), std::move(settings)});
      }
    }
    shares = std::move(found);
    return true;
  }

  std::vector<ConnectedDrive> ConnectedDrives() override {
    const ProviderLibrary library;
    const auto ask = library.Find<decltype(::WNetGetConnectionW)>("WNetGetConnectionW");
    std::vector<ConnectedDrive> drives;
    for (QXChar letter = kFirstNetworkDrive; ask != nullptr && letter <= kLastNetworkDrive; ++letter) {
      const QXChar drive[] = {letter, QXT(':'), 0};
      QXChar units[kConnectionRoom] = {};
      DWORD room = kConnectionRoom;
      if (ask(drive, units, &room) == NO_ERROR && units[0] != 0) {
        drives.push_back({letter, Text(units, TextLength(units, kConnectionRoom - 1))});
      }
    }
    return drives;
  }

  bool LookUpHost(const std::string& name, std::vector<HostAddress>& addresses) override { return ResolveHost(name, addresses); }
};

constinit WindowsNetwork systemNetwork;

}  // namespace

NetworkSource& SystemNetwork() noexcept { return systemNetwork; }

}  // namespace qxv::os
