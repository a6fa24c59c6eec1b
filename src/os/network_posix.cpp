// network_posix.cpp - the host's name, the Samba server's shares, drive letters over mounted shares, the system's resolver.

#include "os/network.h"

#include "os/drive_map.h"
#include "os/host_lookup.h"
#include "os/mount_table.h"
#include "os/network_places.h"
#include "os/samba.h"

#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace qxv::os {
namespace {

constexpr std::size_t kLongestConnection = 1023;  // units

struct FreeText {
  void operator()(char* text) const noexcept { std::free(text); }
};

std::string WithoutLinks(const std::string& folder) {
  const std::unique_ptr<char, FreeText> real(::realpath(folder.empty() ? "/" : folder.c_str(), nullptr));
  return real != nullptr ? real.get() : folder;
}

// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): sources are not destroyed through their base
class LinuxNetwork final : public NetworkSource {
 public:
  // Nothing has to be started here.
  bool StartSockets(std::uint16_t version, std::uint16_t& granted) noexcept override {
    granted = version;
    return true;
  }
  void StopSockets() noexcept override {}

  bool ComputerName(Text& name) override {
    char host[256] = {};
    if (::gethostname(host, sizeof host - 1) != 0) {
      return false;
    }
    const std::string_view whole(host);
    name = TextFromUtf8(whole.substr(0, whole.find('.')));
    return true;
  }

  bool PublishedShares(const Text& container, std::vector<PublishedShare>& shares) override {
    const std::optional<SambaServer> server = ReadSambaServer(SambaConfigurationPath());
    if (!server) {
      return false;
    }
    std::vector<PublishedShare> found;
    for (const SambaShare& share : server->shares) {
      Text folder;
      if (DrivePathOf(share.folder, folder)) {
        folder.resize(folder.find_last_not_of(QXT('\\')) + 1);  // the root of a drive as X: so that all below lies in it
        Text settings = QXT("Path=") + folder;
        settings += QXT('\0');
        found.push_back({container + QXT('\\') + TextFromUtf8(share.name), std::move(settings)});
      }
    }
    shares = std::move(found);
    return true;
  }

  std::vector<ConnectedDrive> ConnectedDrives() override {
    std::vector<ConnectedDrive> connected;
    const std::vector<Mount> mounts = ReadMounts();
    for (const Drive& drive : MappedDrives()) {
      Text name = NetworkNameOfFolder(WithoutLinks(drive.root), mounts);
      if (drive.letter >= kFirstNetworkDrive && drive.letter <= kLastNetworkDrive && !name.empty() &&
          name.size() <= kLongestConnection) {
        connected.push_back({drive.letter, std::move(name)});
      }
    }
    return connected;
  }

  bool LookUpHost(const std::string& name, std::vector<HostAddress>& addresses) override { return ResolveHost(name, addresses); }
};

constinit LinuxNetwork systemNetwork;

}  // namespace

NetworkSource& SystemNetwork() noexcept { return systemNetwork; }

}  // namespace qxv::os
