// uuid.h - identifiers made by the system.
#pragma once

#include "qxv/types.h"

#include <span>

namespace qxv::os {

/// A new identifier in the random layout (version 4). False, with all zero, when the system has none to give: it must not be
/// used.
[[nodiscard]] bool CreateSystemGuid(GUID& guid) noexcept;

/// Fills bytes with random ones; false when it could not.
using RandomSource = bool (*)(std::span<unsigned char> bytes) noexcept;

/// An identifier in the random layout from a source of randomness; false, with all zero, when that fails.
[[nodiscard]] bool CreateRandomGuid(RandomSource source, GUID& guid) noexcept;

}  // namespace qxv::os
