// gif_linear.h - the string coder of GIF frames as its rule is told: strings kept whole, the table searched from its first entry.
// It shares nothing with the library, so that both can be compared, and takes a second where the library takes a millisecond.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace support {

class LinearGifCoder {
 public:
  /// The codes of a frame, packed, without sub-blocks.
  std::string Encode(const std::string& indices) {
    Clear();
    std::string current;
    for (const char index : indices) {
      current += index;
      if (Find(current) != m_table.size()) {
        continue;
      }
      Put(Find(current.substr(0, current.size() - 1)));
      if (m_firstFree < 4096) {
        if (m_firstFree == m_limit) {
          ++m_width;
          m_limit *= 2;
        }
        m_table[m_firstFree++] = current;
        current = std::string(1, index);
      } else {
        Put(static_cast<unsigned char>(index));
        Put(256);
        Clear();
        current.clear();
      }
    }
    if (!current.empty()) {
      Put(Find(current));
    }
    Put(257);
    std::string bytes;
    for (std::size_t bit = 0; bit < m_bits.size(); ++bit) {
      if (bit % 8 == 0) {
        bytes += '\0';
      }
      bytes.back() = static_cast<char>(bytes.back() | (m_bits[bit] ? 1 << bit % 8 : 0));
    }
    return bytes;
  }

  /// How often the table was emptied, the first time not counted.
  std::size_t Clears() const { return m_clears - 1; }

 private:
  void Clear() {
    m_table.assign(4096, "");
    for (std::size_t i = 0; i < 256; ++i) {
      m_table[i] = std::string(1, static_cast<char>(i));
    }
    m_firstFree = 258;
    m_width = 9;
    m_limit = 512;
    ++m_clears;
  }

  std::size_t Find(const std::string& text) const {
    std::size_t code = 0;
    while (code < m_table.size() && m_table[code] != text) {
      ++code;
    }
    return code;
  }

  void Put(std::size_t code) {
    for (unsigned bit = 0; bit < m_width; ++bit) {
      m_bits.push_back((code >> bit & 1) != 0);
    }
  }

  std::vector<std::string> m_table;
  std::vector<bool> m_bits;
  std::size_t m_firstFree = 0;
  std::size_t m_limit = 0;
  std::size_t m_clears = 0;
  unsigned m_width = 0;
};

/// Bytes in sub-blocks: a length up to 255 and so many bytes, a length of 0 at the end.
inline std::string InSubBlocks(const std::string& bytes) {
  std::string blocks;
  for (std::size_t at = 0; at < bytes.size(); at += 255) {
    const std::string block = bytes.substr(at, 255);
    blocks += static_cast<char>(block.size());
    blocks += block;
  }
  return blocks + '\0';
}

}  // namespace support
