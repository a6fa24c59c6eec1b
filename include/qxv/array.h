// array.h - CQXArray, the growable array of the whole interface.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <new>
#include <type_traits>

/// A growable array of plain values, or of CQXString. Elements move by raw byte copy when the block grows; fresh plain elements
/// are zero bytes, fresh strings empty.
///
/// Access by index never fails: an index at or behind the size means the last element, a negative one the first, and an empty
/// array first grows to one element (a constant empty array answers with a shared empty element instead).
///
/// A failed allocation throws std::bad_alloc and leaves the array as it was; more bytes than there can be,
/// std::bad_array_new_length. One array is used by one thread at a time. ARG_T is what Add takes: CQXArray<CQXString,
/// CQXString&>, CQXArray<int, int&>.
template <class T, class ARG_T>
class CQXArray {
  static constexpr bool kText = std::is_same_v<T, CQXString>;
  static_assert(kText || std::is_trivially_copyable_v<T>, "elements move by raw byte copy");

 public:
  CQXArray() noexcept : m_pData(nullptr), m_nSize(0), m_nAllocated(0), m_nGrowBy(0) {}

  /// Element by element, with the same size and grow-by.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the constructor that it delegates to does
  CQXArray(const CQXArray& other) : CQXArray() {
    m_nGrowBy = other.m_nGrowBy;
    if (other.m_nSize > 0) {
      CQXArray copy;
      copy.m_nGrowBy = other.m_nGrowBy;
      copy.SetSize(other.m_nSize);
      for (QXInt64 i = 0; i < other.m_nSize; ++i) {
        copy.m_pData[i] = other.m_pData[i];
      }
      Swap(copy);
    }
  }

  CQXArray& operator=(const CQXArray& other) {
    if (this != &other) {
      CQXArray copy(other);
      Swap(copy);
    }
    return *this;
  }

  ~CQXArray() { RemoveAll(); }

  /// Number of elements in use.
  QXInt64 GetSize() const noexcept { return m_nSize; }

  /// The elements, null when there is no block.
  T* GetData() noexcept { return m_pData; }
  const T* GetData() const noexcept { return m_pData; }

  /// Elements by which a full block grows at least; 0: an eighth of the size, at least 4 and at most 1024.
  void SetGrowBy(QXInt64 nGrowBy) noexcept { m_nGrowBy = nGrowBy; }

  /// Drops elements at the end or adds fresh ones. 0 or below frees the block.
  void SetSize(QXInt64 nSize) {
    if (nSize <= 0) {
      RemoveAll();
    } else if (nSize <= m_nAllocated) {
      if (nSize > m_nSize) {
        Construct(m_pData, m_nSize, nSize);
      } else {
        Destroy(m_pData, nSize, m_nSize);
      }
      m_nSize = nSize;
    } else {
      Reallocate(nSize);
    }
  }

  /// Frees every element and the block.
  void RemoveAll() noexcept {
    Destroy(m_pData, 0, m_nSize);
    Free(m_pData);
    m_pData = nullptr;
    m_nSize = 0;
    m_nAllocated = 0;
  }

  /// Appends a copy and returns its index. The value may be an element of this array.
  QXInt64 Add(ARG_T value) {
    const T& source = value;
    if (m_nSize == m_nAllocated && !std::less<>()(&source, static_cast<const T*>(m_pData)) &&
        std::less<>()(&source, static_cast<const T*>(m_pData + m_nSize))) {
      // Growing moves the element away. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
      const T copy(source);
      return Append(copy);
    }
    return Append(source);
  }

  // KEPT: access never fails. Callers index without asking for the size. Pinned by
  // ArrayKept.IndexBehindTheEndMeansTheLastElement,
  //   ArrayKept.NegativeIndexMeansTheFirstElement and ArrayKept.AccessGrowsAnEmptyArrayToOneElement.
  T& operator[](QXInt64 nIndex) {
    if (m_nSize == 0) {
      SetSize(1);
    }
    return m_pData[Clamped(nIndex)];
  }

