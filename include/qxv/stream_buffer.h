// stream_buffer.h - CQXVStreamBufIn and CQXVStreamBufOut: typed values packed into a block of bytes and taken out again.
// The block carries no tags, no alignment and no padding; every number is little-endian. docs/stream-format.md has the table.
#pragma once

#include "qxv/export.h"
#include "qxv/guid.h"
#include "qxv/host.h"
#include "qxv/string.h"
#include "qxv/types.h"

#include <cstdint>
#include <cstring>

// Inline members that the library hands out as well, so that its table of names has the whole class. GCC for Windows exports of a
// class only what is not inline, unless a member says so itself.
#if defined(QXV_BUILDING) && defined(__GNUC__)
#define QXV_API_INLINE [[gnu::used]] QXV_API
#else
#define QXV_API_INLINE
#endif

/// Puts values into a block that it owns and that grows in steps of 3000 bytes.
///
/// long and unsigned long take 4 bytes on both systems; on Linux the low 32 bits of the value are written. Allocation failure
/// throws std::bad_alloc and leaves the block as it was; so do more than 0xFFFFFFFF bytes. One object is used by one thread at a
/// time.
class QXV_API CQXVStreamBufIn {
 public:
  /// 3000 bytes, none of them written.
  QXV_API_INLINE CQXVStreamBufIn() : m_pData(NewBlock()), m_nCapacity(kStep), m_nPosition(0), m_nGrowStep(kStep) {}

  /// A shallow copy: it shares the other's block. Only one of the two may be destroyed, and growing one may free the block under
  /// the other.
  CQXVStreamBufIn(const CQXVStreamBufIn& other);
  CQXVStreamBufIn& operator=(const CQXVStreamBufIn& other) = delete;  // the block replaced would have no owner

  QXV_API_INLINE virtual ~CQXVStreamBufIn() { FreeBlock(m_pData); }

  CQXVStreamBufIn& operator<<(char value) { return Number8(static_cast<unsigned char>(value)); }
  CQXVStreamBufIn& operator<<(unsigned char value) { return Number8(value); }
  CQXVStreamBufIn& operator<<(short value) { return Number16(static_cast<std::uint16_t>(value)); }
  CQXVStreamBufIn& operator<<(unsigned short value) { return Number16(value); }
  CQXVStreamBufIn& operator<<(QXChar value) { return Number16(static_cast<std::uint16_t>(value)); }
  CQXVStreamBufIn& operator<<(int value) { return Number32(static_cast<std::uint32_t>(value)); }
  CQXVStreamBufIn& operator<<(unsigned int value) { return Number32(value); }
  CQXVStreamBufIn& operator<<(long value) { return Number32(static_cast<std::uint32_t>(value)); }
  CQXVStreamBufIn& operator<<(unsigned long value) { return Number32(static_cast<std::uint32_t>(value)); }
  CQXVStreamBufIn& operator<<(QXInt64 value) { return Number64(static_cast<std::uint64_t>(value)); }
  CQXVStreamBufIn& operator<<(QXUInt64 value) { return Number64(value); }
  CQXVStreamBufIn& operator<<(float value) { return Image(&value, sizeof value); }
  CQXVStreamBufIn& operator<<(double value) { return Image(&value, sizeof value); }
  /// The low 32 bits, then the high ones.
  CQXVStreamBufIn& operator<<(const FILETIME& value) { return Image(&value, sizeof value); }
  CQXVStreamBufIn& operator<<(const GUID& value) { return Image(&value, sizeof value); }
  CQXVStreamBufIn& operator<<(const QX_GUID& value) { return Image(&value, sizeof value); }
  CQXVStreamBufIn& operator<<(const SYSTEMTIME& value) { return Image(&value, sizeof value); }
  /// As a SYSTEMTIME; 16 zero bytes when the date is not valid.
  CQXVStreamBufIn& operator<<(const COleDateTime& value);
  /// The 32-bit number of characters before the first zero, then these.
  CQXVStreamBufIn& operator<<(const CQXString& value);
  CQXVStreamBufIn& operator<<(const CString& value);

  /// n as a 32-bit count, then n bytes when n is 1 or more. Null data counts as n = 0. The data may lie in this block.
  void in(const unsigned char* pData, int n);

  /// Overwrites the four bytes at nOffset from the start, a count or length written earlier as a placeholder. Ignored for an
  /// offset below 0 or above the capacity less 4; bytes behind the position are overwritten again by what is put in later.
  void Set(int nOffset, int nValue);

  /// The start of the block, owned by this object and valid until the next operation that puts something in.
  /// @param nSize the position: bytes written. Negative from 2 GiB on.
  QXV_API_INLINE unsigned char* GetBuffer(int& nSize) {
    nSize = static_cast<int>(m_nPosition);
    return m_pData;
  }

  /// Bytes written.
  QXV_API_INLINE unsigned int GetPos() const { return m_nPosition; }

 protected:
  /// Adds one step to the capacity. New bytes are zero.
  void Grow();

  /// Adds n bytes to the capacity; nothing for n below 1.
  void Grow(int n);

 private:
  static constexpr unsigned int kStep = 3000;

  // The memory, which only the library takes and gives back. These work on values, not on the object: where all that is done with
  // a writer is inline, the compiler keeps its fields in registers.
  static unsigned char* NewBlock();
  static void FreeBlock(unsigned char* pData) noexcept;
  static unsigned char* Enlarged(unsigned char* pData, unsigned int nCapacity, std::uint64_t nNewCapacity);

