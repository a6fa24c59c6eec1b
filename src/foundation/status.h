// status.h - the 32-bit status codes that the image, registry and dictionary families share, each once.
#pragma once

#include <cstdint>

namespace qxv {

using Status = std::uint32_t;

inline constexpr Status kStatusOk = 0;

}  // namespace qxv
