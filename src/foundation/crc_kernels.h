// crc_kernels.h - the register of CRC-32/MPEG-2 driven over bytes, once for each processor tier.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qxv {

/// The register after the bytes p[0] to p[n - 1], most significant bit first. Nothing outside them is read; n may be 0.
/// The two vector forms need a processor of their tier.
[[nodiscard]] std::uint32_t UpdateCrcBaseline(std::uint32_t crc, const unsigned char* p, std::size_t n) noexcept;
[[nodiscard]] std::uint32_t UpdateCrcAvx2(std::uint32_t crc, const unsigned char* p, std::size_t n) noexcept;
[[nodiscard]] std::uint32_t UpdateCrcAvx512(std::uint32_t crc, const unsigned char* p, std::size_t n) noexcept;

}  // namespace qxv
