// win_api.h - the only includer of the Windows headers inside the library (with the public types.h).
// W-functions only, written ::CreateFileW.
#pragma once

#include "qxv/types.h"
