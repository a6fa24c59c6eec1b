// layout_codes.h - how the bytes of a pixel lie in memory, as numbers that cross the interface.
#pragma once

#include <cstdint>

namespace qxv {

inline constexpr std::uint32_t kLayoutBgra = 1;          // 4 bytes: blue, green, red, alpha
inline constexpr std::uint32_t kLayoutBgr = 4;           // 3 bytes
inline constexpr std::uint32_t kLayoutYuv = 8;           // 3 bytes: Y, U, V
inline constexpr std::uint32_t kLayoutVuy = 0x02000000;  // 3 bytes
inline constexpr std::uint32_t kLayoutRgb = 0x40000000;  // 3 bytes

}  // namespace qxv