  // The place of the next nBytes, at most 16: the capacity ends that far below 2^32, so the sum does not wrap.
  unsigned char* Room(unsigned int nBytes) {
    if (m_nPosition + nBytes > m_nCapacity) {
      m_pData = Enlarged(m_pData, m_nCapacity, std::uint64_t{m_nCapacity} + m_nGrowStep);
      m_nCapacity += m_nGrowStep;
    }
    const unsigned int position = m_nPosition;
    m_nPosition = position + nBytes;
    return m_pData + position;
  }
  CQXVStreamBufIn& Image(const void* pValue, unsigned int nBytes) {
    std::memcpy(Room(nBytes), pValue, nBytes);
    return *this;
  }
  CQXVStreamBufIn& Number8(std::uint8_t value) {
    *Room(sizeof value) = value;
    return *this;
  }
  CQXVStreamBufIn& Number16(std::uint16_t value) { return Image(&value, sizeof value); }
  CQXVStreamBufIn& Number32(std::uint32_t value) { return Image(&value, sizeof value); }
  CQXVStreamBufIn& Number64(std::uint64_t value) { return Image(&value, sizeof value); }
  void Counted(std::int32_t nCount, const void* pData, std::uint64_t nBytes);
  void Text(const QXChar* pText);
  void GrowTo(std::uint64_t nCapacity);

  unsigned char* m_pData;
  unsigned int m_nCapacity;
  unsigned int m_nPosition;
  unsigned int m_nGrowStep;
};

/// Takes values out of a block that the caller owns and keeps alive.
///
/// Nothing is checked: reading behind the end of the block, and an out destination smaller than the count, are the caller's
/// responsibility. Blocks that come from outside need a check of their own before they are read. One object is used by one thread
/// at a time.
class QXV_API CQXVStreamBufOut {
 public:
  /// @param pData a block that a CQXVStreamBufIn, or whoever follows docs/stream-format.md, has filled; not copied
  /// @param nSize its bytes; kept, but nothing is limited by it
  CQXVStreamBufOut(const unsigned char* pData, int nSize);
  CQXVStreamBufOut(const CQXVStreamBufOut& other);
  CQXVStreamBufOut& operator=(const CQXVStreamBufOut& other);

  /// Frees nothing.
  virtual ~CQXVStreamBufOut();

  /// Each operator takes the next value and advances behind it.
  CQXVStreamBufOut& operator>>(char& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(unsigned char& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(short& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(unsigned short& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(QXChar& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(int& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(unsigned int& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(long& value) { return look(value).Skip(4); }
  CQXVStreamBufOut& operator>>(unsigned long& value) { return look(value).Skip(4); }
  CQXVStreamBufOut& operator>>(QXInt64& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(QXUInt64& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(float& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(double& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(FILETIME& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(GUID& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(QX_GUID& value) { return Take(&value, sizeof value); }
  CQXVStreamBufOut& operator>>(SYSTEMTIME& value) { return Take(&value, sizeof value); }
  /// From a SYSTEMTIME. Valid only if year, month, day, hour, minute and second name a moment that exists.
  CQXVStreamBufOut& operator>>(COleDateTime& value);
  /// A count below 0 or above 0x3FFFFFFF gives an empty text and advances over the count only.
  CQXVStreamBufOut& operator>>(CQXString& value);
  CQXVStreamBufOut& operator>>(CString& value);

  /// The same without advancing.
  CQXVStreamBufOut& look(char& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(unsigned char& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(short& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(unsigned short& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(QXChar& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(int& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(unsigned int& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(long& value) {
    std::int32_t image = 0;
    Peek(&image, sizeof image);
    value = image;
    return *this;
  }
  CQXVStreamBufOut& look(unsigned long& value) {
    std::uint32_t image = 0;
    Peek(&image, sizeof image);
    value = image;
    return *this;
  }
  CQXVStreamBufOut& look(QXInt64& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(QXUInt64& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(float& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(double& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(FILETIME& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(GUID& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(QX_GUID& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(SYSTEMTIME& value) { return Peek(&value, sizeof value); }
  CQXVStreamBufOut& look(COleDateTime& value);
  CQXVStreamBufOut& look(CQXString& value);
  CQXVStreamBufOut& look(CString& value);

  /// A byte block. With a null destination: its count in n, nothing else, so that the caller can allocate. Otherwise: the count
  /// in n, and, when it is 1 or more, that many bytes in the destination; advances behind them.
  void out(unsigned char* pDestination, int& n);

  /// Bytes taken.
  unsigned int GetPos() const;

 private:
  CQXVStreamBufOut& Peek(void* pValue, unsigned int nBytes) {
    std::memcpy(pValue, m_pData + m_nPosition, nBytes);
    return *this;
  }
  CQXVStreamBufOut& Skip(unsigned int nBytes) {
    m_nPosition += nBytes;
    return *this;
  }
  CQXVStreamBufOut& Take(void* pValue, unsigned int nBytes) { return Peek(pValue, nBytes).Skip(nBytes); }

  const unsigned char* m_pData;
  [[maybe_unused]] unsigned int m_nSize;
  unsigned int m_nPosition;
};

#undef QXV_API_INLINE
