// xml_text_parse_test.cpp - text to tree: the target, results, limits, hostile texts, and reading back what was written.

#include "qxv/xml.h"

#include "support/guard_new.h"
#include "xml_tree_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using support::NewNode;
using support::Repeat;
using support::Shown;
using support::Text;

const Text kDeclaration = QXT("<?xml version=\"1.0\"?>");

std::unique_ptr<CQXVXmlNode> Old() {
  std::unique_ptr<CQXVXmlNode> node(NewNode(QXT("old"), {{QXT("q"), QXT("9")}}));
  node->m_arrNode.Add(NewNode(QXT("gone")));
  return node;
}

std::string Parsed(const Text& text) {
  const auto root = Old();
  EXPECT_EQ(QXVXMLString2Struct(CQXString(text.c_str()), *root), 0);
  return Shown(*root);
}

Text Nested(std::size_t depth) {
  Text text = kDeclaration;
  for (std::size_t i = 0; i < depth; ++i) {
    text += QXT("<a>");
  }
  for (std::size_t i = 0; i < depth; ++i) {
    text += QXT("</a>");
  }
  return text;
}

TEST(XmlTextParse, DeclarationAndRootGiveTheTree) {
  EXPECT_EQ(Parsed(kDeclaration + QXT("<a x=\"1\"><b/></a>")), "(a x=[1](b))");
}

TEST(XmlTextParse, ARootAloneClearsTheTargetAndKeepsItsName) { EXPECT_EQ(Parsed(QXT("<a x=\"1\"/>")), "(old)"); }

TEST(XmlTextParse, AMalformedTextClearsTheTargetAndIsNoFailure) {
  EXPECT_EQ(Parsed(kDeclaration + QXT("<a>")), "(old)");
  EXPECT_EQ(Parsed(QXT("")), "(old)");
}

TEST(XmlTextParse, TheBlocksOfAClearedTargetAreFreed) {
  const auto root = Old();
  EXPECT_EQ(QXVXMLString2Struct(CQXString(QXT("<a/>")), *root), 0);
  EXPECT_EQ(root->m_arrAtt.GetData(), nullptr);
  EXPECT_EQ(root->m_arrNode.GetData(), nullptr);
}

TEST(XmlTextParse, WhatWasWrittenIsReadWithADeclarationInFront) {
  std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), QXT("<'&\">")}, {QXT("y"), QXT("")}}));
  root->m_arrNode.Add(NewNode(QXT("b"), {{QXT("\u00E9"), QXT("\u4E2D\U0001F3B5")}}));
  root->m_arrNode.Add(NewNode(QXT("c")));
  CQXString text;
  (void)QXVXMLStruct2String(*root, text);
  CQXVXmlNode alone(CQXString(QXT("kept")));
  EXPECT_EQ(QXVXMLString2Struct(text, alone), 0);
  EXPECT_EQ(Shown(alone), "(kept)") << "without a declaration";
  CQXVXmlNode again;
  EXPECT_EQ(QXVXMLString2Struct(CQXString(kDeclaration.c_str()) + text, again), 0);
  EXPECT_EQ(Shown(again), Shown(*root));
}

TEST(XmlTextParse, LineEndsAndTabsInValuesComeBackAsBlanks) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), QXT("1\r\n2\t3")}}));
  CQXString text(kDeclaration.c_str());
  (void)QXVXMLStruct2String(*root, text);
  CQXVXmlNode again;
  EXPECT_EQ(QXVXMLString2Struct(text, again), 0);
  EXPECT_EQ(Shown(again), "(a x=[1 2 3])");
}

TEST(XmlTextParse, TheTextMayBeAValueOfTheTarget) {
  const std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("old"), {{QXT("q"), (kDeclaration + QXT("<a/>")).c_str()}}));
  EXPECT_EQ(QXVXMLString2Struct(root->m_arrAtt[0]->m_strValue, *root), 0);
  EXPECT_EQ(Shown(*root), "(a)");
}

TEST(XmlTextParse, TheTextMayBeTheTargetsName) {
  CQXVXmlNode root(CQXString((kDeclaration + QXT("<b/>")).c_str()));
  EXPECT_EQ(QXVXMLString2Struct(root.m_strName, root), 0);
  EXPECT_EQ(Shown(root), "(b)");
}

