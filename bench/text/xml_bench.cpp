// xml_bench.cpp - trees to text beside pugixml writing UTF-16, and text to trees beside the parser alone and the floor: the
// parser, then nothing but the tree's own objects, texts and arrays.

#include "bench/support/ratio.h"
#include "os/utf.h"
#include "qxv/xml.h"

#include <libxml/parser.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

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

// The document as text and as the tree that each side's own parser makes of it.
struct Documents {
  CQXString text = kDeclaration;
  std::string utf8;
  CQXVXmlNode tree;
  pugi::xml_document pugi;

  Documents() {
    SettleAllocator();
    (void)QXVXMLStruct2String(*Project(), text);
    utf8 = qxv::os::Utf8FromText(static_cast<const QXChar*>(text));
    Require(QXVXMLString2Struct(text, tree) == 0, "our parser fails");
    Require(pugi.load_buffer(utf8.data(), utf8.size(), pugi::parse_default, pugi::encoding_utf8), "pugixml's parser fails");
    CheckSameText();
  }

 private:
  // Each turn pays for itself: freed memory is neither given back, or the next turn would wait for the kernel to hand it out and
  // clear it, nor put on the allocator's fast lists, which leave joining freed blocks to whoever comes next.
  static void SettleAllocator() {
    constexpr int kLargest = 32 << 20;  // threshold that the allocator takes
    Require(
        ::mallopt(M_MMAP_THRESHOLD, kLargest) == 1 && ::mallopt(M_TRIM_THRESHOLD, 1 << 30) == 1 && ::mallopt(M_MXFAST, 0) == 1,
        "mallopt fails");
  }

  static void Require(bool holds, const char* otherwise) {
    if (!holds) {
      std::fprintf(stderr, "xml_bench: %s\n", otherwise);
      std::abort();
    }
  }

  // Both write the same text but for line ends: pugixml has no CR, and no line end between the tags of an element without
  // children. (Nor does it escape apostrophes and, in values, >, so the project has none.)
  void CheckSameText() const {
    CQXString written;
    (void)QXVXMLStruct2String(tree, written);
    Text ours(static_cast<const QXChar*>(written));
    TextWriter writer;
    SavePugi(pugi, writer);
    Text theirs(writer.Bytes().size() / sizeof(QXChar), 0);
    std::memcpy(theirs.data(), writer.Bytes().data(), theirs.size() * sizeof(QXChar));
    for (Text* side : {&ours, &theirs}) {
      std::erase_if(*side, [](QXChar unit) { return unit == QXT('\r') || unit == QXT('\n'); });
    }
    Require(ours == theirs, "pugixml writes another text");
  }
};

const Documents& Shared() {
  static const Documents documents;
  return documents;
}

using ParserTree = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

// The parser without a word to a tree of ours; its input lies ready.
ParserTree ParseAlone() {
  const std::string& bytes = Shared().utf8;
  return {xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr /*address*/, nullptr /*encoding*/,
                        XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_HUGE),
          xmlFreeDoc};
}

// What the tree is made of, in the order of the document, so that making it again reads it in one sweep.
class Plan {
 public:
  explicit Plan(const CQXVXmlNode& root) { Add(root); }

  // The tree with so many sequences: objects, texts and arrays, each array in its size at once.
  std::unique_ptr<CQXVXmlNode> Make(QXInt64 sequences) const {
    const Step* at = m_steps.data();
    std::unique_ptr<CQXVXmlNode> root(MakeNode(at));
    const Step* const first = at;
    root->m_arrNode.SetSize(sequences);
    for (QXInt64 i = 0; i < sequences; ++i) {
      at = i % kSequences == 0 ? first : at;
      root->m_arrNode.GetData()[i] = MakeTree(at);
    }
    return root;
  }

 private:
  struct Step {
    Text name;
    Text value;              // of an attribute
    QXInt64 attributes = 0;  // of a node
    QXInt64 children = 0;
  };

  void Add(const CQXVXmlNode& node) {
    m_steps.push_back({TextOf(node.m_strName), {}, node.m_arrAtt.GetSize(), node.m_arrNode.GetSize()});
    for (QXInt64 i = 0; i < node.m_arrAtt.GetSize(); ++i) {
      const CQXVXmlAtt& attribute = *node.m_arrAtt.GetData()[i];
      m_steps.push_back({TextOf(attribute.m_strName), TextOf(attribute.m_strValue)});
    }
    for (QXInt64 i = 0; i < node.m_arrNode.GetSize(); ++i) {
      Add(*node.m_arrNode.GetData()[i]);
    }
  }

  static Text TextOf(const CQXString& text) { return static_cast<const QXChar*>(text); }

  static CQXVXmlNode* MakeNode(const Step*& at) {
    const Step& step = *at++;
    auto* node = new CQXVXmlNode;
    node->m_strName = step.name.c_str();
    node->m_arrAtt.SetSize(step.attributes);
    for (QXInt64 i = 0; i < step.attributes; ++i, ++at) {
      auto* attribute = new CQXVXmlAtt;
      attribute->m_strName = at->name.c_str();
      attribute->m_strValue = at->value.c_str();
      node->m_arrAtt.GetData()[i] = attribute;
    }
    return node;
  }

  static CQXVXmlNode* MakeTree(const Step*& at) {
    const QXInt64 children = at->children;
    CQXVXmlNode* node = MakeNode(at);
    node->m_arrNode.SetSize(children);
    for (QXInt64 i = 0; i < children; ++i) {
      node->m_arrNode.GetData()[i] = MakeTree(at);
    }
    return node;
  }

  std::vector<Step> m_steps;
};

// The tree's own allocations and nothing else.
std::unique_ptr<CQXVXmlNode> AllocateTree(QXInt64 sequences) {
  static const Plan plan(Shared().tree);
  return plan.Make(sequences);
}

bench::Job WriteJob() {
  bench::Job job{"text/XML write",
                 "5 MiB",
                 [] {
                   CQXString text;
                   benchmark::DoNotOptimize(QXVXMLStruct2String(Shared().tree, text));
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
  job.peers.push_back({"libxml2 alone", [] { benchmark::DoNotOptimize(ParseAlone()); }});
  job.peers.push_back({"the tree's allocations alone", [] { benchmark::DoNotOptimize(AllocateTree(kSequences)); }});
  // As in ours the parser's tree stands while the other is made, and goes first: what freeing costs depends on its order.
  job.peers.push_back({"libxml2, then 1.3 times the tree's allocations",
                       [] {
                         ParserTree parsed = ParseAlone();
                         const auto tree = AllocateTree(kSequences * 13 / 10);
                         parsed.reset();
                       },
                       1.0});
  return job;
}

const bench::Register kRegistered([] { return std::vector<bench::Job>{WriteJob(), ParseJob()}; });

}  // namespace
