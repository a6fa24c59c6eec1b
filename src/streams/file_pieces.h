// file_pieces.h - files read and written front to back in large pieces, as images and sounds are.
#pragma once

#include "os/file.h"
#include "qxv/types.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace qxv {

/// What is read from a file at once, and the most that can be asked for in place.
inline constexpr std::size_t kFilePiece = std::size_t{192} * 1024;

/// Opened once. The length is taken then, so that what a header claims can be compared with what is left before anything is
/// allocated. A file that is cut meanwhile reads as one that ends there, and so does one that can be read no further.
class FileReader {
 public:
  /// 0, or a Windows error number for what cannot be opened for reading, folders and pipes included. Throws std::bad_alloc.
  [[nodiscard]] os::ErrorCode Open(const QXChar* name);

  std::uint64_t Length() const noexcept { return m_length; }
  std::uint64_t Left() const noexcept { return m_position < m_length ? m_length - m_position : 0; }

  /// Goes to a place, in bytes from the start of the file. Behind its end nothing is left.
  void GoTo(std::uint64_t position) noexcept;

  /// The next bytes in place, as many as are at hand: fewer than least (at most kFilePiece) only where the file ends. They stay
  /// until the next call of another function but Skip; the position does not move.
  [[nodiscard]] std::span<const unsigned char> Peek(std::size_t least) noexcept;

  /// Moves over bytes that Peek has shown, at most as many.
  void Skip(std::size_t count) noexcept;

  /// The next count bytes (at most kFilePiece) in place, fewer where the file ends, and moves behind them: a header, to be taken
  /// apart by a ByteReader.
  [[nodiscard]] std::span<const unsigned char> Take(std::size_t count) noexcept;

  /// Fills the span; false where the file ends before.
  [[nodiscard]] bool Read(std::span<unsigned char> bytes) noexcept;

  /// Whether bytes have come behind the end that the file had when it was opened. Nothing is left afterwards, until GoTo.
  [[nodiscard]] bool HasGrown() noexcept;

 private:
  std::span<const unsigned char> AtHand() const noexcept { return {m_piece.get() + m_at, m_end - m_at}; }
  void ForgetPiece() noexcept { m_begin = m_at = m_end = m_line; }

  os::File m_file;
  std::unique_ptr<unsigned char[]> m_piece;
  std::uint64_t m_length = 0;
  std::uint64_t m_position = 0;  // in the file, of the byte at m_at; the system stands behind the one before m_end
  std::size_t m_line = 0;        // a place in m_piece where a line of the cache begins
  std::size_t m_begin = 0;       // bytes from here to m_end are the file's
  std::size_t m_at = 0;
  std::size_t m_end = 0;
};

/// Opened once. The destructor writes what is still in memory. Errors of writing show in Finish only.
class FileWriter {
 public:
  FileWriter() noexcept = default;
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;
  ~FileWriter() { Flush(); }

  /// Creates the file, or empties it. 0, or a Windows error number. Throws std::bad_alloc, and then the file is as it was.
  [[nodiscard]] os::ErrorCode Open(const QXChar* name);

  void Write(std::span<const unsigned char> bytes) noexcept;
  void Zeros(std::size_t count) noexcept;

  /// A place for at least least bytes (at most kFilePiece), to be filled from its start on before anything else is written.
  /// Commit takes over the first count bytes of it.
  [[nodiscard]] std::span<unsigned char> Room(std::size_t least) noexcept;
  void Commit(std::size_t count) noexcept { m_end += count; }

  /// Writes what is still in memory; whether all was written.
  [[nodiscard]] bool Finish() noexcept {
    Flush();
    return !m_failed;
  }

 private:
  void Flush() noexcept;
  void WriteOut(std::span<const unsigned char> bytes) noexcept;

  os::File m_file;
  std::unique_ptr<unsigned char[]> m_piece;
  std::size_t m_end = 0;
  bool m_failed = false;
};

}  // namespace qxv
