// full_path_win.cpp - the system's own resolution.

#include "os/full_path.h"

#include "os/win_api.h"

namespace qxv::os {

ErrorCode GetFullPath(const QXChar* name, Text& path) {
  if (name == nullptr || *name == 0) {
    return kErrorPathNotFound;
  }
  Text full(MAX_PATH, QXT('\0'));
  for (;;) {
    const DWORD length = ::GetFullPathNameW(name, static_cast<DWORD>(full.size()), full.data(), nullptr /*last part*/);
    if (length == 0) {
      return LastError();
    }
    const bool fitted = length < full.size();
    full.resize(length);  // without the zero when it fitted, with it when it did not
    if (fitted) {
      path.swap(full);
      return kErrorNone;
    }
  }
}

}  // namespace qxv::os
