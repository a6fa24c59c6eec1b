// xml_text_subject.cpp - the tree of a document and a document of a tree, for programs that judge both.
//   xml_text_subject write   reads one item a line (UTF-8) and prints the tree as XML in UTF-8
//   xml_text_subject read    reads a document (UTF-8) and prints its tree in the same lines
// Items: "<name" opens, ">" closes, "@name" and then "=value" give an attribute. Line ends in values are not possible.

#include "os/utf.h"
#include "qxv/xml.h"

#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

CQXString StringOf(const std::string& bytes) { return CQXString(qxv::os::TextFromUtf8(bytes).c_str()); }

std::string BytesOf(const CQXString& text) { return qxv::os::Utf8FromText(static_cast<const QXChar*>(text)); }

int Write() {
  CQXVXmlNode top;
  std::vector<CQXVXmlNode*> open{&top};
  for (std::string line; std::getline(std::cin, line);) {
    const CQXString rest = StringOf(line.substr(1));
    CQXVXmlNode& node = *open.back();
    switch (line[0]) {
      case '<':
        node.m_arrNode.Add(new CQXVXmlNode(rest));
        open.push_back(node.m_arrNode[node.m_arrNode.GetSize() - 1]);
        break;
      case '>':
        open.pop_back();
        break;
      case '@':
        node.m_arrAtt.Add(new CQXVXmlAtt(rest, CQXString()));
        break;
      default:
        node.m_arrAtt[node.m_arrAtt.GetSize() - 1]->m_strValue = rest;
    }
  }
  CQXString text;
  const int result = QXVXMLStruct2String(*top.m_arrNode[0], text);
  std::cout << BytesOf(text);
  return result;
}

void Print(const CQXVXmlNode& node) {
  std::cout << '<' << BytesOf(node.m_strName) << '\n';
  for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
    std::cout << '@' << BytesOf(node.m_arrAtt[i]->m_strName) << "\n=" << BytesOf(node.m_arrAtt[i]->m_strValue) << '\n';
  }
  for (QXInt64 i = 0; i < node.m_arrNode.GetSize(); ++i) {
    Print(*node.m_arrNode[i]);
  }
  std::cout << ">\n";
}

int Read() {
  const std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
  CQXVXmlNode root;
  const int result = QXVXMLString2Struct(StringOf(bytes), root);
  Print(root);
  return result == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: xml_text_subject write|read\n", stderr);
    return 2;
  }
  return std::string(argv[1]) == "write" ? Write() : Read();
}
