// buffer_file_source.h - the four kinds of files behind a CQXVBufferFileRW.
#pragma once

#include "qxv/host.h"
#include "qxv/types.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace qxv {

/// What is open: the kind, and in one of three slots what it is reached by. A plain value that may be copied: nothing is closed
/// unless Close is called.
struct BufferFileSource {
  enum class Kind : std::int32_t {
    Closed = -1,
    HostFile = 0,  // in m_file; its errors are exceptions
    Handle = 1,    // in m_handle
    Stream = 2,    // in m_stream
    Named = 3,     // in m_handle, which OpenNamed opened
  };

  static BufferFileSource OfHostFile(CFile* file) noexcept { return {Kind::HostFile, file, INVALID_HANDLE_VALUE, nullptr}; }
  static BufferFileSource OfHandle(HANDLE file) noexcept { return {Kind::Handle, nullptr, file, nullptr}; }
  static BufferFileSource OfStream(std::FILE* stream) noexcept { return {Kind::Stream, nullptr, INVALID_HANDLE_VALUE, stream}; }

  bool IsOpen() const noexcept { return m_kind != Kind::Closed; }

  /// Of a closed one: opens a file by name, or creates and empties it for writing. Others may read it meanwhile. False when that
  /// fails.
  [[nodiscard]] bool OpenNamed(const QXChar* name, bool forReading) noexcept;

  /// Whether there is something behind the slot, and it is no folder.
  [[nodiscard]] bool IsUsable() const noexcept;

  /// What a reader takes as the file's length, in bytes: -1 for a stream that cannot tell it or has 2 GiB and more. False when
  /// the system or the host file refuses to tell it. Moves a stream.
  [[nodiscard]] bool GetLength(std::int64_t& length) const noexcept;

  // Errors are not reported by these. Counts are those of a block, below 4 GiB.

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