TEST(XmlTextParse, ArraysAreSizedAsIfEachEntryHadBeenAdded) {
  Text text = kDeclaration + QXT("<a>");
  for (int i = 0; i < 120; ++i) {
    text += QXT("<b/>");
  }
  CQXVXmlNode root;
  EXPECT_EQ(QXVXMLString2Struct(CQXString((text + QXT("</a>")).c_str()), root), 0);
  ASSERT_EQ(root.m_arrNode.GetSize(), 120);
  CQXArray<CQXVXmlNode*, CQXVXmlNode*> added;
  for (int i = 0; i < 120; ++i) {
    added.Add(nullptr);
  }
  EXPECT_EQ(support::AllocationSize(root.m_arrNode.GetData()), support::AllocationSize(added.GetData()));
}

TEST(XmlTextParse, TwoHundredLevelsAreRead) {
  std::string expected;
  for (int i = 0; i < 200; ++i) {
    expected += "(a";
  }
  EXPECT_EQ(Parsed(Nested(200)), expected + std::string(200, ')'));
}

TEST(XmlTextParse, MoreThanTenThousandLevelsAreAFailure) {
  for (const std::size_t depth : {10001u, 100000u}) {
    const auto root = Old();
    EXPECT_EQ(static_cast<unsigned>(QXVXMLString2Struct(CQXString(Nested(depth).c_str()), *root)), 0x80004005u) << depth;
    EXPECT_EQ(Shown(*root), "(old)");
  }
}

TEST(XmlTextParse, AHugeAttributeIsRead) {
  CQXVXmlNode root;
  const Text value = Repeat(QXT('v'), 1000000);
  EXPECT_EQ(QXVXMLString2Struct(CQXString((kDeclaration + QXT("<a x='") + value + QXT("'/>")).c_str()), root), 0);
  ASSERT_EQ(root.m_arrAtt.GetSize(), 1);
  EXPECT_EQ(support::TextOf(root.m_arrAtt[0]->m_strValue), value);
}

TEST(XmlTextParse, ManyChildrenAreReadInTime) {
  Text text = kDeclaration + QXT("<a>");
  for (int i = 0; i < support::kManyNodes; ++i) {
    text += QXT("<b/>");
  }
  CQXVXmlNode root;
  EXPECT_EQ(QXVXMLString2Struct(CQXString((text + QXT("</a>")).c_str()), root), 0);
  EXPECT_EQ(root.m_arrNode.GetSize(), support::kManyNodes);
}

TEST(XmlTextParse, TheLayoutOfTextUnderTheRootIsNames) {
  EXPECT_EQ(Parsed(kDeclaration + QXT("<a>x<b/><!--c--><![CDATA[d]]><?p q?></a>")), "(a(#text)(b)(#comment)(#cdata-section)(p))");
}

TEST(XmlTextMalformed, EveryTruncationGivesTheOldNameAndNoTree) {
  const Text whole = kDeclaration + QXT("<!--c--><r a=\"1 &amp; \u4E2D\U0001F3B5\"><b><c/></b><![CDATA[x]]><?p q?></r>");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(Parsed(whole.substr(0, length)), "(old)") << length;
  }
}

TEST(XmlTextMalformed, ATruncatedRootNeverGivesATree) {
  const Text whole = kDeclaration + QXT("<!DOCTYPE\n a [<!ENTITY e '>'><!-- ]> -->]>");
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    EXPECT_EQ(Parsed(whole.substr(0, length)), "(old)") << length;
  }
  const Text good = kDeclaration + QXT("<r a='1'><b c='2'/></r>");
  EXPECT_EQ(Parsed(good), "(r a=[1](b c=[2]))");
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_EQ(Parsed(good.substr(0, length)), "(old)") << length;
  }
}

