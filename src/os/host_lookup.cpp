// host_lookup.cpp - the resolver. The call is the same on both systems, only its headers differ. Its answers belong to the
// caller, where those of the older gethostbyname are shared by all threads.

#include "os/host_lookup.h"

#if defined(_WIN32)
#include "os/win_api.h"

#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <cstring>
#include <memory>

namespace qxv::os {

bool ResolveHost(const std::string& name, std::vector<HostAddress>& addresses) {
  char own[256] = {};
  if (name.empty() && ::gethostname(own, sizeof own - 1) != 0) {
    return false;
  }
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;  // else every address comes once for each kind of socket
  addrinfo* list = nullptr;
  if (::getaddrinfo(name.empty() ? own : name.c_str(), nullptr /*service*/, &hints, &list) != 0) {
    return false;
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
  std::vector<HostAddress> found;
  for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
    sockaddr_in socketAddress{};
    if (entry->ai_family == AF_INET && entry->ai_addrlen >= sizeof socketAddress) {
      std::memcpy(&socketAddress, entry->ai_addr, sizeof socketAddress);
      HostAddress& address = found.emplace_back();
      static_assert(sizeof socketAddress.sin_addr == sizeof address);
      std::memcpy(address.data(), &socketAddress.sin_addr, sizeof address);
    }
  }
  addresses = std::move(found);
  return true;
}

}  // namespace qxv::os
