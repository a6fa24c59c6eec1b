// buffer_file_model.h - what CQXVBufferFileRW is to do, step by step and value by value, over a vector that stands for the file.
// Written for being followed by the eye: one character at a time, a whole block of zeros at open, 128-bit sums.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace streams_test {

class BufferFileModel {
 public:
  using Byte = unsigned char;

  BufferFileModel(std::vector<Byte> file, bool forReading, std::uint32_t size)
      : m_file(std::move(file)), m_reading(forReading), m_block(size, 0) {
    m_length = forReading ? static_cast<std::int64_t>(m_file.size()) : 0;
  }

  const std::vector<Byte>& File() const { return m_file; }

  std::uint32_t Read(Byte* value, std::uint32_t n) {
    if (!m_reading || Wide(m_base) + m_position > Wide(m_length) - n) {
      return 0;
    }
    const auto size = static_cast<std::uint32_t>(m_block.size());
    if (!(m_position <= size - n && m_loaded)) {
      Fill(m_position > size - n ? size - m_position : 0);
    }
    std::memcpy(value, m_block.data() + m_position, n);
    m_position += n;
    return n;
  }

  std::uint32_t Write(const Byte* value, std::uint32_t n) {
    if (m_reading) {
      return 0;
    }
    if (m_position > m_block.size() - n) {
      Flush();
    }
    std::memcpy(m_block.data() + m_position, value, n);
    m_position += n;
    m_length = std::max(m_length, Clamped(Wide(m_base) + m_position));
    return n;
  }

  std::uint32_t ReadRaw(Byte* bytes, std::uint32_t n) { return n == 0 || n > m_block.size() ? 0 : Read(bytes, n); }
  std::uint32_t WriteRaw(const Byte* bytes, std::uint32_t n) { return n == 0 || n > m_block.size() ? 0 : Write(bytes, n); }

  /// The text up to its first zero.
  std::uint32_t ReadText(std::u16string& text) {
    std::uint32_t count = 0;
    if (Read(reinterpret_cast<Byte*>(&count), 4) == 0) {
      return 0;
    }
    std::u16string units;
    const std::uint64_t held = Left() / 2;
    for (std::uint64_t i = 0; i < count / 2 && i < held; ++i) {
      char16_t unit = 0;
      (void)Read(reinterpret_cast<Byte*>(&unit), 2);
      units += unit;
    }
    text = units.substr(0, units.find(u'\0'));
    return count + 4;
  }

  std::uint32_t WriteText(const std::u16string& text) {
    const auto count = static_cast<std::uint32_t>(2 * text.size());
    if (Write(reinterpret_cast<const Byte*>(&count), 4) == 0) {
      return 0;
    }
    for (const char16_t unit : text) {
      (void)Write(reinterpret_cast<const Byte*>(&unit), 2);
    }
    return count + 4;
  }

  /// Elements of n bytes, one behind the other.
  std::uint32_t ReadArray(std::vector<Byte>& elements, std::uint32_t n) {
    std::uint32_t count = 0;
    if (Read(reinterpret_cast<Byte*>(&count), 4) == 0) {
      return 0;
    }
    elements.clear();
    const std::uint64_t held = Left() / n;
    if (count / n > std::max<std::uint64_t>(held, 65536)) {
      return 0;
    }
    elements.resize(std::size_t{count / n} * n);
    for (std::uint32_t i = 0; i < count / n && i < held; ++i) {
      (void)Read(elements.data() + std::size_t{i} * n, n);
    }
    return count + 4;
  }

  std::uint32_t WriteArray(const std::vector<Byte>& elements, std::uint32_t n) {
    const auto count = static_cast<std::uint32_t>(elements.size());
    if (Write(reinterpret_cast<const Byte*>(&count), 4) == 0) {
      return 0;
    }
    for (std::size_t i = 0; i < elements.size(); i += n) {
      (void)Write(elements.data() + i, n);
    }
    return count + 4;
  }

  std::uint32_t ReadTexts(std::vector<std::u16string>& texts) {
    std::uint32_t count = 0;
    if (Read(reinterpret_cast<Byte*>(&count), 4) == 0) {
      return 0;
    }
    texts.clear();
    if (count / 8 > std::max<std::uint64_t>(Left() / 4, 65536)) {
      return 0;
    }
    texts.resize(count / 8);
    for (auto& text : texts) {
      (void)ReadText(text);
    }
    return count + 4;
  }

  std::uint32_t WriteTexts(const std::vector<std::u16string>& texts) {
    const auto count = static_cast<std::uint32_t>(8 * texts.size());
    if (Write(reinterpret_cast<const Byte*>(&count), 4) == 0) {
      return 0;
    }
    for (const auto& text : texts) {
      (void)WriteText(text);
    }
    return count + 4;
  }

  int Seek(std::int64_t offset, std::uint32_t origin) {
    Sum target = offset;
    if (origin == 1) {
      target += Wide(m_base) + m_position;
      if (Wide(m_base) + m_position > INT64_MAX) {
        return 0;
      }
    }
    if (origin <= 1 && (target < 0 || target >= m_length)) {
      return 0;
    }
    if (origin == 2) {
      target = Wide(m_length) - offset;
      if (target < 0 || target > INT64_MAX) {
        return 0;
      }
    }
    if (target >= m_base && target < Wide(m_base) + static_cast<std::int64_t>(m_block.size())) {
      m_position = static_cast<std::uint32_t>(target - m_base);
      return 1;
    }
    if (!m_reading) {
      Flush();
    }
    m_base = static_cast<std::int64_t>(target);
    m_position = 0;
    m_loaded = false;
    return 1;
  }

  void Close() {
    if (!m_reading && !m_loaded && m_position > 0) {
      Flush();
    }
  }

 private:
  __extension__ using Sum = __int128;
  static Sum Wide(std::int64_t value) { return value; }
  static std::int64_t Clamped(Sum value) { return value > INT64_MAX ? INT64_MAX : static_cast<std::int64_t>(value); }

  std::uint64_t Left() const {
    const Sum place = Wide(m_base) + m_position;
    return place >= 0 && place < m_length ? static_cast<std::uint64_t>(m_length - place) : 0;
  }

  void Fill(std::uint32_t keep) {
    m_base += m_position;
    m_position = 0;
    std::copy(m_block.end() - keep, m_block.end(), m_block.begin());
    const std::size_t bytes = std::min(m_block.size() - keep, m_file.size() - m_at);
    std::copy_n(m_file.begin() + static_cast<std::ptrdiff_t>(m_at), bytes, m_block.begin() + keep);
    m_at += bytes;
    m_loaded = true;
  }

  void Flush() {
    m_file.resize(std::max(m_file.size(), m_at + m_position));
    std::copy_n(m_block.begin(), m_position, m_file.begin() + static_cast<std::ptrdiff_t>(m_at));
    m_at += m_position;
    m_base = Clamped(Wide(m_base) + m_position);
    m_position = 0;
    m_loaded = false;
  }

  std::vector<Byte> m_file;
  std::size_t m_at = 0;  // the source's own position
  bool m_reading;
  std::vector<Byte> m_block;
  std::uint32_t m_position = 0;
  bool m_loaded = false;
  std::int64_t m_base = 0;
  std::int64_t m_length = 0;
};

}  // namespace streams_test
