// uuid_win.cpp - identifiers of the remote procedure call run-time.

#include "os/uuid.h"
#include "os/win_api.h"

#include <rpc.h>

namespace qxv::os {

bool CreateSystemGuid(GUID& guid) noexcept {
  const RPC_STATUS status = ::UuidCreate(&guid);
  if (status != RPC_S_OK && status != RPC_S_UUID_LOCAL_ONLY) {
    guid = {};
    return false;
  }
  return true;
}

}  // namespace qxv::os
