// network.h - the computer's place on the network: its name, the shares it publishes, its connected drives, addresses of hosts.
// All questions go through one replaceable source. docs/porting.md says where Linux takes the answers.
#pragma once

#include "os/utf.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace qxv::os {

/// A share as its server describes it.
struct PublishedShare {
  Text remoteName;  // \\NAME\share
  Text settings;    // texts such as "Path=D:\media", a zero unit behind each; not always one behind the last
};

/// A drive letter and what it is connected to.
struct ConnectedDrive {
  QXChar letter;
  Text remoteName;  // such as \\server\share, never empty
};

inline constexpr QXChar kFirstNetworkDrive = QXT('C');
inline constexpr QXChar kLastNetworkDrive = QXT('Z');

/// The four bytes of an address of version 4, in network order.
using HostAddress = std::array<unsigned char, 4>;

/// Answers what is asked here. A function that gives false leaves its output as it was; any of them may throw std::bad_alloc.
class NetworkSource {
 public:
  /// Starts the sockets library once more; each success is to be followed by one StopSockets.
  /// @param version  the minor version in the high byte, the major one in the low byte, as granted
  [[nodiscard]] virtual bool StartSockets(std::uint16_t version, std::uint16_t& granted) noexcept = 0;
  virtual void StopSockets() noexcept = 0;

  /// The name that other computers know this one by, as the system writes it.
  [[nodiscard]] virtual bool ComputerName(Text& name) = 0;

  /// The shares below a container such as \\NAME. Windows asks once, with 16,384 bytes for all entries, and leaves out those
  /// whose settings take more than 2,048 bytes.
  [[nodiscard]] virtual bool PublishedShares(const Text& container, std::vector<PublishedShare>& shares) = 0;

  /// The network drives among C to Z, in this order. One whose remote name is longer than 1,023 units is left out.
  virtual std::vector<ConnectedDrive> ConnectedDrives() = 0;

  /// The addresses of a host, which may be none. The name is in the ANSI code page; an empty one is this computer.
  [[nodiscard]] virtual bool LookUpHost(const std::string& name, std::vector<HostAddress>& addresses) = 0;

 protected:
  ~NetworkSource() = default;  // sources are not owned here; the system's one has nothing to destroy and serves to the very end
};

/// The source in use.
NetworkSource& Network() noexcept;

/// The system itself.
NetworkSource& SystemNetwork() noexcept;

/// Puts a source in the place of the system for the whole process; the earlier one comes back at the end. For tests: no question
/// of another thread may be under way when it begins or ends.
class ScopedNetwork {
 public:
  explicit ScopedNetwork(NetworkSource& source) noexcept;
  ScopedNetwork(const ScopedNetwork&) = delete;
  ScopedNetwork& operator=(const ScopedNetwork&) = delete;
  ~ScopedNetwork();

 private:
  NetworkSource* m_before;
};

/// Keeps the sockets library started.
class SocketsLibrary {
 public:
  explicit SocketsLibrary(std::uint16_t version) noexcept : m_started(Network().StartSockets(version, m_granted)) {}
  SocketsLibrary(const SocketsLibrary&) = delete;
  SocketsLibrary& operator=(const SocketsLibrary&) = delete;
  ~SocketsLibrary() { Stop(); }

  bool IsStarted() const noexcept { return m_started; }
  std::uint16_t Granted() const noexcept { return m_granted; }

  void Stop() noexcept {
    if (m_started) {
      m_started = false;
      Network().StopSockets();
    }
  }

 private:
  std::uint16_t m_granted = 0;
  bool m_started;
};

/// The addresses of a host in dotted form, which may be none. False, with the output as it was, when the name cannot be resolved.
/// @param codePage  how the name becomes bytes for the resolver (os/code_page.h)
[[nodiscard]] bool AddressesOfHost(TextView host, unsigned codePage, std::vector<Text>& addresses);

}  // namespace qxv::os
