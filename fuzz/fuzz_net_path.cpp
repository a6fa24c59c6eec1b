// fuzz_net_path.cpp - both conversions over tables and hosts made of the input, against a plain transcription of their rules.
// Texts are made of a few words, so that they meet.

#include "netpath/net_path_exchange.h"

#include "fuzz/fuzz_input.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

using fuzz::Require;
using fuzz::Text;

constexpr const QXChar* kComputer = u"VM";

// Only some hosts have an address; the answer depends on the name alone.
const std::map<std::string, qxv::os::HostAddress> kHosts = {{"srv", {10, 1, 2, 3}}, {"vm", {10, 1, 2, 4}}, {"a", {1, 2, 3, 4}}};

struct Network final : qxv::os::NetworkSource {
  bool StartSockets(std::uint16_t version, std::uint16_t& granted) noexcept override {
    granted = version;
    return true;
  }
  void StopSockets() noexcept override {}
  bool ComputerName(qxv::os::Text& name) override {
    name = kComputer;
    return true;
  }
  bool PublishedShares(const qxv::os::Text&, std::vector<qxv::os::PublishedShare>&) override { return false; }
  std::vector<qxv::os::ConnectedDrive> ConnectedDrives() override { return {}; }
  bool LookUpHost(const std::string& name, std::vector<qxv::os::HostAddress>& addresses) override {
    std::string lower;
    for (const char byte : name) {
      lower += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
    }
    const auto host = kHosts.find(lower);
    if (host != kHosts.end()) {
      addresses = {host->second};
    }
    return host != kHosts.end();
  }
};

constexpr const QXChar* kWords[] = {u"\\",        u"\\\\",     u"srv",      u"SRV",       u"VM",     u"vm",
                                    u"localhost", u"10.1.2.3", u"10.1.2.4", u"127.0.0.1", u"share",  u"SHARE",
                                    u"share2",    u"X:",       u"x:",       u"D:\\media", u"Y:\\",   u"LOCAL\\",
                                    u"Local\\",   u"?",        u"a",        u"\u00C9",    u"\u00E9", u"1.2.3.4"};

Text WordsOf(fuzz::Input& input) {
  Text text;
  for (unsigned byte = input.Byte(); byte != 0 && text.size() < 200; byte = input.Byte()) {
    text += byte <= std::size(kWords) ? Text(kWords[byte - 1]) : Text(1, static_cast<QXChar>(byte));
  }
  return text;
}

struct Item {
  Text name, address, local;
};

// ---- the rules, written out without any thought of speed

Text Lowered(Text text) {
  for (QXChar& unit : text) {
    if ((unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7)) {
      unit = static_cast<QXChar>(unit + 32);
    }
  }
  return text;
}

bool IsNetwork(const Text& path) { return path.find(u"\\\\") != Text::npos || Lowered(path).starts_with(u"local\\"); }

Text Host(const Text& path) {
  const Text rest = path.size() > 2 ? path.substr(2) : Text();
  return rest.substr(0, rest.find(u'\\'));
}

Text Share(const Text& path) { return path.size() > 2 ? path.substr(2 + Host(path).size()) : Text(); }

bool IsAddress(const Text& host) {
  int points = 0;
  int value = 0;
  for (const QXChar unit : host) {
    if (unit >= u'0' && unit <= u'9') {
      value = std::min(1000, value * 10 + (unit - u'0'));
    } else if (unit == u'.' && value < 256) {
      ++points;
      value = 0;
    } else {
      return false;
    }
  }
  return host.size() >= 7 && host.back() != u'.' && value < 256 && points == 3;
}

Text AddressOf(const Text& host) {
  const Text lower = Lowered(host);
  return lower == u"srv" ? u"10.1.2.3" : lower == u"vm" ? u"10.1.2.4" : lower == u"a" ? u"1.2.3.4" : u"";
}

bool IsOwnName(const Text& host) { return Lowered(host) == u"vm" || Lowered(host) == u"localhost"; }

