// host_lookup.h - the resolver, which both systems call alike.
#pragma once

#include "os/network.h"

namespace qxv::os {

/// As NetworkSource::LookUpHost, by the system's resolver; the sockets library must have been started.
[[nodiscard]] bool ResolveHost(const std::string& name, std::vector<HostAddress>& addresses);

}  // namespace qxv::os
