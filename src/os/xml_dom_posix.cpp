// xml_dom_posix.cpp - documents read by libxml2, answered as the DOM object of Windows answers.
//
// The parser gets UTF-8 and builds its tree without substituting entities, so nothing outside the text is ever asked for.
// References in attributes are resolved while the tree is told. Both count what they expand: an entity is charged its length
// at each reference.

#include "os/xml_dom.h"

#include "os/utf8.h"

#include <libxml/SAX2.h>
#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace qxv::os {
namespace {

constexpr HRESULT kFail = static_cast<HRESULT>(0x80004005);
constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x8007000E);

constexpr int kMaxEntityDepth = 40;  // entities within entities

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;
using Context = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

// What entities may still expand to.
struct Budget {
  std::size_t left;

  [[nodiscard]] bool Take(std::size_t bytes) noexcept {
    if (bytes > left) {
      left = 0;
      return false;
    }
    left -= bytes;
    return true;
  }
};

// A reference costs its entity's length; one too many ends the parse. The parser asks here also for those within entities.
xmlEntityPtr Charged(xmlParserCtxtPtr context, xmlEntityPtr entity) noexcept {
  if (entity == nullptr || entity->etype == XML_INTERNAL_PREDEFINED_ENTITY ||
      static_cast<Budget*>(context->_private)->Take(1 + static_cast<std::size_t>(std::max(entity->length, 0)))) {
    return entity;
  }
  xmlStopParser(context);
  return nullptr;
}

xmlEntityPtr GetEntity(void* context, const xmlChar* name) {
  return Charged(static_cast<xmlParserCtxtPtr>(context), xmlSAX2GetEntity(context, name));
}

xmlEntityPtr GetParameterEntity(void* context, const xmlChar* name) {
  return Charged(static_cast<xmlParserCtxtPtr>(context), xmlSAX2GetParameterEntity(context, name));
}

// The encoding that the declaration names is not used, as the text is decoded already; but it must be one that exists.
bool NamesUnknownEncoding(std::string_view text) {
  const std::string_view declaration = text.substr(0, text.find("?>"));
  if (!declaration.starts_with("<?xml") || declaration.size() == text.size()) {
    return false;
  }
  const std::size_t word = declaration.find("encoding");
  const std::size_t open = word == std::string_view::npos ? word : declaration.find_first_of("\"'", word);
  const std::size_t close = open == std::string_view::npos ? open : declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos) {
    return false;
  }
  const std::string name(declaration.substr(open + 1, close - open - 1));
  xmlCharEncodingHandlerPtr handler = xmlFindCharEncodingHandler(name.c_str());
  const bool unknown = handler == nullptr;
  if (!unknown) {
    (void)xmlCharEncCloseFunc(handler);
  }
  return unknown;
}

// False for a lone surrogate. A byte order mark in front is left out.
bool ToUtf8(TextView text, std::string& bytes) {
  if (!text.empty() && text.front() == QXT('\uFEFF')) {
    text.remove_prefix(1);
  }
  bool lost = false;
  if (!text.empty()) {
    // Counted first: three bytes a unit would be fresh memory that most texts never use.
    bytes.resize(static_cast<std::size_t>(EncodeUtf8(text.data(), text.size(), nullptr, 0 /*count*/, &lost)));
    (void)EncodeUtf8(text.data(), text.size(), bytes.data(), bytes.size(), &lost);
  }
  return !lost;
}

// The tree of a well-formed text; null with status 0 for a malformed one.
Document Parse(std::string_view bytes, Budget& budget, HRESULT& status) {
  Document none(nullptr, xmlFreeDoc);
  status = 0;
  const Context context(xmlNewParserCtxt(), xmlFreeParserCtxt);
  if (context == nullptr) {
    status = kOutOfMemory;
    return none;
  }
  context->_private = &budget;
  context->sax->getEntity = GetEntity;
  context->sax->getParameterEntity = GetParameterEntity;
  constexpr int kOptions =
      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE | XML_PARSE_COMPACT | XML_PARSE_IGNORE_ENC;
  Document document(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr /*address*/,
                                      nullptr /*encoding*/, kOptions),
                    xmlFreeDoc);
  if (context->errNo == XML_ERR_NO_MEMORY) {
    status = kOutOfMemory;
    return none;
  }
  return document != nullptr && context->wellFormed != 0 && context->nsWellFormed != 0 ? std::move(document) : std::move(none);
}

