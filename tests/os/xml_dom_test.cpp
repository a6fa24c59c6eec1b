// xml_dom_test.cpp - the system's parser: what it tells and in which order; and the look at a text before it.

#include "os/xml_dom.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace qxv::os;
using support::Printable;

class Recorder final : public XmlSink {
 public:
  void Open(TextView name) override { m_told += "<" + Printable(Text(name)) + ">"; }
  void Attribute(TextView name, TextView value) override { m_told += Printable(Text(name)) + "=" + Printable(Text(value)) + ";"; }
  void Close() override { m_told += "/"; }

  const std::string& Told() const { return m_told; }

 private:
  std::string m_told;
};

class Thrower final : public XmlSink {
 public:
  void Open(TextView name) override {
    if (name == QXT("c")) {
      throw std::runtime_error("enough");
    }
  }
  void Attribute(TextView /*name*/, TextView /*value*/) override {}
  void Close() override {}
};

std::string Told(TextView text) {
  Recorder recorder;
  EXPECT_EQ(ReadXml(text, recorder), 0);
  return recorder.Told();
}

Text Repeated(TextView piece, std::size_t count) {
  Text text;
  while (count-- > 0) {
    text += piece;
  }
  return text;
}

TEST(XmlDom, NodesAttributesAndEndsAreToldInOrder) {
  EXPECT_EQ(Told(QXT("<?xml version='1.0'?><a x='1' y=''><b z='&lt;'/><c><d/></c></a>")), "<a>x=1;y=;<b>z=<;/<c><d>///");
}

TEST(XmlDom, OneTopLevelNodeTellsNothing) { EXPECT_EQ(Told(QXT("<a/>")), ""); }

TEST(XmlDom, ThreeTopLevelNodesTellNothing) { EXPECT_EQ(Told(QXT("<?p?><a/><?p?>")), ""); }

TEST(XmlDom, ACommentAtTheSecondPlaceIsTold) { EXPECT_EQ(Told(QXT("<a/><!--c-->")), "<#comment>/"); }

TEST(XmlDom, AMalformedTextTellsNothing) { EXPECT_EQ(Told(QXT("<?p?><a x='1'>")), ""); }

TEST(XmlDom, OnlyTheViewIsRead) { EXPECT_EQ(Told(TextView(QXT("<?p?><a/><b/>"), 9)), "<a>/"); }

TEST(XmlDom, TooManyLevelsFailBeforeAnythingIsTold) {
  Recorder recorder;
  const Text text = QXT("<?p?>") + Repeated(QXT("<a>"), 10001) + Repeated(QXT("</a>"), 10001);
  EXPECT_EQ(static_cast<unsigned>(ReadXml(text, recorder)), 0x80004005u);
  EXPECT_EQ(recorder.Told(), "");
}

TEST(XmlDom, WhatTheSinkThrowsPassesThrough) {
  Thrower thrower;
  EXPECT_THROW((void)ReadXml(QXT("<?p?><a x='1'><b/><c/></a>"), thrower), std::runtime_error);
}

TEST(XmlCheck, LevelsAreCountedByOpeningTags) {
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a>"), 10000)), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a>"), 10001)), XmlText::TooDeep);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a>"), 10000) + QXT("<b/>")), XmlText::TooDeep);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a>"), 9999) + QXT("<b/>")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a></a>"), 20000)), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a/>"), 20000)), XmlText::Fit);
}

TEST(XmlCheck, WhatIsNoTagDoesNotCount) {
  const Text tags = Repeated(QXT("<a>"), 20000);
  EXPECT_EQ(CheckXmlText(QXT("<!--") + tags + QXT("-->")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT("<r><![CDATA[") + tags + QXT("]]></r>")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT("<?p ") + tags + QXT("?>")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT("<!DOCTYPE a [<!ENTITY e '") + tags + QXT("'>]><a/>")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a x='/>' y=\"'>\"/>"), 20000)), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT("<!DOCTYPE a [<!--'--><?p ]>?>]>") + tags), XmlText::TooDeep);
  EXPECT_EQ(CheckXmlText(Repeated(QXT("<a x='/>'>"), 10001)), XmlText::TooDeep);
}

TEST(XmlCheck, WhiteSpaceBeforeADeclarationIsSeen) {
  EXPECT_EQ(CheckXmlText(QXT("\r\n<?xml version='1.0'?><a/>")), XmlText::Blank);
  EXPECT_EQ(CheckXmlText(QXT(" <?xml-stylesheet?><a/>")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT(" <?xml")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT("<?xml version='1.0'?><a/>")), XmlText::Fit);
  EXPECT_EQ(CheckXmlText(QXT(" <a/>")), XmlText::Fit);
}

TEST(XmlCheck, EveryTruncationEnds) {
  const Text whole =
      QXT("<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e \"v\"><!-- c --><?p?>]><a x='1'><!--c--><![CDATA[d]]></a>");
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const Text exact(whole, 0, length);
    EXPECT_EQ(CheckXmlText(exact), XmlText::Fit) << length;
  }
}

}  // namespace
