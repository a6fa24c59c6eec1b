// host_text.h - what the texts of paths and hosts say by themselves, without any table.
#pragma once

#include "os/utf.h"
#include "qxv/types.h"

namespace qxv {

/// The same characters, those below 256 in any case.
[[nodiscard]] bool EqualsFolded(os::TextView a, os::TextView b) noexcept;

/// Lower or upper case of the characters below 256.
os::Text LowerCase(os::TextView text);
os::Text UpperCase(os::TextView text);

/// Whether a path holds two backslashes beside each other, or begins with LOCAL\ in any case.
[[nodiscard]] bool IsNetworkForm(os::TextView path) noexcept;

/// Whether a host is written as an IPv4 address: at least 7 characters, a digit at the end, three points, no number above 255.
/// Numbers may have leading zeros and may be missing, as in 1..22.3.
[[nodiscard]] bool IsDottedAddress(os::TextView host) noexcept;

/// A dotted address whose first number is 127: always this computer.
[[nodiscard]] bool IsLoopbackAddress(os::TextView host) noexcept;

/// The host of \\host\share: from index 2 up to the next backslash.
os::TextView HostOf(os::TextView path) noexcept;

/// What follows the host, with its backslash; empty when nothing does.
os::TextView BehindHost(os::TextView path) noexcept;

/// Whether a path is a mapping's field or lies below it.
/// @param field  an empty one matches nothing
/// @param rest   on a match what follows the field in the path: empty, or beginning with a backslash
[[nodiscard]] bool MatchPrefix(os::TextView path, os::TextView field, os::TextView& rest) noexcept;

/// Without the blanks (spaces and tabs) at both ends.
os::TextView WithoutBlanks(os::TextView text) noexcept;

}  // namespace qxv
