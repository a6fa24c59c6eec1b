// xml_text_posix_test.cpp - what libxml2 is asked for and kept from, beyond what both systems' parsers answer alike.

#include "qxv/xml.h"

#include "support/temp_folder.h"
#include "xml_tree_text.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>

namespace {

using support::Shown;
using support::Text;

std::string Parsed(const Text& text) {
  CQXVXmlNode target(CQXString(QXT("old")));
  EXPECT_EQ(QXVXMLString2Struct(CQXString(text.c_str()), target), 0);
  return Shown(target);
}

TEST(XmlTextPosix, UndeclaredPrefixesAreMalformed) {
  EXPECT_EQ(Parsed(QXT("<?p?><p:a/>")), "(old)");
  EXPECT_EQ(Parsed(QXT("<?p?><a p:x='1'/>")), "(old)");
}

TEST(XmlTextPosix, DefaultNamespacesAreAttributes) {
  EXPECT_EQ(Parsed(QXT("<?p?><a xmlns='u' x='1'><b xmlns=''/></a>")), "(a x=[1] xmlns=[u](b xmlns=[]))");
  EXPECT_EQ(Parsed(QXT("<?p?><a p:y='2' xmlns:p='u' x='1'/>")), "(a p:y=[2] x=[1] xmlns:p=[u])");
}

TEST(XmlTextPosix, ThousandsOfLevelsAreRead) {
  Text text = QXT("<?p?>");
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    text += QXT("<a>");
    expected += "(a";
  }
  for (int i = 0; i < 3000; ++i) {
    text += QXT("</a>");
  }
  EXPECT_EQ(Parsed(text), expected + std::string(3000, ')'));
}

TEST(XmlTextPosix, ValuesOfMoreThanTenMillionCharactersAreRead) {
  constexpr std::size_t kLength = 10000001;
  CQXVXmlNode target;
  const Text value = support::Repeat(QXT('v'), kLength);
  EXPECT_EQ(QXVXMLString2Struct(CQXString((QXT("<?p?><a x='") + value + QXT("'/>")).c_str()), target), 0);
  ASSERT_EQ(target.m_arrAtt.GetSize(), 1);
  EXPECT_TRUE(support::TextOf(target.m_arrAtt[0]->m_strValue) == value);
}

TEST(XmlTextPosix, AnEncodingThatTheSystemKnowsIsAccepted) {
  EXPECT_EQ(Parsed(QXT("<?xml version='1.0' encoding='gb2312'?><a x='\u4E2D'/>")), "(a x=[\\u4E2D])");
}

// A FIFO that nobody writes: opening it would wait for ever.
TEST(XmlTextPosix, NoFileOfADocumentIsOpened) {
  const support::TempFolder folder;
  const std::string path = folder.Native().string() + "/e";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const Text file(path.begin(), path.end());
  const Text address = QXT("'file://") + file + QXT("'");
  EXPECT_EQ(Parsed(QXT("<!DOCTYPE a SYSTEM ") + address + QXT("><a>&u;</a>")), "(a(u))");
  EXPECT_EQ(Parsed(QXT("<!DOCTYPE a [<!ENTITY e SYSTEM ") + address + QXT(">]><a>&e;</a>")), "(a(e))");
  EXPECT_EQ(Parsed(QXT("<!DOCTYPE a [<!ENTITY e SYSTEM ") + address + QXT(">]><a x='&e;'/>")), "(old)");
  EXPECT_EQ(Parsed(QXT("<!DOCTYPE a [<!ENTITY % e SYSTEM ") + address + QXT("> %e;]><a/>")), "(a)");
}

}  // namespace
