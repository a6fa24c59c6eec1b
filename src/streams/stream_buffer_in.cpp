// stream_buffer_in.cpp - CQXVStreamBufIn, the writer of blocks.
// The capacity grows in steps, as applications see it; the memory behind it by factors, so that appending stays linear. How much
// memory there is follows from the capacity alone, so that a shallow copy knows it too. All bytes up to the capacity are defined.

#include "qxv/stream_buffer.h"

#include "os/memory.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <new>

namespace {

constexpr unsigned int kFirst = 3000;
constexpr std::uint64_t kMostCapacity = 0xFFFFFFFF - 16;
constexpr unsigned int kCountBytes = 4;

// Bytes allocated for a capacity: the first of 3000, 6000, then four times as much each, that holds it. Wide steps cost address
// space only, what is not used is not touched; above 64 MiB, where they would be felt, they are doublings.
constexpr std::uint64_t AllocationFor(std::uint64_t capacity) {
  constexpr std::uint64_t kWide = std::uint64_t{64} << 20;
  std::uint64_t bytes = capacity <= kFirst ? kFirst : 2 * kFirst;
  while (bytes < capacity) {
    bytes *= bytes < kWide ? 4 : 2;
  }
  return std::min(bytes, kMostCapacity);
}
static_assert(AllocationFor(3000) == 3000 && AllocationFor(3001) == 6000 && AllocationFor(6001) == 24000);
static_assert(AllocationFor(kMostCapacity) == kMostCapacity);

}  // namespace

// KEPT: copies share the block; the owner of both destroys only one. Pinned by StreamBufferKept.CopyOfTheWriterSharesTheBlock.
CQXVStreamBufIn::CQXVStreamBufIn(const CQXVStreamBufIn& other) = default;

unsigned char* CQXVStreamBufIn::NewBlock() {
  static_assert(kStep == kFirst);
  return new unsigned char[kStep]();
}

void CQXVStreamBufIn::FreeBlock(unsigned char* pData) noexcept { delete[] pData; }

unsigned char* CQXVStreamBufIn::Enlarged(unsigned char* pData, unsigned int nCapacity, std::uint64_t nNewCapacity) {
  if (nNewCapacity > kMostCapacity) {
    throw std::bad_alloc();
  }
  const auto added = static_cast<std::size_t>(nNewCapacity - nCapacity);
  if (nNewCapacity > AllocationFor(nCapacity)) {
    const auto bytes = static_cast<std::size_t>(AllocationFor(nNewCapacity));
    std::unique_ptr<unsigned char[]> block(new unsigned char[bytes]);
    qxv::os::PreferLargePages(block.get(), bytes);
    std::memcpy(block.get(), pData, nCapacity);
    delete[] pData;
    pData = block.release();
  }
  std::memset(pData + nCapacity, 0, added);
  return pData;
}

void CQXVStreamBufIn::GrowTo(std::uint64_t nCapacity) {
  m_pData = Enlarged(m_pData, m_nCapacity, nCapacity);
  m_nCapacity = static_cast<unsigned int>(nCapacity);
}

void CQXVStreamBufIn::Grow() { GrowTo(std::uint64_t{m_nCapacity} + m_nGrowStep); }

void CQXVStreamBufIn::Grow(int n) {
  if (n > 0) {
    GrowTo(std::uint64_t{m_nCapacity} + static_cast<unsigned int>(n));
  }
}

// The count, then the bytes; in one go, with the capacity that single bytes would have led to.
void CQXVStreamBufIn::Counted(std::int32_t nCount, const void* pData, std::uint64_t nBytes) {
  const auto* source = static_cast<const unsigned char*>(pData);
  const std::uint64_t end = std::uint64_t{m_nPosition} + kCountBytes + nBytes;
  if (end > m_nCapacity) {
    const std::uint64_t steps = (end - m_nCapacity + m_nGrowStep - 1) / m_nGrowStep;
    const bool isInside = !std::less<>()(source, static_cast<const unsigned char*>(m_pData)) &&
                          std::less<>()(source, static_cast<const unsigned char*>(m_pData + m_nCapacity));
    const std::ptrdiff_t offset = isInside ? source - m_pData : 0;
    GrowTo(m_nCapacity + steps * m_nGrowStep);
    source = isInside ? m_pData + offset : source;
  }
  unsigned char* place = m_pData + m_nPosition;
  if (nBytes > 0) {
    std::memmove(place + kCountBytes, source, static_cast<std::size_t>(nBytes));  // first: the count may overwrite the source
  }
  std::memcpy(place, &nCount, kCountBytes);
  m_nPosition = static_cast<unsigned int>(end);
}

void CQXVStreamBufIn::Text(const QXChar* pText) {
  const int length = CQXString::Length(pText);
  Counted(length, pText, static_cast<std::uint64_t>(length) * sizeof(QXChar));
}

CQXVStreamBufIn& CQXVStreamBufIn::operator<<(const CQXString& value) {
  Text(value);
  return *this;
}

CQXVStreamBufIn& CQXVStreamBufIn::operator<<(const CString& value) {
  Text(value);
  return *this;
}

CQXVStreamBufIn& CQXVStreamBufIn::operator<<(const COleDateTime& value) {
  SYSTEMTIME time{};
  if (value.GetStatus() == COleDateTime::valid && !value.GetAsSystemTime(time)) {
    time = {};
  }
  return *this << time;
}

// KEPT: a negative count is written as it is, without bytes. Pinned by StreamBufferKept.ANegativeBlockIsItsCountAlone.
void CQXVStreamBufIn::in(const unsigned char* pData, int n) {
  if (pData == nullptr && n > 0) {
    n = 0;
  }
  Counted(n, pData, n > 0 ? static_cast<std::uint64_t>(n) : 0);
}

void CQXVStreamBufIn::Set(int nOffset, int nValue) {
  if (nOffset >= 0 && static_cast<unsigned int>(nOffset) <= m_nCapacity - sizeof nValue) {
    std::memcpy(m_pData + nOffset, &nValue, sizeof nValue);
  }
}
