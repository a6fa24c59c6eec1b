// line_reader.h - the lines of a text file that is open as a C stream, read ahead in large pieces.
//
//   file    ...............[  bytes read ahead        ].........
//                          ^ m_start    ^ m_at        ^ m_end
//
// The position that callers see is m_start + m_at; the stream's own is nobody's business: every access to it begins with a seek,
// which is also what a stream open for update wants between reading and writing. A line that does not fit is kept whole: the
// bytes move to the front and the memory doubles.
#pragma once

#include "os/c_stream.h"
#include "qxv/types.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace qxv {

/// Unit is unsigned char or QXChar. The units stay where they are until the reader is called again.
template <class Unit>
struct RawLine {
  const Unit* units = nullptr;
  std::size_t count = 0;
  bool ended = false;     // by a carriage return, which was read, as was the unit behind it
  bool hasZeros = false;  // among the units
  bool ascii = false;     // all units are certainly below 0x80
};

class LineReader {
 public:
  LineReader() noexcept = default;

  /// Takes a stream, open for update or reading, or null. It stays the caller's, who closes it only after it was let go here; it
  /// gets no buffer of its own. Nothing has been read ahead yet, and the position is 0.
  void Attach(std::FILE* stream) noexcept;

  [[nodiscard]] std::int64_t Position() noexcept {
    if (m_appended) {
      GoBehindAppended();
    }
    return Here();
  }

  /// Goes to a place of the file. What was read ahead is kept where that serves.
  void Seek(std::int64_t position) noexcept;

  /// The next line, up to its end or the end of the file; an error of reading counts as the end of the file. Behind the end a
  /// line of no units that is not ended. A byte that is half a unit at the end of the file is passed over. Throws std::bad_alloc,
  /// also for more than INT_MAX units.
  template <class Unit>
  [[nodiscard]] RawLine<Unit> Next();

  /// The next count bytes, when as many have been read ahead already, or null. Skip passes as many of them, or fewer.
  [[nodiscard]] const unsigned char* Ahead(std::size_t count) const noexcept {
    return m_end - m_at >= count && !m_appended ? m_bytes.get() + m_at : nullptr;
  }
  void Skip(std::size_t count) noexcept { m_at += count; }

  /// Carriage returns from the start of the file, each taking the unit behind it along. The position stays.
  template <class Unit>
  [[nodiscard]] std::size_t CountLineEnds();

  /// Up to size bytes at a place of the file, without moving the position: fewer at the end of the file and on errors. Returns
  /// how many.
  [[nodiscard]] std::size_t ReadAt(std::int64_t position, unsigned char* bytes, std::size_t size) noexcept;

  /// Writes the bytes at the end of the file, at once, and goes behind them. Returns how many were written.
  [[nodiscard]] std::size_t Append(std::string_view bytes) noexcept;

 private:
  bool ReadMore(std::size_t unitBytes);
  std::int64_t Here() const noexcept { return m_start + static_cast<std::int64_t>(m_at - m_begin); }
  void GoBehindAppended() noexcept;
  void Forget(std::int64_t position) noexcept;

  std::FILE* m_stream = nullptr;
  bool m_appended = false;  // the position is the stream's own, behind what was written last
  std::unique_ptr<unsigned char[]> m_bytes;
  std::size_t m_capacity = 0;
  std::int64_t m_start = 0;  // in the file, of the byte at m_begin
  std::size_t m_begin = 0;
  std::size_t m_at = 0;
  std::size_t m_end = 0;
};

}  // namespace qxv
