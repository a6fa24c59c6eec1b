// float_buffer.h - CQXVFloatBuffer, a growing queue of samples.
#pragma once

#include "qxv/export.h"

/// First in, first out queue of 32-bit floats in a ring that grows by steps of 1024 values.
///
/// Producer and consumer on different threads must share a lock of their own around every call. Null pointers and counts below 1
/// are no-ops. Allocation failure throws std::bad_alloc and leaves the queue as it was.
class QXV_API CQXVFloatBuffer {
 public:
  /// An empty queue of 1024 slots.
  CQXVFloatBuffer();

  /// A shallow copy: it shares the other's ring. Only one of the two may be destroyed, and growing one frees the ring under the
  /// other.
  CQXVFloatBuffer(const CQXVFloatBuffer& other);
  CQXVFloatBuffer& operator=(const CQXVFloatBuffer& other);

  virtual ~CQXVFloatBuffer();

  /// Appends n values.
  void PutData(const float* pValues, int n);

  /// Takes up to n of the oldest values and returns how many.
  int GetData(float* pDestination, int n);

  /// Values stored.
  int GetDataLen() const;

  /// Drops all values and keeps the ring.
  void RemoveAll();

 protected:
  /// Adds slots. The stored values move to the start of the new ring.
  void Grow(int nExtra);

 private:
  float* m_pData;
  int m_nRead;
  int m_nCount;
  int m_nCapacity;
};
