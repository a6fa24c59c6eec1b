// host_array.h - CArray and the arrays of plain values, the host framework's arrays. Included through host.h.
#pragma once

#include "qxv/detail/host_exception.h"
#include "qxv/detail/host_string.h"
#include "qxv/types.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// Elements in one block, real objects each: constructed, copied and destroyed by their own operations. No copies of the array
/// itself, as in the framework; Copy and Append take the elements of another. Arguments may be elements of the array.
/// An index outside throws CInvalidArgException*; more elements than an address space holds, std::bad_array_new_length. When an
/// element's constructor or an allocation throws, SetSize, Add and Append leave the array as it was.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
  static_assert(alignof(TYPE) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "over-aligned elements are not supported");

 public:
  CArray() noexcept = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  virtual ~CArray() { RemoveAll(); }

  QXInt64 GetSize() const noexcept { return m_size; }
  QXInt64 GetCount() const noexcept { return m_size; }
  bool IsEmpty() const noexcept { return m_size == 0; }
  QXInt64 GetUpperBound() const noexcept { return m_size - 1; }

  /// New elements are value-initialised: 0 for numbers. Size 0 frees the block.
  /// @param newSize negative throws CInvalidArgException*
  /// @param growBy  elements allocated ahead from now on; 0 lets the array choose, -1 keeps what was set
  void SetSize(QXInt64 newSize, QXInt64 growBy = -1) {
    if (newSize < 0) {
      AfxThrowInvalidArgException();
    }
    if (growBy >= 0) {
      m_growBy = growBy;
    }
    if (newSize == 0) {
      RemoveAll();
    } else if (newSize <= m_size) {
      std::destroy(m_data + newSize, m_data + m_size);
      m_size = newSize;
    } else if (newSize <= m_capacity) {
      std::uninitialized_value_construct(m_data + m_size, m_data + newSize);
      m_size = newSize;
    } else {
      Block fresh(CapacityFor(newSize));
      std::uninitialized_value_construct(fresh.data + m_size, fresh.data + newSize);
      fresh.tail = fresh.data + m_size;
      fresh.end = fresh.data + newSize;
      TakeOver(fresh, newSize);
    }
  }
  void RemoveAll() noexcept {
    if (m_data != nullptr) {
      std::destroy(m_data, m_data + m_size);
      ::operator delete[](static_cast<void*>(m_data));
    }
    m_data = nullptr;
    m_size = m_capacity = 0;
  }
  /// Gives back what is allocated ahead.
  void FreeExtra() {
    if (m_size == 0) {
      RemoveAll();
    } else if (m_size != m_capacity) {
      Block fresh(m_size);
      TakeOver(fresh, m_size);
    }
  }

  const TYPE& GetAt(QXInt64 index) const { return m_data[Checked(index)]; }
  TYPE& GetAt(QXInt64 index) { return m_data[Checked(index)]; }
  const TYPE& ElementAt(QXInt64 index) const { return m_data[Checked(index)]; }
  TYPE& ElementAt(QXInt64 index) { return m_data[Checked(index)]; }
  const TYPE& operator[](QXInt64 index) const { return m_data[Checked(index)]; }
  TYPE& operator[](QXInt64 index) { return m_data[Checked(index)]; }
  void SetAt(QXInt64 index, ARG_TYPE newElement) { m_data[Checked(index)] = newElement; }
  /// Null while nothing is allocated.
  const TYPE* GetData() const noexcept { return m_data; }
  TYPE* GetData() noexcept { return m_data; }

  /// SetAt that first makes the array long enough.
  void SetAtGrow(QXInt64 index, ARG_TYPE newElement) {
    if (index < 0) {
      AfxThrowInvalidArgException();
    }
    if (index < m_size) {
      m_data[index] = newElement;
    } else {
      TYPE copy(newElement);  // it may lie in the block that goes
      SetSize(After(index, 1));
      m_data[index] = std::move(copy);
    }
  }
  /// @return the index of the new last element
  QXInt64 Add(ARG_TYPE newElement) {
    if (m_size < m_capacity) {
      ::new (static_cast<void*>(m_data + m_size)) TYPE(newElement);
      return m_size++;
    }
    Block fresh(CapacityFor(After(m_size, 1)));
    ::new (static_cast<void*>(fresh.data + m_size)) TYPE(newElement);  // before the block that may hold it goes
    fresh.tail = fresh.data + m_size;
    fresh.end = fresh.tail + 1;
    TakeOver(fresh, m_size + 1);
    return m_size - 1;
  }
  /// @return the index of the first appended element
  QXInt64 Append(const CArray& source) {
    const QXInt64 oldSize = m_size;
    const QXInt64 count = source.m_size;
    if (count <= 0) {
      return oldSize;
    }
    if (After(oldSize, count) <= m_capacity) {
      std::uninitialized_copy(source.m_data, source.m_data + count, m_data + oldSize);
      m_size += count;
      return oldSize;
    }
    Block fresh(CapacityFor(oldSize + count));
    std::uninitialized_copy(source.m_data, source.m_data + count, fresh.data + oldSize);
    fresh.tail = fresh.data + oldSize;
    fresh.end = fresh.tail + count;
    TakeOver(fresh, oldSize + count);
    return oldSize;
  }
  /// Makes the elements those of the source.
  void Copy(const CArray& source) {
    if (this == &source) {
      return;
    }
    CArray fresh;
    fresh.Append(source);
    std::swap(m_data, fresh.m_data);
    std::swap(m_size, fresh.m_size);
    std::swap(m_capacity, fresh.m_capacity);
  }

  /// count copies; behind the end the array is first made long enough. A count of 0 or less inserts nothing.
  void InsertAt(QXInt64 index, ARG_TYPE newElement, QXInt64 count = 1) {
    if (index < 0) {
      AfxThrowInvalidArgException();
    }
    if (count <= 0) {
      return;
    }
    const TYPE copy(newElement);
    OpenGap(index, count);
    std::fill(m_data + index, m_data + index + count, copy);
  }
  /// The elements of another array (or of this one); null inserts nothing.
  void InsertAt(QXInt64 startIndex, const CArray* source) {
    if (startIndex < 0) {
      AfxThrowInvalidArgException();
    }
    if (source == nullptr || source->m_size == 0) {
      return;
    }
    CArray copy;
    copy.Append(*source);
    OpenGap(startIndex, copy.m_size);
    std::move(copy.m_data, copy.m_data + copy.m_size, m_data + startIndex);
  }
  /// Throws CInvalidArgException* unless all of them exist.
  void RemoveAt(QXInt64 index, QXInt64 count = 1) {
    if (index < 0 || count < 0 || index > m_size || count > m_size - index) {
      AfxThrowInvalidArgException();
    }
    if (count > 0) {
      std::move(m_data + index + count, m_data + m_size, m_data + index);
      std::destroy(m_data + m_size - count, m_data + m_size);
      m_size -= count;
    }
  }

 private:
  // A block under construction: what stands between tail and end is destroyed with it unless TakeOver succeeds.
  struct Block {
    explicit Block(QXInt64 newCapacity)
        : data(static_cast<TYPE*>(::operator new[](static_cast<std::size_t>(newCapacity) * sizeof(TYPE)))),
          capacity(newCapacity) {}
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() {
      std::destroy(tail, end);
      ::operator delete[](static_cast<void*>(data));
    }
    TYPE* data;
    QXInt64 capacity;
    TYPE* tail = nullptr;
    TYPE* end = nullptr;
  };

  static constexpr QXInt64 kMaxSize = static_cast<QXInt64>(PTRDIFF_MAX / sizeof(TYPE));

  static QXInt64 After(QXInt64 index, QXInt64 count) {
    if (index > kMaxSize - count) {
      throw std::bad_array_new_length();
    }
    return index + count;
  }
  QXInt64 Checked(QXInt64 index) const {
    if (index < 0 || index >= m_size) {
      AfxThrowInvalidArgException();
    }
    return index;
  }
  QXInt64 CapacityFor(QXInt64 newSize) const {
    if (newSize > kMaxSize) {
      throw std::bad_array_new_length();
    }
    const QXInt64 ahead = m_growBy > 0 ? m_growBy : std::max<QXInt64>(4, m_size / 2);
    return m_data == nullptr && m_growBy == 0 ? newSize : std::max(newSize, m_capacity + std::min(ahead, kMaxSize - m_capacity));
  }
  // Moves the elements to the front of fresh (copies them when a move could throw half-way) and makes it the array's block.
  void TakeOver(Block& fresh, QXInt64 newSize) {
    if constexpr (std::is_nothrow_move_constructible_v<TYPE> || !std::is_copy_constructible_v<TYPE>) {
      std::uninitialized_move(m_data, m_data + m_size, fresh.data);
    } else {
      std::uninitialized_copy(m_data, m_data + m_size, fresh.data);
    }
    fresh.tail = m_data;  // now fresh holds the old block and all its elements
    fresh.end = m_data + m_size;
    std::swap(m_data, fresh.data);
    m_capacity = fresh.capacity;
    m_size = newSize;
  }
  void OpenGap(QXInt64 index, QXInt64 count) {
    const QXInt64 oldSize = m_size;
    SetSize(After(std::max(index, oldSize), count));
    if (index < oldSize) {
      std::move_backward(m_data + index, m_data + oldSize, m_data + m_size);
    }
  }

  TYPE* m_data = nullptr;
  QXInt64 m_size = 0;
  QXInt64 m_capacity = 0;
  QXInt64 m_growBy = 0;
};

class CStringArray : public CArray<CString, const CString&> {};
class CDWordArray : public CArray<DWORD, DWORD> {};
class CWordArray : public CArray<WORD, WORD> {};
class CByteArray : public CArray<BYTE, BYTE> {};
