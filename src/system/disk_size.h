// disk_size.h - sizes as short texts.
#pragma once

#include "qxv/string.h"

#include <cstdint>

namespace qxv {

/// A number of bytes, not negative, as disk.h describes it.
CQXString DiskSizeText(std::int64_t bytes);

}  // namespace qxv
