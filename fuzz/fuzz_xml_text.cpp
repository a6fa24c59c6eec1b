// fuzz_xml_text.cpp - documents of any units. What must hold: parsing gives 0 or the failure of too many levels, entities expand
// only so far, and a tree, written and read again, is the same as long as its names and values are XML.
// The units are taken as they are (first byte even) or as UTF-8 bytes behind a declaration (odd), which reaches deeper.

#include "qxv/xml.h"

#include "os/utf.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Text = std::basic_string<QXChar>;

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// Walks the tree; the units of names and values, and whether the tree holds elements alone.
std::size_t UnitsOf(const CQXVXmlNode& root, bool& elements) {
  std::size_t units = 0;
  std::vector<const CQXVXmlNode*> open{&root};
  while (!open.empty()) {
    const CQXVXmlNode* node = open.back();
    open.pop_back();
    elements = elements && static_cast<const QXChar*>(node->m_strName)[0] != QXT('#');
    units += static_cast<std::size_t>(node->m_strName.GetLength());
    for (QXInt64 i = 0; i < node->m_arrAtt.GetSize(); ++i) {
      units += static_cast<std::size_t>(node->m_arrAtt[i]->m_strName.GetLength() + node->m_arrAtt[i]->m_strValue.GetLength());
    }
    for (QXInt64 i = 0; i < node->m_arrNode.GetSize(); ++i) {
      open.push_back(node->m_arrNode[i]);
    }
  }
  return units;
}

Text Written(const CQXVXmlNode& root) {
  CQXString text;
  Require(QXVXMLStruct2String(root, text) == 0);
  return Text(static_cast<const QXChar*>(text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  Text text;
  if (data[0] % 2 == 0) {
    text.resize((size - 1) / sizeof(QXChar));
    std::memcpy(text.data(), data + 1, text.size() * sizeof(QXChar));
  } else {
    text = (data[0] & 2) != 0 ? Text(QXT("<?xml version=\"1.0\"?>")) : Text();
    text += qxv::os::TextFromUtf8({reinterpret_cast<const char*>(data + 1), size - 1});
  }
  CQXVXmlNode tree(CQXString(QXT("old")));
  const int result = QXVXMLString2Struct(CQXString(text.c_str()), tree);
  Require(result == 0 || static_cast<unsigned>(result) == 0x80004005u);
  bool elements = true;
  Require(UnitsOf(tree, elements) <= 101 * 3 * text.size() + 3);

  CQXVXmlNode copy;
  copy = tree;
  const Text written = Written(tree);
  Require(Written(copy) == written);
  CQXVXmlNode again(CQXString(QXT("old")));
  Require(QXVXMLString2Struct(CQXString((QXT("<?p?>") + written).c_str()), again) == 0 || !elements);
  return 0;
}
