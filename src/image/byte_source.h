// byte_source.h - bytes that can be read from any place: a span in memory, or a file.
#pragma once

#include "streams/file_pieces.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace qxv {

class ByteSource {
 public:
  ByteSource() noexcept = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  virtual std::uint64_t Length() const noexcept = 0;

  /// Fills the span from a place counted from the start; false where it reaches behind the end.
  [[nodiscard]] bool ReadAt(std::uint64_t at, std::span<unsigned char> bytes) noexcept {
    return at <= Length() && bytes.size() <= Length() - at && DoReadAt(at, bytes);
  }

 private:
  virtual bool DoReadAt(std::uint64_t at, std::span<unsigned char> bytes) noexcept = 0;
};

/// The caller keeps the bytes alive.
class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::span<const unsigned char> bytes) noexcept : m_bytes(bytes) {}

  std::uint64_t Length() const noexcept override { return m_bytes.size(); }

 private:
  bool DoReadAt(std::uint64_t at, std::span<unsigned char> bytes) noexcept override {
    if (!bytes.empty()) {
      std::memcpy(bytes.data(), m_bytes.data() + at, bytes.size());
    }
    return true;
  }

  std::span<const unsigned char> m_bytes;
};

/// The caller keeps the reader alive.
class FileSource final : public ByteSource {
 public:
  explicit FileSource(FileReader& file) noexcept : m_file(file) {}

  std::uint64_t Length() const noexcept override { return m_file.Length(); }

 private:
  bool DoReadAt(std::uint64_t at, std::span<unsigned char> bytes) noexcept override {
    m_file.GoTo(at);
    return m_file.Read(bytes);
  }

  FileReader& m_file;
};

}  // namespace qxv
