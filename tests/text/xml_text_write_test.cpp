// xml_text_write_test.cpp - trees as text: layout, escapes, and the words that the text's buffer is left with.

#include "qxv/xml.h"

#include "support/guard_new.h"
#include "support/string_words.h"
#include "xml_tree_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

namespace {

using support::NewNode;
using support::Printable;
using support::Repeat;
using support::Text;
using support::TextOf;

Text Written(const CQXVXmlNode& root) {
  CQXString text;
  EXPECT_EQ(QXVXMLStruct2String(root, text), 0);
  return TextOf(text);
}

TEST(XmlTextWrite, ATreeIsOneLineATagBehindWhatTheTextHeld) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), QXT("1 & 2")}}));
  root->m_arrNode.Add(NewNode(QXT("b")));
  CQXString text(QXT("before"));
  EXPECT_EQ(QXVXMLStruct2String(*root, text), 0);
  EXPECT_EQ(Printable(TextOf(text)), Printable(QXT("before<a x=\"1 &amp; 2\">\r\n<b>\r\n</b>\r\n</a>\r\n")));
}

TEST(XmlTextWrite, AnEmptyNodeIsTwoTags) { EXPECT_EQ(Printable(Written(CQXVXmlNode())), Printable(QXT("<>\r\n</>\r\n"))); }

TEST(XmlTextWrite, ApostropheAndQuotationMarkAreEscaped) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), QXT("'\"")}}));
  EXPECT_EQ(Printable(Written(*root)), Printable(QXT("<a x=\"&apos;&quot;\">\r\n</a>\r\n")));
}

TEST(XmlTextWrite, NamesAreEscapedAsValuesAre) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("<&>"), {{QXT("'x\""), QXT("&lt;")}}));
  EXPECT_EQ(Printable(Written(*root)), Printable(QXT("<&lt;&amp;&gt; &apos;x&quot;=\"&amp;lt;\">\r\n</&lt;&amp;&gt;>\r\n")));
}

TEST(XmlTextWrite, AttributesAndChildrenKeepTheirOrder) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("r"), {{QXT("b"), QXT("1")}, {QXT("a"), QXT("")}, {QXT("b"), QXT("2")}}));
  root->m_arrNode.Add(NewNode(QXT("z")));
  root->m_arrNode.Add(NewNode(QXT("y")));
  root->m_arrNode[0]->m_arrNode.Add(NewNode(QXT("q")));
  EXPECT_EQ(Printable(Written(*root)), Printable(QXT("<r b=\"1\" a=\"\" b=\"2\">\r\n<z>\r\n<q>\r\n</q>\r\n</z>\r\n"
                                                     "<y>\r\n</y>\r\n</r>\r\n")));
}

TEST(XmlTextWrite, NullEntriesAreLeftOut) {
  CQXVXmlNode root(CQXString(QXT("a")));
  root.m_arrAtt.SetSize(2);
  root.m_arrNode.SetSize(3);
  root.m_arrNode[1] = NewNode(QXT("b"));
  EXPECT_EQ(Printable(Written(root)), Printable(QXT("<a>\r\n<b>\r\n</b>\r\n</a>\r\n")));
}

TEST(XmlTextWrite, TheTextMayBeANameOfTheTree) {
  CQXVXmlNode root(CQXString(QXT("a")));
  EXPECT_EQ(QXVXMLStruct2String(root, root.m_strName), 0);
  EXPECT_EQ(Printable(TextOf(root.m_strName)), Printable(QXT("a<a>\r\n</a>\r\n")));
}

TEST(XmlTextWrite, TheTextGoesBehindTheLengthWord) {
  CQXString text(QXT("abc"));
  support::BufferOf(text)[1] = 0;
  EXPECT_EQ(QXVXMLStruct2String(CQXVXmlNode(CQXString(QXT("n"))), text), 0);
  EXPECT_EQ(text.GetLength(), 1);
  EXPECT_EQ(Printable(TextOf(support::BufferOf(text) + 3)), Printable(QXT("<n>\r\n</n>\r\n")));
}

// What appending piece after piece leaves: the allocation grows only when the text no longer fits, to whole blocks.
TEST(XmlTextWrite, TheWordsAreThoseOfStepByStepAppending) {
  for (const std::size_t name : {1u, 55u, 58u, 59u, 60u, 64u, 200u, 507u, 508u, 1000u}) {
    const Text text = Repeat(QXT('n'), name);
    const std::size_t written = 2 * name + 9;
    CQXString fresh;
    (void)QXVXMLStruct2String(CQXVXmlNode(CQXString(text.c_str())), fresh);
    EXPECT_EQ(support::LengthWord(fresh), written) << name;
    EXPECT_EQ(support::CapacityWord(fresh), (written + 127) / 128 * 128) << name;

    CQXString roomy(Repeat(QXT('r'), 1000).c_str());
    roomy.Empty();
    ASSERT_EQ(support::CapacityWord(roomy), 1024u);
    (void)QXVXMLStruct2String(CQXVXmlNode(CQXString(text.c_str())), roomy);
    EXPECT_EQ(support::LengthWord(roomy), written) << name;
    EXPECT_EQ(support::CapacityWord(roomy), written <= 1024 ? 1024u : (written + 127) / 128 * 128) << name;
  }
}

