// status.h - the 32-bit status codes that the image, registry and dictionary families share, each once.
#pragma once

#include <cstdint>

namespace qxv {

using Status = std::uint32_t;

inline constexpr Status kStatusOk = 0;

inline constexpr Status kStatusRegistryNoKey = 0x89601A40;  // also: the previous key could not be closed
inline constexpr Status kStatusRegistryCreateFailed = 0x89601A41;
inline constexpr Status kStatusRegistryDeleteFailed = 0x89601A42;
inline constexpr Status kStatusRegistryQueryFailed = 0x89601A43;
inline constexpr Status kStatusRegistryBadValue = 0x89601A44;  // another type, or too little data
inline constexpr Status kStatusRegistryOpenFailed = 0x89601A45;
inline constexpr Status kStatusRegistryWriteFailed = 0x89601A46;
inline constexpr Status kStatusRegistryBadElementCount = 0x89601A47;
inline constexpr Status kStatusRegistryNegativeCount = 0xFFFFFFFF;  // -1 as the interface gives it
inline constexpr Status kStatusDictionaryFailed = 0x89601A70;

}  // namespace qxv
