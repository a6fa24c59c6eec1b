// host_list.cpp - CStringList, a doubly linked list.

#include "qxv/host.h"

#include <utility>

struct QXVListNode {
  QXVListNode* next;
  QXVListNode* previous;
  CString text;
};

namespace {

QXVListNode& At(POSITION position) {
  if (position == nullptr) {
    AfxThrowInvalidArgException();
  }
  return *position;
}

}  // namespace

CStringList::CStringList() noexcept = default;

CStringList::~CStringList() { RemoveAll(); }

QXInt64 CStringList::GetCount() const noexcept { return m_count; }

QXInt64 CStringList::GetSize() const noexcept { return m_count; }

bool CStringList::IsEmpty() const noexcept { return m_count == 0; }

CString& CStringList::GetHead() { return At(m_head).text; }

const CString& CStringList::GetHead() const { return At(m_head).text; }

CString& CStringList::GetTail() { return At(m_tail).text; }

const CString& CStringList::GetTail() const { return At(m_tail).text; }

// before: the element to stand in front of; null for the end.
POSITION CStringList::Link(const CString& text, POSITION before) {
  const POSITION previous = before == nullptr ? m_tail : before->previous;
  const POSITION node = new QXVListNode{before, previous, text};
  (previous == nullptr ? m_head : previous->next) = node;
  (before == nullptr ? m_tail : before->previous) = node;
  ++m_count;
  return node;
}

POSITION CStringList::AddHead(const CString& text) { return Link(text, m_head); }

POSITION CStringList::AddTail(const CString& text) { return Link(text, nullptr); }

void CStringList::AddHead(const CStringList* other) {
  if (other == nullptr) {
    return;
  }
  const POSITION oldHead = m_head;
  POSITION source = other->m_head;
  for (QXInt64 left = other->m_count; left > 0; --left) {  // a count taken before: the other list may be this one
    Link(source->text, oldHead);
    source = source->next;
  }
}

void CStringList::AddTail(const CStringList* other) {
  if (other == nullptr) {
    return;
  }
  POSITION source = other->m_head;
  for (QXInt64 left = other->m_count; left > 0; --left) {
    Link(source->text, nullptr);
    source = source->next;
  }
}

CString CStringList::RemoveHead() {
  CString text = std::move(At(m_head).text);
  RemoveAt(m_head);
  return text;
}

CString CStringList::RemoveTail() {
  CString text = std::move(At(m_tail).text);
  RemoveAt(m_tail);
  return text;
}

void CStringList::RemoveAll() noexcept {
  while (m_head != nullptr) {
    delete std::exchange(m_head, m_head->next);
  }
  m_tail = nullptr;
  m_count = 0;
}

POSITION CStringList::GetHeadPosition() const noexcept { return m_head; }

POSITION CStringList::GetTailPosition() const noexcept { return m_tail; }

CString& CStringList::GetNext(POSITION& position) {
  QXVListNode& node = At(position);
  position = node.next;
  return node.text;
}

const CString& CStringList::GetNext(POSITION& position) const {
  const QXVListNode& node = At(position);
  position = node.next;
  return node.text;
}

CString& CStringList::GetPrev(POSITION& position) {
  QXVListNode& node = At(position);
  position = node.previous;
  return node.text;
}

const CString& CStringList::GetPrev(POSITION& position) const {
  const QXVListNode& node = At(position);
  position = node.previous;
  return node.text;
}

CString& CStringList::GetAt(POSITION position) { return At(position).text; }

const CString& CStringList::GetAt(POSITION position) const { return At(position).text; }

void CStringList::SetAt(POSITION position, const CString& text) { At(position).text = text; }

void CStringList::RemoveAt(POSITION position) {
  QXVListNode& node = At(position);
  (node.previous == nullptr ? m_head : node.previous->next) = node.next;
  (node.next == nullptr ? m_tail : node.next->previous) = node.previous;
  --m_count;
  delete position;
}

POSITION CStringList::InsertBefore(POSITION position, const CString& text) {
  return Link(text, position == nullptr ? m_head : position);
}

POSITION CStringList::InsertAfter(POSITION position, const CString& text) {
  return Link(text, position == nullptr ? nullptr : position->next);
}

POSITION CStringList::Find(const QXChar* text, POSITION startAfter) const noexcept {
  POSITION position = startAfter == nullptr ? m_head : startAfter->next;
  while (position != nullptr && position->text != text) {
    position = position->next;
  }
  return position;
}

POSITION CStringList::FindIndex(QXInt64 index) const noexcept {
  if (index < 0 || index >= m_count) {
    return nullptr;
  }
  POSITION position = m_head;
  while (index-- > 0) {
    position = position->next;
  }
  return position;
}
