// line_reader.cpp - the lines of a text file that is open as a C stream.

#include "streams/line_reader.h"

#include "streams/line_scan.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace qxv {
namespace {

constexpr std::size_t kReadAhead = 256 * 1024;  // fits the second-level cache with room for the texts made of it
constexpr std::size_t kCacheLine = 64;
constexpr std::size_t kLongest = std::size_t{INT_MAX};  // units of a line

// A carriage return or a zero.
LineStop FindStop(const unsigned char* bytes, std::size_t count) { return FindLineStop(bytes, count, kCarriageReturn, 0); }
LineStop FindStop(const QXChar* units, std::size_t count) { return {FindUnit(units, count, kCarriageReturn, 0), false}; }

// Where bytes that are kept begin, so that what is read behind them goes to a line of the cache: to an odd place some
// processors copy at a quarter of the speed. A multiple of the unit.
std::size_t BeginOf(const unsigned char* block, std::size_t kept, std::size_t unitBytes) noexcept {
  const std::size_t place = (0 - (reinterpret_cast<std::uintptr_t>(block) + kept)) % kCacheLine;
  return place - place % unitBytes;
}

}  // namespace

void LineReader::Attach(std::FILE* stream) noexcept {
  m_stream = stream;
  if (stream != nullptr) {
    (void)std::setvbuf(stream, nullptr, _IONBF, 0);  // we read and write whole pieces
  }
  m_bytes.reset();
  m_capacity = 0;
  Forget(0);
}

void LineReader::Forget(std::int64_t position) noexcept {
  m_start = position;
  m_begin = 0;
  m_at = 0;
  m_end = 0;
  m_appended = false;
}

void LineReader::GoBehindAppended() noexcept {
  const std::int64_t end = os::TellStream(m_stream);
  Forget(end >= 0 ? end : m_start);
}

void LineReader::Seek(std::int64_t position) noexcept {
  m_appended = false;
  const std::int64_t at = position - m_start;
  if (at >= 0 && at <= static_cast<std::int64_t>(m_end - m_begin)) {
    m_at = m_begin + static_cast<std::size_t>(at);
  } else {
    Forget(position);
  }
}

// Reads behind the bytes that are not yet passed; those that are make room. Nothing was appended since the last read. False at
// the end of the file and on an error.
bool LineReader::ReadMore(std::size_t unitBytes) {
  const std::int64_t here = Here();
  const std::size_t kept = m_end - m_at;
  std::size_t capacity = std::max(m_capacity, kReadAhead);
  if (kept > capacity / 2) {
    capacity *= 2;
  } else if (kept == 0) {
    capacity = kReadAhead;  // after a long line
  }
  if (capacity != m_capacity) {
    if (kept == 0) {
      Forget(here);
      m_bytes.reset();
      m_capacity = 0;
    }
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[capacity + kCacheLine]);
    if (kept != 0) {
      std::memcpy(bytes.get() + BeginOf(bytes.get(), kept, unitBytes), m_bytes.get() + m_at, kept);
    }
    m_bytes = std::move(bytes);
    m_capacity = capacity;
  } else if (kept != 0) {
    std::memmove(m_bytes.get() + BeginOf(m_bytes.get(), kept, unitBytes), m_bytes.get() + m_at, kept);
  }
  m_start = here;
  m_begin = BeginOf(m_bytes.get(), kept, unitBytes);
  m_at = m_begin;
  m_end = m_begin + kept;
  const std::size_t done = ReadAt(here + static_cast<std::int64_t>(kept), m_bytes.get() + m_end, capacity - kept);
  m_end += done;
  return done != 0;
}

std::size_t LineReader::ReadAt(std::int64_t position, unsigned char* bytes, std::size_t size) noexcept {
  // The length bounds what is read: a device that never ends has none.
  const std::int64_t length = os::StreamLength(m_stream);
  if (length <= position || !os::SeekStream(m_stream, position, os::SeekOrigin::Begin)) {
    return 0;
  }
  const auto left = static_cast<std::uint64_t>(length - position);
  return std::fread(bytes, 1, static_cast<std::size_t>(std::min<std::uint64_t>(left, size)), m_stream);
}

std::size_t LineReader::Append(std::string_view bytes) noexcept {
  // The stream appends by itself; the seek is what it wants between reading and writing.
  if (!m_appended && !os::SeekStream(m_stream, 0, os::SeekOrigin::End)) {
    return 0;
  }
  Forget(Here());
  m_appended = true;
  const std::size_t written = std::fwrite(bytes.data(), 1, bytes.size(), m_stream);
  if (written != bytes.size()) {
    std::clearerr(m_stream);
  }
  return written;
}

template <class Unit>
RawLine<Unit> LineReader::Next() {
  if (m_appended || m_at % sizeof(Unit) != 0) {
    Forget(Position());  // units are read at aligned places only
  }
  RawLine<Unit> line;
  line.ascii = true;
  std::size_t seen = 0;
  for (;;) {
    const std::size_t count = (m_end - m_at) / sizeof(Unit);
    line.units = reinterpret_cast<const Unit*>(m_bytes.get() + m_at);
    while (seen < count) {
      const LineStop stop = FindStop(line.units + seen, count - seen);
      seen += stop.at;
      line.ascii = line.ascii && stop.ascii;
      if (seen == count || line.units[seen] == kCarriageReturn) {
        break;
      }
      line.hasZeros = true;
      ++seen;
    }
    if (seen > kLongest) {
      throw std::bad_alloc();
    }
    const bool ended = seen < count;
    if ((!ended || seen + 1 == count) && ReadMore(sizeof(Unit))) {  // also for the unit behind the carriage return
      continue;
    }
    // ReadMore may have moved the bytes, if only to fail then.
    line.units = reinterpret_cast<const Unit*>(m_bytes.get() + m_at);
    line.count = seen;
    line.ended = ended;
    m_at = ended && seen + 2 <= count ? m_at + (seen + 2) * sizeof(Unit) : m_end;
    return line;
  }
}

template <class Unit>
std::size_t LineReader::CountLineEnds() {
  const std::int64_t position = Position();
  LineEndCounter counter;
  Forget(0);
  while (ReadMore(sizeof(Unit))) {
    const std::size_t count = (m_end - m_at) / sizeof(Unit);
    counter.Add(reinterpret_cast<const Unit*>(m_bytes.get() + m_at), count);
    m_at += count * sizeof(Unit);
  }
  Forget(position);
  return counter.Count();
}

template RawLine<unsigned char> LineReader::Next();
template RawLine<QXChar> LineReader::Next();
template std::size_t LineReader::CountLineEnds<unsigned char>();
template std::size_t LineReader::CountLineEnds<QXChar>();

}  // namespace qxv
