// tiff_messages_win.cpp - the TIFF library stands inside FreeImage.dll and says nothing.

#include "os/tiff_messages.h"

namespace qxv::os {

QuietTiff::QuietTiff() noexcept = default;
QuietTiff::~QuietTiff() = default;

}  // namespace qxv::os
