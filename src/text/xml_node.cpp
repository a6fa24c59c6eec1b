// xml_node.cpp - CQXVXmlAtt and CQXVXmlNode: copying and freeing trees of any depth without recursion.

#include "qxv/xml.h"

#include "text/xml_tree.h"

#include <algorithm>
#include <vector>

namespace qxv {
namespace {

// A node's own part of being freed before its children: they are then taken off the end of the list, in index order.
void BeginDeletion(CQXVXmlNode& node) noexcept {
  DeleteAttributes(node);
  node.m_arrAtt.RemoveAll();
  if (node.m_arrNode.GetSize() > 1) {
    std::reverse(node.m_arrNode.GetData(), node.m_arrNode.GetData() + node.m_arrNode.GetSize());
  }
}

struct Copy {
  const CQXVXmlNode* source;
  CQXVXmlNode* target;  // owned by the tree that is being made
};

void CopyAttributes(const CQXVXmlNode& source, CQXVXmlNode& target) {
  const QXInt64 count = source.m_arrAtt.GetSize();
  target.m_arrAtt.SetSize(count);
  for (QXInt64 i = 0; i < count; ++i) {
    if (const CQXVXmlAtt* from = source.m_arrAtt.GetData()[i]; from != nullptr) {
      CQXVXmlAtt* made = new CQXVXmlAtt;
      target.m_arrAtt.GetData()[i] = made;
      *made = *from;
    }
  }
}

// Fills the lists of a node that has none. Every new node stands in the tree before it is filled, so nothing is lost when memory
// ends.
void CopyLists(const CQXVXmlNode& root, CQXVXmlNode& copy) {
  std::vector<Copy> open{{&root, &copy}};
  while (!open.empty()) {
    const auto [source, target] = open.back();
    open.pop_back();
    CopyAttributes(*source, *target);
    const QXInt64 count = source->m_arrNode.GetSize();
    target->m_arrNode.SetSize(count);
    for (QXInt64 i = 0; i < count; ++i) {
      if (const CQXVXmlNode* from = source->m_arrNode.GetData()[i]; from != nullptr) {
        CQXVXmlNode* made = new CQXVXmlNode;
        target->m_arrNode.GetData()[i] = made;
        made->m_strName = from->m_strName;
        open.push_back({from, made});
      }
    }
  }
}

// Exchanges the entries of two arrays of one size.
template <class T>
void SwapEntries(CQXArray<T*, T*>& a, CQXArray<T*, T*>& b) noexcept {
  if (a.GetSize() > 0) {
    std::swap_ranges(a.GetData(), a.GetData() + a.GetSize(), b.GetData());
  }
}

}  // namespace

void DeleteAttributes(CQXVXmlNode& node) noexcept {
  for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
    delete node.m_arrAtt.GetData()[i];
    node.m_arrAtt.GetData()[i] = nullptr;
  }
}

// Goes down to a leaf and frees on the way back. While a node's child is visited, the child's entry holds the way up.
void DeleteChildren(CQXVXmlNode& top) noexcept {
  CQXVXmlNode* node = &top;
  CQXVXmlNode* above = nullptr;
  if (top.m_arrNode.GetSize() > 1) {
    std::reverse(top.m_arrNode.GetData(), top.m_arrNode.GetData() + top.m_arrNode.GetSize());
  }
  for (;;) {
    const QXInt64 last = node->m_arrNode.GetSize() - 1;
    if (last >= 0) {
      CQXVXmlNode*& entry = node->m_arrNode.GetData()[last];
      if (CQXVXmlNode* child = entry; child != nullptr) {
        entry = above;
        above = node;
        node = child;
        BeginDeletion(*node);
      } else {
        node->m_arrNode.SetSize(last);
      }
    } else if (node == &top) {
      top.m_arrNode.RemoveAll();
      return;
    } else {
      const CQXVXmlNode* done = node;
      node = above;
      const QXInt64 end = node->m_arrNode.GetSize() - 1;
      above = node->m_arrNode.GetData()[end];
      node->m_arrNode.SetSize(end);
      delete done;
    }
  }
}

QXInt64 GrownBlock(QXInt64 count) noexcept {
  QXInt64 block = count > 0 ? 1 : 0;
  while (block < count) {
    block += std::clamp<QXInt64>(block / 8, 4, 1024);
  }
  return block;
}

}  // namespace qxv

CQXVXmlAtt::CQXVXmlAtt() = default;

CQXVXmlAtt::CQXVXmlAtt(const CQXString& name, const CQXString& value) : m_strName(name), m_strValue(value) {}

CQXVXmlAtt::CQXVXmlAtt(const CQXVXmlAtt& other) = default;

void CQXVXmlAtt::operator=(const CQXVXmlAtt& other) {
  if (this != &other) {
    m_strName = other.m_strName;
    m_strValue = other.m_strValue;
  }
}

CQXVXmlAtt::~CQXVXmlAtt() = default;

CQXVXmlNode::CQXVXmlNode() = default;

CQXVXmlNode::CQXVXmlNode(const CQXString& name) : m_strName(name) {}

CQXVXmlNode::CQXVXmlNode(const CQXVXmlNode& other) : CQXVXmlNode() {  // a failure below runs the destructor
  m_strName = other.m_strName;
  qxv::CopyLists(other, *this);
}

void CQXVXmlNode::operator=(const CQXVXmlNode& other) {
  if (this == &other) {
    return;
  }
  CQXVXmlNode copy(other);
  const QXInt64 oldAttributes = m_arrAtt.GetSize();
  const QXInt64 oldNodes = m_arrNode.GetSize();
  const QXInt64 attributes = copy.m_arrAtt.GetSize();
  const QXInt64 nodes = copy.m_arrNode.GetSize();
  // All that can fail comes first: room on both sides for the longer list of each kind, then the name.
  const QXInt64 attributeRoom = std::max(oldAttributes, attributes);
  const QXInt64 nodeRoom = std::max(oldNodes, nodes);
  copy.m_arrAtt.SetSize(attributeRoom);
  copy.m_arrNode.SetSize(nodeRoom);
  m_arrAtt.SetSize(attributeRoom);
  m_arrNode.SetSize(nodeRoom);
  m_strName = copy.m_strName;
  qxv::SwapEntries(m_arrAtt, copy.m_arrAtt);
  qxv::SwapEntries(m_arrNode, copy.m_arrNode);
  m_arrAtt.SetSize(attributes);
  m_arrNode.SetSize(nodes);
  // The old tree goes with the copy.
}

CQXVXmlNode::~CQXVXmlNode() {
  qxv::DeleteAttributes(*this);
  m_arrAtt.RemoveAll();
  qxv::DeleteChildren(*this);
}
