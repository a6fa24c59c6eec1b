// failure.cpp - the words for error numbers and status codes.

#include "qxvtool/support/failure.h"

#include "qxv/image.h"

#include <array>
#include <cstdio>

namespace tool {

namespace {

// The last byte of the codes of qxv/registry.h.
constexpr unsigned kOtherRegistryType = 0x44;
unsigned RegistryCode(int status) { return static_cast<unsigned>(status) & 0xFFu; }

std::string Hexadecimal(int status) {
  std::array<char, 16> text{};
  (void)std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(status));
  return text.data();
}

}  // namespace

std::string SystemReason(std::int32_t number) {
  switch (number) {
    case 2:
      return "no such file";
    case 3:
      return "no such folder or drive";
    case 5:
      return "access denied";
    case 32:
      return "in use by another program";
    case 53:
      return "a network path, which is not reached from here";
    case 112:
      return "the disk is full";
    case 123:
      return "not a name that a file can have";
    default:
      return "system error " + std::to_string(number);
  }
}

std::string ImageReason(int status) {
  switch (status) {
    case QXV_IMAGE_STATUS_BAD_ARGUMENT:
      return "no such frame, or sides that no image can have";
    case QXV_IMAGE_STATUS_NULL_PIXELS:
      return "there are no pixels";
    case QXV_IMAGE_STATUS_NOT_FOUND:
      return "cannot be opened for reading";
    case QXV_IMAGE_STATUS_UNSUPPORTED:
      return "not a type of image that this is done for";
    case QXV_IMAGE_STATUS_CANNOT_CREATE:
      return "cannot be created";
    case QXV_IMAGE_STATUS_CANNOT_READ:
      return "cannot be read to its end";
    case QXV_IMAGE_STATUS_BAD_DATA:
      return "damaged, or without pixels";
    case QXV_IMAGE_STATUS_NO_PIXEL_SIZE:
      return "a pixel layout that is not known";
    case QXV_IMAGE_STATUS_FOREIGN:
      return "refused by the codec: damaged, or not what its extension says";
    default:
      return "image status " + Hexadecimal(status);
  }
}

std::string RegistryReason(int status) {
  switch (RegistryCode(status)) {
    case 0x41:
      return "the key cannot be created (administrators may)";
    case 0x43:
      return "no such value";
    case kOtherRegistryType:
      return "the value has another type";
    case 0x45:
      return "no such key, or no right to open it";
    case 0x46:
      return "the value cannot be written";
    case 0x47:
      return "the value's record has another number of elements";
    default:
      return "registry status " + Hexadecimal(status);
  }
}

bool IsOtherRegistryType(int status) { return RegistryCode(status) == kOtherRegistryType; }

}  // namespace tool
