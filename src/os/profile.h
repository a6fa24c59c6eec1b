// profile.h - single values of initialisation files ([section], key=value), by the rules of the Windows service.
// Names are zero-terminated, not null. A file named without drive and separators stands in the system's own folder: that of
// Windows, on Linux QXV_WINDIR, else qxv in XDG_CONFIG_HOME or in .config of HOME; a name of more than 255 units is none there.
#pragma once

#include "qxv/types.h"

#include <cstdint>
#include <span>

namespace qxv::os {

/// Writes as much of the value as fits, and a terminator. The units written without it; 0 (and an empty text) without such a
/// value.
/// @param out  at least one unit
std::size_t ReadProfileText(const QXChar* file, const QXChar* section, const QXChar* key, std::span<QXChar> out);

/// The integer at the start of the value's first 29 units, modulo 2^32; 0 without one.
std::int32_t ReadProfileInteger(const QXChar* file, const QXChar* section, const QXChar* key);

}  // namespace qxv::os
