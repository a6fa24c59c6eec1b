// net_path_exchange.cpp - the table's life, and what it knows of hosts.

#include "netpath/net_path_exchange.h"

#include "foundation/text_scan.h"
#include "netpath/host_text.h"
#include "os/code_page.h"

#include <algorithm>

namespace qxv {
namespace {

constexpr std::uint16_t kSockets22 = 0x0202;
constexpr std::size_t kLongestComputerName = 259;
constexpr os::TextView kLocalHost = QXT("localhost");

}  // namespace

os::TextView ViewOf(const CQXString& text) noexcept {
  const QXChar* const units = text;
  return {units, ScanLength(units)};
}

os::Text ReadComputerName() {
  os::Text name;
  return os::Network().ComputerName(name) && name.size() <= kLongestComputerName ? name : os::Text();
}

CQXNetPathExchange::CQXNetPathExchange() : m_sockets(kSockets22) {
  if (m_sockets.Granted() != kSockets22) {
    m_sockets.Stop();
  }
}

CQXNetPathExchange::~CQXNetPathExchange() {
  items.RemoveAll();
  initialised = 0;
}

void CQXNetPathExchange::Forget() {
  initialised = 0;
  hostPrefix.Empty();
  m_addresses.clear();
}

// None for a host that cannot be resolved. Each host is asked for once: an unknown one can take the resolver seconds.
const std::vector<os::Text>& CQXNetPathExchange::AddressesOf(os::TextView host) {
  os::Text name = LowerCase(host);
  auto entry = m_addresses.find(name);
  if (entry == m_addresses.end()) {
    std::vector<os::Text> addresses;
    if (!host.empty()) {
      (void)os::AddressesOfHost(host, os::kCodePageAnsi, addresses);  // a failure leaves none
    }
    entry = m_addresses.emplace(std::move(name), std::move(addresses)).first;
  }
  return entry->second;
}

// The address that paths name a host by; empty without one.
os::Text CQXNetPathExchange::AddressOf(os::TextView host) {
  const std::vector<os::Text>& addresses = AddressesOf(host);
  return addresses.empty() ? os::Text() : addresses.front();
}

void CQXNetPathExchange::FillAddress(SNetPathItem& item) {
  const os::TextView name = ViewOf(item.NamePath);
  if (name.empty() || item.IPPath.GetLength() > 0) {
    return;
  }
  if (const os::Text address = AddressOf(HostOf(name)); !address.empty()) {
    item.IPPath = (QXT("\\\\") + address).append(BehindHost(name)).c_str();
  }
}

void CQXNetPathExchange::FillHostPrefix() {
  if (hostPrefix.GetLength() == 0) {
    hostPrefix = os::Text(WithoutBlanks(ReadComputerName())).c_str();
  }
}

bool CQXNetPathExchange::NamesThisComputer(os::TextView host) const noexcept {
  return !host.empty() && (EqualsFolded(host, ViewOf(hostPrefix)) || EqualsFolded(host, kLocalHost));
}

// A computer on several networks has an address in each.
bool CQXNetPathExchange::IsOwnAddress(os::TextView host) {
  if (!IsDottedAddress(host)) {
    return false;
  }
  const std::vector<os::Text>& own = AddressesOf(ViewOf(hostPrefix));
  return IsLoopbackAddress(host) || std::find(own.begin(), own.end(), host) != own.end();
}

}  // namespace qxv
