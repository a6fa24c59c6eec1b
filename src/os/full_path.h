// full_path.h - names made independent of the current folder.
#pragma once

#include "os/error.h"
#include "os/utf.h"

namespace qxv::os {

/// The full path of a name in drive form, "." and ".." resolved; the object itself need not exist. 3 for a null or empty name.
[[nodiscard]] ErrorCode GetFullPath(const QXChar* name, Text& path);

}  // namespace qxv::os