bool IsBlank(const xmlChar* text) noexcept {
  return text == nullptr || text[std::strspn(reinterpret_cast<const char*>(text), " \t\r\n")] == 0;
}

// One name or value after another as UTF-16, in a room that is used again.
class Utf16Room {
 public:
  TextView operator()(std::string_view bytes) {
    if (m_units.size() < bytes.size()) {
      m_units.resize(std::max(bytes.size(), 2 * m_units.size()));
    }
    bool lost = false;
    const std::ptrdiff_t count =
        bytes.empty() ? 0 : DecodeUtf8(bytes.data(), bytes.size(), m_units.data(), m_units.size(), &lost);
    return {m_units.data(), static_cast<std::size_t>(count)};
  }

 private:
  std::vector<QXChar> m_units;
};

std::string_view ViewOf(const xmlChar* text) noexcept {
  return text == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(text));
}

std::string_view NameOf(const xmlNode& node) noexcept {
  switch (node.type) {
    case XML_TEXT_NODE:
      return "#text";
    case XML_CDATA_SECTION_NODE:
      return "#cdata-section";
    case XML_COMMENT_NODE:
      return "#comment";
    default:
      return ViewOf(node.name);
  }
}

// Goes through a tree and tells it; false when its entities expand too far.
class Teller {
 public:
  Teller(XmlSink& sink, Budget& budget) noexcept : m_sink(sink), m_budget(budget) {}

  [[nodiscard]] bool Tell(const xmlNode* root) {
    const xmlNode* node = root;
    std::vector<bool> keepsBlanks;  // of each open element: what xml:space says
    for (;;) {
      if (!TellOpening(*node)) {
        return false;
      }
      const xmlNode* next = nullptr;
      if (node->type == XML_ELEMENT_NODE) {
        keepsBlanks.push_back(KeepsBlanks(*node, !keepsBlanks.empty() && keepsBlanks.back()));
        next = Visible(node->children, keepsBlanks.back());
        if (next == nullptr) {
          keepsBlanks.pop_back();
        }
      }
      while (next == nullptr) {
        m_sink.Close();
        if (node == root) {
          return true;
        }
        next = Visible(node->next, keepsBlanks.back());
        if (next == nullptr) {
          node = node->parent;
          keepsBlanks.pop_back();
        }
      }
      node = next;
    }
  }

 private:
  // The first of these siblings that counts.
  static const xmlNode* Visible(const xmlNode* node, bool keepsBlanks) noexcept {
    while (node != nullptr && node->type == XML_TEXT_NODE && !keepsBlanks && IsBlank(node->content)) {
      node = node->next;
    }
    return node;
  }

  static bool KeepsBlanks(const xmlNode& element, bool inherited) noexcept {
    for (const xmlAttr* attribute = element.properties; attribute != nullptr; attribute = attribute->next) {
      if (attribute->ns != nullptr && ViewOf(attribute->ns->href) == ViewOf(XML_XML_NAMESPACE) &&
          ViewOf(attribute->name) == "space") {
        const std::string_view value = attribute->children == nullptr ? std::string_view() : ViewOf(attribute->children->content);
        return value == "preserve" || (value != "default" && inherited);
      }
    }
    return inherited;
  }

  bool TellOpening(const xmlNode& node) {
    if (node.type != XML_ELEMENT_NODE) {
      m_sink.Open(m_name(NameOf(node)));
      return true;
    }
    m_sink.Open(m_name(Qualified(node.ns, node.name)));
    for (const xmlAttr* attribute = node.properties; attribute != nullptr; attribute = attribute->next) {
      std::string_view value;
      if (!ValueOf(*attribute, value)) {
        return false;
      }
      m_sink.Attribute(m_name(Qualified(attribute->ns, attribute->name)), m_value(value));
    }
    // The parser keeps declarations of namespaces apart, so they follow the others.
    for (const xmlNs* declared = node.nsDef; declared != nullptr; declared = declared->next) {
      m_joined = "xmlns";
      if (declared->prefix != nullptr) {
        m_joined.append(":").append(ViewOf(declared->prefix));
      }
      m_sink.Attribute(m_name(m_joined), m_value(ViewOf(declared->href)));
    }
    return true;
  }

