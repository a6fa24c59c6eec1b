// xml_bench.cpp - trees to text beside pugixml writing UTF-16, and text to trees beside the parser alone and the floor: the
// parser, then nothing but the tree's own objects, texts and arrays.

#include "bench/support/ratio.h"
#include "os/utf.h"
#include "qxv/xml.h"

#include <libxml/parser.h>

#include <memory>
#include <pugixml.hpp>
#include <string>

namespace {

using Text = std::basic_string<QXChar>;

constexpr QXInt64 kClips = 14000;  // with their effects some 5 MiB of UTF-16

std::unique_ptr<CQXVXmlNode> Project() {
  auto root = std::make_unique<CQXVXmlNode>(CQXString(QXT("project")));
  CQXString number;
  for (QXInt64 i = 0; i < kClips; ++i) {
    number.Format(QXT("%d"), static_cast<int>(i));
    auto* clip = new CQXVXmlNode(CQXString(QXT("clip")));
    root->m_arrNode.Add(clip);
    clip->m_arrAtt.Add(new CQXVXmlAtt(QXT("id"), number));
    clip->m_arrAtt.Add(new CQXVXmlAtt(QXT("name"), CQXString(QXT("Interview & <cut> ")) + number));
    clip->m_arrAtt.Add(new CQXVXmlAtt(QXT("source"), QXT("Z:\\media\\2026\\reel 7\\take.mxf")));
    auto* effect = new CQXVXmlNode(CQXString(QXT("effect")));
    clip->m_arrNode.Add(effect);
    effect->m_arrAtt.Add(new CQXVXmlAtt(QXT("gain"), QXT("-3.500000")));
    effect->m_arrAtt.Add(new CQXVXmlAtt(QXT("label"), QXT("\u97F3\u91CF")));
  }
  return root;
}

void Put(const CQXVXmlNode& node, pugi::xml_node out) {
  out.set_name(qxv::os::Utf8FromText(static_cast<const QXChar*>(node.m_strName)).c_str());
  for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
    out.append_attribute(qxv::os::Utf8FromText(static_cast<const QXChar*>(node.m_arrAtt[i]->m_strName)).c_str())
        .set_value(qxv::os::Utf8FromText(static_cast<const QXChar*>(node.m_arrAtt[i]->m_strValue)).c_str());
  }
  for (QXInt64 i = 0; i < node.m_arrNode.GetSize(); ++i) {
    Put(*node.m_arrNode[i], out.append_child("n"));
  }
}

class TextWriter final : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size) override { m_bytes.append(static_cast<const char*>(data), size); }
  const std::string& Bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

struct Documents {
  std::unique_ptr<CQXVXmlNode> tree = Project();
  pugi::xml_document pugi;
  CQXString text = QXT("<?xml version=\"1.0\"?>");
  std::string utf8;

  Documents() {
    Put(*tree, pugi.append_child("n"));
    (void)QXVXMLStruct2String(*tree, text);
    utf8 = qxv::os::Utf8FromText(static_cast<const QXChar*>(text));
  }
};

Documents& Shared() {
  static Documents documents;
  return documents;
}

// The parser without a word to a tree.
void ParseAlone() {
  const std::string bytes = qxv::os::Utf8FromText(static_cast<const QXChar*>(Shared().text));
  xmlDocPtr document = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                     XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_HUGE);
  benchmark::DoNotOptimize(document);
  xmlFreeDoc(document);
}

// The tree's own allocations and nothing else.
void AllocateTree() {
  const CQXVXmlNode copy(*Shared().tree);
  benchmark::DoNotOptimize(&copy);
}

bench::Job WriteJob() {
  bench::Job job{"text/XML write",
                 "5 MiB",
                 [] {
                   CQXString text;
                   benchmark::DoNotOptimize(QXVXMLStruct2String(*Shared().tree, text));
                 },
                 {}};
  job.peers.push_back({"pugixml UTF-16",
                       [] {
                         TextWriter writer;
                         Shared().pugi.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf16_le);
                         benchmark::DoNotOptimize(writer.Bytes().data());
                       },
                       1.0});
  return job;
}

bench::Job ParseJob() {
  bench::Job job{"text/XML parse into our tree",
                 "5 MiB",
                 [] {
                   CQXVXmlNode root;
                   benchmark::DoNotOptimize(QXVXMLString2Struct(Shared().text, root));
                 },
                 {}};
  job.peers.push_back({"libxml2 alone", ParseAlone});
  job.peers.push_back({"the tree's allocations alone", AllocateTree});
  job.peers.push_back({"libxml2, then 1.3 times the tree's allocations",
                       [] {
                         static int turn = 0;
                         ParseAlone();
                         AllocateTree();
                         for (turn += 3; turn >= 10; turn -= 10) {
                           AllocateTree();
                         }
                       },
                       1.0});
  return job;
}

const bench::Register kRegistered([] { return std::vector<bench::Job>{WriteJob(), ParseJob()}; });

}  // namespace
