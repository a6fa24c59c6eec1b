// identity_network.cpp - the network provider, a server's domain, a host's address.

#include "qxv/identity.h"

#include "os/code_page.h"
#include "os/identity.h"
#include "os/network.h"

#include <vector>

namespace {

using namespace qxv::os;

constexpr std::uint16_t kSockets20 = 0x0002;

// The provider's name on a Chinese-language system, for a system that does not tell its own.
constexpr const QXChar* kUsualProvider = QXT("Microsoft Windows \u7F51\u7EDC");

bool ProviderName(Text& name) { return Identity().LanProviderName(name) && !name.empty(); }

}  // namespace

int QXVGetNetProviderName(CQXString& name) {
  Text provider;
  if (!ProviderName(provider)) {
    return 0;
  }
  name = provider.c_str();
  return 1;
}

int QXVGetServerLocateDoMain(CQXString& domain, CQXString& server) {
  Text provider;
  if (!ProviderName(provider)) {
    provider = kUsualProvider;
  }
  Text parent;
  if (!Identity().ParentOfServer(QXT("\\\\") + Text(server), provider, parent) || parent.empty()) {
    return 0;
  }
  domain = parent.c_str();
  return 1;
}

int QXVGetIPAddr(const QXChar* host, CQXString& address) {
  const Text name = host == nullptr ? Text() : Text(host);  // it may lie in the text that is cleared
  address.Empty();
  if (host == nullptr) {
    return 0;
  }
  const SocketsLibrary sockets(kSockets20);
  std::vector<Text> addresses;
  if (!sockets.IsStarted() || !AddressesOfHost(name, kCodePageThreadAnsi, addresses)) {
    return 0;
  }
  address = addresses.empty() ? nullptr : addresses.front().c_str();
  return 1;
}
