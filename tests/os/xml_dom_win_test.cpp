// xml_dom_win_test.cpp - a parse leaves no object of COM behind, on no path. Each node, list and map keeps the whole document
// alive, so one that is not released shows in the memory of the process; documents that the test itself keeps give the measure.

#include "os/xml_dom.h"

#include "os/win_api.h"

#include <gtest/gtest.h>
#include <msxml.h>
#include <objbase.h>
#include <psapi.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <vector>

namespace {

using namespace qxv::os;

constexpr CLSID kDomDocument = {0x2933BF90, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
constexpr IID kIXMLDOMDocument = {0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
constexpr int kParses = 40;

// Every kind of node: elements, attributes, texts, character data, comments, instructions; some hundred KB.
const Text& Content() {
  static const Text text = [] {
    Text made = QXT("<a>");
    for (int i = 0; i < 3000; ++i) {
      made += QXT("<b x='some value' y='&amp;'>text<![CDATA[data]]><!--comment--><?target data?><c/></b>");
    }
    return made + QXT("</a>");
  }();
  return text;
}

class Silent final : public XmlSink {
 public:
  void Open(TextView) override {}
  void Attribute(TextView, TextView) override {}
  void Close() override {}
};

class ThrowsLate final : public XmlSink {
 public:
  void Open(TextView) override {
    if (++m_opened == 5000) {
      throw std::runtime_error("enough");
    }
  }
  void Attribute(TextView, TextView) override {}
  void Close() override {}

 private:
  int m_opened = 0;
};

template <class Sink>
void Parse(const Text& text) {
  Sink sink;
  try {
    (void)ReadXml(text, sink);
  } catch (const std::runtime_error&) {
  }
}

std::int64_t MemoryOfProcess() {
  PROCESS_MEMORY_COUNTERS counters{};
  EXPECT_NE(::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters), 0);
  return static_cast<std::int64_t>(counters.PagefileUsage);
}

std::int64_t GrowthOf(const std::function<void()>& parse) {
  for (int i = 0; i < 5; ++i) {
    parse();  // what the first ones leave is for good
  }
  const std::int64_t before = MemoryOfProcess();
  for (int i = 0; i < kParses; ++i) {
    parse();
  }
  return MemoryOfProcess() - before;
}

// What kParses documents take that nobody releases before the measure is taken.
std::int64_t GrowthOfKeptDocuments(const Text& text) {
  std::vector<IXMLDOMDocument*> kept;
  const std::int64_t growth = GrowthOf([&] {
    IXMLDOMDocument* document = nullptr;
    ASSERT_EQ(
        ::CoCreateInstance(kDomDocument, nullptr, CLSCTX_INPROC_SERVER, kIXMLDOMDocument, reinterpret_cast<void**>(&document)),
        S_OK);
    kept.push_back(document);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const BSTR copy = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    EXPECT_EQ(document->loadXML(copy, &loaded), S_OK);
    EXPECT_EQ(loaded, VARIANT_TRUE);
    ::SysFreeString(copy);
  });
  for (IXMLDOMDocument* document : kept) {
    document->Release();
  }
  return growth;
}

TEST(XmlDomMemory, EveryObjectIsReleasedOnEveryPath) {
  const Text whole = QXT("<?xml version='1.0'?>") + Content();
  Parse<Silent>(QXT("<?p?><a/>"));  // COM is there from now on
  const std::int64_t kept = GrowthOfKeptDocuments(whole);
  ASSERT_GT(kept, kParses * std::int64_t{200'000}) << "kept documents do not show";
  EXPECT_LT(GrowthOf([&] { Parse<Silent>(whole); }), kept / 8) << "a whole tree";
  EXPECT_LT(GrowthOf([&] { Parse<ThrowsLate>(whole); }), kept / 8) << "a tree left in its middle";
  EXPECT_LT(GrowthOf([&] { Parse<Silent>(Content()); }), kept / 8) << "one top-level node";
  EXPECT_LT(GrowthOf([&] { Parse<Silent>(whole + QXT("<!--third-->")); }), kept / 8) << "three top-level nodes";
  EXPECT_LT(GrowthOf([&] { Parse<Silent>(whole + QXT("<a>")); }), kept / 8) << "malformed at its end";
}

}  // namespace
