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
// Images.
inline constexpr Status kStatusImageBadArgument = 0x89601A11;
inline constexpr Status kStatusImageNullPixels = 0x89601B11;
inline constexpr Status kStatusImageNotFound = 0x89601A12;      // not to be opened for reading, where a name is given
inline constexpr Status kStatusImageUnsupported = 0x89601A13;   // no such type for this operation
inline constexpr Status kStatusImageCannotCreate = 0x89601A14;  // the file to be written
inline constexpr Status kStatusImageCannotRead = 0x89601A15;    // the file cannot be opened, or not be read whole
inline constexpr Status kStatusImageBadData = 0x89601A16;
inline constexpr Status kStatusImageNoPixelSize = 0x89601A17;  // a pixel layout without a byte size
inline constexpr Status kStatusImageBadCode = 0x89601A18;      // no such code width, or nothing to encode
inline constexpr Status kStatusImageForeign = 0xFFFFFFFF;      // -1: a library that decodes or encodes for us refused

}  // namespace qxv
