// xml_tree_text.h - a tree in one line, for expectations: (name attribute=[value] ... children).
#pragma once

#include "qxv/xml.h"
#include "support/text.h"

#include <string>
#include <vector>

namespace support {

/// Levels and children that a test makes: many where the allocator bears it, few where each block has its guard page.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr int kManyNodes = 200000;
#elif defined(__has_feature)
inline constexpr int kManyNodes = __has_feature(address_sanitizer) ? 200000 : 3000;
#else
inline constexpr int kManyNodes = 3000;
#endif

/// Without recursion, so that deep trees can be shown.
inline std::string Shown(const CQXVXmlNode& root) {
  struct Open {
    const CQXVXmlNode* node;
    QXInt64 next;
  };
  std::string shown;
  const auto show = [&shown](const CQXVXmlNode& node) {
    shown += "(" + Printable(TextOf(node.m_strName));
    for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
      const CQXVXmlAtt* attribute = node.m_arrAtt[i];
      shown += attribute == nullptr
                   ? std::string(" null")
                   : " " + Printable(TextOf(attribute->m_strName)) + "=[" + Printable(TextOf(attribute->m_strValue)) + "]";
    }
    return Open{&node, 0};
  };
  std::vector<Open> open{show(root)};
  while (!open.empty()) {
    Open& last = open.back();
    if (last.next == last.node->m_arrNode.GetSize()) {
      shown += ")";
      open.pop_back();
    } else if (const CQXVXmlNode* child = last.node->m_arrNode[last.next++]; child != nullptr) {
      open.push_back(show(*child));
    } else {
      shown += "null";
    }
  }
  return shown;
}

/// A node with these attributes (name, value) and no children.
inline CQXVXmlNode* NewNode(const QXChar* name, const std::vector<std::pair<const QXChar*, const QXChar*>>& attributes = {}) {
  auto* node = new CQXVXmlNode(CQXString(name));
  for (const auto& [key, value] : attributes) {
    node->m_arrAtt.Add(new CQXVXmlAtt(CQXString(key), CQXString(value)));
  }
  return node;
}

}  // namespace support
