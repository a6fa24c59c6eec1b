// net_path_convert.cpp - both conversions over the table, and the table as text.

#include "netpath/host_text.h"
#include "netpath/net_path_exchange.h"

namespace qxv {
namespace {

using os::Text;
using os::TextView;

constexpr TextView kLocalName = QXT("Local");
constexpr TextView kLocalPrefix = QXT("Local\\");
constexpr TextView kUnknown = QXT("?");

Text Joined(TextView start, TextView rest) { return Text(start).append(rest); }

}  // namespace

// All names and addresses of this computer are one: there only the shares are compared.
bool CQXNetPathExchange::MatchOwnShare(const SNetPathItem& item, TextView path, TextView& rest) {
  const TextView name = ViewOf(item.NamePath);
  const TextView host = HostOf(path);
  return NamesThisComputer(HostOf(name)) && (NamesThisComputer(host) || IsOwnAddress(host)) &&
         MatchPrefix(BehindHost(path), BehindHost(name), rest);
}

// The local form of a path by one item, which gets its address when that is what the path names its host by.
std::optional<Text> CQXNetPathExchange::LocalByItem(SNetPathItem& item, TextView path) {
  const TextView name = ViewOf(item.NamePath);
  const TextView host = HostOf(path);
  Text byAddress;  // where rest may lie
  TextView rest;
  bool matches = false;
  if (IsDottedAddress(host)) {
    FillAddress(item);
    matches = MatchPrefix(path, ViewOf(item.IPPath), rest) || MatchOwnShare(item, path, rest);
  } else if (!name.empty()) {
    matches = MatchPrefix(path, name, rest) || MatchOwnShare(item, path, rest);
  } else if (const Text address = AddressOf(host); !address.empty()) {
    byAddress = (QXT("\\\\") + address).append(BehindHost(path));
    matches = MatchPrefix(byAddress, ViewOf(item.IPPath), rest);
  }
  return matches ? std::optional(Joined(ViewOf(item.LocalPath), rest)) : std::nullopt;
}

Text CQXNetPathExchange::LocalOf(const Text& network) {
  Build();
  const std::size_t first = network.find(QXT('\\'));
  if (first == Text::npos) {
    return network;
  }
  if (EqualsFolded(TextView(network).substr(0, first), kLocalName)) {
    return network.substr(first + 1);
  }
  FillHostPrefix();
  const TextView path = TextView(network).substr(first);
  std::optional<Text> best;
  for (QXInt64 i = 0; i < items.GetSize(); ++i) {
    // KEPT: a drive connected by address wins over all other mappings, and among equals the earliest (a deliberate order of
    //   preference). Pinned by NetPathKept.ADriveConnectedByAddressWinsOverAllOthers and
    //   NetPathKept.TheEarliestOfSeveralMappingsWins.
    const bool isConnectedByAddress = items[i].NamePath.GetLength() == 0;
    if (best && !isConnectedByAddress) {
      continue;
    }
    std::optional<Text> local = LocalByItem(items[i], path);
    if (local && isConnectedByAddress) {
      return *local;
    }
    if (local) {
      best = std::move(local);
    }
  }
  return best ? *best : network;
}

Text CQXNetPathExchange::ToLocal(const Text& network) {
  if (!IsNetworkForm(network)) {
    return network;
  }
  Text local = LocalOf(network);
  if (local == kUnknown) {  // no path at all: the network path within the text may be one
    const std::size_t start = network.find(QXT("\\\\"));
    local = LocalOf(start == Text::npos ? network : network.substr(start));
  }
  return local == kUnknown ? network : local;
}

// An item's network name as other computers know it; that of this computer is written as the system writes it.
Text CQXNetPathExchange::NetworkNameOf(const SNetPathItem& item) const {
  const TextView name = ViewOf(item.NamePath);
  if (name.empty()) {
    return Text(ViewOf(item.IPPath));
  }
  if (hostPrefix.GetLength() == 0 || !NamesThisComputer(HostOf(name))) {
    return Text(name);
  }
  return Joined(QXT("\\\\"), ViewOf(hostPrefix)).append(BehindHost(name));
}

Text CQXNetPathExchange::ToNetwork(const Text& local) {
  if (IsNetworkForm(local)) {
    return local;
  }
  Build();
  if (local.empty()) {
    return {};
  }
  const Text upper = UpperCase(local);
  for (QXInt64 i = 0; i < specialDrives.GetSize(); ++i) {
    if (upper.starts_with(ViewOf(specialDrives[i]))) {
      return Joined(kLocalPrefix, local);
    }
  }
  FillHostPrefix();
  for (QXInt64 i = 0; i < items.GetSize(); ++i) {
    TextView rest;
    if (MatchPrefix(local, ViewOf(items[i].LocalPath), rest)) {
      return NetworkNameOf(items[i]).append(rest);
    }
  }
  return Joined(kLocalPrefix, local);
}

Text CQXNetPathExchange::Describe(int& lines) {
  Build();
  Text text;
  lines = 0;
  const auto addLine = [&](TextView name, TextView address, TextView local) {
    text.append(name).append(QXT("\t")).append(address).append(QXT("\t")).append(local).append(QXT("\n"));
    ++lines;
  };
  for (QXInt64 i = 0; i < items.GetSize(); ++i) {
    addLine(ViewOf(items[i].NamePath), ViewOf(items[i].IPPath), ViewOf(items[i].LocalPath));
  }
  for (QXInt64 i = 0; i < specialDrives.GetSize(); ++i) {
    const TextView drive = ViewOf(specialDrives[i]);
    addLine(Joined(kLocalPrefix, drive), {}, drive);
  }
  return text;
}

}  // namespace qxv
