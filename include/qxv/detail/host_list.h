// host_list.h - CStringList, the host framework's list of texts. Included through host.h.
#pragma once

#include "qxv/detail/host_string.h"
#include "qxv/export.h"
#include "qxv/types.h"

/// A place in a list: stays good until its element is removed; null is no place.
struct QXVListNode;
using POSITION = QXVListNode*;

/// Texts in order. No copies, as in the framework; AddTail takes the texts of another list.
/// A null position and the head or tail of an empty list throw CInvalidArgException*.
class QXV_API CStringList {
 public:
  CStringList() noexcept;
  CStringList(const CStringList&) = delete;
  CStringList& operator=(const CStringList&) = delete;
  virtual ~CStringList();

  QXInt64 GetCount() const noexcept;
  QXInt64 GetSize() const noexcept;
  bool IsEmpty() const noexcept;

  CString& GetHead();
  const CString& GetHead() const;
  CString& GetTail();
  const CString& GetTail() const;

  POSITION AddHead(const CString& text);
  POSITION AddTail(const CString& text);
  /// The texts of another list (or of this one), in their order, before the first or behind the last; null adds nothing.
  void AddHead(const CStringList* other);
  void AddTail(const CStringList* other);
  CString RemoveHead();
  CString RemoveTail();
  void RemoveAll() noexcept;

  POSITION GetHeadPosition() const noexcept;
  POSITION GetTailPosition() const noexcept;
  /// The text there; the position goes on, to null behind the end.
  CString& GetNext(POSITION& position);
  const CString& GetNext(POSITION& position) const;
  CString& GetPrev(POSITION& position);
  const CString& GetPrev(POSITION& position) const;

  CString& GetAt(POSITION position);
  const CString& GetAt(POSITION position) const;
  void SetAt(POSITION position, const CString& text);
  void RemoveAt(POSITION position);
  /// A null position inserts at the head (before) or at the tail (after).
  POSITION InsertBefore(POSITION position, const CString& text);
  POSITION InsertAfter(POSITION position, const CString& text);

  /// The first equal text behind startAfter (null: from the head), or null.
  POSITION Find(const QXChar* text, POSITION startAfter = nullptr) const noexcept;
  /// The place of an index from 0, or null.
  POSITION FindIndex(QXInt64 index) const noexcept;

 private:
  POSITION Link(const CString& text, POSITION before);

  POSITION m_head = nullptr;
  POSITION m_tail = nullptr;
  QXInt64 m_count = 0;
};
