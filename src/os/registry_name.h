// registry_name.h - what is asked of the names of keys and values before the system sees them, so that bad ones have one answer
// on both systems.
#pragma once

#include "os/c_runtime.h"
#include "os/error.h"
#include "qxv/types.h"

namespace qxv::os {

inline constexpr std::size_t kLongestKeyName = 255;      // units of one component
inline constexpr std::size_t kDeepestKey = 512;          // components of a subkey
inline constexpr std::size_t kLongestValueName = 16383;  // units

/// 161 for a backslash in front, 87 for a component or a path beyond the limits. Null and empty pass.
inline ErrorCode CheckSubkey(const QXChar* subkey) noexcept {
  if (subkey == nullptr || *subkey == 0) {
    return kErrorNone;
  }
  if (*subkey == QXT('\\')) {
    return kErrorBadPathName;
  }
  std::size_t components = 0;
  std::size_t length = 0;
  for (; *subkey != 0; ++subkey) {
    length = *subkey == QXT('\\') ? 0 : length + 1;
    components += length == 1 ? 1u : 0u;
    if (length > kLongestKeyName || components > kDeepestKey) {
      return kErrorInvalidParameter;
    }
  }
  return kErrorNone;
}

/// 87 for a name beyond the limit.
inline ErrorCode CheckValueName(const QXChar* name) noexcept {
  return TextLength(name, kLongestValueName + 1) > kLongestValueName ? kErrorInvalidParameter : kErrorNone;
}

}  // namespace qxv::os
