// fuzz_input.h - what drivers that work on a file share: the input taken apart, a file in the temporary folder.
#pragma once

#include "qxv/string.h"
#include "qxv/types.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

namespace fuzz {

using Text = std::basic_string<QXChar>;

inline void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

inline Text TextOf(const CQXString& text) { return static_cast<const QXChar*>(text); }

inline std::string BytesOf(const Text& text) {
  return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(QXChar));
}

/// Zeros behind the end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

  bool AtEnd() const { return m_at == m_size; }
  unsigned Byte() { return m_at < m_size ? m_data[m_at++] : 0; }

  QXChar Unit() {
    const unsigned low = Byte();
    return static_cast<QXChar>(low | Byte() << 8);
  }

  std::string Bytes(std::size_t most) {
    const std::size_t count = std::min(most, m_size - m_at);
    const std::string bytes(reinterpret_cast<const char*>(m_data + m_at), count);
    m_at += count;
    return bytes;
  }

  /// Below 0x80 a byte is a unit; from 0x80 on it is followed by the low byte of the unit.
  Text TextUpToZero() {
    Text text;
    for (unsigned byte = Byte(); byte != 0; byte = Byte()) {
      text += static_cast<QXChar>(byte < 0x80 ? byte : (byte - 0x80) << 8 | std::max(Byte(), 1u));
    }
    return text;
  }

 private:
  const std::uint8_t* m_data;
  std::size_t m_size;
  std::size_t m_at = 0;
};

/// One file of this process, in memory where the system has such a folder.
class ScratchFile {
 public:
  explicit ScratchFile(const char* stem, const char* extension = "") {
    const std::filesystem::path folder =
        std::filesystem::exists("/dev/shm") ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path();
    m_path = folder / ("qxv-fuzz-" + std::string(stem) + "-" + std::to_string(std::random_device()()) + extension);
    m_name = m_path.u16string();
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
  }

  const QXChar* Name() const { return m_name.c_str(); }

  void Write(const std::string& bytes) const {
    std::ofstream file(m_path, std::ios::binary | std::ios::trunc);
    file << bytes;
    Require(file.good());
  }

  std::string Read() const {
    std::ifstream file(m_path, std::ios::binary);
    Require(file.is_open());
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

 private:
  std::filesystem::path m_path;
  Text m_name;
};

}  // namespace fuzz
