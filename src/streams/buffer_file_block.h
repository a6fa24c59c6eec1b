// buffer_file_block.h - BufferFileBlock: one block of memory over a file, without any idea of types.
#pragma once

#include "streams/buffer_file_source.h"

#include "qxv/types.h"

#include <cstddef>
#include <cstdint>

namespace qxv {

/// The block holds the file's bytes from m_base on; m_position is the next byte in it. All its bytes count as zero until the
/// file or the caller fills them; m_known tells how far they were made so, since a block may be 4 GiB of never touched memory.
class BufferFileBlock {
 public:
  BufferFileBlock() noexcept = default;
  BufferFileBlock(const BufferFileBlock&) = delete;
  BufferFileBlock& operator=(const BufferFileBlock&) = delete;
  ~BufferFileBlock() { Close(); }

  /// Becomes closed without closing or freeing anything.
  void Forget() noexcept;

  /// Opens by name, or takes a source over. False with nothing changed.
  [[nodiscard]] bool OpenNamed(const QXChar* name, bool forReading, std::uint32_t blockSize);
  [[nodiscard]] bool Adopt(const BufferFileSource& source, bool forReading, std::uint32_t blockSize);
  void Close() noexcept;

  [[nodiscard]] bool Seek(std::int64_t offset, std::uint32_t origin) noexcept;

  /// A value of 1 byte up to the size of the block, whole or not at all.
  [[nodiscard]] bool Read(void* value, std::uint32_t bytes) noexcept;
  [[nodiscard]] bool Write(const void* value, std::uint32_t bytes) noexcept;

  /// As many values of one small size as the file holds, up to count, as single reads would give them.
  /// @return how many
  std::size_t ReadRun(void* values, std::size_t count, std::uint32_t valueBytes) noexcept;
  /// As single writes would put them; to an open writer only.
  void WriteRun(const void* values, std::size_t count, std::uint32_t valueBytes) noexcept;

  /// Bytes from the position to the end of a reader's file; none before its start, where an unchecked seek may lead.
  std::uint64_t BytesLeft() const noexcept;

  std::uint32_t Size() const noexcept { return m_size; }

 private:
  bool MayOpen(std::uint32_t blockSize) const noexcept { return m_block == nullptr && !m_source.IsOpen() && blockSize >= 1024; }
  bool IsReader() const noexcept { return m_block != nullptr && m_isReader != 0; }
  bool IsWriter() const noexcept { return m_block != nullptr && m_isReader == 0; }
  bool Start(const BufferFileSource& source, bool forReading, std::uint32_t blockSize, unsigned char* block) noexcept;
  void MakeKnown(std::uint32_t end) noexcept;
  void Fill(std::uint32_t keep) noexcept;
  void Flush() noexcept;
  const unsigned char* Loaded(std::uint32_t valueBytes) noexcept;

  unsigned char* m_block = nullptr;
  std::uint32_t m_size = 0;
  std::uint32_t m_position = 0;
  std::int32_t m_isLoaded = 0;  // the block holds bytes read from the file
  std::int32_t m_isReader = 1;
  BufferFileSource m_source;
  std::int64_t m_base = 0;
  std::int64_t m_length = 0;  // a reader: at open; a writer: the highest place written
  std::uint32_t m_known = 0;  // bytes of the block that are in memory; those behind them are zeros
};

}  // namespace qxv