// Lengths around whole steps, whole blocks and the pieces that text is collected in.
TEST(XmlTextWrite, NamesAndValuesOfEveryLengthArriveWhole) {
  for (const std::size_t length :
       {0u, 1u, 15u, 16u, 17u, 31u, 32u, 33u, 127u, 128u, 129u, 255u, 256u, 257u, 1000u, 32768u, 100000u}) {
    const Text plain = Repeat(QXT('v'), length);
    const Text marked = plain + QXT("\"") + plain;
    const std::unique_ptr<CQXVXmlNode> root(NewNode(plain.c_str(), {{plain.c_str(), plain.c_str()}, {QXT("m"), marked.c_str()}}));
    EXPECT_TRUE(Written(*root) == QXT("<") + plain + QXT(" ") + plain + QXT("=\"") + plain + QXT("\" m=\"") + plain +
                                      QXT("&quot;") + plain + QXT("\">\r\n</") + plain + QXT(">\r\n"))
        << length;
  }
}

TEST(XmlTextWrite, ManyAttributesAndChildrenKeepTheirOrder) {
  CQXVXmlNode root(CQXString(QXT("r")));
  Text expected = QXT("<r");
  CQXString number;
  for (int i = 0; i < 100; ++i) {
    number.Format(QXT("%d"), i);
    root.m_arrAtt.Add(new CQXVXmlAtt(QXT("a"), number));
    expected += Text(QXT(" a=\"")) + static_cast<const QXChar*>(number) + QXT("\"");
  }
  expected += QXT(">\r\n");
  for (int i = 0; i < 100; ++i) {
    number.Format(QXT("%d"), i);
    root.m_arrNode.Add(NewNode(number));
    const Text name(static_cast<const QXChar*>(number));
    Text inner;
    for (int k = 0; k < i % 4; ++k) {
      root.m_arrNode[i]->m_arrNode.Add(NewNode(QXT("k")));
      inner += QXT("<k>\r\n</k>\r\n");
    }
    expected += QXT("<") + name + QXT(">\r\n") + inner + QXT("</") + name + QXT(">\r\n");
  }
  EXPECT_EQ(Printable(Written(root)), Printable(expected + QXT("</r>\r\n")));
}

// So that the last tag stands at every place of the queue.
TEST(XmlTextWrite, TreesOfEverySizeArriveWhole) {
  CQXVXmlNode wide(CQXString(QXT("r")));
  CQXVXmlNode rich(CQXString(QXT("r")));
  Text children;
  Text attributes;
  for (int count = 0; count <= 150; ++count) {
    EXPECT_TRUE(Written(wide) == QXT("<r>\r\n") + children + QXT("</r>\r\n")) << count << " children";
    EXPECT_TRUE(Written(rich) == QXT("<r") + attributes + QXT(">\r\n</r>\r\n")) << count << " attributes";
    CQXString number;
    number.Format(QXT("%d"), count);
    const Text name = QXT("n") + TextOf(number);
    wide.m_arrNode.Add(NewNode(name.c_str()));
    children += QXT("<") + name + QXT(">\r\n</") + name + QXT(">\r\n");
    rich.m_arrAtt.Add(new CQXVXmlAtt(CQXString(name.c_str()), number));
    attributes += QXT(" ") + name + QXT("=\"") + TextOf(number) + QXT("\"");
  }
}

TEST(XmlTextWrite, ADeepTreeIsWritten) {
  constexpr std::size_t kDepth = support::kManyNodes;
  CQXVXmlNode root(CQXString(QXT("n")));
  CQXVXmlNode* last = &root;
  for (std::size_t i = 1; i < kDepth; ++i) {
    last->m_arrNode.Add(NewNode(QXT("n")));
    last = last->m_arrNode[0];
  }
  EXPECT_EQ(Written(root).size(), kDepth * 11);
}

TEST(XmlTextWrite, ARefusedAllocationLeavesTheText) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), Repeat(QXT('v'), 5000).c_str()}}));
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    CQXString text(QXT("before"));
    support::FailAllocation failing(index);
    try {
      (void)QXVXMLStruct2String(*root, text);
      EXPECT_EQ(text.GetLength(), 6 + 5000 + 8 + 2 + 6);
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(text == QXT("before")) << index;
    }
    refused = failing.Refused();
  }
}

TEST(XmlTextKept, TheWriterLeavesControlCharactersAndLoneSurrogates) {
  const QXChar value[] = {1, QXT('\t'), QXT('\r'), QXT('\n'), static_cast<QXChar>(0xD800), static_cast<QXChar>(0xFFFF), 0};
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), value}}));
  EXPECT_EQ(Printable(Written(*root)), Printable(Text(QXT("<a x=\"")) + value + QXT("\">\r\n</a>\r\n")));
}

}  // namespace
