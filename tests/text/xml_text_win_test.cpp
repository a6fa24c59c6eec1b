// xml_text_win_test.cpp - what a parse does to COM.

#include "qxv/xml.h"

#include "os/win_api.h"

#include <gtest/gtest.h>

#include <objbase.h>

namespace {

TEST(XmlTextKept, EveryParseLeavesComInitialised) {
  CQXVXmlNode node;
  EXPECT_EQ(::CoInitialize(nullptr), S_OK) << "the first of this thread";
  ::CoUninitialize();
  EXPECT_EQ(QXVXMLString2Struct(CQXString(QXT("<a/>")), node), 0);
  EXPECT_EQ(QXVXMLString2Struct(CQXString(QXT("<a/>")), node), 0);
  EXPECT_EQ(::CoInitialize(nullptr), S_FALSE) << "initialised already";
  ::CoUninitialize();
  ::CoUninitialize();
  EXPECT_EQ(::CoInitialize(nullptr), S_FALSE) << "two parses counted twice";
}

}  // namespace
