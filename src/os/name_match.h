// name_match.h - file names compared without regard to case, and matched with the wildcards * and ?.
// For systems whose own file finder does neither.
#pragma once

#include "os/utf.h"

namespace qxv::os {

/// The lower-case unit of a unit: ASCII, Latin-1, Latin Extended-A, Greek and Cyrillic letters; others are themselves.
QXChar FoldCase(QXChar unit) noexcept;

bool EqualsIgnoringCase(TextView a, TextView b) noexcept;

bool HasWildcard(TextView name) noexcept;

/// Whether a name matches a pattern as the Windows file finder does it: ignoring case; * is any run, ? one character or, before
/// a dot and at the end, none; *.* is every name, and "*." every name without an extension.
bool MatchesPattern(TextView name, TextView pattern);

}  // namespace qxv::os
