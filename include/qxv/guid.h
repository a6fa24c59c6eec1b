// guid.h - 16-byte identifiers.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

#include <cstdint>

/// A 16-byte identifier with the layout of the system's GUID.
struct QX_GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};

/// How an identifier is made. Any other value counts as EQXV_GUID_COUNTER.
enum EQXV_CREATEGUIDMETHOD : int {
  EQXV_GUID_SYSTEM = 0,        ///< the system's identifier
  EQXV_GUID_RANDOM = 1,        ///< seconds and pseudo-random numbers
  EQXV_GUID_MILLISECONDS = 2,  ///< milliseconds since 1970, different in each call
  EQXV_GUID_SECONDS = 3,       ///< seconds and milliseconds, different in each call
  EQXV_GUID_COUNTER = 4,       ///< seconds, milliseconds and the high-resolution counter
};

/// A new identifier. Methods other than EQXV_GUID_SYSTEM carry 'Q' and 'X' in Data4[0] and Data4[1]. Safe to call from any
/// thread: calls are serialised, and the C library's random generator (std::rand) is reseeded inside.
QXV_API QX_GUID QXVCoCreateGuid2(EQXV_CREATEGUIDMETHOD method);

/// A new identifier as 36 characters: upper-case hexadecimal digits with four hyphens, no braces.
QXV_API CQXString QXVCoCreateGuidString2(EQXV_CREATEGUIDMETHOD method);
