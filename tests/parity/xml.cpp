// xml.cpp - trees and their text.

#include "parity/trial.h"

#include "qxv/xml.h"

namespace parity {

namespace {

CQXString Name(Trial& t) {
  CQXString name(QXT("n"));
  for (int i = t.Below(4); i > 0; --i) {
    const QXChar letter[] = {static_cast<QXChar>(t.Between('a', 'z')), 0};
    name += letter;
  }
  return name;
}

void Fill(Trial& t, CQXVXmlNode& node, int depth) {
  for (int i = t.Below(3); i > 0; --i) {
    CQXString name = Name(t);
    const QXChar number[] = {static_cast<QXChar>('0' + i), 0};
    name += number;  // no attribute twice
    node.m_arrAtt.Add(new CQXVXmlAtt(name, t.Word(10).c_str()));
  }
  for (int i = depth > 0 ? t.Below(4) : 0; i > 0; --i) {
    auto* child = new CQXVXmlNode(Name(t));
    node.m_arrNode.Add(child);
    Fill(t, *child, depth - 1);
  }
}

void Take(Trial& t, const CQXVXmlNode& node) {
  t << node.m_strName << node.m_arrAtt.GetSize() << node.m_arrNode.GetSize();
  for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
    t << node.m_arrAtt[i]->m_strName << node.m_arrAtt[i]->m_strValue;
  }
  for (QXInt64 i = 0; i < node.m_arrNode.GetSize(); ++i) {
    Take(t, *node.m_arrNode[i]);
  }
}

void ThereAndBack(Trial& t) {
  t.Next();
  CQXVXmlNode root(Name(t));
  Fill(t, root, 4);
  CQXString text(QXT("<?xml version=\"1.0\"?>"));
  t << QXVXMLStruct2String(root, text) << text;
  CQXVXmlNode back;
  t << QXVXMLString2Struct(text, back);
  Take(t, back);
  CQXVXmlNode copy(back);
  copy = root;
  Take(t, copy);
}

void Damaged(Trial& t) {
  t.Next();
  CQXVXmlNode root(QXT("r"));
  Fill(t, root, 2);
  CQXString text(QXT("<?xml version=\"1.0\"?>"));
  (void)QXVXMLStruct2String(root, text);
  const CQXString cut = text.Mid(0, t.Below(text.GetLength() + 1));
  CQXVXmlNode back;
  t << (QXVXMLString2Struct(cut, back) < 0);
  Take(t, back);
}

}  // namespace

void RunXml(Trial& t) {
  for (int i = 0; i < 600; ++i) {
    ThereAndBack(t);
    Damaged(t);
  }
  CQXVXmlAtt attribute;
  const CQXVXmlAtt other(QXT("a"), QXT("b"));
  const CQXVXmlAtt copy(other);  // NOLINT(performance-unnecessary-copy-initialization): it is called
  attribute = copy;
  t << attribute.m_strName << attribute.m_strValue;
}

}  // namespace parity