bool IsOwn(const Text& host) {
  const Text digits = host.substr(0, host.find(u'.'));
  const std::size_t first = digits.find_first_not_of(u'0');
  return IsOwnName(host) || host == u"10.1.2.4" || (IsAddress(host) && first != Text::npos && digits.substr(first) == u"127");
}

bool Match(const Text& path, const Text& field, Text& rest) {
  if (field.empty() || !Lowered(path).starts_with(Lowered(field)) ||
      (path.size() > field.size() && path[field.size()] != u'\\')) {
    return false;
  }
  rest = path.substr(field.size());
  return true;
}

Text LocalPlainly(const Text& network, const std::vector<Item>& table) {
  const std::size_t first = network.find(u'\\');
  if (first == Text::npos) {
    return network;
  }
  if (Lowered(network.substr(0, first)) == u"local") {
    return network.substr(first + 1);
  }
  const Text path = network.substr(first);
  const Text host = Host(path);
  std::vector<Text> byAddress;
  std::vector<Text> byName;
  for (const Item& item : table) {
    Text rest;
    bool matches = false;
    if (IsAddress(host)) {
      const Text resolved = AddressOf(Host(item.name));
      Text address = item.address;
      if (address.empty() && !item.name.empty() && !resolved.empty()) {
        address = u"\\\\" + resolved + Share(item.name);
      }
      matches = Match(path, address, rest);
    } else if (item.name.empty()) {
      matches = !AddressOf(host).empty() && Match(u"\\\\" + AddressOf(host) + Share(path), item.address, rest);
    } else {
      matches = Match(path, item.name, rest);
    }
    if (!matches && !item.name.empty() && IsOwnName(Host(item.name)) && IsOwn(host)) {
      matches = Match(Share(path), Share(item.name), rest);
    }
    if (matches) {
      (item.name.empty() ? byAddress : byName).push_back(item.local + rest);
    }
  }
  return !byAddress.empty() ? byAddress.front() : !byName.empty() ? byName.front() : network;
}

Text ToLocalPlainly(const Text& network, const std::vector<Item>& table) {
  if (!IsNetwork(network)) {
    return network;
  }
  Text local = LocalPlainly(network, table);
  if (local == u"?") {
    const std::size_t start = network.find(u"\\\\");
    local = LocalPlainly(start == Text::npos ? network : network.substr(start), table);
  }
  return local == u"?" ? network : local;
}

Text ToNetworkPlainly(const Text& local, const std::vector<Item>& table, bool hasSpecialDrive) {
  if (IsNetwork(local) || local.empty()) {
    return local;
  }
  if (hasSpecialDrive && Lowered(local).starts_with(u"y:\\")) {
    return u"Local\\" + local;
  }
  for (const Item& item : table) {
    Text rest;
    if (Match(local, item.local, rest)) {
      const Text name = IsOwnName(Host(item.name)) ? u"\\\\" + Text(kComputer) + Share(item.name) : item.name;
      return (item.name.empty() ? item.address : name) + rest;
    }
  }
  return u"Local\\" + local;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Network network;
  static const qxv::os::ScopedNetwork scope(network);
  fuzz::Input input(data, size);
  qxv::CQXNetPathExchange exchange;
  exchange.initialised = 1;
  const bool hasSpecialDrive = (input.Byte() & 1) != 0;
  if (hasSpecialDrive) {
    CQXString drive(u"Y:\\");
    exchange.specialDrives.Add(drive);
  }
  std::vector<Item> table;
  for (unsigned count = input.Byte() % 6; count > 0; --count) {
    const Item item{WordsOf(input), WordsOf(input), WordsOf(input)};
    table.push_back(item);
    qxv::SNetPathItem stored;
    stored.NamePath = item.name.c_str();
    stored.IPPath = item.address.c_str();
    stored.LocalPath = item.local.c_str();
    exchange.items.Add(stored);
  }
  while (!input.AtEnd()) {
    const Text path = WordsOf(input);
    Require(exchange.ToLocal(path) == ToLocalPlainly(path, table));
    Require(exchange.ToNetwork(path) == ToNetworkPlainly(path, table, hasSpecialDrive));
  }
  return 0;
}
