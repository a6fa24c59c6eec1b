// xml_bench.cpp - trees to text beside pugixml writing UTF-16, and text to trees beside the parser alone and the floor: the
// parser, then nothing but the tree's own objects, texts and arrays.

#include "bench/support/ratio.h"
#include "os/utf.h"
#include "qxv/xml.h"

#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <pugixml.hpp>
#include <string>

namespace {

using Text = std::basic_string<QXChar>;

// A cutting project: 300 sequences of clips, each with two effects; 3 to 7 attributes an element, values of 5 to 60 characters.
constexpr int kSequences = 300;
constexpr int kClips = 21;  // of a sequence; together 5 MiB of UTF-16

const QXChar* const kTitles[] = {QXT("Mayor, take 3"),
                                 QXT("Harbour at dawn, long lens, slow pan to the left"),
                                 QXT("Interview & cut"),
                                 QXT("Crowd & choir, second camera"),
                                 QXT("Drone 12"),
                                 QXT("Choir rehearsal, close-up of the conductor"),
                                 QXT("\u97F3\u4E50\u4F1A \u7B2C\u4E8C\u573A \u5168\u666F")};

template <class... Arguments>
void AddAttribute(CQXVXmlNode& node, const QXChar* name, const QXChar* format, Arguments... arguments) {
  CQXString value;
  value.Format(format, arguments...);
  node.m_arrAtt.Add(new CQXVXmlAtt(name, value));
}

CQXVXmlNode& AddChild(CQXVXmlNode& node, const QXChar* name) {
  node.m_arrNode.Add(new CQXVXmlNode(CQXString(name)));
  return *node.m_arrNode[node.m_arrNode.GetSize() - 1];
}

void AddClip(CQXVXmlNode& sequence, int i) {
  CQXVXmlNode& clip = AddChild(sequence, QXT("clip"));
  const QXChar* title = kTitles[i % 7];
  AddAttribute(clip, QXT("id"), QXT("clip-%06d"), i);
  AddAttribute(clip, QXT("name"), QXT("%s"), title);
  AddAttribute(clip, QXT("source"), QXT("Z:\\media\\2026\\reel %d\\A%03d_C%04d_%06d.mxf"), i % 40, i % 90, i % 700,
               i * 7919 % 999983);
  AddAttribute(clip, QXT("start"), QXT("01:%02d:%02d:%02d"), i / 60 % 60, i % 60, i % 25);
  AddAttribute(clip, QXT("duration"), QXT("00:00:%02d:%02d"), i % 47, i % 24);
  AddAttribute(clip, QXT("uid"), QXT("{%08X-8B86-4011-B42D-00C04FC964FF}"), i * 2654435761u);
  AddAttribute(clip, QXT("state"), i % 9 == 0 ? QXT("offline") : QXT("online"));
  for (int k = 0; k < 2; ++k) {
    CQXVXmlNode& effect = AddChild(clip, QXT("effect"));
    AddAttribute(effect, QXT("type"), k == 0 ? QXT("colour correction") : QXT("level"));
    AddAttribute(effect, QXT("gain"), QXT("%d.%06d"), i % 24 - 12, i * 31 % 1000000);
    AddAttribute(effect, QXT("curve"), k == 0 ? QXT("0=%d.5; 25=0.%d; 50=1.0; 120=0.%d") : QXT("0=%d.25; 12=%d; 99=%d"), i % 3,
                 i % 1000, i % 77);
  }
}

std::unique_ptr<CQXVXmlNode> Project() {
  auto root = std::make_unique<CQXVXmlNode>(CQXString(QXT("project")));
  AddAttribute(*root, QXT("title"), QXT("Evening news"));
  for (int s = 0; s < kSequences; ++s) {
    CQXVXmlNode& sequence = AddChild(*root, QXT("sequence"));
    AddAttribute(sequence, QXT("name"), QXT("Part %d, %s"), s, kTitles[s % 6]);
    AddAttribute(sequence, QXT("rate"), QXT("25.000"));
    AddAttribute(sequence, QXT("raster"), QXT("1920x1080"));
    for (int i = 0; i < kClips; ++i) {
      AddClip(sequence, s * kClips + i);
    }
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

constexpr unsigned kPugiFormat = pugi::format_indent | pugi::format_no_empty_element_tags | pugi::format_no_declaration;

template <class Writer>
void SavePugi(const pugi::xml_document& document, Writer& writer) {
  document.save(writer, "", kPugiFormat, pugi::encoding_utf16_le);
}

constexpr const QXChar* kDeclaration = QXT("<?xml version=\"1.0\"?>");

struct Documents {
  std::unique_ptr<CQXVXmlNode> tree = Project();
  pugi::xml_document pugi;
  CQXString text = kDeclaration;

  Documents() {
    Put(*tree, pugi.append_child("n"));
    (void)QXVXMLStruct2String(*tree, text);
    CheckSameText();
  }

 private:
  // Both write the same text but for line ends: pugixml has no CR, and no line end between the tags of an element without
  // children. (Nor does it escape apostrophes and, in values, >, so the project has none.)
  void CheckSameText() const {
    TextWriter writer;
    SavePugi(pugi, writer);
    Text theirs(writer.Bytes().size() / sizeof(QXChar), 0);
    std::memcpy(theirs.data(), writer.Bytes().data(), theirs.size() * sizeof(QXChar));
    Text ours(static_cast<const QXChar*>(text) + CQXString::Length(kDeclaration));
    for (Text* side : {&ours, &theirs}) {
      std::erase_if(*side, [](QXChar unit) { return unit == QXT('\r') || unit == QXT('\n'); });
    }
    if (ours != theirs) {
      std::fprintf(stderr, "xml_bench: pugixml writes another text\n");
      std::abort();
    }
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
                         SavePugi(Shared().pugi, writer);
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
