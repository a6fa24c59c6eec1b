// float_buffer.cpp - CQXVFloatBuffer: the values stand in the slots m_nRead, m_nRead + 1 ... (m_nCount of them), wrapping at the
// end.

#include "qxv/float_buffer.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace {

constexpr int kStep = 1024;

// n values from slot first of a ring, wrapping.
void CopyOut(const float* ring, int capacity, int first, int n, float* destination) {
  const int upToEnd = std::min(n, capacity - first);
  std::memcpy(destination, ring + first, static_cast<std::size_t>(upToEnd) * sizeof(float));
  std::memcpy(destination + upToEnd, ring, static_cast<std::size_t>(n - upToEnd) * sizeof(float));
}

}  // namespace

CQXVFloatBuffer::CQXVFloatBuffer() : m_pData(new float[kStep]), m_nRead(0), m_nCount(0), m_nCapacity(kStep) {}

// KEPT: copies share the ring; the owner of both destroys only one. Pinned by FloatBufferKept.CopyAndAssignmentShareTheRing.
CQXVFloatBuffer::CQXVFloatBuffer(const CQXVFloatBuffer& other) = default;
CQXVFloatBuffer& CQXVFloatBuffer::operator=(const CQXVFloatBuffer& other) = default;

CQXVFloatBuffer::~CQXVFloatBuffer() {
  delete[] m_pData;
  m_pData = nullptr;
  m_nRead = 0;
  m_nCount = 0;
  m_nCapacity = 0;
}

void CQXVFloatBuffer::Grow(int nExtra) {
  if (nExtra <= 0) {
    return;
  }
  if (nExtra > INT_MAX - m_nCapacity) {
    throw std::bad_alloc();
  }
  auto ring = std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(m_nCapacity) + static_cast<std::size_t>(nExtra));
  CopyOut(m_pData, m_nCapacity, m_nRead, m_nCount, ring.get());
  delete[] m_pData;
  m_pData = ring.release();
  m_nCapacity += nExtra;
  m_nRead = 0;
}

void CQXVFloatBuffer::PutData(const float* pValues, int n) {
  if (pValues == nullptr || n <= 0) {
    return;
  }
  const int free = m_nCapacity - m_nCount;
  if (n > free) {
    const std::int64_t extra = (static_cast<std::int64_t>(n) - free + kStep - 1) / kStep * kStep;
    if (extra > INT_MAX) {
      throw std::bad_alloc();
    }
    Grow(static_cast<int>(extra));
  }
  const int write = static_cast<int>((static_cast<std::int64_t>(m_nRead) + m_nCount) % m_nCapacity);
  const int upToEnd = std::min(n, m_nCapacity - write);
  std::memcpy(m_pData + write, pValues, static_cast<std::size_t>(upToEnd) * sizeof(float));
  std::memcpy(m_pData, pValues + upToEnd, static_cast<std::size_t>(n - upToEnd) * sizeof(float));
  m_nCount += n;
}

int CQXVFloatBuffer::GetData(float* pDestination, int n) {
  if (pDestination == nullptr || n <= 0 || m_nCount == 0) {
    return 0;
  }
  const int taken = std::min(n, m_nCount);
  CopyOut(m_pData, m_nCapacity, m_nRead, taken, pDestination);
  const std::int64_t next = static_cast<std::int64_t>(m_nRead) + taken;
  m_nRead = static_cast<int>(next <= m_nCapacity ? next : next - m_nCapacity);  // may equal the capacity until the next operation
  m_nCount -= taken;
  return taken;
}

int CQXVFloatBuffer::GetDataLen() const { return m_nCount; }

void CQXVFloatBuffer::RemoveAll() {
  m_nRead = 0;
  m_nCount = 0;
}