  const T& operator[](QXInt64 nIndex) const {
    if (m_nSize == 0) {
      static const T empty{};
      return empty;
    }
    return m_pData[Clamped(nIndex)];
  }

 private:
  QXInt64 Clamped(QXInt64 nIndex) const noexcept { return nIndex < 0 ? 0 : nIndex < m_nSize ? nIndex : m_nSize - 1; }

  QXInt64 Append(const T& value) {
    SetSize(m_nSize + 1);
    if constexpr (kText) {
      try {
        m_pData[m_nSize - 1] = value;
      } catch (...) {
        Destroy(m_pData, m_nSize - 1, m_nSize);
        --m_nSize;
        throw;
      }
    } else {
      m_pData[m_nSize - 1] = value;
    }
    return m_nSize - 1;
  }

  static T* Allocate(QXInt64 nCount) {
    if (static_cast<QXUInt64>(nCount) > static_cast<QXUInt64>(PTRDIFF_MAX) / sizeof(T)) {
      throw std::bad_array_new_length();
    }
    const std::size_t bytes = static_cast<std::size_t>(nCount) * sizeof(T);
    unsigned char* block = new unsigned char[bytes];
    std::memset(block, 0, bytes);
    return reinterpret_cast<T*>(block);
  }

  static void Free(T* pBlock) noexcept { delete[] reinterpret_cast<unsigned char*>(pBlock); }

  // Fresh elements first ... end - 1; all of them or, on an exception, none.
  static void Construct(T* pBlock, QXInt64 nFirst, QXInt64 nEnd) {
    std::memset(static_cast<void*>(pBlock + nFirst), 0, static_cast<std::size_t>(nEnd - nFirst) * sizeof(T));
    if constexpr (kText) {
      QXInt64 made = nFirst;
      try {
        for (; made < nEnd; ++made) {
          ::new (static_cast<void*>(pBlock + made)) T();
        }
      } catch (...) {
        Destroy(pBlock, nFirst, made);
        throw;
      }
    }
  }

  static void Destroy(T* pBlock, QXInt64 nFirst, QXInt64 nEnd) noexcept {
    if constexpr (kText) {
      for (QXInt64 i = nFirst; i < nEnd; ++i) {
        pBlock[i].~T();
      }
    } else {
      (void)pBlock, (void)nFirst, (void)nEnd;
    }
  }

  void Reallocate(QXInt64 nSize) {
    const QXInt64 automatic = m_nSize / 8 < 4 ? 4 : m_nSize / 8 > 1024 ? 1024 : m_nSize / 8;
    const QXInt64 step = m_pData == nullptr || m_nGrowBy != 0 ? m_nGrowBy : automatic;
    const QXInt64 grown = step > INT64_MAX - m_nAllocated ? INT64_MAX : m_nAllocated + step;  // step may be negative
    const QXInt64 allocated = nSize > grown ? nSize : grown;
    T* block = Allocate(allocated);
    try {
      Construct(block, m_nSize, nSize);  // first, so that a failure leaves the old block the only owner of its elements
    } catch (...) {
      Free(block);
      throw;
    }
    if (m_nSize > 0) {
      std::memcpy(static_cast<void*>(block), static_cast<const void*>(m_pData), static_cast<std::size_t>(m_nSize) * sizeof(T));
    }
    Free(m_pData);
    m_pData = block;
    m_nSize = nSize;
    m_nAllocated = allocated;
  }

  void Swap(CQXArray& other) noexcept {
    unsigned char keep[sizeof(CQXArray)];
    std::memcpy(keep, static_cast<void*>(this), sizeof keep);
    std::memcpy(static_cast<void*>(this), static_cast<void*>(&other), sizeof keep);
    std::memcpy(static_cast<void*>(&other), keep, sizeof keep);
  }

  T* m_pData;
  QXInt64 m_nSize;
  QXInt64 m_nAllocated;
  QXInt64 m_nGrowBy;
};

QXV_API_INSTANCE(CQXArray<CQXString, CQXString&>);
