// xml_dom_win.cpp - documents read by the DOM object of MSXML. Every COM object and BSTR is held by what releases it.

#include "os/xml_dom.h"

#include "os/win_api.h"

#include <msxml.h>
#include <oleauto.h>

#include <new>
#include <utility>
#include <vector>

namespace qxv::os {
namespace {

constexpr CLSID kDomDocument = {0x2933BF90, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
constexpr IID kIXMLDOMDocument = {0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

template <class T>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  ComPtr(ComPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~ComPtr() { Reset(); }

  /// For a call that hands out an object; what was held is released.
  T** Out() noexcept {
    Reset();
    return &m_object;
  }
  T* operator->() const noexcept { return m_object; }
  explicit operator bool() const noexcept { return m_object != nullptr; }

 private:
  void Reset() noexcept {
    if (T* object = std::exchange(m_object, nullptr); object != nullptr) {
      object->Release();
    }
  }

  T* m_object = nullptr;
};

TextView ViewOf(BSTR text) noexcept {
  const TextView view(text == nullptr ? L"" : text, ::SysStringLen(text));
  return view.substr(0, view.find(L'\0'));
}

class Bstr {
 public:
  Bstr() noexcept = default;
  explicit Bstr(TextView text) noexcept : m_text(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { ::SysFreeString(m_text); }

  BSTR* Out() noexcept {
    ::SysFreeString(std::exchange(m_text, nullptr));
    return &m_text;
  }
  BSTR Get() const noexcept { return m_text; }
  TextView View() const noexcept { return ViewOf(m_text); }

 private:
  BSTR m_text = nullptr;
};

class Variant {
 public:
  Variant() noexcept { ::VariantInit(&m_value); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { ::VariantClear(&m_value); }

  VARIANT* Out() noexcept {
    ::VariantClear(&m_value);
    return &m_value;
  }
  TextView View() const noexcept { return m_value.vt == VT_BSTR ? ViewOf(m_value.bstrVal) : TextView(); }

 private:
  VARIANT m_value;
};

using Node = ComPtr<IXMLDOMNode>;

// Tells the sink a node's attributes; a node that is no element has no map of them.
HRESULT TellAttributes(const Node& node, XmlSink& sink) {
  ComPtr<IXMLDOMNamedNodeMap> map;
  long count = 0;
  HRESULT result = node->get_attributes(map.Out());
  if (FAILED(result) || !map || FAILED(result = map->get_length(&count))) {
    return result;
  }
  Node attribute;
  Bstr name;
  Variant value;
  for (long i = 0; i < count; ++i) {
    if (FAILED(result = map->get_item(i, attribute.Out())) || FAILED(result = attribute->get_nodeName(name.Out())) ||
        FAILED(result = attribute->get_nodeValue(value.Out()))) {
      return result;
    }
    sink.Attribute(name.View(), value.View());
  }
  return S_OK;
}

HRESULT TellOpening(const Node& node, XmlSink& sink) {
  Bstr name;
  const HRESULT result = node->get_nodeName(name.Out());
  if (FAILED(result)) {
    return result;
  }
  sink.Open(name.View());
  return TellAttributes(node, sink);
}

// The first child; only elements are looked into, the parts of an entity or of a DOCTYPE are not the document's.
HRESULT FirstChild(const Node& node, Node& child) {
  DOMNodeType kind = NODE_INVALID;
  const HRESULT result = node->get_nodeType(&kind);
  return FAILED(result) || kind != NODE_ELEMENT ? result : node->get_firstChild(child.Out());
}

// A node and what is below it. Siblings are followed one to the next: asking a list by index counts from its beginning each time.
HRESULT TellTree(Node root, XmlSink& sink) {
  std::vector<Node> open;
  Node next = std::move(root);
  for (;;) {
    HRESULT result = TellOpening(next, sink);
    if (FAILED(result)) {
      return result;
    }
    open.push_back(std::move(next));
    result = FirstChild(open.back(), next);
    while (SUCCEEDED(result) && !next) {
      sink.Close();
      if (open.size() == 1) {
        return S_OK;
      }
      result = open.back()->get_nextSibling(next.Out());
      open.pop_back();
    }
    if (FAILED(result)) {
      return result;
    }
  }
}

HRESULT Load(const ComPtr<IXMLDOMDocument>& document, TextView text) {
  const Bstr copy(text);
  if (copy.Get() == nullptr) {
    throw std::bad_alloc();
  }
  VARIANT_BOOL loaded = VARIANT_FALSE;
  HRESULT result = S_OK;
  if (FAILED(result = document->put_async(VARIANT_FALSE)) || FAILED(result = document->put_resolveExternals(VARIANT_FALSE)) ||
      FAILED(result = document->put_validateOnParse(VARIANT_FALSE))) {
    return result;
  }
  return document->loadXML(copy.Get(), &loaded);  // a malformed text is no failure, it leaves the document empty
}

}  // namespace

HRESULT ReadXml(TextView text, XmlSink& sink) {
  // KEPT: never balanced by CoUninitialize: callers rely on COM being there after their first parse. Pinned by
  //   XmlTextKept.EveryParseLeavesComInitialised.
  (void)::CoInitialize(nullptr /*reserved*/);

  switch (CheckXmlText(text)) {
    case XmlText::TooDeep:
      return E_FAIL;
    case XmlText::Blank:
    case XmlText::TooLarge:
      return S_OK;
    case XmlText::Fit:
      break;
  }
  ComPtr<IXMLDOMDocument> document;
  constexpr DWORD kAnyServer = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
  HRESULT result =
      ::CoCreateInstance(kDomDocument, nullptr /*outer*/, kAnyServer, kIXMLDOMDocument, reinterpret_cast<void**>(document.Out()));
  ComPtr<IXMLDOMNodeList> nodes;
  long count = 0;
  if (FAILED(result) || FAILED(result = Load(document, text)) || FAILED(result = document->get_childNodes(nodes.Out())) ||
      FAILED(result = nodes->get_length(&count))) {
    return result;
  }
  if (count != 2) {
    return S_OK;
  }
  Node second;
  if (FAILED(result = nodes->get_item(1, second.Out()))) {
    return result;
  }
  return TellTree(std::move(second), sink);
}

}  // namespace qxv::os
