// buffer_file_source.h - the four kinds of files behind a CQXVBufferFileRW.
#pragma once

#include "qxv/host.h"
#include "qxv/types.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace qxv {

/// What is open, in the object's own order: the kind, then a slot for each form. Owns nothing by itself: Reset drops it, and a
/// file is closed by Close only.
struct BufferFileSource {
  enum class Kind : std::int32_t {
    Closed = -1,
    HostFile = 0,
    Handle = 1,
    Stream = 2,
    Named = 3,  // a handle of our own
  };

  static BufferFileSource OfHostFile(CFile* file) noexcept { return {Kind::HostFile, file, INVALID_HANDLE_VALUE, nullptr}; }
  static BufferFileSource OfHandle(HANDLE file) noexcept { return {Kind::Handle, nullptr, file, nullptr}; }
  static BufferFileSource OfStream(std::FILE* stream) noexcept { return {Kind::Stream, nullptr, INVALID_HANDLE_VALUE, stream}; }

  bool IsOpen() const noexcept { return m_kind != Kind::Closed; }

  /// Of a closed one: opens a file by name. False when that fails.
  [[nodiscard]] bool OpenNamed(const QXChar* name, bool forReading) noexcept;

  /// Whether it is there, can be asked, and is no folder.
  [[nodiscard]] bool IsUsable() const noexcept;

  /// What a reader takes as the file's length. False when the host file refuses to tell it.
  [[nodiscard]] bool GetLength(std::int64_t& length) const noexcept;

  // Errors are not reported by these.

  void MoveToStart() const noexcept;
  /// @return bytes read, fewer than count at the end and on errors
  std::size_t Read(unsigned char* bytes, std::size_t count) const noexcept;
  void Write(const unsigned char* bytes, std::size_t count) const noexcept;
  /// Closes what is open and becomes closed.
  void Close() noexcept;

  Kind m_kind = Kind::Closed;
  CFile* m_file = nullptr;
  HANDLE m_handle = INVALID_HANDLE_VALUE;
  std::FILE* m_stream = nullptr;
};

}  // namespace qxv
