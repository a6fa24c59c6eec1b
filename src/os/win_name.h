// win_name.h - what is asked of every name before the system sees it, so that bad ones have one answer on both systems.
#pragma once

#include "os/error.h"
#include "qxv/types.h"

namespace qxv::os {

/// 3 for a null or empty name, 123 for one of more than 32,767 units.
inline ErrorCode CheckName(const QXChar* name) noexcept {
  constexpr std::size_t kLongestName = 32767;
  if (name == nullptr || *name == 0) {
    return kErrorPathNotFound;
  }
  for (std::size_t length = 0; name[length] != 0; ++length) {
    if (length == kLongestName) {
      return kErrorInvalidName;
    }
  }
  return kErrorNone;
}

}  // namespace qxv::os
