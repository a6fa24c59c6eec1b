// uuid.cpp - the layout of random identifiers, RFC 4122 section 4.4.

#include "os/uuid.h"

#include <cstring>

namespace qxv::os {

bool CreateRandomGuid(RandomSource source, GUID& guid) noexcept {
  unsigned char bytes[16] = {};
  static_assert(sizeof bytes == sizeof guid);
  guid = {};
  if (!source(std::span<unsigned char>(bytes))) {
    return false;
  }
  std::memcpy(&guid, bytes, sizeof guid);
  guid.Data3 = static_cast<std::uint16_t>((guid.Data3 & 0x0FFF) | 0x4000);    // version 4
  guid.Data4[0] = static_cast<unsigned char>((guid.Data4[0] & 0x3F) | 0x80);  // the variant of that document
  return true;
}

}  // namespace qxv::os
