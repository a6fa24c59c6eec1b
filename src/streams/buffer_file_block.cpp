// buffer_file_block.cpp - opening, filling, flushing and seeking.

#include "streams/buffer_file_block.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

namespace qxv {
namespace {

constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();

// False when the result cannot be held.
[[nodiscard]] bool AddChecked(std::int64_t a, std::int64_t b, std::int64_t& sum) noexcept {
  if (b > 0 ? a > kHighest - b : a < kLowest - b) {
    return false;
  }
  sum = a + b;
  return true;
}
[[nodiscard]] bool SubtractChecked(std::int64_t a, std::int64_t b, std::int64_t& difference) noexcept {
  if (b < 0 ? a > kHighest + b : a < kLowest + b) {
    return false;
  }
  difference = a - b;
  return true;
}

// For places reached by a seek that checks nothing.
std::int64_t AddClamped(std::int64_t base, std::uint32_t position) noexcept {
  return base > kHighest - position ? kHighest : base + position;
}

}  // namespace

// KEPT: an open file and its block are forgotten, not closed. Applications call this on fresh objects, before the first Open.
//   Pinned by BufferFileKept.ResetForgetsWhatIsOpen.
void BufferFileBlock::Forget() noexcept {
  m_block = nullptr;
  m_size = 0;
  m_position = 0;
  m_isLoaded = 0;
  m_isReader = 1;
  m_source = BufferFileSource{};
  m_base = 0;
  m_length = 0;
  m_known = 0;
}

bool BufferFileBlock::Start(const BufferFileSource& source, bool forReading, std::uint32_t blockSize,
                            unsigned char* block) noexcept {
  std::int64_t length = 0;
  if (forReading && !source.GetLength(length)) {
    return false;
  }
  source.MoveToStart();
  m_block = block;
  m_size = blockSize;
  m_position = 0;
  m_isLoaded = 0;
  m_isReader = forReading ? 1 : 0;
  m_source = source;
  m_base = 0;
  m_length = length;
  m_known = 0;
  return true;
}

bool BufferFileBlock::OpenNamed(const QXChar* name, bool forReading, std::uint32_t blockSize) {
  if (!MayOpen(blockSize) || name == nullptr || *name == 0) {
    return false;
  }
  std::unique_ptr<unsigned char[]> block(new unsigned char[blockSize]);  // first: what fails behind it leaves no open file
  BufferFileSource source;
  if (!source.OpenNamed(name, forReading)) {
    return false;
  }
  if (!Start(source, forReading, blockSize, block.get())) {
    source.Close();
    return false;
  }
  (void)block.release();
  return true;
}

bool BufferFileBlock::Adopt(const BufferFileSource& source, bool forReading, std::uint32_t blockSize) {
  if (!MayOpen(blockSize) || !source.IsUsable()) {
    return false;
  }
  std::unique_ptr<unsigned char[]> block(new unsigned char[blockSize]);
  if (!Start(source, forReading, blockSize, block.get())) {
    return false;
  }
  (void)block.release();
  return true;
}

void BufferFileBlock::Close() noexcept {
  if (m_block == nullptr) {
    return;
  }
  if (IsWriter() && m_isLoaded == 0 && m_position > 0) {
    Flush();
  }
  m_source.Close();
  delete[] m_block;
  Forget();
}

void BufferFileBlock::MakeKnown(std::uint32_t end) noexcept {
  if (end > m_known) {
    std::memset(m_block + m_known, 0, end - m_known);
    m_known = end;
  }
}

// Reads on behind the last keep bytes of the block, which move to its start.
// KEPT: the source is read where it stands, wherever the block begins. Pinned by
// BufferFileKept.ASeekBeforeTheFirstReadIsNotFollowed.
void BufferFileBlock::Fill(std::uint32_t keep) noexcept {
  m_base += m_position;
  m_position = 0;
  const std::uint32_t from = m_size - keep;
  if (keep > 0) {
    const std::uint32_t known = m_known > from ? m_known - from : 0;
    std::memmove(m_block, m_block + from, known);
    std::memset(m_block + known, 0, keep - known);
    m_known = std::max(m_known, keep);
  }
  // KEPT: a short read is not reported; what the block held before stays behind it. The file's length keeps reads off it, unless
  //   the file shrank. Pinned by BufferFileKept.AFileThatShrinksGivesOldBytes.
  const std::size_t done = m_source.Read(m_block + keep, m_size - keep);
  m_known = std::max(m_known, keep + static_cast<std::uint32_t>(done));
  m_isLoaded = 1;
}

// KEPT: bytes behind the position are not written, and errors are not reported. Pinned by
//   BufferFileKept.AWriterThatWentBackKeepsOnlyWhatIsBeforeThePosition and BufferFileKept.WriteErrorsAreNotReported.
void BufferFileBlock::Flush() noexcept {
  if (m_position > 0) {
    MakeKnown(m_position);
    m_source.Write(m_block, m_position);
  }
  m_base = AddClamped(m_base, m_position);
  m_position = 0;
  m_isLoaded = 0;
}

bool BufferFileBlock::Seek(std::int64_t offset, std::uint32_t origin) noexcept {
  if (m_block == nullptr) {
    return false;
  }
  std::int64_t target = offset;
  switch (origin) {
    case 0:
      if (target < 0 || target >= m_length) {
        return false;
      }
      break;
    case 1:
      if (!AddChecked(m_base, m_position, target) || !AddChecked(target, offset, target) || target < 0 || target >= m_length) {
        return false;
      }
      break;
    case 2:
      // KEPT: only this origin takes the length itself as a target, and, with a negative offset, places behind it.
      //   Pinned by BufferFileKept.OnlySeekingFromTheEndReachesTheLength.
      if (!SubtractChecked(m_length, offset, target) || target < 0) {
        return false;
      }
      break;
    default:  // KEPT: any other origin is a place that is not checked. Pinned by BufferFileKept.AnUnknownOriginIsNotChecked.
      break;
  }
  // KEPT: the place right behind the block lies outside, so a writer that went back in a full block and then to the end
  //   writes only what stood before its position. Pinned by BufferFileKept.TheEndOfAFullBlockLiesOutsideIt.
  const auto distance = static_cast<std::uint64_t>(target) - static_cast<std::uint64_t>(m_base);
  if (target >= m_base && distance < m_size) {
    m_position = static_cast<std::uint32_t>(distance);
    return true;
  }
  if (IsWriter()) {
    Flush();
  }
  m_base = target;
  m_position = 0;
  m_isLoaded = 0;
  return true;
}

std::uint64_t BufferFileBlock::BytesLeft() const noexcept {
  if (!IsReader()) {
    return 0;
  }
  const std::int64_t place = AddClamped(m_base, m_position);
  return place >= 0 && place < m_length ? static_cast<std::uint64_t>(m_length - place) : 0;
}

// The next value in the block. Only for what lies inside the file.
const unsigned char* BufferFileBlock::Loaded(std::uint32_t valueBytes) noexcept {
  if (m_position > m_size - valueBytes) {
    Fill(m_size - m_position);
  } else if (m_isLoaded == 0) {
    Fill(0);
  }
  MakeKnown(m_position + valueBytes);  // a short read may have left less
  return m_block + m_position;
}

bool BufferFileBlock::Read(void* value, std::uint32_t bytes) noexcept {
  if (!IsReader() || bytes > m_size || m_base > m_length - bytes - m_position) {
    return false;
  }
  std::memcpy(value, Loaded(bytes), bytes);
  m_position += bytes;
  return true;
}

std::size_t BufferFileBlock::ReadRun(void* values, std::size_t count, std::uint32_t valueBytes) noexcept {
  const std::size_t run = static_cast<std::size_t>(std::min<std::uint64_t>(count, BytesLeft() / valueBytes));
  auto* place = static_cast<unsigned char*>(values);
  for (std::size_t done = 0; done < run;) {
    (void)Loaded(valueBytes);
    const std::size_t chunk = std::min<std::size_t>(run - done, (m_size - m_position) / valueBytes);
    const auto bytes = static_cast<std::uint32_t>(chunk * valueBytes);
    MakeKnown(m_position + bytes);
    std::memcpy(place, m_block + m_position, bytes);
    place += bytes;
    m_position += bytes;
    done += chunk;
  }
  return run;
}

bool BufferFileBlock::Write(const void* value, std::uint32_t bytes) noexcept {
  if (!IsWriter() || bytes > m_size) {
    return false;
  }
  WriteRun(value, 1, bytes);
  return true;
}

void BufferFileBlock::WriteRun(const void* values, std::size_t count, std::uint32_t valueBytes) noexcept {
  const auto* place = static_cast<const unsigned char*>(values);
  for (std::size_t done = 0; done < count;) {
    if (m_position > m_size - valueBytes) {
      Flush();
    }
    const std::size_t chunk = std::min<std::size_t>(count - done, (m_size - m_position) / valueBytes);
    const auto bytes = static_cast<std::uint32_t>(chunk * valueBytes);
    MakeKnown(m_position);
    std::memcpy(m_block + m_position, place, bytes);
    place += bytes;
    m_position += bytes;
    m_known = std::max(m_known, m_position);
    done += chunk;
  }
  m_length = std::max(m_length, AddClamped(m_base, m_position));
}

}  // namespace qxv
