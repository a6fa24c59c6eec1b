// tiff_messages.h - quiet reading of TIFF files.
#pragma once

namespace qxv::os {

/// While one of these lives, the TIFF library that others decode with for us prints nothing: on Linux it writes a line to
/// standard error for each metadata tag that a file does not have. Its handlers belong to the whole process, so the application's
/// come back as soon as no such object is left. Nothing to do on Windows, where ours has no handlers.
class QuietTiff {
 public:
  QuietTiff() noexcept;
  QuietTiff(const QuietTiff&) = delete;
  QuietTiff& operator=(const QuietTiff&) = delete;
  ~QuietTiff();
};

}  // namespace qxv::os
