// md5.h - the digest of RFC 1321, as words and bytes that can be stored and taken up again.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qxv {

inline constexpr std::size_t kMd5BlockSize = 64;
inline constexpr std::size_t kMd5DigestSize = 16;

/// A digest under way. Start comes first, or fields that a digest under way once had; any values of the fields are safe.
struct Md5 {
  std::uint32_t state[4];     // chaining values A, B, C, D
  std::uint32_t bitCount[2];  // of all input so far: low half, high half
  unsigned char block[kMd5BlockSize];
  unsigned char padding[kMd5BlockSize];  // 0x80, then zeros

  /// No input yet. The block's bytes are zero until input fills them.
  void Start() noexcept;

  /// Writes the padding anew, for who filled the other fields.
  void SetPadding() noexcept;

  void Update(const unsigned char* data, std::size_t size) noexcept;

  /// Ends the digest; Start begins the next one.
  void Finish(unsigned char (&digest)[kMd5DigestSize]) noexcept;

  /// Bytes in the block that have not been transformed.
  std::size_t BytesWaiting() const noexcept { return bitCount[0] / 8 % kMd5BlockSize; }
};

}  // namespace qxv
