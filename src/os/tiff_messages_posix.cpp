// tiff_messages_posix.cpp - libtiff's handlers for messages, taken away and given back.

#include "os/tiff_messages.h"

#include "os/lock.h"

#include <tiffio.h>

namespace qxv::os {
namespace {

constinit RecursiveLock lock;
unsigned quietReaders = 0;
TIFFErrorHandler errorHandler = nullptr;
TIFFErrorHandler warningHandler = nullptr;

}  // namespace

QuietTiff::QuietTiff() noexcept {
  const LockGuard guard(lock);
  if (quietReaders++ == 0) {
    errorHandler = ::TIFFSetErrorHandler(nullptr);
    warningHandler = ::TIFFSetWarningHandler(nullptr);
  }
}

QuietTiff::~QuietTiff() {
  const LockGuard guard(lock);
  if (--quietReaders == 0) {
    ::TIFFSetErrorHandler(errorHandler);
    ::TIFFSetWarningHandler(warningHandler);
  }
}

}  // namespace qxv::os
