// fake_network.h - a network as the test wants it: shares, drives, hosts, and failures.
#pragma once

#include "os/network.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace support {

struct FakeNetwork : qxv::os::NetworkSource {
  using Text = qxv::os::Text;

  bool socketsStart = true;
  std::uint16_t grantedVersion = 0;  // 0: the one asked for
  std::optional<Text> computer = QXT("VM");
  std::optional<std::vector<qxv::os::PublishedShare>> shares = std::vector<qxv::os::PublishedShare>();
  std::map<QXChar, Text> drives;
  std::map<std::string, std::vector<qxv::os::HostAddress>> hosts;

  // What was asked.
  std::vector<std::uint16_t> versions;
  int running = 0;  // starts without their stop
  std::vector<Text> containers;
  std::vector<std::string> lookUps;

  /// With the settings that a server writes beside the path.
  void Publish(const Text& remoteName, const Text& folder) {
    Text settings;
    for (const Text& setting : {Text(QXT("CSCFlags=0")), Text(QXT("MaxUses=4294967295")), QXT("Path=") + folder,
                                Text(QXT("Permissions=0")), Text(QXT("Type=0")), Text()}) {
      settings += setting;
      settings += QXT('\0');
    }
    shares->push_back({remoteName, settings});
  }

  bool StartSockets(std::uint16_t version, std::uint16_t& granted) noexcept override {
    versions.push_back(version);
    if (socketsStart) {
      granted = grantedVersion != 0 ? grantedVersion : version;
      ++running;
    }
    return socketsStart;
  }
  void StopSockets() noexcept override { --running; }
  bool ComputerName(Text& name) override {
    name = computer.value_or(name);
    return computer.has_value();
  }
  bool PublishedShares(const Text& container, std::vector<qxv::os::PublishedShare>& found) override {
    containers.push_back(container);
    found = shares.value_or(found);
    return shares.has_value();
  }
  std::vector<qxv::os::ConnectedDrive> ConnectedDrives() override {
    std::vector<qxv::os::ConnectedDrive> connected;
    for (const auto& [letter, remoteName] : drives) {
      connected.push_back({letter, remoteName});
    }
    return connected;
  }
  bool LookUpHost(const std::string& name, std::vector<qxv::os::HostAddress>& addresses) override {
    lookUps.push_back(name);
    std::string lower = name;  // names of hosts have no case
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char byte) { return std::tolower(byte); });
    const auto host = hosts.find(lower);
    addresses = host != hosts.end() ? host->second : addresses;
    return host != hosts.end();
  }
};

}  // namespace support