// Ten entities, each ten times the one before: 3 GB if all were expanded.
TEST(XmlTextMalformed, AnEntityBombEndsSoonAndWithoutATree) {
  Text text = QXT("<!DOCTYPE a [<!ENTITY e0 'lollollollollollollollollollol'>");
  for (QXChar digit = QXT('1'); digit <= QXT('9'); ++digit) {
    text += Text(QXT("<!ENTITY e")) + digit + QXT(" '");
    for (int i = 0; i < 10; ++i) {
      text += Text(QXT("&e")) + static_cast<QXChar>(digit - 1) + QXT(";");
    }
    text += QXT("'>");
  }
  EXPECT_EQ(Parsed(text + QXT("]><a x='&e9;'/>")), "(old)");
}

TEST(XmlTextMalformed, AQuadraticEntityBombGivesNoTree) {
  Text text = QXT("<!DOCTYPE a [<!ENTITY e '") + Repeat(QXT('v'), 100000) + QXT("'>]><a x='");
  for (int i = 0; i < 2000; ++i) {
    text += QXT("&e;");
  }
  EXPECT_EQ(Parsed(text + QXT("'/>")), "(old)");
}

TEST(XmlTextMalformed, EntitiesMayExpandAHundredfold) {
  Text text = QXT("<!DOCTYPE a [<!ENTITY e '") + support::Repeat(QXT('v'), 1000) + QXT("'>]><a x='");
  std::size_t count = 0;
  for (; count < 90; ++count) {
    text += QXT("&e;");
  }
  EXPECT_EQ(Parsed(text + QXT("'/>")), "(a x=[" + std::string(1000 * count, 'v') + "])");
}

TEST(XmlTextMalformed, EmptyEntitiesAreCountedToo) {
  Text text = QXT("<!DOCTYPE a [<!ENTITY e0 ''>");
  for (QXChar digit = QXT('1'); digit <= QXT('9'); ++digit) {
    text += Text(QXT("<!ENTITY e")) + digit + QXT(" '");
    for (int i = 0; i < 10; ++i) {
      text += Text(QXT("&e")) + static_cast<QXChar>(digit - 1) + QXT(";");
    }
    text += QXT("'>");
  }
  EXPECT_EQ(Parsed(text + QXT("]><a x='&e9;'/>")), "(old)");
  EXPECT_EQ(Parsed(text + QXT("]><a>&e9;</a>")), "(old)");
}

TEST(XmlTextMalformed, ABombOfEscapedReferencesGivesNoTree) {
  Text text = QXT("<!DOCTYPE a [<!ENTITY e0 'lollollollollollollollollollol'>");
  for (QXChar digit = QXT('1'); digit <= QXT('9'); ++digit) {
    text += Text(QXT("<!ENTITY e")) + digit + QXT(" \"");
    for (int i = 0; i < 10; ++i) {
      text += Text(QXT("&#38;e")) + static_cast<QXChar>(digit - 1) + QXT(";");
    }
    text += QXT("\">");
  }
  EXPECT_EQ(Parsed(text + QXT("]><a x='&e9;'/>")), "(old)");
}

TEST(XmlTextMalformed, ParameterEntitiesWithReferencesGiveNoTree) {
  EXPECT_EQ(Parsed(QXT("<!DOCTYPE a [<!ENTITY % p '<!ELEMENT a ANY>'> %p;]><a/>")), "(a)");
  EXPECT_EQ(Parsed(QXT("<!DOCTYPE a [<!ENTITY % p '&#37;q;'> %p;]><a/>")), "(old)");
}

TEST(XmlTextMalformed, EveryRefusedAllocationLosesNothing) {
  const CQXString text((kDeclaration + QXT("<a x='1' y='2'><b z='3'><d/></b><c/></a>")).c_str());
  {
    CQXVXmlNode warm;  // what the parser makes once in a process
    (void)QXVXMLString2Struct(text, warm);
  }
  const std::size_t before = support::LiveArrays();
  bool refused = true;
  std::size_t index = 0;
  for (; refused; ++index) {
    const auto root = Old();
    support::FailAllocation failing(index);
    try {
      EXPECT_EQ(QXVXMLString2Struct(text, *root), 0);
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failing.Refused());
      EXPECT_EQ(root->m_arrAtt.GetSize(), 0) << index;
      EXPECT_EQ(root->m_arrNode.GetSize(), 0) << index;
    }
    refused = failing.Refused();
  }
  EXPECT_GT(index, 20u);
  EXPECT_EQ(support::LiveArrays(), before);
}

}  // namespace
