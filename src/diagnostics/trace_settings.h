// trace_settings.h - the threshold of the trace, from its settings file.
#pragma once

#include "os/utf.h"
#include "qxv/types.h"

namespace qxv {

/// The number behind the first LEVEL of a settings text; 0 without one.
int TraceLevelOf(os::TextView settings);

/// The threshold of this program: that of the file beside it, 0 when it is missing, larger than 1 MiB or cannot be read. May
/// throw std::bad_alloc.
int ReadTraceLevel();

}  // namespace qxv