  std::string_view Qualified(const xmlNs* space, const xmlChar* name) {
    if (space == nullptr || space->prefix == nullptr) {
      return ViewOf(name);
    }
    m_joined.assign(ViewOf(space->prefix)).append(":").append(ViewOf(name));
    return m_joined;
  }

  bool ValueOf(const xmlAttr& attribute, std::string_view& value) {
    const xmlNode* first = attribute.children;
    if (first == nullptr || (first->next == nullptr && first->type == XML_TEXT_NODE)) {
      value = first == nullptr ? std::string_view() : ViewOf(first->content);
      return true;
    }
    m_expanded.clear();
    if (!Expand(attribute.doc, first, 0 /*depth*/)) {
      return false;
    }
    value = m_expanded;
    return true;
  }

  // Depth is bounded: the parser has refused entities that lead to themselves.
  bool Expand(xmlDoc* document, const xmlNode* list, int depth) {
    for (const xmlNode* part = list; part != nullptr; part = part->next) {
      if (part->type != XML_ENTITY_REF_NODE) {
        const std::string_view text = ViewOf(part->content);
        if (depth > 0 && !m_budget.Take(text.size())) {
          return false;
        }
        m_expanded += text;
        continue;
      }
      const xmlEntity* entity = xmlGetDocEntity(document, part->name);
      if (depth == kMaxEntityDepth || !m_budget.Take(1)) {
        return false;
      }
      if (entity != nullptr && !Expand(document, entity->children, depth + 1)) {
        return false;
      }
    }
    return true;
  }

  XmlSink& m_sink;
  Budget& m_budget;
  Utf16Room m_name;
  Utf16Room m_value;
  std::string m_joined;    // prefix:name
  std::string m_expanded;  // a value with its references resolved
};

// Counts what a document would expand to before any of it is told.
class NoSink final : public XmlSink {
 public:
  void Open(TextView /*name*/) override {}
  void Attribute(TextView /*name*/, TextView /*value*/) override {}
  void Close() override {}
};

// The second of two top-level nodes, of which the declaration is one; null for any other number.
const xmlNode* SecondOfTwo(const xmlDoc& document, bool declared) noexcept {
  const xmlNode* second = nullptr;
  int count = declared ? 1 : 0;
  for (const xmlNode* node = document.children; node != nullptr; node = node->next) {
    if (++count == 2) {
      second = node;
    }
  }
  return count == 2 ? second : nullptr;
}

}  // namespace

HRESULT ReadXml(TextView text, XmlSink& sink) {
  switch (CheckXmlText(text)) {
    case XmlText::TooDeep:
      return kFail;
    case XmlText::Blank:
    case XmlText::TooLarge:
      return 0;
    case XmlText::Fit:
      break;
  }
  std::string bytes;
  if (!ToUtf8(text, bytes) || bytes.empty() || NamesUnknownEncoding(bytes)) {
    return 0;
  }
  if (bytes.size() > INT_MAX) {
    throw std::bad_alloc();
  }
  const std::size_t expansion = std::min(kXmlMaxExpansion, kXmlMaxExpansionFactor * bytes.size());
  Budget parsed{expansion};
  HRESULT status = 0;
  const Document document = Parse(bytes, parsed, status);
  const xmlNode* root = document == nullptr ? nullptr : SecondOfTwo(*document, document->standalone != -1 /*no declaration*/);
  if (root == nullptr) {
    return status;
  }
  if (document->intSubset != nullptr && document->intSubset->entities != nullptr) {
    NoSink none;
    Budget counted{expansion};
    if (!Teller(none, counted).Tell(root)) {
      return 0;
    }
  }
  Budget told{expansion};
  (void)Teller(sink, told).Tell(root);  // within the budget, as just counted
  return 0;
}

}  // namespace qxv::os
