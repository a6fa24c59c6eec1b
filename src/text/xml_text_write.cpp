// xml_text_write.cpp - QXVXMLStruct2String: a tree as text, one tag a line.

#include "qxv/xml.h"

#include <string>
#include <string_view>
#include <vector>

namespace {

using Text = std::basic_string<QXChar>;
using TextView = std::basic_string_view<QXChar>;

// The escape of a character, empty for one that stands for itself.
TextView EscapeOf(QXChar character) noexcept {
  switch (character) {
    case QXT('&'):
      return QXT("&amp;");
    case QXT('<'):
      return QXT("&lt;");
    case QXT('>'):
      return QXT("&gt;");
    case QXT('\''):
      return QXT("&apos;");
    case QXT('"'):
      return QXT("&quot;");
    default:
      return {};
  }
}

// KEPT: line ends, tabs, control characters and lone surrogates stay as they are. A parser turns the first into blanks and
//   refuses the others, but texts written so are compared byte by byte. Pinned by
//   XmlTextKept.TheWriterLeavesControlCharactersAndLoneSurrogates.
// One pass that stops at the text's end: most texts are short, and their buffers lie far apart.
void AppendEscaped(const QXChar* text, Text& out) {
  const QXChar* plain = text;
  for (;; ++text) {
    if (*text > QXT('>')) {
      continue;
    }
    const TextView escape = EscapeOf(*text);
    if (*text != 0 && escape.empty()) {
      continue;
    }
    out.append(plain, text);
    if (*text == 0) {
      return;
    }
    out.append(escape);
    plain = text + 1;
  }
}

constexpr TextView kTagEnd = QXT(">\r\n");

// An element whose closing tag is not written yet.
struct OpenElement {
  const CQXVXmlNode* node;
  QXInt64 next;            // index of the child to write next
  std::size_t nameAt;      // its escaped name in the output
  std::size_t nameLength;  //
};

OpenElement WriteOpeningTag(const CQXVXmlNode& node, Text& out) {
  out += QXT('<');
  OpenElement element{&node, 0, out.size(), 0};
  AppendEscaped(node.m_strName, out);
  element.nameLength = out.size() - element.nameAt;
  for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
    if (const CQXVXmlAtt* attribute = node.m_arrAtt.GetData()[i]; attribute != nullptr) {
      out += QXT(' ');
      AppendEscaped(attribute->m_strName, out);
      out += QXT("=\"");
      AppendEscaped(attribute->m_strValue, out);
      out += QXT('"');
    }
  }
  out += kTagEnd;
  return element;
}

void WriteClosingTag(const OpenElement& element, Text& out) {
  out += QXT("</");
  out.append(out, element.nameAt, element.nameLength);
  out += kTagEnd;
}

}  // namespace

int QXVXMLStruct2String(const CQXVXmlNode& root, CQXString& text) {
  Text out;
  std::vector<OpenElement> open{WriteOpeningTag(root, out)};
  while (!open.empty()) {
    OpenElement& element = open.back();
    if (element.next == element.node->m_arrNode.GetSize()) {
      WriteClosingTag(element, out);
      open.pop_back();
    } else if (const CQXVXmlNode* child = element.node->m_arrNode.GetData()[element.next++]; child != nullptr) {
      open.push_back(WriteOpeningTag(*child, out));
    }
  }
  text += out.c_str();
  return 0;
}
