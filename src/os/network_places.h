// network_places.h - where the Linux build looks for what Windows keeps in services of its own. Each can be moved by a variable
// of the environment, which is read at every question (Linux only).
#pragma once

#include <cstdlib>
#include <string>

namespace qxv::os {

inline std::string PlaceOf(const char* variable, const char* otherwise) {
  const char* const chosen = std::getenv(variable);
  return chosen != nullptr && *chosen != 0 ? chosen : otherwise;
}

inline std::string SambaConfigurationPath() { return PlaceOf("QXV_SAMBA_CONFIG", "/etc/samba/smb.conf"); }
inline std::string MountTablePath() { return PlaceOf("QXV_MOUNTS", "/proc/self/mounts"); }
inline std::string LogonRecordPath() { return PlaceOf("QXV_UTMP", "/var/run/utmp"); }

}  // namespace qxv::os
